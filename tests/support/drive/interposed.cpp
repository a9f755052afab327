// The calls of the C library that this library puts itself before. What does not concern a drive is
// passed on unchanged.
#include <fcntl.h>
#include <mntent.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "device_controls.h"
#include "devices.h"
#include "drive.h"
#include "real_calls.h"

#define INTERPOSED extern "C" __attribute__((visibility("default")))

namespace {

using emulated::Device;
using emulated::real;
using emulated::realCall;

constexpr unsigned kOpticalMajor = 11;
constexpr ino_t kFirstNode = 1000;
constexpr unsigned kMicrosecondsPerSecond = 1'000'000;
constexpr unsigned kNanosecondsPerMicrosecond = 1000;

std::atomic<std::uint64_t> skippedMicroseconds;

// A file that exists in memory only.
int openText(const std::string& text, int flags) {
  const int descriptor = ::memfd_create("system file", (flags & O_CLOEXEC) != 0 ? MFD_CLOEXEC : 0U);
  if (descriptor < 0) return -1;
  if (::write(descriptor, text.data(), text.size()) != static_cast<ssize_t>(text.size()) ||
      real().lseek(descriptor, 0, SEEK_SET) != 0) {
    real().close(descriptor);
    return -1;
  }
  return descriptor;
}

// True: the path is one of ours, and result what opening it gives.
bool openOurs(const char* path, int flags, int& result) {
  if (const auto device = emulated::deviceNamed(path)) {
    result = emulated::openDevice(*device, flags);
    return true;
  }
  if (const auto text = emulated::systemFile(path)) {
    result = openText(*text, flags);
    return true;
  }
  return false;
}

int openAny(const char* path, int flags, mode_t mode) {
  int result = -1;
  return openOurs(path, flags, result) ? result : real().open(path, flags, mode);
}

int openAnyAt(int directory, const char* path, int flags, mode_t mode) {
  int result = -1;
  return openOurs(path, flags, result) ? result : real().openat(directory, path, flags, mode);
}

bool takesMode(int flags) { return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE; }

FILE* openStream(const char* path, const char* mode) {
  const bool closesOnExec = std::strchr(mode, 'e') != nullptr;
  int descriptor = -1;
  if (!openOurs(path, O_RDONLY | (closesOnExec ? O_CLOEXEC : 0), descriptor)) {
    return real().fopen(path, mode);
  }
  return descriptor < 0 ? nullptr : ::fdopen(descriptor, "r");
}

template <typename Stat>
void describe(const Device& device, Stat* status) {
  *status = Stat{};
  status->st_mode = S_IFBLK | 0660;
  status->st_nlink = 1;
  status->st_rdev = ::makedev(kOpticalMajor, static_cast<unsigned>(device.number));
  status->st_ino = kFirstNode + static_cast<ino_t>(device.number);
  status->st_blksize = 4096;
}

// 0 or -1 for a device of ours, 1 for all else.
template <typename Stat>
int describePath(const char* path, Stat* status) {
  const auto device = emulated::deviceNamed(path);
  if (!device) return 1;
  if (device->exists) {
    describe(*device, status);
    return 0;
  }
  errno = ENOENT;
  return -1;
}

template <typename Stat>
int describeDescriptor(int descriptor, Stat* status) {
  const std::string directory = emulated::directoryOf(descriptor);
  if (directory.empty()) return 1;
  const std::string name = "/dev" + directory.substr(directory.rfind('/'));
  return describePath(name.c_str(), status);
}

int accessAny(const char* path, int mode, int (*otherwise)(const char*, int)) {
  const auto device = emulated::deviceNamed(path);
  if (!device) return otherwise(path, mode);
  if (device->exists && (mode == F_OK || emulated::mayAccess(*device))) return 0;
  errno = device->exists ? EACCES : ENOENT;
  return -1;
}

off64_t seekDevice(const std::string& directory, int descriptor, off64_t offset, int whence) {
  if (whence == SEEK_END) {
    offset += emulated::sectorsOf(directory) * emulated::kSectorBytes;
    whence = SEEK_SET;
  }
  return real().lseek(descriptor, offset, whence);
}

// What the kernel reads through the drive, without its buffers.
ssize_t readDevice(const std::string& directory, void* data, std::size_t bytes, off64_t offset) {
  emulated::Drive drive(directory);
  if (!drive.isThere() || !drive.hasMedium()) {
    errno = ENOMEDIUM;
    return -1;
  }
  const off64_t end = drive.disc->readableSectors() * emulated::kSectorBytes;
  if (offset >= end) return 0;
  const std::size_t most = std::min(bytes, static_cast<std::size_t>(end - offset));
  const off64_t first = offset / emulated::kSectorBytes;
  const off64_t count =
      (offset + static_cast<off64_t>(most) - 1) / emulated::kSectorBytes - first + 1;
  std::int64_t reached = 0;
  const bool isBroken = !drive.faults.ofSectors("read", first, count, reached).isGood();
  std::vector<std::uint8_t> sectors(static_cast<std::size_t>(count * emulated::kSectorBytes));
  if (isBroken || !drive.readSectors(first, sectors.data(), count)) {
    errno = EIO;
    return -1;
  }
  std::memcpy(data, sectors.data() + (offset - first * emulated::kSectorBytes), most);
  return static_cast<ssize_t>(most);
}

bool needsNoTime() {
  static const bool isSo =
      !emulated::drivesDirectory().empty() && std::getenv("EMULATED_DRIVES_TAKE_TIME") == nullptr;
  return isSo;
}

int unmountAny(const char* path, int flags) {
  const int error = emulated::unmount(path);
  if (error < 0) return real().umount2(path, flags);
  errno = error;
  return error == 0 ? 0 : -1;
}

}  // namespace

