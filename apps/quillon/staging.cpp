#include "staging.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "medium/medium_source.h"
#include "terminal_text.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

constexpr const char* kPrefix = ".quillon-";
constexpr std::size_t kBlockBytes = std::size_t{1} << 20;
// Often enough for somebody who watches.
constexpr std::size_t kRangeBytes = std::size_t{8} << 20;

class FileHandle {
 public:
  explicit FileHandle(int fd) : fd_(fd) {}
  ~FileHandle() {
    if (fd_ >= 0) ::close(fd_);
  }
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;

  [[nodiscard]] int get() const { return fd_; }
  // A file system may tell only here that the bytes do not fit.
  bool close() {
    const int fd = fd_;
    fd_ = -1;
    return ::close(fd) == 0;
  }

 private:
  int fd_;
};

bool writeAll(int fd, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = ::write(fd, bytes, count);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return true;
}

bool isWritableDirectory(const fs::path& path) { return access(path.c_str(), W_OK | X_OK) == 0; }

}  // namespace

std::string Staging::parentFor(const std::string& root) {
  fs::path path(root);
  if (!path.has_filename()) path = path.parent_path();
  struct stat rootStatus {};
  if (stat(path.c_str(), &rootStatus) == 0) {
    const fs::path parent = path.parent_path();
    struct stat parentStatus {};
    const bool isOwnFileSystem =
        stat(parent.c_str(), &parentStatus) != 0 || parentStatus.st_dev != rootStatus.st_dev;
    return isOwnFileSystem || !isWritableDirectory(parent) ? path.string() : parent.string();
  }
  // What is missing on the way to the root will be made on this file system.
  std::error_code error;
  while (path.has_relative_path() && !fs::exists(path, error)) path = path.parent_path();
  return path.string();
}

void Staging::removeAbandoned(const std::string& parent, std::vector<std::string>& removed) {
  HeldDirectory::forEachAbandoned(parent, kPrefix, [&removed](const std::string& path) {
    std::error_code error;
    fs::remove_all(path, error);
    if (!error) removed.push_back(path);
  });
}

Outcome Staging::makeDirectory() {
  const std::lock_guard lock(mutex_);
  if (isRemoved_) return "";
  if (!directory_.path().empty() || directory_.make(parent_, kPrefix)) return {};
  return "a directory for copies cannot be made in " + parent_ + ": " + std::strerror(errno) + ".";
}

std::string Staging::name() const { return fs::path(directory_.path()).filename().string(); }

std::string Staging::nextName() {
  char name[24];
  std::snprintf(name, sizeof name, "/%08zu", ++count_);
  return directory_.path() + name;
}

Outcome Staging::nameIn(const std::string& source, std::string& name) {
  if (Outcome made = makeDirectory(); made.failed()) return made;
  name = nextName();
  if (::symlink(source.c_str(), name.c_str()) == 0) return {};
  return std::string("it cannot be given a shorter name: ") + std::strerror(errno) + ".";
}

