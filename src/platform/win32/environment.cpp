#include "win32/environment.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace quillon::platform {
namespace {

std::string homeDirectory() {
  std::string home = environmentValue("HOME");
  if (!home.empty()) return home;
  const passwd* user = ::getpwuid(::getuid());
  return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "/";
}

// The base directories count only when they are absolute; a relative one is to be ignored.
std::string baseDirectory(const char* variable, const char* belowHome) {
  const std::string configured = environmentValue(variable);
  return !configured.empty() && configured[0] == '/' ? configured : homeDirectory() + belowHome;
}

// Makes it when it is missing, and closes it to others when it is not. False leaves errno.
bool makeOwn(const std::string& directory) {
  if (::mkdir(directory.c_str(), 0700) == 0) return true;
  struct stat status {};
  if (errno != EEXIST || ::stat(directory.c_str(), &status) != 0) return false;
  errno = S_ISDIR(status.st_mode) ? EACCES : ENOTDIR;
  if (!S_ISDIR(status.st_mode) || status.st_uid != ::geteuid()) return false;
  return (status.st_mode & 0777) == 0700 || ::chmod(directory.c_str(), 0700) == 0;
}

bool isOwn(const std::string& directory) {
  struct stat status {};
  return ::stat(directory.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid() && (status.st_mode & 0777) == 0700;
}

}  // namespace

std::string environmentValue(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

std::string userDataDirectory() { return baseDirectory("XDG_DATA_HOME", "/.local/share"); }
std::string userConfigDirectory() { return baseDirectory("XDG_CONFIG_HOME", "/.config"); }
std::string userCacheDirectory() { return baseDirectory("XDG_CACHE_HOME", "/.cache"); }

std::string ownTemporaryDirectory() {
  const std::string cache = userCacheDirectory();
  std::string own = cache + "/quillon";
  if (makeDirectories(cache) && makeOwn(own)) return own;
  const int error = errno;
  std::string runtime = environmentValue("XDG_RUNTIME_DIR");
  if (!runtime.empty() && runtime[0] == '/' && isOwn(runtime)) return runtime;
  errno = error;
  return {};
}

bool makeDirectories(const std::string& path) {
  for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
    const std::string part = path.substr(0, end);
    if (::mkdir(part.c_str(), 0777) != 0 && errno != EEXIST) {
      // Above the user's own directories mkdir may be refused although the directory is there.
      const int refused = errno;
      struct stat status {};
      if (::stat(part.c_str(), &status) != 0) {
        errno = refused;
        return false;
      }
    }
    if (end == std::string::npos) return true;
  }
}

void syncDirectory(const std::string& path) {
  const int directory = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (directory < 0) return;
  ::fsync(directory);
  ::close(directory);
}

}  // namespace quillon::platform
