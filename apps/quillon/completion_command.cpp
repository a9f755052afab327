#include <array>
#include <memory>

#include "completion.h"
#include "result_output.h"

namespace quillon::cli {

namespace {

struct Shell {
  const char* name;
  std::string (*script)(const CommandWord&);
};
constexpr std::array kShells{
    Shell{"bash", bashCompletion},
    Shell{"zsh", zshCompletion},
    Shell{"fish", fishCompletion},
};

void collect(const CommandWord& command, std::vector<const CommandWord*>& all) {
  for (const CommandWord& below : command.commands) {
    all.push_back(&below);
    collect(below, all);
  }
}

}  // namespace

std::vector<const CommandWord*> everyCommand(const CommandWord& program) {
  std::vector<const CommandWord*> all;
  collect(program, all);
  return all;
}

void addCompletionCommand(CLI::App& program, int& exitStatus) {
  const auto shell = std::make_shared<std::string>();
  std::vector<std::string> names;
  names.reserve(kShells.size());
  for (const Shell& one : kShells) names.emplace_back(one.name);
  CLI::App* command = program.add_subcommand(
      "completion", "Prints the script that completes command lines in a shell");
  command->add_option("SHELL", *shell, "The shell")->required()->check(CLI::IsMember(names));
  command->callback([&program, shell, &exitStatus] {
    for (const Shell& one : kShells) {
      if (*shell != one.name) continue;
      exitStatus = finish(Output::asItIs(one.script(commandTree(program))), {}, {});
    }
  });
}

}  // namespace quillon::cli
