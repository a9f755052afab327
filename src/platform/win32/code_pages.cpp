// Conversion between 8-bit and wide text.
#include <iconv.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/testing.h"
#include "platform/win32/errors.h"
#include "platform/win32/registry.h"
#include "platform/win32/text.h"
#include "win32/last_error.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

constexpr UINT kWesternEuropean = 1252;

// What may be asked for of code pages other than UTF-8, by value where the layer has no name.
constexpr DWORD kFlagsToWide = 0xF;
constexpr DWORD kFlagsToBytes = WC_NO_BEST_FIT_CHARS | 0x270;
// Takes none before Windows Vista.
constexpr UINT kGb18030 = 54936;

// Characters of the bytes 0x80 to 0x9F of Windows-1252; all other bytes are the code points of the
// same number. The five bytes that it leaves undefined are control characters of the same number,
// so that no byte is lost.
constexpr std::array<char16_t, 32> kWestern80To9F{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char16_t westernCharacter(unsigned char byte) {
  return byte >= 0x80 && byte <= 0x9F ? kWestern80To9F[byte - 0x80U] : byte;
}

// -1 for a character that the code page does not have.
int westernByte(char16_t unit) {
  if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) return unit;
  const auto* found = std::find(kWestern80To9F.begin(), kWestern80To9F.end(), unit);
  return found == kWestern80To9F.end() ? -1
                                       : 0x80 + static_cast<int>(found - kWestern80To9F.begin());
}

// How one conversion to bytes treats what the code page does not have.
struct Fallback {
  std::string_view text = "?";
  bool used = false;
};

// Every byte is one character: this code page, the usual one, needs no text in between. What does
// not fit is cut, and fails.
int westernToWide(std::string_view bytes, LPWSTR wide, int wideUnits) {
  if (wideUnits == 0) return static_cast<int>(bytes.size());
  const std::size_t stored = std::min(bytes.size(), static_cast<std::size_t>(wideUnits));
  std::transform(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(stored), wide,
                 [](char c) { return westernCharacter(static_cast<unsigned char>(c)); });
  if (stored < bytes.size()) return failWith(ERROR_INSUFFICIENT_BUFFER);
  return static_cast<int>(bytes.size());
}

std::string westernFromWide(std::u16string_view wide, Fallback& fallback) {
  std::string bytes;
  bytes.reserve(wide.size());
  for (std::size_t i = 0; i < wide.size(); ++i) {
    const int byte = westernByte(wide[i]);
    if (byte >= 0) {
      bytes.push_back(static_cast<char>(byte));
      continue;
    }
    // A surrogate pair is one character.
    if (isHighSurrogate(wide[i]) && i + 1 < wide.size() && isLowSurrogate(wide[i + 1])) ++i;
    bytes += fallback.text;
    fallback.used = true;
  }
  return bytes;
}

