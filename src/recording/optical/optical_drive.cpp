#include "optical_drive.h"

#include "drive_device.h"
#include "drive_facts.h"
#include "drive_run.h"
#include "recorders/catalogue.h"
#include "run_parts.h"

namespace quillon::platform {

OpticalDrive::OpticalDrive(std::string address)
    : address_(std::move(address)), drive_(OpenDrive::at(address_)) {
  identity_ = identityOfDevice(address_);
  if (isFileAddress(address_)) {
    describeFile(identity_);
  } else {
    drive_.describe(identity_);
  }
}

OpticalDrive::~OpticalDrive() {
  if (isHeld()) drive_.giveBack();
}

DiscResult OpticalDrive::media(MediaFacts& facts) {
  facts = MediaFacts{};
  return drive_.ask(this, [&](const GrabbedDrive& grabbed) { return readMedia(grabbed, facts); });
}

DiscResult OpticalDrive::currentPages(CurrentPages& pages) {
  pages = CurrentPages{};
  const DiscResult result = drive_.ask(this, [&](const GrabbedDrive& grabbed) {
    pages = readCurrentPages(grabbed);
    return DiscResult();
  });
  return result.code == E_IMAPI_RECORDER_LOCKED ? DiscResult() : result;
}

DiscResult OpticalDrive::lock(bool force, std::u16string_view clientName) {
  DiscResult result = drive_.take(this, force, clientName);
  // What is read then comes from the disk.
  if (!result.failed()) static_cast<void>(syncFile(address_));
  return result;
}

DiscResult OpticalDrive::unlock() {
  drive_.giveBack();
  return S_OK;
}

DiscResult OpticalDrive::makeReady() {
  return drive_.ask(this, [](const GrabbedDrive&) { return DiscResult(); });
}

DiscResult OpticalDrive::burn(const WriteRequest& request) {
  DiscResult result = makeReady();
  return result.failed() ? result : writeInDrive(drive_.grabbed(), address_, request);
}

DiscResult OpticalDrive::blank(bool full, const DiscProgressCallback& progress) {
  DiscResult result = makeReady();
  return result.failed() ? result : eraseInDrive(drive_.grabbed(), address_, full, progress);
}

DiscResult OpticalDrive::openTray() {
  if (isFileAddress(address_)) return S_OK;
  DiscResult result = makeReady();
  return result.failed() ? result : drive_.openTray();
}

DiscResult OpticalDrive::fetch(std::uint32_t sector, std::uint32_t count, void* bytes) {
  DiscResult result = makeReady();
  return result.failed() ? result : readInDrive(drive_.grabbed(), address_, sector, count, bytes);
}

namespace {

RecorderList listDrives(std::string_view only) {
  std::vector<std::string> addresses = configuredDrives();
  if (addresses.empty()) addresses = drivesOfTheMachine();
  RecorderList drives;
  for (std::string& address : addresses) {
    if (!only.empty() && address != only) continue;
    drives.push_back(std::make_unique<OpticalDrive>(std::move(address)));
  }
  return drives;
}

}  // namespace
}  // namespace quillon::platform

extern "C" bool quillon_optical_drives;
bool quillon_optical_drives = quillon::platform::registerDriveAccess(
    {quillon::platform::listDrives, quillon::platform::OpenDrive::closeAll});
