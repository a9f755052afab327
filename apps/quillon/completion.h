// Scripts that complete the program's command lines in a shell.
#pragma once

#include <string>

#include "command_tree.h"

namespace quillon::cli {

std::string bashCompletion(const CommandWord& program);
std::string zshCompletion(const CommandWord& program);
std::string fishCompletion(const CommandWord& program);

// "completion SHELL" prints one.
void addCompletionCommand(CLI::App& program, int& exitStatus);

// All commands of the tree but the program, each before those below it.
std::vector<const CommandWord*> everyCommand(const CommandWord& program);

}  // namespace quillon::cli
