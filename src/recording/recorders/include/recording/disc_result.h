// Linux only: how the layer's own disc operations answer.
#pragma once

#include <string>
#include <utility>

#include "platform/win32/errors.h"

namespace quillon::platform {

// A code and, where there is more to say than the code does, one sentence about the reason.
struct [[nodiscard]] DiscResult {
  HRESULT code = S_OK;
  std::u16string text;

  DiscResult() = default;
  DiscResult(HRESULT result) : code(result) {}
  DiscResult(HRESULT result, std::u16string sentence) : code(result), text(std::move(sentence)) {}

  [[nodiscard]] bool failed() const { return FAILED(code); }
};

}  // namespace quillon::platform
