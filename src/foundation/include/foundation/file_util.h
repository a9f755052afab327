// The system's one door to the file system. Every operation answers true on success; a failure
// leaves one sentence. Paths are wide, with "\" or "/" and at most 260 characters. Walks and tree
// operations change the process's working directory and restore it on success.
#pragma once

#include <cstdint>

#include "foundation/base_item.h"
#include "foundation/buffer.h"
#include "foundation/path_info.h"

namespace quillon {

inline constexpr std::size_t kMaxPathChars = 260;

enum class DirectoryOp { ChangeTo = 0, Create = 1, Remove = 2 };

class CFileUtil : public CBaseItem {
 public:
  CFileUtil();

  bool Split(TextView path, CPathInfo& parts);
  bool HasDrive(TextView path);  // leaves no message
  bool ValidatePath(TextView path);
  bool PathExists(TextView path);
  // True when path is the directory or lies below it, whatever links lead there; what does not
  // exist yet lies where it would be made. No message.
  bool LiesWithin(TextView path, TextView directory);
  bool GetFileAttributes(TextView path, WIN32_FILE_ATTRIBUTE_DATA& data);
  bool GetFileSize(TextView path, std::uint32_t& sizeBytes);    // refuses empty files
  bool GetFileSize64(TextView path, std::uint64_t& sizeBytes);  // refuses empty files

  bool GetCurrentDirectory(Text& out);
  bool ChangeDirectory(TextView path);
  bool DirectoryOperation(TextView path, DirectoryOp op);
  bool CreateDirectoryTree(TextView path);
  bool DeleteAllFiles(TextView dir, bool recurse);
  bool DeleteDirectoryTree(TextView path, bool recurse);

  bool DeleteFile(TextView path);
  bool CopyFile(TextView dst, TextView src, bool append);
  // Gives src the name dst, replacing a file of that name: by renaming within a file system, else
  // by a copy that is on the disk before src is deleted. A symbolic link is copied, never moved.
  // On failure src is whole in its place (or dst is whole, when only deleting src failed).
  bool MoveFile(TextView dst, TextView src);
  bool WriteData(const std::uint8_t* data, std::uint32_t lengthBytes, TextView path, bool append);
  bool WriteBuffer(const CBuffer& buffer, TextView path, bool append);

  // Walk the current working directory, which the caller set to src before.
  bool GetDirectorySize(std::uint64_t& sizeBytes, TextView src, TextView fileSpec, bool recurse);
  bool CountFiles(std::uint32_t& count, TextView src, TextView fileSpec, bool recurse);
  bool CopyDirectory(TextView dst, TextView src, TextView fileSpec, bool recurse);

  bool GetTempDirectory(Text& out, bool create, bool addSubdirectory);
  void GetTempSubdirectoryName(Text& out) const { out = tempSubdirectoryName_; }

 private:
  enum class WalkMode { Copy = 0, Delete = 1, Count = 2, Size = 3 };

  bool Walk(TextView dst, TextView src, TextView fileSpec, WalkMode mode, bool recurse);
  bool WalkEntries(TextView dst, TextView src, TextView fileSpec, WalkMode mode, bool recurse);
  bool WalkDirectory(TextView name, const Text& dst, const Text& src, TextView fileSpec,
                     WalkMode mode);
  bool WalkFile(const Text& dst, const Text& src, WalkMode mode);

  bool CheckDirectoryPart(TextView drive, TextView directory);
  bool QueryAttributes(const Text& path, WIN32_FILE_ATTRIBUTE_DATA& data);
  bool CreateMissingDirectories(TextView path);
  bool DeleteEntry(const WIN32_FIND_DATAW& entry, bool recurse);
  bool EmptyAndRemove(TextView parent, TextView name, bool recurse);
  // Sets the working directory to one that was read before; an earlier failure keeps its sentence.
  bool RestoreDirectory(const Text& path, bool succeeded);
  bool FailDirectoryOperation(TextView path, DirectoryOp op, DWORD code);

  // Copies, and says whether dst was created (its earlier content is then gone).
  bool CopyContents(const Text& dst, const Text& src, bool append, bool& dstCreated);
  bool CopyStream(HANDLE dst, HANDLE src, bool append);
  bool WriteChunks(HANDLE file, const std::uint8_t* data, std::uint32_t lengthBytes);

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
