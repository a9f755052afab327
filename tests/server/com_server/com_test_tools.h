// Values and texts for the tests of the server.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "foundation/text.h"
#include "server/com_server/quillon_media_rw.h"

namespace quillon::test {

inline Text wide(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }
inline std::string narrow(TextView text) {
  std::string out;
  for (const OLECHAR unit : text) out += unit < 0x80 ? static_cast<char>(unit) : '?';
  return out;
}

// Owns what it holds. Text makes a BSTR.
class Value {
 public:
  Value() = default;
  explicit Value(std::string_view text) : Value() {
    value_.vt = VT_BSTR;
    value_.bstrVal = SysAllocString(wide(text).c_str());
  }
  static Value Bool(int value) {
    Value made;
    made.value_.vt = VT_BOOL;
    made.value_.boolVal = static_cast<VARIANT_BOOL>(value);
    return made;
  }
  static Value Long(LONG value) { return OfLong(VT_I4, value); }
  static Value Omitted() { return OfLong(VT_ERROR, DISP_E_PARAMNOTFOUND); }
  static Value OfType(VARTYPE type) { return OfLong(type, 0); }
  static Value Reference(VARTYPE type, void* target) {
    Value made;
    made.value_.vt = static_cast<VARTYPE>(VT_BYREF | type);
    made.value_.byref = target;
    return made;
  }
  // Some headers declare what is copied from without const.
  Value(const Value& other) : Value() { VariantCopy(&value_, const_cast<VARIANT*>(&other.value_)); }
  Value& operator=(const Value& other) {
    VariantCopy(&value_, const_cast<VARIANT*>(&other.value_));
    return *this;
  }
  ~Value() { VariantClear(&value_); }

  VARIANT* operator&() { return &value_; }
  [[nodiscard]] const VARIANT& Get() const { return value_; }
  [[nodiscard]] std::string AsText() const {
    return value_.vt == VT_BSTR && value_.bstrVal != nullptr ? narrow(value_.bstrVal) : "";
  }

 private:
  static Value OfLong(VARTYPE type, LONG value) {
    Value made;
    made.value_.vt = type;
    made.value_.lVal = value;
    return made;
  }

  VARIANT value_{};
};

}  // namespace quillon::test
