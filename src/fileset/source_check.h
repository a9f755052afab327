// What can be known of the sources before the first of them is moved.
#pragma once

#include <vector>

#include "fileset/planned_file_set.h"
#include "foundation/file_util.h"
#include "foundation/position_index.h"

namespace quillon {

// False, with the sentence of the first object that cannot be moved: its source is gone, empty, no
// file, has changed since it was read, is a file that comes up twice, cannot be taken away or,
// where it has to be copied, be read any more, or already lies in the object directory or is the
// DICOMDIR, where it could be overwritten before its turn. Tells the bytes that have to be copied
// because their volume is not the root's.
class SourceCheck {
 public:
  SourceCheck(const Text& rootDirectory, const Text& objectDirectory, const Text& dicomDir,
              CFileUtil& files, CBaseItem& errors);

  [[nodiscard]] bool Run(const std::vector<PlannedObject>& objects);
  // Only the rule about the file set's own place.
  [[nodiscard]] bool CheckOutside(const std::vector<PlannedObject>& objects);
  [[nodiscard]] std::uint64_t BytesToCopy() const { return bytesToCopy_; }
  // After Run, for each object: the attributes of a file on the root's volume that is no link, else
  // 0.
  [[nodiscard]] const std::vector<DWORD>& Renamable() const { return renamable_; }

 private:
  // A source that was looked at: the identity of its file, and whether and how it may go away with
  // another name.
  struct Seen {
    FileIdentity identity;
    const Text* path;
    std::uint32_t links;
    bool isLink;
  };

  [[nodiscard]] bool CheckOne(const PlannedObject& object);
  // True when the file is the one that was read, and there is nothing to open it for; facts are
  // told then.
  [[nodiscard]] bool IsSeenAgain(const PlannedObject& object, FileFacts& facts, DWORD& attributes);
  [[nodiscard]] bool IsSecond(const Text& path, const FileFacts& facts);

  CFileUtil& files_;
  CBaseItem& errors_;
  Text objectDirectory_;
  Text dicomDir_;
  FileIdentity root_;
  std::vector<Seen> seen_;
  PositionIndex seenByIdentity_;
  Text lastParent_;
  std::uint64_t bytesToCopy_ = 0;
  std::vector<DWORD> renamable_;
};

}  // namespace quillon
