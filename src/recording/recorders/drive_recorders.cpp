#include "drive_recorders.h"

#include <new>
#include <utility>

#include "optical_loading.h"
#include "recorders/machine_drives.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

class OpticalRecorder final : public Recorder {
 public:
  OpticalRecorder(const OpticalLibrary& library, const std::string& address)
      : device_(library.open(address, identity_)) {
    if (device_ == nullptr) throw std::bad_alloc();
  }
  ~OpticalRecorder() override = default;
  OpticalRecorder(const OpticalRecorder&) = delete;
  OpticalRecorder& operator=(const OpticalRecorder&) = delete;

  DiscResult media(MediaFacts& facts) override { return device_->media(facts); }
  [[nodiscard]] std::u16string owner() override { return device_->owner(); }
  DiscResult currentPages(CurrentPages& pages) override { return device_->currentPages(pages); }

 protected:
  DiscResult lock(bool force, std::u16string_view clientName) override {
    return device_->take(force, clientName);
  }
  DiscResult unlock() override {
    device_->giveBack();
    return S_OK;
  }
  DiscResult burn(const WriteRequest& request) override { return device_->burn(request); }
  DiscResult blank(bool full, const DiscProgressCallback& progress) override {
    return device_->blank(full, progress);
  }
  DiscResult openTray() override { return device_->openTray(); }
  DiscResult fetch(std::uint32_t sector, std::uint32_t count, void* bytes) override {
    return device_->fetch(sector, count, bytes);
  }

 private:
  std::unique_ptr<OpticalDevice> device_;
};

class UnreachableDrive final : public Recorder {
 public:
  UnreachableDrive(const std::string& address, const std::string& problem)
      : failure_(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND),
                 wideFromNative("The drive \"" + address + "\" cannot be used: " + problem +
                                kWhenVirtual)) {
    identity_ = identityOfDevice(address);
  }

  DiscResult enter(std::string_view) override { return failure_; }
  DiscResult media(MediaFacts& facts) override {
    facts = MediaFacts{};
    return failure_;
  }
  [[nodiscard]] std::u16string owner() override { return {}; }
  DiscResult currentPages(CurrentPages& pages) override {
    pages = CurrentPages{};
    return S_OK;
  }

 protected:
  DiscResult lock(bool, std::u16string_view) override { return failure_; }
  DiscResult unlock() override { return failure_; }
  DiscResult burn(const WriteRequest&) override { return failure_; }
  DiscResult blank(bool, const DiscProgressCallback&) override { return failure_; }
  DiscResult openTray() override { return failure_; }
  DiscResult fetch(std::uint32_t, std::uint32_t, void*) override { return failure_; }

 private:
  DiscResult failure_;
};

}  // namespace

RecorderList listDrives(std::string_view only) {
  std::vector<std::string> addresses = configuredDrives();
  if (addresses.empty()) addresses = drivesOfTheMachine();
  if (!only.empty()) std::erase_if(addresses, [=](const auto& address) { return address != only; });
  RecorderList drives;
  if (addresses.empty()) return drives;  // and nothing is loaded
  const OpticalAccess access = loadOpticalLibrary();
  for (const std::string& address : addresses) {
    if (access.library != nullptr) {
      drives.push_back(std::make_unique<OpticalRecorder>(*access.library, address));
    } else {
      drives.push_back(std::make_unique<UnreachableDrive>(address, access.problem));
    }
  }
  return drives;
}

}  // namespace quillon::platform
