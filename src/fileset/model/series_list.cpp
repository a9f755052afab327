#include "fileset/model/series_list.h"

#include <array>
#include <memory>
#include <new>
#include <utility>

#include "attribute_rows.h"

namespace quillon {

CSeries::CSeries() { SetClassName(OLESTR("CSeries")); }

CSeriesList::CSeriesList() { SetClassName(OLESTR("CSeriesList")); }

void CSeriesList::RemoveAll() {
  byUid_.Clear();
  COwningList::RemoveAll();
}

void CSeriesList::RemoveLast() {
  if (GetCount() == 0) return;
  byUid_.Remove(At(GetCount() - 1)->SeriesInstanceUid(), At(GetCount() - 1));
  COwningList::RemoveLast();
}

CSeries* CSeriesList::FindBySeriesInstanceUid(TextView uid) {
  if (uid.empty()) {
    SetErrorMessage(kMsgGivenSeriesInstanceUidInvalid);
    return nullptr;
  }
  return byUid_.Find(uid);
}

bool CSeriesList::AddSeries(const DcElemList* dataSet) {
  static constexpr std::array<AttributeRow<CSeries>, 4> kRows{{
      {0x00200011, &CSeries::seriesNumber_, kMsgSeriesNumberInvalid},
      {0x00080021, &CSeries::seriesDate_, kMsgSeriesDateInvalid},
      {0x00080060, &CSeries::modality_, kMsgModalityInvalid},
      {0x0020000E, &CSeries::seriesInstanceUid_, kMsgSeriesInstanceUidInvalid},
  }};
  if (dataSet == nullptr) return Fail(kMsgElementListInvalid);
  try {
    auto series = std::make_unique<CSeries>();
    if (!ReadAttributes<CSeries>(kRows, *dataSet, *series, *this)) return false;
    Append(std::move(series),
           [this](CSeries& added) { byUid_.Add(added.SeriesInstanceUid(), &added); });
    return true;
  } catch (const std::bad_alloc&) {
    return Fail(kMsgNoStorageForSeries);
  }
}

}  // namespace quillon
