// Arrays of one dimension. Elements that own something (texts, interfaces, variants) are copied in
// and out and freed with the array.
#pragma once

#include "platform/com/variant.h"

struct SAFEARRAYBOUND {
  ULONG cElements;
  LONG lLbound;
};

struct SAFEARRAY {
  USHORT cDims;
  USHORT fFeatures;
  ULONG cbElements;
  ULONG cLocks;
  PVOID pvData;
  SAFEARRAYBOUND rgsabound[1];
};
using LPSAFEARRAY = SAFEARRAY*;
static_assert(sizeof(void*) != 8 || sizeof(SAFEARRAY) == 32);

inline constexpr USHORT FADF_HAVEVARTYPE = 0x80;
inline constexpr USHORT FADF_BSTR = 0x100;
inline constexpr USHORT FADF_UNKNOWN = 0x200;
inline constexpr USHORT FADF_DISPATCH = 0x400;
inline constexpr USHORT FADF_VARIANT = 0x800;

extern "C" {

// Elements start as zeros. Null for a type that arrays cannot hold, or when memory runs out.
SAFEARRAY* SafeArrayCreateVector(VARTYPE type, LONG lowerBound, ULONG elementCount);
// Only one dimension: null for others.
SAFEARRAY* SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds);
HRESULT SafeArrayDestroy(SAFEARRAY* array);  // DISP_E_ARRAYISLOCKED while its data is accessed
HRESULT SafeArrayCopy(SAFEARRAY* source, SAFEARRAY** copy);
HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data);
HRESULT SafeArrayUnaccessData(SAFEARRAY* array);
UINT SafeArrayGetDim(SAFEARRAY* array);
UINT SafeArrayGetElemsize(SAFEARRAY* array);
// Dimensions count from 1.
HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound);
HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound);
// DISP_E_BADINDEX outside the bounds. A variant that is read into has been initialised: what it
// holds is freed. Texts and interfaces are passed as such, other elements by
// address.
HRESULT SafeArrayGetElement(SAFEARRAY* array, LONG* index, void* element);
HRESULT SafeArrayPutElement(SAFEARRAY* array, LONG* index, void* element);
HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type);

}  // extern "C"
