// UTF-8 in which every byte sequence survives: a byte that is not part of valid UTF-8 becomes the
// lone surrogate U+DC00 + byte (U+DC80 to U+DCFF), and such a surrogate becomes the byte again.
#pragma once

#include <string>
#include <string_view>

#include "platform/win32/types.h"

namespace quillon::platform {

constexpr bool isEscapedByte(char16_t unit) { return unit >= 0xDC80 && unit <= 0xDCFF; }
constexpr bool isHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool isLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// Length of the valid UTF-8 character at the start of bytes and its code point; 0 for none.
struct Utf8Character {
  std::size_t length;
  char32_t codePoint;
};
Utf8Character firstUtf8Character(std::string_view bytes);

std::u16string wideFromNative(std::string_view bytes);
// Surrogates that stand for nothing become U+FFFD.
std::string nativeFromWide(std::u16string_view wide);

// Stores text with its terminator and answers its length; when it does not fit, answers the room
// needed with the terminator and stores nothing.
DWORD copyOut(std::u16string_view text, LPWSTR buffer, DWORD bufferUnits);

}  // namespace quillon::platform
