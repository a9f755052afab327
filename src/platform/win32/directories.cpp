// Making and removing directories.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>

#include "file_status.h"
#include "platform/win32/files.h"
#include "win32/environment.h"
#include "win32/last_error.h"
#include "win32/path_translation.h"

using namespace quillon::platform;

BOOL WINAPI CreateDirectoryW(LPCWSTR path, LPSECURITY_ATTRIBUTES) {
  const NativePath native = translatePath(path);
  if (::mkdir(native.c_str(), 0777) == 0) return TRUE;
  // Here a missing name can only be one above the new directory.
  if (errno == ENOENT) return failWith(ERROR_PATH_NOT_FOUND);
  return errno == EEXIST ? failWith(ERROR_ALREADY_EXISTS) : failWithErrno(errno);
}

BOOL WINAPI RemoveDirectoryW(LPCWSTR path) {
  const NativePath native = translatePath(path);
  struct stat status {};
  bool isLink = false;
  if (!statusAt(AT_FDCWD, native.c_str(), status, isLink)) return failWithErrno(errno, native);
  if (!S_ISDIR(status.st_mode)) return failWith(ERROR_DIRECTORY);
  // The link goes, never what it leads to.
  if (isLink) return ::unlink(native.c_str()) == 0 ? TRUE : failWithErrno(errno, native);
  // Windows does not let the working directory go; a process without one could not find its way.
  struct stat here {};
  if (::stat(".", &here) == 0 && here.st_dev == status.st_dev && here.st_ino == status.st_ino) {
    return failWith(ERROR_SHARING_VIOLATION);
  }
  if (::rmdir(native.c_str()) == 0) return TRUE;
  return errno == EEXIST ? failWith(ERROR_DIR_NOT_EMPTY) : failWithErrno(errno, native);
}

BOOL WINAPI GetDiskFreeSpaceExW(LPCWSTR directory, PULARGE_INTEGER freeToCaller,
                                PULARGE_INTEGER total, PULARGE_INTEGER free) {
  const NativePath native = translatePath(directory);
  struct stat status {};
  if (::stat(native.c_str(), &status) != 0) return failWithErrno(errno, native);
  if (!S_ISDIR(status.st_mode)) return failWith(ERROR_DIRECTORY);
  struct statvfs space {};
  if (::statvfs(native.c_str(), &space) != 0) return failWithErrno(errno, native);
  const std::uint64_t blockBytes = space.f_frsize;
  if (freeToCaller != nullptr) freeToCaller->QuadPart = space.f_bavail * blockBytes;
  if (total != nullptr) total->QuadPart = space.f_blocks * blockBytes;
  if (free != nullptr) free->QuadPart = space.f_bfree * blockBytes;
  return TRUE;
}

int WINAPI SHCreateDirectoryExW(HWND, LPCWSTR path, const SECURITY_ATTRIBUTES*) {
  const NativePath native = translatePath(path);
  if (native.driveLength == 0 && (native.text.empty() || native.text[0] != '/')) {
    return static_cast<int>(ERROR_BAD_PATHNAME);
  }
  std::string directory = native.text;
  while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
  struct stat status {};
  if (::stat(directory.c_str(), &status) == 0) {
    return static_cast<int>(S_ISDIR(status.st_mode) ? ERROR_ALREADY_EXISTS : ERROR_FILE_EXISTS);
  }
  if (makeDirectories(directory)) return static_cast<int>(ERROR_SUCCESS);
  return static_cast<int>(errno == ENOENT ? ERROR_PATH_NOT_FOUND : codeOfErrno(errno));
}
