#include "output_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t kSentAtOnceBytes = std::uint64_t{32} << 20;

constexpr mode_t kPermissions = 0666;  // of which the user's mask takes its part

// What standard output was before the results went elsewhere.
int streamDescriptor = -1;

std::string reasonOf(int error) { return std::strerror(error); }

int closed(int& descriptor) {
  const int closing = std::exchange(descriptor, -1);
  return closing < 0 ? 0 : ::close(closing);
}

}  // namespace

OutputFile::OutputFile(std::string path, bool isReplacing)
    : path_(std::move(path)), isReplacing_(isReplacing) {
  if (isStandardOutput()) return;
  const fs::path whole(path_);
  directory_ = whole.parent_path().string();
  temporary_ = (whole.parent_path() / (".quillon-" + whole.filename().string() + ".part")).string();
}

OutputFile::~OutputFile() {
  if (descriptor_ >= 0 && !isFinished_ && !isStandardOutput()) abandon();
  if (!isStandardOutput()) closed(descriptor_);
}

Outcome OutputFile::reserveStandardOutput() {
  if (streamDescriptor >= 0) return {};
  streamDescriptor = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  const int error = errno;
  // What the command has to say goes to standard error from here on, this failure too.
  const bool isRedirected = ::dup2(STDERR_FILENO, STDOUT_FILENO) >= 0;
  if (streamDescriptor < 0 || !isRedirected) {
    return "Standard output cannot be written: " + reasonOf(streamDescriptor < 0 ? error : errno) +
           ".";
  }
  // Whoever stops reading makes a write fail, with its sentence.
  std::signal(SIGPIPE, SIG_IGN);
  return {};
}

bool OutputFile::isStandardOutputTerminal() {
  return streamDescriptor >= 0 && ::isatty(streamDescriptor) == 1;
}

Outcome OutputFile::fails(int error) const {
  const std::string what = isStandardOutput() ? "Standard output" : "The file " + path_;
  return what + " cannot be written: " + reasonOf(error) + ".";
}

Outcome OutputFile::begin() {
  if (isStandardOutput()) {
    descriptor_ = streamDescriptor;
    return descriptor_ < 0 ? fails(EBADF) : Outcome();
  }
  return makeTemporary();
}

Outcome OutputFile::makeTemporary() {
  constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
  for (bool isFirst = true;; isFirst = false) {
    descriptor_ = ::open(temporary_.c_str(), kFlags, kPermissions);
    if (descriptor_ >= 0) break;
    if (errno != EEXIST || !isFirst) return fails(errno);
    if (Outcome cleared = clearLeftOver(); cleared.failed()) return cleared;
  }
  if (::flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return {};
  return fails(errno);
}

// What a job that was killed has left. A job that is at work holds it.
Outcome OutputFile::clearLeftOver() {
  int old = ::open(temporary_.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (old < 0) return errno == ENOENT ? Outcome() : fails(errno);
  const bool isHeld = ::flock(old, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  Outcome outcome;
  if (isHeld) {
    outcome = "The file " + path_ + " is being written by another job.";
  } else if (::unlink(temporary_.c_str()) != 0 && errno != ENOENT) {
    outcome = fails(errno);
  }
  closed(old);
  return outcome;
}

bool OutputFile::write(const void* bytes, std::size_t count) {
  const auto* from = static_cast<const char*>(bytes);
  while (count > 0) {
    const ssize_t taken = ::write(descriptor_, from, count);
    if (taken < 0 && errno == EINTR) continue;
    if (taken <= 0) {
      failure_ = fails(taken < 0 ? errno : ENOSPC);
      return false;
    }
    from += taken;
    count -= static_cast<std::size_t>(taken);
    unsentBytes_ += static_cast<std::uint64_t>(taken);
  }
  // The disk has something to do meanwhile, and less at the end. What cannot be done is not needed.
  if (unsentBytes_ >= kSentAtOnceBytes) {
    static_cast<void>(::sync_file_range(descriptor_, 0, 0, SYNC_FILE_RANGE_WRITE));
    unsentBytes_ = 0;
  }
  return true;
}

// Another job may have taken it for left over in the moment before it was held.
bool OutputFile::isStillOurs() const {
  struct stat own {};
  struct stat named {};
  return ::fstat(descriptor_, &own) == 0 && ::lstat(temporary_.c_str(), &named) == 0 &&
         own.st_dev == named.st_dev && own.st_ino == named.st_ino;
}

Outcome OutputFile::finish(const Check& check) {
  if (isStandardOutput()) {
    // What goes through a pipe has gone; what is a file is brought to the disk.
    if (::fsync(descriptor_) != 0 && errno != EINVAL && errno != EROFS) return fails(errno);
    isFinished_ = true;
    return {};
  }
  if (::fsync(descriptor_) != 0) return fails(errno);
  if (check) {
    if (Outcome checked = check(temporary_); checked.failed()) return checked;
  }
  if (isAbandoned_ || !isStillOurs()) {
    return "The file " + path_ + " cannot be written: another job has taken its place.";
  }
  if (Outcome named = takeName(); named.failed()) return named;
  isFinished_ = true;
  if (closed(descriptor_) != 0) return fails(errno);
  return flushDirectory();
}

// Where the file system cannot rename without replacing, a file that is made in the same moment
// would be replaced.
Outcome OutputFile::takeName() {
  const unsigned flags = isReplacing_ ? 0 : RENAME_NOREPLACE;
  int result = ::renameat2(AT_FDCWD, temporary_.c_str(), AT_FDCWD, path_.c_str(), flags);
  if (result != 0 && (errno == EINVAL || errno == ENOSYS) && !isReplacing_) {
    struct stat there {};
    errno = EEXIST;
    if (::lstat(path_.c_str(), &there) != 0) result = ::rename(temporary_.c_str(), path_.c_str());
  }
  if (result == 0) return {};
  if (errno == EEXIST) return "The file " + path_ + " exists; --overwrite replaces it.";
  return fails(errno);
}

Outcome OutputFile::flushDirectory() const {
  int directory = ::open(directory_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const bool isFlushed = directory >= 0 && (::fsync(directory) == 0 || errno == EINVAL);
  const int error = errno;
  closed(directory);
  return isFlushed ? Outcome() : fails(error);
}

bool OutputFile::abandon() {
  isAbandoned_ = true;
  if (isFinished_) return true;
  if (!isStandardOutput() && descriptor_ >= 0 && isStillOurs()) ::unlink(temporary_.c_str());
  return false;
}

}  // namespace quillon::cli
