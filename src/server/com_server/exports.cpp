// The four functions by which the system gets at the server.
#include "class_factory.h"
#include "module.h"

// On Windows the system's headers declare two of them.
STDAPI DllCanUnloadNow();
STDAPI DllGetClassObject(REFCLSID clsid, REFIID riid, LPVOID* object);
STDAPI DllRegisterServer();
STDAPI DllUnregisterServer();

STDAPI DllCanUnloadNow() { return quillon::Module().GetLockCount() == 0 ? S_OK : S_FALSE; }

STDAPI DllGetClassObject(REFCLSID clsid, REFIID riid, LPVOID* object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (!IsEqualCLSID(clsid, quillon::CLSID_QuillonMediaRW) || !quillon::Module().IsInitialised()) {
    return CLASS_E_CLASSNOTAVAILABLE;
  }
  return quillon::MediaRWFactory::Instance().QueryInterface(riid, object);
}

STDAPI DllRegisterServer() {
  try {
    return quillon::Module().RegisterServer();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

STDAPI DllUnregisterServer() {
  try {
    return quillon::Module().UnregisterServer();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}
