// One flush for many files.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/services.h"
#include "platform/testing.h"
#include "substitutes.h"
#include "win32/last_error.h"
#include "win32/path_translation.h"
#include "win32/whole_file.h"

namespace quillon {

namespace {

platform::Descriptor openDirectory(const platform::NativePath& path) {
  return platform::Descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

}  // namespace

BOOL CanFlushFileSystem(LPCWSTR directory) {
  return openDirectory(platform::translatePath(directory)).isOpen() ? TRUE : FALSE;
}

BOOL FlushFileSystem(LPCWSTR directory) {
  if (const auto& substitute = platform::substitutes().fileSystemFlush) {
    const DWORD code = substitute();
    return code == ERROR_SUCCESS ? TRUE : platform::failWith(code);
  }
  const platform::NativePath path = platform::translatePath(directory);
  const platform::Descriptor opened = openDirectory(path);
  if (!opened.isOpen() || ::syncfs(opened.get()) != 0) return platform::failWithErrno(errno, path);
  return TRUE;
}

}  // namespace quillon
