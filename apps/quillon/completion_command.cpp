#include <array>
#include <memory>
#include <nlohmann/json.hpp>
#include <utility>

#include "commands.h"
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

std::string jsonOf(const Shell& shell, std::string script) {
  Json object;
  object["shell"] = shell.name;
  object["script"] = std::move(script);
  return jsonObject(std::move(object), {});
}

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
  struct Options {
    std::string shell;
    bool isJson = false;
  };
  const auto options = std::make_shared<Options>();
  std::vector<std::string> names;
  names.reserve(kShells.size());
  for (const Shell& one : kShells) names.emplace_back(one.name);
  CLI::App* command = program.add_subcommand(
      "completion", "Prints the script that completes command lines in a shell");
  command->add_option("SHELL", options->shell, "The shell")
      ->required()
      ->check(CLI::IsMember(names));
  addJsonOption(*command, options->isJson);
  command->callback([&program, options, &exitStatus] {
    for (const Shell& one : kShells) {
      if (options->shell != one.name) continue;
      std::string script = one.script(commandTree(program));
      exitStatus = finish(
          Output::asItIs(options->isJson ? jsonOf(one, std::move(script)) : std::move(script)), {},
          {});
    }
  });
}

}  // namespace quillon::cli
