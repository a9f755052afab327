#include "fileset/model/series_list.h"

#include <array>

namespace quillon {

CSeries::CSeries() { SetClassName(OLESTR("CSeries")); }

std::span<const AttributeRow<CSeries>> CSeries::Attributes() {
  static constexpr std::array<AttributeRow<CSeries>, 4> kRows{{
      {0x00200011, &CSeries::seriesNumber_, kMsgSeriesNumberInvalid},
      {0x00080021, &CSeries::seriesDate_, kMsgSeriesDateInvalid},
      {0x00080060, &CSeries::modality_, kMsgModalityInvalid},
      {0x0020000E, &CSeries::seriesInstanceUid_, kMsgSeriesInstanceUidInvalid},
  }};
  return kRows;
}

CSeriesList::CSeriesList()
    : NodeList(OLESTR("CSeriesList"), {kMsgGivenSeriesInstanceUidInvalid, kMsgElementListInvalid,
                                       kMsgNoStorageForSeries}) {}

}  // namespace quillon
