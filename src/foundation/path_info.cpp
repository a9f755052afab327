#include "foundation/path_info.h"

#include "foundation/file_util.h"
#include "path_parts.h"

namespace quillon {

CPathInfo::CPathInfo() { SetClassName(OLESTR("CPathInfo")); }

bool CPathInfo::Split(TextView path) {
  if (path.empty()) return Fail(kMsgPathNameInvalid);
  if (path.size() > kMaxPathChars) {
    return Fail(kMsgPathNameTooLong, {path, NumberText(kMaxPathChars)});
  }
  const PathParts parts = SplitPath(path);
  drive_.assign(parts.drive);
  directory_.assign(parts.directory);
  fileName_.assign(parts.fileName);
  extension_.assign(parts.extension);
  return true;
}

}  // namespace quillon
