#include "value_text.h"

#include <algorithm>
#include <limits>

namespace quillon {

namespace {

constexpr unsigned kFirstNoAscii = 0x80;

}  // namespace

Text WidenValue(std::string_view text) {
  Text wide(text.size(), OLECHAR{});
  unsigned bits = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    bits |= byte;
    wide[i] = byte;
  }
  return bits < kFirstNoAscii ? wide : WidenText(text, CP_ACP);
}

std::int32_t LeadingNumber(TextView text) {
  std::size_t at = 0;
  while (at < text.size() && text[at] == OLESTR(' ')) ++at;
  const bool negative = at < text.size() && text[at] == OLESTR('-');
  if (at < text.size() && (negative || text[at] == OLESTR('+'))) ++at;
  std::int64_t number = 0;
  constexpr std::int64_t kBound = std::numeric_limits<std::int32_t>::max();
  for (; at < text.size() && text[at] >= OLESTR('0') && text[at] <= OLESTR('9'); ++at) {
    number = std::min(number * 10 + (text[at] - OLESTR('0')), kBound);
  }
  return static_cast<std::int32_t>(negative ? -number : number);
}

}  // namespace quillon
