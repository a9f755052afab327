// Conversions between the simple types of a VARIANT.
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "platform/com/variant.h"

namespace {

// What the source holds, in the widest type of its kind.
struct Number {
  enum class Kind { Signed, Unsigned, Real } kind = Kind::Signed;
  std::int64_t integer = 0;
  std::uint64_t natural = 0;
  double real = 0;

  [[nodiscard]] double asReal() const {
    if (kind == Kind::Real) return real;
    return kind == Kind::Signed ? static_cast<double>(integer) : static_cast<double>(natural);
  }
};

Number signedNumber(std::int64_t value) { return {Number::Kind::Signed, value, 0, 0}; }
Number unsignedNumber(std::uint64_t value) { return {Number::Kind::Unsigned, 0, value, 0}; }
Number realNumber(double value) { return {Number::Kind::Real, 0, 0, value}; }

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

bool equalsIgnoringCase(std::string_view text, std::string_view lowerCase) {
  if (text.size() != lowerCase.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i] >= 'A' && text[i] <= 'Z' ? static_cast<char>(text[i] + 0x20) : text[i];
    if (c != lowerCase[i]) return false;
  }
  return true;
}

// The whole text must be one number; one that is too large for the type says so.
template <typename Value>
bool parseWhole(std::string_view text, Value& value, bool& isTooLarge) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool isWhole = end == text.data() + text.size();
  isTooLarge = isWhole && error == std::errc::result_out_of_range;
  return isWhole && error == std::errc();
}

HRESULT parseText(BSTR bstr, VARTYPE target, Number& number) {
  std::string text;
  for (UINT i = 0; i < SysStringLen(bstr); ++i) {
    if (bstr[i] == 0 || bstr[i] > 0x7E) return DISP_E_TYPEMISMATCH;
    text.push_back(static_cast<char>(bstr[i]));
  }
  std::string_view digits = trimmed(text);
  if (target == VT_BOOL &&
      (equalsIgnoringCase(digits, "true") || equalsIgnoringCase(digits, "false"))) {
    number = signedNumber(equalsIgnoringCase(digits, "true") ? VARIANT_TRUE : VARIANT_FALSE);
    return S_OK;
  }
  if (digits.starts_with('+')) digits.remove_prefix(1);
  std::int64_t integer = 0;
  std::uint64_t natural = 0;
  double real = 0;
  bool isTooLarge = false;
  if (parseWhole(digits, integer, isTooLarge)) {
    number = signedNumber(integer);
  } else if (parseWhole(digits, natural, isTooLarge)) {
    number = unsignedNumber(natural);
  } else if (parseWhole(digits, real, isTooLarge) && std::isfinite(real)) {
    number = realNumber(real);
  } else {
    return isTooLarge ? DISP_E_OVERFLOW : DISP_E_TYPEMISMATCH;
  }
  return S_OK;
}

HRESULT readNumber(const VARIANT& source, VARTYPE target, Number& number) {
  switch (source.vt) {
    case VT_EMPTY:
      number = signedNumber(0);
      return S_OK;
    case VT_I1:
      number = signedNumber(static_cast<signed char>(source.cVal));
      return S_OK;
    case VT_I2:
      number = signedNumber(source.iVal);
      return S_OK;
    case VT_BOOL:
      number = signedNumber(source.boolVal);
      return S_OK;
    case VT_I4:
    case VT_INT:
      number = signedNumber(source.lVal);
      return S_OK;
    case VT_I8:
      number = signedNumber(source.llVal);
      return S_OK;
    case VT_UI1:
      number = unsignedNumber(source.bVal);
      return S_OK;
    case VT_UI2:
      number = unsignedNumber(source.uiVal);
      return S_OK;
    case VT_UI4:
    case VT_UINT:
      number = unsignedNumber(source.ulVal);
      return S_OK;
    case VT_UI8:
      number = unsignedNumber(source.ullVal);
      return S_OK;
    case VT_R4:
      number = realNumber(static_cast<double>(source.fltVal));
      return S_OK;
    case VT_R8:
    case VT_DATE:
      number = realNumber(source.dblVal);
      return S_OK;
    case VT_BSTR:
      return parseText(source.bstrVal, target, number);
    default:
      return DISP_E_TYPEMISMATCH;
  }
}

