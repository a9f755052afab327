// Values: their ownership. The conversions are in variant_change_type.cpp.
#include "platform/com/variant.h"

#include <cstdlib>

#include "platform/com/dispatch.h"
#include "platform/com/runtime.h"
#include "platform/com/safearray.h"
#include "platform/com/storage.h"

namespace {

bool isPlain(VARTYPE type) {
  switch (type) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_I2:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_ERROR:
    case VT_BOOL:
    case VT_I1:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
    case VT_INT:
    case VT_UINT:
      return true;
    default:
      return false;
  }
}

// What a VT_BYREF value refers to, as a value that owns nothing.
HRESULT follow(const VARIANT& source, VARIANT& seen) {
  const auto type = static_cast<VARTYPE>(source.vt & ~VT_BYREF);
  if (source.byref == nullptr) return E_INVALIDARG;
  VariantInit(&seen);
  seen.vt = type;
  switch (type) {
    case VT_I1:
    case VT_UI1:
      seen.bVal = *source.pbVal;
      return S_OK;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      seen.iVal = *source.piVal;
      return S_OK;
    case VT_I4:
    case VT_UI4:
    case VT_R4:
    case VT_ERROR:
    case VT_INT:
    case VT_UINT:
      seen.lVal = *source.plVal;
      return S_OK;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      seen.llVal = *source.pllVal;
      return S_OK;
    case VT_BSTR:
      seen.bstrVal = *source.pbstrVal;
      return S_OK;
    case VT_UNKNOWN:
    case VT_DISPATCH:
      seen.punkVal = *source.ppunkVal;
      return S_OK;
    case VT_VARIANT:
      seen = *source.pvarVal;
      // One step only: a chain could be endless.
      return (seen.vt & VT_BYREF) != 0 && seen.vt == (VT_BYREF | VT_VARIANT) ? E_INVALIDARG : S_OK;
    default:
      if ((type & VT_ARRAY) == 0) return DISP_E_BADVARTYPE;
      seen.parray = *source.pparray;
      return S_OK;
  }
}

// Copies a value that owns what it holds.
HRESULT duplicate(const VARIANT& source, VARIANT& copy) {
  copy = source;
  if ((source.vt & VT_BYREF) != 0) return S_OK;
  if ((source.vt & VT_ARRAY) != 0) {
    return source.parray == nullptr ? S_OK : SafeArrayCopy(source.parray, &copy.parray);
  }
  if (source.vt == VT_BSTR) {
    if (source.bstrVal == nullptr) return S_OK;
    copy.bstrVal = SysAllocStringByteLen(reinterpret_cast<LPCSTR>(source.bstrVal),
                                         SysStringByteLen(source.bstrVal));
    return copy.bstrVal == nullptr ? E_OUTOFMEMORY : S_OK;
  }
  if (source.vt == VT_UNKNOWN || source.vt == VT_DISPATCH) {
    if (source.punkVal != nullptr) source.punkVal->AddRef();
    return S_OK;
  }
  return isPlain(source.vt) ? S_OK : DISP_E_BADVARTYPE;
}

}  // namespace

// The value behind the type stays what it was, as on Windows.
void VariantInit(VARIANT* value) { value->vt = VT_EMPTY; }

HRESULT VariantClear(VARIANT* value) {
  if (value == nullptr) return E_INVALIDARG;
  if ((value->vt & VT_BYREF) == 0) {
    if ((value->vt & VT_ARRAY) != 0) {
      if (value->parray != nullptr) {
        if (const HRESULT hr = SafeArrayDestroy(value->parray); FAILED(hr)) return hr;
      }
    } else if (value->vt == VT_BSTR) {
      SysFreeString(value->bstrVal);
    } else if (value->vt == VT_UNKNOWN || value->vt == VT_DISPATCH) {
      if (value->punkVal != nullptr) value->punkVal->Release();
    } else if (!isPlain(value->vt)) {
      return DISP_E_BADVARTYPE;
    }
  }
  VariantInit(value);
  return S_OK;
}

HRESULT VariantCopy(VARIANT* target, const VARIANT* source) {
  if (target == nullptr || source == nullptr) return E_INVALIDARG;
  if (target == source) return S_OK;
  VARIANT copy;
  VariantInit(&copy);
  if (const HRESULT hr = duplicate(*source, copy); FAILED(hr)) {
    // The target is freed before the copy is made.
    if (hr == E_OUTOFMEMORY) VariantClear(target);
    return hr;
  }
  if (const HRESULT hr = VariantClear(target); FAILED(hr)) {
    VariantClear(&copy);
    return hr;
  }
  *target = copy;
  return S_OK;
}

HRESULT VariantCopyInd(VARIANT* target, const VARIANT* source) {
  if (target == nullptr || source == nullptr) return E_INVALIDARG;
  if ((source->vt & VT_BYREF) == 0) return VariantCopy(target, source);
  VARIANT seen;
  if (const HRESULT hr = follow(*source, seen); FAILED(hr)) return hr;
  return (seen.vt & VT_BYREF) != 0 ? VariantCopyInd(target, &seen) : VariantCopy(target, &seen);
}

HRESULT PropVariantClear(PROPVARIANT* value) {
  if (value == nullptr) return E_INVALIDARG;
  switch (value->vt) {
    case VT_BSTR:
      SysFreeString(value->bstrVal);
      break;
    case VT_LPSTR:
    case VT_LPWSTR:
      CoTaskMemFree(value->pszVal);
      break;
    case VT_UNKNOWN:
    case VT_DISPATCH:
      if (value->punkVal != nullptr) value->punkVal->Release();
      break;
    case VT_FILETIME:
      break;
    default:
      if (!isPlain(value->vt)) return STG_E_INVALIDPARAMETER;
  }
  PropVariantInit(value);
  return S_OK;
}
