// Property storages and folders that can do nothing yet, over a base that holds the reference
// count: tests override the methods that matter to them.
#pragma once

#include "platform/com.h"

namespace quillon::test {

template <typename Base>
class StubPropertyStorage : public Base {
 public:
  using Base::Base;

  HRESULT STDMETHODCALLTYPE ReadMultiple(ULONG, const PROPSPEC*, PROPVARIANT*) override {
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
  HRESULT STDMETHODCALLTYPE Revert() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Enum(IEnumSTATPROPSTG**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetTimes(const FILETIME*, const FILETIME*, const FILETIME*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetClass(REFCLSID) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Stat(STATPROPSETSTG*) override { return E_NOTIMPL; }
};

template <typename Base>
class StubFolder : public Base {
 public:
  using Base::Base;

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

}  // namespace quillon::test
