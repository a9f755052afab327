// The COM library, initialised for a stretch of work on the calling thread.
#pragma once

#include "platform/com.h"

namespace quillon {

class ComLibrary {
 public:
  ComLibrary() = default;
  ~ComLibrary() {
    if (isInitialized_) CoUninitialize();
  }
  ComLibrary(const ComLibrary&) = delete;
  ComLibrary& operator=(const ComLibrary&) = delete;

  // Also true where the thread has initialised it before, in the same way.
  [[nodiscard]] bool Initialize() {
    isInitialized_ = SUCCEEDED(CoInitialize(nullptr));
    return isInitialized_;
  }

 private:
  bool isInitialized_ = false;
};

}  // namespace quillon
