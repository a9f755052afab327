// A BSTR that is freed at the end of its scope.
#pragma once

#include <new>

#include "foundation/text.h"

namespace quillon {

class ScopedBstr {
 public:
  ScopedBstr() = default;
  // Throws std::bad_alloc when there is no memory.
  explicit ScopedBstr(TextView text)
      : bstr_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
    if (bstr_ == nullptr) throw std::bad_alloc();
  }
  ~ScopedBstr() { SysFreeString(bstr_); }
  ScopedBstr(const ScopedBstr&) = delete;
  ScopedBstr& operator=(const ScopedBstr&) = delete;

  [[nodiscard]] BSTR Get() const { return bstr_; }
  // Where a call stores its text; one that was held is freed first.
  [[nodiscard]] BSTR* Put() {
    SysFreeString(bstr_);
    bstr_ = nullptr;
    return &bstr_;
  }
  // A null string is an empty text.
  [[nodiscard]] TextView View() const {
    return bstr_ == nullptr ? TextView() : TextView(bstr_, SysStringLen(bstr_));
  }

 private:
  BSTR bstr_ = nullptr;
};

}  // namespace quillon
