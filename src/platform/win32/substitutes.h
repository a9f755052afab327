// What tests put in the place of the system's clock, waiting and version (platform/testing.h).
#pragma once

#include <functional>

#include "platform/win32/system.h"

namespace quillon::platform {

struct ReportedVersion {
  DWORD major = 10;
  DWORD minor = 0;
  DWORD build = 19045;
  WORD servicePackMajor = 0;
};

struct Substitutes {
  std::function<SYSTEMTIME()> clock;
  std::function<void(DWORD)> sleeper;
  ReportedVersion version;
};

Substitutes& substitutes();

}  // namespace quillon::platform
