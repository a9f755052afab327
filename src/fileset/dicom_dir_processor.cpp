#include "fileset/dicom_dir_processor.h"

#include "file_id_rules.h"
#include "file_set_creation.h"
#include "fileset/model/for_each_object.h"
#include "foundation/working_directory_scope.h"
#include "medium_label.h"
#include "path_join.h"

namespace quillon {

namespace {

constexpr std::size_t kMaxVolumeNameChars = 32;
constexpr const OLECHAR* kLabelFileName = OLESTR("LABEL.TXT");

}  // namespace

CDicomDirProcessor::CDicomDirProcessor()
    : objectDirectory_(OLESTR("DICOMOBJ")),
      otherContentDirectory_(OLESTR("QUILLON")),
      directCopyDirectory_(OLESTR("C:\\")) {
  SetClassName(OLESTR("CDicomDirProcessor"));
  // Files come as their makers left them: what they say is described as it is, not refused or cut.
  dcSetValueChecking(false);
  EnsurePatientList();
  files_.GetTempDirectory(rootDirectory_, /*create=*/false, /*addSubdirectory=*/false);
  rootDirectory_ += OLESTR("DICOM");
}

CDicomDirProcessor::~CDicomDirProcessor() = default;

void CDicomDirProcessor::EnsurePatientList() {
  if (patients_ == nullptr) patients_ = std::make_unique<CPatientList>();
}

void CDicomDirProcessor::DiscardPatientList() { patients_.reset(); }

bool CDicomDirProcessor::HasPatients() {
  if (patients_ == nullptr) return Fail(kMsgPatientListInvalid);
  return patients_->GetCount() != 0 || Fail(kMsgNoPatientInformation);
}

// The setters throw when memory runs out: AssignText would make that a refusal of the value.
bool CDicomDirProcessor::SetVolumeName(TextView name) {
  if (name.size() > kMaxVolumeNameChars) return false;
  volumeName_ = name;
  return true;
}

bool CDicomDirProcessor::SetPath(Text& setting, TextView path) {
  if (!files_.ValidatePath(path)) return FailAs(files_);
  if (path.empty() || path.size() > kMaxPathChars) return Fail(kMsgPropertyValueInvalid);
  setting = path;
  return true;
}

bool CDicomDirProcessor::SetPathInRoot(Text& setting, TextView path) {
  return !files_.HasDrive(path) && SetPath(setting, path);
}

bool CDicomDirProcessor::SetDicomRootDirectory(TextView path) {
  return SetPath(rootDirectory_, path);
}

bool CDicomDirProcessor::SetDicomObjectDirectory(TextView path) {
  return SetPathInRoot(objectDirectory_, path);
}

bool CDicomDirProcessor::SetOtherContentDirectory(TextView path) {
  return SetPathInRoot(otherContentDirectory_, path);
}

bool CDicomDirProcessor::SetDirectCopyDirectory(TextView path) {
  return SetPath(directCopyDirectory_, path);
}

bool CDicomDirProcessor::SetUniquePatientId(TextView id) {
  uniquePatientId_ = id;
  return true;
}

bool CDicomDirProcessor::ValidateFileId(TextView fileId) {
  return CheckFileId(fileId, files_, *this);
}

bool CDicomDirProcessor::CreateDicomFileSet(TextView rootDirectory, TextView objectDirectory) {
  if (!HasPatients()) return false;
  const WorkingDirectoryScope workingDirectory;
  FileSetCreation creation(*patients_, files_,
                           rootDirectory.empty() ? TextView(rootDirectory_) : rootDirectory,
                           objectDirectory.empty() ? TextView(objectDirectory_) : objectDirectory,
                           useHierarchyForDicomObjects);
  if (!creation.Run()) {
    if (!creation.KeepsPatients()) patients_->RemoveAll();
    return FailAs(creation);
  }
  const bool isComplete = (!includeOtherContent || CopyOtherContent(creation.RootDirectory())) &&
                          WriteLabel(patients_.get(), creation.RootDirectory());
  patients_->RemoveAll();
  return isComplete;
}

bool CDicomDirProcessor::WriteLabel(CPatientList* patients, TextView rootDirectory) {
  ClearIheLabel();
  if (patients == nullptr || patients->GetCount() == 0) return Fail(kMsgNoPatientInformation);
  if (!files_.ValidatePath(rootDirectory)) return FailAs(files_);
  MediumLabel label;
  if (!label.Compose(*patients)) return FailAs(label);
  iheLabel_ = label.GetText();
  Text path(rootDirectory);
  if (!JoinBelow(path, kLabelFileName, *this)) return false;
  CBuffer buffer;
  if (!label.Encode(buffer)) return FailAs(label);
  return files_.WriteBuffer(buffer, path, /*append=*/false) || FailAs(files_);
}

bool CDicomDirProcessor::GetTotalSize(std::uint64_t& sizeBytes) {
  sizeBytes = 0;
  if (!HasPatients()) return false;
  std::uint64_t total = 0;
  if (includeOtherContent && !MeasureOtherContent(Measure::Bytes, total)) return false;
  ForEachObject(*patients_, [&total](const CDicomObjectProperties& object) {
    total += object.FileSize();
    return true;
  });
  sizeBytes = total;
  return true;
}

bool CDicomDirProcessor::GetTotalFileCount(std::uint32_t& count) {
  count = 0;
  if (!HasPatients()) return false;
  std::uint64_t total = 0;
  if (includeOtherContent && !MeasureOtherContent(Measure::Files, total)) return false;
  ForEachObject(*patients_, [&total](const CDicomObjectProperties&) {
    ++total;
    return true;
  });
  count = static_cast<std::uint32_t>(total);
  return true;
}

void CDicomDirProcessor::Wipe() {
  const WorkingDirectoryScope workingDirectory;
  ClearIheLabel();
  if (patients_ != nullptr) patients_->RemoveAll();
  if (files_.PathExists(rootDirectory_)) files_.DeleteDirectoryTree(rootDirectory_, true);
  Text temporary;
  if (!files_.GetTempDirectory(temporary, /*create=*/false, /*addSubdirectory=*/false)) return;
  Text subdirectory;
  files_.GetTempSubdirectoryName(subdirectory);
  temporary += subdirectory;
  if (files_.PathExists(temporary)) files_.DeleteDirectoryTree(temporary, true);
}

}  // namespace quillon
