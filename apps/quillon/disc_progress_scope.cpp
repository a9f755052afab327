#include "disc_progress_scope.h"

namespace quillon::cli {

namespace {

const char* activityOf(platform::DiscStage stage) {
  switch (stage) {
    case platform::DiscStage::Erasing:
      return "Erasing the disc";
    case platform::DiscStage::Writing:
      return "Writing the disc";
    case platform::DiscStage::Closing:
      break;
  }
  return "Closing the disc";
}

}  // namespace

DiscProgressScope::DiscProgressScope(ProgressBar& bar) : bar_(bar) {
  platform::SetDiscProgress([this](const platform::DiscProgress& progress) { show(progress); });
}

DiscProgressScope::~DiscProgressScope() { platform::SetDiscProgress({}); }

void DiscProgressScope::show(const platform::DiscProgress& progress) {
  if (stage_ != progress.stage) {
    stage_ = progress.stage;
    bar_.begin(activityOf(progress.stage), progress.sectorsTotal);
  }
  bar_.advance(progress.sectorsDone);
}

}  // namespace quillon::cli
