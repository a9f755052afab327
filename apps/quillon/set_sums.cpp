#include "set_sums.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

#include "platform/sha256.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceBytes = std::size_t{256} << 10;

struct SummedFile {
  std::string name;  // below the root
  std::uint64_t sizeBytes = 0;
};

Outcome unreadable(const std::string& path, const std::string& reason) {
  return "The file " + path + " cannot be read: " + reason + ".";
}

// Links are followed, as the delivery follows them.
Outcome collect(const std::string& root, std::vector<SummedFile>& files) {
  std::error_code error;
  constexpr auto kFollows = fs::directory_options::follow_directory_symlink;
  constexpr int kMostLevels = 64;  // a link that leads back up has no end
  for (fs::recursive_directory_iterator it(root, kFollows, error), end; !error && it != end;
       it.increment(error)) {
    if (it.depth() > kMostLevels) {
      return "The directory " + it->path().string() + " leads back to one above it.";
    }
    const std::string name = it->path().lexically_relative(root).string();
    if (name == kSumsName || it->is_directory(error) || error) continue;
    files.push_back({name, it->file_size(error)});
    if (error) break;
  }
  if (error) return unreadable(root, error.message());
  std::ranges::sort(files, {}, &SummedFile::name);
  return {};
}

// A line end in a name, or a backslash, stands behind a backslash, and one before the line says so.
std::string lineOf(const std::string& sum, const std::string& name) {
  std::string written;
  for (const char c : name) {
    if (c == '\n') {
      written += "\\n";
    } else if (c == '\r') {
      written += "\\r";
    } else {
      written += c == '\\' ? std::string("\\\\") : std::string(1, c);
    }
  }
  return (written == name ? "" : "\\") + sum + "  " + written + "\n";
}

class SetSums {
 public:
  SetSums(std::string root, const MediumFile::Progress& progress)
      : root_(std::move(root)), progress_(progress), piece_(kPieceBytes) {}

  // The lines of all files.
  Outcome make(std::string& lines) {
    std::vector<SummedFile> files;
    if (Outcome found = collect(root_, files); found.failed()) return found;
    for (const SummedFile& file : files) totalBytes_ += file.sizeBytes;
    for (const SummedFile& file : files) {
      std::string sum;
      if (Outcome summed = sumOf(root_ + "/" + file.name, sum); summed.failed()) return summed;
      lines += lineOf(sum, file.name);
    }
    return {};
  }

 private:
  Outcome sumOf(const std::string& path, std::string& sum) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) return unreadable(path, std::strerror(errno));
    Sha256 bytes;
    ssize_t got = 0;
    do {
      got = ::read(descriptor, piece_.data(), piece_.size());
      if (got > 0) {
        bytes.Update(piece_.data(), static_cast<std::size_t>(got));
        progress_(doneBytes_ += static_cast<std::uint64_t>(got), totalBytes_);
      }
    } while (got > 0 || (got < 0 && errno == EINTR));
    const int error = errno;
    ::close(descriptor);
    if (got < 0) return unreadable(path, std::strerror(error));
    sum = bytes.Finish();
    return sum.empty() ? Outcome("The system has no SHA-256.") : Outcome();
  }

  std::string root_;
  const MediumFile::Progress& progress_;
  std::vector<char> piece_;
  std::uint64_t totalBytes_ = 0;
  std::uint64_t doneBytes_ = 0;
};

}  // namespace

Outcome writeSums(const std::string& root, const MediumFile::Progress& progress) {
  std::string lines;
  if (Outcome made = SetSums(root, progress).make(lines); made.failed()) return made;
  OutputFile output(root + "/" + kSumsName, /*isReplacing=*/true);
  if (Outcome begun = output.begin(); begun.failed()) return begun;
  return output.write(lines.data(), lines.size()) ? output.finish() : output.failure();
}

}  // namespace quillon::cli
