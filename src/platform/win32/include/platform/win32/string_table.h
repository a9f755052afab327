// Linux only: the string table that LoadStringW reads. Windows has it in the module's resources.
#pragma once

#include <cstddef>

#include "platform/win32/types.h"

namespace quillon::platform {

struct StringTableRow {
  UINT id;
  const OLECHAR* text;
};

// Rows in any order, each number once; they must outlive the program. Replaces an earlier table; a
// null table takes it away. Called from a static initialiser, before there are other threads.
void SetModuleStringTable(const StringTableRow* rows, std::size_t count);

}  // namespace quillon::platform
