// Structured storage and property sets.
#pragma once

#include "platform/com/stream.h"
#include "platform/com/variant.h"

using PROPID = ULONG;
struct IEnumSTATSTG;
struct IEnumSTATPROPSTG;
struct STATPROPSETSTG;

inline constexpr ULONG PRSPEC_LPWSTR = 0;
inline constexpr ULONG PRSPEC_PROPID = 1;

struct PROPSPEC {
  ULONG ulKind;
  union {
    PROPID propid;
    LPOLESTR lpwstr;
  };
};
static_assert(sizeof(void*) != 8 || sizeof(PROPSPEC) == 16);

struct PROPVARIANT {
  VARTYPE vt;
  WORD wReserved1;
  WORD wReserved2;
  WORD wReserved3;
  union {
    CHAR cVal;
    BYTE bVal;
    SHORT iVal;
    USHORT uiVal;
    LONG lVal;
    ULONG ulVal;
    INT intVal;
    UINT uintVal;
    LARGE_INTEGER hVal;
    ULARGE_INTEGER uhVal;
    FLOAT fltVal;
    double dblVal;
    VARIANT_BOOL boolVal;
    SCODE scode;
    CY cyVal;
    DATE date;
    FILETIME filetime;
    BSTR bstrVal;
    LPSTR pszVal;
    LPWSTR pwszVal;
    IUnknown* punkVal;
    IDispatch* pdispVal;
    void* countedArray[2];  // gives the union the size that it has with a count and a pointer in it
  };
};
static_assert(sizeof(PROPVARIANT) == sizeof(VARIANT));

inline void PropVariantInit(PROPVARIANT* value) { *value = PROPVARIANT{}; }
// Frees what the value owns (LPSTR and LPWSTR with CoTaskMemFree) and makes it VT_EMPTY.
HRESULT PropVariantClear(PROPVARIANT* value);

inline constexpr IID IID_IStorage = {
    0x0000000B, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr IID IID_IEnumSTATSTG = {
    0x0000000D, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr IID IID_IPropertyStorage = {
    0x00000138, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

struct IStorage : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE CreateStream(const OLECHAR* name, DWORD mode, DWORD reserved1,
                                                 DWORD reserved2, IStream** stream) = 0;
  virtual HRESULT STDMETHODCALLTYPE OpenStream(const OLECHAR* name, void* reserved1, DWORD mode,
                                               DWORD reserved2, IStream** stream) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateStorage(const OLECHAR* name, DWORD mode, DWORD reserved1,
                                                  DWORD reserved2, IStorage** storage) = 0;
  virtual HRESULT STDMETHODCALLTYPE OpenStorage(const OLECHAR* name, IStorage* priority, DWORD mode,
                                                LPOLESTR* exclude, DWORD reserved,
                                                IStorage** storage) = 0;
  virtual HRESULT STDMETHODCALLTYPE CopyTo(DWORD excludeCount, const IID* excludeIds,
                                           LPOLESTR* excludeNames, IStorage* target) = 0;
  virtual HRESULT STDMETHODCALLTYPE MoveElementTo(const OLECHAR* name, IStorage* target,
                                                  const OLECHAR* newName, DWORD flags) = 0;
  virtual HRESULT STDMETHODCALLTYPE Commit(DWORD flags) = 0;
  virtual HRESULT STDMETHODCALLTYPE Revert() = 0;
  virtual HRESULT STDMETHODCALLTYPE EnumElements(DWORD reserved1, void* reserved2, DWORD reserved3,
                                                 IEnumSTATSTG** elements) = 0;
  virtual HRESULT STDMETHODCALLTYPE DestroyElement(const OLECHAR* name) = 0;
  virtual HRESULT STDMETHODCALLTYPE RenameElement(const OLECHAR* oldName,
                                                  const OLECHAR* newName) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetElementTimes(const OLECHAR* name, const FILETIME* created,
                                                    const FILETIME* accessed,
                                                    const FILETIME* modified) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetClass(REFCLSID clsid) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetStateBits(DWORD bits, DWORD mask) = 0;
  virtual HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD flag) = 0;
};

struct IEnumSTATSTG : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Next(ULONG count, STATSTG* items, ULONG* fetched) = 0;
  virtual HRESULT STDMETHODCALLTYPE Skip(ULONG count) = 0;
  virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
  virtual HRESULT STDMETHODCALLTYPE Clone(IEnumSTATSTG** copy) = 0;
};

struct IPropertyStorage : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE ReadMultiple(ULONG count, const PROPSPEC* specs,
                                                 PROPVARIANT* values) = 0;
  virtual HRESULT STDMETHODCALLTYPE WriteMultiple(ULONG count, const PROPSPEC* specs,
                                                  const PROPVARIANT* values, PROPID nameFirst) = 0;
  virtual HRESULT STDMETHODCALLTYPE DeleteMultiple(ULONG count, const PROPSPEC* specs) = 0;
  virtual HRESULT STDMETHODCALLTYPE ReadPropertyNames(ULONG count, const PROPID* ids,
                                                      LPOLESTR* names) = 0;
  virtual HRESULT STDMETHODCALLTYPE WritePropertyNames(ULONG count, const PROPID* ids,
                                                       const LPOLESTR* names) = 0;
  virtual HRESULT STDMETHODCALLTYPE DeletePropertyNames(ULONG count, const PROPID* ids) = 0;
  virtual HRESULT STDMETHODCALLTYPE Commit(DWORD flags) = 0;
  virtual HRESULT STDMETHODCALLTYPE Revert() = 0;
  virtual HRESULT STDMETHODCALLTYPE Enum(IEnumSTATPROPSTG** properties) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetTimes(const FILETIME* created, const FILETIME* accessed,
                                             const FILETIME* modified) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetClass(REFCLSID clsid) = 0;
  virtual HRESULT STDMETHODCALLTYPE Stat(STATPROPSETSTG* stat) = 0;
};
