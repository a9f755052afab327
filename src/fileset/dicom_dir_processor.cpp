#include "fileset/dicom_dir_processor.h"

#include "disc/imapi_version.h"
#include "disc/media_processor.h"
#include "file_id_rules.h"
#include "file_set_creation.h"
#include "file_set_delivery.h"
#include "file_set_plan.h"
#include "fileset/model/for_each_object.h"
#include "foundation/working_directory_scope.h"
#include "media_creation_key.h"
#include "medium_label.h"
#include "object_adding.h"
#include "other_content.h"
#include "profile_watch.h"
#include "root_claim.h"
#include "unfinished_mark.h"

namespace quillon {

CDicomDirProcessor::CDicomDirProcessor()
    : patients_(std::make_unique<CPatientList>()),
      claim_(std::make_unique<RootClaim>()),
      objectDirectory_(OLESTR("DICOMOBJ")),
      otherContentDirectory_(OLESTR("QUILLON")),
      directCopyDirectory_(OLESTR("C:\\")) {
  SetClassName(OLESTR("CDicomDirProcessor"));
  // Files come as their makers left them: what they say is described as it is, not refused or cut.
  static_cast<void>(dcSetValueChecking(false));
  static_cast<void>(
      files_.GetTempDirectory(rootDirectory_, /*create=*/false, /*addSubdirectory=*/false));
  rootDirectory_ += OLESTR("DICOM");
  MediaCreationKey key;
  DWORD practice = 0;
  hasPracticeSetting_ = key.Open() && key.ReadNumber(kCurrentPracticeValue, practice);
  currentPractice = hasPracticeSetting_ && practice != 0;
  DWORD pages = 0;
  portableData = key.IsOpen() && key.ReadNumber(kPortableDataValue, pages) && pages != 0;
}

CDicomDirProcessor::~CDicomDirProcessor() = default;

void CDicomDirProcessor::DiscardPatientList() {
  plan_.reset();
  patients_.reset();
  watch_.reset();
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
  MediumLabel label(currentPractice, portableData);
  if (!label.Compose(*patients)) return FailAs(label);
  iheLabel_ = label.GetText();
  return WriteLabelFile(iheLabel_, rootDirectory, files_, *this);
}

CPatientList& CDicomDirProcessor::ListForAdding() {
  plan_.reset();
  if (patients_ == nullptr) patients_ = std::make_unique<CPatientList>();
  if (watch_ == nullptr && currentPractice && !profiles.empty()) {
    watch_ = std::make_unique<ProfileWatch>(profiles);
  }
  return *patients_;
}

void CDicomDirProcessor::ForgetPatients() {
  patients_->RemoveAll();
  watch_.reset();
}

ObjectAdding CDicomDirProcessor::AddingTo(CPatientList& list, TextView patientId) {
  return {list, patientId, *this, watch_.get(), files_, *this};
}

bool CDicomDirProcessor::AddFile(TextView fileName) {
  ClearIheLabel();
  return TakesPath(fileName) && AddingTo(ListForAdding(), uniquePatientId_).AddFile(fileName);
}

bool CDicomDirProcessor::AddFitFile(TextView fileName, const FitnessRules& rules, AddedFile& told) {
  ClearIheLabel();
  told = AddedFile{};
  return TakesPath(fileName) && AddingTo(ListForAdding(), {}).AddFitFile(fileName, rules, told);
}

bool CDicomDirProcessor::AddDirectory(TextView directory, bool createAfterwards) {
  ClearIheLabel();
  Text start(directory);
  if (start.empty() && !files_.GetCurrentDirectory(start)) return FailAs(files_);
  if (!TakesPath(start)) return false;
  ObjectAdding adding = AddingTo(ListForAdding(), uniquePatientId_);
  if (!adding.AddDirectory(start, allowAddHierarchyTree)) return false;
  return !createAfterwards || CreateDicomFileSet({}, {});
}

bool CDicomDirProcessor::ClaimRoot() {
  const WorkingDirectoryScope workingDirectory;
  return claim_->TakeMaking(rootDirectory_, files_, *this);
}

RootState CDicomDirProcessor::GetRootState() {
  std::size_t objectCount = 0;
  const RootState state = ReadRootState(rootDirectory_, files_, objectCount);
  if (state == RootState::Unfinished) FailUnfinished(rootDirectory_, objectCount, *this);
  return state;
}

bool CDicomDirProcessor::ClearRoot(TextView leaveOut) {
  const WorkingDirectoryScope workingDirectory;
  return EmptyRoot(rootDirectory_, leaveOut, files_, *this);
}

std::unique_ptr<FileSetPlan> CDicomDirProcessor::BeginPlan(TextView rootDirectory,
                                                           TextView objectDirectory) {
  plan_.reset();
  if (!HasPatients()) return nullptr;
  FileSetPlaces places{rootDirectory_, objectDirectory_, otherContentDirectory_};
  if (!rootDirectory.empty()) places.rootDirectory = rootDirectory;
  if (!objectDirectory.empty()) places.objectDirectory = objectDirectory;
  auto plan = std::make_unique<FileSetPlan>(*patients_, watch_.get(), files_, *this, places);
  if (plan->CheckDirectories()) return plan;
  FailAs(*plan);
  return nullptr;
}

bool CDicomDirProcessor::FinishPlan(std::unique_ptr<FileSetPlan> plan) {
  if (plan->Make()) {
    plan_ = std::move(plan);
    return true;
  }
  const bool keepsPatients = plan->KeepsPatients();
  FailAs(*plan);
  plan.reset();
  if (!keepsPatients) ForgetPatients();
  claim_->Release();
  return false;
}

bool CDicomDirProcessor::PlanFileSet(TextView rootDirectory, TextView objectDirectory) {
  const WorkingDirectoryScope workingDirectory;
  auto plan = BeginPlan(rootDirectory, objectDirectory);
  isPreview_ = false;
  return plan != nullptr && claim_->TakeForCreation(plan->Places().rootDirectory, files_, *this) &&
         FinishPlan(std::move(plan));
}

bool CDicomDirProcessor::PreviewFileSet(TextView rootDirectory, TextView objectDirectory) {
  const WorkingDirectoryScope workingDirectory;
  auto plan = BeginPlan(rootDirectory, objectDirectory);
  isPreview_ = true;
  return plan != nullptr && FinishPlan(std::move(plan));
}

const PlannedFileSet& CDicomDirProcessor::Planned() const { return plan_->Planned(); }

std::span<const ProfileReport> CDicomDirProcessor::ProfileReports() const {
  return watch_ == nullptr ? std::span<const ProfileReport>() : watch_->Reports();
}

bool CDicomDirProcessor::HandOver(std::size_t index, TextView copy) {
  return plan_->HandOver(index, copy) || FailAs(*plan_);
}

bool CDicomDirProcessor::CreateDicomFileSet(TextView rootDirectory, TextView objectDirectory) {
  return PlanFileSet(rootDirectory, objectDirectory) && CreatePlannedFileSet();
}

bool CDicomDirProcessor::CreatePlannedFileSet() {
  if (isPreview_) {
    const FileSetPlaces places = plan_->Places();
    if (!PlanFileSet(places.rootDirectory, places.objectDirectory)) return false;
  }
  const WorkingDirectoryScope workingDirectory;
  const std::unique_ptr<FileSetPlan> plan = std::move(plan_);
  if (!plan->CheckSources()) {
    FailAs(*plan);
    if (!plan->KeepsPatients()) ForgetPatients();
    claim_->Release();
    return false;
  }
  claim_->KeepDirectory();
  FileSetCreation creation(*plan, files_, progress);
  const bool isCreated = creation.Run();
  if (creation.HasLabel()) iheLabel_ = plan->Planned().label;
  if (isCreated) {
    // A source of other content that cannot be found out is no failure; the sentence tells why.
    if (!plan->Content().Remark().empty()) SetErrorMessage(plan->Content().Remark());
    if (!plan->Pages().Remarks().empty()) SetErrorMessage(plan->Pages().Remarks().front());
  } else {
    FailAs(creation);
    claim_->Release();
  }
  if (isCreated || !creation.KeepsPatients()) ForgetPatients();
  return isCreated;
}

bool CDicomDirProcessor::CheckOperatingSystem() { return quillon::CheckOperatingSystem(*this); }

bool CDicomDirProcessor::WriteMedia(TextView sourceDirectory, bool simulate, bool fullErase,
                                    bool eject, bool clearSource) {
  const DeliveryOptions options{simulate,
                                fullErase,
                                eject,
                                clearSource,
                                holdsRootWhenWritten,
                                performDirectCopy,
                                directCopyDirectory_,
                                volumeName_,
                                currentPractice,
                                currentPractice && makesSums && !simulate,
                                progress};
  return FileSetDelivery(options, *claim_, files_, *this)
      .Run(sourceDirectory.empty() ? TextView(rootDirectory_) : sourceDirectory);
}

bool CDicomDirProcessor::HasCurrentDiscService() {
  auto generation = DiscMasteringGeneration::None;
  static_cast<void>(CTarnImapiVersion::Instance().Detect(generation));  // None says it
  return generation == DiscMasteringGeneration::Current;
}

bool CDicomDirProcessor::GetOtherContentSourceDir(Text& directory) {
  OtherContent content(files_, currentPractice);
  bool isMissing = false;
  return content.ReadSourceDirectory(directory, isMissing) || FailAs(content);
}

bool CDicomDirProcessor::GetTotalSize(std::uint64_t& sizeBytes) {
  sizeBytes = 0;
  if (!HasPatients()) return false;
  std::uint64_t total = 0;
  OtherContent content(files_, currentPractice);
  if (includeOtherContent && !content.GetSize(total)) return FailAs(content);
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
  std::uint32_t total = 0;
  OtherContent content(files_, currentPractice);
  if (includeOtherContent && !content.CountFiles(total)) return FailAs(content);
  static_cast<void>(ForEachObject(*patients_, [&total](const CDicomObjectProperties&) {
    ++total;
    return true;
  }));
  count = total;
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
  if (patients_ != nullptr) ForgetPatients();
  RemoveRoot(removesAll, asideDirectory);
  RemoveTemporaryFiles();
}

void CDicomDirProcessor::RemoveRoot(bool removesAll, Text& asideDirectory) {
  // No message is told here, and the one that the host may still read stays.
  CBaseItem unheard;
  if (files_.PathExists(rootDirectory_) && claim_->TakeExisting(rootDirectory_, files_, unheard)) {
    std::size_t objectCount = 0;
    const bool isKept =
        !removesAll && ReadRootState(rootDirectory_, files_, objectCount) == RootState::Unfinished;
    if (isKept) {
      static_cast<void>(claim_->SetAside(files_, asideDirectory));
    } else {
      MarkForRemoval(rootDirectory_, files_);
      static_cast<void>(files_.DeleteDirectoryTree(rootDirectory_, /*recurse=*/true));
    }
  }
  claim_->Release();
}

void CDicomDirProcessor::RemoveTemporaryFiles() {
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
