// The creation of a file set as one job: whose the root directory is, the plan, and its execution.
#include "file_set_creation.h"
#include "file_set_plan.h"
#include "fileset/dicom_dir_processor.h"
#include "foundation/find_handle.h"
#include "foundation/working_directory_scope.h"
#include "path_join.h"
#include "root_claim.h"
#include "unfinished_mark.h"

namespace quillon {

bool CDicomDirProcessor::ClaimRoot() {
  const WorkingDirectoryScope workingDirectory;
  return claim_->TakeMaking(rootDirectory_, files_, *this);
}

RootState CDicomDirProcessor::GetRootState(std::size_t& objectCount) {
  return ReadRootState(rootDirectory_, files_, objectCount);
}

bool CDicomDirProcessor::FailUnfinished(std::size_t objectCount) {
  return Fail(kMsgRootUnfinished,
              {rootDirectory_, NumberText(static_cast<long long>(objectCount))});
}

bool CDicomDirProcessor::ClearRoot(TextView leaveOut) {
  const WorkingDirectoryScope workingDirectory;
  std::size_t objectCount = 0;
  if (ReadRootState(rootDirectory_, files_, objectCount) == RootState::Unfinished) {
    return FailUnfinished(objectCount);
  }
  const Text root = AbsolutePath(rootDirectory_);
  MarkForRemoval(root, files_);
  Text pattern = root;
  if (!JoinBelow(pattern, OLESTR("*.*"), *this)) return false;
  FindHandle found(pattern);
  if (!found.IsOpen()) return true;
  do {
    const WIN32_FIND_DATAW& entry = found.Entry();
    if (IsDotEntry(entry) || leaveOut == entry.cFileName) continue;
    Text path = root;
    if (!JoinBelow(path, entry.cFileName, *this)) return false;
    const bool isRemoved = IsLink(entry)        ? files_.RemoveLink(path)
                           : IsDirectory(entry) ? files_.DeleteDirectoryTree(path, true)
                                                : files_.DeleteFile(path);
    if (!isRemoved) return FailAs(files_);
  } while (found.Next());
  return !found.EndedEarly() || Fail(kMsgSearchPatternInvalid, {pattern});
}

// Objects of a job that did not end must neither be replaced by this job's nor ride along with
// them.
bool CDicomDirProcessor::SetUnfinishedAside(const Text& root) {
  std::size_t objectCount = 0;
  switch (ReadRootState(root, files_, objectCount)) {
    case RootState::Free:
    case RootState::Finished:
    case RootState::UnfinishedCopies:
      return true;
    case RootState::Unfinished:
      break;
  }
  Text asideDirectory;
  if (!claim_->SetAside(files_, asideDirectory)) {
    return Fail(kMsgRootUnfinished, {root, NumberText(static_cast<long long>(objectCount))});
  }
  return claim_->TakeMaking(root, files_, *this);
}

std::unique_ptr<FileSetPlan> CDicomDirProcessor::BeginPlan(TextView rootDirectory,
                                                           TextView objectDirectory) {
  plan_.reset();
  if (!HasPatients()) return nullptr;
  FileSetSettings settings;
  settings.rootDirectory = rootDirectory.empty() ? TextView(rootDirectory_) : rootDirectory;
  settings.objectDirectory = objectDirectory.empty() ? TextView(objectDirectory_) : objectDirectory;
  settings.useHierarchy = useHierarchyForDicomObjects;
  settings.includesOtherContent = includeOtherContent;
  settings.otherContentDirectory = otherContentDirectory_;
  settings.followsCurrentPractice = currentPractice;
  settings.sourcesStay = sourcesStay;
  settings.needsRoomForCopies = needsRoomForCopies;
  auto plan = std::make_unique<FileSetPlan>(*patients_, files_, settings);
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
  if (!keepsPatients) patients_->RemoveAll();
  claim_->Release();
  return false;
}

bool CDicomDirProcessor::PlanFileSet(TextView rootDirectory, TextView objectDirectory) {
  const WorkingDirectoryScope workingDirectory;
  auto plan = BeginPlan(rootDirectory, objectDirectory);
  if (plan == nullptr) return false;
  isPreview_ = false;
  const Text& root = plan->Settings().rootDirectory;
  return claim_->TakeMaking(root, files_, *this) && SetUnfinishedAside(root) &&
         FinishPlan(std::move(plan));
}

bool CDicomDirProcessor::PreviewFileSet(TextView rootDirectory, TextView objectDirectory) {
  const WorkingDirectoryScope workingDirectory;
  auto plan = BeginPlan(rootDirectory, objectDirectory);
  isPreview_ = true;
  return plan != nullptr && FinishPlan(std::move(plan));
}

const FileSetTotals& CDicomDirProcessor::PlannedTotals() const { return plan_->Totals(); }

DiscRoom CDicomDirProcessor::PlannedRoom() const { return plan_->Room(); }

const Text& CDicomDirProcessor::PlannedLabel() const { return plan_->Label(); }

std::size_t CDicomDirProcessor::PlannedCount() const { return plan_->Objects().size(); }

const Text& CDicomDirProcessor::PlannedSource(std::size_t index) const {
  return plan_->Objects()[index].source;
}

std::uint64_t CDicomDirProcessor::PlannedSize(std::size_t index) const {
  return plan_->Objects()[index].sizeBytes;
}

std::vector<Text> CDicomDirProcessor::LabelRemarks() const { return plan_->LabelRemarks(); }

bool CDicomDirProcessor::HandOver(std::size_t index, TextView copy) {
  return plan_->HandOver(index, copy) || FailAs(*plan_);
}

bool CDicomDirProcessor::CreateDicomFileSet(TextView rootDirectory, TextView objectDirectory) {
  return PlanFileSet(rootDirectory, objectDirectory) && CreatePlannedFileSet();
}

bool CDicomDirProcessor::CreatePlannedFileSet() {
  if (isPreview_) {
    const Text root = plan_->Settings().rootDirectory;
    const Text objects = plan_->Settings().objectDirectory;
    if (!PlanFileSet(root, objects)) return false;
  }
  const WorkingDirectoryScope workingDirectory;
  const std::unique_ptr<FileSetPlan> plan = std::move(plan_);
  if (!plan->CheckSources()) {
    FailAs(*plan);
    if (!plan->KeepsPatients()) patients_->RemoveAll();
    claim_->Release();
    return false;
  }
  claim_->KeepDirectory();
  FileSetCreation creation(*plan, files_, progress);
  const bool isCreated = creation.Run();
  if (creation.HasLabel()) iheLabel_ = plan->Label();
  if (isCreated) {
    // A source of other content that cannot be found out is no failure; the sentence tells why.
    if (!plan->Content().Remark().empty()) SetErrorMessage(plan->Content().Remark());
  } else {
    FailAs(creation);
    claim_->Release();
  }
  if (isCreated || !creation.KeepsPatients()) patients_->RemoveAll();
  return isCreated;
}

}  // namespace quillon
