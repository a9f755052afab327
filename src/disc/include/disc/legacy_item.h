// What the wrappers of the legacy recording interfaces have in common: each holds one interface,
// creates it on first use where it can be created, and turns a failing call into
// "<class>::<method> failed for this reason:  " and the reason.
#pragma once

#include <functional>

#include "foundation/com_base.h"

namespace quillon {

template <typename Interface>
class CLegacyItem : public CComBase {
 public:
  using Held = Interface;

  [[nodiscard]] Interface* Get() const { return interface_.Get(); }
  // Where a call stores its result; what was held is released first.
  [[nodiscard]] Interface** Put() { return interface_.Put(); }

 protected:
  // Without a class identifier for an interface that only another object hands out.
  explicit CLegacyItem(TextView className, const CLSID* clsid = nullptr, const IID* iid = nullptr)
      : clsid_(clsid), iid_(iid) {
    SetClassName(className);
  }

  // Takes a method of the interface, or what is called with the Interface& in its place.
  template <typename Method, typename... Args>
  [[nodiscard]] bool Call(TextView name, const Method& method, const Args&... args) {
    try {
      if (!interface_ && EnsureComInitialized()) lastResult_ = Create();
      if (!interface_) return Fail(kMsgLegacyInterfaceMissing);
      lastResult_ = std::invoke(method, *interface_, args...);
      return CheckResult(lastResult_, kMsgLegacyMethodFailed, ClassName(), name);
    } catch (const _com_error& error) {
      return ProcessError(error, kMsgLegacyMethodThrew, ClassName(), name);
    }
  }
  // The same with what another wrapper holds, which is an invalid argument when that is empty.
  template <typename Method, typename Item, typename... Args>
  [[nodiscard]] bool CallWith(TextView name, const Method& method, const Item& item,
                              const Args&... args) {
    if (item.Get() == nullptr) {
      return ReportFailure(E_INVALIDARG, kMsgLegacyMethodFailed, ClassName(), name);
    }
    return Call(name, method, item.Get(), args...);
  }

 private:
  HRESULT Create() {
    if (clsid_ == nullptr) return E_NOINTERFACE;
    const HRESULT hr = CoCreateInstance(
        *clsid_, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, *iid_, interface_.PutVoid());
    createdHere_ = interface_.Get() != nullptr;
    return hr;
  }

  const CLSID* clsid_;
  const IID* iid_;
  ComPtr<Interface> interface_;
};

}  // namespace quillon
