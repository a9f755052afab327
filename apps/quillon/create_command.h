// quillon create: collects DICOM files and lays them out as a DICOM file set.
#pragma once

#include <CLI/CLI.hpp>

namespace quillon::cli {

struct CreateOptions;

// What create and publish have in common.
void addCreateOptions(CLI::App& command, CreateOptions& job);

// Of every command that has one.
void addDryRunOption(CLI::App& command, bool& isDryRun);

// Adds the subcommand. `exitStatus` receives the result when the command has run.
void addCreateCommand(CLI::App& program, int& exitStatus);

}  // namespace quillon::cli
