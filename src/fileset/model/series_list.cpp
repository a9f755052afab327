#include "fileset/model/series_list.h"

#include <array>

#include "dicom/tags.h"

namespace quillon {

CSeries::CSeries() { SetClassName(OLESTR("CSeries")); }

std::span<const AttributeRow<CSeries>> CSeries::Attributes() {
  static constexpr std::array<AttributeRow<CSeries>, 4> kRows{{
      {tags::kSeriesNumber, &CSeries::seriesNumber_, kMsgSeriesNumberInvalid},
      {tags::kSeriesDate, &CSeries::seriesDate_, kMsgSeriesDateInvalid},
      {tags::kModality, &CSeries::modality_, kMsgModalityInvalid},
      {tags::kSeriesInstanceUid, &CSeries::seriesInstanceUid_, kMsgSeriesInstanceUidInvalid},
  }};
  return kRows;
}

CSeriesList::CSeriesList()
    : NodeList(OLESTR("CSeriesList"), {kMsgGivenSeriesInstanceUidInvalid, kMsgElementListInvalid,
                                       kMsgNoStorageForSeries}) {}

}  // namespace quillon
