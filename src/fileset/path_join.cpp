#include "path_join.h"

#include <array>

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

Text AbsolutePath(const Text& path) {
  std::array<OLECHAR, 1024> full;
  const DWORD length =
      GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  return length == 0 || length >= full.size() ? path : Text(full.data(), length);
}

}  // namespace quillon
