// CDicomDirProcessor: the file set builder. Holds the job's settings, files each added DICOM file
// into the patient list, and lays out the file set with its DICOMDIR, other content and label.
// Every operation answers true on success; a failure leaves one sentence.
#pragma once

#include <cstdint>
#include <memory>

#include "fileset/model/patient_list.h"
#include "foundation/base_item.h"
#include "foundation/file_util.h"

namespace quillon {

class CDicomDirProcessor : public CBaseItem {
 public:
  // Switches the toolkit's value checking off for the process: values of files are taken as they
  // are.
  CDicomDirProcessor();
  ~CDicomDirProcessor() override;

  // Adding. The file is read once; it is moved when the file set is created. A file without a
  // Study, Series or SOP Instance UID is passed over, one that is in the list already changes
  // nothing: both are successes.
  bool AddFile(TextView fileName);
  // Adds the files of a directory (the current one when empty) and, with allowAddHierarchyTree, of
  // those below it, in the platform's order. The first file that cannot be added ends it; those
  // before it stay.
  bool AddDirectory(TextView directory, bool createAfterwards);
  // Empty arguments mean the settings. Moves every added file below root\object directory, writes
  // DICOMDIR, copies the other content and writes the label. Refused, with nothing changed, when an
  // added file lies where the file set would overwrite it. The patient list is empty after a
  // success and after a failure in the course of moving; a failure before that, or one to read a
  // report, presentation state or key object document, keeps it. What was moved stays moved.
  bool CreateDicomFileSet(TextView rootDirectory, TextView objectDirectory);
  // True for 1 to 103 characters of A-Z 0-9 _ \ /, at most 8 levels of at most 12 characters.
  bool ValidateFileId(TextView fileId);
  // The configured source of the other content; empty when the value is.
  bool GetOtherContentSourceDir(Text& directory);
  // Composes the label, keeps it as the IHE label and writes it to LABEL.TXT in the root (UTF-16
  // little endian without a mark, a line feed at the end).
  bool WriteLabel(CPatientList* patients, TextView rootDirectory);
  // Delivers the file set: to directCopyDirectory (its missing levels are made, files of the same
  // name replaced) with performDirectCopy, else to the disc in the first recorder. An empty source
  // directory means the root directory. With clearAfterWrite the source is deleted afterwards,
  // WHETHER OR NOT it was delivered; a target that is the source, or lies in it, is refused with
  // nothing deleted.
  bool WriteMedia(TextView sourceDirectory, bool simulate, bool fullErase, bool eject,
                  bool clearAfterWrite);
  // False, with a sentence, where the platform is too old to record.
  bool CheckOperatingSystem();
  // Of the objects added and the other content; 0 when false.
  bool GetTotalSize(std::uint64_t& sizeBytes);
  bool GetTotalFileCount(std::uint32_t& count);
  // Empties the patient list and removes the root directory and what recording left in the
  // temporary directory. Failures to remove are not told.
  void Wipe();
  // Forgets everything added so far; the next add makes a new list.
  void DiscardPatientList();

  // Settings. The setters of texts refuse (false) what the media object's documentation says.
  bool SetVolumeName(TextView name);
  bool SetDicomRootDirectory(TextView path);
  bool SetDicomObjectDirectory(TextView path);
  bool SetOtherContentDirectory(TextView path);
  bool SetDirectCopyDirectory(TextView path);
  bool SetUniquePatientId(TextView id);
  [[nodiscard]] const Text& VolumeName() const { return volumeName_; }
  [[nodiscard]] const Text& DicomRootDirectory() const { return rootDirectory_; }
  [[nodiscard]] const Text& DicomObjectDirectory() const { return objectDirectory_; }
  [[nodiscard]] const Text& OtherContentDirectory() const { return otherContentDirectory_; }
  [[nodiscard]] const Text& DirectCopyDirectory() const { return directCopyDirectory_; }
  [[nodiscard]] const Text& UniquePatientId() const { return uniquePatientId_; }
  [[nodiscard]] const Text& IheLabel() const { return iheLabel_; }
  void ClearIheLabel() { iheLabel_.clear(); }

  bool allowAddHierarchyTree = true;
  bool useHierarchyForDicomObjects = false;
  bool clearAfterWrite = true;
  bool performFullErase = false;
  bool simulateCreation = false;
  bool ejectMediumAfterCreation = true;
  bool includeOtherContent = true;
  bool performDirectCopy = false;

 private:
  enum class Measure { Files, Bytes };
  struct RecordingOptions {
    bool simulate;
    bool fullErase;
    bool eject;
    bool clearAfterWrite;
  };

  void EnsurePatientList();
  bool HasPatients();
  bool SetPath(Text& setting, TextView path);
  bool SetPathInRoot(Text& setting, TextView path);
  bool WalkDirectory(const Text& directory);
  bool FileObject(TextView fileName);
  CStudy* FileIntoStudy(const DcElemList& dataSet, TextView fileName);
  CSeries* FileIntoSeries(const DcElemList& dataSet, CStudy& study, TextView fileName);
  bool CopyOtherContent(const Text& rootDirectory);
  bool MeasureOtherContent(Measure what, std::uint64_t& total);
  bool CopyFileSet(const Text& source, const Text& target);
  bool WriteDisc(const Text& source, const RecordingOptions& options);
  bool ClearSource(const Text& source, bool succeeded);

  std::unique_ptr<CPatientList> patients_;
  CFileUtil files_;
  Text rootDirectory_;
  Text objectDirectory_;
  Text iheLabel_;
  Text uniquePatientId_;
  Text volumeName_;
  Text otherContentDirectory_;
  Text directCopyDirectory_;
};

}  // namespace quillon
