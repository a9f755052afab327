#include "graphic_sets.h"

#include <algorithm>

namespace quillon {

namespace {

constexpr std::array<std::uint8_t, 2> kAsItIs{0, 0};
constexpr std::array<std::uint8_t, 2> kBothHigh{0x80, 0x80};
constexpr std::array<std::uint8_t, 2> kFirstHigh{0x80, 0};
constexpr bool kG0 = false;
constexpr bool kG1 = true;

// clang-format off
constexpr std::array kSets{
    //        term           escape place graphics            page   bytes to page
    GraphicSet{6,             "(B",  kG0, Graphics::Ascii,    0,     1, kAsItIs},
    GraphicSet{0,             "(J",  kG0, Graphics::Roman,    0,     1, kAsItIs},
    GraphicSet{kKatakanaTerm, ")I",  kG1, Graphics::Katakana, 0,     1, kAsItIs},
    GraphicSet{100,           "-A",  kG1, Graphics::Page,     28591, 1, kAsItIs},  // Latin 1
    GraphicSet{101,           "-B",  kG1, Graphics::Page,     28592, 1, kAsItIs},  // Latin 2
    GraphicSet{109,           "-C",  kG1, Graphics::Page,     28593, 1, kAsItIs},  // Latin 3
    GraphicSet{110,           "-D",  kG1, Graphics::Page,     28594, 1, kAsItIs},  // Latin 4
    GraphicSet{144,           "-L",  kG1, Graphics::Page,     28595, 1, kAsItIs},  // Cyrillic
    GraphicSet{127,           "-G",  kG1, Graphics::Page,     28596, 1, kAsItIs},  // Arabic
    GraphicSet{126,           "-F",  kG1, Graphics::Page,     28597, 1, kAsItIs},  // Greek
    GraphicSet{138,           "-H",  kG1, Graphics::Page,     28598, 1, kAsItIs},  // Hebrew
    GraphicSet{148,           "-M",  kG1, Graphics::Page,     28599, 1, kAsItIs},  // Latin 5
    GraphicSet{203,           "-b",  kG1, Graphics::Page,     28605, 1, kAsItIs},  // Latin 9
    GraphicSet{166,           "-T",  kG1, Graphics::Page,     874,   1, kAsItIs},  // Thai
    GraphicSet{87,            "$B",  kG0, Graphics::Page,     20932, 2, kBothHigh},   // JIS X 0208
    GraphicSet{0,             "$@",  kG0, Graphics::Page,     20932, 2, kBothHigh},   // its first edition
    GraphicSet{159,           "$(D", kG0, Graphics::Page,     20932, 2, kFirstHigh},  // JIS X 0212
    GraphicSet{149,           "$)C", kG1, Graphics::Page,     949,   2, kAsItIs},  // KS X 1001
    GraphicSet{58,            "$)A", kG1, Graphics::Page,     936,   2, kAsItIs},  // GB 2312
};
// clang-format on
constexpr GraphicSet kSystemSet{0, {}, kG1, Graphics::Page, CP_ACP, 1, kAsItIs};

}  // namespace

const GraphicSet* SetOfEscape(std::string_view rest) {
  const auto* row = std::ranges::find_if(
      kSets, [rest](const GraphicSet& set) { return rest.starts_with(set.escape); });
  return row == kSets.end() ? nullptr : row;
}

const GraphicSet* SetOfTerm(unsigned number) {
  const auto* row = std::ranges::find(kSets, number, &GraphicSet::term);
  return row == kSets.end() || number == 0 ? nullptr : row;
}

const GraphicSet& AsciiSet() { return kSets[0]; }
const GraphicSet& RomanSet() { return kSets[1]; }
const GraphicSet& SystemSet() { return kSystemSet; }

}  // namespace quillon
