// A text argument of a COM method.
#pragma once

#include <string_view>

#include "platform/com.h"

namespace quillon::test {

class Bstr {
 public:
  explicit Bstr(std::u16string_view text)
      : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
  ~Bstr() { SysFreeString(text_); }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  operator BSTR() const { return text_; }

 private:
  BSTR text_;
};

}  // namespace quillon::test
