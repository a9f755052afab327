#include "devices.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <mutex>

#include "drive.h"
#include "real_calls.h"

namespace emulated {
namespace {

constexpr std::string_view kDevicePrefix = "/dev/sr";

constexpr std::string_view kDescriptors = "/proc/self/fd/";
// A device that one user has for itself is open under the second name of the same file: the lock
// holds for both, and the descriptor tells which it is, also of a copy and after fork and exec.
constexpr std::string_view kShared = "device";
constexpr std::string_view kExclusive = "device.excl";

// Where the descriptor's file lies.
std::string_view fileOf(int descriptor, std::array<char, PATH_MAX>& path) {
  const std::string link = std::string(kDescriptors) + std::to_string(descriptor);
  const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
  return {path.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
}

// A test in the process itself changes the environment from case to case. What is remembered is
// never destroyed: programs close drives until their very end.
std::string resolvedDrivesDirectory() {
  struct Known {
    std::mutex mutex;
    std::string drives;
    std::string resolved;
  };
  static auto* const known = new Known;
  const std::lock_guard lock(known->mutex);
  if (std::string now = drivesDirectory(); now != known->drives) {
    const std::unique_ptr<char, decltype(&std::free)> path(::realpath(now.c_str(), nullptr),
                                                           &std::free);
    known->resolved = path == nullptr ? std::string() : std::string(path.get()) + "/";
    known->drives = std::move(now);
  }
  return known->resolved;
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

// Nobody holds the drive any more: what was being written was left in the middle, and the kernel
// has unlocked the tray with the last closing.
void noticeLostHost(const Device& device) {
  Drive drive(device.directory);
  if (!drive.isThere()) return;
  drive.breakOff();
  drive.state.remove("locked");
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
  if (path.starts_with(kDescriptors)) {
    const std::string number(path.substr(kDescriptors.size()));
    const std::string directory = directoryOf(std::atoi(number.c_str()));
    if (directory.empty()) return std::nullopt;
    return deviceNamed("/dev" + directory.substr(directory.rfind('/')));
  }
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
  if (TextTable::read(device.directory + "/state.txt").isYes("unplugged")) return fail(ENXIO);
  const bool isExclusive = (flags & O_EXCL) != 0;
  const std::string name = isExclusive ? "OPEN excl" : "OPEN";
  if (isExclusive && isMounted(device)) {
    logOpening(device, name + " -> busy");
    return fail(EBUSY);
  }
  const std::string shared = device.directory + "/" + std::string(kShared);
  const std::string exclusive = device.directory + "/" + std::string(kExclusive);
  const OwnDescriptor made(real().open(shared.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
  if (!made.isOpen() || (::link(shared.c_str(), exclusive.c_str()) != 0 && errno != EEXIST)) {
    return -1;
  }
  OwnDescriptor opened(
      real().open((isExclusive ? exclusive : shared).c_str(), O_RDWR | (flags & O_CLOEXEC), 0));
  if (!opened.isOpen()) return -1;
  const bool isFree = ::flock(opened.get(), LOCK_EX | LOCK_NB) == 0;
  if (isFree) noticeLostHost(device);
  if (isFree && !isExclusive) ::flock(opened.get(), LOCK_UN);
  logOpening(device, name + (isExclusive && !isFree ? " -> busy" : " -> ok"));
  if (isExclusive && !isFree) return fail(EBUSY);
  return opened.take();
}

std::string directoryOf(int descriptor) {
  const std::string drives = resolvedDrivesDirectory();
  if (drives.empty()) return {};
  std::array<char, PATH_MAX> buffer{};
  const std::string_view path = fileOf(descriptor, buffer);
  if (!path.starts_with(drives)) return {};
  const std::string_view rest = path.substr(drives.size());
  const std::string_view name = rest.substr(0, rest.find('/'));
  const std::string_view file = rest.substr(std::min(name.size() + 1, rest.size()));
  if (!name.starts_with("sr") || (file != kShared && file != kExclusive)) return {};
  return drivesDirectory() + "/" + std::string(name);
}

void noteClosing(int descriptor) {
  const std::string directory = directoryOf(descriptor);
  if (directory.empty()) return;
  std::array<char, PATH_MAX> buffer{};
  const bool isExclusive = fileOf(descriptor, buffer).ends_with(kExclusive);
  const Drive drive(directory);
  if (drive.isThere()) drive.log(isExclusive ? "CLOSE excl" : "CLOSE");
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
  if (drive.plan.text("unmount") == "denied") return EPERM;
  if (!drive.isThere() || !drive.plan.isYes("unmount", true)) return EBUSY;
  drive.log("UNMOUNT " + std::string(path));
  drive.state.setYes("unmounted", true);
  return drive.store() && replaceFile(drives + "/mounts", left) ? 0 : EIO;
}

}  // namespace emulated
