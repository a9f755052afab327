#include "medium_index.h"

#include <utility>

namespace quillon {

Text Folded(TextView path) {
  Text folded(path);
  for (OLECHAR& unit : folded) {
    if (unit >= OLESTR('a') && unit <= OLESTR('z')) {
      unit = static_cast<OLECHAR>(unit - OLESTR('a') + OLESTR('A'));
    }
  }
  return folded;
}

MediumIndex::MediumIndex(std::vector<MediumEntry> entries) : entries_(std::move(entries)) {
  places_.reserve(entries_.size());
  for (std::size_t i = 0; i < entries_.size(); ++i) places_.emplace(entries_[i].path, i);
}

std::optional<std::size_t> MediumIndex::Find(TextView path) const {
  const auto found = places_.find(path);
  if (found == places_.end()) return std::nullopt;
  return found->second;
}

std::optional<std::size_t> MediumIndex::FindFolded(TextView path) {
  if (folded_.empty()) {
    for (std::size_t i = 0; i < entries_.size(); ++i) folded_.emplace(Folded(entries_[i].path), i);
  }
  const auto found = folded_.find(Folded(path));
  if (found == folded_.end()) return std::nullopt;
  return found->second;
}

std::optional<std::size_t> MediumIndex::FindInRoot(TextView name) {
  if (const auto found = Find(name)) return found;
  const Text folded = Folded(name);
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (entries_[i].path.size() == name.size() && Folded(entries_[i].path) == folded) return i;
  }
  return std::nullopt;
}

}  // namespace quillon
