// The plan of one creation: what will be moved where and what the DICOMDIR and the label will say,
// with everything checked that can be known before the first file is moved. Making it changes
// nothing; file_set_creation.h carries it out.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "dicom/dir_dicom_dir.h"
#include "dicom/dir_writer.h"
#include "fileset/dicom_dir_processor.h"
#include "fileset/model/patient_list.h"
#include "fileset/record_rows.h"
#include "foundation/base_item.h"
#include "foundation/file_util.h"
#include "institution.h"
#include "key_inventor.h"
#include "other_contents.h"
#include "portable_data.h"

namespace quillon {

class ProfileWatch;
struct DicomFileFacts;

// Begins the name of each object; a counter follows.
inline constexpr const OLECHAR* kObjectPrefix = OLESTR("QLN");

// Where it goes: the root directory, and the two below it.
struct FileSetPlaces {
  Text rootDirectory;
  Text objectDirectory;
  Text otherContentDirectory;
};

class FileSetPlan : public CBaseItem {
 public:
  // patients: at least one. watch: null where no profile is asked for. They outlive this object.
  FileSetPlan(CPatientList& patients, ProfileWatch* watch, CFileUtil& files,
              const FileSetOptions& options, const FileSetPlaces& places);

  // Whether the names of the root and the object directory can be used. False, with a sentence.
  [[nodiscard]] bool CheckDirectories();
  // After that. False, with a sentence, at the first thing that would fail. A root directory that
  // is missing is one that will be made.
  [[nodiscard]] bool Make();
  // The last look at the files that will be moved, right before they are; see SourceCheck.
  [[nodiscard]] bool CheckSources();
  // What that saw of an object's source: the attributes of a file that only gets another name, 0 of
  // one that has to be looked at again.
  [[nodiscard]] DWORD RenamableAs(std::size_t index) const { return renamable_[index]; }

  // A copy of an object's file is moved in its place. False, with a sentence, when the file is not
  // what it was when it was read: the copy is none of that.
  [[nodiscard]] bool HandOver(std::size_t index, TextView copy);

  // After a failure: whether the patients are to stay for another attempt.
  [[nodiscard]] bool KeepsPatients() const { return keepsPatients_; }

  [[nodiscard]] const FileSetOptions& Options() const { return options_; }
  [[nodiscard]] const FileSetPlaces& Places() const { return places_; }
  [[nodiscard]] const PlannedFileSet& Planned() const { return planned_; }
  // With a separator at its end.
  [[nodiscard]] const Text& RootDirectory() const { return root_; }
  [[nodiscard]] const Text& ObjectDirectory() const { return directories_.front(); }
  [[nodiscard]] const Text& DicomDirPath() const { return dicomDirPath_; }
  // Directories for objects, each with the separator at its end: the object directory, then those
  // below it in the order of their first object.
  [[nodiscard]] const std::vector<Text>& Directories() const { return directories_; }
  // Its bytes are made with the plan. False, with a sentence.
  [[nodiscard]] bool WriteDicomDir();
  [[nodiscard]] OtherContents& Content() { return content_; }
  [[nodiscard]] PortableData& Pages() { return portableData_; }

 private:
  // Where the walk over the patients stands.
  struct Position {
    const CPatient* patient = nullptr;
    const CStudy* study = nullptr;
    const CSeries* series = nullptr;
    Text directory;  // of the series, below the object directory; ends in a separator or is empty
  };

  [[nodiscard]] bool CheckRoom(std::uint64_t bytesToCopy);
  // What it takes on a disc: the DICOMDIR with the shortest records that there can be at the least,
  // and with records as for CheckRoom at the most.
  [[nodiscard]] DiscRoom RoomOnDisc() const;
  [[nodiscard]] std::uint64_t CountRecords() const;
  [[nodiscard]] bool BeginDicomDir();
  [[nodiscard]] bool CheckOldEntries();
  [[nodiscard]] bool AddPatients();
  [[nodiscard]] bool AddStudies(TextView patientDirectory);
  [[nodiscard]] bool AddSeries(TextView studyDirectory);
  [[nodiscard]] bool AddObjects();
  [[nodiscard]] bool AddObject(const CDicomObjectProperties& object);
  [[nodiscard]] bool AddTopLevelObjects();
  [[nodiscard]] bool AddDirectory();
  void NameNextObject(PlannedObject& object) const;
  [[nodiscard]] bool CheckName(const Text& fileId);
  std::unique_ptr<DcDirRec> MakeRecord(const CDicomObjectProperties& object,
                                       const DicomFileFacts& facts);
  [[nodiscard]] bool PlanContent();
  void NoteIdentities();
  [[nodiscard]] bool ComposeLabel();
  [[nodiscard]] bool PlanPages();
  // The record that a node keeps, completed, or the one that is made of its texts. Null, with a
  // sentence, without memory.
  template <typename Node>
  std::unique_ptr<DcDirRec> RecordOf(const Node& node,
                                     std::unique_ptr<DcDirRec> (*make)(const Node&));
  // The row of records of the type, with the keys of the profiles.
  [[nodiscard]] const RecordRow& RowOf(DcDirRecType type) const;
  // Whether the set meets them, where that is asked for.
  [[nodiscard]] bool CheckProfiles();
  // Notes what a record lacks, and gives it what stands for that.
  void Complete(DcDirRec& record, const std::vector<DcTag>& missing, TextView source);
  // Adds it to the DICOMDIR, where no more than its bytes is kept. False, with a sentence; null is
  // one whose making has left it.
  [[nodiscard]] bool AddRecord(const std::unique_ptr<DcDirRec>& record, std::size_t depth);

  CPatientList& patients_;
  ProfileWatch* watch_;
  CFileUtil& files_;
  FileSetOptions options_;
  FileSetPlaces places_;
  Text root_;
  Text objectDirectory_;
  Text dicomDirPath_;
  bool keepsPatients_ = true;
  bool hasOldObjects_ = false;  // the object directory was there before
  Position at_;
  KeyInventor inventor_;
  PlannedFileSet planned_;
  std::vector<DWORD> renamable_;
  std::vector<Text> directories_;
  std::unique_ptr<DcDirDicomDir> dicomDir_;
  std::unique_ptr<DcDirWriter> dicomDirWriter_;
  OtherContents content_;
  Institution institution_;
  PortableData portableData_;
};

}  // namespace quillon
