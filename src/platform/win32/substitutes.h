// What tests put in the place of the system's clock, waiting and version, and of the
// limits of the XML library (platform/testing.h).
#pragma once

#include <functional>

#include "platform/win32/system.h"
#include "xml/limits.h"

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
  TransformLimits transformLimits;
  HttpLimits httpLimits;
};

Substitutes& substitutes();

}  // namespace quillon::platform
