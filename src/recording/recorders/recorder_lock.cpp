#include "recorders/recorder_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <tuple>

#include "platform/imapi2_errors.h"
#include "recorders/disc_record.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

// Answers false when another client keeps the lock. Questions to a virtual recorder lock it for
// less than a millisecond: they are waited for.
bool lockFile(int descriptor, int operation) {
  constexpr int kTries = 20;
  constexpr timespec kPause{0, 5'000'000};
  for (int i = 0; i < kTries; ++i) {
    if (::flock(descriptor, operation | LOCK_NB) == 0) return true;
    if (errno != EWOULDBLOCK && errno != EINTR) return false;
    ::nanosleep(&kPause, nullptr);
  }
  return false;
}

}  // namespace

DiscResult RecorderLock::acquire(std::u16string_view clientName) {
  Descriptor file(::open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
  if (!file.isOpen()) return fileFailure(errno, "write", path_);
  if (!lockFile(file.get(), LOCK_EX)) return E_IMAPI_RECORDER_LOCKED;
  file_ = std::move(file);
  DiscResult result = rename(clientName);
  if (result.failed()) release();
  return result;
}

// The name is for those who ask; the lock itself goes with the descriptor, however it ends.
DiscResult RecorderLock::rename(std::u16string_view clientName) {
  if (::ftruncate(file_.get(), 0) != 0 || ::lseek(file_.get(), 0, SEEK_SET) != 0 ||
      !writeAll(file_.get(), nativeFromWide(clientName))) {
    return fileFailure(errno, "write", path_);
  }
  return S_OK;
}

void RecorderLock::release() {
  std::ignore = ::ftruncate(file_.get(), 0);
  file_ = Descriptor();
}

DiscResult RecorderLock::share(Descriptor& shared) const {
  shared = Descriptor(::open(path_.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC, 0666));
  if (!shared.isOpen()) return fileFailure(errno, "read", path_);
  return lockFile(shared.get(), LOCK_SH) ? DiscResult() : E_IMAPI_RECORDER_LOCKED;
}

std::u16string RecorderLock::owner() const {
  const Descriptor file(::open(path_.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.isOpen() || ::flock(file.get(), LOCK_SH | LOCK_NB) == 0) return {};
  std::string name;
  return readAll(file.get(), name) ? wideFromNative(name) : std::u16string();
}

}  // namespace quillon::platform
