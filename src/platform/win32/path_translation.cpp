#include "win32/path_translation.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <mutex>

#include "win32/environment.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

constexpr bool isSeparator(char c) { return c == '\\' || c == '/'; }
constexpr bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
constexpr char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string drivesDirectory() {
  const std::string configured = environmentValue("QUILLON_DRIVES");
  return configured.empty() ? userDataDirectory() + "/quillon/drives" : configured;
}

// Makes drive C once for each place that drives were looked for in.
void ensureSystemDrive(const std::string& directory) {
  static std::mutex mutex;
  static std::string ensured;
  const std::lock_guard lock(mutex);
  if (ensured == directory) return;
  makeDirectories(directory);
  ensured = directory;
}

std::string driveDirectory(char letter) {
  std::string directory = drivesDirectory() + '/' + lower(letter);
  if (upper(letter) == 'C') ensureSystemDrive(directory);
  return directory;
}

NativePath onDrive(char letter, std::string_view rest) {
  const bool fromRoot = !rest.empty() && isSeparator(rest.front());
  NativePath path;
  path.drive = upper(letter);
  path.text = driveDirectory(letter);
  path.driveLength = path.text.size();
  if (!fromRoot) {
    if (NativePath here = workingDirectory(); here.drive == path.drive) path = std::move(here);
    if (!rest.empty()) path.text += '/';
  }
  path.text += rest;
  return path;
}

}  // namespace

NativePath translatePath(std::string_view bytes) {
  NativePath path;
  if (bytes.size() >= 2 && isLetter(bytes[0]) && bytes[1] == ':') {
    path = onDrive(bytes[0], bytes.substr(2));
  } else {
    const bool onCurrentDrive =
        !bytes.empty() && bytes[0] == '\\' && (bytes.size() == 1 || !isSeparator(bytes[1]));
    if (onCurrentDrive) {
      if (const NativePath here = workingDirectory(); here.drive != 0) {
        path = here;
        path.text.resize(path.driveLength);
      }
    }
    path.text += bytes;
  }
  std::replace(path.text.begin() + static_cast<std::ptrdiff_t>(path.driveLength), path.text.end(),
               '\\', '/');
  return path;
}

NativePath translatePath(LPCWSTR wide) {
  return wide == nullptr ? NativePath{} : translatePath(nativeFromWide(wide));
}

std::string NativePath::parent() const {
  std::size_t end = text.size();
  while (end > driveLength && text[end - 1] == '/') --end;
  if (end == driveLength) return driveLength == 0 && !text.empty() ? "/" : std::string();
  const std::size_t separator = text.rfind('/', end - 1);
  if (separator == std::string::npos) return ".";
  return separator == 0 ? "/" : text.substr(0, separator);
}

}  // namespace quillon::platform