// Reals are rounded to the nearest integer, halves to the even one.
template <typename Integer>
HRESULT narrow(const Number& number, Integer& result) {
  using Limits = std::numeric_limits<Integer>;
  bool fits = false;
  switch (number.kind) {
    case Number::Kind::Signed:
      fits = std::in_range<Integer>(number.integer);
      result = static_cast<Integer>(number.integer);
      break;
    case Number::Kind::Unsigned:
      fits = std::in_range<Integer>(number.natural);
      result = static_cast<Integer>(number.natural);
      break;
    case Number::Kind::Real: {
      const double rounded = std::nearbyint(number.real);
      // One past the largest value is a power of two and thus exact.
      const double end = std::ldexp(1.0, Limits::digits);
      fits = rounded >= static_cast<double>(Limits::min()) && rounded < end;
      result = fits ? static_cast<Integer>(rounded) : Integer{0};
      break;
    }
  }
  return fits ? S_OK : DISP_E_OVERFLOW;
}

HRESULT makeText(const VARIANT& source, USHORT flags, const Number& number, VARIANT& result) {
  std::array<char, 64> buffer{};
  std::string text;
  const auto print = [&](auto value) {
    text.assign(buffer.data(),
                std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr);
  };
  // At most the digits that are sure, so the text may stand for another number.
  constexpr int kSingleDigits = 7;
  constexpr int kDoubleDigits = 15;
  const auto printReal = [&](double value, int digits) {
    text.assign(buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                             std::chars_format::general, digits)
                                   .ptr);
    std::replace(text.begin(), text.end(), 'e', 'E');
  };
  if (source.vt == VT_BOOL && (flags & VARIANT_ALPHABOOL) != 0) {
    text = source.boolVal != VARIANT_FALSE ? "True" : "False";
  } else if (source.vt == VT_R4) {
    printReal(static_cast<double>(source.fltVal), kSingleDigits);
  } else if (number.kind == Number::Kind::Real) {
    printReal(number.real, kDoubleDigits);
  } else if (number.kind == Number::Kind::Signed) {
    print(number.integer);
  } else {
    print(number.natural);
  }
  if (source.vt == VT_EMPTY) text.clear();
  const std::u16string wide(text.begin(), text.end());
  result.bstrVal = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  return result.bstrVal == nullptr ? E_OUTOFMEMORY : S_OK;
}

HRESULT convert(const VARIANT& source, USHORT flags, VARTYPE type, VARIANT& result) {
  Number number;
  if (const HRESULT hr = readNumber(source, type, number); FAILED(hr)) return hr;
  switch (type) {
    case VT_BSTR:
      return makeText(source, flags, number, result);
    case VT_BOOL:
      result.boolVal = number.asReal() != 0 ? VARIANT_TRUE : VARIANT_FALSE;
      return S_OK;
    case VT_I1: {
      signed char value = 0;
      const HRESULT hr = narrow(number, value);
      result.cVal = static_cast<char>(value);
      return hr;
    }
    case VT_I2:
      return narrow(number, result.iVal);
    case VT_I4:
    case VT_INT:
      return narrow(number, result.lVal);
    case VT_I8:
      return narrow(number, result.llVal);
    case VT_UI1:
      return narrow(number, result.bVal);
    case VT_UI2:
      return narrow(number, result.uiVal);
    case VT_UI4:
    case VT_UINT:
      return narrow(number, result.ulVal);
    case VT_UI8:
      return narrow(number, result.ullVal);
    case VT_R4: {
      const double value = number.asReal();
      if (std::abs(value) > static_cast<double>(std::numeric_limits<float>::max())) {
        return DISP_E_OVERFLOW;
      }
      result.fltVal = static_cast<float>(value);
      return S_OK;
    }
    case VT_R8:
    case VT_DATE:
      result.dblVal = number.asReal();
      return S_OK;
    default:
      return DISP_E_TYPEMISMATCH;
  }
}

}  // namespace

HRESULT VariantChangeType(VARIANT* target, const VARIANT* source, USHORT flags, VARTYPE type) {
  if (target == nullptr || source == nullptr) return E_INVALIDARG;
  VARIANT seen;
  VariantInit(&seen);
  if (const HRESULT hr = VariantCopyInd(&seen, source); FAILED(hr)) return hr;
  if (seen.vt != type) {
    VARIANT result;
    VariantInit(&result);
    HRESULT hr = S_OK;
    if (type != VT_EMPTY) hr = convert(seen, flags, type, result);
    VariantClear(&seen);
    if (FAILED(hr)) return hr;
    seen = result;
    seen.vt = type;
  }
  if (const HRESULT hr = VariantClear(target); FAILED(hr)) {
    VariantClear(&seen);
    return hr;
  }
  *target = seen;
  return S_OK;
}
