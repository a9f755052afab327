// The patients of a job, in the order in which they were first added: the root of the tree that a
// file set is made from. A patient is known by the job's unique patient ID, not by anything in the
// files.
#pragma once

#include "fileset/model/study_list.h"

namespace quillon {

class CPatient : public CBaseItem {
 public:
  CPatient();

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

class CPatientList : public COwningList<CPatient> {
 public:
  CPatientList();
  // Releases the whole tree.
  void RemoveAll() override;
  void RemoveLast() override;

  // The first patient with exactly this unique ID; null when there is none, with a sentence when
  // the ID is empty.
  CPatient* FindByUniqueId(TextView uniqueId);
  // Appends a patient with the attributes of the data set, whether or not the ID is in the list.
  // uniqueId: 1 to 1,024 characters. False, with a sentence, leaves the list as it was.
  [[nodiscard]] bool AddPatient(const DcElemList* dataSet, TextView uniqueId);

 private:
  KeyIndex<CPatient> byUniqueId_;
};

}  // namespace quillon
