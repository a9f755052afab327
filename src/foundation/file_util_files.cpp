// The part of CFileUtil that copies, moves, writes and deletes single files.
#include <algorithm>
#include <memory>
#include <new>

#include "file_identity.h"
#include "foundation/file_handle.h"
#include "foundation/file_system_flush.h"
#include "foundation/file_util.h"
#include "path_parts.h"
#include "platform/services.h"
#include "read_only.h"

namespace quillon {

namespace {

constexpr std::uint32_t kChunkBytes = 32768;

HANDLE OpenToWrite(const Text& path, DWORD disposition) {
  return CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, disposition, FILE_FLAG_WRITE_THROUGH,
                     nullptr);
}

HANDLE OpenToRead(const Text& path) {
  return CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                     FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
}

// Makes a file in the directory of path, under a name that nothing there has.
HANDLE OpenBeside(const Text& path, Text& name) {
  constexpr int kTries = 1000;
  const PathParts parts = SplitPath(path);
  HANDLE file = INVALID_HANDLE_VALUE;
  for (int number = 0; number < kTries; ++number) {
    name.assign(parts.drive)
        .append(parts.directory)
        .append(OLESTR("~Q"))
        .append(NumberText(number));
    file = OpenToWrite(name, CREATE_NEW);
    if (file != INVALID_HANDLE_VALUE || GetLastError() != ERROR_FILE_EXISTS) break;
  }
  return file;
}

// Gives the file a name in the place of what has it.
bool Rename(const Text& to, const Text& from, DWORD flags) {
  return DespiteReadOnly(to, ClearReadOnly, [&] {
    return MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | flags) != FALSE;
  });
}

// The mark of a file that was moved says nothing of what it is for now, and would keep it where it
// is. It stays when the user's own names of the file would lose it.
void FreeOfReadOnly(const Text& path, DWORD attributes) {
  if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) ClearReadOnlyOfSoleName(path);
}

bool SeekToEnd(HANDLE file) {
  LARGE_INTEGER distance{};
  return SetFilePointerEx(file, distance, nullptr, FILE_END) != FALSE;
}

bool WriteAll(HANDLE file, const std::uint8_t* data, DWORD lengthBytes) {
  DWORD written = 0;
  if (WriteFile(file, data, lengthBytes, &written, nullptr) == FALSE) return false;
  if (written == lengthBytes) return true;
  SetLastError(ERROR_DISK_FULL);
  return false;
}

bool IsMissing(HANDLE stream) { return stream == nullptr || stream == INVALID_HANDLE_VALUE; }

}  // namespace

bool CFileUtil::DeleteFile(TextView path) {
  if (!ValidatePath(path)) return false;
  const Text name(path);
  const auto remove = [&name] { return DeleteFileW(name.c_str()) != FALSE; };
  return DespiteReadOnly(name, ClearReadOnly, remove) || FailAt(path, kMsgCannotDeleteFile, {path});
}

bool CFileUtil::CopyFile(TextView dst, TextView src, bool append) {
  ForgetFailure();
  if (!ValidatePath(src)) return Fail(kMsgSourceFilenameInvalid);
  if (!ValidatePath(dst)) return Fail(kMsgDestinationFilenameInvalid);
  std::uint64_t sizeBytes = 0;
  return GetFileSize64(src, sizeBytes) && CopySized(dst, src, sizeBytes, append);
}

bool CFileUtil::CopySized(TextView dst, TextView src, std::uint64_t sizeBytes, bool append) {
  const Text fromName(src);
  const Text toName(dst);
  FileHandle from(OpenToRead(fromName));
  if (!from.IsOpen()) return FailAt(src, kMsgCannotOpenFile, {src});
  // Opening dst empties it; while src is open without sharing, that fails for another name of src.
  FileHandle to(OpenToWrite(toName, CREATE_ALWAYS));
  if (!to.IsOpen()) return FailAt(dst, kMsgCannotOpenFile, {dst});
  return CopyOpened(to, from, sizeBytes, append, toName, fromName);
}

