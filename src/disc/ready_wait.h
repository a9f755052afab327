// A drive that has just taken a disc refuses calls until it has looked at it: such a call is made
// again, at most ten times, five seconds apart.
#pragma once

#include "disc/imapi_item.h"
#include "platform/imapi2_errors.h"

namespace quillon {

inline constexpr int kReadyCalls = 10;
inline constexpr DWORD kReadyWaitMs = 5000;

// call makes one call through the wrapper; false leaves the wrapper's error text.
template <typename Call>
[[nodiscard]] bool CallUntilReady(const CImapiItem& wrapper, const Call& call) {
  bool done = false;
  for (int calls = 0; calls < kReadyCalls; ++calls) {
    done = call();
    if (wrapper.GetLastResult() != E_IMAPI_RECORDER_MEDIA_BECOMING_READY) break;
    Sleep(kReadyWaitMs);
  }
  return done;
}

}  // namespace quillon
