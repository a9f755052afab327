// Bytes that go from file to file without passing through the process.
#include <unistd.h>

#include <cerrno>

#include "file_handle.h"
#include "platform/services.h"
#include "substitutes.h"
#include "win32/last_error.h"

namespace quillon {

BOOL CopyFileBytes(HANDLE target, HANDLE source, DWORD length, LPDWORD copied) {
  *copied = 0;
  const platform::FileHandle* to = platform::fileOf(target);
  const platform::FileHandle* from = platform::fileOf(source);
  if (to == nullptr || from == nullptr) return FALSE;
  if (!to->mayWrite || !from->mayRead) return platform::failWith(ERROR_ACCESS_DENIED);
  // A read that a test wants to fail is one of ReadFile.
  if (platform::substitutes().readBreak.code != ERROR_SUCCESS) {
    return platform::failWith(ERROR_NOT_SUPPORTED);
  }
  ssize_t done = 0;
  do {
    done = ::copy_file_range(from->descriptor, nullptr, to->descriptor, nullptr, length, 0);
  } while (done < 0 && errno == EINTR);
  if (done < 0) return platform::failWithErrno(errno);
  *copied = static_cast<DWORD>(done);
  return TRUE;
}

}  // namespace quillon
