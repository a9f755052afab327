#include "fileset/model/study_list.h"

#include <array>

#include "dicom/tags.h"

namespace quillon {

CStudy::CStudy() { SetClassName(OLESTR("CStudy")); }

std::span<const AttributeRow<CStudy>> CStudy::Attributes() {
  static constexpr std::array<AttributeRow<CStudy>, 6> kRows{{
      {tags::kAccessionNumber, &CStudy::accessionNumber_, kMsgAccessionNumberInvalid},
      // Required in a directory record and often empty in files.
      {tags::kStudyId, &CStudy::studyId_, kMsgStudyIdInvalid, OLESTR("1")},
      {tags::kStudyDate, &CStudy::studyDate_, kMsgStudyDateInvalid},
      {tags::kStudyDescription, &CStudy::description_, kMsgStudyDescriptionInvalid},
      {tags::kStudyTime, &CStudy::studyTime_, kMsgStudyTimeInvalid},
      {tags::kStudyInstanceUid, &CStudy::studyInstanceUid_, kMsgStudyInstanceUidInvalid},
  }};
  return kRows;
}

CStudyList::CStudyList()
    : NodeList(OLESTR("CStudyList"),
               {kMsgGivenStudyInstanceUidInvalid, kMsgElementListInvalid, kMsgNoStorageForStudy}) {}

}  // namespace quillon
