#include "nearest_name.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace quillon::cli {

namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// How many characters to add, remove or change between the two.
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t changed = diagonal + (lower(a[i]) == lower(b[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string nearestName(std::string_view name, const std::vector<std::string>& names) {
  const auto nearest = std::ranges::min_element(
      names, {}, [&](const std::string& one) { return distance(name, one); });
  return nearest == names.end() ? std::string() : *nearest;
}

std::string didYouMean(std::string_view name, const std::vector<std::string>& names) {
  const std::string nearest = nearestName(name, names);
  const bool isLike = 2 * distance(name, nearest) < std::max(name.size(), nearest.size());
  return isLike ? "; did you mean " + nearest + "?" : ".";
}

}  // namespace quillon::cli
