// The directories whose contents are written to a disc.
#pragma once

#include <cstdint>

#include "foundation/base_list.h"

namespace quillon {

class CMediaItem : public CBaseItem {
 public:
  CMediaItem();

  [[nodiscard]] const Text& Path() const { return path_; }
  void SetPath(TextView path) { path_ = path; }
  [[nodiscard]] std::int32_t Value() const { return value_; }
  void SetValue(std::int32_t value) { value_ = value; }

 private:
  Text path_;
  std::int32_t value_ = 0;
};

class CMediaItemList : public COwningList<CMediaItem> {
 public:
  CMediaItemList();

  // Appends a copy. False, with a sentence, when memory runs out.
  [[nodiscard]] bool AddItem(const CMediaItem& item);
  // True when an item has exactly this path, which must not be empty.
  [[nodiscard]] bool Contains(TextView path) const;
};

}  // namespace quillon
