// Whether a test runs as a Windows program under Wine, which lets pass what Windows refuses.
#pragma once

#ifdef _WIN32
#include <windows.h>
#endif

namespace quillon::test {

inline bool isWine() {
#ifdef _WIN32
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
#else
  return false;
#endif
}

}  // namespace quillon::test
