// Interfaces that must be whole, with every method refused by E_NOTIMPL: a class overrides what its
// callers use. Refusing<I> is an I that ComObject takes in its place: ComObject<Refusing<I>,
// IID_I>.
#pragma once

#include "platform/com.h"

namespace quillon {

template <typename Interface>
class Refusing;

template <>
class Refusing<IEnumVARIANT> : public IEnumVARIANT {
 public:
  HRESULT STDMETHODCALLTYPE Next(ULONG, VARIANT*, ULONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT**) override { return E_NOTIMPL; }
};

template <>
class Refusing<IPropertyStorage> : public IPropertyStorage {
 public:
  HRESULT STDMETHODCALLTYPE ReadMultiple(ULONG, const PROPSPEC*, PROPVARIANT*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE WriteMultiple(ULONG, const PROPSPEC*, const PROPVARIANT*,
                                          PROPID) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE DeleteMultiple(ULONG, const PROPSPEC*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ReadPropertyNames(ULONG, const PROPID*, LPOLESTR*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE WritePropertyNames(ULONG, const PROPID*, const LPOLESTR*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE DeletePropertyNames(ULONG, const PROPID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Revert() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Enum(IEnumSTATPROPSTG**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetTimes(const FILETIME*, const FILETIME*, const FILETIME*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetClass(REFCLSID) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Stat(STATPROPSETSTG*) override { return E_NOTIMPL; }
};

template <>
class Refusing<IStream> : public IStream {
 public:
  HRESULT STDMETHODCALLTYPE Read(void*, ULONG, ULONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Write(const void*, ULONG, ULONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*,
                                   ULARGE_INTEGER*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Revert() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clone(IStream**) override { return E_NOTIMPL; }
};

template <>
class Refusing<IStorage> : public IStorage {
 public:
  HRESULT STDMETHODCALLTYPE CreateStream(const OLECHAR*, DWORD, DWORD, DWORD, IStream**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE OpenStream(const OLECHAR*, void*, DWORD, DWORD, IStream**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE CreateStorage(const OLECHAR*, DWORD, DWORD, DWORD,
                                          IStorage**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE OpenStorage(const OLECHAR*, IStorage*, DWORD, LPOLESTR*, DWORD,
                                        IStorage**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE CopyTo(DWORD, const IID*, LPOLESTR*, IStorage*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE MoveElementTo(const OLECHAR*, IStorage*, const OLECHAR*,
                                          DWORD) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Revert() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnumElements(DWORD, void*, DWORD, IEnumSTATSTG**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE DestroyElement(const OLECHAR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE RenameElement(const OLECHAR*, const OLECHAR*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetElementTimes(const OLECHAR*, const FILETIME*, const FILETIME*,
                                            const FILETIME*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetClass(REFCLSID) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetStateBits(DWORD, DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }
};

template <>
class Refusing<IEnumSTATSTG> : public IEnumSTATSTG {
 public:
  HRESULT STDMETHODCALLTYPE Next(ULONG, STATSTG*, ULONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clone(IEnumSTATSTG**) override { return E_NOTIMPL; }
};

template <>
class Refusing<IShellFolder> : public IShellFolder {
 public:
  HRESULT STDMETHODCALLTYPE ParseDisplayName(HWND, IBindCtx*, LPWSTR, ULONG*, ITEMIDLIST**,
                                             ULONG*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE BindToStorage(const ITEMIDLIST*, IBindCtx*, REFIID, void**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE EnumObjects(HWND, DWORD, IEnumIDList**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE BindToObject(const ITEMIDLIST*, IBindCtx*, REFIID, void**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE CompareIDs(LPARAM, const ITEMIDLIST*, const ITEMIDLIST*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE CreateViewObject(HWND, REFIID, void**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetAttributesOf(UINT, const ITEMIDLIST**, ULONG*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetUIObjectOf(HWND, UINT, const ITEMIDLIST**, REFIID, UINT*,
                                          void**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetDisplayNameOf(const ITEMIDLIST*, DWORD, STRRET*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetNameOf(HWND, const ITEMIDLIST*, LPCWSTR, DWORD,
                                      ITEMIDLIST**) override {
    return E_NOTIMPL;
  }
};

}  // namespace quillon
