#include "foundation/own_module.h"

namespace quillon {

// The host's program is not our module: ask for the one that holds this function.
HINSTANCE OwnModule() {
  static const HINSTANCE module = [] {
    HMODULE found = nullptr;
    const DWORD flags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    GetModuleHandleExW(flags, reinterpret_cast<LPCWSTR>(&OwnModule), &found);
    return found;
  }();
  return module;
}

}  // namespace quillon
