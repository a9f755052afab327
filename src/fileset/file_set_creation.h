// One creation of a file set: moves the added files below the root and writes the DICOMDIR that
// describes them. Lives for one run.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "dicom/dir_dicom_dir.h"
#include "fileset/model/patient_list.h"
#include "foundation/base_item.h"
#include "foundation/file_util.h"

namespace quillon {

class FileSetCreation : public CBaseItem {
 public:
  // patients: at least one. Both outlive this object.
  FileSetCreation(CPatientList& patients, CFileUtil& files, TextView rootDirectory,
                  TextView objectDirectory, bool useHierarchy);

  // False, with a sentence, at the first step that fails.
  bool Run();
  // After a failure: whether the patients are to stay for another attempt.
  [[nodiscard]] bool KeepsPatients() const { return keepsPatients_; }
  // With its trailing separator, once Run has settled it.
  [[nodiscard]] const Text& RootDirectory() const { return root_; }

 private:
  // Where the walk over the patients stands.
  struct Position {
    const CPatient* patient = nullptr;
    const CStudy* study = nullptr;
    const CSeries* series = nullptr;
    Text directory;  // of the series, below the object directory; ends in a separator or is empty
  };

  bool ResolveDirectories();
  bool CheckSources();
  bool PrepareRoot();
  bool BeginDicomDir();
  bool AddPatients();
  bool AddStudies(CPatient& patient, DcDirRec& patientRecord, TextView patientDirectory);
  bool AddSeries(CStudy& study, DcDirRec& studyRecord, TextView studyDirectory);
  bool AddObjects(CSeries& series, DcDirRec& seriesRecord);
  bool CreateSeriesDirectory();
  bool AddObject(const CDicomObjectProperties& object, DcDirRec& seriesRecord);
  bool NameNextObject(Text& fileId, Text& path);
  std::unique_ptr<DcDirRec> MakeRecord(const CDicomObjectProperties& object, const Text& path);
  template <typename Reader>
  std::unique_ptr<DcDirRec> MakeDocumentRecord(
      const CDicomObjectProperties& object, const Text& path,
      std::unique_ptr<DcDirRec> (*make)(const CDicomObjectProperties&, const Reader&, CDicomUtil&));
  bool WriteDicomDir();
  // addLower with its refusal, which the types used here never meet, made a failure.
  DcDirRec* Attach(DcDirRec& parent, std::unique_ptr<DcDirRec> child);

  CPatientList& patients_;
  CFileUtil& files_;
  Text root_;
  Text objectDirectory_;
  Text dicomDirPath_;
  bool useHierarchy_;
  bool keepsPatients_ = true;
  std::int64_t objectCount_ = 0;
  Position at_;
  std::optional<DcDirDicomDir> dicomDir_;
};

}  // namespace quillon
