// The sets of characters that escape sequences switch between, each in one of two places: bytes
// 21 to 7E mean characters of the set in G0, bytes from 80 on those of the one in G1.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "platform/win32.h"

namespace quillon {

enum class Graphics : std::uint8_t {
  Ascii,
  Roman,     // of JIS X 0201: ASCII with a yen sign and an overline
  Katakana,  // of JIS X 0201
  Page,      // characters of a code page
};

struct GraphicSet {
  unsigned term;            // number in the defined terms; 0: it has none of its own
  std::string_view escape;  // what follows the escape character
  bool isG1;
  Graphics graphics;
  UINT codePage;
  unsigned bytesPerCharacter;
  // What a character's bytes in G0 get to be those of the code page.
  std::array<std::uint8_t, 2> toPage;
};

inline constexpr char kEscape = '\x1B';
inline constexpr unsigned kKatakanaTerm = 13;

// The set that an escape sequence (rest: what follows the escape character) switches to; null for
// none that is known.
const GraphicSet* SetOfEscape(std::string_view rest);
const GraphicSet* SetOfTerm(unsigned number);

const GraphicSet& AsciiSet();
const GraphicSet& RomanSet();
// In G1, what the system takes bytes beyond ASCII for.
const GraphicSet& SystemSet();

}  // namespace quillon
