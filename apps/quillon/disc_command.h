// quillon disc list, status, insert, eject, erase: the recorders and the discs in them.
#pragma once

#include <CLI/CLI.hpp>

namespace quillon::cli {

// Adds the subcommand. `exitStatus` receives the result when one of its commands has run.
void addDiscCommand(CLI::App& program, int& exitStatus);

}  // namespace quillon::cli
