// What the wrappers of the legacy recording interfaces have in common: each holds one interface,
// creates it on first use where it can be created, and turns a failing call into
// "<class>::<method> failed for this reason:  " and the reason.
#pragma once

#include "foundation/com_base.h"

namespace quillon {

template <typename Interface>
class CLegacyItem : public CComBase {
 public:
  [[nodiscard]] Interface* Get() const { return interface_.Get(); }
  // Where a call stores its result; what was held is released first.
  [[nodiscard]] Interface** Put() { return interface_.Put(); }

 protected:
  explicit CLegacyItem(TextView className) { SetClassName(className); }

  // Runs create(void**) when nothing is held yet, then call(Interface&).
  template <typename Create, typename Call>
  [[nodiscard]] bool CallCreated(TextView methodName, const Create& create, const Call& call) {
    try {
      if (!interface_ && EnsureComInitialized()) {
        lastResult_ = create(interface_.PutVoid());
        createdHere_ = interface_.Get() != nullptr;
      }
      if (!interface_) return Fail(kMsgLegacyInterfaceMissing);
      lastResult_ = call(*interface_);
      return CheckResult(lastResult_, kMsgLegacyMethodFailed, ClassName(), methodName);
    } catch (const _com_error& error) {
      return ProcessError(error, kMsgLegacyMethodThrew, ClassName(), methodName);
    }
  }
  // The same for an interface that only another object hands out.
  template <typename Call>
  [[nodiscard]] bool CallHeld(TextView methodName, const Call& call) {
    return CallCreated(
        methodName, [](void**) { return E_NOINTERFACE; }, call);
  }

 private:
  ComPtr<Interface> interface_;
};

}  // namespace quillon
