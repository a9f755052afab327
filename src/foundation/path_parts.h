// A path taken apart without a copy, as the C library does it.
#pragma once

#include "foundation/text.h"

namespace quillon {

constexpr TextView kPathSeparators = OLESTR("\\/");

struct PathParts {
  TextView drive;      // any character and a colon; whether it is a letter is for validation to say
  TextView directory;  // up to and with the last separator
  TextView fileName;   // up to the last dot
  TextView extension;  // from that dot on
};

constexpr bool IsPathSeparator(OLECHAR unit) { return unit == OLESTR('\\') || unit == OLESTR('/'); }

constexpr bool IsDriveLetter(OLECHAR unit) {
  return (unit >= OLESTR('A') && unit <= OLESTR('Z')) ||
         (unit >= OLESTR('a') && unit <= OLESTR('z'));
}

constexpr PathParts SplitPath(TextView path) {
  PathParts parts;
  if (path.size() >= 2 && path[1] == OLESTR(':')) {
    parts.drive = path.substr(0, 2);
    path.remove_prefix(2);
  }
  const std::size_t lastSeparator = path.find_last_of(kPathSeparators);
  if (lastSeparator != TextView::npos) {
    parts.directory = path.substr(0, lastSeparator + 1);
    path.remove_prefix(lastSeparator + 1);
  }
  const std::size_t lastDot = path.rfind(OLESTR('.'));
  parts.fileName = path.substr(0, lastDot);
  if (lastDot != TextView::npos) parts.extension = path.substr(lastDot);
  return parts;
}

// The name of a link with a separator behind it is the name of what it leads to. A root stays.
constexpr TextView WithoutLastSeparators(TextView path) {
  while (path.size() > 1 && IsPathSeparator(path.back())) path.remove_suffix(1);
  return path;
}

// A name in a directory, with a separator between them unless the directory ends in one.
inline Text JoinPath(TextView directory, TextView name) {
  Text path(directory);
  if (!directory.empty() && !IsPathSeparator(directory.back())) path.push_back(OLESTR('\\'));
  path.append(name);
  return path;
}

}  // namespace quillon
