#include "server_module.h"

#ifndef _WIN32
#include <dlfcn.h>
#endif

namespace quillon::client {
namespace {

#ifdef _WIN32
void* open(const std::string& path) { return LoadLibraryA(path.c_str()); }
void* symbol(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}
#else
void* open(const std::string& path) { return ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL); }
void* symbol(void* library, const char* name) { return ::dlsym(library, name); }
#endif

template <typename Function>
bool find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(symbol(library, name));
  return function != nullptr;
}

class Outer final : public IUnknown {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    if (!IsEqualIID(riid, IID_IUnknown)) return inner->QueryInterface(riid, object);
    AddRef();
    *object = static_cast<IUnknown*>(this);
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }

  ULONG references = 1;
  ComPtr<IUnknown> inner;
};

}  // namespace

bool ServerModule::Load(const std::string& path) {
  void* const library = open(path);
  return library != nullptr && find(library, "DllCanUnloadNow", canUnloadNow_) &&
         find(library, "DllRegisterServer", register_) &&
         find(library, "DllUnregisterServer", unregister_) &&
         find(library, "DllGetClassObject", getClassObject_);
}

std::string aggregate(const ServerModule& module) {
  ComPtr<IClassFactory> factory;
  const HRESULT hr = module.ClassObject(CLSID_QuillonMediaRW, IID_IClassFactory, factory.PutVoid());
  if (FAILED(hr)) return shown(hr);
  Outer outer;
  ComPtr<IDispatch> refused;
  std::string out =
      "IDispatch " + shown(factory->CreateInstance(&outer, IID_IDispatch, refused.PutVoid()));
  const HRESULT made = factory->CreateInstance(&outer, IID_IUnknown, outer.inner.PutVoid());
  out += ", IUnknown " + shown(made);
  if (FAILED(made)) return out;
  {
    ComPtr<IQuillonMediaRW> media;
    out += ", interface " + shown(outer.QueryInterface(IID_IQuillonMediaRW, media.PutVoid()));
    out += ", references " + std::to_string(outer.references);
    ComPtr<IUnknown> identity;
    out += ", identity " + shown(media.As(IID_IUnknown, identity));
    out += identity.Get() == &outer ? " outer" : " not outer";
  }
  out += ", references " + std::to_string(outer.references);
  return out;
}

}  // namespace quillon::client
