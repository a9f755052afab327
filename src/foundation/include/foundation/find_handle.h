// One running enumeration of a directory, closed at the end of its scope.
#pragma once

#include "foundation/text.h"

namespace quillon {

class FindHandle {
 public:
  // Enumerates the names that match the pattern; the first one is in Entry when IsOpen.
  explicit FindHandle(const Text& pattern) : handle_(FindFirstFileW(pattern.c_str(), &entry_)) {}
  ~FindHandle() {
    if (IsOpen()) FindClose(handle_);
  }
  FindHandle(const FindHandle&) = delete;
  FindHandle& operator=(const FindHandle&) = delete;

  [[nodiscard]] bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  [[nodiscard]] bool Next() {
    if (FindNextFileW(handle_, &entry_) != FALSE) return true;
    endedEarly_ = GetLastError() != ERROR_NO_MORE_FILES;
    return false;
  }
  // Whether Next ended the enumeration before its end (a network share that went away): what was
  // found is not all there is. The platform's last error is then the reason.
  [[nodiscard]] bool EndedEarly() const { return endedEarly_; }
  [[nodiscard]] const WIN32_FIND_DATAW& Entry() const { return entry_; }

 private:
  WIN32_FIND_DATAW entry_{};
  HANDLE handle_;
  bool endedEarly_ = false;
};

inline bool IsDirectory(const WIN32_FIND_DATAW& entry) {
  return (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

inline bool IsLink(const WIN32_FIND_DATAW& entry) {
  return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

// "." and "..", which every enumeration names.
inline bool IsDotEntry(const WIN32_FIND_DATAW& entry) {
  const TextView name(entry.cFileName);
  return name == OLESTR(".") || name == OLESTR("..");
}

}  // namespace quillon
