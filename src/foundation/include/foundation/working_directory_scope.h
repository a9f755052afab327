// Puts the process's working directory back at the end of a block: operations on directory trees
// change it, and leave it changed when they fail half-way.
#pragma once

#include "foundation/file_util.h"

namespace quillon {

class WorkingDirectoryScope {
 public:
  WorkingDirectoryScope() : isKnown_(files_.GetCurrentDirectory(path_)) {}
  ~WorkingDirectoryScope() {
    if (!isKnown_) return;
    try {
      files_.ChangeDirectory(path_);
    } catch (...) {  // out of memory: nothing more can be done here
    }
  }
  WorkingDirectoryScope(const WorkingDirectoryScope&) = delete;
  WorkingDirectoryScope& operator=(const WorkingDirectoryScope&) = delete;

 private:
  CFileUtil files_;  // its own, so that the owner's last sentence stays
  Text path_;
  bool isKnown_;
};

}  // namespace quillon
