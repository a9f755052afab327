// Erasing a disc.
#include <array>

#include "classes.h"
#include "disc_format.h"

namespace quillon::platform {
namespace {

constexpr std::array kMediaTypes{
    IMAPI_MEDIA_TYPE_CDRW,      IMAPI_MEDIA_TYPE_DVDRAM, IMAPI_MEDIA_TYPE_DVDPLUSRW,
    IMAPI_MEDIA_TYPE_DVDDASHRW, IMAPI_MEDIA_TYPE_DISK,   IMAPI_MEDIA_TYPE_DVDPLUSRW_DUALLAYER,
    IMAPI_MEDIA_TYPE_BDRE,
};

constexpr FormatFacts kFacts{IID_IDiscFormat2Erase,
                             u"MsftDiscFormat2Erase",
                             "IDiscFormat2Erase",
                             E_IMAPI_ERASE_RECORDER_NOT_SUPPORTED,
                             E_IMAPI_ERASE_CLIENT_NAME_IS_NOT_VALID,
                             kMediaTypes,
                             &isUsableForErase};

class DiscFormat2Erase final : public DiscFormat<IDiscFormat2Erase, IID_IDiscFormat2Erase, kFacts> {
 public:
  HRESULT STDMETHODCALLTYPE put_FullErase(VARIANT_BOOL value) override {
    isFull_ = value != VARIANT_FALSE;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE EraseMedia() override {
    return answer("EraseMedia", [&](Recorder& drive) -> DiscResult {
      if (clientName_.empty()) return E_IMAPI_ERASE_CLIENT_NAME_IS_NOT_VALID;
      const Busy busy(isErasing_);
      if (!busy.isMine()) return E_IMAPI_ERASE_RECORDER_IN_USE;
      return drive.erase(isFull_, clientName_, discProgressCallback());
    });
  }

 protected:
  DiscResult checkNewRecorder(IDiscRecorder2* value) override {
    if (isErasing_) return E_IMAPI_ERASE_RECORDER_IN_USE;
    const bool isAnother = value != nullptr && recorder_ && recorder_.Get() != value;
    return isAnother ? E_IMAPI_ERASE_ONLY_ONE_RECORDER_SUPPORTED : S_OK;
  }

 private:
  bool isFull_ = false;
  std::atomic<bool> isErasing_ = false;
};

}  // namespace

HRESULT createDiscFormat2Erase(REFIID riid, void** object) {
  return createCurrentObject<DiscFormat2Erase>(riid, object);
}

}  // namespace quillon::platform
