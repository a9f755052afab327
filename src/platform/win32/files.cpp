// Open files.
#include "platform/win32/files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

#include "file_handle.h"
#include "file_status.h"
#include "open_files.h"
#include "substitutes.h"
#include "win32/environment.h"
#include "win32/last_error.h"
#include "win32/path_translation.h"

namespace quillon::platform {
namespace {

HandleBase* baseOf(HANDLE handle) {
  if (handle == nullptr || handle == INVALID_HANDLE_VALUE) return nullptr;
  return static_cast<HandleBase*>(handle);
}

HANDLE refuse(DWORD code) {
  SetLastError(code);
  return INVALID_HANDLE_VALUE;
}

// Here it is the directory that lets a file go.
bool isAllowedToDelete(const NativePath& path) {
  return ::faccessat(AT_FDCWD, path.parent().c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

bool isReading(DWORD access) { return (access & GENERIC_READ) != 0; }
bool isWriting(DWORD access) { return (access & (GENERIC_WRITE | FILE_APPEND_DATA)) != 0; }

int accessFlags(DWORD access) {
  const int append =
      (access & FILE_APPEND_DATA) != 0 && (access & GENERIC_WRITE) == 0 ? O_APPEND : 0;
  if (isWriting(access)) return (isReading(access) ? O_RDWR : O_WRONLY) | append;
  return O_RDONLY;
}

struct Opened {
  int descriptor;
  int error;
  bool existed;
};

Opened openPath(const char* path, int flags, DWORD disposition) {
  // Opening must not wait for the other end of a pipe or for a terminal.
  flags |= O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  const bool makes =
      disposition == CREATE_NEW || disposition == CREATE_ALWAYS || disposition == OPEN_ALWAYS;
  if (makes) {
    const int made = ::open(path, flags | O_CREAT | O_EXCL, 0666);
    if (made >= 0 || errno != EEXIST || disposition == CREATE_NEW) return {made, errno, false};
    flags |= O_CREAT;
  }
  const int opened = ::open(path, flags, 0666);
  return {opened, errno, true};
}

// Directories and pipes are not files: Windows opens the first only on request, and reading the
// second could wait for ever. Devices are let through.
bool isUsable(int descriptor, DWORD flags, struct stat& status) {
  if (::fstat(descriptor, &status) != 0) return false;
  if (S_ISDIR(status.st_mode)) return (flags & FILE_FLAG_BACKUP_SEMANTICS) != 0;
  return !S_ISFIFO(status.st_mode) && !S_ISSOCK(status.st_mode);
}

// Empties the file only now that nobody in this process has it open.
bool emptyFile(int descriptor, DWORD access, const NativePath& path) {
  return (isWriting(access) ? ::ftruncate(descriptor, 0) : ::truncate(path.c_str(), 0)) == 0;
}

// A directory that is opened to be read and shared with nobody is kept from all others who ask so,
// in this process and others, until its handle is closed. 0, or the code of the refusal.
DWORD keepDirectory(int descriptor, DWORD access, DWORD share) {
  if (!isReading(access) || share != 0) return ERROR_SUCCESS;
  if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) return ERROR_SUCCESS;
  // What is not "in use" is a file system without such locks, or one that locks open files only.
  return errno == EWOULDBLOCK ? ERROR_SHARING_VIOLATION : ERROR_NOT_SUPPORTED;
}

// Takes an opened descriptor into the handle; 0, or the code of the refusal.
DWORD admit(FileHandle& file, const Opened& opened, const NativePath& path, DWORD access,
            DWORD share, DWORD disposition, DWORD flags) {
  struct stat status {};
  if (!isUsable(opened.descriptor, flags, status)) return ERROR_ACCESS_DENIED;
  if (S_ISDIR(status.st_mode)) {
    const DWORD code = keepDirectory(opened.descriptor, access, share);
    if (code == ERROR_SUCCESS) openFiles().addDirectory(&file, opened.descriptor);
    return code;
  }
  if (!S_ISREG(status.st_mode)) return ERROR_SUCCESS;
  const bool empties = disposition == CREATE_ALWAYS || disposition == TRUNCATE_EXISTING;
  // The kernel lets root write to a read-only file, Windows nobody.
  const bool isReadOnly = (status.st_mode & 0222) == 0;
  if (opened.existed && isReadOnly && (isWriting(access) || empties)) return ERROR_ACCESS_DENIED;
  if (!file.mayWrite && opened.existed) file.seenAtOpening = status;
  const OpenFiles::Use use{file.mayRead, file.mayWrite, (access & DELETE) != 0, share};
  if (!openFiles().add(&file, opened.descriptor, status, use)) return ERROR_SHARING_VIOLATION;
  const bool isEmptied = !empties || !opened.existed || emptyFile(opened.descriptor, access, path);
  return isEmptied ? ERROR_SUCCESS : codeOfErrno(errno);
}

// Absolute, because the working directory may change before the handle is flushed.
std::string directoryToSync(const NativePath& path) {
  std::string parent = path.parent();
  if (parent[0] == '/') return parent;
  return workingDirectory().text + '/' + parent;
}

// Ends an opening that does not succeed, also for want of memory: then nothing stays open, and a
// file that only the opening has made goes again.
struct EndOpening {
  const char* made = nullptr;

  void operator()(FileHandle* file) const {
    openFiles().remove(file);
    if (file->descriptor >= 0) ::close(file->descriptor);
    if (made != nullptr) ::unlink(made);
    delete file;
  }
};

HANDLE openFile(const NativePath& path, DWORD access, DWORD share, DWORD disposition, DWORD flags) {
  if (path.text.empty()) return refuse(ERROR_PATH_NOT_FOUND);
  const bool truncates = disposition == TRUNCATE_EXISTING;
  if (disposition < CREATE_NEW || disposition > TRUNCATE_EXISTING ||
      (truncates && (access & GENERIC_WRITE) == 0)) {
    return refuse(ERROR_INVALID_PARAMETER);
  }
  if ((access & DELETE) != 0 && !isAllowedToDelete(path)) return refuse(codeOfErrno(errno));
  std::unique_ptr<FileHandle, EndOpening> file(new FileHandle);
  const Opened opened = openPath(path.c_str(), accessFlags(access), disposition);
  if (opened.descriptor < 0) {
    return refuse(opened.error == ENXIO ? ERROR_ACCESS_DENIED : codeOfErrno(opened.error, path));
  }
  file->descriptor = opened.descriptor;
  if (!opened.existed) file.get_deleter().made = path.c_str();
  file->mayRead = isReading(access);
  file->mayWrite = isWriting(access);
  const DWORD code = admit(*file, opened, path, access, share, disposition, flags);
  if (code != ERROR_SUCCESS) return refuse(code);
  if ((flags & FILE_FLAG_SEQUENTIAL_SCAN) != 0) {
    ::posix_fadvise(opened.descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
  }
  if (!opened.existed) file->unsyncedDirectory = directoryToSync(path);
  if (disposition == CREATE_ALWAYS || disposition == OPEN_ALWAYS) {
    SetLastError(opened.existed ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
  }
  return file.release();
}

// Whether this is the read that a test wants to fail.
bool isBrokenRead(const FileHandle& file) {
  ReadBreak& broken = substitutes().readBreak;
  if (broken.code == ERROR_SUCCESS) return false;
  return pathOfDescriptor(file.descriptor).ends_with(broken.nameEnd) && ++broken.seen == broken.nth;
}

// As a drive that fails in the middle of a call: the buffer has some of the bytes, the file stands
// where it stood.
void readAndForget(const FileHandle& file, LPVOID buffer, DWORD length) {
  const ssize_t got = ::read(file.descriptor, buffer, length);
  if (got > 0) ::lseek(file.descriptor, -got, SEEK_CUR);
}

bool seekOrigin(DWORD method, int& origin) {
  switch (method) {
    case FILE_BEGIN:
      origin = SEEK_SET;
      return true;
    case FILE_CURRENT:
      origin = SEEK_CUR;
      return true;
    case FILE_END:
      origin = SEEK_END;
      return true;
    default:
      return false;
  }
}

// Answers the new position, or -1 with the last error.
std::int64_t seek(HANDLE handle, std::int64_t distance, DWORD method) {
  const FileHandle* file = fileOf(handle);
  if (file == nullptr) return -1;
  int origin = 0;
  if (!seekOrigin(method, origin)) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return -1;
  }
  const off_t position = ::lseek(file->descriptor, distance, origin);
  if (position < 0) failWith(errno == EINVAL ? ERROR_NEGATIVE_SEEK : codeOfErrno(errno));
  return position;
}

}  // namespace

FileHandle* fileOf(HANDLE handle) {
  HandleBase* base = baseOf(handle);
  if (base != nullptr && base->kind == HandleKind::File) return static_cast<FileHandle*>(base);
  SetLastError(ERROR_INVALID_HANDLE);
  return nullptr;
}

FindHandle* findOf(HANDLE handle) {
  HandleBase* base = baseOf(handle);
  if (base != nullptr && base->kind == HandleKind::Find) return static_cast<FindHandle*>(base);
  SetLastError(ERROR_INVALID_HANDLE);
  return nullptr;
}

}  // namespace quillon::platform

using namespace quillon::platform;

// FILE_FLAG_WRITE_THROUGH is not O_SYNC here: a copy would wait for the disk after every block.
// Callers that need the bytes on the disk flush once, at the end.
HANDLE WINAPI CreateFileW(LPCWSTR fileName, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES,
                          DWORD disposition, DWORD flags, HANDLE) {
  return openFile(translatePath(fileName), access, share, disposition, flags);
}

HANDLE WINAPI CreateFileA(LPCSTR fileName, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES,
                          DWORD disposition, DWORD flags, HANDLE) {
  return openFile(fileName == nullptr ? NativePath{} : translatePath(std::string_view(fileName)),
                  access, share, disposition, flags);
}

BOOL WINAPI ReadFile(HANDLE handle, LPVOID buffer, DWORD length, LPDWORD read,
                     LPOVERLAPPED overlapped) {
  if (read == nullptr || overlapped != nullptr) return failWith(ERROR_INVALID_PARAMETER);
  *read = 0;
  FileHandle* file = fileOf(handle);
  if (file == nullptr) return FALSE;
  file->seenAtOpening.reset();
  if (!file->mayRead) return failWith(ERROR_ACCESS_DENIED);
  if (isBrokenRead(*file)) {
    readAndForget(*file, buffer, std::min(length, substitutes().readBreak.afterBytes));
    return failWith(substitutes().readBreak.code);
  }
  DWORD done = 0;
  while (done < length) {
    const ssize_t got =
        ::read(file->descriptor, static_cast<std::uint8_t*>(buffer) + done, length - done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return failWithErrno(errno);
    if (got == 0) break;
    done += static_cast<DWORD>(got);
  }
  *read = done;
  return TRUE;
}

BOOL WINAPI WriteFile(HANDLE handle, LPCVOID buffer, DWORD length, LPDWORD written,
                      LPOVERLAPPED overlapped) {
  if (written == nullptr || overlapped != nullptr) return failWith(ERROR_INVALID_PARAMETER);
  *written = 0;
  const FileHandle* file = fileOf(handle);
  if (file == nullptr) return FALSE;
  if (!file->mayWrite) return failWith(ERROR_ACCESS_DENIED);
  DWORD done = 0;
  while (done < length) {
    const ssize_t put =
        ::write(file->descriptor, static_cast<const std::uint8_t*>(buffer) + done, length - done);
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return failWithErrno(errno);
    done += static_cast<DWORD>(put);
  }
  *written = done;
  return TRUE;
}

BOOL WINAPI FlushFileBuffers(HANDLE handle) {
  FileHandle* file = fileOf(handle);
  if (file == nullptr) return FALSE;
  if (!file->mayWrite) return failWith(ERROR_ACCESS_DENIED);
  // EINVAL: what the descriptor names has nothing to flush (a device, a file under /proc).
  if (::fsync(file->descriptor) != 0 && errno != EINVAL) return failWithErrno(errno);
  if (!file->unsyncedDirectory.empty()) {
    syncDirectory(file->unsyncedDirectory);
    file->unsyncedDirectory.clear();
  }
  return TRUE;
}

BOOL WINAPI SetFilePointerEx(HANDLE handle, LARGE_INTEGER distance, PLARGE_INTEGER newPosition,
                             DWORD method) {
  const std::int64_t position = seek(handle, distance.QuadPart, method);
  if (position < 0) return FALSE;
  if (newPosition != nullptr) newPosition->QuadPart = position;
  return TRUE;
}

BOOL WINAPI GetFileSizeEx(HANDLE handle, PLARGE_INTEGER size) {
  const FileHandle* file = fileOf(handle);
  if (file == nullptr) return FALSE;
  if (size == nullptr) return failWith(ERROR_INVALID_PARAMETER);
  struct stat status {};
  if (::fstat(file->descriptor, &status) != 0) return failWithErrno(errno);
  size->QuadPart = status.st_size;
  return TRUE;
}

BOOL WINAPI GetFileInformationByHandle(HANDLE handle, LPBY_HANDLE_FILE_INFORMATION information) {
  FileHandle* file = fileOf(handle);
  if (file == nullptr) return FALSE;
  if (information == nullptr) return failWith(ERROR_INVALID_PARAMETER);
  struct stat status {};
  if (file->seenAtOpening) {
    status = *std::exchange(file->seenAtOpening, std::nullopt);
  } else if (::fstat(file->descriptor, &status) != 0) {
    return failWithErrno(errno);
  }
  *information = BY_HANDLE_FILE_INFORMATION{};
  fillData(*information, status, /*isLink=*/false);
  const auto device = static_cast<std::uint64_t>(status.st_dev);
  const auto index = static_cast<std::uint64_t>(status.st_ino);
  information->dwVolumeSerialNumber = static_cast<DWORD>((device >> 32) ^ (device & 0xFFFFFFFF));
  information->nNumberOfLinks = static_cast<DWORD>(status.st_nlink);
  information->nFileIndexHigh = static_cast<DWORD>(index >> 32);
  information->nFileIndexLow = static_cast<DWORD>(index & 0xFFFFFFFF);
  return TRUE;
}

BOOL WINAPI CloseHandle(HANDLE handle) {
  FileHandle* file = fileOf(handle);
  if (file == nullptr) return FALSE;
  openFiles().remove(file);
  // The descriptor is gone whatever close answers; a late write error (a full network share) is
  // still reported.
  const int error = ::close(file->descriptor) == 0 ? 0 : errno;
  file->kind = HandleKind::Closed;
  delete file;
  return error == 0 || error == EINTR ? TRUE : failWithErrno(error);
}
