// A recorder that is a directory (disc_record.h says which files it has).
#pragma once

#include <memory>
#include <string>

#include "recorders/disc_record.h"
#include "recorders/recorder.h"
#include "recorders/recorder_lock.h"
#include "win32/whole_file.h"

namespace quillon::platform {

class DiscRun;
class FaultPlan;

class VirtualRecorder final : public Recorder {
 public:
  explicit VirtualRecorder(std::string directory);

  [[nodiscard]] const std::string& directory() const { return directory_; }

  DiscResult enter(std::string_view operation) override;
  DiscResult media(MediaFacts& facts) override;
  [[nodiscard]] std::u16string owner() override;
  DiscResult currentPages(CurrentPages& pages) override;

  // The record of the disc as clients see it; nothing when there is none.
  DiscResult record(std::optional<DiscRecord>& record);

 protected:
  DiscResult lock(bool force, std::u16string_view clientName) override;
  DiscResult unlock() override;
  DiscResult burn(const WriteRequest& request) override;
  DiscResult blank(bool full, const DiscProgressCallback& progress) override;
  DiscResult openTray() override;
  DiscResult fetch(std::uint32_t sector, std::uint32_t count, void* bytes) override;

 private:
  // Opens the contents for reading, once in a while of exclusive access.
  DiscResult openImage();
  DiscResult burnDisc(DiscRecord record, const WriteRequest& request);
  DiscResult blankDisc(DiscRecord record, bool full, const DiscProgressCallback& progress);
  // Ends a run that failed: the disc is damaged, or out.
  DiscResult giveUp(DiscRecord record, const DiscRun& run, DiscResult reason);

  std::string directory_;
  RecorderLock lock_;
  Descriptor image_;                   // being read
  std::shared_ptr<FaultPlan> faults_;  // null for a recorder that behaves
};

// What a record says, as the interfaces put it.
MediaFacts factsOf(const DiscRecord& record);

}  // namespace quillon::platform
