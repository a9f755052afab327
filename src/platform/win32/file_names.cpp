// Files by their names: attributes, deletion, renaming.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "file_status.h"
#include "open_files.h"
#include "platform/services.h"
#include "platform/win32/files.h"
#include "win32/environment.h"
#include "win32/last_error.h"
#include "win32/path_translation.h"

namespace quillon::platform {

bool statusAt(int directory, const char* name, struct stat& status, bool& isLink) {
  isLink = false;
  if (::fstatat(directory, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return false;
  if (!S_ISLNK(status.st_mode)) return true;
  isLink = true;
  struct stat followed {};
  if (::fstatat(directory, name, &followed, 0) == 0) status = followed;
  return true;
}

bool isKept(const struct stat& status) {
  if (!S_ISREG(status.st_mode) || (status.st_mode & 0222) != 0 || status.st_nlink != 1)
    return false;
  return ::geteuid() == 0 || ::geteuid() == status.st_uid;
}

DWORD attributesOf(const struct stat& status, bool isLink) {
  DWORD attributes = 0;
  if (S_ISDIR(status.st_mode)) {
    attributes = FILE_ATTRIBUTE_DIRECTORY;
  } else if (S_ISREG(status.st_mode)) {
    attributes = FILE_ATTRIBUTE_ARCHIVE;
    if ((status.st_mode & 0222) == 0) attributes |= FILE_ATTRIBUTE_READONLY;
  } else if (!S_ISLNK(status.st_mode)) {
    attributes = FILE_ATTRIBUTE_DEVICE;
  }
  return isLink ? attributes | FILE_ATTRIBUTE_REPARSE_POINT : attributes;
}

FILETIME fileTimeOf(const timespec& time) {
  constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600;
  const std::int64_t ticks =
      (std::int64_t{time.tv_sec} + kSecondsFrom1601To1970) * 10'000'000 + time.tv_nsec / 100;
  const auto unsignedTicks = static_cast<std::uint64_t>(ticks);
  return {static_cast<DWORD>(unsignedTicks & 0xFFFFFFFF), static_cast<DWORD>(unsignedTicks >> 32)};
}

namespace {

NativePath translateNarrow(LPCSTR name) {
  return name == nullptr ? NativePath{} : translatePath(std::string_view(name));
}

BOOL readAttributes(const NativePath& path, GET_FILEEX_INFO_LEVELS level, LPVOID data) {
  if (level != GetFileExInfoStandard || data == nullptr) return failWith(ERROR_INVALID_PARAMETER);
  struct stat status {};
  bool isLink = false;
  if (!statusAt(AT_FDCWD, path.c_str(), status, isLink)) return failWithErrno(errno, path);
  fillData(*static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(data), status, isLink);
  return TRUE;
}

DWORD attributesOnly(const NativePath& path) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  return readAttributes(path, GetFileExInfoStandard, &data) != FALSE ? data.dwFileAttributes
                                                                     : INVALID_FILE_ATTRIBUTES;
}

BOOL removeFile(const NativePath& path) {
  struct stat status {};
  bool isLink = false;
  if (!statusAt(AT_FDCWD, path.c_str(), status, isLink)) return failWithErrno(errno, path);
  // A link to a directory is a directory on Windows; RemoveDirectoryW takes it away.
  if (S_ISDIR(status.st_mode) || (!isLink && isKept(status))) return failWith(ERROR_ACCESS_DENIED);
  // Kept under each of its names; one who has it open by a link does not have the link open.
  if (!isLink && openFiles().keepsName(status)) return failWith(ERROR_SHARING_VIOLATION);
  return ::unlink(path.c_str()) == 0 ? TRUE : failWithErrno(errno, path);
}

// Without links; empty when it leads nowhere.
std::string realPath(const std::string& path) {
  std::array<char, PATH_MAX> real;
  return ::realpath(path.c_str(), real.data()) == nullptr ? std::string() : real.data();
}

bool isSameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

std::string_view lastPart(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
  return path.substr(path.rfind('/') + 1);
}

bool isSameName(const NativePath& a, const NativePath& b) {
  struct stat parentOfA {};
  struct stat parentOfB {};
  return lastPart(a.text) == lastPart(b.text) && ::stat(a.parent().c_str(), &parentOfA) == 0 &&
         ::stat(b.parent().c_str(), &parentOfB) == 0 && isSameFile(parentOfA, parentOfB);
}

// rename(2) reports a missing source and a missing target directory alike.
BOOL failRename(int error, const NativePath& from, const NativePath& to) {
  struct stat status {};
  if (error == ENOENT && ::lstat(from.c_str(), &status) == 0) return failWith(ERROR_PATH_NOT_FOUND);
  if (error == EEXIST) return failWith(ERROR_ALREADY_EXISTS);
  if (error == ENOTEMPTY) return failWith(ERROR_ACCESS_DENIED);
  return failWithErrno(error, error == ENOENT ? from : to);
}

// The target exists. Files and links take the place of files and links; nothing replaces a
// directory.
BOOL replaceTarget(const NativePath& from, const NativePath& to) {
  struct stat source {};
  struct stat target {};
  if (::lstat(from.c_str(), &source) != 0) return failWithErrno(errno, from);
  if (::lstat(to.c_str(), &target) == 0) {
    // Between two names of one file rename(2) does nothing and reports success.
    if (isSameFile(source, target)) {
      if (isSameName(from, to)) return TRUE;
      return ::unlink(from.c_str()) == 0 ? TRUE : failWithErrno(errno, from);
    }
    if (S_ISDIR(source.st_mode) || S_ISDIR(target.st_mode) || isKept(target) ||
        openFiles().isOpen(target)) {
      return failWith(ERROR_ACCESS_DENIED);
    }
  }
  return ::rename(from.c_str(), to.c_str()) == 0 ? TRUE : failRename(errno, from, to);
}

// Without RENAME_NOREPLACE in the file system: a check, which leaves a moment open for another
// program to make the target.
BOOL renameAfterCheck(const NativePath& from, const NativePath& to, bool replace) {
  struct stat target {};
  if (::lstat(to.c_str(), &target) == 0) {
    if (replace) return replaceTarget(from, to);
    if (!isSameName(from, to)) return failWith(ERROR_ALREADY_EXISTS);
  }
  return ::rename(from.c_str(), to.c_str()) == 0 ? TRUE : failRename(errno, from, to);
}

BOOL renamePath(const NativePath& from, const NativePath& to, bool replace) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return TRUE;
  if (errno == EEXIST) {
    if (replace) return replaceTarget(from, to);
    return isSameName(from, to) ? TRUE : failWith(ERROR_ALREADY_EXISTS);
  }
  if (errno == EINVAL || errno == ENOSYS) return renameAfterCheck(from, to, replace);
  return failRename(errno, from, to);
}

// Waits until the new name is on the disk, and then the end of the old one.
void syncNames(const NativePath& from, const NativePath& to) {
  const std::string target = to.parent();
  const std::string source = from.parent();
  syncDirectory(target);
  if (source != target) syncDirectory(source);
}

// What is open keeps its name, and a directory keeps it for what is open below it and for the
// working directory, which Windows has open too. A lock on the directory itself is no such handle:
// it is this system's own way to hold one. 0, or the code of the refusal.
DWORD codeOfOpen(const NativePath& from) {
  struct stat status {};
  if (::lstat(from.c_str(), &status) != 0) return ERROR_SUCCESS;  // the renaming tells why
  if (!S_ISDIR(status.st_mode)) {
    return openFiles().keepsName(status) ? ERROR_SHARING_VIOLATION : ERROR_SUCCESS;
  }
  struct stat here {};
  if (::stat(".", &here) == 0 && isSameFile(here, status)) return ERROR_SHARING_VIOLATION;
  const std::string directory = realPath(from.text);
  const std::string working = realPath(".");
  if (directory.empty()) return ERROR_SUCCESS;
  return working.starts_with(directory + '/') || openFiles().isAnythingOpenBelow(directory)
             ? ERROR_ACCESS_DENIED
             : ERROR_SUCCESS;
}

BOOL moveFile(const NativePath& from, const NativePath& to, DWORD flags) {
  // A copy between file systems is the caller's: it knows what must be on the disk, and when.
  if ((flags & MOVEFILE_COPY_ALLOWED) != 0) return failWith(ERROR_NOT_SUPPORTED);
  if (from.text.empty()) return failWith(ERROR_FILE_NOT_FOUND);
  if (to.text.empty()) return failWith(ERROR_PATH_NOT_FOUND);
  if (const DWORD code = codeOfOpen(from); code != ERROR_SUCCESS) return failWith(code);
  if (renamePath(from, to, (flags & MOVEFILE_REPLACE_EXISTING) != 0) == FALSE) return FALSE;
  if ((flags & MOVEFILE_WRITE_THROUGH) != 0) syncNames(from, to);
  return TRUE;
}

}  // namespace
}  // namespace quillon::platform

