#include "completion.h"

namespace quillon::cli {

namespace {

// Where readline completes paths itself, it knows the quotation marks around them.
constexpr const char* kHead =
    R"(# Completion of quillon for bash, made from the program's own options.
_quillon() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
  # "--media=cd" comes as three words.
  if [[ $cur == '=' ]]; then
    cur=
  elif [[ $prev == '=' ]]; then
    prev=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  local command= isPath= words= i
  for ((i = 1; i < COMP_CWORD; i++)); do
    case "$command:${COMP_WORDS[i]}" in
)";
constexpr const char* kMiddle = R"(      *:--) isPath=1 ;;
    esac
  done
  COMPREPLY=()
  if [[ ! $isPath ]]; then
    case "$command:$prev" in
)";
constexpr const char* kOptions = R"(    esac
  fi
  if [[ $cur == -* && ! $isPath ]]; then
    case "$command" in
)";
constexpr const char* kPlaces = R"(    esac
    COMPREPLY=($(compgen -W "$words" -- "$cur"))
    return
  fi
  case "$command" in
)";
constexpr const char* kTail = R"(  esac
}
complete -F _quillon quillon
)";

// What offers a value, as commands of the script.
std::string offer(const WordKind& kind) {
  std::string text;
  if (kind.paths == WordKind::Paths::Directories) text += "compopt -o dirnames; ";
  if (kind.paths == WordKind::Paths::Files) text += "compopt -o default; ";
  if (kind.choices.empty()) return text;
  return text + "COMPREPLY=($(compgen -W \"" + joined(kind.choices, " ") + "\" -- \"$cur\")); ";
}

std::string inQuotes(const std::string& text) { return '"' + text + '"'; }

std::string optionsOf(const CommandWord& command) {
  std::string names;
  for (const OptionWord& option : command.options) {
    names += (names.empty() ? "" : " ") + joined(option.names, " ");
  }
  return names;
}

// The first place speaks for all: no command has places of different kinds that can be offered.
std::string wordsOf(const CommandWord& command) {
  if (!command.commands.empty()) {
    WordKind names;
    for (const CommandWord& below : command.commands) names.choices.push_back(below.name);
    return offer(names);
  }
  if (!command.places.empty()) return offer(command.places.front().value);
  WordKind options;
  options.choices = {optionsOf(command)};
  return offer(options);
}

}  // namespace

std::string bashCompletion(const CommandWord& program) {
  std::vector<const CommandWord*> all = everyCommand(program);
  std::string text = kHead;
  for (const CommandWord* command : all) {
    text += "      " + inQuotes(command->above + ":" + command->name) +
            ") command=" + inQuotes(command->path) + " ;;\n";
  }
  text += kMiddle;
  all.insert(all.begin(), &program);
  for (const CommandWord* command : all) {
    for (const OptionWord& option : command->options) {
      if (!option.hasValue) continue;
      std::string patterns;
      for (const std::string& name : option.names) {
        patterns += (patterns.empty() ? "" : "|") + inQuotes(command->path + ":" + name);
      }
      text += "      " + patterns + ") " + offer(option.value) + "return ;;\n";
    }
  }
  text += kOptions;
  for (const CommandWord* command : all) {
    text +=
        "      " + inQuotes(command->path) + ") words=" + inQuotes(optionsOf(*command)) + " ;;\n";
  }
  text += kPlaces;
  for (const CommandWord* command : all) {
    const std::string words = wordsOf(*command);
    if (!words.empty()) text += "    " + inQuotes(command->path) + ") " + words + ";;\n";
  }
  return text + kTail;
}

}  // namespace quillon::cli
