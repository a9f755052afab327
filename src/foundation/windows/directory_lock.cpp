#include "foundation/directory_lock.h"

#include "path_parts.h"

namespace quillon {
namespace {

constexpr DWORD kLockAttributes = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_TEMPORARY;

// A handle of the directory itself that shares nothing would keep its own holder out of it, so the
// lock is a file beside it, which goes with its only handle.
HANDLE OpenLock(const Text& file, DWORD disposition) {
  return CreateFileW(file.c_str(), GENERIC_WRITE, /*share=*/0, nullptr, disposition,
                     kLockAttributes | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
}

// Nothing lies beside a drive: its lock lies where the user's temporary files do.
Text LockFileOf(const Text& directory) {
  TextView name(directory);
  while (!name.empty() && IsPathSeparator(name.back())) name.remove_suffix(1);
  Text file(name);
  if (name.size() == 2 && name[1] == OLESTR(':')) {
    OLECHAR temporary[MAX_PATH + 1];
    const DWORD length = GetTempPathW(static_cast<DWORD>(std::size(temporary)), temporary);
    file.assign(temporary, length < std::size(temporary) ? length : 0);
    file.append(OLESTR("quillon-drive-")).append(name.substr(0, 1));
  }
  return file.append(OLESTR(".lock"));
}

// A file that holds something is nobody's lock, and must not go with the handle.
bool IsLeftOverLock(const Text& file) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  return GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data) != FALSE &&
         (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 && data.nFileSizeHigh == 0 &&
         data.nFileSizeLow == 0;
}

}  // namespace

LockResult DirectoryLock::Acquire(const Text& directory) {
  Release();
  const DWORD attributes = GetFileAttributesW(directory.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return LockResult::Failed;
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
    SetLastError(ERROR_DIRECTORY);
    return LockResult::Failed;
  }
  constexpr int kTries = 16;
  const Text file = LockFileOf(directory);
  for (int tried = 0; tried < kTries; ++tried) {
    handle_ = OpenLock(file, CREATE_NEW);
    if (!IsHeld() && GetLastError() == ERROR_FILE_EXISTS && IsLeftOverLock(file)) {
      handle_ = OpenLock(file, OPEN_EXISTING);  // of a computer that lost its power
    }
    if (IsHeld()) return LockResult::Held;
    if (GetLastError() == ERROR_SHARING_VIOLATION) return LockResult::InUse;
    if (GetLastError() != ERROR_FILE_NOT_FOUND) return LockResult::Failed;
    // Its holder released it in between.
  }
  return LockResult::InUse;
}

void DirectoryLock::Release() {
  if (IsHeld()) CloseHandle(handle_);
  handle_ = INVALID_HANDLE_VALUE;
}

}  // namespace quillon
