// From a file or directory that exists up to the directories that it really lies in.
#pragma once

#include "foundation/text.h"

namespace quillon {

// What a path leads to, under a name without links where the platform has one for it; else the
// path.
Text RealPath(const Text& path);

// Makes it the path of the directory that it lies in. False at the top; not every platform tells.
bool ClimbToParent(Text& realPath);

}  // namespace quillon
