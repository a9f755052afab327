#include "recorders/com_answers.h"

#include <string>

namespace quillon::platform {
namespace {

// Fills one element; false when memory runs out.
template <typename Fill>
DiscResult giveArray(std::size_t count, SAFEARRAY** target, Fill fill) {
  if (target == nullptr) return E_POINTER;
  *target = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(count));
  if (*target == nullptr) return E_OUTOFMEMORY;
  auto* elements = static_cast<VARIANT*>((*target)->pvData);
  for (std::size_t i = 0; i < count; ++i) {
    if (fill(i, elements[i])) continue;
    SafeArrayDestroy(*target);
    *target = nullptr;
    return E_OUTOFMEMORY;
  }
  return S_OK;
}

}  // namespace

DiscResult giveText(std::u16string_view text, BSTR* target) { return answerText(text, target); }

DiscResult giveBool(bool value, VARIANT_BOOL* target) {
  return giveNumber(value ? VARIANT_TRUE : VARIANT_FALSE, target);
}

DiscResult giveNumbers(std::span<const LONG> numbers, VARTYPE type, SAFEARRAY** target) {
  return giveArray(numbers.size(), target, [&](std::size_t i, VARIANT& element) {
    element.vt = type;
    element.lVal = numbers[i];
    return true;
  });
}

DiscResult giveTexts(std::span<const std::u16string> texts, SAFEARRAY** target) {
  return giveArray(texts.size(), target, [&](std::size_t i, VARIANT& element) {
    element.vt = VT_BSTR;
    element.bstrVal = SysAllocStringLen(texts[i].data(), static_cast<UINT>(texts[i].size()));
    return element.bstrVal != nullptr;
  });
}

}  // namespace quillon::platform
