#include "root_claim.h"

#include "path_join.h"

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

}  // namespace quillon
