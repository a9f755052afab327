#include "command_tree.h"

#include <array>
#include <sstream>
#include <string_view>
#include <utility>

namespace quillon::cli {

namespace {

constexpr const char* kOffers = "offers";

using Paths = WordKind::Paths;

struct PathType {
  std::string_view typeName;
  Paths paths;
};
constexpr std::array kPathTypes{
    PathType{"PATH", Paths::Files},      PathType{"FILE", Paths::Files},
    PathType{"LOCATION", Paths::Files},  PathType{"LIBRARY", Paths::Files},
    PathType{"DIR", Paths::Directories}, PathType{"DIR[:NAME]", Paths::Directories},
};

// "{first,all}", as CLI11 describes what it checks for membership.
std::vector<std::string> choicesIn(const std::string& description) {
  std::vector<std::string> choices;
  if (!description.starts_with('{') || !description.ends_with('}')) return choices;
  std::istringstream names(description.substr(1, description.size() - 2));
  for (std::string name; std::getline(names, name, ',');) choices.push_back(name);
  return choices;
}

// What is only offered is not active: it is neither checked nor described in the help.
std::string describeOffers(CLI::Option& option) {
  try {
    CLI::Validator offered = *option.get_validator(kOffers);
    return offered.active(true).get_description();
  } catch (const CLI::OptionNotFound&) {
    return {};
  }
}

// "MEDIA:{first,all}" without its choices; a place has its name.
std::string typeNameOf(const CLI::Option& option) {
  if (option.get_positional()) return option.get_name(true);
  const std::string type = option.get_type_name();
  return type.substr(0, type.find(":{"));
}

Paths pathsOf(std::string_view typeName) {
  for (const PathType& row : kPathTypes) {
    if (row.typeName == typeName) return row.paths;
  }
  return Paths::None;
}

WordKind kindOf(CLI::Option& option) {
  WordKind kind;
  kind.typeName = typeNameOf(option);
  kind.paths = pathsOf(kind.typeName);
  const std::string type = option.get_type_name();
  const std::size_t colon = type.find(":{");
  if (colon != std::string::npos) kind.choices = choicesIn(type.substr(colon + 1));
  for (const std::string& name : choicesIn(describeOffers(option))) kind.choices.push_back(name);
  return kind;
}

OptionWord wordOf(CLI::Option& option) {
  OptionWord word;
  for (const std::string& name : option.get_snames()) word.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) word.names.push_back("--" + name);
  word.description = option.get_description();
  word.hasValue = option.get_items_expected_max() > 0;
  word.isRepeatable = option.get_items_expected_max() > 1;
  if (word.hasValue) word.value = kindOf(option);
  return word;
}

std::vector<CLI::App*> commandsOf(CLI::App& app) {
  return app.get_subcommands([](CLI::App*) { return true; });
}

CommandWord commandOf(CLI::App& app, const std::string& above, const std::string& path) {
  CommandWord command{above, path, app.get_name(), app.get_description(), {}, {}, {}};
  for (CLI::Option* option : app.get_options()) {
    OptionWord word = wordOf(*option);
    (option->get_positional() ? command.places : command.options).push_back(std::move(word));
  }
  for (CLI::App* below : commandsOf(app)) {
    command.commands.push_back(
        commandOf(*below, path, path + (path.empty() ? "" : " ") + below->get_name()));
  }
  return command;
}

}  // namespace

CommandWord commandTree(CLI::App& program) { return commandOf(program, "", ""); }

void refuseEmptyPaths(CLI::App& program) {
  for (CLI::Option* option : program.get_options()) {
    const Paths paths = pathsOf(typeNameOf(*option));
    if (paths == Paths::None) continue;
    const char* const what = paths == Paths::Directories ? "directory" : "file";
    option->check([what](const std::string& path) {
      return path.empty() ? std::string("no ") + what + " is named" : std::string();
    });
  }
  for (CLI::App* command : commandsOf(program)) refuseEmptyPaths(*command);
}

std::string joined(const std::vector<std::string>& words, const char* separator) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : separator) + word;
  return text;
}

CLI::Validator offers(const std::vector<std::string>& names) {
  const std::string description = "{" + joined(names, ",") + "}";
  return CLI::Validator([](std::string&) { return std::string(); }, description, kOffers)
      .active(false);
}

}  // namespace quillon::cli
