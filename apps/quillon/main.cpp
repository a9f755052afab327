// quillon: makes DICOM interchange media on the command line.
#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <exception>
#include <sstream>
#include <string>

#include "commands.h"
#include "terminal_text.h"
#include "toolkit_log.h"

namespace {

constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

// CLI11 takes "--root=" for "--root", whose value is then whatever stands next.
void refuseEmptyValues(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "--") return;  // paths
    if (argument.starts_with("--") && argument.find('=') == argument.size() - 1) {
      throw CLI::ArgumentMismatch(argument + " has no value behind it");
    }
  }
}

int run(int argc, char** argv) {
  // Commands with --log set it anew.
  static_cast<void>(quillon::cli::sendToolkitLog(""));
  CLI::App program("Makes DICOM interchange media: a file set with DICOMDIR and label", "quillon");
  program.set_version_flag("--version", "quillon " QUILLON_VERSION);
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
  try {
    refuseEmptyValues(argc, argv);
    program.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    std::ostringstream help;
    std::ostringstream complaint;
    const int status = program.exit(error, help, complaint);
    std::fputs(quillon::cli::forTerminal(help.str()).c_str(), stdout);
    std::fputs(quillon::cli::forTerminal(complaint.str()).c_str(), stderr);
    return status == 0 ? 0 : kExitUsage;
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
  } catch (const std::exception& error) {
    quillon::cli::say(std::string(error.what()) + ".");
  } catch (...) {
    quillon::cli::say("The operation failed.");
  }
  return kExitFailed;
}
