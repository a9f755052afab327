// libburn: one per process, started when the first drive is asked for.
#pragma once

#include <mutex>
#include <string>

#include "platform/disc_result.h"

namespace burn {  // libburn's own, in C++
struct burn_drive;
struct burn_drive_info;
}  // namespace burn

namespace quillon::platform {

using burn::burn_drive;
using burn::burn_drive_info;

// Held around calls of libburn, which is not made for several threads at a time; not while a disc
// is written.
std::recursive_mutex& burnMutex();

// A failure with libburn's own reason in its sentence. What it has to say goes nowhere else.
DiscResult burnFailure(HRESULT code, const std::string& address);
// Forgets what earlier calls have said.
void forgetBurnMessages();

// A drive that this process has for itself, as far as libburn goes.
class GrabbedDrive {
 public:
  GrabbedDrive() = default;
  ~GrabbedDrive() { release(false); }
  GrabbedDrive(GrabbedDrive&& other) noexcept;
  GrabbedDrive& operator=(GrabbedDrive&& other) noexcept;

  // The address is "/dev/sr0" or "stdio:/some/file". E_IMAPI_RECORDER_LOCKED for a drive that
  // another program uses.
  DiscResult grab(const std::string& address, bool closesTray);
  void release(bool opensTray);

  [[nodiscard]] bool isGrabbed() const { return infos_ != nullptr; }
  [[nodiscard]] burn_drive* drive() const;
  [[nodiscard]] const burn_drive_info& info() const { return *infos_; }

 private:
  burn_drive_info* infos_ = nullptr;
};

}  // namespace quillon::platform
