// Base of every list class: an ordered sequence of item pointers. The base forgets its items;
// an owning list destroys them.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
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

  // Forgets the items; an owning list destroys them.
  virtual void RemoveAll();
  // The same with the item at the end alone; nothing in an empty list.
  virtual void RemoveLast();

  // At the end. False for null.
  [[nodiscard]] bool Add(CBaseItem* item);
  [[nodiscard]] std::size_t GetCount() const { return items_.size(); }
  [[nodiscard]] CBaseItem* GetAt(std::size_t index) const;  // null past the end
  // Ascending by compare (less than). With stable equal items keep their order. Without a
  // comparison nothing is sorted.
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
  void RemoveLast() override {
    if (items_.empty()) return;
    delete items_.back();
    items_.pop_back();
  }
  [[nodiscard]] Item* At(std::size_t index) const { return static_cast<Item*>(GetAt(index)); }

 protected:
  // Takes the item over; when enter(item) throws, the list is as it was.
  template <typename Enter>
  void Append(std::unique_ptr<Item> item, Enter enter) {
    items_.push_back(item.get());
    try {
      enter(*item);
    } catch (...) {
      items_.pop_back();
      throw;
    }
    static_cast<void>(item.release());
  }

 private:
  void DeleteItems() {
    for (CBaseItem* item : items_) delete item;
    items_.clear();
  }
};

}  // namespace quillon
