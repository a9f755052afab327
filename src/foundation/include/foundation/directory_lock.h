// Keeps a directory to one job: a lock that nobody else can take, in this process or another, until
// it is released. The system releases it when the process ends, however it ends.
#pragma once

#include <utility>

#include "foundation/text.h"

namespace quillon {

enum class LockResult {
  Held,    // the lock is this object's
  InUse,   // somebody else has it
  Failed,  // the directory cannot be locked; the platform's last error says why
};

// The directory can be renamed and removed while it is locked; the lock then goes with it, and what
// is made anew under its name is another directory. It keeps out only those who ask for it.
class DirectoryLock {
 public:
  DirectoryLock() = default;
  ~DirectoryLock() { Release(); }
  DirectoryLock(DirectoryLock&& other) noexcept : handle_(other.handle_) {
    other.handle_ = INVALID_HANDLE_VALUE;
  }
  DirectoryLock& operator=(DirectoryLock&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }

  // Does not wait. What the object held before is released first, also when this fails. Failed for
  // a directory that does not exist (ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND), that is no
  // directory (ERROR_DIRECTORY) or may not be looked into (ERROR_ACCESS_DENIED), and on file
  // systems without locks, such as some network shares (ERROR_NOT_SUPPORTED).
  [[nodiscard]] LockResult Acquire(const Text& directory);
  void Release();
  [[nodiscard]] bool IsHeld() const { return handle_ != INVALID_HANDLE_VALUE; }

 private:
  HANDLE handle_ = INVALID_HANDLE_VALUE;
};

}  // namespace quillon
