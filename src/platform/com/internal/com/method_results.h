// What the methods of the layer's classes share: texts out and in, the error object, and the wall
// that keeps exceptions inside.
#pragma once

#include <new>
#include <string>
#include <string_view>

#include "platform/com.h"

namespace quillon::platform {

// Leaves an error object with the description on the thread, and answers result. Source is the name
// of the class.
inline HRESULT failWithReason(HRESULT result, std::u16string source, std::u16string description,
                              REFIID interfaceId = GUID{}) {
  ComPtr<ICreateErrorInfo> made;
  ComPtr<IErrorInfo> info;
  if (SUCCEEDED(CreateErrorInfo(made.Put())) && SUCCEEDED(made.As(IID_IErrorInfo, info))) {
    made->SetGUID(interfaceId);
    made->SetSource(source.data());
    made->SetDescription(description.data());
    SetErrorInfo(0, info.Get());
  }
  return result;
}

// A null text is the empty one.
inline std::u16string_view unitsOf(BSTR text) {
  return text == nullptr ? std::u16string_view() : std::u16string_view(text, SysStringLen(text));
}

// Hands a text to the caller, who frees it; an empty text is one too, not null.
inline HRESULT answerText(std::u16string_view text, BSTR* out) {
  if (out == nullptr) return E_POINTER;
  *out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  return *out == nullptr ? E_OUTOFMEMORY : S_OK;
}

template <typename Value>
HRESULT answerValue(Value value, Value* out) {
  if (out == nullptr) return E_POINTER;
  *out = value;
  return S_OK;
}

// Runs the body of a method: nothing is thrown across an interface.
template <typename Body>
HRESULT withoutExceptions(const Body& body) {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace quillon::platform
