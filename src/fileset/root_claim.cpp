#include "root_claim.h"

#include "foundation/find_handle.h"
#include "foundation/working_directory_scope.h"
#include "path_join.h"
#include "unfinished_mark.h"

namespace quillon {

namespace {

constexpr const OLECHAR* kAsideSuffix = OLESTR(".unfinished-");
constexpr int kMaxAside = 1000;

Text WithoutTrailingSeparator(Text path) {
  while (path.size() > 1 && EndsInSeparator(path) && path[path.size() - 2] != OLESTR(':')) {
    path.pop_back();
  }
  return path;
}

}  // namespace

Text RootClaim::TemporaryJobDirectory(CFileUtil& files) {
  Text directory;
  if (!files.GetTempDirectory(directory, /*create=*/false, /*addSubdirectory=*/false)) return {};
  Text subdirectory;
  files.GetTempSubdirectoryName(subdirectory);
  return directory + subdirectory;
}

bool CheckOutsideTemporary(const Text& directory, CFileUtil& files, CBaseItem& errors) {
  const Text temporary = RootClaim::TemporaryJobDirectory(files);
  // Where it does not exist yet, only the names can tell.
  const bool isInside =
      !temporary.empty() && (files.LiesWithin(directory, temporary) ||
                             IsAtOrBelow(ComparablePath(directory), ComparablePath(temporary)));
  return !isInside || errors.Fail(kMsgPathInTemporary, {directory, temporary});
}

bool RootClaim::Lock(const Text& root, CFileUtil& files, CBaseItem& errors) {
  switch (lock_.Acquire(directory_)) {
    case LockResult::Held:
      return files.GetFileIdentity(directory_, identity_) || errors.FailAs(files);
    case LockResult::InUse:
      madeFrom_ = 0;  // it is the other's by now
      return errors.Fail(kMsgRootInUse, {root});
    case LockResult::Failed:
      break;
  }
  // A share that knows no locks is used without, as every other program uses it.
  return GetLastError() == ERROR_NOT_SUPPORTED || errors.Fail(kMsgCannotOpenFile, {root});
}

bool RootClaim::TakeMaking(const Text& root, CFileUtil& files, CBaseItem& errors) {
  if (!files.ValidatePath(root)) return errors.FailAs(files);
  const Text directory = WithoutTrailingSeparator(AbsolutePath(root));
  FileIdentity there;
  // What was removed and made anew under its name is another directory.
  if (lock_.IsHeld() && directory == directory_ && files.GetFileIdentity(directory, there) &&
      there == identity_) {
    return true;
  }
  Release();
  if (!CheckOutsideTemporary(directory, files, errors)) return false;
  directory_ = directory;
  const std::size_t existing = ExistingPart(directory, files).size();
  if (existing < directory.size()) madeFrom_ = existing;
  // Also when it is there, which finds out that it is no directory.
  const bool isTaken =
      files.CreateDirectoryTree(root) ? Lock(root, files, errors) : errors.FailAs(files);
  if (!isTaken) Release();
  return isTaken;
}

bool RootClaim::TakeExisting(const Text& root, CFileUtil& files, CBaseItem& errors) {
  if (!files.PathExists(root)) return true;
  return TakeMaking(root, files, errors);
}

bool RootClaim::TakeForCreation(const Text& root, CFileUtil& files, CBaseItem& errors) {
  if (!TakeMaking(root, files, errors)) return false;
  std::size_t objectCount = 0;
  if (ReadRootState(root, files, objectCount) != RootState::Unfinished) return true;
  Text asideDirectory;
  return SetAside(files, asideDirectory) ? TakeMaking(root, files, errors)
                                         : FailUnfinished(root, objectCount, errors);
}

// Half a file set is nobody's to deliver, nor to clear away.
bool RootClaim::TakeFinished(const Text& root, CFileUtil& files, CBaseItem& errors) {
  if (root.size() > kMaxPathChars) return errors.Fail(kMsgDicomRootPathInvalid);
  const WorkingDirectoryScope workingDirectory;
  if (!TakeExisting(root, files, errors)) return false;
  std::size_t objectCount = 0;
  const RootState state = ReadRootState(root, files, objectCount);
  if (state == RootState::Unfinished || state == RootState::UnfinishedCopies) {
    Release();
    return FailUnfinished(root, objectCount, errors);
  }
  // What a job left that ended before its first object must not ride along.
  return RemoveUnfinishedMark(root, files) || errors.FailAs(files);
}

void RootClaim::Release() {
  lock_.Release();
  if (madeFrom_ != 0) {
    // A directory that holds something by now is not removed, and ends it.
    while (directory_.size() > madeFrom_ && RemoveDirectoryW(directory_.c_str()) != FALSE) {
      directory_ = ParentDirectory(directory_);
    }
  }
  directory_.clear();
  madeFrom_ = 0;
}

bool RootClaim::SetAside(CFileUtil& files, Text& asideDirectory) {
  for (int number = 1; number <= kMaxAside; ++number) {
    const Text target = directory_ + kAsideSuffix + NumberText(number);
    if (files.PathExists(target)) continue;
    const Text root = directory_;
    if (!files.RenameDirectory(target, root)) return false;
    asideDirectory = target;
    Release();
    return true;
  }
  return false;
}

bool FailUnfinished(const Text& root, std::size_t objectCount, CBaseItem& errors) {
  return errors.Fail(kMsgRootUnfinished, {root, NumberText(static_cast<long long>(objectCount))});
}

bool EmptyRoot(const Text& root, TextView leaveOut, CFileUtil& files, CBaseItem& errors) {
  std::size_t objectCount = 0;
  if (ReadRootState(root, files, objectCount) == RootState::Unfinished) {
    return FailUnfinished(root, objectCount, errors);
  }
  const Text directory = AbsolutePath(root);
  MarkForRemoval(directory, files);
  Text pattern = directory;
  if (!JoinBelow(pattern, OLESTR("*.*"), errors)) return false;
  FindHandle found(pattern);
  if (!found.IsOpen()) return true;
  do {
    const WIN32_FIND_DATAW& entry = found.Entry();
    if (IsDotEntry(entry) || leaveOut == entry.cFileName) continue;
    Text path = directory;
    if (!JoinBelow(path, entry.cFileName, errors)) return false;
    const bool isRemoved = IsLink(entry)        ? files.RemoveLink(path)
                           : IsDirectory(entry) ? files.DeleteDirectoryTree(path, true)
                                                : files.DeleteFile(path);
    if (!isRemoved) return errors.FailAs(files);
  } while (found.Next());
  return !found.EndedEarly() || errors.Fail(kMsgSearchPatternInvalid, {pattern});
}

}  // namespace quillon
