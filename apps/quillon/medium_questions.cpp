#include "medium_questions.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "disc_kinds.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

using platform::DiscRecorderStatus;

constexpr const char* kPutBlankIn = ": put a blank disc in.";

bool writesKind(const DiscRecorderStatus& recorder, std::string_view keyword) {
  return std::ranges::find(recorder.writableMedia, keyword) != recorder.writableMedia.end();
}

std::string namesOf(const std::vector<std::string>& keywords) {
  std::string names;
  for (const std::string& keyword : keywords) {
    names += (names.empty() ? "" : ", ") + discName(keyword);
  }
  return names;
}

bool isBlank(const DiscRecorderStatus& recorder) {
  return recorder.state == "blank" || recorder.state == "erased";
}

std::string reasonAgainstDisc(const DiscRecorderStatus& recorder) {
  const std::string disc = "The " + discName(recorder.media) + " in " + recorder.name;
  if (!writesKind(recorder, recorder.media)) {
    return disc + " is of a kind that is not written there: put in a blank one of " +
           namesOf(recorder.writableMedia) + ".";
  }
  if (recorder.isProtected && (recorder.isErasable || isBlank(recorder))) {
    return disc + " is write-protected: put another one in.";
  }
  if (isBlank(recorder)) return disc + " cannot be written: put another one in.";
  if (recorder.isErasable && !recorder.isProtected) {
    return disc +
           " holds data already: put a blank disc in, or make this one blank with quillon "
           "disc erase.";
  }
  if (recorder.state == "damaged") return disc + " is damaged" + kPutBlankIn;
  return disc + " holds data already" + kPutBlankIn;
}

// The directory itself, or what is there of the way to it.
fs::path existingPart(const std::string& directory) {
  fs::path path(directory);
  std::error_code error;
  while (path.has_relative_path() && !fs::exists(path, error) && !error) path = path.parent_path();
  return path;
}

}  // namespace

Outcome mayRecord(const DiscRecorderStatus& recorder) {
  if (!recorder.client.empty()) {
    return "The recorder " + recorder.name + " is in use by " + recorder.client +
           ": wait until that has ended.";
  }
  if (!recorder.problem.empty()) return recorder.problem;
  if (!recorder.writes()) {
    return "The recorder " + recorder.name +
           " only reads discs: quillon disc list shows which others there are.";
  }
  if (!recorder.hasDisc) return "There is no disc in " + recorder.name + kPutBlankIn;
  if (recorder.usableSectors == 0) return reasonAgainstDisc(recorder);
  return {};
}

Outcome mayFit(const DiscRecorderStatus& recorder, std::uint64_t neededSectors) {
  if (neededSectors <= recorder.usableSectors) return {};
  std::string advice = "put fewer studies on it.";
  for (const std::string_view kind : kindsThatHold(neededSectors)) {
    if (!writesKind(recorder, kind)) continue;
    advice = "put in a larger disc, such as a " + discName(kind) + ", or fewer studies on it.";
    break;
  }
  return "The file set needs " + neededText(neededSectors * kDiscSectorBytes) + " and the " +
         discName(recorder.media) + " in " + recorder.name + " has " +
         roomText(recorder.usableSectors * kDiscSectorBytes) + ": " + advice;
}

Outcome mayFill(const std::string& directory) {
  const fs::path there = existingPart(directory);
  const std::string what = there == fs::path(directory)
                               ? "The directory " + directory + " cannot be written: "
                               : "The directory " + directory + " cannot be made: ";
  std::error_code error;
  const fs::file_status status = fs::status(there, error);
  if (!error && fs::exists(status) && !fs::is_directory(status)) {
    return what + there.string() + " is not a directory.";
  }
  if (::faccessat(AT_FDCWD, there.c_str(), W_OK | X_OK, AT_EACCESS) == 0) return {};
  if (errno == EROFS) return what + "its file system is read-only.";
  if (errno == EACCES) return what + "this user may not write to " + there.string() + ".";
  return what + std::strerror(errno) + ".";
}

std::optional<std::uint64_t> freeBytesAt(const std::string& directory) {
  struct statvfs status {};
  if (::statvfs(existingPart(directory).c_str(), &status) != 0 || status.f_blocks == 0) {
    return std::nullopt;
  }
  return std::uint64_t{status.f_bavail} * status.f_frsize;
}

Outcome mayHold(const std::string& directory, std::uint64_t neededBytes) {
  const auto free = freeBytesAt(directory);
  if (!free || neededBytes <= *free) return {};
  return "The file set needs " + neededText(neededBytes) + " and the file system of " + directory +
         " has " + roomText(*free) + " free: make room there, or copy fewer studies.";
}

DiscRoom roomOfDirectory(const std::string& directory, std::string_view leftOut) {
  DiscRoom room;
  std::error_code error;
  for (fs::recursive_directory_iterator it(directory, error), end; !error && it != end;
       it.increment(error)) {
    std::error_code ignored;
    // What the directory says of its entries' types costs no look at each.
    if (it->is_symlink(ignored) || it->path().filename() == leftOut) continue;
    if (it->is_directory(ignored)) {
      room.AddDirectory();
    } else if (it->is_regular_file(ignored)) {
      room.AddFile(it->file_size(ignored));
    }
  }
  return room;
}

}  // namespace quillon::cli
