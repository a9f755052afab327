#include "foundation/base_list.h"

#include <algorithm>

namespace quillon {

CBaseList::~CBaseList() = default;

void CBaseList::RemoveAll() { items_.clear(); }

void CBaseList::RemoveLast() {
  if (!items_.empty()) items_.pop_back();
}

bool CBaseList::Add(CBaseItem* item) {
  if (item == nullptr) return false;
  items_.push_back(item);
  return true;
}

CBaseItem* CBaseList::GetAt(std::size_t index) const {
  return index < items_.size() ? items_[index] : nullptr;
}

void CBaseList::Sort(const Less& compare, bool stable) {
  if (items_.size() < 2 || !compare) return;
  const auto byItem = [&compare](const CBaseItem* a, const CBaseItem* b) {
    return compare(*a, *b);
  };
  if (stable) {
    std::stable_sort(items_.begin(), items_.end(), byItem);
  } else {
    std::sort(items_.begin(), items_.end(), byItem);
  }
}

}  // namespace quillon
