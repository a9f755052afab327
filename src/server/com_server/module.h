// The module that the server is: how many objects and locks keep it loaded, where it lies, and what
// registration writes.
#pragma once

#include <atomic>

#include "foundation/text.h"

namespace quillon {

class CQuillonMediaRWModule {
 public:
  // False when the module is without its messages: no failure could say its reason.
  [[nodiscard]] bool IsInitialised() const;

  // Safe across threads.
  void Lock() { ++lockCount_; }
  void Unlock() { --lockCount_; }
  [[nodiscard]] LONG GetLockCount() const { return lockCount_; }

  // The file that hosts load; empty when the system does not tell.
  [[nodiscard]] static Text Path();

  // All of it; when a part fails, its code, and what was registered before: nothing or a
  // registration that works.
  [[nodiscard]] HRESULT RegisterServer() const;
  // Removes what is there of it and goes on after a failure; the first code.
  [[nodiscard]] HRESULT UnregisterServer() const;

 private:
  std::atomic<LONG> lockCount_ = 0;
};

CQuillonMediaRWModule& Module();

}  // namespace quillon
