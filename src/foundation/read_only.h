// Files that are marked read-only, as those from a CD are: the platform lets them be renamed, but
// neither be deleted, replaced nor written to.
#pragma once

#include "foundation/text.h"

namespace quillon {

// Takes the mark away from a file or directory. False, and nothing changed, when it has none, when
// the name is a link's, or when the platform refuses.
bool ClearReadOnly(const Text& path);

// The same for a file without any other name, which would lose the mark too.
bool ClearReadOnlyOfSoleName(const Text& path);

// Tries an operation of the platform on a file, and once more without the mark when it was refused;
// the mark comes back when that fails too. Leaves the last error of what failed.
template <typename Operation>
bool DespiteReadOnly(const Text& path, bool (*clear)(const Text&), Operation operation) {
  if (operation()) return true;
  DWORD code = GetLastError();
  if (code == ERROR_ACCESS_DENIED && clear(path)) {
    if (operation()) return true;
    code = GetLastError();
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES) {
      SetFileAttributesW(path.c_str(), attributes | FILE_ATTRIBUTE_READONLY);
    }
  }
  SetLastError(code);
  return false;
}

}  // namespace quillon
