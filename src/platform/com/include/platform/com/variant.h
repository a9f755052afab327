// The tagged value that automation passes, and the conversions between its simple types.
#pragma once

#include "platform/com/bstr.h"
#include "platform/com/unknown.h"

struct IDispatch;
struct SAFEARRAY;
struct VARIANT;

using VARTYPE = WORD;
using VARIANT_BOOL = SHORT;
using SCODE = LONG;
using DATE = double;
using VARENUM = int;

inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

enum : VARTYPE {
  VT_EMPTY = 0,
  VT_NULL = 1,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_CY = 6,
  VT_DATE = 7,
  VT_BSTR = 8,
  VT_DISPATCH = 9,
  VT_ERROR = 10,
  VT_BOOL = 11,
  VT_VARIANT = 12,
  VT_UNKNOWN = 13,
  VT_DECIMAL = 14,
  VT_I1 = 16,
  VT_UI1 = 17,
  VT_UI2 = 18,
  VT_UI4 = 19,
  VT_I8 = 20,
  VT_UI8 = 21,
  VT_INT = 22,
  VT_UINT = 23,
  VT_LPSTR = 30,
  VT_LPWSTR = 31,
  VT_FILETIME = 64,
  VT_CLSID = 72,
  VT_ARRAY = 0x2000,
  VT_BYREF = 0x4000,
  VT_TYPEMASK = 0x0FFF,
};

union CY {
  LONGLONG int64;
};

struct VARIANT {
  VARTYPE vt;
  WORD wReserved1;
  WORD wReserved2;
  WORD wReserved3;
  union {
    LONGLONG llVal;
    LONG lVal;
    BYTE bVal;
    SHORT iVal;
    FLOAT fltVal;
    double dblVal;
    VARIANT_BOOL boolVal;
    SCODE scode;
    CY cyVal;
    DATE date;
    BSTR bstrVal;
    IUnknown* punkVal;
    IDispatch* pdispVal;
    SAFEARRAY* parray;
    BYTE* pbVal;
    SHORT* piVal;
    LONG* plVal;
    LONGLONG* pllVal;
    double* pdblVal;
    VARIANT_BOOL* pboolVal;
    BSTR* pbstrVal;
    IUnknown** ppunkVal;
    IDispatch** ppdispVal;
    SAFEARRAY** pparray;
    VARIANT* pvarVal;
    void* byref;
    CHAR cVal;
    USHORT uiVal;
    ULONG ulVal;
    ULONGLONG ullVal;
    INT intVal;
    UINT uintVal;
    USHORT* puiVal;
    ULONG* pulVal;
    void* recordAndItsType[2];  // gives the union the size that it has with a record in it
  };
};
using LPVARIANT = VARIANT*;
using VARIANTARG = VARIANT;
static_assert(sizeof(VARIANT) == 8 + 2 * sizeof(void*));

#define V_VT(v) ((v)->vt)
#define V_BSTR(v) ((v)->bstrVal)
#define V_BOOL(v) ((v)->boolVal)
#define V_I2(v) ((v)->iVal)
#define V_I4(v) ((v)->lVal)
#define V_UI4(v) ((v)->ulVal)
#define V_UI1(v) ((v)->bVal)
#define V_ERROR(v) ((v)->scode)
#define V_UNKNOWN(v) ((v)->punkVal)
#define V_DISPATCH(v) ((v)->pdispVal)
#define V_ARRAY(v) ((v)->parray)

inline constexpr WORD VARIANT_NOVALUEPROP = 0x1;
inline constexpr WORD VARIANT_ALPHABOOL = 0x2;

extern "C" {

// Sets the type and nothing else.
void VariantInit(VARIANT* value);
// Frees what the value owns and makes it VT_EMPTY.
HRESULT VariantClear(VARIANT* value);
HRESULT VariantCopy(VARIANT* target, const VARIANT* source);
// VT_BYREF is followed.
HRESULT VariantCopyInd(VARIANT* target, const VARIANT* source);
// Between empty, the integers, the reals, booleans and texts; DISP_E_TYPEMISMATCH for a text that
// is no number and for other types, DISP_E_OVERFLOW where the value does not fit. The target may be
// the source.
HRESULT VariantChangeType(VARIANT* target, const VARIANT* source, USHORT flags, VARTYPE type);

}  // extern "C"
