// The objects of the disc-mastering service of tests.
#pragma once

#include <new>
#include <string>
#include <vector>

#include "platform/com/com_object.h"
#include "platform/refusing_disc_interfaces.h"
#include "support/disc_service.h"

namespace quillon::test {

// Lives in the service's books. Base is ComObject or DispatchObject.
template <typename Base>
class Booked : public Base {
 public:
  Booked(FakeDiscService& service, std::string name) : service_(service), name_(std::move(name)) {
    ++service_.liveObjects;
  }

 protected:
  ~Booked() override {
    --service_.liveObjects;
    try {
      service_.released.push_back(name_);
    } catch (const std::bad_alloc&) {  // as a test wants it, which does not look at the order
    }
  }
  // Enters a method of the object's interface and, when it is to succeed, does its work.
  template <typename Work>
  HRESULT Run(const char* method, const Work& work) {
    const HRESULT planned = service_.Enter(name_ + "::" + method);
    if (FAILED(planned)) return planned;
    const HRESULT done = work();
    return planned == S_OK ? done : FAILED(done) ? done : planned;
  }
  FakeDiscService& service_;

 private:
  std::string name_;
};

inline HRESULT putText(const Text& text, BSTR* out) {
  *out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  return *out == nullptr ? E_OUTOFMEMORY : S_OK;
}
template <typename Target, typename Value>
HRESULT put(Target* out, Value value) {
  *out = static_cast<Target>(value);
  return S_OK;
}
inline HRESULT putFlag(VARIANT_BOOL* out, bool value) {
  return put(out, value ? VARIANT_TRUE : VARIANT_FALSE);
}
SAFEARRAY* numberArray(const std::vector<LONG>& numbers, VARTYPE elementType,
                       VARTYPE arrayType = VT_VARIANT);
SAFEARRAY* textArray(const std::vector<Text>& texts);

IDiscMaster2* makeDiscMaster(FakeDiscService& service);
IDiscRecorder2* makeDiscRecorder(FakeDiscService& service);
IDiscFormat2Data* makeDataFormat(FakeDiscService& service);
IDiscFormat2Erase* makeEraseFormat(FakeDiscService& service);
IFileSystemImage* makeFileSystemImage(FakeDiscService& service);

// The drive that one of the service's recorders is initialised for; null for none.
FakeDrive* driveOf(IDiscRecorder2* recorder);

}  // namespace quillon::test
