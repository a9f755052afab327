#include "json_output.h"

#include <cstdint>
#include <cstdio>

namespace quillon::cli {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

// Bytes of the well-formed UTF-8 sequence at the beginning of the text; 0 when there is none.
std::size_t sequenceBytes(std::string_view text) {
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

void appendAscii(std::string& out, char c) {
  switch (c) {
    case '"':
      out += "\\\"";
      return;
    case '\\':
      out += "\\\\";
      return;
    case '\n':
      out += "\\n";
      return;
    case '\r':
      out += "\\r";
      return;
    case '\t':
      out += "\\t";
      return;
    default:
      break;
  }
  if (static_cast<std::uint8_t>(c) >= 0x20) {
    out += c;
    return;
  }
  char escaped[8];
  std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
  out += escaped;
}

}  // namespace

std::string jsonString(std::string_view text) {
  std::string out = "\"";
  while (!text.empty()) {
    const std::size_t bytes = sequenceBytes(text);
    if (bytes == 0) {
      out += kReplacement;
    } else if (bytes == 1) {
      appendAscii(out, text.front());
    } else {
      out += text.substr(0, bytes);
    }
    text.remove_prefix(bytes == 0 ? 1 : bytes);
  }
  return out + "\"";
}

}  // namespace quillon::cli
