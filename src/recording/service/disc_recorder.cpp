// One recorder, as the current service shows it.
#include <memory>

#include "classes.h"
#include "platform/com/com_object.h"
#include "platform/refusing_disc_interfaces.h"
#include "recorder_access.h"
#include "recorders/catalogue.h"
#include "recorders/com_answers.h"

namespace quillon::platform {
namespace {

constexpr const OLECHAR* kSource = u"MsftDiscRecorder2";

// Answered by objects of this class alone, whose own interface it stands for.
constexpr IID kOwnRecorder = {
    0x8C6E0E0D, 0x2A5B, 0x4B0E, {0x9D, 0x34, 0x61, 0x7A, 0xF2, 0x0B, 0x5C, 0x11}};

class DiscRecorder2 final
    : public DispatchObject<Refusing<IDiscRecorder2>, IID_IDiscRecorder2, kOwnRecorder> {
 public:
  [[nodiscard]] Recorder* recorder() const { return recorder_.get(); }

  HRESULT STDMETHODCALLTYPE EjectMedia() override {
    return answer("EjectMedia", [](Recorder& recorder) { return recorder.eject(); });
  }
  HRESULT STDMETHODCALLTYPE AcquireExclusiveAccess(VARIANT_BOOL force, BSTR clientName) override {
    return answer("AcquireExclusiveAccess", [&](Recorder& recorder) {
      return recorder.acquire(force != VARIANT_FALSE, {clientName, SysStringLen(clientName)});
    });
  }
  HRESULT STDMETHODCALLTYPE ReleaseExclusiveAccess() override {
    return answer("ReleaseExclusiveAccess", [](Recorder& recorder) { return recorder.release(); });
  }
  HRESULT STDMETHODCALLTYPE InitializeDiscRecorder(BSTR uniqueId) override {
    return answering(IID_IDiscRecorder2, kSource, [&]() -> DiscResult {
      if (SysStringLen(uniqueId) == 0) return E_INVALIDARG;
      std::unique_ptr<Recorder> found;
      DiscResult result = openRecorder({uniqueId, SysStringLen(uniqueId)}, found);
      if (result.failed()) return result;
      result = found->enter("InitializeDiscRecorder");
      if (!result.failed()) recorder_ = std::move(found);
      return result;
    });
  }

  HRESULT STDMETHODCALLTYPE get_ActiveDiscRecorder(BSTR* value) override {
    return text("get_ActiveDiscRecorder", &DriveIdentity::uniqueId, value);
  }
  HRESULT STDMETHODCALLTYPE get_VendorId(BSTR* value) override {
    return text("get_VendorId", &DriveIdentity::vendor, value);
  }
  HRESULT STDMETHODCALLTYPE get_ProductId(BSTR* value) override {
    return text("get_ProductId", &DriveIdentity::product, value);
  }
  HRESULT STDMETHODCALLTYPE get_ProductRevision(BSTR* value) override {
    return text("get_ProductRevision", &DriveIdentity::revision, value);
  }
  HRESULT STDMETHODCALLTYPE get_VolumeName(BSTR* value) override {
    return text("get_VolumeName", &DriveIdentity::devicePath, value);
  }
  HRESULT STDMETHODCALLTYPE get_VolumePathNames(SAFEARRAY** value) override {
    return answer("get_VolumePathNames", [&](Recorder& recorder) {
      return giveTexts(recorder.identity().volumePaths, value);
    });
  }
  HRESULT STDMETHODCALLTYPE get_DeviceCanLoadMedia(VARIANT_BOOL* value) override {
    return answer("get_DeviceCanLoadMedia",
                  [&](Recorder& recorder) { return giveBool(recorder.identity().canLoad, value); });
  }
  HRESULT STDMETHODCALLTYPE get_LegacyDeviceNumber(LONG* value) override {
    return answer("get_LegacyDeviceNumber", [&](Recorder& recorder) {
      return giveNumber(recorder.identity().legacyNumber, value);
    });
  }
  HRESULT STDMETHODCALLTYPE get_SupportedFeaturePages(SAFEARRAY** value) override {
    return numbers("get_SupportedFeaturePages", &DriveIdentity::supportedFeatures, value);
  }
  HRESULT STDMETHODCALLTYPE get_SupportedProfiles(SAFEARRAY** value) override {
    return numbers("get_SupportedProfiles", &DriveIdentity::supportedProfiles, value);
  }
  HRESULT STDMETHODCALLTYPE get_SupportedModePages(SAFEARRAY** value) override {
    return numbers("get_SupportedModePages", &DriveIdentity::supportedModePages, value);
  }
  HRESULT STDMETHODCALLTYPE get_CurrentFeaturePages(SAFEARRAY** value) override {
    return current("get_CurrentFeaturePages", &CurrentPages::features, value);
  }
  HRESULT STDMETHODCALLTYPE get_CurrentProfiles(SAFEARRAY** value) override {
    return current("get_CurrentProfiles", &CurrentPages::profiles, value);
  }

 private:
  template <typename Body>
  HRESULT answer(std::string_view operation, Body body) {
    return answering(IID_IDiscRecorder2, kSource, [&]() -> DiscResult {
      if (recorder_ == nullptr) return E_IMAPI_RECORDER_REQUIRED;
      DiscResult result = recorder_->enter(operation);
      return result.code == S_OK ? body(*recorder_) : result;
    });
  }
  HRESULT text(std::string_view operation, std::u16string DriveIdentity::*member, BSTR* value) {
    return answer(operation,
                  [&](Recorder& recorder) { return giveText(recorder.identity().*member, value); });
  }
  HRESULT numbers(std::string_view operation, std::vector<LONG> DriveIdentity::*member,
                  SAFEARRAY** value) {
    return answer(operation, [&](Recorder& recorder) {
      return giveNumbers(recorder.identity().*member, VT_I4, value);
    });
  }
  HRESULT current(std::string_view operation, std::vector<LONG> CurrentPages::*member,
                  SAFEARRAY** value) {
    return answer(operation, [&](Recorder& recorder) {
      CurrentPages pages;
      DiscResult result = recorder.currentPages(pages);
      return result.failed() ? result : giveNumbers(pages.*member, VT_I4, value);
    });
  }

  std::unique_ptr<Recorder> recorder_;
};

}  // namespace

Recorder* recorderOf(IDiscRecorder2* object) {
  if (object == nullptr) return nullptr;
  ComPtr<IDiscRecorder2> own;
  if (FAILED(object->QueryInterface(kOwnRecorder, own.PutVoid()))) return nullptr;
  return static_cast<DiscRecorder2*>(own.Get())->recorder();
}

HRESULT createDiscRecorder2(REFIID riid, void** object) {
  return createCurrentObject<DiscRecorder2>(riid, object);
}

}  // namespace quillon::platform
