// The medium that a command reads: at a path, or the disc in a recorder.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "disc_medium.h"
#include "foundation/text.h"
#include "interrupt_guard.h"
#include "json_output.h"
#include "medium/medium_source.h"
#include "outcome.h"

namespace quillon::cli {

struct MediumChoice {
  std::string path;  // empty with --disc
  bool isDisc = false;
  std::string recorder;                     // empty: the first whose disc holds something
  std::optional<std::string> passwordFile;  // of a ZIP file
};

// What the commands have in common that read a medium.
struct ReadingOptions {
  MediumChoice medium;
  bool isJson = false;
  bool showsProgress = true;
  std::string logFile;
};

void addReadingOptions(CLI::App& command, ReadingOptions& options, const std::string& pathHelp);
// To be called when they are known; throws, as CLI11 does, for neither path nor disc.
void checkMediumChoice(const MediumChoice& choice);

// What was chosen. While a disc is open, signals let go of its drive before they end the process.
class ChosenMedium {
 public:
  // path: where the chosen one lies, as the command understands it.
  Outcome open(const MediumChoice& choice, TextView path);
  // The rest is for one that is open.
  [[nodiscard]] MediumSource& source() { return path_ ? *path_ : disc_.source(); }
  // Of a disc its kind, "image" or "zip"; empty for a directory, which may be anything.
  [[nodiscard]] std::string kind(const MediumChoice& choice) const;
  // Adds the members that say which medium it is, also of one that could not be opened.
  void addMembers(Json& object, const MediumChoice& choice) const;
  // The sectors that could not be read, but for one that is the outcome itself.
  [[nodiscard]] std::vector<std::string> failuresBeside(const Outcome& outcome) const;

 private:
  std::optional<InterruptGuard> guard_;
  std::unique_ptr<MediumSource> path_;
  DiscMedium disc_;
};

}  // namespace quillon::cli
