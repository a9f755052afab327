// A list that owns copies of what is added. An item that has no key gets the decimal text of its
// position, counted from 1.
#pragma once

#include <memory>
#include <new>

#include "foundation/base_list.h"

namespace quillon {

// Item is copyable and has GetKey() and SetKey(TextView).
template <typename Item>
class CCopiedList : public COwningList<Item> {
 public:
  CCopiedList() = default;
  CCopiedList(const CCopiedList& other) : COwningList<Item>() { *this = other; }
  CCopiedList& operator=(const CCopiedList& other) {
    if (this == &other) return *this;
    CBaseItem::operator=(other);
    this->RemoveAll();
    for (std::size_t i = 0; i < other.GetCount(); ++i) {
      // A list that lacks an item would pass for whole.
      if (!AddCopy(*other.At(i))) throw std::bad_alloc();
    }
    return *this;
  }

  [[nodiscard]] bool AddCopy(const Item& item) {
    auto copy = std::make_unique<Item>(item);
    if (copy->GetKey().empty() && !copy->SetKey(NextKey())) return false;
    if (!this->Add(copy.get())) return false;
    static_cast<void>(copy.release());  // the list owns it now
    return true;
  }

 protected:
  [[nodiscard]] Text NextKey() const {
    return NumberText(static_cast<long long>(this->GetCount()) + 1);
  }
};

// What the items of such a list share.
class CKeyedItem {
 public:
  [[nodiscard]] const Text& GetKey() const { return key_; }
  [[nodiscard]] bool SetKey(TextView key) {
    return AssignText(key_, key, 0);
  }  // false: memory ran out

 private:
  Text key_;
};

}  // namespace quillon
