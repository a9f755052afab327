#include "burn_library.h"

#include <cstdio>
#include <utility>

#include "libburn.h"
#include "platform/imapi2_errors.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

// libburn takes texts that it does not change as char*.
struct Argument {
  explicit Argument(std::string argument) : text(std::move(argument)) {}
  operator char*() { return text.data(); }
  std::string text;
};

bool startLibrary() {
  static const bool isStarted = [] {
    if (burn_initialize() == 0) return false;
    burn_msgs_set_severities(Argument("SORRY"), Argument("NEVER"), Argument(""));
    return true;
  }();
  return isStarted;
}

// What follows the first message are its circumstances, the bytes of the command for one.
std::string firstMessage() {
  std::array<char, BURN_MSGS_MESSAGE_LEN> text{};
  std::array<char, 80> severity{};
  int code = 0;
  int error = 0;
  std::string first;
  while (burn_msgs_obtain(Argument("SORRY"), &code, text.data(), &error, severity.data()) == 1) {
    if (first.empty() && !std::string_view(text.data()).starts_with("CDB=")) first = text.data();
  }
  while (!first.empty() && (first.back() == '.' || first.back() == '\n' || first.back() == ' ')) {
    first.pop_back();
  }
  return first;
}

}  // namespace

BurnVersion::BurnVersion() {
  int major = 0;
  int minor = 0;
  int micro = 0;
  burn_version(&major, &minor, &micro);
  std::snprintf(text.data(), text.size(), "%d.%d.%d", major, minor, micro);
}

std::recursive_mutex& burnMutex() {
  static std::recursive_mutex mutex;
  return mutex;
}

std::string takeBurnMessage() {
  const std::lock_guard lock(burnMutex());
  return firstMessage();
}

DiscResult burnFailure(HRESULT code, const std::string& address) {
  const std::string reason = takeBurnMessage();
  if (reason.empty()) return code;
  return {code, wideFromNative("The drive \"" + address + "\" failed: " + reason + ".")};
}

void forgetBurnMessages() { static_cast<void>(takeBurnMessage()); }

DiscResult GrabbedDrive::grab(const std::string& address, GrabMode mode) {
  const std::lock_guard lock(burnMutex());
  if (!startLibrary()) return {E_FAIL, u"The library for optical drives cannot be started."};
  release(Release::Unlock);
  forgetBurnMessages();
  // Without waiting for a drive that does not answer, and never at the price of the process.
  burn_preset_device_open(mode == GrabMode::BesideTheSystem ? 0 : 1, 0, 0);
  if (burn_drive_scan_and_grab(&infos_, Argument(address), 0) > 0) return S_OK;
  if (infos_ != nullptr) burn_drive_info_free(infos_);
  infos_ = nullptr;
  return burnFailure(E_IMAPI_RECORDER_INVALID_RESPONSE_FROM_DEVICE, address);
}

void GrabbedDrive::release(Release way) {
  if (infos_ == nullptr) return;
  const std::lock_guard lock(burnMutex());
  if (way == Release::LeaveLocked) {
    burn_drive_leave_locked(infos_->drive, 0);
  } else {
    burn_drive_release(infos_->drive, way == Release::OpenTray ? 1 : 0);
  }
  burn_drive_info_free(infos_);
  infos_ = nullptr;
}

burn_drive* GrabbedDrive::drive() const { return infos_->drive; }

}  // namespace quillon::platform
