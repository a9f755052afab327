#include "charset.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>

#include "platform/com.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

std::string lowered(std::string_view text) {
  std::string low(text);
  std::transform(low.begin(), low.end(), low.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return low;
}

// The value behind "name=", quoted or not; empty when there is none. Text is in small letters.
std::string valueOf(std::string_view text, std::string_view name) {
  for (std::size_t at = text.find(name); at != std::string_view::npos;
       at = text.find(name, at + 1)) {
    std::string_view rest = text.substr(at + name.size());
    const auto skipBlank = [&rest] {
      rest.remove_prefix(std::min(rest.find_first_not_of(" \t\r\n"), rest.size()));
    };
    skipBlank();
    if (!rest.starts_with('=')) continue;
    rest.remove_prefix(1);
    skipBlank();
    const bool isQuoted = !rest.empty() && (rest[0] == '"' || rest[0] == '\'');
    if (!isQuoted) return std::string(rest.substr(0, rest.find_first_of("; \t\r\n")));
    return std::string(rest.substr(1, rest.find(rest[0], 1) - 1));
  }
  return {};
}

struct Mark {
  std::string_view bytes;
  const char* charset;
};
constexpr std::array kMarks{
    Mark{"\xEF\xBB\xBF", "utf-8"},
    Mark{"\xFF\xFE", "utf-16le"},
    Mark{"\xFE\xFF", "utf-16be"},
};

std::string charsetOfMark(std::string_view bytes) {
  const auto* const found = std::find_if(kMarks.begin(), kMarks.end(), [bytes](const Mark& mark) {
    return bytes.starts_with(mark.bytes);
  });
  return found == kMarks.end() ? std::string() : found->charset;
}

// A document in 16-bit units shows it by the zeros beside its first "<".
std::string charsetOfFirstUnit(std::string_view bytes) {
  using namespace std::string_view_literals;
  if (bytes.starts_with("<\0"sv)) return "utf-16le";
  return bytes.starts_with("\0<"sv) ? "utf-16be" : std::string();
}

std::string charsetOfDeclaration(std::string_view bytes) {
  if (!bytes.starts_with("<?xml")) return {};
  constexpr std::size_t kLongestDeclaration = 1024;
  const std::string_view head = bytes.substr(0, std::min(bytes.find("?>"), kLongestDeclaration));
  const std::string charset = valueOf(lowered(head), "encoding");
  // What could be read so far is no text of 16-bit units, whatever it says.
  return charset.starts_with("utf-16") || charset.starts_with("ucs-2") ? std::string() : charset;
}

std::u16string decodeWestern(std::string_view bytes) {
  constexpr UINT kWesternEuropean = 1252;
  std::u16string text(bytes.size(), u'\0');
  if (bytes.empty()) return text;
  MultiByteToWideChar(kWesternEuropean, 0, bytes.data(), static_cast<int>(bytes.size()),
                      text.data(), static_cast<int>(text.size()));
  return text;
}

class Converter {
 public:
  explicit Converter(const std::string& charset)
      : descriptor_(::iconv_open("UTF-16LE", charset.c_str())) {}
  ~Converter() {
    if (isOpen()) ::iconv_close(descriptor_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  [[nodiscard]] bool isOpen() const { return descriptor_ != iconv_t(-1); }

  std::u16string convert(std::string_view bytes) {
    std::u16string text;
    char* in = const_cast<char*>(bytes.data());  // iconv reads only
    std::size_t inLeft = bytes.size();
    while (inLeft > 0) {
      std::array<char16_t, 4096> buffer;
      char* out = reinterpret_cast<char*>(buffer.data());
      std::size_t outLeft = sizeof buffer;
      const std::size_t status = ::iconv(descriptor_, &in, &inLeft, &out, &outLeft);
      const int error = status == static_cast<std::size_t>(-1) ? errno : 0;
      text.append(buffer.data(), (sizeof buffer - outLeft) / sizeof buffer[0]);
      if (error == EILSEQ || error == EINVAL) {
        text.push_back(kReplacement);
        if (error == EINVAL) break;  // the last character is cut off
        ++in;
        --inLeft;
      }
    }
    return text;
  }

 private:
  iconv_t descriptor_;
};

// False for a charset that nobody knows.
bool decodeAs(std::string charset, std::string_view bytes, std::u16string& text) {
  if (charset.empty()) return false;
  const bool isLatin1 = charset == "iso-8859-1" || charset == "iso8859-1" || charset == "latin1" ||
                        charset == "us-ascii" || charset == "ascii" || charset == "windows-1252";
  if (isLatin1) {
    text = decodeWestern(bytes);  // as everyone reads it: with the euro sign and quotes
    return true;
  }
  if (charset == "utf-16") {
    charset = charsetOfMark(bytes);
    if (!charset.starts_with("utf-16")) charset = charsetOfFirstUnit(bytes);
    if (charset.empty()) charset = "utf-16le";
  }
  Converter converter(charset);
  if (!converter.isOpen()) return false;
  text = converter.convert(bytes);
  return true;
}

bool isUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const Utf8Character character = firstUtf8Character(bytes);
    if (character.length == 0) return false;
    bytes.remove_prefix(character.length);
  }
  return true;
}

}  // namespace

std::u16string decodeBody(std::string_view bytes, std::string_view contentType) {
  std::u16string text;
  const bool isDeclared = decodeAs(valueOf(lowered(contentType), "charset"), bytes, text) ||
                          decodeAs(charsetOfMark(bytes), bytes, text) ||
                          decodeAs(charsetOfFirstUnit(bytes), bytes, text) ||
                          decodeAs(charsetOfDeclaration(bytes), bytes, text);
  if (!isDeclared) text = isUtf8(bytes) ? wideFromNative(bytes) : decodeWestern(bytes);
  constexpr char16_t kByteOrderMark = 0xFEFF;
  if (!text.empty() && text.front() == kByteOrderMark) text.erase(0, 1);
  return text;
}

}  // namespace quillon::platform
