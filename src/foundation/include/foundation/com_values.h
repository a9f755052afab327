// The values that pass through automation interfaces, freed at the end of their scope: counted
// texts, variants, booleans; and the COM library, held open for as long.
#pragma once

#include <new>
#include <utility>

#include "foundation/text.h"

namespace quillon {

constexpr VARIANT_BOOL ToVariantBool(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

// All of a counted text, zeros in it included. A null text is the empty one.
inline TextView ViewOf(BSTR text) {
  return text == nullptr ? TextView() : TextView(text, SysStringLen(text));
}

// Of a text that a host passes, a BSTR or any text that ends in a zero. A null text is the empty
// one.
inline TextView UpToZero(const OLECHAR* text) { return {text, TextLength(text)}; }

class ScopedBstr {
 public:
  ScopedBstr() = default;
  // Throws std::bad_alloc when there is no memory.
  explicit ScopedBstr(TextView text) {
    if (!Assign(text)) throw std::bad_alloc();
  }
  ~ScopedBstr() { SysFreeString(bstr_); }
  ScopedBstr(const ScopedBstr&) = delete;
  ScopedBstr& operator=(const ScopedBstr&) = delete;

  // False, and null, when there is no memory.
  [[nodiscard]] bool Assign(TextView text) {
    *Put() = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return bstr_ != nullptr;
  }
  [[nodiscard]] BSTR Get() const { return bstr_; }
  [[nodiscard]] TextView View() const { return ViewOf(bstr_); }
  // Where a call stores its text; one that was held is freed first.
  [[nodiscard]] BSTR* Put() {
    SysFreeString(std::exchange(bstr_, nullptr));
    return &bstr_;
  }
  [[nodiscard]] BSTR Detach() { return std::exchange(bstr_, nullptr); }

 private:
  BSTR bstr_ = nullptr;
};

class ScopedVariant {
 public:
  ScopedVariant() { VariantInit(&value_); }
  // Throws _com_error, as the platform's own variant does, when there is no memory.
  explicit ScopedVariant(TextView text) : ScopedVariant() {
    ScopedBstr bstr;
    if (!bstr.Assign(text)) throw _com_error(E_OUTOFMEMORY);
    V_BSTR(&value_) = bstr.Detach();
    V_VT(&value_) = VT_BSTR;
  }
  ~ScopedVariant() { VariantClear(&value_); }
  ScopedVariant(const ScopedVariant&) = delete;
  ScopedVariant& operator=(const ScopedVariant&) = delete;

  [[nodiscard]] VARIANT* Put() { return &value_; }
  [[nodiscard]] const VARIANT& Get() const { return value_; }
  [[nodiscard]] VARTYPE Type() const { return V_VT(&value_); }

 private:
  VARIANT value_;
};

// The COM library, initialised for the life of the object on the thread that makes and destroys it.
class ComLibrary {
 public:
  ComLibrary() : result_(CoInitialize(nullptr)) {}
  ~ComLibrary() {
    if (IsInitialized()) CoUninitialize();
  }
  ComLibrary(const ComLibrary&) = delete;
  ComLibrary& operator=(const ComLibrary&) = delete;

  // Also where the thread has initialised it before, in the same way.
  [[nodiscard]] bool IsInitialized() const { return SUCCEEDED(result_); }
  [[nodiscard]] HRESULT Result() const { return result_; }
  // Tries again what has failed.
  void Retry() {
    if (!IsInitialized()) result_ = CoInitialize(nullptr);
  }

 private:
  HRESULT result_;
};

}  // namespace quillon
