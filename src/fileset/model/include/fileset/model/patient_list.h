// The patients of a job, in the order in which they were first added: the root of the tree that a
// file set is made from. A patient is known by the job's unique patient ID, not by anything in the
// files.
#pragma once

#include "fileset/model/study_list.h"

namespace quillon {

class CPatient : public CRecordedItem {
 public:
  CPatient();
  static std::span<const AttributeRow<CPatient>> Attributes();
  [[nodiscard]] const Text& Key() const { return uniqueId_; }

  [[nodiscard]] const Text& Age() const { return age_; }
  [[nodiscard]] const Text& BirthDate() const { return birthDate_; }
  [[nodiscard]] const Text& PatientId() const { return patientId_; }
  [[nodiscard]] const Text& UniqueId() const { return uniqueId_; }
  [[nodiscard]] const Text& Name() const { return name_; }
  [[nodiscard]] const Text& Sex() const { return sex_; }
  [[nodiscard]] CStudyList& Studies() { return studies_; }
  [[nodiscard]] const CStudyList& Studies() const { return studies_; }

 private:
  friend class CPatientList;

  Text age_;
  Text birthDate_;
  Text patientId_;
  Text uniqueId_;
  Text name_;
  Text sex_;
  CStudyList studies_;
};

class CPatientList : public NodeList<CPatient> {
 public:
  CPatientList();
  void RemoveAll() override {
    topLevelObjects_.RemoveAll();
    NodeList::RemoveAll();
  }

  // Objects that belong to no patient: hanging protocols, palettes, templates of implants.
  [[nodiscard]] CDicomObjectList& TopLevelObjects() { return topLevelObjects_; }
  [[nodiscard]] const CDicomObjectList& TopLevelObjects() const { return topLevelObjects_; }

  // As NodeList's; uniqueId: 1 to 1,024 characters.
  [[nodiscard]] CPatient* Add(const NodeSource& source, TextView uniqueId);

 private:
  CDicomObjectList topLevelObjects_;
};

}  // namespace quillon
