#include "dispatch.h"

#include <algorithm>
#include <array>

#include "operations.h"

namespace quillon {
namespace {

constexpr UINT kNoPlace = ~0U;

constexpr OLECHAR Lowered(OLECHAR unit) {
  const bool isCapital = unit >= OLESTR('A') && unit <= OLESTR('Z');
  return isCapital ? static_cast<OLECHAR>(unit + 0x20) : unit;
}

bool EqualsIgnoringCase(const OLECHAR* a, const OLECHAR* b) {
  if (a == nullptr || b == nullptr) return false;
  for (; *a != 0 && Lowered(*a) == Lowered(*b); ++a, ++b) {
  }
  return Lowered(*a) == Lowered(*b);
}

const Operation* FindByName(const OLECHAR* name) {
  const auto operations = Operations();
  const auto found = std::find_if(operations.begin(), operations.end(), [name](const auto& row) {
    return EqualsIgnoringCase(row.name, name);
  });
  return found == operations.end() ? nullptr : &*found;
}

const Operation* FindById(DISPID id, WORD flags) {
  const auto operations = Operations();
  const auto found = std::find_if(operations.begin(), operations.end(), [=](const auto& row) {
    return row.id == id && (row.kind & flags) != 0;
  });
  return found == operations.end() ? nullptr : &*found;
}

// One late-bound call: the values to call with, and the arguments that they come from.
class LateCall {
 public:
  explicit LateCall(const Operation& operation) : operation_(operation) {}
  ~LateCall() {
    for (VARIANT& value : values_) VariantClear(&value);
  }
  LateCall(const LateCall&) = delete;
  LateCall& operator=(const LateCall&) = delete;

  // Finds the argument of each parameter and converts what goes in.
  HRESULT Bind(const DISPPARAMS& params, UINT& badArgument) {
    if (const HRESULT hr = Place(params, badArgument); FAILED(hr)) return hr;
    for (std::size_t i = 0; i < operation_.parameters.size(); ++i) {
      VARIANT* argument = arguments_[i];
      const bool isOmitted = argument != nullptr && V_VT(argument) == VT_ERROR &&
                             V_ERROR(argument) == DISP_E_PARAMNOTFOUND;
      const HRESULT hr = operation_.parameters[i].isOut ? BindOut(i, isOmitted ? nullptr : argument)
                                                        : BindIn(i, argument, isOmitted);
      if (SUCCEEDED(hr)) continue;
      if (argument != nullptr) badArgument = static_cast<UINT>(argument - params.rgvarg);
      return hr;
    }
    return S_OK;
  }

  HRESULT Run(IQuillonMediaRW& object) { return operation_.call(object, values_.data()); }

  // Gives the out value away.
  HRESULT HandOut(HRESULT answer, VARIANT* result) {
    if (operation_.parameters.empty() || !operation_.parameters.back().isOut) {
      if (result != nullptr) VariantInit(result);
      return S_OK;
    }
    VARIANT& value = values_[operation_.parameters.size() - 1];
    HRESULT hr = S_OK;
    // An operation that does not answer S_OK leaves what it was given as it was.
    if (target_ != nullptr && answer == S_OK) hr = WriteTo(*target_, value);
    if (result != nullptr && SUCCEEDED(hr)) {
      *result = value;
      VariantInit(&value);
    }
    return hr;
  }

 private:
  // Arguments stand in reverse order; named ones stand first and name their parameter.
  HRESULT Place(const DISPPARAMS& params, UINT& badArgument) {
    const bool isPut = operation_.kind == DISPATCH_PROPERTYPUT;
    // The value of a property is the result of the call, never an argument.
    const bool isGet = operation_.kind == DISPATCH_PROPERTYGET;
    const UINT count = isGet ? 0 : static_cast<UINT>(operation_.parameters.size());
    if (params.cArgs > count || params.cNamedArgs > params.cArgs) return DISP_E_BADPARAMCOUNT;
    if ((params.cArgs > 0 && params.rgvarg == nullptr) ||
        (params.cNamedArgs > 0 && params.rgdispidNamedArgs == nullptr)) {
      return E_INVALIDARG;
    }
    if (isPut && params.cArgs > 0 && params.cNamedArgs == 0) return DISP_E_PARAMNOTFOUND;
    for (UINT i = 0; i < params.cArgs; ++i) {
      UINT place = params.cArgs - 1 - i;
      if (i < params.cNamedArgs) {
        const DISPID named = params.rgdispidNamedArgs[i];
        badArgument = i;
        if (isPut != (named == DISPID_PROPERTYPUT)) return DISP_E_PARAMNOTFOUND;
        place = isPut ? 0 : static_cast<UINT>(named);
      }
      if (place >= count || arguments_[place] != nullptr) return DISP_E_PARAMNOTFOUND;
      arguments_[place] = &params.rgvarg[i];
    }
    return S_OK;
  }

