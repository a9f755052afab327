// The walks of CFileUtil over a directory tree: its size, its files' number, its copy.
#include "foundation/file_system_flush.h"
#include "foundation/file_util.h"
#include "foundation/find_handle.h"
#include "path_parts.h"

namespace quillon {

namespace {

constexpr std::uint64_t kBytesPerFlush = std::uint64_t{256} << 20;

}  // namespace

bool CFileUtil::GetDirectorySize(std::uint64_t& sizeBytes, TextView src, TextView fileSpec,
                                 bool recurse) {
  byteTotal64_ = 0;
  byteTotal_ = 0;
  const bool walked = Walk({}, src, fileSpec, WalkMode::Size, recurse, {});
  sizeBytes = walked ? byteTotal64_ : 0;
  return walked;
}

bool CFileUtil::CountFiles(std::uint32_t& count, TextView src, TextView fileSpec, bool recurse) {
  fileCount_ = 0;
  fileCount64_ = 0;
  const bool walked = Walk({}, src, fileSpec, WalkMode::Count, recurse, {});
  count = walked ? fileCount_ : 0;
  return walked;
}

bool CFileUtil::CopyDirectory(TextView dst, TextView src, TextView fileSpec, bool recurse,
                              TextView leaveOut) {
  FileSystemFlush flush(dst);
  // Also when memory runs out: a single copy afterwards waits for the disk itself.
  struct Scope {
    FileSystemFlush*& current;
    ~Scope() { current = nullptr; }
  } const scope{flush_};
  if (flush.IsPossible()) flush_ = &flush;
  return Walk(dst, src, fileSpec, WalkMode::Copy, recurse, leaveOut) && FlushAll(flush);
}

bool CFileUtil::Walk(TextView dst, TextView src, TextView fileSpec, WalkMode mode, bool recurse,
                     TextView leaveOut) {
  ForgetFailure();
  Text before;
  if (!GetCurrentDirectory(before)) return false;
  return RestoreDirectory(before, WalkEntries(dst, src, fileSpec, mode, recurse, leaveOut));
}

bool CFileUtil::WalkEntries(TextView dst, TextView src, TextView fileSpec, WalkMode mode,
                            bool recurse, TextView leaveOut) {
  if (!ValidatePath(src)) return Fail(kMsgSourceFilenameInvalid);
  if (mode == WalkMode::Copy && !ValidatePath(dst)) return Fail(kMsgDestinationFilenameInvalid);
  if (fileSpec.empty()) return Fail(kMsgFileSpecificationMissing);
  FindHandle found{Text(fileSpec)};
  if (!found.IsOpen()) {
    const DWORD code = GetLastError();
    // Nothing matches: no failure, but the sentence says why nothing was done. A directory that
    // cannot be listed is one: what is in it would be left out of a copy without a word.
    if (code != ERROR_FILE_NOT_FOUND && code != ERROR_PATH_NOT_FOUND) {
      return FailAt(src, code, kMsgFileSpecificationInvalid, {fileSpec});
    }
    return SetErrorMessage(kMsgFileSpecificationInvalid, {fileSpec});
  }
  do {
    const WIN32_FIND_DATAW& entry = found.Entry();
    if (IsDotEntry(entry) || (IsDirectory(entry) && !recurse)) continue;
    if (!leaveOut.empty() && leaveOut == entry.cFileName) continue;
    if (!ValidateName(entry.cFileName)) return false;
    const Text source = JoinPath(src, entry.cFileName);
    const Text destination = mode == WalkMode::Copy ? JoinPath(dst, entry.cFileName) : Text();
    const bool done = IsDirectory(entry)
                          ? WalkDirectory(entry.cFileName, destination, source, fileSpec, mode)
                          : WalkFile(entry, destination, source, mode);
    if (!done) return false;
  } while (found.Next());
  return !found.EndedEarly() || FailAt(src, kMsgFileSpecificationInvalid, {fileSpec});
}

bool CFileUtil::WalkDirectory(TextView name, const Text& dst, const Text& src, TextView fileSpec,
                              WalkMode mode) {
  if (!ChangeDirectory(src)) return false;
  if (mode == WalkMode::Copy && !CreateDirectoryTree(dst)) return false;
  if (!WalkEntries(dst, src, fileSpec, mode, /*recurse=*/true, {})) return false;
  if (!ChangeDirectory(OLESTR(".."))) return false;
  return mode != WalkMode::Delete || DeleteDirectoryTree(name, /*recurse=*/true);
}

bool CFileUtil::WalkFile(const WIN32_FIND_DATAW& entry, const Text& dst, const Text& src,
                         WalkMode mode) {
  switch (mode) {
    case WalkMode::Copy:
      // In parts, so that who watches the bytes is not left waiting for all of them at the end.
      return CopyEntry(entry, dst, src) &&
             (flush_ == nullptr || unflushedBytes_ < kBytesPerFlush || FlushAll(*flush_));
    case WalkMode::Delete:
      return DeleteFile(src);
    case WalkMode::Count:
      ++fileCount_;
      ++fileCount64_;
      return true;
    case WalkMode::Size:
      break;
  }
  std::uint64_t sizeBytes = 0;
  if (!GetFileSize64(src, sizeBytes)) return false;
  byteTotal64_ += sizeBytes;
  byteTotal_ += static_cast<std::uint32_t>(sizeBytes);
  return true;
}

// The listing has told of a plain file what CopyFile would ask for once more.
bool CFileUtil::CopyEntry(const WIN32_FIND_DATAW& entry, const Text& dst, const Text& src) {
  const std::uint64_t sizeBytes = std::uint64_t{entry.nFileSizeHigh} << 32 | entry.nFileSizeLow;
  if (quillon::IsLink(entry) || sizeBytes == 0) return CopyFile(dst, src, /*append=*/false);
  if (!ValidatePath(src)) return Fail(kMsgSourceFilenameInvalid);
  if (!ValidatePath(dst)) return Fail(kMsgDestinationFilenameInvalid);
  return CopySized(dst, src, sizeBytes, /*append=*/false);
}

}  // namespace quillon
