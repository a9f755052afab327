#include "open_files.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>

namespace quillon::platform {
namespace {

bool isAllowedBy(const OpenFiles::Use& one, const OpenFiles::Use& other) {
  return (!other.reads || (one.share & FILE_SHARE_READ) != 0) &&
         (!other.writes || (one.share & FILE_SHARE_WRITE) != 0) &&
         (!other.deletes || (one.share & FILE_SHARE_DELETE) != 0);
}

}  // namespace

bool OpenFiles::add(const void* handle, int descriptor, const struct stat& status, const Use& use) {
  const Entry entry{handle, descriptor, true, status.st_dev, status.st_ino, use};
  const std::lock_guard lock(mutex_);
  if (entry.isInTheWay()) {
    for (const Entry& other : entries_) {
      if (!other.isOf(status) || !other.isInTheWay()) continue;
      if (!isAllowedBy(other.use, use) || !isAllowedBy(use, other.use)) return false;
    }
  }
  entries_.push_back(entry);
  return true;
}

void OpenFiles::addDirectory(const void* handle, int descriptor) {
  const std::lock_guard lock(mutex_);
  entries_.push_back({handle, descriptor, false, 0, 0, {}});
}

void OpenFiles::remove(const void* handle) {
  const std::lock_guard lock(mutex_);
  std::erase_if(entries_, [handle](const Entry& entry) { return entry.handle == handle; });
}

bool OpenFiles::keepsName(const struct stat& status) {
  const std::lock_guard lock(mutex_);
  return std::any_of(entries_.begin(), entries_.end(), [&status](const Entry& entry) {
    return entry.isOf(status) && entry.isInTheWay() && (entry.use.share & FILE_SHARE_DELETE) == 0;
  });
}

bool OpenFiles::isOpen(const struct stat& status) {
  const std::lock_guard lock(mutex_);
  return std::any_of(entries_.begin(), entries_.end(),
                     [&status](const Entry& entry) { return entry.isOf(status); });
}

bool OpenFiles::isAnyFileOpen() {
  const std::lock_guard lock(mutex_);
  return std::ranges::any_of(entries_, &Entry::isRegular);
}

bool OpenFiles::isAnythingOpenBelow(const std::string& realDirectory) {
  const std::string below = realDirectory.ends_with('/') ? realDirectory : realDirectory + '/';
  const std::lock_guard lock(mutex_);
  return std::any_of(entries_.begin(), entries_.end(), [&below](const Entry& entry) {
    return pathOfDescriptor(entry.descriptor).starts_with(below);
  });
}

OpenFiles& openFiles() {
  static OpenFiles files;
  return files;
}

std::string pathOfDescriptor(int descriptor) {
  std::array<char, PATH_MAX> path;
  const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
  const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
  return length < 0 ? std::string() : std::string(path.data(), static_cast<std::size_t>(length));
}

}  // namespace quillon::platform
