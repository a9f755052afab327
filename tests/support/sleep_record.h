// Time that passes without waiting.
#pragma once

#include <vector>

#include "platform/win32.h"

namespace quillon::test {

// While it lives, Sleep returns at once and is written down here. One at a time.
class SleepRecord {
 public:
  SleepRecord();
  ~SleepRecord();
  SleepRecord(const SleepRecord&) = delete;
  SleepRecord& operator=(const SleepRecord&) = delete;

  std::vector<DWORD> waitsMs;
};

}  // namespace quillon::test
