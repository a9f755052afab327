#include "terminal_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace quillon::cli {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD
constexpr unsigned char kDelete = 0x7F;

// Characters from first to last are not printed. UTF-8 keeps the order of code points.
struct Range {
  std::string_view first;
  std::string_view last;
};
constexpr std::array kUnprintable{
    Range{"\xC2\x80", "\xC2\x9F"},          // C1 controls, U+0080 to U+009F
    Range{"\xD8\x9C", "\xD8\x9C"},          // U+061C, Arabic letter mark
    Range{"\xE2\x80\x8E", "\xE2\x80\x8F"},  // U+200E and U+200F, marks of direction
    Range{"\xE2\x80\xAA", "\xE2\x80\xAE"},  // U+202A to U+202E, embeddings and overrides
    Range{"\xE2\x81\xA6", "\xE2\x81\xA9"},  // U+2066 to U+2069, isolates
};

// To a terminal that does not take its text for UTF-8.
bool isC1(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 && byte <= 0x9F;
}

bool isUnprintable(std::string_view character) {
  return std::any_of(kUnprintable.begin(), kUnprintable.end(), [character](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

// U+2400 and the following ones show the control characters, U+2421 the one above them.
void appendAscii(std::string& out, char c) {
  const auto byte = static_cast<unsigned char>(c);
  const bool isControl = byte < 0x20 || byte == kDelete;
  if (!isControl || c == '\n' || c == '\t') {
    out += c;
    return;
  }
  out += "\xE2\x90";
  out += static_cast<char>(byte == kDelete ? 0xA1 : 0x80 + byte);
}

}  // namespace

std::size_t utf8SequenceBytes(std::string_view text) {
  const auto byteAt = [text](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t lead = byteAt(0);
  if (lead < 0x80) return 1;
  const std::size_t bytes = lead >= 0xC2 && lead <= 0xDF   ? 2
                            : lead >= 0xE0 && lead <= 0xEF ? 3
                            : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                           : 0;
  if (bytes == 0 || text.size() < bytes) return 0;
  for (std::size_t i = 1; i < bytes; ++i) {
    if ((byteAt(i) & 0xC0) != 0x80) return 0;
  }
  // Overlong forms, surrogates and values above U+10FFFF show in the second byte.
  const std::uint8_t second = byteAt(1);
  if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
      (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F)) {
    return 0;
  }
  return bytes;
}

std::string forTerminal(std::string_view utf8) {
  std::string out;
  out.reserve(utf8.size());
  while (!utf8.empty()) {
    const std::size_t bytes = utf8SequenceBytes(utf8);
    const std::string_view character = utf8.substr(0, bytes);
    if (bytes == 1) {
      appendAscii(out, character[0]);
    } else if (bytes == 0) {
      out += isC1(utf8[0]) ? kReplacement : utf8.substr(0, 1);
    } else {
      out += isUnprintable(character) ? kReplacement : character;
    }
    utf8.remove_prefix(bytes == 0 ? 1 : bytes);
  }
  return out;
}

void say(std::string_view sentence) {
  const std::string line = "quillon: " + forTerminal(sentence) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

void sayBelowProgress(std::string_view sentence) {
  std::fputc('\n', stderr);
  say(sentence);
}

}  // namespace quillon::cli
