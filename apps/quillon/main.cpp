// quillon: makes DICOM interchange media on the command line.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "create_command.h"

int main(int argc, char** argv) {
  constexpr int kExitFailed = 1;
  constexpr int kExitUsage = 2;
  CLI::App program("Makes DICOM interchange media: a file set with DICOMDIR and label", "quillon");
  program.set_version_flag("--version", "quillon " QUILLON_VERSION);
  program.require_subcommand(1);
  int exitStatus = 0;
  quillon::cli::addCreateCommand(program, exitStatus);
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return program.exit(error) == 0 ? 0 : kExitUsage;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quillon: %s.\n", error.what());
    return kExitFailed;
  }
  return exitStatus;
}
