// Interfaces that must be whole, with every method refused by E_NOTIMPL: a class overrides what its
// callers use. Refusing<I> is an I that ComObject takes in its place: ComObject<Refusing<I>, IID_I>.
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

}  // namespace quillon
