// The files of a virtual recorder:
//
//   <recorders>/<name>/recorder.txt   what the drive is
//   <recorders>/<name>/disc.txt       the disc in it; no such file, no disc
//   <recorders>/<name>/disc.iso       the disc's contents, from its first sector on
//   <recorders>/<name>/faults.txt     how the drive is to misbehave (fault_plan.h); may be missing
//   <recorders>/<name>/lock           held by the client that has exclusive access; holds its name
//   <recorders>/<name>/ejected/       discs that were taken out: X.iso and, beside it, X.disc.txt
//
// recorder.txt, disc.txt and X.disc.txt hold lines of the form "name = value"; lines that begin
// with
// "#" are comments. disc.txt is replaced as a whole and is on the disk before the change that it
// announces begins: a disc whose record says "writing" or "erasing" while no client has the
// recorder was left in the middle, and reads as damaged.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "recorders/disc_types.h"
#include "recording/disc_result.h"

namespace quillon::platform {

using Settings = std::map<std::string, std::string, std::less<>>;
Settings parseSettings(std::string_view text);

inline constexpr const char* kRecorderFile = "recorder.txt";
inline constexpr const char* kDiscFile = "disc.txt";
inline constexpr const char* kImageFile = "disc.iso";
inline constexpr const char* kFaultFile = "faults.txt";
inline constexpr const char* kLockFile = "lock";
inline constexpr const char* kEjectedDirectory = "ejected";
inline constexpr const char* kEjectedRecordEnding = ".disc.txt";
inline constexpr const char* kEjectedImageEnding = ".iso";
// Of the contents of a disc that is not whole: nobody should take them for an image.
inline constexpr const char* kEjectedDamagedEnding = ".damaged";

enum class DiscState {
  Blank,
  Erased,      // blank, but what lies behind its first sectors is still there
  Appendable,  // holds data and is not closed
  Finalised,
  Writing,
  Erasing,
  Damaged,
};
std::string_view keywordOf(DiscState state);

struct DiscRecord {
  const DiscType* type = nullptr;  // never null in a record that was read
  DiscState state = DiscState::Blank;
  std::uint32_t capacitySectors = 0;
  std::uint32_t usedSectors = 0;
  bool isProtected = false;
  // Set while the disc is taken out: its image is about to get, or has got, this name.
  std::string ejectedAs;

  [[nodiscard]] bool isBlank() const {
    return state == DiscState::Blank || state == DiscState::Erased;
  }
  [[nodiscard]] bool isWhole() const {
    return isBlank() || state == DiscState::Appendable || state == DiscState::Finalised;
  }
};

// A file of the recorder that cannot be used; verb is "read" or "write".
DiscResult fileFailure(int error, std::string_view verb, const std::string& path);

// Nothing when there is no disc. A record that was left in the middle, or whose image is missing or
// of another length, is one of a damaged disc; one that cannot be read at all is
// E_IMAPI_RECORDER_MEDIA_INCOMPATIBLE.
DiscResult readDiscRecord(const std::string& recorderDirectory, std::optional<DiscRecord>& record);
// On the disk when it succeeds.
DiscResult writeDiscRecord(const std::string& recorderDirectory, const DiscRecord& record);
// The record of an image that was ejected, kept beside it; nothing when there is none.
std::optional<DiscRecord> readRecordBeside(const std::string& imagePath);

// Takes the disc out: its contents go to the ejected directory, under the name of its volume (or
// the time), which is answered; the contents of a blank disc go away. An answer other than success
// leaves the disc in. The caller has exclusive access.
DiscResult takeDiscOut(const std::string& recorderDirectory, std::string& imageLeftAt);

}  // namespace quillon::platform
