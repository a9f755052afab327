#include "discmastering/optical/burn_library.h"

#include <unistd.h>

#include <array>
#include <utility>

#include "discmastering/optical/libburn.h"
#include "platform/imapi2_errors.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

// libburn takes texts that it does not change as char*.
struct Argument {
  explicit Argument(std::string argument) : text(std::move(argument)) {}
  operator char*() { return text.data(); }  // NOLINT(google-explicit-constructor)
  std::string text;
};

bool startLibrary() {
  static const bool isStarted = [] {
    if (burn_initialize() == 0) return false;
    burn_msgs_set_severities(Argument("SORRY"), Argument("NEVER"), Argument(""));
    // Exclusive, without waiting, and never at the price of the process.
    burn_preset_device_open(1, 0, 0);
    return true;
  }();
  return isStarted;
}

std::string lastMessage() {
  std::array<char, BURN_MSGS_MESSAGE_LEN> text{};
  std::array<char, 80> severity{};
  int code = 0;
  int error = 0;
  std::string last;
  while (burn_msgs_obtain(Argument("SORRY"), &code, text.data(), &error, severity.data()) == 1) {
    last = text.data();
  }
  while (!last.empty() && (last.back() == '.' || last.back() == '\n' || last.back() == ' ')) {
    last.pop_back();
  }
  return last;
}

}  // namespace

std::recursive_mutex& burnMutex() {
  static std::recursive_mutex mutex;
  return mutex;
}

DiscResult burnFailure(HRESULT code, const std::string& address) {
  const std::lock_guard lock(burnMutex());
  const std::string reason = lastMessage();
  if (reason.empty()) return code;
  return {code, wideFromNative("The drive \"" + address + "\" failed: " + reason + ".")};
}

void forgetBurnMessages() {
  const std::lock_guard lock(burnMutex());
  static_cast<void>(lastMessage());
}

GrabbedDrive::GrabbedDrive(GrabbedDrive&& other) noexcept
    : infos_(std::exchange(other.infos_, nullptr)) {}

GrabbedDrive& GrabbedDrive::operator=(GrabbedDrive&& other) noexcept {
  std::swap(infos_, other.infos_);
  return *this;
}

DiscResult GrabbedDrive::grab(const std::string& address, bool closesTray) {
  const std::lock_guard lock(burnMutex());
  if (!startLibrary()) return {E_FAIL, u"The library for optical drives cannot be started."};
  release(false);
  forgetBurnMessages();
  const int found = burn_drive_scan_and_grab(&infos_, Argument(address), closesTray ? 1 : 0);
  if (found > 0) return S_OK;
  infos_ = nullptr;
  if (address.starts_with('/') && ::access(address.c_str(), F_OK) == 0) {
    return E_IMAPI_RECORDER_LOCKED;
  }
  return burnFailure(E_IMAPI_RECORDER_INVALID_RESPONSE_FROM_DEVICE, address);
}

void GrabbedDrive::release(bool opensTray) {
  if (infos_ == nullptr) return;
  const std::lock_guard lock(burnMutex());
  burn_drive_release(infos_->drive, opensTray ? 1 : 0);
  burn_drive_info_free(infos_);
  infos_ = nullptr;
}

burn_drive* GrabbedDrive::drive() const { return infos_->drive; }

}  // namespace quillon::platform