// Any other code page, through the C library. Bytes that it does not define are carried like those
// of CP_UTF8.
class Converter {
 public:
  Converter(const std::string& to, const std::string& from)
      : descriptor_(::iconv_open(to.c_str(), from.c_str())) {}
  ~Converter() {
    if (isOpen()) ::iconv_close(descriptor_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  [[nodiscard]] bool isOpen() const { return descriptor_ != iconv_t(-1); }

  // Converts one character at the start of input; answers the bytes it took, 0 when it has none.
  std::size_t convertOne(std::string_view input, std::string& out, std::size_t longest) {
    for (std::size_t length = 1; length <= std::min(longest, input.size()); ++length) {
      std::array<char, 32> buffer;
      char* in = const_cast<char*>(input.data());  // iconv reads only
      std::size_t inLeft = length;
      char* at = buffer.data();
      std::size_t outLeft = buffer.size();
      constexpr auto kFailed = static_cast<std::size_t>(-1);
      ::iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);
      // Some converters hold a letter back that a following accent could join: the second call
      // makes them give it.
      if (::iconv(descriptor_, &in, &inLeft, &at, &outLeft) != kFailed && inLeft == 0 &&
          ::iconv(descriptor_, nullptr, nullptr, &at, &outLeft) != kFailed) {
        out.append(buffer.data(), buffer.size() - outLeft);
        return length;
      }
    }
    return 0;
  }

 private:
  iconv_t descriptor_;
};

struct PageName {
  UINT codePage;
  const char* name;
};

// JIS X 0208 as two bytes with the high bit set, JIS X 0212 as two of which only the first has it:
// the C library knows the same characters with another mark of the second set.
constexpr UINT kJapaneseEuc = 20932;
constexpr char kJisX0212Mark = '\x8F';

// The names that the C library has for code pages it does not know by their number.
constexpr std::array kPageNames{
    PageName{kJapaneseEuc, "EUC-JP"}, PageName{28591, "ISO-8859-1"},  PageName{28592, "ISO-8859-2"},
    PageName{28593, "ISO-8859-3"},    PageName{28594, "ISO-8859-4"},  PageName{28595, "ISO-8859-5"},
    PageName{28596, "ISO-8859-6"},    PageName{28597, "ISO-8859-7"},  PageName{28598, "ISO-8859-8"},
    PageName{28599, "ISO-8859-9"},    PageName{28605, "ISO-8859-15"}, PageName{kGb18030, "GB18030"},
};

std::string codePageName(UINT codePage) {
  const auto* row = std::ranges::find(kPageNames, codePage, &PageName::codePage);
  return row != kPageNames.end() ? row->name : "CP" + std::to_string(codePage);
}

bool isHigh(char byte) { return static_cast<unsigned char>(byte) >= 0x80; }

// One character of a code page, as Converter::convertOne.
std::size_t characterToWide(UINT codePage, Converter& converter, std::string_view bytes,
                            std::string& units) {
  constexpr std::size_t kLongestCharacter = 4;
  if (codePage != kJapaneseEuc) return converter.convertOne(bytes, units, kLongestCharacter);
  if (bytes.size() < 2 || bytes[0] == kJisX0212Mark) return 0;
  if (isHigh(bytes[1])) return converter.convertOne(bytes, units, 2);
  const std::array<char, 3> marked{kJisX0212Mark, bytes[0], static_cast<char>(bytes[1] | 0x80)};
  const std::string_view one(marked.data(), marked.size());
  return converter.convertOne(one, units, one.size()) == one.size() ? 2 : 0;
}

bool otherToWide(UINT codePage, std::string_view bytes, std::u16string& wide) {
  Converter converter("UTF-16LE", codePageName(codePage));
  if (!converter.isOpen()) return false;
  while (!bytes.empty()) {
    std::string units;
    std::size_t taken = 1;
    if (static_cast<unsigned char>(bytes[0]) < 0x80) {
      wide.push_back(static_cast<char16_t>(bytes[0]));
    } else if ((taken = characterToWide(codePage, converter, bytes, units)) == 0) {
      wide.push_back(static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(bytes[0])));
      taken = 1;
    }
    for (std::size_t i = 0; i + 1 < units.size(); i += 2) {
      wide.push_back(static_cast<char16_t>(static_cast<unsigned char>(units[i]) |
                                           static_cast<unsigned char>(units[i + 1]) << 8));
    }
    bytes.remove_prefix(taken);
  }
  return true;
}

bool otherFromWide(UINT codePage, std::u16string_view wide, Fallback& fallback,
                   std::string& bytes) {
  Converter converter(codePageName(codePage), "UTF-8");
  if (!converter.isOpen()) return false;
  for (std::size_t i = 0; i < wide.size(); ++i) {
    const bool pair =
        isHighSurrogate(wide[i]) && i + 1 < wide.size() && isLowSurrogate(wide[i + 1]);
    if (isEscapedByte(wide[i])) {
      bytes.push_back(static_cast<char>(wide[i] & 0xFF));
      continue;
    }
    const std::string character = nativeFromWide(wide.substr(i, pair ? 2 : 1));
    if (pair) ++i;
    std::string converted;
    if (converter.convertOne(character, converted, character.size()) == character.size()) {
      if (codePage == kJapaneseEuc && converted.front() == kJisX0212Mark) {
        converted = {converted[1], static_cast<char>(converted[2] & 0x7F)};
      }
      bytes += converted;
    } else {
      bytes += fallback.text;
      fallback.used = true;
    }
  }
  return true;
}

UINT configuredAnsiCodePage() {
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"SYSTEM\\CurrentControlSet\\Control\\Nls\\CodePage", 0,
                    KEY_QUERY_VALUE, &key) != static_cast<LSTATUS>(ERROR_SUCCESS)) {
    return kWesternEuropean;
  }
  std::array<char16_t, 8> value{};
  DWORD type = 0;
  DWORD lengthBytes = sizeof value - sizeof value[0];
  const LSTATUS status = RegQueryValueExW(key, u"ACP", nullptr, &type,
                                          reinterpret_cast<BYTE*>(value.data()), &lengthBytes);
  RegCloseKey(key);
  if (status != static_cast<LSTATUS>(ERROR_SUCCESS) || type != REG_SZ) return kWesternEuropean;
  const auto codePage =
      static_cast<UINT>(std::strtoul(nativeFromWide(value.data()).c_str(), nullptr, 10));
  const bool known = codePage == CP_UTF8 || codePage == kWesternEuropean ||
                     Converter("UTF-16LE", codePageName(codePage)).isOpen();
  return known ? codePage : kWesternEuropean;
}

// As on Windows the code page is read once: text must not change its meaning within a run.
std::atomic<UINT> ansiCodePage{0};

