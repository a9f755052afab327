// One open file or directory, closed at the end of its scope.
#pragma once

#include <utility>

#include "platform/win32.h"

namespace quillon {

class FileHandle {
 public:
  explicit FileHandle(HANDLE handle) : handle_(handle) {}
  ~FileHandle() { static_cast<void>(Close()); }
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;

  [[nodiscard]] bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  [[nodiscard]] HANDLE Get() const { return handle_; }
  // False when the platform reports that what was written is lost; closed all the same.
  [[nodiscard]] bool Close() {
    const HANDLE closing = std::exchange(handle_, INVALID_HANDLE_VALUE);
    return closing == INVALID_HANDLE_VALUE || CloseHandle(closing) != FALSE;
  }

 private:
  HANDLE handle_;
};

}  // namespace quillon
