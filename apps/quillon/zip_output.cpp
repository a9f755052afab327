#include "zip_output.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <vector>

#include "set_files.h"
#include "terminal_text.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kPieceBytes = std::size_t{256} << 10;

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t bytes = utf8SequenceBytes(text);
    if (bytes == 0) return false;
    text.remove_prefix(bytes);
  }
  return true;
}

class ZipOutput {
 public:
  ZipOutput(std::string root, SetSums* sums, OutputFile& output,
            const MediumOutput::Progress& progress)
      : root_(std::move(root)),
        sums_(sums),
        progress_(progress),
        writer_([&output](const void* bytes, std::size_t count) {
          return output.write(bytes, count);
        }) {}

  Outcome run(const platform::ArchiveOptions& options) {
    if (Outcome found = collect(); found.failed()) return found;
    if (!writer_.open(options)) return archiveFailure();
    for (const SetFile& file : files_) {
      if (Outcome packed = pack(file); packed.failed()) return packed;
    }
    if (Outcome packed = packSums(); packed.failed()) return packed;
    return writer_.close() ? Outcome() : archiveFailure();
  }

 private:
  Outcome collect();
  Outcome pack(const SetFile& file);
  Outcome packBytes(const SetFile& file, int descriptor);
  Outcome packSums();

  [[nodiscard]] std::string pathOf(const std::string& name) const { return root_ + "/" + name; }
  [[nodiscard]] Outcome archiveFailure() const {
    return "The ZIP file cannot be made: " + writer_.reason() + ".";
  }

  std::string root_;
  SetSums* sums_;
  const MediumOutput::Progress& progress_;
  platform::ArchiveWriter writer_;
  std::vector<SetFile> files_;
  std::uint64_t totalBytes_ = 0;
  std::uint64_t doneBytes_ = 0;
  std::vector<char> piece_ = std::vector<char>(kPieceBytes);
};

// In the order of the archive; the sums come last.
Outcome ZipOutput::collect() {
  if (Outcome listed = listSetFiles(root_, files_); listed.failed()) return listed;
  if (sums_ != nullptr) {
    std::erase_if(files_, [](const SetFile& file) { return file.name == kSumsName; });
  }
  for (const SetFile& file : files_) {
    if (!isUtf8(file.name) || file.name.find('\\') != std::string::npos) {
      return "The name of the file " + pathOf(file.name) + " cannot stand in a ZIP file.";
    }
    totalBytes_ += file.sizeBytes;
  }
  return {};
}

Outcome ZipOutput::pack(const SetFile& file) {
  if (file.isDirectory) {
    return writer_.addDirectory(file.name, file.modified.tv_sec) ? Outcome() : archiveFailure();
  }
  const SourceDescriptor open(pathOf(file.name));
  if (open.number() < 0) return unreadable(pathOf(file.name), errno);
  if (!writer_.beginFile(file.name, file.sizeBytes, file.modified.tv_sec)) return archiveFailure();
  return packBytes(file, open.number());
}

Outcome ZipOutput::packBytes(const SetFile& file, int descriptor) {
  std::uint64_t left = file.sizeBytes;
  while (left > 0) {
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(left, piece_.size()));
    const ssize_t got = ::read(descriptor, piece_.data(), wanted);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return unreadable(pathOf(file.name), errno);
    if (got == 0) break;
    if (!writer_.write(piece_.data(), static_cast<std::size_t>(got))) return archiveFailure();
    left -= static_cast<std::uint64_t>(got);
    progress_(doneBytes_ += static_cast<std::uint64_t>(got), totalBytes_);
  }
  if (left > 0 || !isAsListed(descriptor, file)) {
    return "The file " + pathOf(file.name) + " has changed while it was packed.";
  }
  return {};
}

Outcome ZipOutput::packSums() {
  if (sums_ == nullptr) return {};
  if (Outcome made = sums_->finish(); made.failed()) return made;
  const std::string& text = sums_->text();
  const bool isPacked = writer_.beginFile(kSumsName, text.size(), std::time(nullptr)) &&
                        writer_.write(text.data(), text.size());
  return isPacked ? Outcome() : archiveFailure();
}

}  // namespace

Outcome writeZip(const std::string& directory, const platform::ArchiveOptions& options,
                 SetSums* sums, OutputFile& output, const MediumOutput::Progress& progress) {
  return ZipOutput(directory, sums, output, progress).run(options);
}

}  // namespace quillon::cli
