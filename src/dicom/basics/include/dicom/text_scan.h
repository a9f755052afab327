// White space as the toolkit understands it: any byte below 14, and the space.
#pragma once

#include <string_view>

namespace quillon {

[[nodiscard]] constexpr bool isDcSpace(char c) {
  return static_cast<unsigned char>(c) < 14 || c == ' ';
}

constexpr std::string_view trimmedLeft(std::string_view text) {
  while (!text.empty() && isDcSpace(text.front())) text.remove_prefix(1);
  return text;
}
constexpr std::string_view trimmedRight(std::string_view text) {
  while (!text.empty() && isDcSpace(text.back())) text.remove_suffix(1);
  return text;
}
constexpr std::string_view trimmed(std::string_view text) {
  return trimmedRight(trimmedLeft(text));
}

[[nodiscard]] constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace quillon
