// A drive of the machine, or a file that libburn treats as one.
#pragma once

#include <string>

#include "discmastering/optical/burn_library.h"
#include "discmastering/recorder.h"
#include "discmastering/recorder_lock.h"

namespace quillon::platform {

class OpticalDrive final : public Recorder {
 public:
  explicit OpticalDrive(std::string address);

  DiscResult media(MediaFacts& facts) override;
  [[nodiscard]] std::u16string owner() override { return lock_.owner(); }
  DiscResult currentPages(CurrentPages& pages) override;

 protected:
  DiscResult lock(bool force, std::u16string_view clientName) override;
  DiscResult unlock() override;
  DiscResult burn(const WriteRequest& request) override;
  DiscResult blank(bool full, const DiscProgressCallback& progress) override;
  DiscResult openTray() override;
  DiscResult closeTray() override;

 private:
  // Runs the question on the drive, which is grabbed for it unless this client has it.
  template <typename Question>
  DiscResult ask(Question question);

  std::string address_;
  RecorderLock lock_;
  GrabbedDrive held_;
};

}  // namespace quillon::platform