INTERPOSED int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = takesMode(flags) ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return openAny(path, flags, mode);
}

INTERPOSED int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = takesMode(flags) ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return openAny(path, flags, mode);
}

INTERPOSED int __open_2(const char* path, int flags) { return openAny(path, flags, 0); }
INTERPOSED int __open64_2(const char* path, int flags) { return openAny(path, flags, 0); }

INTERPOSED int openat(int directory, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = takesMode(flags) ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return openAnyAt(directory, path, flags, mode);
}

INTERPOSED int openat64(int directory, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = takesMode(flags) ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return openAnyAt(directory, path, flags, mode);
}

INTERPOSED FILE* fopen(const char* path, const char* mode) { return openStream(path, mode); }
INTERPOSED FILE* fopen64(const char* path, const char* mode) { return openStream(path, mode); }
INTERPOSED FILE* setmntent(const char* path, const char* mode) { return openStream(path, mode); }

INTERPOSED DIR* opendir(const char* path) {
  const std::string drives = emulated::drivesDirectory();
  const bool isDevices = std::strcmp(path, "/dev") == 0 || std::strcmp(path, "/dev/") == 0;
  return real().opendir(isDevices && !drives.empty() ? drives.c_str() : path);
}

INTERPOSED int close(int descriptor) {
  emulated::noteClosing(descriptor);
  return real().close(descriptor);
}

INTERPOSED int ioctl(int descriptor, unsigned long request, ...) noexcept {
  va_list arguments;
  va_start(arguments, request);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  const std::string directory = emulated::directoryOf(descriptor);
  if (directory.empty()) return real().ioctl(descriptor, request, argument);
  const long result = emulated::controlDevice(directory, request, argument);
  if (result >= 0) return static_cast<int>(result);
  errno = static_cast<int>(-result);
  return -1;
}

INTERPOSED int access(const char* path, int mode) noexcept {
  return accessAny(path, mode, real().access);
}

INTERPOSED int euidaccess(const char* path, int mode) noexcept {
  return accessAny(path, mode, realCall<int (*)(const char*, int)>("euidaccess"));
}

INTERPOSED int stat(const char* path, struct stat* status) noexcept {
  const int result = describePath(path, status);
  return result <= 0 ? result : realCall<int (*)(const char*, struct stat*)>("stat")(path, status);
}

INTERPOSED int stat64(const char* path, struct stat64* status) noexcept {
  const int result = describePath(path, status);
  return result <= 0 ? result
                     : realCall<int (*)(const char*, struct stat64*)>("stat64")(path, status);
}

INTERPOSED int lstat(const char* path, struct stat* status) noexcept {
  const int result = describePath(path, status);
  return result <= 0 ? result : realCall<int (*)(const char*, struct stat*)>("lstat")(path, status);
}

INTERPOSED int lstat64(const char* path, struct stat64* status) noexcept {
  const int result = describePath(path, status);
  return result <= 0 ? result
                     : realCall<int (*)(const char*, struct stat64*)>("lstat64")(path, status);
}

INTERPOSED int fstat(int descriptor, struct stat* status) noexcept {
  const int result = describeDescriptor(descriptor, status);
  return result <= 0 ? result : realCall<int (*)(int, struct stat*)>("fstat")(descriptor, status);
}

