#include "private_root.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "media_job.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

constexpr const char* kPrefix = "quillon-publish-";
constexpr const char* kRootName = "DICOM";
constexpr const char* kMoved = "MOVED";
constexpr const char* kKept = "KEPT";

bool mark(const fs::path& file) { return std::ofstream(file).put('\n').flush().good(); }

// Whether something of a job is in it, in the root or set aside beside it.
bool holdsFile(const fs::path& directory) {
  std::error_code error;
  for (fs::recursive_directory_iterator it(directory, error), end; !error && it != end;
       it.increment(error)) {
    const fs::path name = it->path().filename();
    const bool isMark = it.depth() == 0 && (name == kMoved || name == kKept);
    if (!isMark && !it->is_directory(error)) return true;
  }
  // What cannot be looked through may hold something.
  return error && error != std::errc::no_such_file_or_directory;
}

}  // namespace

Outcome PrivateRoot::make(bool isMoving) {
  const std::string parent = temporaryDirectory();
  if (!parent.empty() && directory_.make(parent, kPrefix) &&
      (!isMoving || mark(fs::path(directory_.path()) / kMoved))) {
    return {};
  }
  return "A root directory cannot be made in the temporary directory " + parent + ": " +
         std::strerror(errno) + ".";
}

std::string PrivateRoot::root() const { return directory_.path() + "/" + kRootName; }

std::string PrivateRoot::exampleOfRoot() {
  return temporaryDirectory() + kPrefix + "dry-run/" + kRootName;
}

void PrivateRoot::keep() const {
  if (!directory_.path().empty()) mark(fs::path(directory_.path()) / kKept);
}

void PrivateRoot::end(bool isKept) {
  if (directory_.path().empty()) return;
  std::error_code error;
  const fs::path path(directory_.path());
  if (isKept || holdsFile(path)) {
    keep();
  } else {
    fs::remove_all(path, error);
  }
}

std::vector<std::string> PrivateRoot::removeAbandoned(std::vector<std::string>& removed) {
  std::vector<std::string> stayed;
  HeldDirectory::forEachAbandoned(temporaryDirectory(), kPrefix, [&](const fs::path& path) {
    std::error_code error;
    const bool isKept = fs::exists(path / kKept, error);
    const bool isMoved = fs::exists(path / kMoved, error);
    if (!(isKept || isMoved) || !holdsFile(path)) {
      fs::remove_all(path, error);
      if (!error) removed.push_back(path.string());
    } else if (!isKept) {
      stayed.push_back("The objects of a job that did not finish stay in " + path.string() +
                       ": they may be the only copies of files.");
    }
  });
  return stayed;
}

}  // namespace quillon::cli
