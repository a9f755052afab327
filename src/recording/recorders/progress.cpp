#include "recorders/progress.h"

namespace quillon::platform {

ProgressReporter::ProgressReporter(const DiscProgressCallback& callback, DiscStage stage,
                                   std::uint64_t sectorsTotal)
    : callback_(callback), progress_{stage, 0, sectorsTotal} {
  report();
}

ProgressReporter::~ProgressReporter() {
  if (progress_.sectorsDone != reported_) report();
}

void ProgressReporter::reach(std::uint64_t sectorsDone) {
  progress_.sectorsDone = sectorsDone;
  if (callback_ && Clock::now() - last_ >= kInterval) report();
}

void ProgressReporter::report() {
  if (!callback_) return;
  last_ = Clock::now();
  reported_ = progress_.sectorsDone;
  callback_(progress_);
}

}  // namespace quillon::platform
