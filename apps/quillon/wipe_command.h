// quillon wipe: removes what a job left behind.
#pragma once

#include <CLI/CLI.hpp>

namespace quillon::cli {

// Adds the subcommand. `exitStatus` receives the result when the command has run.
void addWipeCommand(CLI::App& program, int& exitStatus);

}  // namespace quillon::cli
