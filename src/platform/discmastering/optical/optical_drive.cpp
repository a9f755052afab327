#include "discmastering/optical/optical_drive.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/cdrom.h>
#include <mntent.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <memory>

#include "discmastering/catalogue.h"
#include "discmastering/optical/drive_facts.h"
#include "discmastering/optical/drive_run.h"
#include "discmastering/recorder_store.h"
#include "win32/environment.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

bool isFile(const std::string& address) { return address.starts_with(kFileAddress); }

// Beside the virtual recorders, so that all clients of one user meet there. Users exclude each
// other by the device itself.
std::string lockPathOf(const std::string& address) {
  const std::string store = recorderStoreDirectory();
  makeDirectories(store);
  std::string name = address;
  std::replace(name.begin(), name.end(), '/', '-');
  return store + "/" + name + ".lock";
}

std::u16string readAttribute(const std::string& device, const char* name) {
  std::string text;
  const std::string block = device.substr(device.rfind('/') + 1);
  if (!readFile("/sys/class/block/" + block + "/device/" + name, text)) return {};
  text.resize(text.find_last_not_of(" \n") + 1);
  return wideFromNative(text);
}

// Where the disc is mounted; the device where it is not.
std::vector<std::u16string> volumePathsOf(const std::string& device) {
  std::vector<std::u16string> paths;
  const std::unique_ptr<FILE, int (*)(FILE*)> mounts(::setmntent("/proc/self/mounts", "re"),
                                                     &::endmntent);
  while (mounts != nullptr) {
    const mntent* entry = ::getmntent(mounts.get());
    if (entry == nullptr) break;
    if (device == entry->mnt_fsname) paths.push_back(wideFromNative(entry->mnt_dir) + u"/");
  }
  if (paths.empty()) paths.push_back(wideFromNative(device));
  return paths;
}

// What the kernel knows of a drive that somebody else uses.
void readKernelFacts(const std::string& device, DriveIdentity& identity) {
  const Descriptor drive(::open(device.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!drive.isOpen()) return;
  const int able = ::ioctl(drive.get(), CDROM_GET_CAPABILITY, 0);
  if (able < 0) return;
  const auto addIf = [&](int capability, IMAPI_MEDIA_PHYSICAL_TYPE type) {
    if ((able & capability) != 0) identity.writableTypes.push_back(type);
  };
  addIf(CDC_CD_R, IMAPI_MEDIA_TYPE_CDR);
  addIf(CDC_CD_RW, IMAPI_MEDIA_TYPE_CDRW);
  addIf(CDC_DVD_R, IMAPI_MEDIA_TYPE_DVDDASHR);
  addIf(CDC_DVD_RAM, IMAPI_MEDIA_TYPE_DVDRAM);
}

DriveIdentity identityOf(const std::string& address) {
  DriveIdentity identity;
  identity.uniqueId = identity.devicePath = wideFromNative(address);
  identity.name = address;
  if (isFile(address)) {
    identity.vendor = u"Quillon";
    identity.product = u"Image File";
    identity.revision = u"1.0";
    identity.volumePaths = {identity.uniqueId};
    identity.canLoad = false;
    identity.supportedProfiles = {kFileProfile};
    // What it is most like, among the discs that callers know.
    identity.writableTypes = {IMAPI_MEDIA_TYPE_DVDPLUSRW};
  } else {
    identity.vendor = readAttribute(address, "vendor");
    identity.product = readAttribute(address, "model");
    identity.revision = readAttribute(address, "rev");
    identity.volumePaths = volumePathsOf(address);
  }
  return identity;
}

std::vector<std::string> drivesOfTheMachine() {
  std::vector<std::string> devices;
  const std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir("/dev"), &::closedir);
  while (directory != nullptr) {
    const dirent* entry = ::readdir(directory.get());
    if (entry == nullptr) break;
    const std::string_view name = entry->d_name;
    if (name.starts_with("sr") && name.size() > 2 &&
        std::all_of(name.begin() + 2, name.end(),
                    [](unsigned char c) { return std::isdigit(c) != 0; })) {
      devices.push_back("/dev/" + std::string(name));
    }
  }
  // sr2 before sr10.
  std::sort(devices.begin(), devices.end(), [](const std::string& a, const std::string& b) {
    return a.size() != b.size() ? a.size() < b.size() : a < b;
  });
  return devices;
}

}  // namespace

OpticalDrive::OpticalDrive(std::string address)
    : address_(std::move(address)), lock_(lockPathOf(address_)) {
  identity_ = identityOf(address_);
  if (isFile(address_)) return;
  const DiscResult result = ask([this](const GrabbedDrive& grabbed) {
    readDrive(grabbed, identity_);
    return DiscResult();
  });
  if (result.failed()) readKernelFacts(address_, identity_);
}

template <typename Question>
DiscResult OpticalDrive::ask(Question question) {
  if (isHeld()) {
    return held_.isGrabbed() ? question(held_) : E_IMAPI_RECORDER_MEDIA_BECOMING_READY;
  }
  const std::lock_guard lock(burnMutex());
  Descriptor shared;
  DiscResult result = lock_.share(shared);
  if (result.failed()) return result;
  GrabbedDrive grabbed;
  result = grabbed.grab(address_, false);
  return result.failed() ? result : question(grabbed);
}

DiscResult OpticalDrive::media(MediaFacts& facts) {
  facts = MediaFacts{};
  return ask([&](const GrabbedDrive& grabbed) { return readMedia(grabbed, facts); });
}

DiscResult OpticalDrive::currentPages(CurrentPages& pages) {
  pages = CurrentPages{};
  const DiscResult result = ask([&](const GrabbedDrive& grabbed) {
    pages = readCurrentPages(grabbed);
    return DiscResult();
  });
  return result.code == E_IMAPI_RECORDER_LOCKED ? DiscResult() : result;
}

DiscResult OpticalDrive::lock(bool, std::u16string_view clientName) {
  DiscResult result = lock_.acquire(clientName);
  if (result.failed()) return result;
  result = held_.grab(address_, false);
  if (result.failed()) lock_.release();
  return result;
}

DiscResult OpticalDrive::unlock() {
  held_.release(false);
  lock_.release();
  return S_OK;
}

DiscResult OpticalDrive::burn(const WriteRequest& request) {
  return writeInDrive(held_, address_, request);
}

DiscResult OpticalDrive::blank(bool full, const DiscProgressCallback& progress) {
  return eraseInDrive(held_, address_, full, progress);
}

// The drive stays this client's, with whatever comes into it.
DiscResult OpticalDrive::openTray() {
  if (isFile(address_)) return S_OK;
  held_.release(true);
  return held_.grab(address_, false);
}

DiscResult OpticalDrive::closeTray() {
  if (isFile(address_)) return S_OK;
  held_.release(false);
  return held_.grab(address_, true);
}

void releaseOpticalDrives() {}

RecorderList listOpticalDrives() {
  std::vector<std::string> addresses = configuredDrives();
  if (addresses.empty()) addresses = drivesOfTheMachine();
  RecorderList drives;
  for (std::string& address : addresses) {
    drives.push_back(std::make_unique<OpticalDrive>(std::move(address)));
  }
  return drives;
}

}  // namespace quillon::platform
