#include "platform/com/safearray.h"

#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

// The 4 bytes in front of the structure hold its element type, as on Windows, where the structure
// itself has no room for it.
constexpr std::size_t kHiddenBytes = 16;
constexpr std::size_t kTypeBytes = 4;

struct ElementKind {
  ULONG sizeBytes;
  USHORT features;
};

// A size of 0 for a type that arrays cannot hold.
ElementKind kindOf(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return {1, 0};
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return {2, 0};
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return {4, 0};
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return {8, 0};
    case VT_BSTR:
      return {sizeof(BSTR), FADF_BSTR};
    case VT_UNKNOWN:
      return {sizeof(void*), FADF_UNKNOWN};
    case VT_DISPATCH:
      return {sizeof(void*), FADF_DISPATCH};
    case VT_VARIANT:
      return {sizeof(VARIANT), FADF_VARIANT};
    default:
      return {0, 0};
  }
}

std::uint8_t* elementAt(const SAFEARRAY& array, std::size_t index) {
  return static_cast<std::uint8_t*>(array.pvData) + index * array.cbElements;
}

template <typename Value>
Value& valueAt(void* element) {
  return *static_cast<Value*>(element);
}

constexpr USHORT kInterfaces = FADF_UNKNOWN | FADF_DISPATCH;

HRESULT clearElement(const SAFEARRAY& array, void* element) {
  if ((array.fFeatures & FADF_BSTR) != 0) {
    SysFreeString(valueAt<BSTR>(element));
  } else if ((array.fFeatures & kInterfaces) != 0) {
    if (IUnknown* object = valueAt<IUnknown*>(element)) object->Release();
  } else if ((array.fFeatures & FADF_VARIANT) != 0) {
    return VariantClear(&valueAt<VARIANT>(element));
  }
  std::memset(element, 0, array.cbElements);
  return S_OK;
}

// Both are storage of one element; what the target held is not looked at.
HRESULT copyElement(const SAFEARRAY& array, void* target, const void* source) {
  if ((array.fFeatures & FADF_VARIANT) != 0) {
    VariantInit(&valueAt<VARIANT>(target));
    return VariantCopy(&valueAt<VARIANT>(target), static_cast<const VARIANT*>(source));
  }
  std::memcpy(target, source, array.cbElements);
  if ((array.fFeatures & FADF_BSTR) != 0) {
    BSTR& text = valueAt<BSTR>(target);
    if (text == nullptr) return S_OK;
    text = SysAllocStringByteLen(reinterpret_cast<LPCSTR>(text), SysStringByteLen(text));
    return text == nullptr ? E_OUTOFMEMORY : S_OK;
  }
  if ((array.fFeatures & kInterfaces) != 0) {
    if (IUnknown* object = valueAt<IUnknown*>(target)) object->AddRef();
  }
  return S_OK;
}

HRESULT locate(const SAFEARRAY* array, const LONG* index, std::uint8_t*& element) {
  if (array == nullptr || index == nullptr) return E_INVALIDARG;
  const SAFEARRAYBOUND& bound = array->rgsabound[0];
  const std::int64_t offset = std::int64_t{*index} - bound.lLbound;
  if (offset < 0 || offset >= std::int64_t{bound.cElements}) return DISP_E_BADINDEX;
  element = elementAt(*array, static_cast<std::size_t>(offset));
  return S_OK;
}

}  // namespace

SAFEARRAY* SafeArrayCreateVector(VARTYPE type, LONG lowerBound, ULONG elementCount) {
  const ElementKind kind = kindOf(type);
  if (kind.sizeBytes == 0) return nullptr;
  auto* memory = static_cast<std::uint8_t*>(std::calloc(1, kHiddenBytes + sizeof(SAFEARRAY)));
  if (memory == nullptr) return nullptr;
  // One byte more, so that an empty array has data too.
  void* data = std::calloc(std::size_t{elementCount} * kind.sizeBytes + 1, 1);
  if (data == nullptr) {
    std::free(memory);
    return nullptr;
  }
  const std::uint32_t hiddenType = type;
  std::memcpy(memory + kHiddenBytes - kTypeBytes, &hiddenType, kTypeBytes);
  auto* array = reinterpret_cast<SAFEARRAY*>(memory + kHiddenBytes);
  array->cDims = 1;
  array->fFeatures = static_cast<USHORT>(FADF_HAVEVARTYPE | kind.features);
  array->cbElements = kind.sizeBytes;
  array->pvData = data;
  array->rgsabound[0] = {elementCount, lowerBound};
  return array;
}

