// A drive of the machine, or a file that libburn treats as one.
#pragma once

#include <string>

#include "open_drive.h"
#include "recorders/recorder.h"

namespace quillon::platform {

class OpticalDrive final : public Recorder {
 public:
  explicit OpticalDrive(std::string address);
  ~OpticalDrive() override;
  OpticalDrive(const OpticalDrive&) = delete;
  OpticalDrive& operator=(const OpticalDrive&) = delete;

  DiscResult media(MediaFacts& facts) override;
  [[nodiscard]] std::u16string owner() override { return drive_.owner(); }
  DiscResult currentPages(CurrentPages& pages) override;

 protected:
  DiscResult lock(bool force, std::u16string_view clientName) override;
  DiscResult unlock() override;
  DiscResult burn(const WriteRequest& request) override;
  DiscResult blank(bool full, const DiscProgressCallback& progress) override;
  DiscResult openTray() override;
  DiscResult fetch(std::uint32_t sector, std::uint32_t count, void* bytes) override;

 private:
  // The drive is open for what follows, also after its tray was opened.
  DiscResult makeReady();

  std::string address_;
  OpenDrive& drive_;
};

}  // namespace quillon::platform
