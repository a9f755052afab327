// quillon write: delivers a finished file set to a disc or a directory.
#pragma once

#include <CLI/CLI.hpp>

namespace quillon::cli {

struct WriteOptions;

// What write and publish have in common.
void addWriteOptions(CLI::App& command, WriteOptions& job);

// Adds the subcommand. `exitStatus` receives the result when the command has run.
void addWriteCommand(CLI::App& program, int& exitStatus);

}  // namespace quillon::cli
