// The part of CFileUtil that changes, creates, empties and removes directories.
#include "foundation/file_util.h"
#include "foundation/find_handle.h"
#include "path_parts.h"
#include "read_only.h"

namespace quillon {
namespace {

constexpr TextView kRoot = OLESTR("\\");
constexpr TextView kParentDirectory = OLESTR("..");
constexpr TextView kEveryName = OLESTR("*.*");

UINT VerbOf(DirectoryOp op) {
  switch (op) {
    case DirectoryOp::ChangeTo:
      return kMsgVerbChangeTo;
    case DirectoryOp::Create:
      return kMsgVerbCreate;
    case DirectoryOp::Remove:
      break;
  }
  return kMsgVerbRemove;
}

// "\\server\share\" or "//server/share/" at the start of a network path; empty for any other path.
TextView NetworkRoot(TextView path) {
  if (path.size() < 3 || !IsPathSeparator(path[0]) || path[1] != path[0]) return {};
  const std::size_t serverEnd = path.find_first_of(kPathSeparators, 2);
  if (serverEnd == TextView::npos) return path;
  const std::size_t shareEnd = path.find_first_of(kPathSeparators, serverEnd + 1);
  return path.substr(0, shareEnd == TextView::npos ? shareEnd : shareEnd + 1);
}

}  // namespace

bool CFileUtil::GetCurrentDirectory(Text& out) {
  const DWORD needed = GetCurrentDirectoryW(0, nullptr);
  if (needed == 0) return Fail(kMsgCannotGetCurrentDirectory);
  Text directory(needed, OLECHAR{0});
  const DWORD length = GetCurrentDirectoryW(needed, directory.data());
  if (length == 0 || length >= needed) return Fail(kMsgCannotGetCurrentDirectory);
  directory.resize(length);
  out = std::move(directory);
  return true;
}

bool CFileUtil::ChangeDirectory(TextView path) {
  return DirectoryOperation(path, DirectoryOp::ChangeTo);
}

bool CFileUtil::DirectoryOperation(TextView path, DirectoryOp op) {
  if (!ValidatePath(path)) return false;
  const Text name(path);
  bool done = false;
  switch (op) {
    case DirectoryOp::ChangeTo:
      done = SetCurrentDirectoryW(name.c_str()) != FALSE;
      break;
    case DirectoryOp::Create:
      done = CreateDirectoryW(name.c_str(), nullptr) != FALSE;
      break;
    case DirectoryOp::Remove:
      done = DespiteReadOnly(name, ClearReadOnly,
                             [&name] { return RemoveDirectoryW(name.c_str()) != FALSE; });
      break;
    default:
      return Fail(kMsgDirectoryOperationInvalid);
  }
  return done || FailDirectoryOperation(path, op, GetLastError());
}

bool CFileUtil::FailDirectoryOperation(TextView path, DirectoryOp op, DWORD code) {
  Text reason = code == ERROR_SUCCESS ? Text() : SystemText(code);
  if (IsUninformativeText(reason)) reason = LoadMessage(kMsgOperationFailed);
  return FailAt(path, code, kMsgDirectoryOperationFailed, {LoadMessage(VerbOf(op)), path, reason});
}

// The directory came from the platform and goes back to it as it is: a working directory may have
// a name that a path of the system's own may not.
bool CFileUtil::RestoreDirectory(const Text& path, bool succeeded) {
  if (SetCurrentDirectoryW(path.c_str()) != FALSE) return succeeded;
  const DWORD code = GetLastError();
  return succeeded ? FailDirectoryOperation(path, DirectoryOp::ChangeTo, code) : false;
}

bool CFileUtil::CreateDirectoryTree(TextView path) {
  Text before;
  if (!ValidatePath(path) || !GetCurrentDirectory(before)) return false;
  return RestoreDirectory(before, CreateMissingDirectories(path));
}

bool CFileUtil::CreateMissingDirectories(TextView path) {
  const bool hasDrive = path.size() >= 2 && IsDriveLetter(path[0]) && path[1] == OLESTR(':');
  if (hasDrive) {
    const Text root = Text(path.substr(0, 2)).append(kRoot);
    if (SetCurrentDirectoryW(root.c_str()) == FALSE) return Fail(kMsgCannotChangeDrive, {root});
    path.remove_prefix(2);
  }
  // Server and share exist or do not; nothing below the current drive's root stands for them.
  const Text networkRoot(NetworkRoot(path));
  if (!networkRoot.empty()) {
    if (SetCurrentDirectoryW(networkRoot.c_str()) == FALSE) {
      return Fail(kMsgCannotChangeDrive, {networkRoot});
    }
    path.remove_prefix(networkRoot.size());
  } else if (!path.empty() && IsPathSeparator(path.front())) {
    // Without a drive the path's own separator: where "/" is the system's root, "\" can be that of
    // the drive that the working directory is on.
    if (!ChangeDirectory(hasDrive ? TextView(kRoot) : path.substr(0, 1))) return false;
    path.remove_prefix(1);
  }
  while (!path.empty()) {
    const std::size_t length = path.find_first_of(kPathSeparators);
    const TextView component = path.substr(0, length);
    path.remove_prefix(length == TextView::npos ? path.size() : length + 1);
    if (ChangeDirectory(component)) continue;
    ClearError();
    ForgetFailure();
    if (DirectoryOperation(component, DirectoryOp::Create) && ChangeDirectory(component)) continue;
    // Somebody else may have made it in the meantime.
    const Text reason = ErrorMessage();
    if (!ChangeDirectory(component)) {
      SetErrorMessage(reason);
      return false;
    }
    ClearError();
    ForgetFailure();
  }
  return true;
}

bool CFileUtil::RemoveLink(TextView path) {
  if (!ValidatePath(path)) return false;
  const Text name(WithoutLastSeparators(path));
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!QueryAttributes(name, data)) return false;
  if ((data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
    return Fail(kMsgCannotDeleteFile, {path});
  }
  const bool leadsToDirectory = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const BOOL done = leadsToDirectory ? RemoveDirectoryW(name.c_str()) : DeleteFileW(name.c_str());
  return done != FALSE || FailAt(path, kMsgCannotDeleteFile, {path});
}

bool CFileUtil::RenameDirectory(TextView to, TextView from) {
  ForgetFailure();
  if (!ValidatePath(from)) return Fail(kMsgSourceFilenameInvalid);
  if (!ValidatePath(to)) return Fail(kMsgDestinationFilenameInvalid);
  if (MoveFileExW(Text(from).c_str(), Text(to).c_str(), MOVEFILE_WRITE_THROUGH) != FALSE) {
    return true;
  }
  return FailAt(to, kMsgCannotRename, {from, to});
}

bool CFileUtil::DeleteAllFiles(TextView dir, bool recurse) {
  if (!ChangeDirectory(dir)) return false;
  bool succeeded = true;
  {
    FindHandle found{Text(kEveryName)};
    if (!found.IsOpen()) return FailAt(dir, kMsgFileSpecificationInvalid, {kEveryName});
    do {
      succeeded = IsDotEntry(found.Entry()) || DeleteEntry(found.Entry(), recurse);
    } while (succeeded && found.Next());
    if (succeeded && found.EndedEarly()) {
      succeeded = FailAt(dir, kMsgFileSpecificationInvalid, {kEveryName});
    }
  }
  if (succeeded) return ChangeDirectory(kParentDirectory);
  const Text reason = ErrorMessage();
  static_cast<void>(ChangeDirectory(kParentDirectory));
  SetErrorMessage(reason);
  return false;
}

bool CFileUtil::DeleteEntry(const WIN32_FIND_DATAW& entry, bool recurse) {
  const TextView name(entry.cFileName);
  if (!ValidateName(name)) return false;
  if (!IsDirectory(entry)) return DeleteFile(name);
  if (!recurse) return true;
  // A link goes, what it leads to stays: it may lie outside the tree that is to be deleted.
  if (!quillon::IsLink(entry) && !DeleteAllFiles(name, recurse)) return false;
  return DirectoryOperation(name, DirectoryOp::Remove);
}

bool CFileUtil::DeleteDirectoryTree(TextView path, bool recurse) {
  if (path.empty()) return Fail(kMsgPathNameInvalid);
  if (path.size() >= kMaxPathChars) {
    return Fail(kMsgPathNameTooLong, {path, NumberText(kMaxPathChars)});
  }
  const bool isRooted = IsPathSeparator(path.front());
  if (IsPathSeparator(path.back())) path.remove_suffix(1);
  const PathParts parts = SplitPath(path);
  Text before;
  if (!GetCurrentDirectory(before)) return false;
  const Text drive(parts.drive);
  if (!drive.empty() && SetCurrentDirectoryW(drive.c_str()) == FALSE) {
    return Fail(kMsgCannotChangeDrive, {drive});
  }
  // Named together with its drive: "\" alone need not mean the drive that was changed to. Without
  // drive and separator it is a name in the working directory, like every name without a path: at
  // the root another directory of that name would be emptied.
  Text parent = drive;
  if (!parts.directory.empty()) {
    parent.append(parts.directory);
  } else if (!drive.empty() || isRooted) {
    parent.append(kRoot);
  }
  const TextView name = path.substr(parts.drive.size() + parts.directory.size());
  return RestoreDirectory(before, EmptyAndRemove(parent, name, recurse));
}

bool CFileUtil::EmptyAndRemove(TextView parent, TextView name, bool recurse) {
  if (name.empty()) return DeleteAllFiles(parent, recurse);  // a root stays
  if (!parent.empty() && !ChangeDirectory(parent)) return false;
  return DeleteAllFiles(name, recurse) && DirectoryOperation(name, DirectoryOp::Remove);
}

}  // namespace quillon
