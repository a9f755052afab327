#include "disc_run.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <tuple>
#include <utility>

#include "recorders/disc_record.h"
#include "win32/environment.h"

namespace quillon::platform {

// The disk works on one part while the next is read, so that little is left for the end.
constexpr std::uint64_t kWriteBehindBytes = std::uint64_t{8} << 20;

DiscResult DiscRun::open() {
  file_ = Descriptor(::open(path_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
  return file_.isOpen() ? DiscResult() : fileFailure(errno, "write", path_);
}

DiscResult DiscRun::reserve(std::uint64_t bytes) {
  const std::uint64_t before = lengthBytes();
  if (::fallocate(file_.get(), FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(bytes)) == 0 ||
      (errno != ENOSPC && errno != EDQUOT && errno != EFBIG)) {
    return S_OK;
  }
  const int error = errno;
  // Gives back what was found.
  std::ignore = ::ftruncate(file_.get(), static_cast<off_t>(before));
  return fileFailure(error, "write", path_);
}

std::uint64_t DiscRun::lengthBytes() const {
  struct stat status {};
  return ::fstat(file_.get(), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

DiscResult DiscRun::append(std::string_view bytes) {
  if (!writeAll(file_.get(), bytes)) return fileFailure(errno, "write", path_);
  put_ += bytes.size();
  return put_ - started_ < kWriteBehindBytes ? DiscResult() : startWriting();
}

// What is on the disk leaves the cache at once: the pages serve the next part again. A cache that
// grows with the image costs the kernel more than all else, pushes out what other programs work
// with, and ends in a wait for all of it.
DiscResult DiscRun::startWriting() {
  static_cast<void>(::sync_file_range(file_.get(), static_cast<off_t>(started_),
                                      static_cast<off_t>(put_ - started_), SYNC_FILE_RANGE_WRITE));
  const auto position = static_cast<off_t>(arrived_);
  const auto length = static_cast<off_t>(started_ - arrived_);
  arrived_ = std::exchange(started_, put_);
  if (length == 0) return S_OK;
  constexpr unsigned kUntilWritten =
      SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
  // A failure that is told here is not told again by fsync.
  if (::sync_file_range(file_.get(), position, length, kUntilWritten) != 0 && errno != ENOSYS) {
    return fileFailure(errno, "write", path_);
  }
  static_cast<void>(::posix_fadvise(file_.get(), position, length, POSIX_FADV_DONTNEED));
  return S_OK;
}

DiscResult DiscRun::put(std::string_view bytes, ProgressReporter& progress) {
  const std::uint64_t faultAt = fault_ ? fault_->sector * kSectorBytes : 0;
  const bool isFaulty = fault_ && put_ + bytes.size() > faultAt;
  if (isFaulty) bytes = bytes.substr(0, faultAt > put_ ? faultAt - put_ : 0);
  DiscResult result = append(bytes);
  progress.reach(put_ / kSectorBytes);
  if (result.failed() || !isFaulty) return result;
  isPulled_ = fault_->isPulled;
  return fault_->code;
}

DiscResult DiscRun::finish(std::uint64_t bytes) {
  if (::ftruncate(file_.get(), static_cast<off_t>(bytes)) != 0 || ::fsync(file_.get()) != 0) {
    return fileFailure(errno, "write", path_);
  }
  syncDirectory(directoryOf(path_));
  return S_OK;
}

}  // namespace quillon::platform
