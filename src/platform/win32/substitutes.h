// What tests put in the place of the system's clock, waiting and version, of the end of a
// directory, of a read and of a flush (platform/testing.h).
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "platform/win32/system.h"

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

struct ReadBreak {
  std::string nameEnd;
  int nth = 0;
  DWORD afterBytes = 0;
  DWORD code = 0;  // 0: none fails
  int seen = 0;    // reads of such files so far
};

struct Substitutes {
  std::function<SYSTEMTIME()> clock;
  std::function<void(DWORD)> sleeper;
  ReportedVersion version;
  ListingBreak listingBreak;
  ReadBreak readBreak;
  std::function<DWORD()> fileSystemFlush;
};

Substitutes& substitutes();

}  // namespace quillon::platform
