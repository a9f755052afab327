#include "recorders/recorder_store.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "recorders/disc_record.h"
#include "win32/environment.h"
#include "win32/utf8.h"
#include "win32/whole_file.h"

namespace quillon::platform {
namespace {

constexpr const char* kFirstName = "virtual-1";

bool isRecorder(const std::string& directory) {
  return ::access((directory + "/" + kRecorderFile).c_str(), F_OK) == 0;
}

DiscResult listDirectories(const std::string& store, std::vector<std::string>& directories) {
  directories.clear();
  DIR* handle = ::opendir(store.c_str());
  if (handle == nullptr) {
    return errno == ENOENT ? DiscResult() : fileFailure(errno, "read", store);
  }
  while (const dirent* entry = ::readdir(handle)) {
    std::string directory = store;
    directory.append("/").append(entry->d_name);
    if (entry->d_name[0] != '.' && isRecorder(directory)) {
      directories.push_back(std::move(directory));
    }
  }
  ::closedir(handle);
  std::sort(directories.begin(), directories.end());
  return S_OK;
}

// Excludes other makers of recorders while it is open.
DiscResult openStore(const std::string& store, Descriptor& lock) {
  if (!makeDirectories(store)) return fileFailure(errno, "write", store);
  lock = Descriptor(::open(store.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!lock.isOpen()) return fileFailure(errno, "read", store);
  while (::flock(lock.get(), LOCK_EX) != 0 && errno == EINTR) {
  }
  return S_OK;
}

std::string recorderText() {
  std::string text =
      "# A virtual recorder. The lines may be changed; media lists the discs that it writes.\n"
      "vendor = Quillon\n"
      "product = Virtual Recorder\n"
      "revision = 1.0\n"
      "media =";
  for (const DiscType& type : discTypes()) {
    if (type.rewriting != Rewriting::Never) text.append(" ").append(type.keyword);
  }
  return text + "\n";
}

// The file that makes the directory a recorder comes last: what a process left half made is none.
DiscResult fillRecorder(const std::string& directory, bool withBlankDisc) {
  if (!makeDirectories(directory)) return fileFailure(errno, "write", directory);
  if (withBlankDisc) {
    DiscRecord disc;
    disc.type = findDiscType("cd-r");
    disc.capacitySectors = disc.type->usualSectors;
    DiscResult result = writeDiscRecord(directory, disc);
    if (result.failed()) return result;
  }
  const std::string path = directory + "/" + kRecorderFile;
  const int error = replaceFile(path, recorderText());
  return error == 0 ? DiscResult() : fileFailure(error, "write", path);
}

DiscResult noSuchRecorder(const std::string& name) {
  return {HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND),
          u"There is no virtual recorder \"" + wideFromNative(name) + u"\"."};
}

}  // namespace

std::string recorderStoreDirectory() {
  std::string configured = environmentValue("QUILLON_RECORDERS");
  while (configured.size() > 1 && configured.back() == '/') configured.pop_back();
  return configured.empty() ? userDataDirectory() + "/quillon/recorders" : configured;
}

DiscResult recorderDirectories(std::vector<std::string>& directories) {
  const std::string store = recorderStoreDirectory();
  DiscResult result = listDirectories(store, directories);
  if (result.failed() || !directories.empty()) return result;
  Descriptor lock;
  result = openStore(store, lock);
  if (!result.failed()) result = listDirectories(store, directories);
  if (result.failed() || !directories.empty()) return result;
  directories.push_back(store + "/" + kFirstName);
  result = fillRecorder(directories.back(), /*withBlankDisc=*/true);
  if (result.failed()) directories.clear();
  return result;
}

DiscResult makeRecorder(const std::string& name, std::string& directory) {
  if (name.empty() || name[0] == '.' || name.find('/') != std::string::npos) {
    return {HRESULT_FROM_WIN32(ERROR_INVALID_NAME),
            u"\"" + wideFromNative(name) + u"\" is no name for a virtual recorder."};
  }
  const std::string store = recorderStoreDirectory();
  Descriptor lock;
  DiscResult result = openStore(store, lock);
  if (result.failed()) return result;
  directory = store + "/" + name;
  if (isRecorder(directory)) {
    return {HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS),
            u"There is a virtual recorder \"" + wideFromNative(name) + u"\" already."};
  }
  return fillRecorder(directory, /*withBlankDisc=*/false);
}

DiscResult findRecorder(const std::string& name, std::string& directory) {
  if (name.empty()) {
    std::vector<std::string> directories;
    DiscResult result = recorderDirectories(directories);
    if (!result.failed()) directory = directories.front();
    return result;
  }
  directory = recorderStoreDirectory() + "/" + name;
  if (name[0] == '.' || name.find('/') != std::string::npos || !isRecorder(directory)) {
    return noSuchRecorder(name);
  }
  return S_OK;
}

}  // namespace quillon::platform
