// Classes by their identifiers.
#include "platform/com/class_table.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <new>
#include <vector>

#include "apartment.h"
#include "in_process_servers.h"
#include "platform/com/com_ptr.h"
#include "platform/com/runtime.h"

namespace quillon::platform {
namespace {

struct RegisteredFactory {
  DWORD cookie;
  CLSID clsid;
  DWORD context;
  DWORD flags;
  ComPtr<IUnknown> factory;
};

struct ClassTable {
  std::mutex mutex;
  DWORD lastCookie = 0;
  std::vector<RegisteredFactory> registered;
  std::vector<BuiltInClass> builtIn;
};

ClassTable& classTable() {
  static ClassTable table;
  return table;
}

// The class object of a built-in class.
class BuiltInFactory final : public IClassFactory {
 public:
  explicit BuiltInFactory(CreateObject create) : create_(create) {}
  BuiltInFactory(const BuiltInFactory&) = delete;
  BuiltInFactory& operator=(const BuiltInFactory&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = riid == IID_IUnknown || riid == IID_IClassFactory ? this : nullptr;
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return create_(riid, object);
  }
  // The layer is never unloaded.
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  ~BuiltInFactory() = default;

  std::atomic<ULONG> references_{1};
  CreateObject create_;
};

// The newest registration that the context allows; one for a single use leaves the table.
ComPtr<IUnknown> takeRegistered(REFCLSID clsid, DWORD context) {
  ClassTable& table = classTable();
  const std::lock_guard lock(table.mutex);
  const auto found = std::find_if(table.registered.rbegin(), table.registered.rend(),
                                  [&](const RegisteredFactory& row) {
                                    return row.clsid == clsid && (row.context & context) != 0;
                                  });
  if (found == table.registered.rend()) return nullptr;
  ComPtr<IUnknown> factory = found->factory;
  if (found->flags == REGCLS_SINGLEUSE) table.registered.erase(std::next(found).base());
  return factory;
}

CreateObject findBuiltIn(REFCLSID clsid) {
  ClassTable& table = classTable();
  const std::lock_guard lock(table.mutex);
  const auto found = std::find_if(table.builtIn.rbegin(), table.builtIn.rend(),
                                  [&](const BuiltInClass& row) { return row.clsid == clsid; });
  return found == table.builtIn.rend() ? nullptr : found->create;
}

}  // namespace

bool RegisterBuiltInClasses(std::initializer_list<BuiltInClass> classes) {
  ClassTable& table = classTable();
  const std::lock_guard lock(table.mutex);
  table.builtIn.insert(table.builtIn.end(), classes);
  return true;
}

}  // namespace quillon::platform

using namespace quillon::platform;
using quillon::ComPtr;

HRESULT CoGetClassObject(REFCLSID clsid, DWORD context, LPVOID, REFIID riid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (!isComInitialized()) return CO_E_NOTINITIALIZED;
  if (const ComPtr<IUnknown> factory = takeRegistered(clsid, context)) {
    return factory->QueryInterface(riid, object);
  }
  const CreateObject create = findBuiltIn(clsid);
  if (create == nullptr) {
    const bool isInProcess = (context & CLSCTX_INPROC_SERVER) != 0;
    return isInProcess ? classObjectOfServer(clsid, riid, object) : REGDB_E_CLASSNOTREG;
  }
  ComPtr<IClassFactory> factory;
  factory.Attach(new (std::nothrow) BuiltInFactory(create));
  return factory ? factory->QueryInterface(riid, object) : E_OUTOFMEMORY;
}

HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID riid,
                         void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  ComPtr<IClassFactory> factory;
  const HRESULT hr =
      CoGetClassObject(clsid, context, nullptr, IID_IClassFactory, factory.PutVoid());
  return FAILED(hr) ? hr : factory->CreateInstance(outer, riid, object);
}

HRESULT CoRegisterClassObject(REFCLSID clsid, IUnknown* factory, DWORD context, DWORD flags,
                              DWORD* cookie) {
  if (factory == nullptr || cookie == nullptr) return E_INVALIDARG;
  *cookie = 0;
  if (!isComInitialized()) return CO_E_NOTINITIALIZED;
  ClassTable& table = classTable();
  const std::lock_guard lock(table.mutex);
  *cookie = ++table.lastCookie;
  table.registered.push_back({*cookie, clsid, context, flags, ComPtr<IUnknown>(factory)});
  return S_OK;
}

HRESULT CoRevokeClassObject(DWORD cookie) {
  ClassTable& table = classTable();
  // Released outside the lock: the factory's destructor may come back here.
  ComPtr<IUnknown> factory;
  const std::lock_guard lock(table.mutex);
  const auto found =
      std::find_if(table.registered.begin(), table.registered.end(),
                   [cookie](const RegisteredFactory& row) { return row.cookie == cookie; });
  if (found == table.registered.end()) return CO_E_OBJNOTREG;
  factory = std::move(found->factory);
  table.registered.erase(found);
  return S_OK;
}
