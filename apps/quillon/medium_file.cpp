#include "medium_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "image_output.h"
#include "media_job.h"
#include "medium_questions.h"
#include "root_guard.h"
#include "source_walk.h"
#include "zip_output.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestPassword = 1024;

// Of a file that nobody else can read: up to its first line end, or its end.
Outcome readFirstLine(const std::string& file, std::string& line) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
  if (descriptor < 0) {
    return "The password file " + file + " cannot be read: " + std::strerror(errno) + ".";
  }
  struct stat status {};
  const bool isPrivate = ::fstat(descriptor, &status) == 0 && (status.st_mode & 077) == 0;
  std::array<char, kLongestPassword + 2> bytes{};
  std::size_t count = 0;
  ssize_t got = 1;
  while (isPrivate && count < bytes.size() && got > 0) {
    got = ::read(descriptor, bytes.data() + count, bytes.size() - count);
    if (got > 0) count += static_cast<std::size_t>(got);
  }
  const int error = errno;
  ::close(descriptor);
  if (!isPrivate) {
    return "The password file " + file + " can be read by others: chmod 600 " + file +
           " keeps them out.";
  }
  if (got < 0)
    return "The password file " + file + " cannot be read: " + std::strerror(error) + ".";
  const std::string_view text(bytes.data(), count);
  line = text.substr(0, text.find('\n'));
  if (line.ends_with('\r')) line.pop_back();
  if (line.empty()) return "The password file " + file + " holds no password in its first line.";
  if (line.size() > kLongestPassword) {
    return "The password in " + file + " has more than " + std::to_string(kLongestPassword) +
           " bytes.";
  }
  if (line.find('\0') != std::string::npos) return "The password in " + file + " is no text.";
  return {};
}

}  // namespace

MediumFile::MediumFile(MediumFileOptions options)
    : options_(std::move(options)), output_(options_.path, options_.isReplacing) {
  if (!output_.isStandardOutput()) directory_ = fs::path(options_.path).parent_path().string();
}

Outcome MediumFile::check(const std::string& root, const std::vector<std::string>& sources) {
  if (options_.passwordFile) {
    if (Outcome read = readPassword(); read.failed()) return read;
  }
  if (output_.isStandardOutput()) {
    if (!OutputFile::isStandardOutputTerminal()) return {};
    return "Standard output is a terminal: send it to a program or a file.";
  }
  if (Outcome fit = checkPlace(); fit.failed()) return fit;
  if (liesWithin(options_.path, root)) {
    return "The file " + options_.path + " lies in the root directory " + root + ".";
  }
  if (Outcome free = checkOldFile(sources); free.failed()) return free;
  return mayFill(directory_);
}

Outcome MediumFile::checkPlace() const {
  if (!fs::path(options_.path).has_filename()) return "The file " + options_.path + " has no name.";
  switch (rootEntry(directory_)) {
    case RootEntry::Missing:
      return "The directory " + directory_ + " does not exist.";
    case RootEntry::NotDirectory:
      return "The path " + directory_ + " is not a directory.";
    default:
      break;
  }
  const std::string temporary = temporaryJobDirectory();
  if (!temporary.empty() && liesWithin(options_.path, temporary)) {
    return "The file " + options_.path + " lies in " + temporary + ", which every job removes.";
  }
  return {};
}

// What the user hands in may be the only copy: it is never replaced.
Outcome MediumFile::checkOldFile(const std::vector<std::string>& sources) const {
  std::error_code error;
  const fs::file_status status = fs::symlink_status(options_.path, error);
  if (status.type() == fs::file_type::not_found) return {};
  if (!fs::is_regular_file(status)) {
    return "There is something called " + options_.path + " that is not a file.";
  }
  if (!options_.isReplacing) {
    return "The file " + options_.path + " exists; --overwrite replaces it.";
  }
  for (const std::string& source : sources) {
    const std::string path = absolutePath(source);
    if (liesWithin(options_.path, path) || fs::equivalent(options_.path, path, error)) {
      return "The file " + options_.path + " belongs to the source " + source + ".";
    }
  }
  return {};
}

Outcome MediumFile::readPassword() { return readFirstLine(*options_.passwordFile, password_); }

// How much compression saves is not known.
Outcome MediumFile::askRoom(const DiscRoom& room) const {
  if (output_.isStandardOutput() || options_.isCompressing) return {};
  return mayHold(directory_,
                 isZip() ? room.Bytes() : room.LeastSectors(/*hasUdf=*/true) * kDiscSectorBytes);
}

Outcome MediumFile::write(const std::string& root, const std::string& volume,
                          const Progress& progress, const OutputFile::Check& check) {
  if (Outcome begun = output_.begin(); begun.failed()) return begun;
  Outcome written = isZip() ? writeZip(root, {options_.isCompressing, password_}, output_, progress)
                            : writeImage(root, volume, output_, progress);
  if (output_.failure().failed()) return output_.failure();
  return written.failed() ? written : output_.finish(check);
}

std::string MediumFile::abandon() {
  const bool isWhole = output_.abandon();
  if (output_.isStandardOutput()) {
    return isWhole ? "All was written to standard output"
                   : "What was written to standard output is not whole";
  }
  return "The file " + options_.path + (isWhole ? " is whole" : " was not written");
}

std::string MediumFile::remark() const {
  if (password_.empty()) return {};
  return "The ZIP file is encrypted with AES-256: 7-Zip, WinZip, Keka and the like open it with "
         "the "
         "password, Windows Explorer does not.";
}

}  // namespace quillon::cli