bool Staging::needsRoom() {
  if (mayLink_ || makeDirectory().failed()) return false;
  const std::string a = nextName();
  const std::string b = nextName();
  const FileHandle from(::open(a.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  const FileHandle to(::open(b.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  const bool canClone = from.get() >= 0 && to.get() >= 0 && writeAll(from.get(), "x", 1) &&
                        ioctl(to.get(), FICLONE, from.get()) == 0;
  ::unlink(a.c_str());
  ::unlink(b.c_str());
  return !canClone;
}

Outcome Staging::copyIn(const std::string& source, std::string& copy) {
  if (Outcome made = makeDirectory(); made.failed()) return made;
  copy = nextName();
  if (mayLink_ &&
      ::linkat(AT_FDCWD, source.c_str(), AT_FDCWD, copy.c_str(), AT_SYMLINK_FOLLOW) == 0) {
    return {};
  }
  // Without waiting: what was a file may have become a pipe.
  const FileHandle from(::open(source.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status {};
  if (from.get() < 0 || fstat(from.get(), &status) != 0) {
    return std::string("it cannot be opened: ") + std::strerror(errno) + ".";
  }
  if (!S_ISREG(status.st_mode)) return "it is not a regular file.";
  FileHandle to(::open(copy.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  hasCopied_ = true;
  if (to.get() < 0 || !copyFile(from.get(), to.get()) || !to.close()) {
    std::string why = "it cannot be copied to " + directory_.path() + ": ";
    why.append(std::strerror(errno)).append(".");
    ::unlink(copy.c_str());
    return why;
  }
  return {};
}

Outcome Staging::takeIn(quillon::MediumFile& source, std::string& copy) {
  if (Outcome made = makeDirectory(); made.failed()) return made;
  copy = nextName();
  FileHandle to(::open(copy.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  hasCopied_ = true;
  block_.resize(kBlockBytes);
  const auto fails = [&](const std::string& why) {
    ::unlink(copy.c_str());
    return Outcome(why);
  };
  const std::string toDirectory = "it cannot be copied to " + directory_.path() + ": ";
  if (to.get() < 0) return fails(toDirectory + std::strerror(errno) + ".");
  for (std::uint64_t at = 0; at < source.SizeBytes();) {
    const auto count =
        static_cast<std::size_t>(std::min<std::uint64_t>(block_.size(), source.SizeBytes() - at));
    if (!source.ReadAt(at, block_.data(), count)) return fails("it cannot be read.");
    if (!writeAll(to.get(), block_.data(), count)) {
      return fails(toDirectory + std::strerror(errno) + ".");
    }
    at += count;
  }
  return to.close() ? Outcome() : fails(toDirectory + std::strerror(errno) + ".");
}

bool Staging::copyFile(int source, int copy) {
  if (canClone_) {
    if (ioctl(copy, FICLONE, source) == 0) return true;
    canClone_ = false;
  }
  std::uint64_t done = 0;
  for (;;) {
    const ssize_t copied = copy_file_range(source, nullptr, copy, nullptr, kRangeBytes, 0);
    if (copied == 0) break;
    if (copied > 0) report(done += static_cast<std::uint64_t>(copied));
    if (copied > 0 || errno == EINTR) continue;
    if (errno == ENOSPC || errno == EDQUOT || errno == EIO || errno == EFBIG) return false;
    break;
  }
  // Some file systems answer 0 or refuse where there is something to copy; at the end of the file
  // this reads nothing.
  return copyByReading(source, copy, done);
}

// Both files stand where an earlier, interrupted way of copying left them.
bool Staging::copyByReading(int source, int copy, std::uint64_t done) {
  block_.resize(kBlockBytes);
  for (;;) {
    const ssize_t got = ::read(source, block_.data(), block_.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    if (got == 0) return true;
    if (!writeAll(copy, block_.data(), static_cast<std::size_t>(got))) return false;
    report(done += static_cast<std::uint64_t>(got));
  }
}

Outcome Staging::flush() const {
  if (!hasCopied_) return {};
  const FileHandle directory(::open(directory_.path().c_str(), O_RDONLY | O_CLOEXEC));
  if (directory.get() >= 0 && ::syncfs(directory.get()) == 0) return {};
  return std::string("the copies cannot be brought to the disk: ") + std::strerror(errno) + ".";
}

void Staging::remove() {
  const std::lock_guard lock(mutex_);
  if (isRemoved_.exchange(true) || directory_.path().empty()) return;
  std::error_code error;
  // A file may be made in it in the meantime, by the thread that is to end.
  for (int tries = 0; tries < 3; ++tries) {
    fs::remove_all(directory_.path(), error);
    if (!error) return;
  }
  say("Cannot remove the copies in " + directory_.path() + ": " + error.message() + ".");
}

}  // namespace quillon::cli
