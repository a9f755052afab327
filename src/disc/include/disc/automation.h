// What the wrappers pass to the platform's interfaces and take from them: booleans, texts, arrays
// of variants, objects.
#pragma once

#include <concepts>
#include <limits>
#include <vector>

#include "foundation/com_values.h"

namespace quillon {

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

// An element of an array, which must be of this type.
inline HRESULT ReadElement(const VARIANT& element, LONG& number) {
  const bool isSigned = V_VT(&element) == VT_I4 || V_VT(&element) == VT_INT;
  const bool isUnsigned = V_VT(&element) == VT_UI4 || V_VT(&element) == VT_UINT;
  if (!isSigned && !isUnsigned) return DISP_E_TYPEMISMATCH;
  if (isUnsigned && V_UI4(&element) > static_cast<ULONG>(std::numeric_limits<LONG>::max())) {
    return DISP_E_OVERFLOW;
  }
  number = V_I4(&element);
  return S_OK;
}
inline HRESULT ReadElement(const VARIANT& element, Text& text) {
  if (V_VT(&element) != VT_BSTR) return DISP_E_TYPEMISMATCH;
  text = ViewOf(V_BSTR(&element));
  return S_OK;
}

// No array is an empty one; DISP_E_TYPEMISMATCH for anything but a one-dimensional array of
// variants.
template <typename Element>
class AutomationOut<std::vector<Element>> {
 public:
  AutomationOut() = default;
  ~AutomationOut() {
    if (array_ != nullptr) SafeArrayDestroy(array_);
  }
  AutomationOut(const AutomationOut&) = delete;
  AutomationOut& operator=(const AutomationOut&) = delete;

  [[nodiscard]] SAFEARRAY** Put() { return &array_; }
  HRESULT TakeTo(std::vector<Element>& out) const {
    std::vector<Element> elements;
    const HRESULT hr = array_ == nullptr ? S_OK : Read(elements);
    if (SUCCEEDED(hr)) out = std::move(elements);
    return hr;
  }

 private:
  HRESULT Read(std::vector<Element>& elements) const {
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
      if (SUCCEEDED(hr)) hr = ReadElement(element.Get(), elements.emplace_back());
    }
    return hr;
  }

  SAFEARRAY* array_ = nullptr;
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
