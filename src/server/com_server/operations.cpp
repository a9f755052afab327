#include "operations.h"

#include <array>
#include <type_traits>
#include <utility>

namespace quillon {
namespace {

// Where a VARIANT keeps a value of the type.
template <typename Value>
struct Slot;
template <>
struct Slot<BSTR> {
  static constexpr VARTYPE kType = VT_BSTR;
  static BSTR& Of(VARIANT& value) { return value.bstrVal; }
};
template <>
struct Slot<VARIANT_BOOL> {
  static constexpr VARTYPE kType = VT_BOOL;
  static VARIANT_BOOL& Of(VARIANT& value) { return value.boolVal; }
};
template <>
struct Slot<LONG> {
  static constexpr VARTYPE kType = VT_I4;
  static LONG& Of(VARIANT& value) { return value.lVal; }
};
template <>
struct Slot<ULONG> {
  static constexpr VARTYPE kType = VT_UI4;
  static ULONG& Of(VARIANT& value) { return value.ulVal; }
};
template <>
struct Slot<ULONGLONG> {
  static constexpr VARTYPE kType = VT_UI8;
  static ULONGLONG& Of(VARIANT& value) { return value.ullVal; }
};

// A parameter goes in by value or out by address. A BSTR is a pointer itself, but to no value.
template <typename Type>
struct Passing {
  static constexpr VARTYPE kType = Slot<Type>::kType;
  static constexpr bool kIsOut = false;
  static Type From(VARIANT& value) { return Slot<Type>::Of(value); }
};
template <typename Type>
requires requires { Slot<Type>::kType; }
struct Passing<Type*> {
  static constexpr VARTYPE kType = Slot<Type>::kType;
  static constexpr bool kIsOut = true;
  static Type* From(VARIANT& value) { return &Slot<Type>::Of(value); }
};

template <auto kMethod>
struct Method;
template <typename... Types, HRESULT (STDMETHODCALLTYPE IQuillonMediaRW::*kMethod)(Types...)>
struct Method<kMethod> {
  using Names = std::array<const OLECHAR*, sizeof...(Types)>;
  using Parameters = std::array<OperationParameter, sizeof...(Types)>;

  static constexpr Parameters Describe([[maybe_unused]] const Names& names) {
    [[maybe_unused]] std::size_t next = 0;
    return {OperationParameter{names[next++], Passing<Types>::kType, Passing<Types>::kIsOut}...};
  }
  static HRESULT Call(IQuillonMediaRW& object, VARIANT* values) {
    return CallWith(object, values, std::index_sequence_for<Types...>());
  }

 private:
  template <std::size_t... kIndices>
  static HRESULT CallWith(IQuillonMediaRW& object, [[maybe_unused]] VARIANT* values,
                          std::index_sequence<kIndices...>) {
    return (object.*kMethod)(Passing<Types>::From(values[kIndices])...);
  }
};

// The parameters of each row, to be referred to from it.
#define QUILLON_PARAMETERS(method, ...) \
  constexpr auto kParametersOf_##method = Method<&IQuillonMediaRW::method>::Describe({__VA_ARGS__});
#define QUILLON_GET(id, name, type, help) QUILLON_PARAMETERS(get_##name, OLESTR("pVal"))
#define QUILLON_PUT(id, name, type, help) QUILLON_PARAMETERS(put_##name, OLESTR("newVal"))
#define QUILLON_CALL(id, name, help) QUILLON_PARAMETERS(name)
#define QUILLON_CALL_OUT(id, name, outType, out, help) QUILLON_PARAMETERS(name, OLESTR(#out))
#define QUILLON_CALL_IN_OUT(id, name, inType, in, outType, out, help) \
  QUILLON_PARAMETERS(name, OLESTR(#in), OLESTR(#out))
#define QUILLON_CALL_IN_IN_OUT(id, name, inType1, in1, inType2, in2, outType, out, help) \
  QUILLON_PARAMETERS(name, OLESTR(#in1), OLESTR(#in2), OLESTR(#out))
#include "server/com_server/operations.inc"
#undef QUILLON_PARAMETERS

#define QUILLON_ROW(id, name, kind, method)                  \
  Operation{OLESTR(#name), id, kind, kParametersOf_##method, \
            &Method<&IQuillonMediaRW::method>::Call},
constexpr Operation kOperations[] = {
#define QUILLON_GET(id, name, type, help) QUILLON_ROW(id, name, DISPATCH_PROPERTYGET, get_##name)
#define QUILLON_PUT(id, name, type, help) QUILLON_ROW(id, name, DISPATCH_PROPERTYPUT, put_##name)
#define QUILLON_CALL(id, name, help) QUILLON_ROW(id, name, DISPATCH_METHOD, name)
#define QUILLON_CALL_OUT(id, name, ...) QUILLON_ROW(id, name, DISPATCH_METHOD, name)
#define QUILLON_CALL_IN_OUT(id, name, ...) QUILLON_ROW(id, name, DISPATCH_METHOD, name)
#define QUILLON_CALL_IN_IN_OUT(id, name, ...) QUILLON_ROW(id, name, DISPATCH_METHOD, name)
#include "server/com_server/operations.inc"
};
#undef QUILLON_ROW

static_assert(std::size(kOperations) == kOperationCount);

constexpr bool HaveOnlyTheLastParameterOut() {
  for (const Operation& operation : kOperations) {
    if (operation.parameters.size() > kMaxParameters) return false;
    for (std::size_t i = 0; i + 1 < operation.parameters.size(); ++i) {
      if (operation.parameters[i].isOut) return false;
    }
  }
  return true;
}
static_assert(HaveOnlyTheLastParameterOut());

}  // namespace

std::span<const Operation, kOperationCount> Operations() { return kOperations; }

}  // namespace quillon
