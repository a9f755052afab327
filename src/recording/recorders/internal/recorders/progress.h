// Telling how far a disc operation is, no more often than a reader can follow.
#pragma once

#include <chrono>

#include "recording/disc_progress.h"

namespace quillon::platform {

// One stage: reports its start, at most ten steps a second, and what was reached at its end. The
// callback must outlive it and must not throw.
class ProgressReporter {
 public:
  ProgressReporter(const DiscProgressCallback& callback, DiscStage stage,
                   std::uint64_t sectorsTotal);
  ~ProgressReporter();
  ProgressReporter(const ProgressReporter&) = delete;
  ProgressReporter& operator=(const ProgressReporter&) = delete;

  void reach(std::uint64_t sectorsDone);

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr Clock::duration kInterval = std::chrono::milliseconds(100);

  void report();

  const DiscProgressCallback& callback_;
  DiscProgress progress_;
  std::uint64_t reported_ = 0;
  Clock::time_point last_;
};

// What SetDiscProgress was last given.
DiscProgressCallback discProgressCallback();

}  // namespace quillon::platform
