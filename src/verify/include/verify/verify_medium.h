// Whether a medium is whole: its DICOMDIR in itself, each of its records against the file that it
// names, the files that no record names, and the sums of SHA256SUMS. Media of any maker are
// understood, however faulty: a fault is told, and what can be read behind it is looked at too.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/base_item.h"
#include "medium/medium_source.h"

namespace quillon {

struct Profile;

enum class Severity : std::uint8_t {
  Error,    // something cannot be read, or is another's than the DICOMDIR says
  Warning,  // readable, but not as the standard wants it
  Note,     // to be known; the medium is whole
};

struct Finding {
  Severity severity = Severity::Error;
  std::string_view code;  // names the kind of finding, in lower case with hyphens; never changes
  Text file;              // on the medium, "/" between its parts; DICOMDIR for a record of no file
  Text record;            // "IMAGE record at offset 0x2f0"; empty when it concerns none
  Text message;           // one sentence
};

inline constexpr std::size_t kMaxFindingsOfKind = 1000;

struct VerifyReport {
  std::vector<Finding> findings;  // in the order in which they were found
  // With those that are not among the findings because there are too many of their kind.
  std::array<std::uint64_t, 3> counts{};  // by severity
  std::uint64_t leftOut = 0;

  // What was looked at: records that are reached, and the files that they name.
  std::uint64_t patients = 0;
  std::uint64_t studies = 0;
  std::uint64_t series = 0;
  std::uint64_t records = 0;
  std::uint64_t files = 0;
  std::uint64_t bytes = 0;        // of these files
  std::uint64_t checkedSums = 0;  // of files whose sum was computed

  [[nodiscard]] std::uint64_t Count(Severity severity) const {
    return counts[static_cast<std::size_t>(severity)];
  }
  [[nodiscard]] bool IsWhole() const {
    return Count(Severity::Error) == 0 && Count(Severity::Warning) == 0;
  }
};

struct VerifyProgress {
  std::uint64_t done = 0;
  std::uint64_t total = 0;
  bool isBytes = false;  // else files
};

struct VerifyOptions {
  // Without, files are read up to their pixel data only, and SHA256SUMS is not looked at.
  bool checksSums = true;
  // The application profile that the medium is held to; null: none. What kind of medium it is, as
  // in TakesMedium; empty where that is not known.
  const Profile* profile = nullptr;
  std::string mediumKind;
  std::function<void(const VerifyProgress&)> progress;
  std::function<bool()> isStopped;  // asked before each file and each piece of one
};

// False, with a sentence in errors, when the medium cannot be read at all or the caller stopped it;
// the report then holds what was found until then. A medium with findings is a success.
[[nodiscard]] bool VerifyMedium(MediumSource& medium, const VerifyOptions& options,
                                VerifyReport& report, CBaseItem& errors);

}  // namespace quillon
