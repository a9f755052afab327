#include "utf8_sequence.h"

#include <cstdint>

namespace quillon::cli {

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

}  // namespace quillon::cli
