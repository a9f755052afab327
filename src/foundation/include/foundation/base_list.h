// Base of every list class: an ordered sequence of item pointers. The base forgets its items;
// an owning list destroys them.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "foundation/base_item.h"

namespace quillon {

class CBaseList : public CBaseItem {
 public:
  using Less = std::function<bool(const CBaseItem&, const CBaseItem&)>;

  CBaseList() = default;
  ~CBaseList() override;
  CBaseList(const CBaseList&) = delete;
  CBaseList& operator=(const CBaseList&) = delete;

  virtual void RemoveAll();

  bool Add(CBaseItem* item);  // false for null
  [[nodiscard]] std::size_t GetCount() const { return items_.size(); }
  [[nodiscard]] CBaseItem* GetAt(std::size_t index) const;  // null past the end
  void Sort(const Less& compare, bool stable);

 protected:
  std::vector<CBaseItem*> items_;
};

// A list that owns items of one type.
template <typename Item>
class COwningList : public CBaseList {
 public:
  ~COwningList() override { DeleteItems(); }
  void RemoveAll() override { DeleteItems(); }
  [[nodiscard]] Item* At(std::size_t index) const { return static_cast<Item*>(GetAt(index)); }

 private:
  void DeleteItems() {
    for (CBaseItem* item : items_) delete item;
    items_.clear();
  }
};

}  // namespace quillon
