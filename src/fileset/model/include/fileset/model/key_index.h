// Finds the items of a list by their key without walking the list.
#pragma once

#include <unordered_map>

#include "foundation/text.h"

namespace quillon {

// The keys lie in the items, which the list owns and never moves: the index must be cleared before
// its items go. Of several items with one key the first one added is found.
template <typename Item>
class KeyIndex {
 public:
  void Add(TextView keyInItem, Item* item) { items_.emplace(keyInItem, item); }
  [[nodiscard]] Item* Find(TextView key) const {
    const auto found = items_.find(key);
    return found == items_.end() ? nullptr : found->second;
  }
  // Before the item goes.
  void Remove(TextView key, const Item* item) {
    const auto found = items_.find(key);
    if (found != items_.end() && found->second == item) items_.erase(found);
  }
  void Clear() { items_.clear(); }

 private:
  std::unordered_map<TextView, Item*> items_;
};

}  // namespace quillon
