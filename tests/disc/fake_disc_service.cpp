#include "fake_disc_service.h"

#include <algorithm>
#include <filesystem>
#include <functional>

#include "fake_disc_objects.h"

namespace quillon::test {

FakeDisc rewritableDiscWithData() {
  FakeDisc disc;
  disc.type = IMAPI_MEDIA_TYPE_CDRW;
  disc.state = IMAPI_FORMAT2_DATA_MEDIA_STATE_OVERWRITE_ONLY;
  disc.isErasable = true;
  disc.isPhysicallyBlank = false;
  disc.isHeuristicallyBlank = false;
  disc.freeSectors = 0;
  return disc;
}

HRESULT FakeDiscService::Enter(const std::string& call) {
  calls.push_back(call);
  if (failingCall == static_cast<int>(calls.size()) - 1) return failingResult;
  for (Fault& fault : faults) {
    if (fault.call != call || fault.times == 0) continue;
    if (fault.skip > 0) {
      --fault.skip;
      continue;
    }
    --fault.times;
    if (!fault.description.empty()) {
      ComPtr<ICreateErrorInfo> info;
      CreateErrorInfo(info.Put());
      info->SetDescription(fault.description.data());
      ComPtr<IErrorInfo> error;
      if (SUCCEEDED(info.As(IID_IErrorInfo, error))) SetErrorInfo(0, error.Get());
    }
    if (fault.throws) _com_issue_error(fault.result);
    return fault.result;
  }
  return S_OK;
}

int FakeDiscService::CountOf(const std::string& call) const {
  return static_cast<int>(std::ranges::count(calls, call));
}

namespace {

class Factory final : public ComObject<IClassFactory, IID_IClassFactory> {
 public:
  using Make = std::function<IUnknown*()>;
  Factory(FakeDiscService& service, std::string name, Make make)
      : service_(service), name_(std::move(name)), make_(std::move(make)) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID riid, void** object) override {
    *object = nullptr;
    if (const HRESULT hr = service_.Enter("Create " + name_); FAILED(hr)) return hr;
    ComPtr<IUnknown> made;
    made.Attach(make_());
    return made->QueryInterface(riid, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  FakeDiscService& service_;
  std::string name_;
  Make make_;
};

}  // namespace

RegisteredDiscService::RegisteredDiscService(FakeDiscService& service) {
  CoInitialize(nullptr);
  const auto add = [&](REFCLSID clsid, const char* name, const Factory::Make& make) {
    auto* const factory = new Factory(service, name, make);
    DWORD cookie = 0;
    CoRegisterClassObject(clsid, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie);
    factory->Release();
    cookies_.push_back(cookie);
  };
  add(CLSID_MsftDiscMaster2, "MsftDiscMaster2", [&] { return makeDiscMaster(service); });
  add(CLSID_MsftDiscRecorder2, "MsftDiscRecorder2", [&] { return makeDiscRecorder(service); });
  add(CLSID_MsftDiscFormat2Data, "MsftDiscFormat2Data", [&] { return makeDataFormat(service); });
  add(CLSID_MsftDiscFormat2Erase, "MsftDiscFormat2Erase", [&] { return makeEraseFormat(service); });
  add(CLSID_MsftFileSystemImage, "MsftFileSystemImage",
      [&] { return makeFileSystemImage(service); });
}

RegisteredDiscService::~RegisteredDiscService() {
  for (const DWORD cookie : cookies_) CoRevokeClassObject(cookie);
  CoUninitialize();
}

}  // namespace quillon::test
