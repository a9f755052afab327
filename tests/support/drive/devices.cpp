#include "devices.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <map>
#include <mutex>

#include "drive.h"
#include "real_calls.h"

namespace emulated {
namespace {

constexpr std::string_view kDevicePrefix = "/dev/sr";

// Descriptors of this process that are drives. A child of fork inherits them with the memory.
struct Descriptors {
  std::mutex mutex;
  std::map<int, std::string> directories;
  std::map<int, bool> exclusive;
};
Descriptors& descriptors() {
  static auto* const all = new Descriptors;  // programs close files until their very end
  return *all;
}

bool isMounted(const Device& device) {
  const TextTable plan = TextTable::read(device.directory + "/faults.txt");
  const TextTable state = TextTable::read(device.directory + "/state.txt");
  if (plan.isYes("mounted") && !state.isYes("unmounted")) return true;
  std::string mounts;
  const std::string line = std::string(kDevicePrefix) + std::to_string(device.number) + " ";
  return readWholeFile(drivesDirectory() + "/mounts", mounts) &&
         ("\n" + mounts).find("\n" + line) != std::string::npos;
}

// Nobody holds the drive any more: what was being written was left in the middle.
void noticeLostHost(const Device& device) {
  Drive drive(device.directory);
  if (!drive.isThere()) return;
  drive.breakOff();
  static_cast<void>(drive.store());
}

void logOpening(const Device& device, std::string_view line) {
  const Drive drive(device.directory);
  if (drive.isThere()) drive.log(line);
}

std::string attributeOf(const Device& device, std::string_view name) {
  const Drive drive(device.directory);
  if (name == "vendor") return drive.vendor();
  return name == "model" ? drive.product() : drive.revision();
}

}  // namespace

std::string drivesDirectory() {
  const char* const directory = std::getenv("EMULATED_DRIVES");
  return directory == nullptr ? "" : directory;
}

std::optional<Device> deviceNamed(std::string_view path) {
  if (!path.starts_with(kDevicePrefix)) return std::nullopt;
  const std::string_view digits = path.substr(kDevicePrefix.size());
  const bool isNumber = !digits.empty() && digits.size() < 4 &&
                        std::all_of(digits.begin(), digits.end(),
                                    [](unsigned char c) { return std::isdigit(c) != 0; });
  const std::string drives = drivesDirectory();
  if (!isNumber || drives.empty()) return std::nullopt;
  const std::string directory = drives + "/sr" + std::string(digits);
  return Device{.directory = directory,
                .number = std::atoi(std::string(digits).c_str()),
                .exists = real().access((directory + "/drive.txt").c_str(), F_OK) == 0};
}

std::optional<std::string> systemFile(std::string_view path) {
  constexpr std::string_view kBlockClass = "/sys/class/block/";
  const std::string drives = drivesDirectory();
  if (drives.empty()) return std::nullopt;
  if (path == "/proc/self/mounts" || path == "/proc/mounts" || path == "/etc/mtab") {
    std::string mounts;
    if (!readWholeFile(drives + "/mounts", mounts)) return std::nullopt;
    return mounts;
  }
  if (!path.starts_with(kBlockClass)) return std::nullopt;
  const std::string_view rest = path.substr(kBlockClass.size());
  const std::string_view name = rest.substr(0, rest.find('/'));
  const std::optional<Device> device = deviceNamed("/dev/" + std::string(name));
  if (!device || !device->exists) return std::nullopt;
  for (const std::string_view attribute : {"vendor", "model", "rev"}) {
    if (rest.substr(name.size()) == "/device/" + std::string(attribute)) {
      return attributeOf(*device, attribute) + "\n";
    }
  }
  return std::nullopt;
}

bool mayAccess(const Device& device) {
  return TextTable::read(device.directory + "/faults.txt").isYes("permission", true);
}

int openDevice(const Device& device, int flags) {
  const auto fail = [](int error) {
    errno = error;
    return -1;
  };
  if (!device.exists) return fail(ENOENT);
  if (!mayAccess(device)) return fail(EACCES);
  const bool isExclusive = (flags & O_EXCL) != 0;
  const std::string name = isExclusive ? "OPEN excl" : "OPEN";
  if (isExclusive && isMounted(device)) {
    logOpening(device, name + " -> busy");
    return fail(EBUSY);
  }
  OwnDescriptor opened(real().open((device.directory + "/device").c_str(),
                                   O_RDWR | O_CREAT | (flags & O_CLOEXEC), 0666));
  if (!opened.isOpen()) return -1;
  const bool isFree = ::flock(opened.get(), LOCK_EX | LOCK_NB) == 0;
  if (isFree) noticeLostHost(device);
  if (isFree && !isExclusive) ::flock(opened.get(), LOCK_UN);
  logOpening(device, name + (isExclusive && !isFree ? " -> busy" : " -> ok"));
  if (isExclusive && !isFree) return fail(EBUSY);
  Descriptors& all = descriptors();
  const std::lock_guard lock(all.mutex);
  all.directories[opened.get()] = device.directory;
  all.exclusive[opened.get()] = isExclusive;
  return opened.take();
}

std::string directoryOf(int descriptor) {
  Descriptors& all = descriptors();
  const std::lock_guard lock(all.mutex);
  const auto found = all.directories.find(descriptor);
  return found == all.directories.end() ? "" : found->second;
}

void forgetDescriptor(int descriptor) {
  const std::string directory = directoryOf(descriptor);
  if (directory.empty()) return;
  Descriptors& all = descriptors();
  const std::lock_guard lock(all.mutex);
  const Drive drive(directory);
  if (drive.isThere()) drive.log(all.exclusive[descriptor] ? "CLOSE excl" : "CLOSE");
  all.directories.erase(descriptor);
  all.exclusive.erase(descriptor);
}

long long sectorsOf(const std::string& directory) {
  const Drive drive(directory);
  return drive.isThere() && drive.hasMedium() ? drive.disc->readableSectors() : 0;
}

int unmount(std::string_view path) {
  const std::string drives = drivesDirectory();
  std::string mounts;
  if (drives.empty() || !readWholeFile(drives + "/mounts", mounts)) return -1;
  std::string left;
  std::optional<Device> device;
  for (std::string_view rest = mounts; !rest.empty();) {
    const std::string_view line = rest.substr(0, rest.find('\n') + 1);
    rest.remove_prefix(line.empty() ? rest.size() : line.size());
    const std::vector<std::string> words = wordsOf(line.empty() ? rest : line);
    if (words.size() > 1 && words[1] == path && deviceNamed(words[0])) {
      device = deviceNamed(words[0]);
    } else {
      left += line;
    }
  }
  if (!device) return -1;
  Drive drive(device->directory);
  if (!drive.isThere() || !drive.plan.isYes("unmount", true)) return EBUSY;
  drive.log("UNMOUNT " + std::string(path));
  drive.state.setYes("unmounted", true);
  return drive.store() && replaceFile(drives + "/mounts", left) ? 0 : EIO;
}

}  // namespace emulated
