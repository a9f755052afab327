#include "fileset/model/patient_list.h"

#include <array>

namespace quillon {

namespace {

constexpr std::size_t kMaxUniqueIdChars = 1024;

}  // namespace

CPatient::CPatient() { SetClassName(OLESTR("CPatient")); }

std::span<const AttributeRow<CPatient>> CPatient::Attributes() {
  static constexpr std::array<AttributeRow<CPatient>, 5> kRows{{
      {0x00100010, &CPatient::name_, kMsgPatientNameInvalid},
      {0x00100020, &CPatient::patientId_, kMsgPatientIdInvalid},
      {0x00100040, &CPatient::sex_, kMsgPatientSexInvalid},
      {0x00101010, &CPatient::age_, kMsgPatientAgeInvalid},
      {0x00100030, &CPatient::birthDate_, kMsgPatientBirthDateInvalid},
  }};
  return kRows;
}

CPatientList::CPatientList()
    : NodeList(OLESTR("CPatientList"), {kMsgGivenPatientUniqueIdInvalid,
                                        kMsgPatientElementListInvalid, kMsgNoStorageForPatient}) {}

CPatient* CPatientList::Add(const DcElemList* dataSet, TextView uniqueId) {
  return NodeList::Add(dataSet, [&](CPatient& patient) {
    if (uniqueId.empty()) return Fail(kMsgPatientUniqueIdInvalid);
    if (uniqueId.size() > kMaxUniqueIdChars) return Fail(kMsgPatientUniqueIdTooLong);
    return AssignText(patient.uniqueId_, uniqueId, kMaxUniqueIdChars) ||
           Fail(kMsgCannotSetPatientUniqueId);
  });
}

}  // namespace quillon
