// The process's working directory, and paths that depend on it.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <mutex>
#include <vector>

#include "platform/win32/files.h"
#include "win32/environment.h"
#include "win32/last_error.h"
#include "win32/path_translation.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

struct Entered {
  NativePath path;
  dev_t device = 0;
  ino_t inode = 0;
};

std::mutex enteredMutex;
Entered entered;

// Empty when the working directory was removed.
std::string kernelWorkingDirectory() {
  std::array<char, PATH_MAX> buffer;
  return ::getcwd(buffer.data(), buffer.size()) == nullptr ? std::string() : buffer.data();
}

std::vector<std::string_view> partsOf(std::string_view path) {
  std::vector<std::string_view> parts;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find('/'), path.size());
    if (end > 0 && path.substr(0, end) != ".") parts.push_back(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return parts;
}

bool isUpwardOnly(const std::vector<std::string_view>& parts) {
  return !parts.empty() && std::all_of(parts.begin(), parts.end(),
                                       [](std::string_view part) { return part == ".."; });
}

bool hasUpwardPart(const std::vector<std::string_view>& parts) {
  return std::find(parts.begin(), parts.end(), "..") != parts.end();
}

// The directory levels above: not beyond the root, or the drive directory, of the path.
NativePath above(NativePath path, std::size_t levels) {
  for (; levels > 0; --levels) {
    const std::size_t separator = path.text.rfind('/');
    if (path.text.size() <= path.driveLength || separator == std::string::npos) break;
    path.text.resize(std::max(separator, path.driveLength));
  }
  if (path.text.empty()) path.text = "/";
  return path;
}

// What the working directory is called once target was entered; empty when only the kernel knows.
NativePath nameAfterEntering(const NativePath& target, const NativePath& before) {
  const std::vector<std::string_view> parts =
      partsOf(std::string_view(target.text).substr(target.driveLength));
  if (hasUpwardPart(parts)) return {};
  const bool absolute = target.driveLength > 0 || target.text[0] == '/';
  NativePath name = absolute ? target : before;
  name.text.resize(absolute ? target.driveLength : before.text.size());
  if (name.text == "/") name.text.clear();
  for (const std::string_view part : parts) name.text.append("/").append(part);
  if (name.text.empty()) name.text = "/";
  return name;
}

void remember(NativePath path) {
  struct stat status {};
  if (::stat(".", &status) != 0) return;
  if (path.text.empty()) path.text = kernelWorkingDirectory();
  const std::lock_guard lock(enteredMutex);
  entered = {std::move(path), status.st_dev, status.st_ino};
}

std::u16string displayed(const NativePath& path) {
  if (path.drive == 0) return wideFromNative(path.text);
  std::string text = path.text.substr(path.driveLength);
  std::replace(text.begin(), text.end(), '/', '\\');
  if (text.empty()) text = "\\";
  return wideFromNative(std::string{path.drive, ':'} + text);
}

}  // namespace

NativePath workingDirectory() {
  struct stat now {};
  if (::stat(".", &now) != 0) return {};
  const std::lock_guard lock(enteredMutex);
  // Anything else in the process may have called chdir: the name counts while it still is the
  // directory.
  struct stat named {};
  if (!entered.path.text.empty() && now.st_dev == entered.device && now.st_ino == entered.inode &&
      ::stat(entered.path.c_str(), &named) == 0 && named.st_dev == now.st_dev &&
      named.st_ino == now.st_ino) {
    return entered.path;
  }
  NativePath path;
  path.text = kernelWorkingDirectory();
  return path;
}

}  // namespace quillon::platform

using namespace quillon::platform;

BOOL WINAPI SetCurrentDirectoryW(LPCWSTR path) {
  NativePath target = translatePath(path);
  if (target.text.empty()) return failWith(ERROR_PATH_NOT_FOUND);
  const NativePath before = workingDirectory();
  const std::vector<std::string_view> parts = partsOf(target.text);
  if (target.drive == 0 && target.text[0] != '/' && isUpwardOnly(parts) && !before.text.empty()) {
    target = above(before, parts.size());
  }
  if (::chdir(target.c_str()) != 0) {
    const int error = errno;
    struct stat status {};
    const bool isFile = error == ENOTDIR && ::stat(target.c_str(), &status) == 0;
    return isFile ? failWith(ERROR_DIRECTORY) : failWithErrno(error, target);
  }
  remember(nameAfterEntering(target, before));
  return TRUE;
}

DWORD WINAPI GetCurrentDirectoryW(DWORD bufferUnits, LPWSTR buffer) {
  const NativePath path = workingDirectory();
  if (path.text.empty()) {
    SetLastError(ERROR_PATH_NOT_FOUND);
    return 0;
  }
  return copyOut(displayed(path), buffer, bufferUnits);
}

DWORD WINAPI GetFullPathNameW(LPCWSTR fileName, DWORD bufferUnits, LPWSTR buffer,
                              LPWSTR* filePart) {
  if (fileName == nullptr || fileName[0] == 0) {
    SetLastError(ERROR_INVALID_NAME);
    return 0;
  }
  const NativePath path = translatePath(fileName);
  const bool absolute = path.driveLength > 0 || path.text[0] == '/';
  NativePath full = absolute ? path : workingDirectory();
  if (full.text.empty()) {  // it was removed
    SetLastError(ERROR_PATH_NOT_FOUND);
    return 0;
  }
  const std::string all = absolute ? path.text : full.text + '/' + path.text;
  full.text.resize(full.driveLength);
  for (const std::string_view part : partsOf(std::string_view(all).substr(full.driveLength))) {
    if (part == "..") {
      full = above(std::move(full), 1);
      if (full.text == "/") full.text.clear();
    } else {
      full.text.append("/").append(part);
    }
  }
  if (full.text.empty()) full.text = "/";
  const std::u16string text = displayed(full);
  const DWORD length = copyOut(text, buffer, bufferUnits);
  if (filePart != nullptr) {
    const std::size_t separator = text.find_last_of(u"\\/");
    const bool stored = length == text.size();
    *filePart = stored && separator + 1 < text.size() ? buffer + separator + 1 : nullptr;
  }
  return length;
}

DWORD WINAPI GetTempPathW(DWORD bufferUnits, LPWSTR buffer) {
  std::string path = environmentValue("TMPDIR");
  if (path.empty()) path = ownTemporaryDirectory();
  if (path.empty()) {
    failWithErrno(errno);
    return 0;
  }
  if (path.back() != '/') path += '/';
  const std::u16string text = wideFromNative(path);
  // Callers give the room that the longest answer takes, and take a longer one for a success.
  if (text.size() > MAX_PATH) {
    SetLastError(ERROR_FILENAME_EXCED_RANGE);
    return 0;
  }
  return copyOut(text, buffer, bufferUnits);
}
