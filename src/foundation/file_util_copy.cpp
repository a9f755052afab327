// The part of CFileUtil that leaves copying to the system, and that moves many files to another
// file system with one flush for all of them.
#include <algorithm>

#include "foundation/move_batch.h"
#include "platform/services.h"

namespace quillon {

namespace {

// A smaller file is copied in one step, a larger one in sixteen at least: often enough for somebody
// who watches, and still so large that a file system that shares blocks shares many at once.
constexpr std::uint64_t kOneStepBytes = std::uint64_t{1} << 20;
constexpr std::uint64_t kMostStepBytes = std::uint64_t{8} << 20;
constexpr std::uint64_t kStepUnitBytes = std::uint64_t{64} << 10;

DWORD StepBytesOf(std::uint64_t sizeBytes) {
  if (sizeBytes < kOneStepBytes) return static_cast<DWORD>(kOneStepBytes);
  const std::uint64_t units = sizeBytes / 16 / kStepUnitBytes;
  return static_cast<DWORD>(std::min(units * kStepUnitBytes, kMostStepBytes));
}

}  // namespace

// Both files stand behind what was copied, whatever ended it.
void CFileUtil::CopyInSystem(HANDLE dst, HANDLE src, std::uint64_t sizeBytes) {
  const DWORD stepBytes = StepBytesOf(sizeBytes);
  DWORD copiedBytes = 0;
  while (CopyFileBytes(dst, src, stepBytes, &copiedBytes) != FALSE && copiedBytes != 0) {
    if (copyProgress_) copyProgress_(copiedBytes);
    unflushedBytes_ += copiedBytes;
  }
}

bool CFileUtil::IsFlushedLater(HANDLE file) const {
  // A file in the target can be a link to one that lies elsewhere.
  return flush_ != nullptr && flush_->Covers(file);
}

bool CFileUtil::FlushCopy(HANDLE dst, const Text& dstName) {
  return IsFlushedLater(dst) || FlushFileBuffers(dst) != FALSE ||
         FailAt(dstName, kMsgCannotFlushStream, {});
}

bool CFileUtil::FlushAll(FileSystemFlush& flush) {
  unflushedBytes_ = 0;
  return !flush.IsPossible() || flush.Flush() ||
         FailAt(flush.Directory(), kMsgCannotFlushStream, {});
}

bool CFileUtil::MoveFile(TextView dst, TextView src, MoveBatch& batch) {
  bool isMoved = false;
  {
    // Also when memory runs out: a single move afterwards waits for the disk itself.
    struct Scope {
      MoveBatch*& current;
      ~Scope() { current = nullptr; }
    } const scope{batch_};
    if (batch.Flush().IsPossible()) batch_ = &batch;
    isMoved = MoveFile(dst, src);
  }
  if (isMoved) return !batch.IsFull() || FinishMoves(batch);
  // Those before it are moved as if they had been moved alone, and this failure is the one to tell.
  const Text sentence = ErrorMessage();
  Text path = failedPath_;
  Text reason = failedReason_;
  if (!FinishMoves(batch)) SetErrorMessage(sentence);
  failedPath_ = std::move(path);
  failedReason_ = std::move(reason);
  return false;
}

bool CFileUtil::CopyToBatch(const Text& dst, const Text& src) {
  struct Scope {
    FileSystemFlush*& current;
    ~Scope() { current = nullptr; }
  } const scope{flush_};
  flush_ = &batch_->Flush();
  FileStamp stamp;
  bool isOnDisk = false;
  if (!CopyAndReplace(dst, src, stamp, isOnDisk)) return false;
  if (isOnDisk) return DeleteFile(src);
  batch_->Add({src, stamp});
  return true;
}

bool CFileUtil::FinishMoves(MoveBatch& batch) {
  const std::vector<MoveBatch::Source> sources = batch.Take();
  if (sources.empty()) return true;
  ForgetFailure();
  if (!FlushAll(batch.Flush())) return false;
  for (const MoveBatch::Source& source : sources) {
    WIN32_FILE_ATTRIBUTE_DATA data;
    // What was written to it since is nowhere else. One that is gone is for the deletion to tell.
    if (GetFileAttributesExW(source.path.c_str(), GetFileExInfoStandard, &data) != FALSE &&
        !(StampOf(data) == source.stamp)) {
      return FailAt(source.path, ERROR_SUCCESS, kMsgSourceChanged, {source.path});
    }
    if (!DeleteFile(source.path)) return false;
  }
  return true;
}

}  // namespace quillon
