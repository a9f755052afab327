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

TextView WithoutSeparators(TextView directory) {
  while (!directory.empty() && IsPathSeparator(directory.back())) directory.remove_suffix(1);
  return directory;
}

bool IsDrive(TextView directory) { return directory.size() == 2 && directory[1] == OLESTR(':'); }

Text LockFileBeside(const Text& directory) {
  return Text(WithoutSeparators(directory)).append(OLESTR(".lock"));
}

// Nothing lies beside a drive, and not everybody may write beside every directory: the lock then
// lies where the user's temporary files do, and keeps out that user's other jobs.
Text LockFileOfUser(const Text& directory) {
  OLECHAR temporary[MAX_PATH + 1];
  const DWORD length = GetTempPathW(static_cast<DWORD>(std::size(temporary)), temporary);
  Text file(temporary, length < std::size(temporary) ? length : 0);
  file.append(OLESTR("quillon-"));
  for (const OLECHAR unit : WithoutSeparators(directory)) {
    file += IsPathSeparator(unit) || unit == OLESTR(':') ? OLESTR('_') : unit;
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

LockResult TakeFile(const Text& file, HANDLE& handle) {
  constexpr int kTries = 16;
  for (int tried = 0; tried < kTries; ++tried) {
    handle = OpenLock(file, CREATE_NEW);
    if (handle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_EXISTS &&
        IsLeftOverLock(file)) {
      handle = OpenLock(file, OPEN_EXISTING);  // of a computer that lost its power
    }
    if (handle != INVALID_HANDLE_VALUE) return LockResult::Held;
    if (GetLastError() == ERROR_SHARING_VIOLATION) return LockResult::InUse;
    if (GetLastError() != ERROR_FILE_NOT_FOUND) return LockResult::Failed;
    // Its holder released it in between.
  }
  return LockResult::InUse;
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
  LockResult result = LockResult::Failed;
  if (!IsDrive(WithoutSeparators(directory))) {
    result = TakeFile(LockFileBeside(directory), handle_);
  }
  return result == LockResult::Failed ? TakeFile(LockFileOfUser(directory), handle_) : result;
}

void DirectoryLock::Release() {
  if (IsHeld()) CloseHandle(handle_);
  handle_ = INVALID_HANDLE_VALUE;
}

}  // namespace quillon