INTERPOSED int fstat64(int descriptor, struct stat64* status) noexcept {
  const int result = describeDescriptor(descriptor, status);
  return result <= 0 ? result
                     : realCall<int (*)(int, struct stat64*)>("fstat64")(descriptor, status);
}

INTERPOSED int fstatat(int at, const char* path, struct stat* status, int flags) noexcept {
  const int result = describePath(path, status);
  return result <= 0 ? result
                     : realCall<int (*)(int, const char*, struct stat*, int)>("fstatat")(
                           at, path, status, flags);
}

INTERPOSED int fstatat64(int at, const char* path, struct stat64* status, int flags) noexcept {
  const int result = describePath(path, status);
  return result <= 0 ? result
                     : realCall<int (*)(int, const char*, struct stat64*, int)>("fstatat64")(
                           at, path, status, flags);
}

// The names that programs linked with an older C library call.
INTERPOSED int __xstat(int, const char* path, struct stat* status) { return stat(path, status); }
INTERPOSED int __xstat64(int, const char* path, struct stat64* status) {
  return stat64(path, status);
}
INTERPOSED int __lxstat(int, const char* path, struct stat* status) { return lstat(path, status); }
INTERPOSED int __lxstat64(int, const char* path, struct stat64* status) {
  return lstat64(path, status);
}
INTERPOSED int __fxstat(int, int descriptor, struct stat* status) {
  return fstat(descriptor, status);
}
INTERPOSED int __fxstat64(int, int descriptor, struct stat64* status) {
  return fstat64(descriptor, status);
}

INTERPOSED off_t lseek(int descriptor, off_t offset, int whence) noexcept {
  const std::string directory = emulated::directoryOf(descriptor);
  if (directory.empty()) return real().lseek(descriptor, offset, whence);
  return seekDevice(directory, descriptor, offset, whence);
}

INTERPOSED off64_t lseek64(int descriptor, off64_t offset, int whence) noexcept {
  return lseek(descriptor, offset, whence);
}

INTERPOSED ssize_t read(int descriptor, void* data, std::size_t bytes) {
  const std::string directory = emulated::directoryOf(descriptor);
  if (directory.empty()) return real().read(descriptor, data, bytes);
  const off64_t offset = real().lseek(descriptor, 0, SEEK_CUR);
  const ssize_t got = readDevice(directory, data, bytes, offset);
  if (got > 0) real().lseek(descriptor, got, SEEK_CUR);
  return got;
}

INTERPOSED ssize_t pread(int descriptor, void* data, std::size_t bytes, off_t offset) {
  const std::string directory = emulated::directoryOf(descriptor);
  if (directory.empty()) return real().pread(descriptor, data, bytes, offset);
  return readDevice(directory, data, bytes, offset);
}

INTERPOSED ssize_t pread64(int descriptor, void* data, std::size_t bytes, off64_t offset) {
  return pread(descriptor, data, bytes, offset);
}

// libburn gives a drive half a second after most of what it asks, and some commands are repeated
// for minutes. What is not waited for has passed on the clock that it looks at.
INTERPOSED int usleep(useconds_t microseconds) {
  constexpr useconds_t kLongest = 500;
  const useconds_t slept = needsNoTime() ? std::min(microseconds, kLongest) : microseconds;
  skippedMicroseconds += microseconds - slept;
  return realCall<int (*)(useconds_t)>("usleep")(slept);
}

INTERPOSED unsigned int sleep(unsigned int seconds) {
  if (!needsNoTime()) return realCall<unsigned int (*)(unsigned int)>("sleep")(seconds);
  usleep(seconds * kMicrosecondsPerSecond);
  return 0;
}

// Whoever waits a second and longer waits for a drive.
INTERPOSED int nanosleep(const timespec* wanted, timespec* left) {
  if (!needsNoTime() || wanted->tv_sec == 0) return real().nanosleep(wanted, left);
  sleep(static_cast<unsigned>(wanted->tv_sec));
  return 0;
}

INTERPOSED time_t time(time_t* seconds) noexcept {
  timespec real{};
  ::clock_gettime(CLOCK_REALTIME, &real);
  const std::uint64_t skipped =
      skippedMicroseconds + static_cast<std::uint64_t>(real.tv_nsec) / kNanosecondsPerMicrosecond;
  const time_t now = real.tv_sec + static_cast<time_t>(skipped / kMicrosecondsPerSecond);
  if (seconds != nullptr) *seconds = now;
  return now;
}

INTERPOSED int umount(const char* path) noexcept { return unmountAny(path, 0); }
INTERPOSED int umount2(const char* path, int flags) noexcept { return unmountAny(path, flags); }
