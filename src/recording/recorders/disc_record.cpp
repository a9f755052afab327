#include "recorders/disc_record.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>

#include "platform/win32/system.h"
#include "recorders/recorder.h"
#include "win32/environment.h"
#include "win32/last_error.h"
#include "win32/utf8.h"
#include "win32/whole_file.h"

namespace quillon::platform {
namespace {

struct StateRow {
  DiscState state;
  std::string_view keyword;
};
constexpr std::array kStates{
    StateRow{DiscState::Blank, "blank"},           StateRow{DiscState::Erased, "erased"},
    StateRow{DiscState::Appendable, "appendable"}, StateRow{DiscState::Finalised, "finalised"},
    StateRow{DiscState::Writing, "writing"},       StateRow{DiscState::Erasing, "erasing"},
    StateRow{DiscState::Damaged, "damaged"},
};

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlank = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlank);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

std::string_view valueOf(const Settings& settings, std::string_view name) {
  const auto found = settings.find(name);
  return found == settings.end() ? std::string_view() : std::string_view(found->second);
}

bool parseSectors(std::string_view text, std::uint32_t& sectors) {
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, sectors);
  return error == std::errc() && stopped == end;
}

std::optional<DiscRecord> parseRecord(std::string_view text) {
  const Settings settings = parseSettings(text);
  DiscRecord record;
  record.type = findDiscType(valueOf(settings, "media"));
  const auto* state = std::find_if(kStates.begin(), kStates.end(), [&](const StateRow& row) {
    return row.keyword == valueOf(settings, "state");
  });
  if (record.type == nullptr || state == kStates.end() ||
      !parseSectors(valueOf(settings, "capacity"), record.capacitySectors) ||
      !parseSectors(valueOf(settings, "used"), record.usedSectors)) {
    return std::nullopt;
  }
  record.state = state->state;
  record.isProtected = valueOf(settings, "protected") == "yes";
  record.ejectedAs = valueOf(settings, "leaving as");
  return record;
}

std::string recordText(const DiscRecord& record) {
  std::string text = "# A disc of a virtual recorder.\n";
  const auto line = [&text](std::string_view name, std::string_view value) {
    text.append(name).append(" = ").append(value).append("\n");
  };
  line("media", record.type->keyword);
  line("state", keywordOf(record.state));
  line("capacity", std::to_string(record.capacitySectors));
  line("used", std::to_string(record.usedSectors));
  line("protected", record.isProtected ? "yes" : "no");
  if (!record.ejectedAs.empty()) line("leaving as", record.ejectedAs);
  return text;
}

// The name of the volume in the primary descriptor of an ISO 9660 image; empty for none.
std::string volumeNameOf(const std::string& imagePath) {
  constexpr off_t kDescriptorAt = off_t{16} * kSectorBytes;
  constexpr std::size_t kNameAt = 40;
  constexpr std::size_t kNameBytes = 32;
  std::array<char, kNameAt + kNameBytes> bytes;
  const Descriptor image(::open(imagePath.c_str(), O_RDONLY | O_CLOEXEC));
  if (!image.isOpen() ||
      ::pread(image.get(), bytes.data(), bytes.size(), kDescriptorAt) !=
          static_cast<ssize_t>(bytes.size()) ||
      std::string_view(bytes.data(), 6) != "\1CD001") {
    return {};
  }
  return std::string(trimmed({&bytes[kNameAt], kNameBytes}));
}

std::string timeName() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), "disc-%04d%02d%02d-%02d%02d%02d", now.wYear, now.wMonth,
                now.wDay, now.wHour, now.wMinute, now.wSecond);
  return text.data();
}

// A file name of it: letters, digits and a few marks, and not hidden.
std::string fileNameOf(std::string volume) {
  for (char& c : volume) {
    const bool isPlain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
                         (c >= 'a' && c <= 'z') || c == '-' || c == '.' || c == '_';
    if (!isPlain) c = '_';
  }
  return volume.empty() || volume.find_first_not_of("._") == std::string::npos || volume[0] == '.'
             ? timeName()
             : volume;
}

bool exists(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0;
}

// The first of NAME, NAME-2, NAME-3 ... under which nothing was left yet, whole or not.
std::string freeName(const std::string& directory, const std::string& name) {
  for (unsigned number = 1;; ++number) {
    std::string candidate = name;
    if (number > 1) candidate.append("-").append(std::to_string(number));
    std::string path = directory;
    path.append("/").append(candidate);
    if (!exists(path + kEjectedImageEnding) && !exists(path + kEjectedDamagedEnding) &&
        !exists(path + kEjectedRecordEnding)) {
      return candidate;
    }
  }
}

DiscResult removeRecord(const std::string& recorderDirectory) {
  const std::string path = recorderDirectory + "/" + kDiscFile;
  if (::unlink(path.c_str()) != 0 && errno != ENOENT) return fileFailure(errno, "write", path);
  syncDirectory(recorderDirectory);
  return S_OK;
}

