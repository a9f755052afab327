#include "usage.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <utility>

#include "command_tree.h"
#include "commands.h"
#include "nearest_name.h"
#include "output_file.h"
#include "result_output.h"
#include "terminal_text.h"
#include "thrown.h"

namespace quillon::cli {

namespace {

constexpr int kExitUsage = 2;
constexpr const char* kHelp = "help";
constexpr const char* kJson = "--json";

// In their order.
std::vector<const CLI::App*> commandsOf(const CLI::App& command) {
  return command.get_subcommands([](const CLI::App*) { return true; });
}

std::vector<std::string> namesOf(const std::vector<const CLI::App*>& commands) {
  std::vector<std::string> names;
  names.reserve(commands.size());
  for (const CLI::App* command : commands) names.push_back(command->get_name());
  return names;
}

// What stands before "--": behind it are paths.
Arguments beforePaths(const Arguments& arguments) {
  return {arguments.begin(), std::ranges::find(arguments, "--")};
}

bool isOption(const std::string& argument) {
  return argument.size() > 1 && argument.front() == '-' && argument != "--";
}

// How far the line names commands.
struct Recognised {
  const CLI::App* command;
  std::string name;  // "quillon disc list"
  std::optional<std::string> unknown;
};
Recognised recognised(const CLI::App& program, const Arguments& arguments) {
  Recognised found{&program, program.get_name(), {}};
  for (const std::string& argument : beforePaths(arguments)) {
    const auto commands = commandsOf(*found.command);
    if (commands.empty()) break;
    // Options of what has commands take no values.
    if (isOption(argument)) continue;
    const auto next = std::ranges::find(commands, argument, &CLI::App::get_name);
    if (next == commands.end()) {
      found.unknown = argument;
      break;
    }
    found.command = *next;
    found.name += " " + argument;
  }
  return found;
}

std::string jsonOfHelp(const Recognised& of, std::string text) {
  Json object;
  // Without the program's name and the space behind it.
  object["command"] =
      textOrNull(of.name.substr(std::min(of.name.find(' '), of.name.size() - 1) + 1));
  object["help"] = std::move(text);
  return jsonObject(std::move(object), {});
}

bool asksForJson(const Arguments& arguments) {
  return std::ranges::any_of(beforePaths(arguments), [](const std::string& argument) {
    return argument == kJson || argument.starts_with(std::string(kJson) + "=");
  });
}

// Standard output is then a file's, which nothing else may stand in.
bool asksForStream(const Arguments& arguments) {
  const Arguments options = beforePaths(arguments);
  for (std::size_t i = 0; i < options.size(); ++i) {
    for (const std::string option : {"--iso", "--zip"}) {
      if (options[i] == option + "=-") return true;
      if (options[i] == option && i + 1 < options.size() && options[i + 1] == "-") return true;
    }
  }
  return false;
}

// Of a line that no command has told of.
int finishAlone(const Outcome& outcome, const Arguments& arguments) {
  if (!asksForJson(arguments)) return finish({}, outcome, {});
  if (asksForStream(arguments)) static_cast<void>(OutputFile::reserveStandardOutput());
  return finish(Output::asItIs(jsonObject(outcome)), outcome, {});
}

std::string noSuchOption(const Recognised& of, const std::string& argument) {
  std::vector<std::string> names;
  for (const CLI::Option* option : of.command->get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    for (const std::string& name : option->get_snames()) names.push_back("-" + name);
  }
  const std::string option = argument.substr(0, argument.find('='));
  return of.name + " has no option " + option + didYouMean(option, names);
}

std::string complaintOn(const Recognised& of, const CLI::App& program,
                        const CLI::ParseError& error) {
  // An option that there is not takes the words with it that the command then lacks.
  const std::vector<std::string> remaining = program.remaining(/*recurse=*/true);
  const auto unknown = std::ranges::find_if(remaining, isOption);
  if (unknown != remaining.end()) return noSuchOption(of, *unknown);
  std::string sentence = error.what();
  if (!sentence.ends_with('.') && !sentence.ends_with('?')) sentence += '.';
  return sentence;
}

}  // namespace

void addHelpCommand(CLI::App& program) {
  struct Options {
    Arguments words;
    bool isJson = false;
  };
  const auto options = std::make_shared<Options>();
  CLI::App* help = program.add_subcommand(kHelp, "Prints what --help of a command prints");
  help->add_option("COMMAND", options->words, "A command, such as disc, or disc insert")
      ->expected(0, 2)
      ->check(offers(namesOf(commandsOf(program))));
  addJsonOption(*help, options->isJson);
  help->callback([options] {});
}

void askForHelp(Arguments& arguments) {
  if (arguments.empty() || arguments.front() != kHelp) return;
  const auto isOther = [](const std::string& argument) {
    return isOption(argument) && argument != kJson;
  };
  if (std::ranges::any_of(arguments, isOther)) return;
  arguments.erase(arguments.begin());
  arguments.emplace_back("--help");
}

void checkCommandNames(const CLI::App& program, const Arguments& arguments) {
  const Recognised found = recognised(program, arguments);
  const std::vector<std::string> names = namesOf(commandsOf(*found.command));
  if (found.unknown) {
    const std::string words = found.name + " " + *found.unknown;
    throw CLI::ParseError("there is no command \"" + words.substr(program.get_name().size() + 1) +
                              '"' + didYouMean(*found.unknown, names),
                          CLI::ExitCodes::ExtrasError);
  }
  if (found.command->get_require_subcommand_min() > 0 &&
      std::ranges::none_of(arguments, isOption)) {
    throw CLI::ParseError(found.name + " needs a command: " + joined(names, ", "),
                          CLI::ExitCodes::RequiredError);
  }
}

void refuseEmptyValues(const Arguments& arguments) {
  // CLI11 takes "--root=" for "--root", whose value is then whatever stands next.
  for (const std::string& argument : beforePaths(arguments)) {
    if (argument.starts_with("--") && argument.find('=') == argument.size() - 1) {
      throw CLI::ArgumentMismatch(argument + " has no value behind it");
    }
  }
}

int finishWithoutCommand(const CLI::App& program, const CLI::ParseError& error,
                         const Arguments& arguments) {
  const Recognised of = recognised(program, arguments);
  const bool isJson = asksForJson(arguments);
  if (error.get_exit_code() == 0) {
    std::ostringstream asked;
    static_cast<void>(program.exit(error, asked, asked));
    const bool isHelp = dynamic_cast<const CLI::CallForHelp*>(&error) != nullptr;
    return finish(isJson && isHelp ? Output::asItIs(jsonOfHelp(of, asked.str()))
                                   : Output::forReaders(asked.str()),
                  {}, {});
  }
  static_cast<void>(finishAlone(complaintOn(of, program, error), arguments));
  std::fputs(("Run " + of.name + " --help for more information.\n").c_str(), stderr);
  return kExitUsage;
}

int finishThrown(const Arguments& arguments) { return finishAlone(thrownOutcome(), arguments); }

}  // namespace quillon::cli
