#include "foundation/directory_lock.h"

#include "file_identity.h"

namespace quillon {
namespace {

enum class Outcome { Locked, Gone, Failed };

// A directory that went away before it was locked would be a lock that nobody else meets.
Outcome LockOnce(const Text& directory, HANDLE& handle) {
  handle = CreateFileW(directory.c_str(), GENERIC_READ, /*share=*/0, nullptr, OPEN_EXISTING,
                       FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return Outcome::Failed;
  BY_HANDLE_FILE_INFORMATION data{};
  FileIdentity locked;
  FileIdentity named;
  DWORD code = ERROR_SUCCESS;
  if (GetFileInformationByHandle(handle, &data) == FALSE || !ReadIdentity(handle, locked)) {
    code = GetLastError();
  } else if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
    code = ERROR_DIRECTORY;
  } else if (ReadIdentity(directory, named) && named == locked) {
    return Outcome::Locked;
  }
  CloseHandle(handle);
  handle = INVALID_HANDLE_VALUE;
  SetLastError(code);
  return code == ERROR_SUCCESS ? Outcome::Gone : Outcome::Failed;
}

}  // namespace

LockResult DirectoryLock::Acquire(const Text& directory) {
  constexpr int kTries = 16;
  Release();
  for (int tried = 0; tried < kTries; ++tried) {
    switch (LockOnce(directory, handle_)) {
      case Outcome::Locked:
        return LockResult::Held;
      case Outcome::Failed:
        return GetLastError() == ERROR_SHARING_VIOLATION ? LockResult::InUse : LockResult::Failed;
      case Outcome::Gone:
        break;
    }
  }
  return LockResult::InUse;  // others make and remove it all the time
}

void DirectoryLock::Release() {
  if (IsHeld()) CloseHandle(handle_);
  handle_ = INVALID_HANDLE_VALUE;
}

}  // namespace quillon