using namespace quillon::platform;

BOOL quillon::RenameFile(LPCWSTR fromName, LPCWSTR toName) {
  const NativePath from = translatePath(fromName);
  const NativePath to = translatePath(toName);
  if (from.text.empty() || to.text.empty() || openFiles().isAnyFileOpen()) {
    return moveFile(from, to, 0);
  }
  return renamePath(from, to, /*replace=*/false);
}

BOOL WINAPI GetFileAttributesExW(LPCWSTR fileName, GET_FILEEX_INFO_LEVELS level, LPVOID data) {
  return readAttributes(translatePath(fileName), level, data);
}

BOOL WINAPI GetFileAttributesExA(LPCSTR fileName, GET_FILEEX_INFO_LEVELS level, LPVOID data) {
  return readAttributes(translateNarrow(fileName), level, data);
}

DWORD WINAPI GetFileAttributesW(LPCWSTR fileName) {
  return attributesOnly(translatePath(fileName));
}

DWORD WINAPI GetFileAttributesA(LPCSTR fileName) {
  return attributesOnly(translateNarrow(fileName));
}

BOOL WINAPI SetFileAttributesW(LPCWSTR fileName, DWORD attributes) {
  const NativePath path = translatePath(fileName);
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return failWithErrno(errno, path);
  if (S_ISDIR(status.st_mode)) return TRUE;
  const bool readOnly = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
  const bool wasReadOnly = (status.st_mode & 0222) == 0;
  if (readOnly == wasReadOnly) return TRUE;
  const mode_t mode = readOnly ? status.st_mode & ~mode_t{0222} : status.st_mode | 0200;
  return ::chmod(path.c_str(), mode & 07777) == 0 ? TRUE : failWithErrno(errno, path);
}

BOOL WINAPI DeleteFileW(LPCWSTR fileName) { return removeFile(translatePath(fileName)); }

BOOL WINAPI DeleteFileA(LPCSTR fileName) { return removeFile(translateNarrow(fileName)); }

BOOL WINAPI MoveFileExW(LPCWSTR existing, LPCWSTR target, DWORD flags) {
  return moveFile(translatePath(existing), translatePath(target), flags);
}

BOOL WINAPI MoveFileExA(LPCSTR existing, LPCSTR target, DWORD flags) {
  return moveFile(translateNarrow(existing), translateNarrow(target), flags);
}
