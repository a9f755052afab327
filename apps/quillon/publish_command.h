// quillon publish: creates a file set and delivers it in one job.
#pragma once

#include <CLI/CLI.hpp>

namespace quillon::cli {

// Adds the subcommand. `exitStatus` receives the result when the command has run.
void addPublishCommand(CLI::App& program, int& exitStatus);

}  // namespace quillon::cli
