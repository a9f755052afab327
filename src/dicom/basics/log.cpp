#include "dicom/log.h"

#include <cstdarg>
#include <cstdio>
#include <new>
#include <string_view>
#include <utility>

#include "dicom/file.h"
#include "log_sink.h"
#include "platform/win32.h"

namespace quillon {
namespace {

DcLog* theSink = nullptr;
thread_local const char* theFile = nullptr;  // that the lines tell of, see DcLogFile

// The messages that tell of a file quote its name, or begin with it.
bool namesFile(std::string_view message, const std::string& fileName) {
  return message.find("'" + fileName + "'") != std::string_view::npos ||
         message.starts_with(fileName + " - ");
}

constexpr std::array<const char*, 12> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                              "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

bool inRange(DcLogLevel level) {
  return static_cast<int>(level) >= 0 && static_cast<int>(level) < kDcLogLevels;
}

std::string timeStamp() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  const std::size_t month = now.wMonth >= 1 && now.wMonth <= kMonths.size() ? now.wMonth - 1U : 0;
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "%s%02d %02d:%02d:%02d", kMonths[month], now.wDay,
                now.wHour, now.wMinute, now.wSecond);
  return text.data();
}

// Opened and closed for each line, so that the file can be moved away while the program runs.
bool appendToFile(const std::string& fileName, std::string_view line) {
  DcFile file;
  if (!file.open(fileName.c_str(), DcFile::Mode::Append)) return false;
  const bool written = file.write(line.data(), line.size());
  return file.close() && written;
}

}  // namespace

DcLog* dcTheLog() { return theSink; }
void dcSetTheLog(DcLog* sink) { theSink = sink; }

DcLogCode DcLog::enable(DcLogLevel level, bool enabled) {
  if (!inRange(level)) return kDcLogLevelRange;
  levels_[static_cast<std::size_t>(level)].enabled = enabled;
  return kDcOk;
}

DcLogCode DcLog::setFile(DcLogLevel level, std::string fileName) {
  if (!inRange(level)) return kDcLogLevelRange;
  levels_[static_cast<std::size_t>(level)].fileName = std::move(fileName);
  return kDcOk;
}

bool DcLog::isEnabled(DcLogLevel level) const {
  return inRange(level) && levels_[static_cast<std::size_t>(level)].enabled;
}

DcLogCode DcLog::write(DcLogLevel level, const char* function, const char* message) {
  if (!inRange(level)) return kDcLogLevelRange;
  if (!isEnabled(level)) return kDcLogDisabled;
  if (message == nullptr) return kDcLogNullFormat;

  std::string line = timeStamp();
  if (function != nullptr) {
    line.append(" <").append(function).append("> ");
  } else {
    line += ' ';
  }
  line.append(message).append("\n");

  const std::string& fileName = levels_[static_cast<std::size_t>(level)].fileName;
  if (!fileName.empty()) return appendToFile(fileName, line) ? kDcOk : kDcLogFileError;
  std::fwrite(line.data(), 1, line.size(), stdout);
  return kDcOk;
}

DcLogFile::DcLogFile(const char* fileName) : outer_(std::exchange(theFile, fileName)) {}
DcLogFile::~DcLogFile() { theFile = outer_; }

// Also tells of memory that is short, so that none for the line must be no second failure.
DcLogCode dcLog(DcLogLevel level, const char* function, const char* format, ...) try {
  DcLog* const sink = dcTheLog();
  if (sink == nullptr) return kDcLogNoSink;
  if (!inRange(level)) return kDcLogLevelRange;
  if (!sink->isEnabled(level)) return kDcLogDisabled;
  if (format == nullptr) return kDcLogNullFormat;

  std::va_list arguments;
  std::va_list again;
  va_start(arguments, format);
  va_copy(again, arguments);
  std::array<char, 512> small{};
  // The analyzer loses track of va_start here.
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized)
  const int length = std::vsnprintf(small.data(), small.size(), format, arguments);
  va_end(arguments);
  std::string large;
  const char* message = small.data();
  if (length >= static_cast<int>(small.size())) {
    large.resize(static_cast<std::size_t>(length));
    std::vsnprintf(large.data(), large.size() + 1, format, again);
    message = large.c_str();
  }
  va_end(again);
  if (theFile == nullptr || namesFile(message, theFile)) {
    return sink->write(level, function, message);
  }
  const std::string withFile = std::string(message) + ", file '" + theFile + "'";
  return sink->write(level, function, withFile.c_str());
} catch (const std::bad_alloc&) {
  return kDcLogFileError;
}

}  // namespace quillon
