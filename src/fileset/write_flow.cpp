// The delivery of a finished file set, to a disc or to a directory.
#include "disc/media_burn_util.h"
#include "disc/media_processor.h"
#include "fileset/dicom_dir_processor.h"
#include "foundation/working_directory_scope.h"
#include "path_join.h"

namespace quillon {

namespace {

constexpr const OLECHAR* kEveryFile = OLESTR("*.*");

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
    if (performDirectCopy) {
      const Text target =
          directCopyDirectory_.empty() ? Text() : AbsolutePath(directCopyDirectory_);
      // Neither a copy onto itself nor one that is cleared with its source would be a copy.
      if (!target.empty() && files_.LiesWithin(target, source)) {
        return Fail(kMsgDirectCopyTargetInvalid);
      }
      written = CopyFileSet(source, target);
    } else {
      written = WriteDisc(source, {simulate, fullErase, eject, clearSource});
    }
  } catch (...) {
    written = FailAsThrown(*this, kMsgWriteMediaThrew);
  }
  return clearSource ? ClearSource(source, written) : written;
}

bool CDicomDirProcessor::CopyFileSet(const Text& source, const Text& target) {
  if (target.empty()) return Fail(kMsgDirectCopyTargetInvalid);
  const WorkingDirectoryScope workingDirectory;
  return (files_.CreateDirectoryTree(target) && files_.ChangeDirectory(source) &&
          files_.CopyDirectory(target, source, kEveryFile, /*recurse=*/true)) ||
         FailAs(files_);
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
    if (files_.DeleteDirectoryTree(source, /*recurse=*/true)) return succeeded;
    if (succeeded) FailAs(files_);
  } catch (...) {
    if (succeeded) FailAsThrown(*this, kMsgWriteMediaThrew);
  }
  return false;
}

}  // namespace quillon
