// What the files in the root of a file set are called that are no objects.
#pragma once

#include "foundation/text.h"

namespace quillon {

inline constexpr const OLECHAR* kDicomDirName = OLESTR("DICOMDIR");
inline constexpr const OLECHAR* kUnfinishedMarkName = OLESTR("UNFINISHED.TXT");
inline constexpr const OLECHAR* kLabelFileName = OLESTR("LABEL.TXT");
inline constexpr const OLECHAR* kSumsFileName = OLESTR("SHA256SUMS");

}  // namespace quillon