UINT ansi() {
  UINT codePage = ansiCodePage.load(std::memory_order_relaxed);
  if (codePage == 0) {
    codePage = configuredAnsiCodePage();
    ansiCodePage.store(codePage, std::memory_order_relaxed);
  }
  return codePage;
}

UINT resolved(UINT codePage) {
  return codePage == CP_ACP || codePage == CP_OEMCP ? ansi() : codePage;
}

// Answers the length, or 0 with the last error when it does not fit, with as much of it as does in
// the buffer; without room only the length.
template <typename Unit>
int deliver(std::basic_string_view<Unit> text, Unit* buffer, int room) {
  if (room == 0) return static_cast<int>(text.size());
  const std::size_t stored = std::min(text.size(), static_cast<std::size_t>(room));
  std::copy_n(text.begin(), stored, buffer);
  if (stored < text.size()) return failWith(ERROR_INSUFFICIENT_BUFFER);
  return static_cast<int>(text.size());
}

// With a length of -1 the terminator is part of the text.
template <typename Unit>
std::basic_string_view<Unit> inputOf(const Unit* text, int length) {
  if (length >= 0) return {text, static_cast<std::size_t>(length)};
  return {text, std::char_traits<Unit>::length(text) + 1};
}

}  // namespace

namespace testing {
void RereadCodePage() { ansiCodePage.store(0, std::memory_order_relaxed); }
}  // namespace testing

}  // namespace quillon::platform

using namespace quillon::platform;

UINT WINAPI GetACP() { return ansi(); }

int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCCH bytes, int byteCount, LPWSTR wide,
                               int wideUnits) {
  const UINT page = resolved(codePage);
  if (bytes == nullptr || byteCount == 0 || byteCount < -1 || wideUnits < 0 ||
      (wideUnits > 0 && (wide == nullptr || static_cast<const void*>(wide) == bytes))) {
    return failWith(ERROR_INVALID_PARAMETER);
  }
  const DWORD taken = page == CP_UTF8    ? MB_ERR_INVALID_CHARS
                      : page == kGb18030 ? DWORD{0}
                                         : kFlagsToWide;
  if ((flags & ~taken) != 0) return failWith(ERROR_INVALID_FLAGS);
  const std::string_view input = inputOf(bytes, byteCount);
  if (page == kWesternEuropean) return westernToWide(input, wide, wideUnits);
  std::u16string text;
  if (page == CP_UTF8) {
    text = wideFromNative(input);
  } else if (!otherToWide(page, input, text)) {
    return failWith(ERROR_INVALID_PARAMETER);
  }
  if ((flags & MB_ERR_INVALID_CHARS) != 0) {
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (isHighSurrogate(text[i])) {
        ++i;
      } else if (isEscapedByte(text[i])) {
        return failWith(ERROR_NO_UNICODE_TRANSLATION);
      }
    }
  }
  return deliver<char16_t>(text, wide, wideUnits);
}

int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWCH wide, int wideUnits, LPSTR bytes,
                               int byteCount, LPCCH defaultChar, LPBOOL usedDefaultChar) {
  const UINT page = resolved(codePage);
  const bool defaultRefused =
      page == CP_UTF8 && (defaultChar != nullptr || usedDefaultChar != nullptr);
  if (wide == nullptr || wideUnits == 0 || wideUnits < -1 || byteCount < 0 || defaultRefused ||
      (byteCount > 0 && (bytes == nullptr || static_cast<const void*>(bytes) == wide))) {
    return failWith(ERROR_INVALID_PARAMETER);
  }
  const DWORD taken = page == CP_UTF8    ? WC_ERR_INVALID_CHARS
                      : page == kGb18030 ? DWORD{0}
                                         : kFlagsToBytes;
  if ((flags & ~taken) != 0) return failWith(ERROR_INVALID_FLAGS);
  const std::u16string_view input = inputOf(wide, wideUnits);
  Fallback fallback;
  if (defaultChar != nullptr) fallback.text = defaultChar;
  std::string text;
  if (page == kWesternEuropean) {
    text = westernFromWide(input, fallback);
  } else if (page == CP_UTF8) {
    text = nativeFromWide(input);
  } else if (!otherFromWide(page, input, fallback, text)) {
    return failWith(ERROR_INVALID_PARAMETER);
  }
  if ((flags & WC_ERR_INVALID_CHARS) != 0 && page == CP_UTF8 &&
      text.find("\xEF\xBF\xBD") != std::string::npos &&
      input.find(u'\xFFFD') == std::u16string_view::npos) {
    return failWith(ERROR_NO_UNICODE_TRANSLATION);
  }
  if (usedDefaultChar != nullptr) *usedDefaultChar = fallback.used ? TRUE : FALSE;
  return deliver<char>(text, bytes, byteCount);
}
