// What tests put in the place of the system's clock, waiting and version, of the limits of the XML
// library and of the end of a directory (platform/testing.h).
#pragma once

#include <cstddef>
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

struct ListingBreak {
  std::size_t afterEntries = 0;
  DWORD code = 0;  // 0: none breaks off
};

struct Substitutes {
  std::function<SYSTEMTIME()> clock;
  std::function<void(DWORD)> sleeper;
  ReportedVersion version;
  TransformLimits transformLimits;
  HttpLimits httpLimits;
  ListingBreak listingBreak;
};

Substitutes& substitutes();

}  // namespace quillon::platform
