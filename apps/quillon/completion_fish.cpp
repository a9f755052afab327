#include "completion.h"

namespace quillon::cli {

namespace {

constexpr const char* kHead =
    R"(# Completion of quillon for fish, made from the program's own options.
function __quillon_at -d 'Whether the line is at this command'
  set -l words (commandline -opc)
  set -e words[1]
  set -l command ''
  for word in $words
    switch "$command:$word"
)";
constexpr const char* kTail = R"(    end
  end
  test "$command" = "$argv[1]"
end
complete -c quillon -f
)";

std::string inQuotes(const std::string& text) {
  std::string out = "'";
  for (const char c : text) {
    if (c == '\'' || c == '\\') out += '\\';
    out += c;
  }
  return out + "'";
}

std::string lineOf(const CommandWord& command) {
  return "complete -c quillon -n " + inQuotes("__quillon_at \"" + command.path + "\"");
}

std::string offer(const WordKind& kind) {
  std::string choices = joined(kind.choices, " ");
  switch (kind.paths) {
    case WordKind::Paths::Directories:
      return " -a '(__fish_complete_directories)'";
    case WordKind::Paths::Files:
      return " -F" + (choices.empty() ? "" : " -a " + inQuotes(choices));
    case WordKind::Paths::None:
      break;
  }
  return choices.empty() ? "" : " -a " + inQuotes(choices);
}

std::string optionLine(const CommandWord& command, const OptionWord& option) {
  std::string line = lineOf(command);
  for (const std::string& name : option.names) {
    line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
  }
  if (option.hasValue) {
    line += option.value.paths == WordKind::Paths::Files ? " -r" : " -x";
    line += offer(option.value);
  }
  return line + " -d " + inQuotes(option.description) + "\n";
}

std::string linesOf(const CommandWord& command) {
  std::string text;
  for (const CommandWord& below : command.commands) {
    text += lineOf(command) + " -a " + below.name + " -d " + inQuotes(below.description) + "\n";
  }
  for (const OptionWord& option : command.options) text += optionLine(command, option);
  // The first place speaks for all, as in bash.
  if (command.places.empty()) return text;
  const std::string place = offer(command.places.front().value);
  return place.empty() ? text : text + lineOf(command) + place + "\n";
}

}  // namespace

std::string fishCompletion(const CommandWord& program) {
  std::string text = kHead;
  std::string lines = linesOf(program);
  for (const CommandWord* command : everyCommand(program)) {
    text += "      case " + inQuotes(command->above + ":" + command->name) +
            "\n        set command " + inQuotes(command->path) + "\n";
    lines += linesOf(*command);
  }
  return text + kTail + lines;
}

}  // namespace quillon::cli
