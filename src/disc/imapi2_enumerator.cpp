#include "disc/imapi2_enumerator.h"

#include <algorithm>

#include "tables/enumerator_kinds.h"

namespace quillon {

CImapi2Enumerator::CImapi2Enumerator(const EnumeratorKind& kind) : kind_(&kind) {
  SetClassName(kind.className);
  Reset();
}

void CImapi2Enumerator::Reset() {
  value_ = kUndefined;
  SetItemText(LoadMessage(kMsgNameUndefined));
}

bool CImapi2Enumerator::Set(std::int32_t value, TextView fallbackName) {
  const bool isValid = value >= kUndefined;
  if (!isValid || (!SetItemText(NameOf(value)) && !SetItemText(fallbackName))) {
    Reset();
    return false;
  }
  value_ = value;
  return true;
}

bool CImapi2Enumerator::Set(std::int32_t value) { return Set(value, NumberText(value)); }

Text CImapi2Enumerator::NameOf(std::int32_t value) const {
  const bool isOneRow = !kind_->isBitSet || value == kUndefined || value == 0;
  if (isOneRow) {
    const auto row = std::ranges::find(kind_->rows, value, &EnumeratorRow::value);
    return row == kind_->rows.end() ? Text() : LoadMessage(row->name);
  }
  Text names;
  for (const EnumeratorRow& row : kind_->rows) {
    if (row.value == kUndefined || (row.value & value) == 0) continue;
    if (!names.empty()) names += OLESTR(", ");
    names += LoadMessage(row.name);
  }
  return names;
}

CFsiFileSystems::CFsiFileSystems() : CImapi2Enumerator(kFsiFileSystemsKind) {}
CFsiFileSystems::CFsiFileSystems(std::int32_t mask) : CFsiFileSystems() {
  static_cast<void>(Set(mask));  // a mask that is none leaves the value undefined
}
CMediaState::CMediaState() : CImapi2Enumerator(kMediaStateKind) {}
CWriteProtectState::CWriteProtectState() : CImapi2Enumerator(kWriteProtectStateKind) {}
CPhysicalMediaType::CPhysicalMediaType() : CImapi2Enumerator(kPhysicalMediaTypeKind) {}
CPageType::CPageType() : CImapi2Enumerator(kPageTypeKind) {}
CProfileType::CProfileType() : CImapi2Enumerator(kProfileTypeKind) {}
CFeaturePageType::CFeaturePageType() : CImapi2Enumerator(kFeaturePageTypeKind) {}

bool CImapi2EnumList::SetValues(const CImapi2Enumerator& kind, std::span<const LONG> values) {
  RemoveAll();
  CImapi2Enumerator item = kind;
  for (const LONG value : values) {
    if (item.Set(value) && AddCopy(item)) continue;
    RemoveAll();
    return false;
  }
  return true;
}

}  // namespace quillon
