#include "fileset/model/patient_list.h"

#include <array>

#include "dicom/tags.h"

namespace quillon {

namespace {

constexpr std::size_t kMaxUniqueIdChars = 1024;

}  // namespace

CPatient::CPatient() { SetClassName(OLESTR("CPatient")); }

std::span<const AttributeRow<CPatient>> CPatient::Attributes() {
  static constexpr std::array<AttributeRow<CPatient>, 5> kRows{{
      {tags::kPatientsName, &CPatient::name_, kMsgPatientNameInvalid},
      {tags::kPatientId, &CPatient::patientId_, kMsgPatientIdInvalid},
      {tags::kPatientsSex, &CPatient::sex_, kMsgPatientSexInvalid},
      {tags::kPatientsAge, &CPatient::age_, kMsgPatientAgeInvalid},
      {tags::kPatientsBirthDate, &CPatient::birthDate_, kMsgPatientBirthDateInvalid},
  }};
  return kRows;
}

CPatientList::CPatientList()
    : NodeList(OLESTR("CPatientList"), {kMsgGivenPatientUniqueIdInvalid,
                                        kMsgPatientElementListInvalid, kMsgNoStorageForPatient}) {}

CPatient* CPatientList::Add(const NodeSource& source, TextView uniqueId) {
  return NodeList::Add(source, [&](CPatient& patient) {
    if (uniqueId.empty()) return Fail(kMsgPatientUniqueIdInvalid);
    if (uniqueId.size() > kMaxUniqueIdChars) return Fail(kMsgPatientUniqueIdTooLong);
    return AssignText(patient.uniqueId_, uniqueId, kMaxUniqueIdChars) ||
           Fail(kMsgCannotSetPatientUniqueId);
  });
}

}  // namespace quillon
