#include "fileset/model/study_list.h"

#include <array>
#include <memory>
#include <new>
#include <utility>

#include "attribute_rows.h"

namespace quillon {

namespace {

// Study ID is required in a directory record and often empty in files.
constexpr const OLECHAR* kStudyIdOfNone = OLESTR("1");

}  // namespace

CStudy::CStudy() { SetClassName(OLESTR("CStudy")); }

CStudyList::CStudyList() { SetClassName(OLESTR("CStudyList")); }

void CStudyList::RemoveAll() {
  byUid_.Clear();
  COwningList::RemoveAll();
}

void CStudyList::RemoveLast() {
  if (GetCount() == 0) return;
  byUid_.Remove(At(GetCount() - 1)->StudyInstanceUid(), At(GetCount() - 1));
  COwningList::RemoveLast();
}

CStudy* CStudyList::FindByStudyInstanceUid(TextView uid) {
  if (uid.empty()) {
    SetErrorMessage(kMsgGivenStudyInstanceUidInvalid);
    return nullptr;
  }
  return byUid_.Find(uid);
}

bool CStudyList::AddStudy(const DcElemList* dataSet) {
  static constexpr std::array<AttributeRow<CStudy>, 6> kRows{{
      {0x00080050, &CStudy::accessionNumber_, kMsgAccessionNumberInvalid},
      {0x00200010, &CStudy::studyId_, kMsgStudyIdInvalid},
      {0x00080020, &CStudy::studyDate_, kMsgStudyDateInvalid},
      {0x00081030, &CStudy::description_, kMsgStudyDescriptionInvalid},
      {0x00080030, &CStudy::studyTime_, kMsgStudyTimeInvalid},
      {0x0020000D, &CStudy::studyInstanceUid_, kMsgStudyInstanceUidInvalid},
  }};
  if (dataSet == nullptr) return Fail(kMsgElementListInvalid);
  try {
    auto study = std::make_unique<CStudy>();
    if (!ReadAttributes<CStudy>(kRows, *dataSet, *study, *this)) return false;
    if (study->studyId_.empty()) study->studyId_ = kStudyIdOfNone;
    Append(std::move(study),
           [this](CStudy& added) { byUid_.Add(added.StudyInstanceUid(), &added); });
    return true;
  } catch (const std::bad_alloc&) {
    return Fail(kMsgNoStorageForStudy);
  }
}

}  // namespace quillon
