// The program's commands and options as the shells' completions need them, read from the options
// that CLI11 parses by.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace quillon::cli {

// What a shell offers for a value: of choices, of paths, of both, or nothing.
struct WordKind {
  enum class Paths { None, Directories, Files };
  std::string typeName;
  std::vector<std::string> choices;
  Paths paths = Paths::None;
};

struct OptionWord {
  std::vector<std::string> names;  // "-r", "--recursive"; none for what stands by its place
  std::string description;
  bool hasValue = false;
  bool isRepeatable = false;
  WordKind value;
};

struct CommandWord {
  std::string above;  // "disc"
  std::string path;   // "disc insert"; empty for the program
  std::string name;   // "insert"
  std::string description;
  std::vector<OptionWord> options;
  std::vector<OptionWord> places;  // in their order; the last one may be repeatable
  std::vector<CommandWord> commands;
};

CommandWord commandTree(CLI::App& program);

// Makes every option and place that takes a path refuse an empty one, as a variable of a script
// gives that was never set: it would be the working directory.
void refuseEmptyPaths(CLI::App& program);

// Names that a completion offers for an option: for those that are too many for the help, or of
// which others are right as well.
CLI::Validator offers(const std::vector<std::string>& names);

// With a separator between.
std::string joined(const std::vector<std::string>& words, const char* separator);

}  // namespace quillon::cli