// The record says first where the image goes: whatever ends the process, either the image is in its
// place and the disc is in, or it has its new name and the disc is out.
DiscResult moveImageOut(const std::string& recorderDirectory, DiscRecord record,
                        std::string& imageLeftAt) {
  const std::string image = recorderDirectory + "/" + kImageFile;
  const std::string directory = recorderDirectory + "/" + kEjectedDirectory;
  if (!makeDirectories(directory)) return fileFailure(errno, "write", directory);
  const std::string name = freeName(directory, fileNameOf(volumeNameOf(image)));
  const std::string besides = directory + "/" + name + kEjectedRecordEnding;
  if (const int error = replaceFile(besides, recordText(record))) {
    return fileFailure(error, "write", besides);
  }
  record.ejectedAs = name + (record.isWhole() ? kEjectedImageEnding : kEjectedDamagedEnding);
  DiscResult result = writeDiscRecord(recorderDirectory, record);
  if (result.failed()) return result;
  const std::string target = directory + "/" + record.ejectedAs;
  if (::rename(image.c_str(), target.c_str()) != 0) {
    result = fileFailure(errno, "write", target);
    record.ejectedAs.clear();
    static_cast<void>(writeDiscRecord(recorderDirectory, record));
    ::unlink(besides.c_str());
    return result;
  }
  syncDirectory(directory);
  imageLeftAt = target;
  return removeRecord(recorderDirectory);
}

}  // namespace

Settings parseSettings(std::string_view text) {
  Settings settings;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    const std::size_t equals = line.find('=');
    if (line.empty() || line[0] == '#' || equals == std::string_view::npos) continue;
    settings.insert_or_assign(std::string(trimmed(line.substr(0, equals))),
                              std::string(trimmed(line.substr(equals + 1))));
  }
  return settings;
}

std::string_view keywordOf(DiscState state) {
  return std::find_if(kStates.begin(), kStates.end(),
                      [state](const StateRow& row) { return row.state == state; })
      ->keyword;
}

DiscResult fileFailure(int error, std::string_view verb, const std::string& path) {
  std::string sentence = "The virtual recorder cannot ";
  sentence.append(verb).append(" \"").append(path).append("\".");
  return {HRESULT_FROM_WIN32(codeOfErrno(error)), wideFromNative(sentence)};
}

DiscResult readDiscRecord(const std::string& recorderDirectory, std::optional<DiscRecord>& record) {
  record.reset();
  const std::string path = recorderDirectory + "/" + kDiscFile;
  std::string text;
  if (!readFile(path, text)) {
    return errno == ENOENT ? DiscResult() : fileFailure(errno, "read", path);
  }
  record = parseRecord(text);
  if (!record) return E_IMAPI_RECORDER_MEDIA_INCOMPATIBLE;
  struct stat image {};
  const bool hasImage = ::stat((recorderDirectory + "/" + kImageFile).c_str(), &image) == 0;
  if (!record->ejectedAs.empty() && !hasImage) {
    record.reset();
    return S_OK;
  }
  record->ejectedAs.clear();
  if (record->isBlank()) return S_OK;
  const bool isWhole =
      record->isWhole() && hasImage &&
      image.st_size == static_cast<off_t>(record->usedSectors) * off_t{kSectorBytes};
  if (!isWhole) record->state = DiscState::Damaged;
  return S_OK;
}

DiscResult writeDiscRecord(const std::string& recorderDirectory, const DiscRecord& record) {
  const std::string path = recorderDirectory + "/" + kDiscFile;
  const int error = replaceFile(path, recordText(record));
  return error == 0 ? DiscResult() : fileFailure(error, "write", path);
}

std::optional<DiscRecord> readRecordBeside(const std::string& imagePath) {
  std::string path = imagePath;
  for (const std::string_view ending : {kEjectedImageEnding, kEjectedDamagedEnding}) {
    if (!path.ends_with(ending)) continue;
    path.resize(path.size() - ending.size());
    break;
  }
  std::string text;
  return readFile(path + kEjectedRecordEnding, text) ? parseRecord(text) : std::nullopt;
}

DiscResult takeDiscOut(const std::string& recorderDirectory, std::string& imageLeftAt) {
  imageLeftAt.clear();
  std::optional<DiscRecord> record;
  DiscResult result = readDiscRecord(recorderDirectory, record);
  if (result.failed()) return result;
  const std::string image = recorderDirectory + "/" + kImageFile;
  if (record && !record->isBlank() && exists(image)) {
    return moveImageOut(recorderDirectory, *record, imageLeftAt);
  }
  result = removeRecord(recorderDirectory);
  if (!result.failed()) ::unlink(image.c_str());
  return result;
}

}  // namespace quillon::platform
