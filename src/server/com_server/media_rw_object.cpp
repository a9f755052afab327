#include "media_rw_object.h"

#include "dispatch.h"
#include "fileset/toolkit_log.h"
#include "module.h"
#include "own_resources.h"

namespace quillon {

HRESULT MediaRWObject::Create(IUnknown* outer, REFIID riid, void** object) {
  *object = nullptr;
  try {
    // Before the toolkit has anything to say, and once: other objects may be at work on other
    // threads.
    static const bool isLogConfigured = (SendToolkitLogAsConfigured(), true);
    static_cast<void>(isLogConfigured);
    auto* const made = new MediaRWObject(outer);
    const HRESULT hr = made->inner_.QueryInterface(riid, object);
    made->inner_.Release();
    return hr;
  } catch (...) {  // the settings have no other way to fail
    return E_OUTOFMEMORY;
  }
}

MediaRWObject::MediaRWObject(IUnknown* outer)
    : inner_(*this), identity_(outer == nullptr ? &inner_ : outer) {
  Module().Lock();
}

MediaRWObject::~MediaRWObject() { Module().Unlock(); }

HRESULT MediaRWObject::Inner::QueryInterface(REFIID riid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (IsEqualIID(riid, IID_IUnknown)) {
    *object = static_cast<IUnknown*>(this);
    AddRef();
    return S_OK;
  }
  if (!IsEqualIID(riid, IID_IDispatch) && !IsEqualIID(riid, IID_IQuillonMediaRW)) {
    return E_NOINTERFACE;
  }
  *object = static_cast<IQuillonMediaRW*>(&owner_);
  owner_.AddRef();
  return S_OK;
}

ULONG MediaRWObject::Inner::Release() {
  const ULONG left = --references_;
  if (left == 0) delete &owner_;
  return left;
}

HRESULT MediaRWObject::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = OwnTypeInfoCount();
  return S_OK;
}

HRESULT MediaRWObject::GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  return index == 0 ? GetOwnTypeInfo(lcid, info) : DISP_E_BADINDEX;
}

HRESULT MediaRWObject::GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  return FindDispatchIds(riid, names, count, ids);
}

HRESULT MediaRWObject::Invoke(DISPID id, REFIID riid, LCID, WORD flags, DISPPARAMS* params,
                              VARIANT* result, EXCEPINFO* exception, UINT* badArgument) {
  return InvokeOperation(*this, id, riid, flags, params, result, exception, badArgument);
}

}  // namespace quillon
