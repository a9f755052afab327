// What the wrappers pass to the platform's interfaces and take from them: booleans, texts, arrays
// of variants, objects.
#pragma once

#include <concepts>
#include <limits>
#include <vector>

#include "foundation/com_values.h"

namespace quillon {

class OwnedArray {
 public:
  OwnedArray() = default;
  ~OwnedArray() {
    if (array_ != nullptr) SafeArrayDestroy(array_);
  }
  OwnedArray(const OwnedArray&) = delete;
  OwnedArray& operator=(const OwnedArray&) = delete;

  [[nodiscard]] SAFEARRAY** Put() { return &array_; }
  // Calls take(const VARIANT&), which answers an HRESULT, for each element. No array is an empty
  // one; DISP_E_TYPEMISMATCH for anything but a one-dimensional array of variants.
  template <typename Take>
  HRESULT ForEach(const Take& take) const;

 private:
  SAFEARRAY* array_ = nullptr;
};

template <typename Take>
HRESULT OwnedArray::ForEach(const Take& take) const {
  if (array_ == nullptr) return S_OK;
  VARTYPE type = VT_EMPTY;
  if (SafeArrayGetDim(array_) != 1 || FAILED(SafeArrayGetVartype(array_, &type)) ||
      type != VT_VARIANT) {
    return DISP_E_TYPEMISMATCH;
  }
  LONG first = 0;
  LONG last = -1;
  HRESULT hr = SafeArrayGetLBound(array_, 1, &first);
  if (SUCCEEDED(hr)) hr = SafeArrayGetUBound(array_, 1, &last);
  for (LONG index = first; SUCCEEDED(hr) && index <= last; ++index) {
    ScopedVariant element;
    hr = SafeArrayGetElement(array_, &index, element.Put());
    if (SUCCEEDED(hr)) hr = take(element.Get());
  }
  return hr;
}

// Numbers and enumerations are handed out as they are.
template <typename Value>
class AutomationOut {
 public:
  [[nodiscard]] Value* Put() { return &value_; }
  HRESULT TakeTo(Value& out) {
    out = value_;
    return S_OK;
  }

 private:
  Value value_{};
};

template <>
class AutomationOut<bool> {
 public:
  [[nodiscard]] VARIANT_BOOL* Put() { return &value_; }
  HRESULT TakeTo(bool& out) const {
    out = value_ != VARIANT_FALSE;
    return S_OK;
  }

 private:
  VARIANT_BOOL value_ = VARIANT_FALSE;
};

template <>
class AutomationOut<BSTR> {
 public:
  [[nodiscard]] BSTR* Put() { return bstr_.Put(); }
  HRESULT TakeTo(BSTR& out) {
    out = bstr_.Detach();
    return S_OK;
  }

 private:
  ScopedBstr bstr_;
};

template <>
class AutomationOut<std::vector<LONG>> {
 public:
  [[nodiscard]] SAFEARRAY** Put() { return array_.Put(); }
  HRESULT TakeTo(std::vector<LONG>& out) const {
    std::vector<LONG> numbers;
    const HRESULT hr = array_.ForEach([&numbers](const VARIANT& element) {
      const bool isSigned = V_VT(&element) == VT_I4 || V_VT(&element) == VT_INT;
      const bool isUnsigned = V_VT(&element) == VT_UI4 || V_VT(&element) == VT_UINT;
      if (!isSigned && !isUnsigned) return DISP_E_TYPEMISMATCH;
      if (isUnsigned && V_UI4(&element) > static_cast<ULONG>(std::numeric_limits<LONG>::max())) {
        return DISP_E_OVERFLOW;
      }
      numbers.push_back(V_I4(&element));
      return S_OK;
    });
    if (SUCCEEDED(hr)) out = std::move(numbers);
    return hr;
  }

 private:
  OwnedArray array_;
};

template <>
class AutomationOut<std::vector<Text>> {
 public:
  [[nodiscard]] SAFEARRAY** Put() { return array_.Put(); }
  HRESULT TakeTo(std::vector<Text>& out) const {
    std::vector<Text> texts;
    const HRESULT hr = array_.ForEach([&texts](const VARIANT& element) {
      if (V_VT(&element) != VT_BSTR) return DISP_E_TYPEMISMATCH;
      texts.emplace_back(ViewOf(V_BSTR(&element)));
      return S_OK;
    });
    if (SUCCEEDED(hr)) out = std::move(texts);
    return hr;
  }

 private:
  OwnedArray array_;
};

// An object becomes that of the wrapper that is to hold it; none is a failure.
template <typename Wrapper>
requires requires { typename Wrapper::Held; }
class AutomationOut<Wrapper> {
 public:
  [[nodiscard]] typename Wrapper::Held** Put() { return object_.Put(); }
  HRESULT TakeTo(Wrapper& out) {
    if (!object_) return E_POINTER;
    out.Attach(object_.Detach());
    return S_OK;
  }

 private:
  ComPtr<typename Wrapper::Held> object_;
};

// The way in.
template <typename Value>
auto AutomationIn(const Value& value) {
  if constexpr (std::same_as<Value, bool>) {
    return ToVariantBool(value);
  } else if constexpr (requires { typename Value::Held; }) {
    return value.Get();
  } else {
    return value;
  }
}

}  // namespace quillon
