#include "fileset/dicom_dir_processor.h"

#include "disc/media_processor.h"
#include "file_id_rules.h"
#include "file_set_creation.h"
#include "file_set_plan.h"
#include "fileset/model/for_each_object.h"
#include "foundation/working_directory_scope.h"
#include "media_creation_key.h"
#include "medium_label.h"
#include "root_claim.h"
#include "unfinished_mark.h"

namespace quillon {

namespace {

constexpr const OLECHAR* kCurrentPracticeValue = OLESTR("CurrentPractice");

}  // namespace

CDicomDirProcessor::CDicomDirProcessor()
    : claim_(std::make_unique<RootClaim>()),
      objectDirectory_(OLESTR("DICOMOBJ")),
      otherContentDirectory_(OLESTR("QUILLON")),
      directCopyDirectory_(OLESTR("C:\\")) {
  SetClassName(OLESTR("CDicomDirProcessor"));
  // Files come as their makers left them: what they say is described as it is, not refused or cut.
  dcSetValueChecking(false);
  EnsurePatientList();
  static_cast<void>(
      files_.GetTempDirectory(rootDirectory_, /*create=*/false, /*addSubdirectory=*/false));
  rootDirectory_ += OLESTR("DICOM");
  MediaCreationKey key;
  DWORD practice = 0;
  hasPracticeSetting_ = key.Open() && key.ReadNumber(kCurrentPracticeValue, practice);
  currentPractice = hasPracticeSetting_ && practice != 0;
}

CDicomDirProcessor::~CDicomDirProcessor() = default;

void CDicomDirProcessor::EnsurePatientList() {
  if (patients_ == nullptr) patients_ = std::make_unique<CPatientList>();
}

void CDicomDirProcessor::DiscardPatientList() {
  plan_.reset();
  patients_.reset();
}

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

bool CDicomDirProcessor::GetFailedFile(Text& path, Text& reason) const {
  path = files_.FailedPath();
  reason = files_.FailedReason();
  return !path.empty() && !reason.empty();
}

bool CDicomDirProcessor::WriteLabel(CPatientList* patients, TextView rootDirectory) {
  ClearIheLabel();
  if (patients == nullptr || patients->GetCount() == 0) return Fail(kMsgNoPatientInformation);
  if (!files_.ValidatePath(rootDirectory)) return FailAs(files_);
  MediumLabel label(currentPractice);
  if (!label.Compose(*patients)) return FailAs(label);
  iheLabel_ = label.GetText();
  return WriteLabelFile(iheLabel_, rootDirectory, files_, *this);
}

bool CDicomDirProcessor::GetTotalSize(std::uint64_t& sizeBytes) {
  sizeBytes = 0;
  if (!HasPatients()) return false;
  std::uint64_t total = 0;
  if (includeOtherContent && !MeasureOtherContent(Measure::Bytes, total)) return false;
  static_cast<void>(ForEachObject(*patients_, [&total](const CDicomObjectProperties& object) {
    total += object.FileSize();
    return true;
  }));
  sizeBytes = total;
  return true;
}

bool CDicomDirProcessor::GetTotalFileCount(std::uint32_t& count) {
  count = 0;
  if (!HasPatients()) return false;
  std::uint64_t total = 0;
  if (includeOtherContent && !MeasureOtherContent(Measure::Files, total)) return false;
  static_cast<void>(ForEachObject(*patients_, [&total](const CDicomObjectProperties&) {
    ++total;
    return true;
  }));
  count = static_cast<std::uint32_t>(total);
  return true;
}

void CDicomDirProcessor::Wipe() {
  Text asideDirectory;
  Wipe(/*removesAll=*/false, asideDirectory);
}

void CDicomDirProcessor::Wipe(bool removesAll, Text& asideDirectory) {
  asideDirectory.clear();
  const WorkingDirectoryScope workingDirectory;
  ClearIheLabel();
  plan_.reset();
  if (patients_ != nullptr) patients_->RemoveAll();
  // No message is told here, and the one that the host may still read stays.
  CBaseItem unheard;
  if (files_.PathExists(rootDirectory_) && claim_->TakeExisting(rootDirectory_, files_, unheard)) {
    std::size_t objectCount = 0;
    const bool isKept =
        !removesAll && ReadRootState(rootDirectory_, files_, objectCount) == RootState::Unfinished;
    if (isKept) {
      claim_->SetAside(files_, asideDirectory);
    } else {
      MarkForRemoval(rootDirectory_, files_);
      static_cast<void>(files_.DeleteDirectoryTree(rootDirectory_, /*recurse=*/true));
    }
  }
  claim_->Release();
  const Text temporary = RootClaim::TemporaryJobDirectory(files_);
  if (temporary.empty() || !files_.PathExists(temporary)) return;
  // A link was not made by any job, and what it leads to is somebody's.
  if (files_.IsLink(temporary)) {
    static_cast<void>(files_.RemoveLink(temporary));
    return;
  }
  Text current;
  if (files_.GetCurrentDirectory(current) && files_.LiesWithin(current, temporary)) return;
  static_cast<void>(files_.DeleteDirectoryTree(temporary, /*recurse=*/true));
}

}  // namespace quillon
