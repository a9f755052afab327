#include "media_sources.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <utility>

#include "media_job.h"
#include "medium/medium_source.h"
#include "staging.h"
#include "verify/referenced_files.h"

namespace quillon::cli {

namespace {

bool isOfKind(const std::string& path, mode_t kind) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && (status.st_mode & S_IFMT) == kind;
}

// Objects, of which there may be thousands, are not opened for this.
bool mayBeMediumFile(const std::string& path) {
  constexpr off_t kSectorBytes = 2048;
  constexpr off_t kLeastImage = 18 * kSectorBytes;
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  if (status.st_size >= kLeastImage && status.st_size % kSectorBytes == 0) return true;
  std::string end = path.substr(path.size() - std::min<std::size_t>(path.size(), 4));
  std::ranges::transform(end, end.begin(), [](unsigned char c) { return std::tolower(c); });
  return end == ".zip";
}

bool isMediumFile(const std::string& path) {
  CBaseItem errors;
  return mayBeMediumFile(path) && OpenMedium(wide(absolutePath(path)), errors) != nullptr;
}

// Those that the DICOMDIR names, else, of a medium that has none, all.
Outcome filesOf(MediumSource& medium, bool needsDicomDir, std::vector<ReferencedFile>& files) {
  CBaseItem errors;
  if (FindReferencedFiles(medium, files, errors)) return {};
  const std::string why = narrow(errors.ErrorMessage());
  std::vector<MediumEntry> entries;
  if (needsDicomDir || !medium.List(entries)) return why;
  for (const MediumEntry& entry : entries) {
    if (entry.kind == MediumEntry::Kind::File) files.push_back({entry.path, true});
  }
  return {};
}

}  // namespace

std::vector<std::string> MediaSources::takeFrom(const std::vector<std::string>& sources) {
  std::vector<std::string> others;
  for (const std::string& source : sources) {
    const bool isMedium = (isViaDicomDir_ && isOfKind(source, S_IFDIR)) || isMediumFile(source);
    (isMedium ? media_ : others).push_back(source);
  }
  return others;
}

Outcome MediaSources::list(Staging& staging, SourceList& list,
                           std::vector<std::string>& stored) const {
  for (const std::string& source : media_) {
    if (Outcome listed = listOne(source, staging, list, stored); listed.failed()) {
      return "The medium " + source + " cannot be taken: " + listed.text();
    }
  }
  return {};
}

Outcome MediaSources::listOne(const std::string& source, Staging& staging, SourceList& list,
                              std::vector<std::string>& stored) const {
  CBaseItem errors;
  const auto medium = OpenMedium(wide(absolutePath(source)), errors);
  if (medium == nullptr) return narrow(errors.ErrorMessage());
  std::vector<ReferencedFile> files;
  if (Outcome found = filesOf(*medium, isViaDicomDir_, files); found.failed()) return found;
  const bool isDirectory = isOfKind(source, S_IFDIR);
  for (const ReferencedFile& file : files) {
    std::string path = source + (source.ends_with('/') ? "" : "/") + mediumPath(file.path);
    if (!file.isThere) {
      list.problems.push_back(
          {std::move(path), "it is not there, and the DICOMDIR names it.", true});
      continue;
    }
    std::string copy;
    if (!isDirectory) {
      const auto opened = medium->Open(file.path);
      const Outcome taken = opened == nullptr ? Outcome(narrow(medium->ErrorMessage()))
                                              : staging.takeIn(*opened, copy);
      if (taken.failed()) {
        list.problems.push_back({std::move(path), taken.text(), true});
        continue;
      }
    }
    list.files.push_back({std::move(path), false, false});
    stored.push_back(std::move(copy));
  }
  return {};
}

}  // namespace quillon::cli
