// Path names put together from parts, within the length that Windows' path calls take.
#pragma once

#include "foundation/base_item.h"
#include "foundation/file_util.h"

namespace quillon {

inline constexpr const OLECHAR* kMaxPathCharsText = OLESTR("260");

// Appends component to path. False, with the sentence left in errors and path as it was, when the
// result would have more than 260 characters.
bool JoinPath(Text& path, TextView component, CBaseItem& errors);

[[nodiscard]] bool EndsInSeparator(TextView path);

// The same with a "\" between them unless path ends in a separator.
bool JoinBelow(Text& path, TextView component, CBaseItem& errors);

// The path from its drive or root on, so that it stays valid when the working directory changes.
Text AbsolutePath(const Text& path);

}  // namespace quillon
