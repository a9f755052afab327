#include "support/com_class.h"

#include "platform/com/com_object.h"

namespace quillon::test {
namespace {

// A class object that makes its objects by a function.
class Factory final : public ComObject<IClassFactory, IID_IClassFactory> {
 public:
  explicit Factory(CreateObject create) : create_(std::move(create)) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** object) override {
    *object = nullptr;
    return outer != nullptr ? CLASS_E_NOAGGREGATION : create_(riid, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  CreateObject create_;
};

}  // namespace

DWORD registerClass(REFCLSID clsid, CreateObject create) {
  ComPtr<IUnknown> factory;
  factory.Attach(new Factory(std::move(create)));
  DWORD cookie = 0;
  CoRegisterClassObject(clsid, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie);
  return cookie;
}

HiddenClass::HiddenClass(REFCLSID clsid)
    : cookie_(registerClass(clsid, [](REFIID, void**) { return REGDB_E_CLASSNOTREG; })) {}

HiddenClass::~HiddenClass() { CoRevokeClassObject(cookie_); }

}  // namespace quillon::test
