// The system's one door to the file system. Every operation answers true on success; a failure
// leaves one sentence and answers false. Paths are wide, with "\" or "/" between their parts and at
// most 260 characters; every operation checks those it is given with ValidatePath first and fails
// with that check's sentence, or, where two paths are given, with "The source filename is invalid."
// or "The destination filename is invalid.". No file stays open between two calls. Walks and tree
// operations change the process's working directory and restore it on success.
#pragma once

#include <compare>
#include <cstdint>
#include <functional>

#include "foundation/base_item.h"
#include "foundation/buffer.h"
#include "foundation/path_info.h"

namespace quillon {

inline constexpr std::size_t kMaxPathChars = 260;

enum class DirectoryOp { ChangeTo = 0, Create = 1, Remove = 2 };

// Tells one file from every other, whatever it is called.
struct FileIdentity {
  std::uint32_t volume = 0;
  std::uint64_t index = 0;
  auto operator<=>(const FileIdentity&) const = default;
};

// Tells whether a file is still the one that was looked at before.
struct FileStamp {
  std::uint64_t sizeBytes = 0;
  std::uint64_t lastWrite = 0;  // in 100 ns since 1601
  bool operator==(const FileStamp&) const = default;
};

// Of a file's attributes or of an open file's information.
template <typename Data>
FileStamp StampOf(const Data& data) {
  return {std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow,
          std::uint64_t{data.ftLastWriteTime.dwHighDateTime} << 32 |
              data.ftLastWriteTime.dwLowDateTime};
}

// What one look at a file tells.
struct FileFacts {
  FileIdentity identity;  // of a link, of what it leads to
  FileStamp stamp;
  std::uint32_t links = 1;  // names of the file
  bool isLink = false;
  bool isEmptyFile = false;  // the look failed for nothing but that
};

class FileHandle;
class FileSystemFlush;
class MoveBatch;

class CFileUtil : public CBaseItem {
 public:
  CFileUtil();

  // With it files of no bytes are copied, measured and counted as others are. Off at first.
  void SetAcceptEmptyFiles(bool accept) { acceptEmptyFiles_ = accept; }

  // Told the bytes of each block that a copy has written, also where a move or a walk copies. It
  // must not throw. An empty function ends that.
  void SetCopyProgress(std::function<void(std::uint64_t bytes)> progress) {
    copyProgress_ = std::move(progress);
  }

  // After a copy, move, write or walk that failed: the file or directory that was in the way, and
  // the platform's text for what happened to it ("There is not enough space on the disk."). Empty
  // when the failure was none of a file, or none of the platform's.
  [[nodiscard]] const Text& FailedPath() const { return failedPath_; }
  [[nodiscard]] const Text& FailedReason() const { return failedReason_; }

  // ---- names

  // Fails for an empty path ("The path name is invalid.") and for one over 260 characters.
  [[nodiscard]] bool Split(TextView path, CPathInfo& parts);
  // Whether the path begins with a drive. Leaves no sentence.
  [[nodiscard]] bool HasDrive(TextView path);
  // Fails as Split does; for a drive that is no letter; for a character that a directory, a file
  // name or an extension cannot have; for separators that are doubled (but for the two in front of
  // a network path) or mixed side by side. The sentence names the offending part.
  [[nodiscard]] bool ValidatePath(TextView path);
  // The same for one name that a directory was found to hold. Systems that allow separators and
  // other signs of a path in a name would have it lead to another file.
  [[nodiscard]] bool ValidateName(TextView name);

  // ---- questions; a path that names nothing fails with "The path ... cannot be found."

  [[nodiscard]] bool PathExists(TextView path);
  // True when path is the directory or lies below it, whatever links lead there; what does not
  // exist yet lies where it would be made. No message.
  [[nodiscard]] bool LiesWithin(TextView path, TextView directory);
  [[nodiscard]] bool GetFileAttributes(TextView path, WIN32_FILE_ATTRIBUTE_DATA& data);
  // In bytes, the low 32 bits of it. Fails for a directory and when those bits are 0: an empty file
  // is "not a valid file", and so is one of a whole multiple of 4 GiB.
  [[nodiscard]] bool GetFileSize(TextView path, std::uint32_t& sizeBytes);
  // In bytes. Fails for a directory and, unless those are accepted, for an empty file.
  [[nodiscard]] bool GetFileSize64(TextView path, std::uint64_t& sizeBytes);
  // Of a file or directory, or what a link to one leads to: two names with one identity are names
  // of one file.
  [[nodiscard]] bool GetFileIdentity(TextView path, FileIdentity& identity);
  // What this user may still write to the file system that an existing directory lies on.
  [[nodiscard]] bool GetFreeBytes(TextView directory, std::uint64_t& bytes);
  // Whether the name itself is a link (a reparse point), whatever it leads to. No message.
  [[nodiscard]] bool IsLink(TextView path);

