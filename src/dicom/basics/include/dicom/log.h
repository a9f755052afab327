// The toolkit's log sink: one line per failure or warning, each level to standard output or
// appended to a file of its own. A line is "<time stamp> <function> message\n"; while a file is
// read or written, the message names it.
#pragma once

#include <array>
#include <string>

#include "dicom/types.h"

namespace quillon {

enum class DcLogLevel : int { Error = 0, Warning = 1, Info = 2, Debug = 3 };
inline constexpr int kDcLogLevels = 4;

// Codes of the sink itself, 0 for success. Nobody need look at them: where would it be told?
using DcLogCode = std::uint32_t;
inline constexpr DcLogCode kDcLogNoSink = 0x2801;
inline constexpr DcLogCode kDcLogDisabled = 0x2802;
inline constexpr DcLogCode kDcLogLevelRange = 0x2803;
inline constexpr DcLogCode kDcLogNullFormat = 0x2804;
inline constexpr DcLogCode kDcLogFileError = 0x2805;

// One exists in the process; it lives exactly as long as the dictionary.
class DcLog {
 public:
  DcLogCode enable(DcLogLevel level, bool enabled);
  // An empty name sends the level back to standard output.
  DcLogCode setFile(DcLogLevel level, std::string fileName);
  DcLogCode write(DcLogLevel level, const char* function, const char* message);
  [[nodiscard]] bool isEnabled(DcLogLevel level) const;

 private:
  struct Level {
    bool enabled = true;
    std::string fileName;
  };
  std::array<Level, kDcLogLevels> levels_;
};

// The process's sink; null before the dictionary exists and after it is gone.
DcLog* dcTheLog();

// While one of these lives, a line that does not name the file itself ends in ", file '<name>'":
// what is wrong with an element helps nobody who reads a hundred files and cannot tell in which.
class DcLogFile {
 public:
  // The name must live as long.
  explicit DcLogFile(const char* fileName);
  ~DcLogFile();
  DcLogFile(const DcLogFile&) = delete;
  DcLogFile& operator=(const DcLogFile&) = delete;

 private:
  const char* outer_;
};

// Formats printf-style and writes one line. `function` may be null. Answers the sink's codes.
// Nothing is formatted when the level is disabled.
#if defined(__GNUC__)
__attribute__((format(printf, 3, 4)))
#endif
DcLogCode
dcLog(DcLogLevel level, const char* function, const char* format, ...);

}  // namespace quillon
