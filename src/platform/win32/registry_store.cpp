#include "registry_store.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <optional>

#include "platform/win32/errors.h"
#include "win32/environment.h"
#include "win32/last_error.h"
#include "win32/whole_file.h"

namespace quillon::platform {
namespace {

constexpr const char* kSystemFile = "/etc/quillon/registry.reg";

LSTATUS codeFor(int error) { return static_cast<LSTATUS>(codeOfErrno(error)); }

bool exists(const std::string& path) { return ::access(path.c_str(), F_OK) == 0; }

bool isUnchanged(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
         a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

// What a link names, so that replacing the file leaves the link in its place.
std::string resolved(const std::string& path) {
  std::array<char, PATH_MAX> target;
  return ::realpath(path.c_str(), target.data()) == nullptr ? path : std::string(target.data());
}

}  // namespace

RegistryStore::Location RegistryStore::locate() {
  const std::string configured = environmentValue("QUILLON_REGISTRY");
  if (!configured.empty()) return {configured, configured};
  const std::string ofUser = userConfigDirectory() + "/quillon/registry.reg";
  if (exists(ofUser) || !exists(kSystemFile)) return {ofUser, ofUser};
  // The system's file holds until the user changes something, which makes a copy of the user's own.
  return {kSystemFile, ::access(kSystemFile, W_OK) == 0 ? kSystemFile : ofUser};
}

LSTATUS RegistryStore::load(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) {
    if (errno != ENOENT && errno != ENOTDIR) return codeFor(errno);
    loaded_ = false;
    path_ = path;
    document_ = RegistryDocument{};
    return 0;
  }
  if (loaded_ && path == path_ && isUnchanged(status, status_)) return 0;
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  std::string bytes;
  if (file.get() < 0 || ::fstat(file.get(), &status) != 0 || !readAll(file.get(), bytes)) {
    return codeFor(errno);
  }
  document_ = parseRegistry(bytes);
  path_ = path;
  status_ = status;
  loaded_ = true;
  return 0;
}

LSTATUS RegistryStore::read(RegistryDocument*& document) {
  document = &document_;
  return load(locate().readFrom);
}

LSTATUS RegistryStore::save(const std::string& path) {
  const int error = replaceFile(resolved(path), writeRegistry(document_));
  // Whatever is on the disk now is what the next call reads.
  loaded_ = false;
  return error == 0 ? 0 : codeFor(error);
}

LSTATUS RegistryStore::change(const std::function<LSTATUS(RegistryKey& roots)>& change) {
  const Location location = locate();
  const std::string directory = directoryOf(location.writeTo);
  if (!makeDirectories(directory)) return codeFor(errno);
  // The lock is on the directory: the file itself is another one after every change.
  const Descriptor lock(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (lock.get() < 0) return codeFor(errno);
  while (::flock(lock.get(), LOCK_EX) != 0 && errno == EINTR) {
  }
  if (const LSTATUS status = load(location.readFrom); status != 0) return status;
  if (document_.damaged) return static_cast<LSTATUS>(ERROR_BADKEY);
  const LSTATUS status = change(document_.roots);
  if (status != 0) return status;
  return save(location.writeTo);
}

}  // namespace quillon::platform
