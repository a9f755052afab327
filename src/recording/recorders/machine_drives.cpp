#include "recorders/machine_drives.h"

#include <dirent.h>
#include <mntent.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "win32/utf8.h"
#include "win32/whole_file.h"

namespace quillon::platform {
namespace {

// The device's own name, where the address is a link to it ("/dev/cdrom").
std::string deviceAt(const std::string& address) {
  const std::unique_ptr<char, decltype(&std::free)> path(::realpath(address.c_str(), nullptr),
                                                         &std::free);
  return path == nullptr ? address : path.get();
}

std::u16string readAttribute(const std::string& device, const char* name) {
  std::string text;
  const std::string block = device.substr(device.rfind('/') + 1);
  if (!readFile("/sys/class/block/" + block + "/device/" + name, text)) return {};
  text.resize(text.find_last_not_of(" \n") + 1);
  return wideFromNative(text);
}

}  // namespace

bool isFileAddress(const std::string& address) { return address.starts_with(kFileAddress); }

std::vector<std::string> mountPointsOf(const std::string& address) {
  std::vector<std::string> points;
  const std::string device = deviceAt(address);
  const std::unique_ptr<FILE, int (*)(FILE*)> mounts(::setmntent("/proc/self/mounts", "re"),
                                                     &::endmntent);
  while (mounts != nullptr) {
    const mntent* entry = ::getmntent(mounts.get());
    if (entry == nullptr) break;
    if (device == entry->mnt_fsname) points.emplace_back(entry->mnt_dir);
  }
  return points;
}

DriveIdentity identityOfDevice(const std::string& address) {
  DriveIdentity identity;
  identity.uniqueId = identity.devicePath = wideFromNative(address);
  identity.name = address;
  if (isFileAddress(address)) {
    identity.vendor = u"Quillon";
    identity.product = u"Image File";
    identity.revision = u"1.0";
    identity.volumePaths = {identity.uniqueId};
    identity.canLoad = false;
    return identity;
  }
  const std::string device = deviceAt(address);
  identity.vendor = readAttribute(device, "vendor");
  identity.product = readAttribute(device, "model");
  identity.revision = readAttribute(device, "rev");
  for (const std::string& point : mountPointsOf(address)) {
    identity.volumePaths.push_back(wideFromNative(point) + u"/");
  }
  if (identity.volumePaths.empty()) identity.volumePaths.push_back(identity.uniqueId);
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
  std::sort(devices.begin(), devices.end(), [](const std::string& a, const std::string& b) {
    return a.size() != b.size() ? a.size() < b.size() : a < b;
  });
  return devices;
}

}  // namespace quillon::platform
