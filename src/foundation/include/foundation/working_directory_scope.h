// Puts the process's working directory back at the end of a block: operations on directory trees
// change it, and leave it changed when they fail half-way.
#pragma once

#include "foundation/file_util.h"

namespace quillon {

class WorkingDirectoryScope {
 public:
  WorkingDirectoryScope() { CFileUtil().GetCurrentDirectory(path_); }
  // As the platform named it, unchecked: a working directory may have a name that a path of the
  // system's own may not.
  ~WorkingDirectoryScope() {
    try {
      if (!path_.empty()) SetCurrentDirectoryW(path_.c_str());
    } catch (...) {  // out of memory: nothing more can be done here
    }
  }
  WorkingDirectoryScope(const WorkingDirectoryScope&) = delete;
  WorkingDirectoryScope& operator=(const WorkingDirectoryScope&) = delete;

 private:
  Text path_;  // empty when it is not known
};

}  // namespace quillon