SAFEARRAY* SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) {
  if (dimensions != 1 || bounds == nullptr) return nullptr;
  return SafeArrayCreateVector(type, bounds->lLbound, bounds->cElements);
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) {
  if (array == nullptr) return S_OK;
  if (array->cLocks > 0) return DISP_E_ARRAYISLOCKED;
  for (std::size_t i = 0; i < array->rgsabound[0].cElements; ++i) {
    clearElement(*array, elementAt(*array, i));
  }
  std::free(array->pvData);
  std::free(reinterpret_cast<std::uint8_t*>(array) - kHiddenBytes);
  return S_OK;
}

HRESULT SafeArrayCopy(SAFEARRAY* source, SAFEARRAY** copy) {
  if (copy == nullptr) return E_INVALIDARG;
  *copy = nullptr;
  if (source == nullptr) return S_OK;
  VARTYPE type = VT_EMPTY;
  SafeArrayGetVartype(source, &type);
  const SAFEARRAYBOUND& bound = source->rgsabound[0];
  SAFEARRAY* made = SafeArrayCreateVector(type, bound.lLbound, bound.cElements);
  if (made == nullptr) return E_OUTOFMEMORY;
  for (std::size_t i = 0; i < bound.cElements; ++i) {
    const HRESULT hr = copyElement(*source, elementAt(*made, i), elementAt(*source, i));
    if (FAILED(hr)) {
      SafeArrayDestroy(made);
      // The block begins before the array, so the analyzer does not see it freed.
      return hr;  // NOLINT(clang-analyzer-unix.Malloc)
    }
  }
  *copy = made;
  return S_OK;
}

HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data) {
  if (array == nullptr || data == nullptr) return E_INVALIDARG;
  ++array->cLocks;
  *data = array->pvData;
  return S_OK;
}

HRESULT SafeArrayUnaccessData(SAFEARRAY* array) {
  if (array == nullptr) return E_INVALIDARG;
  if (array->cLocks == 0) return E_UNEXPECTED;
  --array->cLocks;
  return S_OK;
}

UINT SafeArrayGetDim(SAFEARRAY* array) { return array == nullptr ? 0 : array->cDims; }

UINT SafeArrayGetElemsize(SAFEARRAY* array) { return array == nullptr ? 0 : array->cbElements; }

HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
  if (array == nullptr || bound == nullptr) return E_INVALIDARG;
  if (dimension != 1) return DISP_E_BADINDEX;
  *bound = array->rgsabound[0].lLbound;
  return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
  if (array == nullptr || bound == nullptr) return E_INVALIDARG;
  if (dimension != 1) return DISP_E_BADINDEX;
  const SAFEARRAYBOUND& of = array->rgsabound[0];
  *bound = static_cast<LONG>(std::int64_t{of.lLbound} + of.cElements - 1);
  return S_OK;
}

HRESULT SafeArrayGetElement(SAFEARRAY* array, LONG* index, void* element) {
  std::uint8_t* stored = nullptr;
  if (const HRESULT hr = locate(array, index, stored); FAILED(hr)) return hr;
  if (element == nullptr) return E_INVALIDARG;
  // A variant is copied as every variant is: what the target holds is freed first.
  if ((array->fFeatures & FADF_VARIANT) != 0) {
    return VariantCopy(static_cast<VARIANT*>(element), &valueAt<VARIANT>(stored));
  }
  return copyElement(*array, element, stored);
}

HRESULT SafeArrayPutElement(SAFEARRAY* array, LONG* index, void* element) {
  std::uint8_t* stored = nullptr;
  if (const HRESULT hr = locate(array, index, stored); FAILED(hr)) return hr;
  // Pointers come as themselves, not as the address of one.
  const bool isPointer = (array->fFeatures & (kInterfaces | FADF_BSTR)) != 0;
  if (element == nullptr && !isPointer) return E_INVALIDARG;
  alignas(VARIANT) std::uint8_t copy[sizeof(VARIANT)];
  const void* source = isPointer ? static_cast<const void*>(&element) : element;
  if (const HRESULT hr = copyElement(*array, copy, source); FAILED(hr)) return hr;
  clearElement(*array, stored);
  std::memcpy(stored, copy, array->cbElements);
  return S_OK;
}

HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type) {
  if (array == nullptr || type == nullptr) return E_INVALIDARG;
  std::uint32_t hiddenType = 0;
  std::memcpy(&hiddenType, reinterpret_cast<const std::uint8_t*>(array) - kTypeBytes, kTypeBytes);
  *type = static_cast<VARTYPE>(hiddenType);
  return S_OK;
}
