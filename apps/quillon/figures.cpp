#include "figures.h"

#include <array>
#include <cstdio>

namespace quillon::cli {

std::string countText(std::uint64_t count, std::string_view one, std::string_view many) {
  return std::to_string(count) + " " + std::string(count == 1 ? one : many);
}

std::string sizeText(std::uint64_t bytes) {
  constexpr std::array kUnits{"KB", "MB", "GB", "TB"};
  if (bytes < 1024) return std::to_string(bytes) + " B";
  auto size = static_cast<double>(bytes);
  std::size_t unit = 0;
  for (size /= 1024; size >= 1023.95 && unit + 1 < kUnits.size(); ++unit) size /= 1024;
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f %s", size, kUnits[unit]);
  return text.data();
}

}  // namespace quillon::cli
