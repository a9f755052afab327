// Reads a directory of the disk into the tree of an image.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "image/image_results.h"
#include "image/image_time.h"
#include "image/image_tree.h"
#include "platform/win32/files.h"
#include "win32/last_error.h"
#include "win32/path_translation.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

struct Identity {
  dev_t device;
  ino_t inode;
  bool operator==(const Identity&) const = default;
};

class FindCloser {
 public:
  explicit FindCloser(HANDLE find) : find_(find) {}
  ~FindCloser() { FindClose(find_); }
  FindCloser(const FindCloser&) = delete;
  FindCloser& operator=(const FindCloser&) = delete;

 private:
  HANDLE find_;
};

class Scanner {
 public:
  HRESULT scan(const std::string& native, ImageNode& directory);

 private:
  HRESULT addEntry(const std::string& native, const WIN32_FIND_DATAW& data, ImageNode& directory);
  HRESULT addFile(const std::string& native, const struct stat& status, ImageNode& file);

  std::vector<Identity> above_;  // the directories that are being read, outermost first
};

HRESULT refuseCode(DWORD code, std::u16string_view description, const std::string& native) {
  return refuseImage(HRESULT_FROM_WIN32(code), description, wideFromNative(native));
}

void takeTimes(const struct stat& status, ImageNode& node) {
  // What the disk calls the last change is the nearest to a creation time that all file systems
  // keep, but it says nothing about the content: the time of the content stands for both.
  node.created = status.st_mtim.tv_sec;
  node.modified = status.st_mtim.tv_sec;
  node.accessed = status.st_mtim.tv_sec;
}

HRESULT Scanner::scan(const std::string& native, ImageNode& directory) {
  struct stat status {};
  if (::stat(native.c_str(), &status) != 0) {
    return refuseCode(codeOfErrno(errno), u"The directory cannot be read", native);
  }
  const Identity identity{status.st_dev, status.st_ino};
  if (std::find(above_.begin(), above_.end(), identity) != above_.end()) {
    return refuseCode(ERROR_CANT_RESOLVE_FILENAME, u"The link leads back to a directory above it",
                      native);
  }
  takeTimes(status, directory);
  WIN32_FIND_DATAW data{};
  const HANDLE find = FindFirstFileW((wideFromNative(native) + u"/*").c_str(), &data);
  if (find == INVALID_HANDLE_VALUE) {
    if (GetLastError() == ERROR_FILE_NOT_FOUND) return S_OK;
    return refuseCode(GetLastError(), u"The directory cannot be read", native);
  }
  const FindCloser closer(find);
  above_.push_back(identity);
  do {
    if (const HRESULT hr = addEntry(native, data, directory); FAILED(hr)) return hr;
  } while (FindNextFileW(find, &data) != FALSE);
  if (GetLastError() != ERROR_NO_MORE_FILES) {
    return refuseCode(GetLastError(), u"The directory cannot be read", native);
  }
  above_.pop_back();
  return S_OK;
}

HRESULT Scanner::addEntry(const std::string& native, const WIN32_FIND_DATAW& data,
                          ImageNode& directory) {
  const std::u16string_view name = data.cFileName;
  if (name == u"." || name == u"..") return S_OK;
  const std::string path = native + '/' + nativeFromWide(name);
  // The layer would take it for a separator, and another file for this one.
  if (name.find(u'\\') != std::u16string_view::npos) {
    return refuseImage(IMAPI_E_INVALID_PATH, u"The name contains a backslash",
                       wideFromNative(path));
  }
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) {
    if (errno == ENOENT) {
      return refuseImage(IMAPI_E_NOT_FILE, u"The link leads nowhere", wideFromNative(path));
    }
    return refuseCode(codeOfErrno(errno), u"The file cannot be read", path);
  }
  auto node = std::make_shared<ImageNode>();
  node->name = name;
  node->parent = &directory;
  node->isDirectory = S_ISDIR(status.st_mode);
  const HRESULT hr = node->isDirectory ? scan(path, *node) : addFile(path, status, *node);
  if (FAILED(hr)) return hr;
  directory.children.emplace(node->name, node);
  return S_OK;
}

HRESULT Scanner::addFile(const std::string& native, const struct stat& status, ImageNode& file) {
  if (!S_ISREG(status.st_mode)) {
    return refuseImage(IMAPI_E_NOT_FILE, u"Only files and directories can be put on a disc",
                       wideFromNative(native));
  }
  // The data is read while the disc is written: what cannot be read then would cost the disc.
  if (::faccessat(AT_FDCWD, native.c_str(), R_OK, AT_EACCESS) != 0) {
    return refuseCode(codeOfErrno(errno), u"The file cannot be read", native);
  }
  takeTimes(status, file);
  file.size = static_cast<std::uint64_t>(status.st_size);
  file.source.path = native;
  file.source.modified = status.st_mtim;
  return S_OK;
}

// Without a separator at its end; absolute, because the working directory may change before the
// data is read.
std::string absolutePath(const NativePath& path) {
  const bool isAbsolute = path.text.empty() || path.text.starts_with('/');
  std::string native = isAbsolute ? path.text : workingDirectory().text + '/' + path.text;
  native.resize(std::max<std::size_t>(native.find_last_not_of('/') + 1, native.empty() ? 0 : 1));
  return native;
}

}  // namespace

HRESULT scanDirectory(std::u16string_view path, ImageNode& directory) {
  const std::u16string text(path);
  const std::string native = absolutePath(translatePath(text.c_str()));
  struct stat status {};
  if (native.empty() || ::stat(native.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
    return refuseImage(IMAPI_E_NOT_DIR, u"This is not a directory", path);
  }
  return Scanner().scan(native, directory);
}

}  // namespace quillon::platform
