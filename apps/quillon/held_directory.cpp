#include "held_directory.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

// Until it is locked, a new directory has a name that no clean-up looks for.
constexpr std::string_view kUnlocked = "new-";

std::string joined(const std::string& parent, const std::string& name) {
  return parent.ends_with('/') ? parent + name : parent + "/" + name;
}

}  // namespace

HeldDirectory::~HeldDirectory() {
  if (lock_ >= 0) ::close(lock_);
}

bool HeldDirectory::make(const std::string& parent, const std::string& prefix) {
  std::string made =
      joined(parent, prefix).append(kUnlocked) + std::to_string(getpid()) + "-XXXXXX";
  if (mkdtemp(made.data()) == nullptr) return false;
  std::string name = made;
  name.erase(joined(parent, prefix).size(), kUnlocked.size());
  lock_ = ::open(made.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  // Where there are no locks, nothing is ever taken for abandoned either.
  if (lock_ >= 0) ::flock(lock_, LOCK_EX | LOCK_NB);
  if (lock_ < 0 || ::rename(made.c_str(), name.c_str()) != 0) {
    const int error = errno;
    ::rmdir(made.c_str());
    errno = error;
    return false;
  }
  path_ = std::move(name);
  return true;
}

bool HeldDirectory::take(const std::string& path) {
  lock_ = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
  struct stat status {};
  if (lock_ < 0 || fstat(lock_, &status) != 0 || status.st_uid != geteuid() ||
      ::flock(lock_, LOCK_EX | LOCK_NB) != 0) {
    return false;
  }
  path_ = path;
  return true;
}

std::vector<std::string> HeldDirectory::named(const std::string& parent,
                                              const std::string& prefix) {
  std::vector<std::string> paths;
  std::error_code error;
  for (fs::directory_iterator it(parent, error), end; !error && it != end; it.increment(error)) {
    const std::string name = it->path().filename().string();
    const bool isNamed = name.size() > prefix.size() && name.starts_with(prefix) &&
                         name[prefix.size()] >= '0' && name[prefix.size()] <= '9';
    if (isNamed) paths.push_back(it->path().string());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

}  // namespace quillon::cli
