// Path names put together from parts, within the length that Windows' path calls take.
#pragma once

#include "foundation/base_item.h"
#include "foundation/file_util.h"

namespace quillon {

inline constexpr const OLECHAR* kMaxPathCharsText = OLESTR("260");

// Appends component to path. False, with the sentence left in errors and path as it was, when the
// result would have more than 260 characters.
[[nodiscard]] bool JoinPath(Text& path, TextView component, CBaseItem& errors);

[[nodiscard]] bool EndsInSeparator(TextView path);

// The same with a "\" between them unless path ends in a separator.
[[nodiscard]] bool JoinBelow(Text& path, TextView component, CBaseItem& errors);

// The directory that holds this file or directory; empty for the root of a file system and for a
// name alone.
Text ParentDirectory(const Text& path);

// The longest part of the path that exists; empty when nothing of it does.
Text ExistingPart(Text path, CFileUtil& files);

// The path from its drive or root on, so that it stays valid when the working directory changes.
Text AbsolutePath(const Text& path);

// The same in the form in which two spellings of a path compare equal, without a separator at its
// end. Letter case does not tell files apart on every file system, and taking two files for one
// only refuses a creation.
Text ComparablePath(const Text& path);

// Of two such: whether the path is the directory or lies below it.
[[nodiscard]] bool IsAtOrBelow(const Text& path, const Text& directory);

}  // namespace quillon
