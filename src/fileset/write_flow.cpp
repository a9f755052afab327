// The delivery of a finished file set, to a disc or to a directory.
#include "copy_report.h"
#include "disc/media_burn_util.h"
#include "disc/media_processor.h"
#include "file_set_plan.h"
#include "fileset/dicom_dir_processor.h"
#include "foundation/find_handle.h"
#include "foundation/working_directory_scope.h"
#include "path_join.h"
#include "root_claim.h"
#include "unfinished_mark.h"

namespace quillon {

namespace {

constexpr const OLECHAR* kEveryFile = OLESTR("*.*");
constexpr const OLECHAR* kUnfinishedSuffix = OLESTR(".NEW");

// Windows XP.
constexpr DWORD kOldestMajorVersion = 5;
constexpr DWORD kOldestMinorVersion = 1;

}  // namespace

bool CDicomDirProcessor::CheckOperatingSystem() {
  OSVERSIONINFOEXW oldest{};
  oldest.dwOSVersionInfoSize = sizeof oldest;
  oldest.dwMajorVersion = kOldestMajorVersion;
  oldest.dwMinorVersion = kOldestMinorVersion;
  DWORDLONG conditions = VerSetConditionMask(0, VER_MAJORVERSION, VER_GREATER_EQUAL);
  conditions = VerSetConditionMask(conditions, VER_MINORVERSION, VER_GREATER_EQUAL);
  if (VerifyVersionInfoW(&oldest, VER_MAJORVERSION | VER_MINORVERSION, conditions) != FALSE) {
    return true;
  }
  const bool isTooOld = GetLastError() == ERROR_OLD_WIN_VERSION;
  return Fail(isTooOld ? kMsgWindowsXpRequired : kMsgCannotDetermineSystem);
}

bool CDicomDirProcessor::WriteMedia(TextView sourceDirectory, bool simulate, bool fullErase,
                                    bool eject, bool clearSource) {
  Text source;
  bool written = false;
  try {
    source = sourceDirectory.empty() ? TextView(rootDirectory_) : sourceDirectory;
    if (source.empty()) return Fail(kMsgDicomRootPathInvalid);
    // The copy works from inside the source, where relative names would mean something else.
    source = AbsolutePath(source);
    if (!ClaimFinished(source)) return false;
    if (performDirectCopy) {
      const Text target =
          directCopyDirectory_.empty() ? Text() : AbsolutePath(directCopyDirectory_);
      if (!target.empty() && !CheckTarget(source, target)) return false;
      written = CopyFileSet(source, target);
    } else {
      written = WriteDisc(source, {simulate, fullErase, eject, clearSource});
    }
  } catch (...) {
    written = FailAsThrown(*this, kMsgWriteMediaThrew);
  }
  if (clearSource) written = ClearSource(source, written);
  // A file set that is still to be delivered stays this job's.
  if (written) claim_->Release();
  return written;
}

// Half a file set is nobody's to deliver, nor to clear away.
bool CDicomDirProcessor::ClaimFinished(const Text& source) {
  if (source.size() > kMaxPathChars) return Fail(kMsgDicomRootPathInvalid);
  const WorkingDirectoryScope workingDirectory;
  if (!claim_->TakeExisting(source, files_, *this)) return false;
  std::size_t objectCount = 0;
  const RootState state = ReadRootState(source, files_, objectCount);
  if (state == RootState::Unfinished || state == RootState::UnfinishedCopies) {
    claim_->Release();
    return Fail(kMsgRootUnfinished, {source, NumberText(static_cast<long long>(objectCount))});
  }
  // What a job left that ended before its first object must not ride along.
  return RemoveUnfinishedMark(source, files_) || FailAs(files_);
}

// A copy onto the source itself, or into what is cleared with it, would be none. When the target
// holds the source, its files must not come to lie where the source is.
bool CDicomDirProcessor::CheckTarget(const Text& source, const Text& target) {
  if (files_.LiesWithin(target, source)) return Fail(kMsgDirectCopyTargetInvalid);
  if (!CheckOutsideTemporary(target, files_, *this)) return false;
  FindHandle found(source + OLESTR("\\") + kEveryFile);
  if (!found.IsOpen()) return true;
  bool isNewThere = true;
  do {
    if (IsDotEntry(found.Entry())) continue;
    const Text copy = target + OLESTR("\\") + found.Entry().cFileName;
    if (!files_.PathExists(copy)) continue;
    if (files_.LiesWithin(source, copy)) return Fail(kMsgDirectCopyTargetInvalid);
    isNewThere = false;
  } while (found.Next());
  // How much room files of the same names give back is for the copy to find out.
  return !isNewThere || CheckRoomForCopy(source, target);
}

// The DICOMDIR comes last, whole or not at all, and an old one goes first: a copy that breaks off,
// however it does, has none, and cannot pass for a finished medium.
bool CDicomDirProcessor::CopyFileSet(const Text& source, const Text& target) {
  if (target.empty()) return Fail(kMsgDirectCopyTargetInvalid);
  const WorkingDirectoryScope workingDirectory;
  files_.SetAcceptEmptyFiles(currentPractice);
  if (!files_.CreateDirectoryTree(target)) return FailAs(files_);
  Text from(source);
  Text to(target);
  const bool hasDicomDir = JoinBelow(from, kDicomDirName, *this) &&
                           JoinBelow(to, kDicomDirName, *this) && files_.PathExists(from);
  if (hasDicomDir && files_.PathExists(to) && !files_.DeleteFile(to)) return FailAs(files_);
  if (!files_.ChangeDirectory(source)) return FailAs(files_);
  std::uint64_t totalBytes = 0;
  // What keeps it from being measured is for the copy to tell.
  if (progress) {
    static_cast<void>(files_.GetDirectorySize(totalBytes, source, kEveryFile, /*recurse=*/true));
  }
  const CopyReport report(files_, progress, totalBytes);
  return (files_.ChangeDirectory(source) &&
          files_.CopyDirectory(target, source, kEveryFile, /*recurse=*/true,
                               hasDicomDir ? TextView(kDicomDirName) : TextView()) &&
          (!hasDicomDir || (files_.CopyFile(to + kUnfinishedSuffix, from, /*append=*/false) &&
                            files_.MoveFile(to, to + kUnfinishedSuffix)))) ||
         FailAs(files_);
}

bool CDicomDirProcessor::CheckRoomForCopy(const Text& source, const Text& target) {
  const WorkingDirectoryScope workingDirectory;
  std::uint64_t freeBytes = 0;
  std::uint64_t needed = 0;
  // Whatever cannot be found out here is for the copy to tell.
  if (!files_.GetFreeBytes(ExistingPart(target, files_), freeBytes) ||
      !files_.ChangeDirectory(source) ||
      !files_.GetDirectorySize(needed, source, kEveryFile, /*recurse=*/true)) {
    return true;
  }
  return needed <= freeBytes ||
         Fail(kMsgNotEnoughRoom, {target, NumberText(static_cast<long long>(freeBytes)),
                                  NumberText(static_cast<long long>(needed))});
}

bool CDicomDirProcessor::WriteDisc(const Text& source, const RecordingOptions& options) {
  if (!CheckOperatingSystem()) return false;
  {
    CMediaBurnUtil burner;
    if (!burner.HasRecordableDrive()) {
      return burner.ErrorMessage().empty() ? Fail(kMsgNoRecordableDrive) : FailAs(burner);
    }
  }
  CQuillonMediaProcessor processor;
  processor.SetSimulate(options.simulate);
  processor.SetPerformFullErase(options.fullErase);
  processor.SetEjectAfterWrite(options.eject);
  processor.SetClearAfterWrite(options.clearAfterWrite);
  if (!volumeName_.empty() && !processor.SetVolumeName(volumeName_)) return FailAs(processor);
  return (processor.AddContent(source) && processor.WriteToMedia()) || FailAs(processor);
}

bool CDicomDirProcessor::ClearSource(const Text& source, bool succeeded) {
  try {
    if (source.empty() || !files_.PathExists(source)) return succeeded;
    const WorkingDirectoryScope workingDirectory;
    MarkForRemoval(source, files_);
    if (files_.DeleteDirectoryTree(source, /*recurse=*/true)) return succeeded;
    if (succeeded) FailAs(files_);
  } catch (...) {
    if (succeeded) FailAsThrown(*this, kMsgWriteMediaThrew);
  }
  return false;
}

}  // namespace quillon