// Closes both, so that the copy is whole when this succeeds.
bool CFileUtil::CopyOpened(FileHandle& to, FileHandle& from, std::uint64_t sizeBytes, bool append,
                           const Text& dst, const Text& src) {
  if (!CopyStream(to.Get(), from.Get(), sizeBytes, append, dst, src)) return false;
  if (!to.Close()) return FailAt(dst, kMsgCannotCloseFile, {dst});
  if (!from.Close()) return FailAt(src, kMsgCannotCloseFile, {src});
  return true;
}

bool CFileUtil::CopyStream(HANDLE dst, HANDLE src, std::uint64_t sizeBytes, bool append,
                           const Text& dstName, const Text& srcName) {
  if (IsMissing(src)) return Fail(kMsgSourceStreamInvalid);
  if (IsMissing(dst)) return Fail(kMsgDestinationStreamInvalid);
  if (append && !SeekToEnd(dst)) return FailAt(dstName, kMsgCannotAppendToStream, {});
  const std::unique_ptr<std::uint8_t[]> chunk(new (std::nothrow) std::uint8_t[kChunkBytes]);
  if (chunk == nullptr) return Fail(kMsgNoStorageForFileCopy);
  // What the system does not copy is read and written: all of it, the rest, or nothing.
  CopyInSystem(dst, src, sizeBytes);
  for (;;) {
    DWORD readBytes = 0;
    if (ReadFile(src, chunk.get(), kChunkBytes, &readBytes, nullptr) == FALSE) {
      return FailAt(srcName, kMsgCannotReadStream, {});
    }
    if (!WriteAll(dst, chunk.get(), readBytes)) return FailAt(dstName, kMsgCannotWriteStream, {});
    if (copyProgress_ && readBytes != 0) copyProgress_(readBytes);
    unflushedBytes_ += readBytes;
    if (readBytes < kChunkBytes) break;
  }
  return FlushCopy(dst, dstName);
}

bool CFileUtil::MoveFile(TextView dst, TextView src) {
  ForgetFailure();
  if (!ValidatePath(src)) return Fail(kMsgSourceFilenameInvalid);
  if (!ValidatePath(dst)) return Fail(kMsgDestinationFilenameInvalid);
  const Text from(src);
  const Text to(dst);
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!QueryAttributes(from, data)) return false;
  if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ||
      (data.nFileSizeLow == 0 && data.nFileSizeHigh == 0)) {
    return FailAt(src, ERROR_SUCCESS, kMsgNotAValidFile, {src});
  }
  // A link is not the file: renamed, it would lead elsewhere or into the user's own directories.
  const bool isLink = (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  // Nobody waits for the disk here: after a power cut the file is whole under one name or the
  // other.
  if (!isLink && Rename(to, from, /*flags=*/0)) {
    FreeOfReadOnly(to, data.dwFileAttributes);
    return true;
  }
  // A link stands for a file that may be moved before the batch is finished.
  if (batch_ != nullptr && !isLink) return CopyToBatch(to, from);
  FileStamp stamp;
  bool isOnDisk = false;
  return CopyAndReplace(to, from, stamp, isOnDisk) && DeleteFile(src);
}

bool CFileUtil::MoveSeenFile(TextView dst, TextView src, DWORD attributes, MoveBatch& batch) {
  const Text to(dst);
  // What is in the way, or cannot be renamed, is looked at after all.
  if (RenameFile(Text(src).c_str(), to.c_str()) == FALSE) return MoveFile(dst, src, batch);
  FreeOfReadOnly(to, attributes);
  return true;
}

