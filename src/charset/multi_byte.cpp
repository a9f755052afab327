#include "multi_byte.h"

#include "text_run.h"

namespace quillon {

namespace {

constexpr char32_t kLastInOneUnit = 0xFFFF;
constexpr char32_t kLastCharacter = 0x10FFFF;

constexpr unsigned char Byte(char c) { return static_cast<unsigned char>(c); }
constexpr bool IsWithin(char c, unsigned char first, unsigned char last) {
  return Byte(c) >= first && Byte(c) <= last;
}

// A character's code and bytes; 0 bytes for none. The code pages of the system do not agree on what
// is wrong (Windows XP leaves it out), so that UTF-8 is read here.
struct Utf8Character {
  char32_t code = 0;
  std::size_t bytes = 0;
};

Utf8Character FirstUtf8(std::string_view text) {
  const unsigned char lead = Byte(text[0]);
  const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < bytes) return {};
  char32_t code = lead & (0x7FU >> bytes);
  for (std::size_t i = 1; i < bytes; ++i) {
    if (!IsWithin(text[i], 0x80, 0xBF)) return {};
    code = code << 6 | (Byte(text[i]) & 0x3FU);
  }
  const bool isOverlong = (bytes == 3 && code < 0x800) || (bytes == 4 && code <= kLastInOneUnit);
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  if (isOverlong || isSurrogate || code > kLastCharacter) return {};
  return {code, bytes};
}

// Bytes of the character at the start of the text, which is none of ASCII; 0 for none. Of those of
// four bytes, which stand in order, the ones that have a character.
std::size_t GbCharacterBytes(std::string_view text, bool hasFourBytes) {
  if (text.size() < 2 || !IsWithin(text[0], 0x81, 0xFE)) return 0;
  if (IsWithin(text[1], 0x40, 0xFE) && Byte(text[1]) != 0x7F) return 2;
  if (!hasFourBytes || text.size() < 4 || !IsWithin(text[1], '0', '9') ||
      !IsWithin(text[2], 0x81, 0xFE) || !IsWithin(text[3], '0', '9')) {
    return 0;
  }
  unsigned code = 0;
  for (std::size_t i = 0; i < 4; ++i) code = code << 8U | Byte(text[i]);
  constexpr unsigned kLastOfFirstPlane = 0x8431A439;
  constexpr unsigned kFirstBehindIt = 0x90308130;
  constexpr unsigned kLast = 0xE3329A35;
  return code <= kLastOfFirstPlane || (code >= kFirstBehindIt && code <= kLast) ? 4 : 0;
}

Text DecodeGb(std::string_view bytes, UINT codePage) {
  TextRun run;
  while (!bytes.empty()) {
    std::size_t taken = 1;
    if (Byte(bytes[0]) < 0x80) {
      run.PutAscii(bytes[0]);
    } else if (const std::size_t size = GbCharacterBytes(bytes, codePage == kGb18030Page);
               size > 0) {
      run.PutCharacter(codePage, bytes.substr(0, size));
      taken = size;
    } else {
      run.PutUnreadable();
    }
    bytes.remove_prefix(taken);
  }
  return run.Take();
}

}  // namespace

Text DecodeUtf8(std::string_view bytes) {
  Text text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    if (Byte(bytes[0]) < 0x80) {
      text.push_back(Byte(bytes[0]));
      bytes.remove_prefix(1);
      continue;
    }
    const Utf8Character character = FirstUtf8(bytes);
    if (character.bytes == 0) {
      text.push_back(kUnreadable);
      bytes.remove_prefix(1);
      continue;
    }
    if (character.code <= kLastInOneUnit) {
      text.push_back(static_cast<OLECHAR>(character.code));
    } else {
      const char32_t beyond = character.code - (kLastInOneUnit + 1);
      text.push_back(static_cast<OLECHAR>(0xD800 + (beyond >> 10)));
      text.push_back(static_cast<OLECHAR>(0xDC00 + (beyond & 0x3FF)));
    }
    bytes.remove_prefix(character.bytes);
  }
  return text;
}

Text DecodeGbk(std::string_view bytes) { return DecodeGb(bytes, kGbkPage); }

Text DecodeGb18030(std::string_view bytes) { return DecodeGb(bytes, kGb18030Page); }

}  // namespace quillon
