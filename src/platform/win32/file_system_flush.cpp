// One flush for many files.
#include <unistd.h>

#include <cerrno>

#include "file_handle.h"
#include "platform/services.h"
#include "platform/testing.h"
#include "substitutes.h"
#include "win32/last_error.h"

namespace quillon {

BOOL FlushFileSystem(HANDLE directory) {
  if (const auto& substitute = platform::substitutes().fileSystemFlush) {
    const DWORD code = substitute();
    return code == ERROR_SUCCESS ? TRUE : platform::failWith(code);
  }
  const platform::FileHandle* file = platform::fileOf(directory);
  if (file == nullptr) return FALSE;
  return ::syncfs(file->descriptor) == 0 ? TRUE : platform::failWithErrno(errno);
}

}  // namespace quillon