// The copy gets a name of its own first: what is written through a name that exists would change
// every other name of that file, and what a link leads to.
bool CFileUtil::CopyAndReplace(const Text& dst, const Text& src, FileStamp& stamp, bool& isOnDisk) {
  FileHandle from(OpenToRead(src));
  FileIdentity source;
  if (!from.IsOpen() || !ReadFacts(from.Get(), source, stamp)) {
    return FailAt(src, kMsgCannotOpenFile, {src});
  }
  // Then deleting src, by whatever other name, would delete the copy.
  if (FileIdentity target; ReadIdentity(dst, target) && target == source) {
    return FailAt(dst, ERROR_SHARING_VIOLATION, kMsgCannotOpenFile, {dst});
  }
  Text copy;
  FileHandle to(OpenBeside(dst, copy));
  if (!to.IsOpen()) return FailAt(dst, kMsgCannotOpenFile, {dst});
  isOnDisk = !IsFlushedLater(to.Get());
  bool done = CopyOpened(to, from, stamp.sizeBytes, /*append=*/false, dst, src);
  if (done && !Rename(dst, copy, isOnDisk ? MOVEFILE_WRITE_THROUGH : 0)) {
    done = FailAt(dst, kMsgCannotOpenFile, {dst});
  }
  if (done) return true;
  static_cast<void>(to.Close());  // the failure is told already
  DeleteFileW(copy.c_str());
  return false;
}

bool CFileUtil::WriteData(const std::uint8_t* data, std::uint32_t lengthBytes, TextView path,
                          bool append) {
  ForgetFailure();
  if (data == nullptr) return Fail(kMsgDataBufferInvalid);
  if (lengthBytes == 0) return Fail(kMsgDataBufferLengthInvalid);
  if (path.empty()) return Fail(kMsgPathNameInvalid);
  const Text name(path);
  HANDLE opened = INVALID_HANDLE_VALUE;
  const auto open = [&] {
    opened = OpenToWrite(name, append ? OPEN_ALWAYS : CREATE_ALWAYS);
    return opened != INVALID_HANDLE_VALUE;
  };
  if (!(append ? open() : DespiteReadOnly(name, ClearReadOnlyOfSoleName, open))) {
    return FailAt(path, kMsgCannotOpenFile, {path});
  }
  FileHandle file(opened);
  if (append && !SeekToEnd(file.Get())) return FailAt(path, kMsgCannotAppendTo, {path});
  if (!WriteChunks(file.Get(), data, lengthBytes, path)) return false;
  return file.Close() || FailAt(path, kMsgCannotCloseFile, {path});
}

bool CFileUtil::WriteChunks(HANDLE file, const std::uint8_t* data, std::uint32_t lengthBytes,
                            TextView path) {
  for (;;) {
    const std::uint32_t chunkBytes = std::min(lengthBytes, kChunkBytes);
    if (!WriteAll(file, data, chunkBytes)) return FailAt(path, kMsgCannotWriteStream, {});
    if (chunkBytes < kChunkBytes) break;
    data += chunkBytes;
    lengthBytes -= chunkBytes;
  }
  return IsFlushedLater(file) || FlushFileBuffers(file) != FALSE ||
         FailAt(path, kMsgCannotFlushStream, {});
}

bool CFileUtil::WriteData(const std::uint8_t* data, std::uint32_t lengthBytes, TextView path,
                          FileSystemFlush& flush) {
  struct Scope {
    FileSystemFlush*& current;
    ~Scope() { current = nullptr; }
  } const scope{flush_};
  if (flush.IsPossible()) flush_ = &flush;
  return WriteData(data, lengthBytes, path, /*append=*/false);
}

bool CFileUtil::WriteBuffer(const CBuffer& buffer, TextView path, bool append) {
  ForgetFailure();
  if (!ValidatePath(path)) return Fail(kMsgPathNameInvalid);
  if (buffer.IsEmpty()) return Fail(kMsgDataBufferInvalid);
  return WriteData(buffer.GetData(), buffer.GetSize(), path, append);
}

}  // namespace quillon
