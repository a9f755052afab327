// The write speeds that a drive offers for its current medium.
#pragma once

#include <cstdint>

#include "disc/copied_list.h"

namespace quillon {

class CWriteSpeedInfo : public CBaseItem, public CKeyedItem {
 public:
  CWriteSpeedInfo();
  // Sectors per second, not negative: "The given write speed value is invalid.".
  [[nodiscard]] bool SetWriteSpeed(std::int32_t sectorsPerSecond);
  [[nodiscard]] std::int32_t WriteSpeed() const { return writeSpeed_; }
  // The multiple of the medium's base speed, -1 or not negative: "The given write factor value is
  // invalid.".
  [[nodiscard]] bool SetWriteFactor(std::int32_t factor);
  [[nodiscard]] std::int32_t WriteFactor() const { return writeFactor_; }

 private:
  std::int32_t writeSpeed_ = 0;
  std::int32_t writeFactor_ = 0;
};

class CWriteSpeedInfoList : public CCopiedList<CWriteSpeedInfo> {
 public:
  enum class SortDirection { Ascending = 0, Descending = 1, None = 2 };
  enum class SortKey { ItemText = 0, ItemValue = 1, Key = 2, WriteSpeed = 3, WriteFactor = 4 };

  void SetSorting(SortDirection direction, SortKey key) {
    direction_ = direction;
    sortKey_ = key;
  }
  void SortSpeeds();  // equal ones keep their order

 private:
  SortDirection direction_ = SortDirection::None;
  SortKey sortKey_ = SortKey::WriteSpeed;
};

}  // namespace quillon
