#include "win32/utf8.h"

#include <algorithm>
#include <type_traits>

namespace quillon::platform {
namespace {

void appendUtf8(std::string& out, char32_t c) {
  const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | (c >> 6));
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | (c >> 12));
    put(0x80 | ((c >> 6) & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | (c >> 18));
    put(0x80 | ((c >> 12) & 0x3F));
    put(0x80 | ((c >> 6) & 0x3F));
    put(0x80 | (c & 0x3F));
  }
}

// Most texts are ASCII from one end to the other.
constexpr unsigned kFirstNoAscii = 0x80;

template <typename Unit>
std::size_t lengthOfAscii(std::basic_string_view<Unit> text) {
  const auto end = std::find_if(text.begin(), text.end(), [](Unit unit) {
    return static_cast<std::make_unsigned_t<Unit>>(unit) >= kFirstNoAscii;
  });
  return static_cast<std::size_t>(end - text.begin());
}

}  // namespace

Utf8Character firstUtf8Character(std::string_view bytes) {
  if (bytes.empty()) return {0, 0};
  const auto at = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char lead = at(0);
  if (lead < 0x80) return {1, lead};
  std::size_t length = 0;
  char32_t smallest = 0;
  char32_t c = 0;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2, smallest = 0x80, c = lead & 0x1F;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3, smallest = 0x800, c = lead & 0x0F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4, smallest = 0x10000, c = lead & 0x07;
  }
  if (length == 0 || bytes.size() < length) return {0, 0};
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0) != 0x80) return {0, 0};
    c = (c << 6) | (at(i) & 0x3FU);
  }
  const bool valid = c >= smallest && c <= 0x10FFFF && !(c >= 0xD800 && c <= 0xDFFF);
  return valid ? Utf8Character{length, c} : Utf8Character{0, 0};
}

std::u16string wideFromNative(std::string_view bytes) {
  std::u16string wide;
  wide.reserve(bytes.size());
  while (!bytes.empty()) {
    const std::size_t ascii = lengthOfAscii(bytes);
    wide.append(bytes.data(), bytes.data() + ascii);
    bytes.remove_prefix(ascii);
    if (bytes.empty()) break;
    const Utf8Character c = firstUtf8Character(bytes);
    if (c.length == 0) {
      wide.push_back(static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(bytes[0])));
    } else if (c.codePoint >= 0x10000) {
      wide.push_back(static_cast<char16_t>(0xD7C0 + (c.codePoint >> 10)));
      wide.push_back(static_cast<char16_t>(0xDC00 + (c.codePoint & 0x3FF)));
    } else {
      wide.push_back(static_cast<char16_t>(c.codePoint));
    }
    bytes.remove_prefix(std::max<std::size_t>(c.length, 1));
  }
  return wide;
}

std::string nativeFromWide(std::u16string_view wide) {
  std::string bytes;
  bytes.reserve(wide.size());
  for (std::size_t i = 0; i < wide.size(); ++i) {
    const std::size_t ascii = lengthOfAscii(wide.substr(i));
    bytes.append(wide.data() + i, wide.data() + i + ascii);
    i += ascii;
    if (i == wide.size()) break;
    const char16_t unit = wide[i];
    if (isHighSurrogate(unit) && i + 1 < wide.size() && isLowSurrogate(wide[i + 1])) {
      ++i;
      appendUtf8(bytes, 0x10000 + ((unit - 0xD800U) << 10) + (wide[i] - 0xDC00U));
    } else if (isEscapedByte(unit)) {
      bytes.push_back(static_cast<char>(unit & 0xFF));
    } else if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
      appendUtf8(bytes, 0xFFFD);
    } else {
      appendUtf8(bytes, unit);
    }
  }
  return bytes;
}

DWORD copyOut(std::u16string_view text, LPWSTR buffer, DWORD bufferUnits) {
  if (buffer == nullptr || text.size() >= bufferUnits) return static_cast<DWORD>(text.size() + 1);
  std::copy(text.begin(), text.end(), buffer);
  buffer[text.size()] = 0;
  return static_cast<DWORD>(text.size());
}

}  // namespace quillon::platform
