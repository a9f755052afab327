#include "file_set_delivery.h"

#include "disc/media_burn_util.h"
#include "disc/media_processor.h"
#include "fileset/set_sums.h"
#include "foundation/file_system_flush.h"
#include "foundation/find_handle.h"
#include "foundation/working_directory_scope.h"
#include "path_join.h"
#include "unfinished_mark.h"

namespace quillon {

namespace {

constexpr const OLECHAR* kEveryFile = OLESTR("*.*");
constexpr const OLECHAR* kUnfinishedSuffix = OLESTR(".NEW");

// Windows XP.
constexpr DWORD kOldestMajorVersion = 5;
constexpr DWORD kOldestMinorVersion = 1;

}  // namespace

bool CheckOperatingSystem(CBaseItem& errors) {
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
  return errors.Fail(isTooOld ? kMsgWindowsXpRequired : kMsgCannotDetermineSystem);
}

bool FileSetDelivery::Run(TextView source) {
  bool isDelivered = false;
  try {
    source_ = source;
    if (source_.empty()) return errors_.Fail(kMsgDicomRootPathInvalid);
    // The copy works from inside the source, where relative names would mean something else.
    source_ = AbsolutePath(source_);
    if (!claim_.TakeFinished(source_, files_, errors_)) return false;
    if (options_.hasSums && !MakeSums()) return false;
    if (options_.isDirectCopy) {
      target_ = options_.targetDirectory;
      if (!target_.empty()) {
        target_ = AbsolutePath(target_);
        if (!CheckTarget()) return false;
      }
      isDelivered = CopyToTarget();
    } else {
      isDelivered = WriteDisc();
    }
  } catch (...) {
    isDelivered = FailAsThrown(errors_, kMsgWriteMediaThrew);
  }
  if (options_.isSourceCleared) isDelivered = ClearSource(isDelivered);
  // A file set that is still to be delivered stays this job's.
  if (isDelivered && !options_.isSourceHeld) claim_.Release();
  return isDelivered;
}

// Not beside what is no file set.
bool FileSetDelivery::MakeSums() {
  Text dicomDir(source_);
  if (!JoinBelow(dicomDir, kDicomDirName, errors_) || !files_.PathExists(dicomDir)) return true;
  return WriteSetSums(source_, files_, errors_);
}

// A copy onto the source itself, or into what is cleared with it, would be none. When the target
// holds the source, its files must not come to lie where the source is.
bool FileSetDelivery::CheckTarget() {
  if (files_.LiesWithin(target_, source_)) return errors_.Fail(kMsgDirectCopyTargetInvalid);
  if (!CheckOutsideTemporary(target_, files_, errors_)) return false;
  FindHandle found(source_ + OLESTR("\\") + kEveryFile);
  if (!found.IsOpen()) return true;
  bool isNewThere = true;
  do {
    if (IsDotEntry(found.Entry())) continue;
    const Text copy = target_ + OLESTR("\\") + found.Entry().cFileName;
    if (!files_.PathExists(copy)) continue;
    if (files_.LiesWithin(source_, copy)) return errors_.Fail(kMsgDirectCopyTargetInvalid);
    isNewThere = false;
  } while (found.Next());
  // How much room files of the same names give back is for the copy to find out.
  return !isNewThere || CheckRoom();
}

bool FileSetDelivery::CheckRoom() {
  const WorkingDirectoryScope workingDirectory;
  std::uint64_t freeBytes = 0;
  // Whatever cannot be found out here is for the copy to tell.
  if (!files_.GetFreeBytes(ExistingPart(target_, files_), freeBytes) ||
      !files_.ChangeDirectory(source_) ||
      !files_.GetDirectorySize(sizeBytes_, source_, kEveryFile, /*recurse=*/true)) {
    return true;
  }
  return sizeBytes_ <= freeBytes ||
         errors_.Fail(kMsgNotEnoughRoom, {target_, NumberText(static_cast<long long>(freeBytes)),
                                          NumberText(static_cast<long long>(sizeBytes_))});
}

// The DICOMDIR comes last, whole or not at all, and an old one goes first: a copy that breaks off,
// however it does, has none, and cannot pass for a finished medium.
bool FileSetDelivery::CopyToTarget() {
  if (target_.empty()) return errors_.Fail(kMsgDirectCopyTargetInvalid);
  const WorkingDirectoryScope workingDirectory;
  files_.SetAcceptEmptyFiles(options_.acceptsEmptyFiles);
  if (!files_.CreateDirectoryTree(target_)) return errors_.FailAs(files_);
  FileSystemFlush flush(target_);
  Text from(source_);
  Text to(target_);
  const bool hasDicomDir = JoinBelow(from, kDicomDirName, errors_) &&
                           JoinBelow(to, kDicomDirName, errors_) && files_.PathExists(from);
  if (hasDicomDir && files_.PathExists(to) && !files_.DeleteFile(to)) return errors_.FailAs(files_);
  if (!files_.ChangeDirectory(source_)) return errors_.FailAs(files_);
  // What keeps it from being measured is for the copy to tell.
  if (options_.progress && sizeBytes_ == 0) {
    static_cast<void>(files_.GetDirectorySize(sizeBytes_, source_, kEveryFile, /*recurse=*/true));
  }
  const CopyReport report(files_, options_.progress, sizeBytes_);
  return (files_.ChangeDirectory(source_) &&
          files_.CopyDirectory(target_, source_, kEveryFile, /*recurse=*/true,
                               hasDicomDir ? TextView(kDicomDirName) : TextView()) &&
          (!hasDicomDir ||
           (files_.CopyFile(to + kUnfinishedSuffix, from, /*append=*/false) &&
            files_.MoveFile(to, to + kUnfinishedSuffix) && files_.FlushAll(flush)))) ||
         errors_.FailAs(files_);
}

bool FileSetDelivery::WriteDisc() {
  if (!CheckOperatingSystem(errors_)) return false;
  {
    CMediaBurnUtil burner;
    if (!burner.HasRecordableDrive()) {
      return burner.ErrorMessage().empty() ? errors_.Fail(kMsgNoRecordableDrive)
                                           : errors_.FailAs(burner);
    }
  }
  CQuillonMediaProcessor processor;
  processor.SetSimulate(options_.isTestRun);
  processor.SetPerformFullErase(options_.hasFullErase);
  processor.SetEjectAfterWrite(options_.isEjected);
  processor.SetClearAfterWrite(options_.isSourceCleared);
  return ((options_.volumeName.empty() || processor.SetVolumeName(options_.volumeName)) &&
          processor.AddContent(source_) && processor.WriteToMedia()) ||
         errors_.FailAs(processor);
}

bool FileSetDelivery::ClearSource(bool isDelivered) {
  try {
    if (source_.empty() || !files_.PathExists(source_)) return isDelivered;
    const WorkingDirectoryScope workingDirectory;
    MarkForRemoval(source_, files_);
    if (files_.DeleteDirectoryTree(source_, /*recurse=*/true)) return isDelivered;
    if (isDelivered) errors_.FailAs(files_);
  } catch (...) {
    if (isDelivered) FailAsThrown(errors_, kMsgWriteMediaThrew);
  }
  return false;
}

}  // namespace quillon
