#include "set_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

constexpr int kMostLevels = 64;  // a link that leads back up has no end

class Listing {
 public:
  Listing(const std::string& root, std::vector<SetFile>& files) : root_(root), files_(files) {}

  Outcome collect(const std::string& directory, int level);

 private:
  [[nodiscard]] std::string pathOf(const std::string& name) const { return root_ + "/" + name; }
  Outcome namesIn(const std::string& directory, std::vector<std::string>& names) const;

  const std::string& root_;
  std::vector<SetFile>& files_;
};

Outcome Listing::namesIn(const std::string& directory, std::vector<std::string>& names) const {
  std::error_code error;
  for (fs::directory_iterator it(pathOf(directory), error), end; !error && it != end;
       it.increment(error)) {
    names.push_back((directory.empty() ? "" : directory + "/") + it->path().filename().string());
  }
  if (error) return unreadable(pathOf(directory), error.value());
  std::sort(names.begin(), names.end());
  return {};
}

Outcome Listing::collect(const std::string& directory, int level) {
  if (level > kMostLevels) {
    return "The directory " + pathOf(directory) + " lies too deep, or leads back to one above it.";
  }
  std::vector<std::string> names;
  if (Outcome read = namesIn(directory, names); read.failed()) return read;
  const std::size_t before = files_.size();
  std::vector<std::string> directories;
  for (const std::string& name : names) {
    struct stat status {};
    if (::stat(pathOf(name).c_str(), &status) != 0) return unreadable(pathOf(name), errno);
    if (S_ISDIR(status.st_mode)) {
      directories.push_back(name);
    } else if (S_ISREG(status.st_mode)) {
      files_.push_back({name, false, static_cast<std::uint64_t>(status.st_size), status.st_mtim});
    } else {
      return "The file " + pathOf(name) + " is neither a file nor a directory.";
    }
  }
  for (const std::string& name : directories) {
    if (Outcome below = collect(name, level + 1); below.failed()) return below;
  }
  if (files_.size() == before && !directory.empty()) {
    struct stat status {};
    if (::stat(pathOf(directory).c_str(), &status) != 0) {
      return unreadable(pathOf(directory), errno);
    }
    files_.push_back({directory, true, 0, status.st_mtim});
  }
  return {};
}

}  // namespace

Outcome listSetFiles(const std::string& root, std::vector<SetFile>& files) {
  if (Outcome listed = Listing(root, files).collect("", 1); listed.failed()) return listed;
  const auto found = std::ranges::find(files, "DICOMDIR", &SetFile::name);
  if (found != files.end()) std::rotate(files.begin(), found, std::next(found));
  return {};
}

SourceDescriptor::SourceDescriptor(const std::string& path)
    : number_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}

SourceDescriptor::~SourceDescriptor() {
  if (number_ >= 0) ::close(number_);
}

bool isAsListed(int descriptor, const SetFile& file) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 &&
         static_cast<std::uint64_t>(status.st_size) == file.sizeBytes &&
         status.st_mtim.tv_sec == file.modified.tv_sec &&
         status.st_mtim.tv_nsec == file.modified.tv_nsec;
}

Outcome unreadable(const std::string& path, int error) {
  return "The file " + path + " cannot be read: " + std::strerror(error) + ".";
}

}  // namespace quillon::cli
