#include "medium_output.h"

#include <filesystem>

#include "image_output.h"
#include "media_job.h"
#include "medium_questions.h"
#include "password_file.h"
#include "root_guard.h"
#include "source_walk.h"
#include "zip_output.h"

namespace quillon::cli {

namespace fs = std::filesystem;

MediumOutput::MediumOutput(MediumOutputOptions options)
    : options_(std::move(options)), output_(options_.path, options_.isReplacing) {
  if (!output_.isStandardOutput()) directory_ = fs::path(options_.path).parent_path().string();
}

Outcome MediumOutput::check(const std::string& root, const std::vector<std::string>& sources) {
  if (options_.passwordFile) {
    if (Outcome read = readPassword(*options_.passwordFile, password_); read.failed()) return read;
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

Outcome MediumOutput::checkPlace() const {
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
Outcome MediumOutput::checkOldFile(const std::vector<std::string>& sources) const {
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

// How much compression saves is not known.
Outcome MediumOutput::askRoom(const DiscRoom& room) const {
  if (output_.isStandardOutput() || options_.isCompressing) return {};
  return mayHold(directory_,
                 isZip() ? room.Bytes() : room.LeastSectors(/*hasUdf=*/true) * kDiscSectorBytes);
}

Outcome MediumOutput::write(const std::string& root, const std::string& volume, SetSums* sums,
                            const Progress& progress, const OutputFile::Check& check) {
  if (Outcome begun = output_.begin(); begun.failed()) return begun;
  const platform::ArchiveOptions packing{options_.isCompressing, password_};
  Outcome written = isZip() ? writeZip(root, packing, sums, output_, progress)
                            : writeImage(root, volume, sums, output_, progress);
  if (output_.failure().failed()) return output_.failure();
  return written.failed() ? written : output_.finish(check);
}

std::string MediumOutput::abandon() {
  const bool isWhole = output_.abandon();
  if (output_.isStandardOutput()) {
    return isWhole ? "All was written to standard output"
                   : "What was written to standard output is not whole";
  }
  return "The file " + options_.path + (isWhole ? " is whole" : " was not written");
}

std::string MediumOutput::remark() const {
  if (password_.empty()) return {};
  return "The ZIP file is encrypted with AES-256: 7-Zip, WinZip, Keka and the like open it with "
         "the "
         "password, Windows Explorer does not.";
}

}  // namespace quillon::cli
