// Adding files and directories: how one DICOM file finds its place in the patient list. A file is
// read here and never again: what its directory record and the checks of a creation need is kept.
#pragma once

#include <memory>
#include <span>

#include "fileset/dicom_dir_processor.h"
#include "fileset/model/patient_list.h"
#include "fileset/record_rows.h"
#include "foundation/base_item.h"
#include "foundation/file_util.h"

namespace quillon {

class CDicomUtil;
class ProfileWatch;

// Each operation answers true on success; a failure leaves one sentence in errors, and the list as
// it was but for the files before it.
class ObjectAdding {
 public:
  // patientId: the job's unique one. AddFitFile goes by that of its rules. watch: null where no
  // profile is asked for.
  ObjectAdding(CPatientList& patients, TextView patientId, const FileSetOptions& options,
               ProfileWatch* watch, CFileUtil& files, CBaseItem& errors)
      : patients_(patients),
        patientId_(patientId),
        options_(options),
        watch_(watch),
        files_(files),
        errors_(errors) {}

  // See CDicomDirProcessor; the paths have been checked.
  [[nodiscard]] bool AddFile(TextView fileName);
  [[nodiscard]] bool AddFitFile(TextView fileName, const FitnessRules& rules, AddedFile& told);
  [[nodiscard]] bool AddDirectory(const Text& directory, bool isRecursive);

 private:
  class ListGrowth;
  // A file that has been read.
  struct Source;

  // With rules the file must be fit for a creation.
  [[nodiscard]] bool ReadAndFile(TextView fileName, const FitnessRules* rules, AddedFile& told);
  // Takes the patient from the rules; false, with the outcome, for a file that they do not take.
  [[nodiscard]] bool ApplyRules(const Source& source, const FitnessRules& rules, AddedFile& told);
  // The same for keys that the records of these rows would lack.
  [[nodiscard]] bool HasKeysOf(std::span<const RecordRow* const> rows, const Source& source,
                               AddedFile& told) const;
  [[nodiscard]] bool FileObject(const Source& source, bool mustBeFit, AddedFile& told);
  // An object that belongs to no patient.
  [[nodiscard]] bool FileTopLevelObject(const Source& source, AddedFile& told);
  // The nodes that the object belongs to, added where they are missing; null with a sentence.
  CStudy* StudyOf(const Source& source, ListGrowth& growth);
  CSeries* SeriesOf(const Source& source, CStudy& study, ListGrowth& growth);
  // The row of the records of such objects, with the keys of the profiles.
  [[nodiscard]] const RecordRow& RowOf(const RecordRow& row) const;
  void KeepRecord(CRecordedItem& node, DcDirRecType type, const Source& source);
  // Of the last object of the list, which the source has just brought.
  std::shared_ptr<const DicomFileFacts> FactsOfLast(const CDicomObjectList& objects,
                                                    const Source& source);

  CPatientList& patients_;
  Text patientId_;
  const FileSetOptions& options_;
  ProfileWatch* watch_;
  CFileUtil& files_;
  CBaseItem& errors_;
};

}  // namespace quillon
