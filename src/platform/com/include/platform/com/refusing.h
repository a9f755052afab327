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

}  // namespace quillon