  HRESULT BindIn(std::size_t index, VARIANT* argument, bool isOmitted) {
    if (argument == nullptr) return DISP_E_BADPARAMCOUNT;
    if (isOmitted) return DISP_E_PARAMNOTOPTIONAL;
    return VariantChangeType(&values_[index], argument, 0, operation_.parameters[index].type);
  }

  HRESULT BindOut(std::size_t index, VARIANT* argument) {
    const VARTYPE type = operation_.parameters[index].type;
    V_VT(&values_[index]) = type;
    if (argument == nullptr) return S_OK;
    const bool fits =
        V_VT(argument) == (VT_BYREF | type) || V_VT(argument) == (VT_BYREF | VT_VARIANT);
    if (!fits) return DISP_E_TYPEMISMATCH;
    if (argument->byref == nullptr) return E_INVALIDARG;
    target_ = argument;
    return S_OK;
  }

  // The old value belongs to the caller until it is replaced.
  static HRESULT WriteTo(VARIANT& target, VARIANT& value) {
    if (V_VT(&target) == (VT_BYREF | VT_VARIANT)) return VariantCopy(target.pvarVal, &value);
    if (V_VT(&value) == VT_BSTR) {
      VARIANT copy;
      VariantInit(&copy);
      if (const HRESULT hr = VariantCopy(&copy, &value); FAILED(hr)) return hr;
      SysFreeString(*target.pbstrVal);
      *target.pbstrVal = copy.bstrVal;
      return S_OK;
    }
    // The only other type that a method hands out.
    *target.pboolVal = value.boolVal;
    return S_OK;
  }

  const Operation& operation_;
  // All zero, also behind the type: an operation need not write what it would hand out.
  std::array<VARIANT, kMaxParameters> values_{};
  std::array<VARIANT*, kMaxParameters> arguments_{};
  VARIANT* target_ = nullptr;
};

void Describe(IQuillonMediaRW& object, HRESULT failure, EXCEPINFO& exception) {
  exception = EXCEPINFO{};
  exception.scode = failure;
  exception.bstrSource = SysAllocString(kVersionedProgId);
  object.get_ErrMessageText(&exception.bstrDescription);
}

}  // namespace

HRESULT FindDispatchIds(REFIID riid, LPOLESTR* names, UINT count, DISPID* ids) {
  if (!IsEqualIID(riid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
  if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
  const Operation* operation = FindByName(names[0]);
  HRESULT hr = operation == nullptr ? DISP_E_UNKNOWNNAME : S_OK;
  ids[0] = operation == nullptr ? DISPID_UNKNOWN : operation->id;
  for (UINT i = 1; i < count; ++i) {
    ids[i] = DISPID_UNKNOWN;
    const auto parameters =
        operation == nullptr ? std::span<const OperationParameter>() : operation->parameters;
    for (std::size_t p = 0; p < parameters.size(); ++p) {
      if (EqualsIgnoringCase(parameters[p].name, names[i])) ids[i] = static_cast<DISPID>(p);
    }
    if (ids[i] == DISPID_UNKNOWN) hr = DISP_E_UNKNOWNNAME;
  }
  return hr;
}

HRESULT InvokeOperation(IQuillonMediaRW& object, DISPID id, REFIID riid, WORD flags,
                        DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception,
                        UINT* badArgument) {
  if (!IsEqualIID(riid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
  if (params == nullptr) return E_INVALIDARG;
  const Operation* operation = FindById(id, flags);
  if (operation == nullptr) return DISP_E_MEMBERNOTFOUND;
  LateCall call(*operation);
  UINT place = kNoPlace;
  if (const HRESULT hr = call.Bind(*params, place); FAILED(hr)) {
    if (badArgument != nullptr && place != kNoPlace) *badArgument = place;
    return hr;
  }
  const HRESULT answer = call.Run(object);
  if (FAILED(answer)) {
    if (exception != nullptr) Describe(object, answer, *exception);
    return DISP_E_EXCEPTION;
  }
  const HRESULT hr = call.HandOut(answer, result);
  return FAILED(hr) ? hr : answer;
}

}  // namespace quillon
