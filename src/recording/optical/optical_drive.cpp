#include "optical_drive.h"

#include <exception>
#include <new>

#include "drive_device.h"
#include "drive_facts.h"
#include "drive_run.h"
#include "run_parts.h"

namespace quillon::platform {
namespace {

// What is thrown stays here.
template <typename Operation>
DiscResult answer(Operation operation) noexcept {
  try {
    return operation();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (const std::exception&) {
    return E_UNEXPECTED;
  }
}

}  // namespace

OpticalDrive::OpticalDrive(std::string address, DriveIdentity& identity)
    : address_(std::move(address)), drive_(OpenDrive::at(address_)) {
  identity = identityOfDevice(address_);
  if (isFileAddress(address_)) {
    describeFile(identity);
  } else {
    drive_.describe(identity);
  }
}

OpticalDrive::~OpticalDrive() { giveBack(); }

DiscResult OpticalDrive::media(MediaFacts& facts) noexcept {
  return answer([&] {
    facts = MediaFacts{};
    return drive_.ask(this, [&](const GrabbedDrive& grabbed) { return readMedia(grabbed, facts); });
  });
}

DiscResult OpticalDrive::currentPages(CurrentPages& pages) noexcept {
  return answer([&] {
    pages = CurrentPages{};
    const DiscResult result = drive_.ask(this, [&](const GrabbedDrive& grabbed) {
      pages = readCurrentPages(grabbed);
      return DiscResult();
    });
    return result.code == E_IMAPI_RECORDER_LOCKED ? DiscResult() : result;
  });
}

std::u16string OpticalDrive::owner() noexcept {
  std::u16string name;
  static_cast<void>(answer([&] {
    name = drive_.owner();
    return DiscResult();
  }));
  return name;
}

DiscResult OpticalDrive::take(bool force, std::u16string_view clientName) noexcept {
  return answer([&] {
    DiscResult result = drive_.take(this, force, clientName);
    if (result.failed()) return result;
    isTaken_ = true;
    // What is read then comes from the disk.
    static_cast<void>(syncFile(address_));
    return result;
  });
}

void OpticalDrive::giveBack() noexcept {
  if (!isTaken_) return;
  isTaken_ = false;
  static_cast<void>(answer([&] {
    drive_.giveBack();
    return DiscResult();
  }));
}

DiscResult OpticalDrive::makeReady() {
  return drive_.ask(this, [](const GrabbedDrive&) { return DiscResult(); });
}

DiscResult OpticalDrive::burn(const WriteRequest& request) noexcept {
  return answer([&] {
    DiscResult result = makeReady();
    return result.failed() ? result : writeInDrive(drive_.grabbed(), address_, request);
  });
}

DiscResult OpticalDrive::blank(bool full, const DiscProgressCallback& progress) noexcept {
  return answer([&] {
    DiscResult result = makeReady();
    return result.failed() ? result : eraseInDrive(drive_.grabbed(), address_, full, progress);
  });
}

DiscResult OpticalDrive::openTray() noexcept {
  return answer([&]() -> DiscResult {
    if (isFileAddress(address_)) return S_OK;
    DiscResult result = makeReady();
    return result.failed() ? result : drive_.openTray();
  });
}

DiscResult OpticalDrive::fetch(std::uint32_t sector, std::uint32_t count, void* bytes) noexcept {
  return answer([&] {
    DiscResult result = makeReady();
    return result.failed() ? result : readInDrive(drive_.grabbed(), address_, sector, count, bytes);
  });
}

}  // namespace quillon::platform
