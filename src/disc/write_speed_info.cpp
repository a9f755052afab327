#include "disc/write_speed_info.h"

#include <functional>

namespace quillon {
namespace {

// Smaller by the field that read answers.
template <typename Read>
CBaseList::Less LessBy(const Read& read) {
  return [read](const CBaseItem& a, const CBaseItem& b) {
    return std::invoke(read, static_cast<const CWriteSpeedInfo&>(a)) <
           std::invoke(read, static_cast<const CWriteSpeedInfo&>(b));
  };
}

Text ItemTextOf(const CWriteSpeedInfo& item) {
  Text text;
  item.GetItemText(text);
  return text;
}

CBaseList::Less LessFor(CWriteSpeedInfoList::SortKey key) {
  switch (key) {
    case CWriteSpeedInfoList::SortKey::ItemText:
      return LessBy(&ItemTextOf);
    case CWriteSpeedInfoList::SortKey::ItemValue:
      return LessBy([](const CWriteSpeedInfo& item) { return item.GetItemValue(); });
    case CWriteSpeedInfoList::SortKey::Key:
      return LessBy([](const CWriteSpeedInfo& item) { return item.GetKey(); });
    case CWriteSpeedInfoList::SortKey::WriteSpeed:
      return LessBy([](const CWriteSpeedInfo& item) { return item.WriteSpeed(); });
    case CWriteSpeedInfoList::SortKey::WriteFactor:
      return LessBy([](const CWriteSpeedInfo& item) { return item.WriteFactor(); });
  }
  return nullptr;
}

}  // namespace

CWriteSpeedInfo::CWriteSpeedInfo() { SetClassName(OLESTR("CWriteSpeedInfo")); }

bool CWriteSpeedInfo::SetWriteSpeed(std::int32_t sectorsPerSecond) {
  if (sectorsPerSecond < 0) return Fail(kMsgGivenWriteSpeedInvalid);
  writeSpeed_ = sectorsPerSecond;
  return true;
}

bool CWriteSpeedInfo::SetWriteFactor(std::int32_t factor) {
  if (factor < -1) return Fail(kMsgGivenWriteFactorInvalid);
  writeFactor_ = factor;
  return true;
}

void CWriteSpeedInfoList::SortSpeeds() {
  if (direction_ == SortDirection::None) return;
  const Less less = LessFor(sortKey_);
  if (direction_ == SortDirection::Ascending) {
    Sort(less, /*stable=*/true);
  } else {
    Sort([&less](const CBaseItem& a, const CBaseItem& b) { return less(b, a); }, /*stable=*/true);
  }
}

}  // namespace quillon
