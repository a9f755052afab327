// Adding files and directories: how one DICOM file finds its place in the patient list. A file is
// read here and never again: what its directory record and the checks of a creation need is kept.
#pragma once

#include "fileset/dicom_dir_processor.h"
#include "fileset/model/patient_list.h"
#include "foundation/base_item.h"
#include "foundation/file_util.h"

namespace quillon {

class CDicomUtil;

// Each operation answers true on success; a failure leaves one sentence in errors, and the list as
// it was but for the files before it.
class ObjectAdding {
 public:
  // patientId: the job's unique one. AddFitFile goes by that of its rules.
  ObjectAdding(CPatientList& patients, TextView patientId, CFileUtil& files, CBaseItem& errors)
      : patients_(patients), patientId_(patientId), files_(files), errors_(errors) {}

  // See CDicomDirProcessor; the paths have been checked.
  [[nodiscard]] bool AddFile(TextView fileName);
  [[nodiscard]] bool AddFitFile(TextView fileName, const FitnessRules& rules, AddedFile& told);
  [[nodiscard]] bool AddDirectory(const Text& directory, bool isRecursive);

 private:
  class ListGrowth;

  // With rules the file must be fit for a creation.
  [[nodiscard]] bool ReadAndFile(TextView fileName, const FitnessRules* rules, AddedFile& told);
  [[nodiscard]] bool FileObject(CDicomUtil& object, TextView fileName, bool mustBeFit,
                                AddedFile& told);
  // The nodes that the object belongs to, added where they are missing; null with a sentence.
  CStudy* StudyOf(const DcElemList& dataSet, TextView fileName, ListGrowth& growth);
  CSeries* SeriesOf(const DcElemList& dataSet, CStudy& study, TextView fileName,
                    ListGrowth& growth);

  CPatientList& patients_;
  Text patientId_;
  CFileUtil& files_;
  CBaseItem& errors_;
};

}  // namespace quillon
