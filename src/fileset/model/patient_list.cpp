#include "fileset/model/patient_list.h"

#include <array>
#include <memory>
#include <new>
#include <utility>

#include "attribute_rows.h"

namespace quillon {

namespace {

// The field could hold a name and an ID of 1,024 characters with a separator; what may be added is
// shorter.
constexpr std::size_t kMaxUniqueIdField = 2049;
constexpr std::size_t kMaxUniqueIdAdded = 1024;

}  // namespace

CPatient::CPatient() { SetClassName(OLESTR("CPatient")); }

CPatientList::CPatientList() { SetClassName(OLESTR("CPatientList")); }

void CPatientList::RemoveAll() {
  byUniqueId_.Clear();
  COwningList::RemoveAll();
}

void CPatientList::RemoveLast() {
  if (GetCount() == 0) return;
  byUniqueId_.Remove(At(GetCount() - 1)->UniqueId(), At(GetCount() - 1));
  COwningList::RemoveLast();
}

CPatient* CPatientList::FindByUniqueId(TextView uniqueId) {
  if (uniqueId.empty()) {
    SetErrorMessage(kMsgGivenPatientUniqueIdInvalid);
    return nullptr;
  }
  return byUniqueId_.Find(uniqueId);
}

bool CPatientList::AddPatient(const DcElemList* dataSet, TextView uniqueId) {
  static constexpr std::array<AttributeRow<CPatient>, 5> kRows{{
      {0x00100010, &CPatient::name_, kMsgPatientNameInvalid},
      {0x00100020, &CPatient::patientId_, kMsgPatientIdInvalid},
      {0x00100040, &CPatient::sex_, kMsgPatientSexInvalid},
      {0x00101010, &CPatient::age_, kMsgPatientAgeInvalid},
      {0x00100030, &CPatient::birthDate_, kMsgPatientBirthDateInvalid},
  }};
  if (dataSet == nullptr) return Fail(kMsgPatientElementListInvalid);
  if (uniqueId.empty()) return Fail(kMsgPatientUniqueIdInvalid);
  if (uniqueId.size() > kMaxUniqueIdAdded) return Fail(kMsgPatientUniqueIdTooLong);
  try {
    auto patient = std::make_unique<CPatient>();
    if (!AssignText(patient->uniqueId_, uniqueId, kMaxUniqueIdField)) {
      return Fail(kMsgCannotSetPatientUniqueId);
    }
    if (!ReadAttributes<CPatient>(kRows, *dataSet, *patient, *this)) return false;
    Append(std::move(patient),
           [this](CPatient& added) { byUniqueId_.Add(added.UniqueId(), &added); });
    return true;
  } catch (const std::bad_alloc&) {
    return Fail(kMsgNoStorageForPatient);
  }
}

}  // namespace quillon