  // Looks at a file that is to be read, or with forMoving to be moved. Fails for what is not there,
  // for a directory or an empty file ("not a valid file"), for one that cannot be opened and, with
  // forMoving, for one that its directory does not let go of ("Cannot delete the file ...").
  [[nodiscard]] bool ProbeFile(TextView path, bool forMoving, FileFacts& facts);

  // ---- directories; the reason in "Cannot ... the directory ..." is the platform's

  [[nodiscard]] bool GetCurrentDirectory(Text& out);
  [[nodiscard]] bool ChangeDirectory(TextView path);
  // Changes to, creates or removes (when empty) one directory.
  [[nodiscard]] bool DirectoryOperation(TextView path, DirectoryOp op);
  // Creates what is missing of the path. Succeeds when nothing is.
  [[nodiscard]] bool CreateDirectoryTree(TextView path);
  // Deletes the files in a directory and, with recurse, empties and removes its subdirectories.
  // Links are removed, not followed. The first failure ends it.
  [[nodiscard]] bool DeleteAllFiles(TextView dir, bool recurse);
  // The same, and removes the directory itself unless it is a root. At most 259 characters.
  [[nodiscard]] bool DeleteDirectoryTree(TextView path, bool recurse);
  // Takes a link away and leaves what it leads to. What is no link stays: "Cannot delete the file".
  [[nodiscard]] bool RemoveLink(TextView path);
  // Gives a directory another name on the same file system. Fails with "Cannot rename ... to ..."
  // when something has that name, also an empty directory.
  [[nodiscard]] bool RenameDirectory(TextView to, TextView from);

  // ---- files

  // Read-only files too, as the deletions above.
  [[nodiscard]] bool DeleteFile(TextView path);
  // Copies the bytes of one file, over dst when that exists. Fails as GetFileSize64 does for src,
  // and when both name one file. A failure can leave part of dst.
  [[nodiscard]] bool CopyFile(TextView dst, TextView src, bool append);
  // Gives src the name dst in the place of a file or link of that name, whose other names and
  // target stay as they are: by renaming within a file system, else by a copy beside dst that is on
  // the disk under that name before src is deleted. A symbolic link is copied, never moved. Neither
  // file need be writable; what was moved is, unless src has other names that would become so. On
  // failure src is whole in its place, and what dst was too (or both are whole, when only deleting
  // src failed).
  [[nodiscard]] bool MoveFile(TextView dst, TextView src);
  // The same for one of many files. Where src has to be copied and one flush reaches the copy, src
  // stays for FinishMoves to delete. That is called here when the batch is full, whose failure is
  // then this one's, and when this file's move fails, which stays the failure that is told.
  [[nodiscard]] bool MoveFile(TextView dst, TextView src, MoveBatch& batch);
  // Brings the copies of the batch to the disk and then deletes their sources. Every source is in
  // its place when the flush fails. One that has changed since it was copied stays, with "The file
  // ... has changed since it was added."; it and those behind it, which stay too, have copies. So
  // do all when the batch ends without this.
  [[nodiscard]] bool FinishMoves(MoveBatch& batch);
  // The same for a file that GetFileAttributes has just told these attributes of, on the volume of
  // dst: it is not looked at again.
  [[nodiscard]] bool MoveSeenFile(TextView dst, TextView src, DWORD attributes, MoveBatch& batch);
  // Writes lengthBytes (at least 1) to a file that is created when missing; with append behind what
  // it holds, else in its place, also when that was read-only. On the disk when it succeeds.
  [[nodiscard]] bool WriteData(const std::uint8_t* data, std::uint32_t lengthBytes, TextView path,
                               bool append);
  // The same, without append, for one of many files that FlushAll brings to the disk.
  [[nodiscard]] bool WriteData(const std::uint8_t* data, std::uint32_t lengthBytes, TextView path,
                               FileSystemFlush& flush);
  // The same with the bytes of a buffer, which must hold some.
  [[nodiscard]] bool WriteBuffer(const CBuffer& buffer, TextView path, bool append);

  // ---- walks over the files that match fileSpec ("*.*" matches every name) in the current working
  // directory, which the caller set to src before, and with recurse in those below it. When nothing
  // matches they succeed, with 0, and leave "The file specification ... is invalid."; with the same
  // sentence they fail when a directory cannot be listed to its end.

  [[nodiscard]] bool GetDirectorySize(std::uint64_t& sizeBytes, TextView src, TextView fileSpec,
                                      bool recurse);
  [[nodiscard]] bool CountFiles(std::uint32_t& count, TextView src, TextView fileSpec,
                                bool recurse);
  // Makes the subdirectories it needs below dst, which exists. The first failure ends it; what was
  // copied stays. What is called leaveOut in src itself is not copied. All is on the disk when it
  // succeeds: where the platform can, many files are flushed at once.
  [[nodiscard]] bool CopyDirectory(TextView dst, TextView src, TextView fileSpec, bool recurse,
                                   TextView leaveOut = {});

