#include "zip_output.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

#include "terminal_text.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceBytes = std::size_t{256} << 10;

struct PackedFile {
  std::string name;  // in the archive
  bool isDirectory = false;
  std::uint64_t sizeBytes = 0;
  timespec modified{};
};

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t bytes = utf8SequenceBytes(text);
    if (bytes == 0) return false;
    text.remove_prefix(bytes);
  }
  return true;
}

bool isSame(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

class Descriptor {
 public:
  explicit Descriptor(const std::string& path)
      : number_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] int number() const { return number_; }

 private:
  int number_;
};

class ZipOutput {
 public:
  ZipOutput(std::string root, OutputFile& output, const MediumFile::Progress& progress)
      : root_(std::move(root)),
        progress_(progress),
        writer_([&output](const void* bytes, std::size_t count) {
          return output.write(bytes, count);
        }) {}

  Outcome run(const platform::ArchiveOptions& options) {
    if (Outcome found = collect("", 1); found.failed()) return found;
    bringDicomDirFirst();
    for (const PackedFile& file : files_) totalBytes_ += file.sizeBytes;
    if (!writer_.open(options)) return archiveFailure();
    for (const PackedFile& file : files_) {
      if (Outcome packed = pack(file); packed.failed()) return packed;
    }
    return writer_.close() ? Outcome() : archiveFailure();
  }

 private:
  Outcome collect(const std::string& directory, int level);
  void bringDicomDirFirst();
  Outcome pack(const PackedFile& file);
  Outcome packBytes(const PackedFile& file, int descriptor);

  [[nodiscard]] std::string pathOf(const std::string& name) const { return root_ + "/" + name; }
  [[nodiscard]] Outcome unreadable(const std::string& name, int error) const {
    return "The file " + pathOf(name) + " cannot be read: " + std::strerror(error) + ".";
  }
  [[nodiscard]] Outcome archiveFailure() const {
    return "The ZIP file cannot be made: " + writer_.reason() + ".";
  }

  std::string root_;
  const MediumFile::Progress& progress_;
  platform::ArchiveWriter writer_;
  std::vector<PackedFile> files_;
  std::uint64_t totalBytes_ = 0;
  std::uint64_t doneBytes_ = 0;
  std::vector<char> piece_ = std::vector<char>(kPieceBytes);
};

// In ascending order, a directory's files before its directories; one that is empty is packed as
// such.
Outcome ZipOutput::collect(const std::string& directory, int level) {
  constexpr int kMostLevels = 64;  // a link that leads back up has no end
  if (level > kMostLevels) {
    return "The directory " + pathOf(directory) + " lies too deep, or leads back to one above it.";
  }
  std::error_code error;
  std::vector<std::string> names;
  for (fs::directory_iterator it(pathOf(directory), error), end; !error && it != end;
       it.increment(error)) {
    names.push_back(it->path().filename().string());
  }
  if (error) return unreadable(directory, error.value());
  std::sort(names.begin(), names.end());
  const std::size_t before = files_.size();
  std::vector<std::string> directories;
  for (const std::string& leaf : names) {
    std::string name = directory;
    if (!name.empty()) name += '/';
    name += leaf;
    if (!isUtf8(name) || name.find('\\') != std::string::npos) {
      return "The name of the file " + pathOf(name) + " cannot stand in a ZIP file.";
    }
    struct stat status {};
    if (::stat(pathOf(name).c_str(), &status) != 0) return unreadable(name, errno);
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
    if (::stat(pathOf(directory).c_str(), &status) != 0) return unreadable(directory, errno);
    files_.push_back({directory, true, 0, status.st_mtim});
  }
  return {};
}

void ZipOutput::bringDicomDirFirst() {
  const auto found = std::ranges::find(files_, "DICOMDIR", &PackedFile::name);
  if (found != files_.end()) std::rotate(files_.begin(), found, std::next(found));
}

Outcome ZipOutput::pack(const PackedFile& file) {
  if (file.isDirectory) {
    return writer_.addDirectory(file.name, file.modified.tv_sec) ? Outcome() : archiveFailure();
  }
  const Descriptor open(pathOf(file.name));
  if (open.number() < 0) return unreadable(file.name, errno);
  if (!writer_.beginFile(file.name, file.sizeBytes, file.modified.tv_sec)) return archiveFailure();
  return packBytes(file, open.number());
}

// What somebody writes to while it is read may be half old, half new.
Outcome ZipOutput::packBytes(const PackedFile& file, int descriptor) {
  std::uint64_t left = file.sizeBytes;
  while (left > 0) {
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(left, piece_.size()));
    const ssize_t got = ::read(descriptor, piece_.data(), wanted);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return unreadable(file.name, errno);
    if (got == 0) break;
    if (!writer_.write(piece_.data(), static_cast<std::size_t>(got))) return archiveFailure();
    left -= static_cast<std::uint64_t>(got);
    progress_(doneBytes_ += static_cast<std::uint64_t>(got), totalBytes_);
  }
  struct stat status {};
  if (::fstat(descriptor, &status) != 0 || left > 0 ||
      static_cast<std::uint64_t>(status.st_size) != file.sizeBytes ||
      !isSame(status.st_mtim, file.modified)) {
    return "The file " + pathOf(file.name) + " has changed while it was packed.";
  }
  return {};
}

}  // namespace

Outcome writeZip(const std::string& directory, const platform::ArchiveOptions& options,
                 OutputFile& output, const MediumFile::Progress& progress) {
  return ZipOutput(directory, output, progress).run(options);
}

}  // namespace quillon::cli
