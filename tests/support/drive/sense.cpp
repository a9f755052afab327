#include "sense.h"

#include <array>
#include <cstdio>

namespace emulated {

std::string textOf(Sense sense) {
  if (sense.isGood()) return "ok";
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%X/%02X/%02X", sense.key, sense.code, sense.qualifier);
  return text.data();
}

std::optional<Sense> senseOf(std::string_view text) {
  unsigned key = 0;
  unsigned code = 0;
  unsigned qualifier = 0;
  const std::string copy(text);
  if (std::sscanf(copy.c_str(), "%x/%x/%x", &key, &code, &qualifier) != 3) return std::nullopt;
  return Sense{static_cast<std::uint8_t>(key), static_cast<std::uint8_t>(code),
               static_cast<std::uint8_t>(qualifier)};
}

}  // namespace emulated
