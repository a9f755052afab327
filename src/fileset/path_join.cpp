#include "path_join.h"

namespace quillon {

bool JoinPath(Text& path, TextView component, CBaseItem& errors) {
  if (path.size() + component.size() > kMaxPathChars) {
    return errors.Fail(kMsgJoinedPathTooLong, {path, component, kMaxPathCharsText});
  }
  path += component;
  return true;
}

bool EndsInSeparator(TextView path) {
  return !path.empty() && (path.back() == OLESTR('\\') || path.back() == OLESTR('/'));
}

bool JoinBelow(Text& path, TextView component, CBaseItem& errors) {
  if (!EndsInSeparator(path) && !JoinPath(path, OLESTR("\\"), errors)) return false;
  return JoinPath(path, component, errors);
}

Text ParentDirectory(const Text& path) {
  const std::size_t separator = path.find_last_of(OLESTR("\\/"));
  if (separator == Text::npos || separator + 1 == path.size()) return {};
  const bool isTop = separator == 0 || path[separator - 1] == OLESTR(':');
  return path.substr(0, isTop ? separator + 1 : separator);
}

Text ExistingPart(Text path, CFileUtil& files) {
  while (!path.empty() && !files.PathExists(path)) path = ParentDirectory(path);
  return path;
}

Text AbsolutePath(const Text& path) {
  const DWORD needed = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  Text full(needed, OLECHAR{0});
  const DWORD length = GetFullPathNameW(path.c_str(), needed, full.data(), nullptr);
  if (length == 0 || length >= needed) return path;
  full.resize(length);
  return full;
}

Text ComparablePath(const Text& path) {
  Text full = AbsolutePath(path);
  for (OLECHAR& unit : full) {
    if (unit == OLESTR('/')) {
      unit = OLESTR('\\');
    } else if (unit >= OLESTR('a') && unit <= OLESTR('z')) {
      unit = static_cast<OLECHAR>(unit - OLESTR('a') + OLESTR('A'));
    }
  }
  while (full.size() > 1 && full.back() == OLESTR('\\')) full.pop_back();
  return full;
}

bool IsAtOrBelow(const Text& path, const Text& directory) {
  return path.starts_with(directory) &&
         (path.size() == directory.size() || path[directory.size()] == OLESTR('\\') ||
          EndsInSeparator(directory));
}

}  // namespace quillon
