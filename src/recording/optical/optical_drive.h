// A drive of the machine, or a file that libburn treats as one, as one client has it.
#pragma once

#include <string>

#include "open_drive.h"
#include "recorders/optical_library.h"

namespace quillon::platform {

class OpticalDrive final : public OpticalDevice {
 public:
  OpticalDrive(std::string address, DriveIdentity& identity);
  ~OpticalDrive() override;
  OpticalDrive(const OpticalDrive&) = delete;
  OpticalDrive& operator=(const OpticalDrive&) = delete;

  DiscResult media(MediaFacts& facts) noexcept override;
  DiscResult currentPages(CurrentPages& pages) noexcept override;
  std::u16string owner() noexcept override;
  DiscResult take(bool force, std::u16string_view clientName) noexcept override;
  void giveBack() noexcept override;
  DiscResult burn(const WriteRequest& request) noexcept override;
  DiscResult blank(bool full, const DiscProgressCallback& progress) noexcept override;
  DiscResult openTray() noexcept override;
  DiscResult fetch(std::uint32_t sector, std::uint32_t count, void* bytes) noexcept override;

 private:
  // The drive is open for what follows, also after its tray was opened.
  DiscResult makeReady();

  std::string address_;
  OpenDrive& drive_;
  bool isTaken_ = false;
};

}  // namespace quillon::platform
