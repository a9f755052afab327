// How the classes of the legacy service answer.
#pragma once

#include "com/method_results.h"
#include "platform/com.h"
#include "recording/disc_result.h"

namespace quillon::platform {

// The code of the legacy service for one of the recorders, of the image builder or of a storage.
// Its own codes, successes, and those of COM in general are answered as they are.
HRESULT legacyResult(HRESULT code);

// Runs the body of a method, which answers a DiscResult. These classes have codes alone: what the
// parts beneath have put into the thread's error object does not stay there.
template <typename Body>
HRESULT legacyAnswer(Body body) {
  return withoutExceptions([&] {
    const DiscResult result = body();
    SetErrorInfo(0, nullptr);
    return legacyResult(result.code);
  });
}

}  // namespace quillon::platform
