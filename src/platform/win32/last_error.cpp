#include "win32/last_error.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace {
thread_local DWORD lastError = 0;
}  // namespace

DWORD WINAPI GetLastError() { return lastError; }
void WINAPI SetLastError(DWORD code) { lastError = code; }

namespace quillon::platform {
namespace {

struct ErrnoRow {
  int error;
  DWORD code;
};

// ENOENT, EEXIST, ENOTDIR and EINVAL stand here with their most common meaning; the calls for which
// they mean something else say so themselves.
// clang-format off
constexpr std::array kErrnoRows{
    ErrnoRow{0,            ERROR_SUCCESS},
    ErrnoRow{ESPIPE,       ERROR_INVALID_FUNCTION},
    ErrnoRow{ENOENT,       ERROR_FILE_NOT_FOUND},
    ErrnoRow{ENOTDIR,      ERROR_PATH_NOT_FOUND},
    ErrnoRow{EMFILE,       ERROR_TOO_MANY_OPEN_FILES},
    ErrnoRow{ENFILE,       ERROR_TOO_MANY_OPEN_FILES},
    ErrnoRow{EACCES,       ERROR_ACCESS_DENIED},
    ErrnoRow{EPERM,        ERROR_ACCESS_DENIED},
    ErrnoRow{EISDIR,       ERROR_ACCESS_DENIED},
    ErrnoRow{EBADF,        ERROR_INVALID_HANDLE},
    ErrnoRow{ENOMEM,       ERROR_NOT_ENOUGH_MEMORY},
    ErrnoRow{EXDEV,        ERROR_NOT_SAME_DEVICE},
    ErrnoRow{EROFS,        ERROR_WRITE_PROTECT},
    ErrnoRow{EAGAIN,       ERROR_SHARING_VIOLATION},
    ErrnoRow{ETXTBSY,      ERROR_SHARING_VIOLATION},
    ErrnoRow{EOPNOTSUPP,   ERROR_NOT_SUPPORTED},
    ErrnoRow{EEXIST,       ERROR_FILE_EXISTS},
    ErrnoRow{EINVAL,       ERROR_INVALID_PARAMETER},
    ErrnoRow{ENOSPC,       ERROR_DISK_FULL},
    ErrnoRow{EDQUOT,       ERROR_DISK_FULL},
    ErrnoRow{ENOSYS,       ERROR_CALL_NOT_IMPLEMENTED},
    ErrnoRow{ERANGE,       ERROR_INSUFFICIENT_BUFFER},
    ErrnoRow{EILSEQ,       ERROR_INVALID_NAME},
    ErrnoRow{ENOTEMPTY,    ERROR_DIR_NOT_EMPTY},
    ErrnoRow{EBUSY,        ERROR_BUSY},
    ErrnoRow{ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE},
    ErrnoRow{EFBIG,        ERROR_FILE_TOO_LARGE},
    ErrnoRow{EFAULT,       ERROR_NOACCESS},
    ErrnoRow{ENOMEDIUM,    ERROR_NO_MEDIA_IN_DRIVE},
    ErrnoRow{EIO,          ERROR_IO_DEVICE},
    ErrnoRow{ECANCELED,    ERROR_CANCELLED},
    ErrnoRow{ETIMEDOUT,    ERROR_TIMEOUT},
    ErrnoRow{ELOOP,        ERROR_CANT_RESOLVE_FILENAME},
};
// clang-format on

bool isDirectory(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

DWORD codeOfErrno(int error) {
  const auto* row = std::find_if(kErrnoRows.begin(), kErrnoRows.end(),
                                 [error](const ErrnoRow& r) { return r.error == error; });
  return row == kErrnoRows.end() ? ERROR_INVALID_FUNCTION : row->code;
}

DWORD codeOfErrno(int error, const NativePath& path) {
  if (error != ENOENT) return codeOfErrno(error);
  // A drive that does not exist is a missing path, like an empty name.
  const std::string parent = path.parent();
  return !parent.empty() && isDirectory(parent) ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
}

BOOL failWith(DWORD code) {
  SetLastError(code);
  return FALSE;
}

BOOL failWithErrno(int error) { return failWith(codeOfErrno(error)); }

BOOL failWithErrno(int error, const NativePath& path) { return failWith(codeOfErrno(error, path)); }

}  // namespace quillon::platform
