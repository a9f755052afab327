// What the methods of the disc-mastering classes have in common: how they answer.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "com/method_results.h"
#include "platform/com.h"
#include "recording/disc_result.h"

namespace quillon::platform {

// Runs the body of a method, which answers a DiscResult. The thread's error object holds the
// sentence of a failure that has one, as Windows' own classes do; source is the name of the class.
// A failing stream that the body reads may have left an error object of its own, which stays.
template <typename Body>
HRESULT answering(REFIID interfaceId, const OLECHAR* source, Body body) {
  SetErrorInfo(0, nullptr);
  return withoutExceptions([&] {
    const DiscResult result = body();
    return result.failed() && !result.text.empty()
               ? failWithReason(result.code, source, result.text, interfaceId)
               : result.code;
  });
}

// Values on their way out; E_POINTER for a missing target.
DiscResult giveText(std::u16string_view text, BSTR* target);
DiscResult giveBool(bool value, VARIANT_BOOL* target);
template <typename Number, typename Target>
DiscResult giveNumber(Number value, Target* target) {
  if (target == nullptr) return E_POINTER;
  *target = static_cast<Target>(value);
  return S_OK;
}
// One-dimensional arrays of VARIANT with lower bound 0; the type is that of their elements.
DiscResult giveNumbers(std::span<const LONG> numbers, VARTYPE type, SAFEARRAY** target);
DiscResult giveTexts(std::span<const std::u16string> texts, SAFEARRAY** target);

}  // namespace quillon::platform
