// Enumeration of directories.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string>

#include "file_handle.h"
#include "file_status.h"
#include "open_files.h"
#include "platform/win32/files.h"
#include "substitutes.h"
#include "win32/last_error.h"
#include "win32/path_translation.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

bool matches(std::u16string_view pattern, std::u16string_view name) {
  // Where the last * stands and which part of the name it has taken so far.
  std::size_t star = std::u16string_view::npos;
  std::size_t taken = 0;
  std::size_t p = 0;
  std::size_t n = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      taken = n;
    } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
      ++p;
      ++n;
    } else if (star != std::u16string_view::npos) {
      p = star + 1;
      n = ++taken;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(u'*', p) == std::u16string_view::npos;
}

bool isDots(std::string_view name) { return name == "." || name == ".."; }

// "." and ".." first, then by bytes, which for UTF-8 is the order of the code points.
bool comesBefore(const std::string& a, const std::string& b) {
  if (isDots(a) != isDots(b)) return isDots(a);
  return a < b;
}

struct Pattern {
  std::string directory;
  std::string name;
};

Pattern splitPattern(const NativePath& path) {
  const std::size_t separator = path.text.rfind('/');
  if (separator == std::string::npos) return {".", path.text};
  return {separator == 0 ? "/" : path.text.substr(0, separator), path.text.substr(separator + 1)};
}

// False leaves errno.
bool readNames(int directory, const std::string& patternText, std::vector<std::string>& names) {
  const int duplicate = ::fcntl(directory, F_DUPFD_CLOEXEC, 0);
  if (duplicate < 0) return false;
  // Closed also when there is no memory for a name.
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(::fdopendir(duplicate), &::closedir);
  if (stream == nullptr) {
    const int error = errno;
    ::close(duplicate);
    errno = error;
    return false;
  }
  const bool everyName = patternText == "*" || patternText == "*.*";
  const std::u16string pattern = wideFromNative(patternText);
  errno = 0;
  while (const dirent* entry = ::readdir(stream.get())) {
    if (everyName || matches(pattern, wideFromNative(entry->d_name))) {
      names.emplace_back(entry->d_name);
    }
  }
  return errno == 0;
}

// The next entry that still exists; false at the end, with data as it was. One that cannot be
// looked at is reported as an empty file, so that its user fails on it instead of passing it over.
// What lies behind the ends of the names stays as it was, and the reserved fields.
bool nextEntry(FindHandle& find, WIN32_FIND_DATAW& data) {
  while (find.next < find.names.size()) {
    const std::string& name = find.names[find.next++];
    struct stat status {};
    bool isLink = false;
    if (statusAt(find.directory, name.c_str(), status, isLink)) {
      fillData(data, status, isLink);
    } else if (errno == ENOENT) {
      continue;
    } else {
      fillData(data, {}, /*isLink=*/false);
      data.dwFileAttributes = FILE_ATTRIBUTE_NORMAL;
    }
    copyOut(wideFromNative(name), data.cFileName, MAX_PATH);
    data.cAlternateFileName[0] = 0;
    return true;
  }
  return false;
}

void closeFind(FindHandle* find) {
  openFiles().remove(find);
  if (find->directory >= 0) ::close(find->directory);
  find->kind = HandleKind::Closed;
  delete find;
}

HANDLE refuse(DWORD code) {
  SetLastError(code);
  return INVALID_HANDLE_VALUE;
}

DWORD openDirectoryCode(int error, const std::string& directory) {
  struct stat status {};
  if (error == ENOTDIR && ::stat(directory.c_str(), &status) == 0) return ERROR_DIRECTORY;
  return error == ENOENT ? ERROR_PATH_NOT_FOUND : codeOfErrno(error);
}

}  // namespace
}  // namespace quillon::platform

using namespace quillon::platform;

HANDLE WINAPI FindFirstFileW(LPCWSTR patternText, LPWIN32_FIND_DATAW data) {
  const NativePath path = translatePath(patternText);
  if (path.text.empty()) return refuse(ERROR_PATH_NOT_FOUND);
  if (data == nullptr) return refuse(ERROR_INVALID_PARAMETER);
  const Pattern pattern = splitPattern(path);
  std::unique_ptr<FindHandle, decltype(&closeFind)> find(new FindHandle, closeFind);
  find->directory = ::open(pattern.directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (find->directory < 0) return refuse(openDirectoryCode(errno, pattern.directory));
  openFiles().addDirectory(find.get(), find->directory);
  if (pattern.name.find_first_of("*?") == std::string::npos) {
    if (!pattern.name.empty()) find->names.push_back(pattern.name);
  } else {
    if (!readNames(find->directory, pattern.name, find->names)) return refuse(codeOfErrno(errno));
    std::sort(find->names.begin(), find->names.end(), comesBefore);
  }
  if (!nextEntry(*find, *data)) return refuse(ERROR_FILE_NOT_FOUND);
  return find.release();
}

BOOL WINAPI FindNextFileW(HANDLE handle, LPWIN32_FIND_DATAW data) {
  FindHandle* find = findOf(handle);
  if (find == nullptr) return FALSE;
  if (data == nullptr) return failWith(ERROR_INVALID_PARAMETER);
  const ListingBreak& listingBreak = substitutes().listingBreak;
  if (listingBreak.code != ERROR_SUCCESS && find->next >= listingBreak.afterEntries) {
    return failWith(listingBreak.code);
  }
  return nextEntry(*find, *data) ? TRUE : failWith(ERROR_NO_MORE_FILES);
}

BOOL WINAPI FindClose(HANDLE handle) {
  FindHandle* find = findOf(handle);
  if (find == nullptr) return FALSE;
  closeFind(find);
  return TRUE;
}
