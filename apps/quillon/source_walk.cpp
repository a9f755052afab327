#include "source_walk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>

namespace quillon::cli {

namespace {

struct DirectoryCloser {
  void operator()(DIR* directory) const { closedir(directory); }
};
using DirectoryHandle = std::unique_ptr<DIR, DirectoryCloser>;

struct Entry {
  std::string name;
  unsigned char type = DT_UNKNOWN;
};

std::string systemReason(std::string_view what) {
  return std::string(what) + ": " + std::strerror(errno) + ".";
}

std::string joined(const std::string& directory, const std::string& name) {
  return directory.ends_with('/') ? directory + name : directory + "/" + name;
}

unsigned char typeOfMode(mode_t mode) {
  if (S_ISREG(mode)) return DT_REG;
  if (S_ISDIR(mode)) return DT_DIR;
  if (S_ISLNK(mode)) return DT_LNK;
  return DT_FIFO;
}

class Walk {
 public:
  explicit Walk(const SourceWalkOptions& options) : options_(options) {
    struct stat status {};
    if (!options.excludedDirectory.empty() &&
        stat(options.excludedDirectory.c_str(), &status) == 0) {
      excluded_ = status;
    }
  }

  void argument(const std::string& path) {
    struct stat link {};
    struct stat target {};
    if (lstat(path.c_str(), &link) != 0 || stat(path.c_str(), &target) != 0) {
      problem(path, systemReason("it cannot be found"), true);
      list_.problems.back().isMissing = true;
    } else if (S_ISDIR(target.st_mode)) {
      directory(path);
    } else if (S_ISREG(target.st_mode)) {
      list_.files.push_back({path, true, S_ISLNK(link.st_mode)});
    } else {
      problem(path, "it is neither a file nor a directory.", true);
    }
  }

  SourceList take() { return std::move(list_); }

 private:
  void problem(const std::string& path, std::string reason, bool endsJob) {
    list_.problems.push_back({path, std::move(reason), endsJob});
  }

  // Whether the directory is the one to leave out.
  [[nodiscard]] bool isExcluded(const std::string& path) const {
    struct stat status {};
    return excluded_ && stat(path.c_str(), &status) == 0 && status.st_dev == excluded_->st_dev &&
           status.st_ino == excluded_->st_ino;
  }

  void directory(const std::string& path) {
    if (isExcluded(path)) {
      problem(path, "it is the directory of the file set itself.", false);
      return;
    }
    std::vector<Entry> entries;
    if (!readDirectory(path, entries)) return;
    std::sort(entries.begin(), entries.end(),
              [](const Entry& a, const Entry& b) { return a.name < b.name; });
    for (const Entry& entry : entries) visit(joined(path, entry.name), entry.type);
  }

  // All entries are read before the first is visited, so that no more than one handle is open.
  bool readDirectory(const std::string& path, std::vector<Entry>& entries) {
    const DirectoryHandle handle(opendir(path.c_str()));
    if (handle == nullptr) {
      problem(path, systemReason("the directory cannot be read"), true);
      return false;
    }
    for (;;) {
      errno = 0;
      const dirent* entry = readdir(handle.get());
      if (entry == nullptr) break;
      const std::string_view name = entry->d_name;
      if (name != "." && name != "..") entries.push_back({std::string(name), entry->d_type});
    }
    if (errno != 0) {
      problem(path, systemReason("the directory cannot be read"), true);
      return false;
    }
    return true;
  }

  void visit(const std::string& path, unsigned char type) {
    struct stat status {};
    if (type == DT_UNKNOWN && lstat(path.c_str(), &status) == 0) type = typeOfMode(status.st_mode);
    switch (type) {
      case DT_DIR:
        if (options_.intoSubdirectories) directory(path);
        return;
      case DT_REG:
        list_.files.push_back({path, false, false});
        return;
      case DT_LNK:
        link(path);
        return;
      default:
        problem(path, "it is not a regular file.", false);
        return;
    }
  }

  void link(const std::string& path) {
    struct stat target {};
    if (stat(path.c_str(), &target) != 0) {
      problem(path, systemReason("it is a symbolic link whose target cannot be found"), false);
    } else if (S_ISREG(target.st_mode)) {
      list_.files.push_back({path, false, true});
    } else if (S_ISDIR(target.st_mode)) {
      problem(path, "it is a symbolic link to a directory.", false);
    } else {
      problem(path, "it is not a regular file.", false);
    }
  }

  const SourceWalkOptions& options_;
  std::optional<struct stat> excluded_;
  SourceList list_;
};

}  // namespace

SourceList walkSources(const std::vector<std::string>& arguments,
                       const SourceWalkOptions& options) {
  Walk walk(options);
  for (const std::string& argument : arguments) walk.argument(argument);
  return walk.take();
}

Outcome canBeRead(const std::string& path) {
  // Without waiting: a named pipe has no writer that would let the call return.
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (file < 0) return systemReason("it cannot be opened");
  struct stat status {};
  Outcome outcome;
  char byte = 0;
  if (fstat(file, &status) == 0 && !S_ISREG(status.st_mode)) {
    outcome = "it is not a regular file.";
  } else if (::pread(file, &byte, 1, 0) < 0) {
    outcome = systemReason("it cannot be read");
  }
  ::close(file);
  return outcome;
}

std::string absolutePath(std::string_view path) {
  std::string absolute = path.starts_with('/')
                             ? std::string(path)
                             : joined(std::filesystem::current_path().string(), std::string(path));
  // Several separators in a row are one, but a path of the system's may not have them.
  const auto isDoubled = [](char a, char b) { return a == '/' && b == '/'; };
  absolute.erase(std::unique(absolute.begin(), absolute.end(), isDoubled), absolute.end());
  return absolute;
}

}  // namespace quillon::cli
