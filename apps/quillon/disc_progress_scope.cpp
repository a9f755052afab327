#include "disc_progress_scope.h"

#include "fileset/disc_room.h"
#include "recording/disc_interruption.h"
#include "terminal_text.h"

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

std::string endDiscWork(const DiscProgressScope& progress) {
  sayBelowProgress("Ending the work of the drive; a second signal leaves it as it is.");
  std::string told = platform::StopDiscOperations();
  if (!told.empty()) return told;
  return progress.hasBegun() ? "The drive had ended its work on the disc already."
                             : "The disc was not changed.";
}

void DiscProgressScope::show(const platform::DiscProgress& progress) {
  hasBegun_ = true;
  if (stage_ != progress.stage) {
    stage_ = progress.stage;
    bar_.begin(activityOf(progress.stage), progress.sectorsTotal * kDiscSectorBytes,
               ProgressUnit::Bytes);
  }
  bar_.advance(progress.sectorsDone * kDiscSectorBytes);
}

}  // namespace quillon::cli
