#include "foundation/own_module.h"

#include <algorithm>
#include <functional>
#include <iterator>

#include "platform/win32/string_table.h"

namespace quillon {
namespace {

constexpr platform::StringTableRow kMessageRows[] = {
#define QUILLON_MESSAGE(name, number, text) {(number), OLESTR(text)},
#include "messages.inc"
#undef QUILLON_MESSAGE
};

static_assert(std::ranges::adjacent_find(kMessageRows, std::ranges::greater_equal{},
                                         &platform::StringTableRow::id) == std::end(kMessageRows),
              "rows ascend by number, without doubles");

HMODULE ModuleOf(const void* address) {
  HMODULE found = nullptr;
  const DWORD flags =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  GetModuleHandleExW(flags, static_cast<LPCWSTR>(address), &found);
  return found;
}

}  // namespace

// A module here has no resources: the table is handed to the layer before it is first asked.
HINSTANCE OwnModule() {
  static const HINSTANCE module = [] {
    platform::SetModuleStringTable(kMessageRows, std::size(kMessageRows));
    return ModuleOf(kMessageRows);
  }();
  return module;
}

}  // namespace quillon
