// A command line that asks for help, or that is wrong: what is said of it leads on.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace quillon::cli {

// What stands behind the program's name.
using Arguments = std::vector<std::string>;

// To be called when the others are there. What it does is done before the line is parsed.
void addHelpCommand(CLI::App& program);
// "help COMMAND" becomes "COMMAND --help".
void askForHelp(Arguments& arguments);
// Throw, as CLI11 does: for a command that there is not, and for "--root=".
void checkCommandNames(const CLI::App& program, const Arguments& arguments);
void refuseEmptyValues(const Arguments& arguments);

// Prints what was asked for in the place of a command, or why the line is none, with --json as an
// object, too. Answers the exit status of the program.
int finishWithoutCommand(const CLI::App& program, const CLI::ParseError& error,
                         const Arguments& arguments);

// The same of an exception that is being handled, which ended the command.
int finishThrown(const Arguments& arguments);

}  // namespace quillon::cli
