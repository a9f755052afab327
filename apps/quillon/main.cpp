// quillon: makes DICOM interchange media on the command line.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <cstdio>

#include "command_tree.h"
#include "commands.h"
#include "completion.h"
#include "toolkit_log.h"
#include "usage.h"
#include "version_text.h"

namespace {

constexpr int kExitFailed = 1;

int run(int argc, char** argv) {
  // Commands with --log set it anew.
  static_cast<void>(quillon::cli::sendToolkitLog(""));
  CLI::App program("Makes DICOM interchange media: a file set with DICOMDIR and label", "quillon");
  program.set_version_flag("-V,--version", quillon::cli::versionText,
                           "Prints the version, and those of the libraries");
  program.require_subcommand(1);
  int exitStatus = 0;
  quillon::cli::addCreateCommand(program, exitStatus);
  quillon::cli::addWriteCommand(program, exitStatus);
  quillon::cli::addPublishCommand(program, exitStatus);
  quillon::cli::addDiscCommand(program, exitStatus);
  quillon::cli::addProfilesCommand(program, exitStatus);
  quillon::cli::addListCommand(program, exitStatus);
  quillon::cli::addHeaderCommand(program, exitStatus);
  quillon::cli::addVerifyCommand(program, exitStatus);
  quillon::cli::addWipeCommand(program, exitStatus);
  quillon::cli::addConfigCommand(program, exitStatus);
  quillon::cli::addRegisterCommands(program, exitStatus);
  quillon::cli::addCompletionCommand(program, exitStatus);
  quillon::cli::addHelpCommand(program);
  quillon::cli::refuseEmptyPaths(program);
  quillon::cli::Arguments arguments(argv + std::min(argc, 1), argv + argc);
  try {
    quillon::cli::askForHelp(arguments);
    quillon::cli::refuseEmptyValues(arguments);
    quillon::cli::checkCommandNames(program, arguments);
    // It takes them from the end.
    program.parse(quillon::cli::Arguments(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::ParseError& error) {
    return quillon::cli::finishWithoutCommand(program, error, arguments);
  }
  return exitStatus;
}

}  // namespace

int main(int argc, char** argv) {
  // A file that reaches the user's size limit is a write that fails, with its sentence, and not the
  // end of the program.
  std::signal(SIGXFSZ, SIG_IGN);  // it cannot fail for this signal
  try {
    return run(argc, argv);
  } catch (...) {
    try {
      return quillon::cli::finishThrown({argv + std::min(argc, 1), argv + argc});
    } catch (...) {  // no memory for that either
      std::fputs("quillon: There is not enough memory.\n", stderr);
      return kExitFailed;
    }
  }
}
