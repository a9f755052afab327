// Numbers out of the text of a value, the same in every locale. Like the conversions of the C
// library these take the longest number that the text begins with, and 0 when there is none.
#pragma once

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>
#include <system_error>

#include "dicom/text_scan.h"

namespace quillon {

// Beyond the ends of [lowest, highest] the end is answered.
inline std::int64_t textToInteger(std::string_view text, std::int64_t lowest,
                                  std::int64_t highest) {
  text = trimmedLeft(text);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  std::int64_t value = 0;
  for (const char c : text) {
    if (!isDigit(c)) break;
    value = value * 10 + (c - '0');
    if (value > std::numeric_limits<std::uint32_t>::max()) break;
  }
  if (negative) value = -value;
  return value < lowest ? lowest : value > highest ? highest : value;
}

inline std::int32_t textToInt32(std::string_view text) {
  return static_cast<std::int32_t>(textToInteger(text, std::numeric_limits<std::int32_t>::min(),
                                                 std::numeric_limits<std::int32_t>::max()));
}

// Negative numbers wrap as a conversion to unsigned does.
inline std::uint32_t textToUint32(std::string_view text) {
  return static_cast<std::uint32_t>(textToInteger(text, std::numeric_limits<std::int32_t>::min(),
                                                  std::numeric_limits<std::uint32_t>::max()));
}

inline double textToDouble(std::string_view text) {
  text = trimmedLeft(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    const std::string_view number(text.data(), static_cast<std::size_t>(result.ptr - text.data()));
    const std::size_t exponent = number.find_first_of("eE");
    const bool tiny = exponent != std::string_view::npos
                          ? number.substr(exponent + 1).starts_with('-')
                          : number.find_first_not_of("-0") == number.find('.');
    const double magnitude = tiny ? 0.0 : HUGE_VAL;
    return number.starts_with('-') ? -magnitude : magnitude;
  }
  return value;
}

}  // namespace quillon
