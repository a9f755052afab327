// quillon header: prints the header of a DICOM file.
#pragma once

#include <CLI/CLI.hpp>

namespace quillon::cli {

// Adds the subcommand. `exitStatus` receives the result when the command has run.
void addHeaderCommand(CLI::App& program, int& exitStatus);

}  // namespace quillon::cli
