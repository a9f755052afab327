#include "support/disc_service.h"

#include <algorithm>
#include <stdexcept>

#include "support/com_class.h"
#include "support/disc_service_objects.h"

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

ComPtr<IErrorInfo> errorObject(Text description) {
  ComPtr<ICreateErrorInfo> info;
  ComPtr<IErrorInfo> error;
  if (FAILED(CreateErrorInfo(info.Put())) || FAILED(info->SetDescription(description.data())) ||
      FAILED(info.As(IID_IErrorInfo, error))) {
    throw std::runtime_error("no error object");
  }
  return error;
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
    ComPtr<IErrorInfo> error;
    if (!fault.description.empty()) error = errorObject(fault.description);
    if (fault.throws) throw _com_error(fault.result, error.Detach());
    if (error) SetErrorInfo(0, error.Get());
    return fault.result;
  }
  return S_OK;
}

int FakeDiscService::CountOf(const std::string& call) const {
  return static_cast<int>(std::ranges::count(calls, call));
}

RegisteredDiscService::RegisteredDiscService(FakeDiscService& service)
    : isInitialized_(SUCCEEDED(CoInitialize(nullptr))) {
  const auto add = [&](REFCLSID clsid, const char* name, auto make) {
    const auto create = [&service, name, make](REFIID riid, void** object) {
      const HRESULT planned = service.Enter(std::string("Create ") + name);
      if (FAILED(planned)) return planned;
      ComPtr<IUnknown> made;
      made.Attach(make(service));
      return made->QueryInterface(riid, object);
    };
    cookies_.push_back(registerClass(clsid, create));
  };
  add(CLSID_MsftDiscMaster2, "MsftDiscMaster2", makeDiscMaster);
  add(CLSID_MsftDiscRecorder2, "MsftDiscRecorder2", makeDiscRecorder);
  add(CLSID_MsftDiscFormat2Data, "MsftDiscFormat2Data", makeDataFormat);
  add(CLSID_MsftDiscFormat2Erase, "MsftDiscFormat2Erase", makeEraseFormat);
  add(CLSID_MsftFileSystemImage, "MsftFileSystemImage", makeFileSystemImage);
}

RegisteredDiscService::~RegisteredDiscService() {
  for (const DWORD cookie : cookies_) CoRevokeClassObject(cookie);
  if (isInitialized_) CoUninitialize();
}

}  // namespace quillon::test
