// Reads a directory of the disk into the tree of an image.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>

#include "image/image_results.h"
#include "image/image_time.h"
#include "image/image_tree.h"
#include "image/late_file.h"
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

using DirectoryStream = std::unique_ptr<DIR, int (*)(DIR*)>;

// Null leaves errno.
DirectoryStream openDirectory(const std::string& native) {
  return {::opendir(native.c_str()), &::closedir};
}

// In ascending order, so that of several things that are wrong always the same is told; false
// leaves errno.
bool readNames(DIR* stream, std::vector<std::string>& names) {
  errno = 0;
  while (const dirent* entry = ::readdir(stream)) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  std::sort(names.begin(), names.end());
  return errno == 0;
}

class Scanner {
 public:
  HRESULT scan(const std::string& native, ImageNode& directory);

 private:
  // The entry of that name in the directory that is open.
  HRESULT addEntry(int open, const std::string& native, const std::string& name,
                   ImageNode& directory);
  static HRESULT addFile(int open, const std::string& native, const std::string& name,
                         const struct stat& status, ImageNode& file);

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
  const DirectoryStream stream = openDirectory(native);
  struct stat status {};
  if (!stream || ::fstat(::dirfd(stream.get()), &status) != 0) {
    return refuseCode(codeOfErrno(errno), u"The directory cannot be read", native);
  }
  const Identity identity{status.st_dev, status.st_ino};
  if (std::find(above_.begin(), above_.end(), identity) != above_.end()) {
    return refuseCode(ERROR_CANT_RESOLVE_FILENAME, u"The link leads back to a directory above it",
                      native);
  }
  takeTimes(status, directory);
  std::vector<std::string> names;
  if (!readNames(stream.get(), names)) {
    return refuseCode(codeOfErrno(errno), u"The directory cannot be read", native);
  }
  above_.push_back(identity);
  for (const std::string& name : names) {
    const HRESULT hr = addEntry(::dirfd(stream.get()), native, name, directory);
    if (FAILED(hr)) return hr;
  }
  above_.pop_back();
  return S_OK;
}

HRESULT Scanner::addEntry(int open, const std::string& native, const std::string& name,
                          ImageNode& directory) {
  std::string path = native;
  path.append("/").append(name);
  // The layer would take it for a separator, and another file for this one.
  if (name.find('\\') != std::string::npos) {
    return refuseImage(IMAPI_E_INVALID_PATH, u"The name contains a backslash",
                       wideFromNative(path));
  }
  struct stat status {};
  if (::fstatat(open, name.c_str(), &status, 0) != 0) {
    const int error = errno;
    if (error != ENOENT) return refuseCode(codeOfErrno(error), u"The file cannot be read", path);
    // What has gone since the names were read is no part of the directory.
    if (::fstatat(open, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return S_OK;
    return refuseImage(IMAPI_E_NOT_FILE, u"The link leads nowhere", wideFromNative(path));
  }
  auto node = std::make_shared<ImageNode>();
  node->name = wideFromNative(name);
  node->parent = &directory;
  node->isDirectory = S_ISDIR(status.st_mode);
  const HRESULT hr =
      node->isDirectory ? scan(path, *node) : addFile(open, path, name, status, *node);
  if (FAILED(hr)) return hr;
  directory.children.emplace(node->name, node);
  return S_OK;
}

HRESULT Scanner::addFile(int open, const std::string& native, const std::string& name,
                         const struct stat& status, ImageNode& file) {
  if (!S_ISREG(status.st_mode)) {
    return refuseImage(IMAPI_E_NOT_FILE, u"Only files and directories can be put on a disc",
                       wideFromNative(native));
  }
  // The data is read while the disc is written: what cannot be read then would cost the disc.
  if (::faccessat(open, name.c_str(), R_OK, AT_EACCESS) != 0) {
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
  const HRESULT hr = Scanner().scan(native, directory);
  if (SUCCEEDED(hr)) addLateFile(native, directory);
  return hr;
}

}  // namespace quillon::platform
