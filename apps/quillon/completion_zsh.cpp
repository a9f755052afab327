#include <string_view>

#include "completion.h"

namespace quillon::cli {

namespace {

// In single quotes, with a backslash before what _arguments and _describe would take for theirs.
std::string escaped(std::string_view text, std::string_view special) {
  std::string out;
  for (const char c : text) {
    if (c == '\'') {
      out += "'\\''";
      continue;
    }
    if (special.find(c) != std::string_view::npos) out += '\\';
    out += c;
  }
  return out;
}

std::string functionOf(const CommandWord& command) {
  std::string name = "_quillon";
  if (!command.path.empty()) name += "_" + command.path;
  for (char& c : name) {
    if (c == ' ' || c == '-') c = '_';
  }
  return name;
}

std::string actionOf(const WordKind& kind) {
  std::string action = ":" + escaped(kind.typeName, ":[]\\") + ":";
  const std::string choices = joined(kind.choices, " ");
  switch (kind.paths) {
    case WordKind::Paths::Directories:
      return action + "_files -/";
    case WordKind::Paths::Files:
      if (choices.empty()) return action + "_files";
      return action + "_alternative \"words\\:word\\:(" + choices + ")\" \"files\\:file\\:_files\"";
    case WordKind::Paths::None:
      break;
  }
  return choices.empty() ? action + " " : action + "(" + choices + ")";
}

std::string specOf(const OptionWord& option) {
  const std::string rest = (option.hasValue ? "=" : "") +
                           ("[" + escaped(option.description, "[]:\\")) + "]" +
                           (option.hasValue ? actionOf(option.value) : "");
  if (option.isRepeatable) return "'*" + option.names.front() + rest + "'";
  if (option.names.size() == 1) return "'" + option.names.front() + rest + "'";
  return "'(" + joined(option.names, " ") + ")'{" + joined(option.names, ",") + "}'" + rest + "'";
}

std::string specsOf(const CommandWord& command) {
  std::string text;
  for (const OptionWord& option : command.options) text += " \\\n    " + specOf(option);
  for (std::size_t i = 0; i < command.places.size(); ++i) {
    const OptionWord& place = command.places[i];
    text += " \\\n    '" + (place.isRepeatable ? "*" : std::to_string(i + 1)) +
            actionOf(place.value) + "'";
  }
  return text;
}

std::string branchesOf(const CommandWord& command) {
  std::string text = "  local -a commands\n  commands=(\n";
  for (const CommandWord& below : command.commands) {
    text += "    '" + below.name + ":" + escaped(below.description, "\\") + "'\n";
  }
  text += "  )\n  _arguments -C" + specsOf(command) +
          " \\\n    '1:command:->command' '*::argument:->arguments' && return\n"
          "  case $state in\n"
          "    command) _describe -t commands command commands ;;\n"
          "    arguments)\n"
          "      case $words[1] in\n";
  for (const CommandWord& below : command.commands) {
    text += "        " + below.name + ") " + functionOf(below) + " ;;\n";
  }
  return text + "      esac ;;\n  esac\n";
}

std::string functionText(const CommandWord& command) {
  if (command.commands.empty()) {
    return functionOf(command) + "() {\n  _arguments -S" + specsOf(command) + "\n}\n\n";
  }
  return functionOf(command) +
         "() {\n  local curcontext=$curcontext context state state_descr line\n"
         "  typeset -A opt_args\n" +
         branchesOf(command) + "}\n\n";
}

}  // namespace

std::string zshCompletion(const CommandWord& program) {
  std::string text = "#compdef quillon\n# Made from the program's own options.\n\n";
  for (const CommandWord* command : everyCommand(program)) text += functionText(*command);
  text += functionText(program);
  // From a directory of completions the file is itself the function; otherwise it is sourced.
  return text +
         "if [[ $funcstack[1] == _quillon ]]; then\n  _quillon \"$@\"\n"
         "else\n  compdef _quillon quillon\nfi\n";
}

}  // namespace quillon::cli
