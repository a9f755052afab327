// One job's hold on its root directory. Two jobs that lay out or deliver a file set in one root
// would give each other's objects away, so a job takes its root before it looks at it and keeps it
// until the file set is delivered; the system lets go of it when the process ends.
#pragma once

#include "foundation/base_item.h"
#include "foundation/directory_lock.h"
#include "foundation/file_util.h"

namespace quillon {

class RootClaim {
 public:
  RootClaim() = default;
  ~RootClaim() { Release(); }
  RootClaim(const RootClaim&) = delete;
  RootClaim& operator=(const RootClaim&) = delete;

  // Takes the directory, which is made with its missing levels; nothing to do when it is held
  // already. Lets go of another that was held. False, with a sentence: it cannot be made, lies in
  // the directory that every job removes, or another job has it.
  [[nodiscard]] bool TakeMaking(const Text& root, CFileUtil& files, CBaseItem& errors);
  // The same for a creation: what one that did not end left there is set aside first, so that it is
  // neither replaced by this job's objects nor rides along with them.
  [[nodiscard]] bool TakeForCreation(const Text& root, CFileUtil& files, CBaseItem& errors);
  // For a directory that is there; true, and nothing taken, when there is none.
  [[nodiscard]] bool TakeExisting(const Text& root, CFileUtil& files, CBaseItem& errors);
  // The same for a delivery: refused where a creation did not end.
  [[nodiscard]] bool TakeFinished(const Text& root, CFileUtil& files, CBaseItem& errors);
  // Levels that TakeMaking made and that are still empty go away again, unless they were kept.
  void Release();
  void KeepDirectory() { madeFrom_ = 0; }

  // Renames the held directory to "<root>.unfinished-<n>", asideDirectory, and lets go of it.
  // False, with the directory as it was, when it cannot be renamed (it is the root of a file
  // system, say).
  [[nodiscard]] bool SetAside(CFileUtil& files, Text& asideDirectory);

  // Where every recording job may leave files and every wipe removes all: the platform's temporary
  // directory followed by the temporary subdirectory's name. Empty when there is none.
  static Text TemporaryJobDirectory(CFileUtil& files);

 private:
  [[nodiscard]] bool Lock(const Text& root, CFileUtil& files, CBaseItem& errors);

  DirectoryLock lock_;
  FileIdentity identity_;
  Text directory_;            // absolute, without a separator at its end
  std::size_t madeFrom_ = 0;  // length of the part of it that was there before; 0 for all
};

// Leaves the sentence about a root with objects of a creation that did not end. Always false.
bool FailUnfinished(const Text& root, std::size_t objectCount, CBaseItem& errors);

// Empties a directory but for an entry of the name leaveOut. False, with a sentence, when it holds
// what may be the only copies, or at the first entry that cannot be removed.
[[nodiscard]] bool EmptyRoot(const Text& root, TextView leaveOut, CFileUtil& files,
                             CBaseItem& errors);

// False, with a sentence, for a directory that lies where every job removes all.
[[nodiscard]] bool CheckOutsideTemporary(const Text& directory, CFileUtil& files,
                                         CBaseItem& errors);

}  // namespace quillon
