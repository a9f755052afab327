// Puts the process's working directory back at the end of a block: operations on directory trees
// change it, and leave it changed when they fail half-way.
#pragma once

#include <memory>

#include "foundation/file_util.h"

namespace quillon {

class WorkingDirectoryScope {
 public:
  WorkingDirectoryScope() { static_cast<void>(CFileUtil().GetCurrentDirectory(path_)); }
  // As the platform named it, unchecked: a working directory may have a name that a path of the
  // system's own may not.
  ~WorkingDirectoryScope() {
    if (path_.empty() || TryToRestore()) return;
    reserve_.reset();
    static_cast<void>(TryToRestore());
  }
  WorkingDirectoryScope(const WorkingDirectoryScope&) = delete;
  WorkingDirectoryScope& operator=(const WorkingDirectoryScope&) = delete;

 private:
  // False when memory is short.
  bool TryToRestore() {
    try {
      SetCurrentDirectoryW(path_.c_str());
      return true;
    } catch (...) {
      return false;
    }
  }

  Text path_;  // empty when it is not known
  // Given up for the way back when memory runs out in between.
  std::unique_ptr<char[]> reserve_ = std::make_unique<char[]>(16384);
};

}  // namespace quillon
