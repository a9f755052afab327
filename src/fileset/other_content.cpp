#include "other_content.h"

#include <algorithm>

#include "foundation/find_handle.h"
#include "foundation/working_directory_scope.h"
#include "media_creation_key.h"
#include "path_join.h"

namespace quillon {

namespace {

constexpr const OLECHAR* kEveryFile = OLESTR("*.*");

// Whether every level of a path below the root leads down.
bool StaysBelow(TextView path) {
  if (path == OLESTR(".")) return true;
  for (;;) {
    const std::size_t end = std::min(path.find_first_of(OLESTR("\\/")), path.size());
    const TextView level = path.substr(0, end);
    const bool isName = level.find_first_not_of(OLESTR(". ")) != TextView::npos;
    if (!isName || level.find(OLESTR(':')) != TextView::npos) return false;
    if (end == path.size()) return true;
    path.remove_prefix(end + 1);
  }
}

}  // namespace

OtherContent::OtherContent(CFileUtil& files, bool acceptsEmptyFiles)
    : files_(files), acceptsEmptyFiles_(acceptsEmptyFiles) {
  SetClassName(OLESTR("CDicomDirProcessor"));
}

bool OtherContent::ReadSourceDirectory(Text& directory, bool& isMissing) {
  directory.clear();
  isMissing = false;
  MediaCreationKey key;
  if (!key.Open()) {
    isMissing = key.IsMissing();
    return Fail(kMsgCannotOpenRegistryKey,
                {kMediaCreationKeyPath, LoadMessage(kMsgRegistryKeyMissing)});
  }
  if (!key.ReadText(kOtherContentValue, directory)) {
    isMissing = key.IsMissing();
    return Fail(kMsgCannotQueryRegistryValue,
                {kMediaCreationKeyPath, kOtherContentValue, LoadMessage(kMsgRegistryValueMissing)});
  }
  if (!key.Close()) {
    return Fail(kMsgCannotCloseRegistryKey,
                {kMediaCreationKeyPath, LoadMessage(kMsgRegistryKeyNotClosed)});
  }
  return true;
}

void OtherContent::Forget() {
  hasContent_ = false;
  bytesOnDisk_ = 0;
  room_ = DiscRoom();
  planned_.clear();
  plannedDirectories_.clear();
  destination_.clear();
  remark_.clear();
  gap_.clear();
}

bool OtherContent::PlanConfigured(const Text& rootDirectory, TextView otherContentDirectory) {
  Forget();
  // A workstation on which no source was configured has nothing to copy; the sentence tells why.
  bool isMissing = false;
  if (!ReadSourceDirectory(source_, isMissing)) {
    remark_ = ErrorMessage();
    if (!isMissing) gap_ = remark_;
    return true;
  }
  if (source_.empty()) return true;
  if (!files_.PathExists(source_)) {
    CBaseItem sentence;
    sentence.Fail(kMsgContentSourceMissing, {source_});
    gap_ = sentence.ErrorMessage();
    return true;
  }
  return PlanCopy(rootDirectory, otherContentDirectory);
}

bool OtherContent::PlanNamed(const Text& source, const Text& rootDirectory,
                             TextView otherContentDirectory) {
  Forget();
  source_ = source;
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (source_.empty() || !files_.GetFileAttributes(source_, data) ||
      (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
    return Fail(kMsgContentSourceMissing, {source_});
  }
  if (files_.LiesWithin(source_, rootDirectory)) {
    return Fail(kMsgContentInRoot, {source_, rootDirectory});
  }
  if (!StaysBelow(otherContentDirectory)) {
    return Fail(kMsgContentPlaceInvalid, {otherContentDirectory});
  }
  return PlanCopy(rootDirectory, otherContentDirectory);
}

bool OtherContent::PlanCopy(const Text& rootDirectory, TextView otherContentDirectory) {
  // The copy works from inside the source, where relative names would mean something else.
  source_ = AbsolutePath(source_);
  Text destination = AbsolutePath(rootDirectory);
  if (files_.LiesWithin(destination, source_)) {
    return Fail(kMsgOtherContentAroundRoot, {source_, rootDirectory});
  }
  if (otherContentDirectory.starts_with(OLESTR('\\')) ||
      otherContentDirectory.starts_with(OLESTR('/'))) {
    otherContentDirectory.remove_prefix(1);
  }
  if (otherContentDirectory == OLESTR(".")) otherContentDirectory = {};
  if (!otherContentDirectory.empty() && !JoinBelow(destination, otherContentDirectory, *this)) {
    return false;
  }
  const WorkingDirectoryScope workingDirectory;
  if (!files_.ChangeDirectory(source_)) return FailAs(files_);
  std::vector<FileIdentity> above;
  if (!PlanDirectory(source_, destination, above)) return false;
  if (!otherContentDirectory.empty()) {
    room_.AddDirectory();
    plannedDirectories_.push_back(destination);
  }
  destination_ = destination;
  hasContent_ = true;
  return true;
}

bool OtherContent::PlanDirectory(const Text& source, const Text& destination,
                                 std::vector<FileIdentity>& above) {
  if (!files_.ValidatePath(source)) return Fail(kMsgSourceFilenameInvalid);
  if (!files_.ValidatePath(destination)) return Fail(kMsgDestinationFilenameInvalid);
  FileIdentity identity;
  if (!files_.GetFileIdentity(source, identity)) return FailAs(files_);
  // A link that leads back up: the copy would end where its names have grown too long.
  if (std::ranges::find(above, identity) != above.end()) return Fail(kMsgSourceFilenameInvalid);
  FindHandle found(source + OLESTR("\\") + kEveryFile);
  if (!found.IsOpen()) {
    const DWORD code = GetLastError();
    return code == ERROR_FILE_NOT_FOUND || Fail(kMsgFileSpecificationInvalid, {kEveryFile});
  }
  if (!above.empty()) {
    room_.AddDirectory();
    plannedDirectories_.push_back(destination);
  }
  above.push_back(identity);
  do {
    const WIN32_FIND_DATAW& entry = found.Entry();
    if (IsDotEntry(entry)) continue;
    if (!files_.ValidateName(entry.cFileName)) return FailAs(files_);
    const Text from = source + OLESTR('\\') + entry.cFileName;
    const Text to = destination + OLESTR('\\') + entry.cFileName;
    if (!(IsDirectory(entry) ? PlanDirectory(from, to, above) : PlanFile(from, to))) return false;
  } while (found.Next());
  above.pop_back();
  return !found.EndedEarly() || Fail(kMsgFileSpecificationInvalid, {kEveryFile});
}

bool OtherContent::PlanFile(const Text& source, const Text& destination) {
  if (!files_.ValidatePath(source)) return Fail(kMsgSourceFilenameInvalid);
  if (!files_.ValidatePath(destination)) return Fail(kMsgDestinationFilenameInvalid);
  FileFacts facts;
  if (!files_.ProbeFile(source, /*forMoving=*/false, facts) &&
      !(acceptsEmptyFiles_ && facts.isEmptyFile)) {
    return FailAs(files_);
  }
  bytesOnDisk_ += RoundedToBlocks(facts.stamp.sizeBytes);
  room_.AddFile(facts.stamp.sizeBytes);
  planned_.push_back(destination);
  return true;
}

bool OtherContent::Copy() {
  if (!hasContent_) return true;
  const WorkingDirectoryScope workingDirectory;
  files_.SetAcceptEmptyFiles(acceptsEmptyFiles_);
  const bool isCopied = files_.CreateDirectoryTree(destination_) &&
                        files_.ChangeDirectory(source_) &&
                        files_.CopyDirectory(destination_, source_, kEveryFile, /*recurse=*/true);
  files_.SetAcceptEmptyFiles(false);
  return isCopied || FailAs(files_);
}

template <typename Total>
bool OtherContent::Measure(bool (CFileUtil::*measure)(Total&, TextView, TextView, bool),
                           Total& total) {
  total = 0;
  bool isMissing = false;
  // A workstation on which nothing was configured has nothing to count either.
  if (!ReadSourceDirectory(source_, isMissing)) return isMissing;
  if (source_.empty() || !files_.PathExists(source_)) return true;
  const WorkingDirectoryScope workingDirectory;
  source_ = AbsolutePath(source_);
  files_.SetAcceptEmptyFiles(acceptsEmptyFiles_);
  return (files_.ChangeDirectory(source_) &&
          (files_.*measure)(total, source_, kEveryFile, /*recurse=*/true)) ||
         FailAs(files_);
}

bool OtherContent::GetSize(std::uint64_t& sizeBytes) {
  return Measure(&CFileUtil::GetDirectorySize, sizeBytes);
}

bool OtherContent::CountFiles(std::uint32_t& count) {
  return Measure(&CFileUtil::CountFiles, count);
}

}  // namespace quillon
