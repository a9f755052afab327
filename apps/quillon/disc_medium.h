// The disc in a recorder as a medium.
#pragma once

#include <memory>
#include <string>
#include <vector>

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
  // The kind of disc, as quillon disc has it.
  [[nodiscard]] const std::string& media() const { return media_; }
  // A sentence for each sector that could not be read; of many the first ones.
  [[nodiscard]] const std::vector<std::string>& failures() const { return failures_; }

 private:
  std::vector<std::string> failures_;  // outlives what adds to it
  std::string recorder_;
  std::string media_;
  std::unique_ptr<MediumSource> source_;
};

}  // namespace quillon::cli
