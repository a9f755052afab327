#include "fileset/model/study_list.h"

#include <array>

namespace quillon {

CStudy::CStudy() { SetClassName(OLESTR("CStudy")); }

std::span<const AttributeRow<CStudy>> CStudy::Attributes() {
  static constexpr std::array<AttributeRow<CStudy>, 6> kRows{{
      {0x00080050, &CStudy::accessionNumber_, kMsgAccessionNumberInvalid},
      // Required in a directory record and often empty in files.
      {0x00200010, &CStudy::studyId_, kMsgStudyIdInvalid, OLESTR("1")},
      {0x00080020, &CStudy::studyDate_, kMsgStudyDateInvalid},
      {0x00081030, &CStudy::description_, kMsgStudyDescriptionInvalid},
      {0x00080030, &CStudy::studyTime_, kMsgStudyTimeInvalid},
      {0x0020000D, &CStudy::studyInstanceUid_, kMsgStudyInstanceUidInvalid},
  }};
  return kRows;
}

CStudyList::CStudyList()
    : NodeList(OLESTR("CStudyList"),
               {kMsgGivenStudyInstanceUidInvalid, kMsgElementListInvalid, kMsgNoStorageForStudy}) {}

}  // namespace quillon
