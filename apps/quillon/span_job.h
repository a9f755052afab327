// A publication on as many media as the objects need: each a whole file set of its own.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "publish_job.h"
#include "span_plan.h"
#include "span_state.h"

namespace quillon::cli {

struct SpanOptions {
  bool isWanted = false;
  // Of one medium, or less where the disc has less; none: that of the disc in the recorder.
  std::optional<std::uint64_t> capacityBytes;
  bool hasContentOnFirstOnly = false;
  bool isResuming = false;
};

// What one medium will hold.
struct SpanMediumPlan {
  std::unordered_set<std::string> files;  // as the user calls them
  std::size_t studies = 0;
  std::uint64_t bytes = 0;  // of the objects
  std::string newest;       // dates of studies, YYYYMMDD; empty: not known
  std::string oldest;
};

struct SpannedMedium {
  int number = 0;
  Published published;
};

struct SpanResult {
  CreateResult planned;  // of all objects, as a dry run tells
  std::vector<SpanMediumPlan> plan;
  std::vector<SpannedMedium> media;  // of this run
  Outcome outcome;
  std::vector<std::string> remarks;
};

class SpannedPublication {
 public:
  // Both have their root. audit, which is open, gets a record of each medium. onPlan hears of the
  // plan before the first medium is begun.
  SpannedPublication(const CreateOptions& create, const WriteOptions& write,
                     const SpanOptions& span, std::function<void()> keepRoot,
                     std::function<void(const SpanResult&)> onPlan, JobAudit& audit);

  SpanResult run();

 private:
  // Steps answer whether the job goes on.
  bool passes(Outcome step) {
    result_.outcome = std::move(step);
    return !result_.outcome.failed();
  }
  [[nodiscard]] bool askCapacity();
  [[nodiscard]] bool makePlan();
  [[nodiscard]] bool divide(std::uint64_t objectBytes, std::vector<SpanPart>& parts);
  void takeParts(const std::vector<SpanPart>& parts);
  // The sectors beyond the capacity of the medium that has the most.
  [[nodiscard]] bool lookAtParts(std::uint64_t& excessSectors);
  [[nodiscard]] CreateOptions createOptionsOf(int number) const;
  [[nodiscard]] WriteOptions writeOptionsOf(int number) const;
  [[nodiscard]] bool isOnDisc() const { return !write_.target && !write_.image && !write_.zip; }
  [[nodiscard]] bool begin();
  [[nodiscard]] bool askPlaces();
  [[nodiscard]] std::string planText() const;
  [[nodiscard]] bool isThere(int number) const;
  [[nodiscard]] bool publish(int number);
  void tellHowToGoOn();

  const CreateOptions& create_;
  WriteOptions write_;
  const SpanOptions& span_;
  std::function<void()> keepRoot_;
  std::function<void(const SpanResult&)> onPlan_;
  JobAudit& audit_;
  SpanResult result_;
  std::uint64_t capacitySectors_ = 0;
  std::optional<SpanState> state_;
  std::set<int> done_;
};

}  // namespace quillon::cli
