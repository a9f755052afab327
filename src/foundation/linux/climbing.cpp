#include "climbing.h"

namespace quillon {

// The system finds ".." from where the path leads to, so no other name is needed.
Text RealPath(const Text& path) { return path; }

bool ClimbToParent(Text& realPath) {
  realPath += OLESTR("\\..");
  return true;
}

}  // namespace quillon
