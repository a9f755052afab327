// The disc in a recorder as a medium, and the choice between one and a path.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/text.h"
#include "interrupt_guard.h"
#include "medium/medium_source.h"
#include "outcome.h"

namespace quillon::cli {

// Nobody else has the recorder while it lives. Once the disc operations of the process have been
// stopped, reading does not come back: the recorder is let go of, and the process ends.
class DiscMedium {
 public:
  DiscMedium() = default;
  DiscMedium(const DiscMedium&) = delete;
  DiscMedium& operator=(const DiscMedium&) = delete;

  // The one of that name, or for an empty one the first whose disc holds something. A drive that is
  // becoming ready is waited for.
  Outcome open(const std::string& recorder);
  // The rest is for one that is open.
  [[nodiscard]] MediumSource& source() { return *source_; }
  [[nodiscard]] const std::string& recorder() const { return recorder_; }
  // A sentence for each sector that could not be read; of many the first ones.
  [[nodiscard]] const std::vector<std::string>& failures() const { return failures_; }

 private:
  std::vector<std::string> failures_;  // outlives what adds to it
  std::string recorder_;
  std::unique_ptr<MediumSource> source_;
};

struct MediumChoice {
  std::string path;  // empty with --disc
  bool isDisc = false;
  std::string recorder;  // empty: the first whose disc holds something
};

// PATH, --disc and --recorder.
void addMediumChoice(CLI::App& command, MediumChoice& choice, const std::string& pathHelp);
// To be called when they are known; throws, as CLI11 does, for neither path nor disc.
void checkMediumChoice(const MediumChoice& choice);

// What was chosen. While a disc is open, signals let go of its drive before they end the process.
class ChosenMedium {
 public:
  // path: where the chosen one lies, as the command understands it.
  Outcome open(const MediumChoice& choice, TextView path);
  // The rest is for one that is open.
  [[nodiscard]] MediumSource& source() { return path_ ? *path_ : disc_.source(); }
  // Members of a JSON object that say which medium it is, also of one that could not be opened.
  [[nodiscard]] std::string jsonMembers(const MediumChoice& choice) const;
  // The sectors that could not be read, but for one that is the outcome itself.
  [[nodiscard]] std::vector<std::string> failuresBeside(const Outcome& outcome) const;

 private:
  std::optional<InterruptGuard> guard_;
  std::unique_ptr<MediumSource> path_;
  DiscMedium disc_;
};

}  // namespace quillon::cli
