#include "class_factory.h"

#include "media_rw_object.h"
#include "module.h"

namespace quillon {

MediaRWFactory& MediaRWFactory::Instance() {
  static MediaRWFactory factory;
  return factory;
}

HRESULT MediaRWFactory::QueryInterface(REFIID riid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (!IsEqualIID(riid, IID_IUnknown) && !IsEqualIID(riid, IID_IClassFactory)) {
    return E_NOINTERFACE;
  }
  *object = static_cast<IClassFactory*>(this);
  AddRef();
  return S_OK;
}

// What the counts are is nobody's business but the module's.
ULONG MediaRWFactory::AddRef() {
  Module().Lock();
  return 2;
}

ULONG MediaRWFactory::Release() {
  Module().Unlock();
  return 1;
}

HRESULT MediaRWFactory::CreateInstance(IUnknown* outer, REFIID riid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (outer != nullptr && !IsEqualIID(riid, IID_IUnknown)) return CLASS_E_NOAGGREGATION;
  return MediaRWObject::Create(outer, riid, object);
}

HRESULT MediaRWFactory::LockServer(BOOL lock) {
  if (lock != FALSE) {
    Module().Lock();
  } else {
    Module().Unlock();
  }
  return S_OK;
}

}  // namespace quillon
