#include "file_location.h"

#include <fcntl.h>
#include <libxml/uri.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "win32/last_error.h"
#include "win32/path_translation.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

constexpr std::string_view kFileScheme = "file:";
constexpr std::size_t kLongestFile = std::size_t{1} << 30;

bool startsWithoutCase(std::string_view text, std::string_view start) {
  return text.size() >= start.size() &&
         std::equal(start.begin(), start.end(), text.begin(),
                    [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b + 32 : b); });
}

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// A scheme of one letter is a drive.
bool isUrl(std::string_view location) {
  const std::size_t colon = location.find("://");
  return colon != std::string_view::npos && colon > 1 &&
         std::all_of(
             location.begin(), location.begin() + static_cast<std::ptrdiff_t>(colon), [](char c) {
               return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
             });
}

int digitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

std::string unescaped(std::string_view text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int high = text[i] == '%' && i + 2 < text.size() ? digitOf(text[i + 1]) : -1;
    const int low = high < 0 ? -1 : digitOf(text[i + 2]);
    if (low < 0) {
      bytes.push_back(text[i]);
    } else {
      bytes.push_back(static_cast<char>(high * 16 + low));
      i += 2;
    }
  }
  return bytes;
}

// "file:///C:/a", "file:///a", "file://localhost/a", "file://server/a" (a share), "file:a".
std::string pathOfFileUrl(std::string_view url) {
  std::string_view rest = url.substr(kFileScheme.size());
  if (rest.starts_with("//")) {
    constexpr std::string_view kLocalHost = "//localhost/";
    if (startsWithoutCase(rest, kLocalHost)) {
      rest.remove_prefix(kLocalHost.size() - 1);
    } else if (rest.starts_with("///") || rest.size() == 2) {
      rest.remove_prefix(2);
    }
  }
  std::string path = unescaped(rest);
  const bool hasDrive = path.size() >= 3 && path[0] == '/' && isLetter(path[1]) && path[2] == ':';
  if (hasDrive) path.erase(0, 1);
  return path;
}

std::string systemText(DWORD code) {
  std::array<OLECHAR, 512> text;
  const DWORD length =
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                     text.data(), static_cast<DWORD>(text.size()), nullptr);
  std::string bytes = nativeFromWide({text.data(), length});
  while (!bytes.empty() && (bytes.back() == '\n' || bytes.back() == '\r')) bytes.pop_back();
  return bytes;
}

std::string unreadable(const std::string& path, const std::string& why) {
  return "The file \"" + path + "\" cannot be read: " + why;
}

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  ~Descriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] int get() const { return descriptor_; }

 private:
  int descriptor_;
};

enum class Reading { kDone, kFailed, kRefused };

// From where the file stands to its end. After a failure errno tells why.
Reading readOn(int file, const std::function<bool(std::size_t)>& mayRead, std::string& bytes) {
  std::array<char, 65536> buffer;
  while (true) {
    const ssize_t got = ::read(file, buffer.data(), buffer.size());
    if (got == 0) return Reading::kDone;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return Reading::kFailed;
    if (!mayRead(static_cast<std::size_t>(got))) return Reading::kRefused;
    bytes.append(buffer.data(), static_cast<std::size_t>(got));
  }
}

}  // namespace

std::optional<std::string> pathOfLocation(std::string_view location, std::string& reason) {
  if (startsWithoutCase(location, kFileScheme)) return translatePath(pathOfFileUrl(location)).text;
  if (!isUrl(location)) return translatePath(location).text;
  reason = "The location \"" + std::string(location) + "\" is not that of a file.";
  return std::nullopt;
}

std::string urlOfPath(std::string_view path) {
  std::string whole(path);
  if (!path.starts_with('/')) whole = workingDirectory().text + '/' + whole;
  xmlChar* const escaped = xmlURIEscapeStr(reinterpret_cast<const xmlChar*>(whole.c_str()),
                                           reinterpret_cast<const xmlChar*>("/"));
  if (escaped == nullptr) throw std::bad_alloc();
  std::string url = std::string("file://") + reinterpret_cast<const char*>(escaped);
  xmlFree(escaped);
  return url;
}

// A pipe can be read like a file, so its end is found by reading.
bool readWholeFile(const std::string& path, std::string& bytes, LONG& code, std::string& reason) {
  const auto fail = [&](DWORD systemCode) {
    code = HRESULT_FROM_WIN32(systemCode);
    reason = unreadable(path, systemText(systemCode));
    return false;
  };
  NativePath native;
  native.text = path;
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (file.get() < 0) return fail(codeOfErrno(errno, native));
  const auto mayRead = [&](std::size_t) { return bytes.size() <= kLongestFile; };
  switch (readOn(file.get(), mayRead, bytes)) {
    case Reading::kDone:
      return true;
    case Reading::kRefused:
      return fail(ERROR_FILE_TOO_LARGE);
    case Reading::kFailed:
      break;
  }
  return fail(errno == EISDIR ? ERROR_ACCESS_DENIED : codeOfErrno(errno));
}

bool readReferencedFile(const std::string& path, const std::function<bool(std::size_t)>& mayRead,
                        std::string& bytes, std::string& reason) {
  const auto fail = [&](DWORD systemCode) {
    reason = unreadable(path, systemText(systemCode));
    return false;
  };
  NativePath native;
  native.text = path;
  // The opening of a pipe would wait for a writer, that of a terminal could make it the program's.
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (file.get() < 0) return fail(codeOfErrno(errno, native));
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) return fail(codeOfErrno(errno));
  if (!S_ISREG(status.st_mode)) {
    reason = unreadable(path, "it is not a regular file.");
    return false;
  }
  const Reading reading = readOn(file.get(), mayRead, bytes);
  return reading == Reading::kFailed ? fail(codeOfErrno(errno)) : reading == Reading::kDone;
}

}  // namespace quillon::platform
