// libburn: one per process, started when the first drive is asked something.
#pragma once

#include <array>
#include <mutex>
#include <string>

#include "recording/disc_result.h"

namespace burn {  // libburn's own, in C++
struct burn_drive;
struct burn_drive_info;
}  // namespace burn

namespace quillon::platform {

using burn::burn_drive;
using burn::burn_drive_info;

// The version that is loaded, which need not be started for that: "1.5.4".
struct BurnVersion {
  BurnVersion();
  std::array<char, 40> text{};
};

// Held around calls of libburn, which is not made for several threads at a time; not while a disc
// is written.
std::recursive_mutex& burnMutex();

// A failure with libburn's own reason in its sentence, which is the first thing it has said since
// forgetBurnMessages. It goes nowhere else.
DiscResult burnFailure(HRESULT code, const std::string& address);
// The reason alone, without a full stop; empty for none.
std::string takeBurnMessage();
// Forgets what earlier calls have said.
void forgetBurnMessages();

enum class GrabMode {
  Alone,            // nobody else opens the drive
  BesideTheSystem,  // which reads the disc; for questions only
};
enum class Release {
  Unlock,
  LeaveLocked,  // the system, which has locked it, unlocks it
  OpenTray,     // there is no answer whether it opens
};

// A drive that this process has open in libburn.
class GrabbedDrive {
 public:
  GrabbedDrive() = default;
  ~GrabbedDrive() { release(Release::Unlock); }
  GrabbedDrive(const GrabbedDrive&) = delete;
  GrabbedDrive& operator=(const GrabbedDrive&) = delete;

  // The address is "/dev/sr0" or "stdio:/some/file". Spins the drive up.
  DiscResult grab(const std::string& address, GrabMode mode);
  // Stops the drive.
  void release(Release way);

  [[nodiscard]] bool isGrabbed() const { return infos_ != nullptr; }
  [[nodiscard]] burn_drive* drive() const;
  [[nodiscard]] const burn_drive_info& info() const { return *infos_; }

 private:
  burn_drive_info* infos_ = nullptr;
};

}  // namespace quillon::platform