  // All that was written since flush was made is on the disk when it succeeds, where one flush is
  // possible.
  [[nodiscard]] bool FlushAll(FileSystemFlush& flush);

  // ---- the platform's temporary directory, with its trailing separator

  // With addSubdirectory followed by GetTempSubdirectoryName; with create made, which fails when it
  // exists.
  [[nodiscard]] bool GetTempDirectory(Text& out, bool create, bool addSubdirectory);
  void GetTempSubdirectoryName(Text& out) const { out = tempSubdirectoryName_; }

 private:
  enum class WalkMode { Copy = 0, Delete = 1, Count = 2, Size = 3 };

  [[nodiscard]] bool Walk(TextView dst, TextView src, TextView fileSpec, WalkMode mode,
                          bool recurse, TextView leaveOut);
  [[nodiscard]] bool WalkEntries(TextView dst, TextView src, TextView fileSpec, WalkMode mode,
                                 bool recurse, TextView leaveOut);
  [[nodiscard]] bool WalkDirectory(TextView name, const Text& dst, const Text& src,
                                   TextView fileSpec, WalkMode mode);
  [[nodiscard]] bool WalkFile(const WIN32_FIND_DATAW& entry, const Text& dst, const Text& src,
                              WalkMode mode);
  [[nodiscard]] bool CopyEntry(const WIN32_FIND_DATAW& entry, const Text& dst, const Text& src);

  [[nodiscard]] bool CheckDirectoryPart(TextView drive, TextView directory);
  [[nodiscard]] bool QueryAttributes(const Text& path, WIN32_FILE_ATTRIBUTE_DATA& data);
  [[nodiscard]] bool CreateMissingDirectories(TextView path);
  [[nodiscard]] bool DeleteEntry(const WIN32_FIND_DATAW& entry, bool recurse);
  [[nodiscard]] bool EmptyAndRemove(TextView parent, TextView name, bool recurse);
  // Sets the working directory to one that was read before; an earlier failure keeps its sentence.
  [[nodiscard]] bool RestoreDirectory(const Text& path, bool succeeded);
  bool FailDirectoryOperation(TextView path, DirectoryOp op, DWORD code);
  // Fails with the message, and keeps the path and the platform's last error for whoever asks.
  bool FailAt(TextView path, UINT id, std::initializer_list<TextArg> args);
  bool FailAt(TextView path, DWORD code, UINT id, std::initializer_list<TextArg> args);
  void ForgetFailure();

  // stamp gets that of what was copied; isOnDisk, whether the copy is, with its name.
  [[nodiscard]] bool CopyAndReplace(const Text& dst, const Text& src, FileStamp& stamp,
                                    bool& isOnDisk);
  [[nodiscard]] bool CopyToBatch(const Text& dst, const Text& src);
  // For a source of which the caller knows that it is a file, and about how large.
  [[nodiscard]] bool CopySized(TextView dst, TextView src, std::uint64_t sizeBytes, bool append);
  [[nodiscard]] bool CopyOpened(FileHandle& to, FileHandle& from, std::uint64_t sizeBytes,
                                bool append, const Text& dst, const Text& src);
  [[nodiscard]] bool CopyStream(HANDLE dst, HANDLE src, std::uint64_t sizeBytes, bool append,
                                const Text& dstName, const Text& srcName);
  // As much as the system itself copies of a file that is about so large.
  void CopyInSystem(HANDLE dst, HANDLE src, std::uint64_t sizeBytes);
  [[nodiscard]] bool WriteChunks(HANDLE file, const std::uint8_t* data, std::uint32_t lengthBytes,
                                 TextView path);

  // Whether the bytes of a file come to the disk with those of others.
  [[nodiscard]] bool IsFlushedLater(HANDLE file) const;
  // Answers whether the bytes of a file that was copied are on the disk, or will be with others.
  [[nodiscard]] bool FlushCopy(HANDLE dst, const Text& dstName);

  bool acceptEmptyFiles_ = false;
  FileSystemFlush* flush_ = nullptr;  // while a directory or a file of a batch is copied
  MoveBatch* batch_ = nullptr;        // while a file of it is moved
  std::uint64_t unflushedBytes_ = 0;
  std::function<void(std::uint64_t bytes)> copyProgress_;
  Text failedPath_;
  Text failedReason_;

  std::uint32_t fileCount_ = 0;
  std::uint32_t byteTotal_ = 0;
  std::uint64_t fileCount64_ = 0;
  std::uint64_t byteTotal64_ = 0;
  Text fileNameInvalidChars_;
  Text extensionInvalidChars_;
  Text directoryInvalidChars_;
  Text tempSubdirectoryName_;
};

}  // namespace quillon
