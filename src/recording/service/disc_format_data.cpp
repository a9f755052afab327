// Writing an image to a disc.
#include <array>

#include "classes.h"
#include "disc_format.h"

namespace quillon::platform {
namespace {

constexpr std::array kMediaTypes{
    IMAPI_MEDIA_TYPE_CDR,
    IMAPI_MEDIA_TYPE_CDRW,
    IMAPI_MEDIA_TYPE_DVDRAM,
    IMAPI_MEDIA_TYPE_DVDPLUSR,
    IMAPI_MEDIA_TYPE_DVDPLUSRW,
    IMAPI_MEDIA_TYPE_DVDPLUSR_DUALLAYER,
    IMAPI_MEDIA_TYPE_DVDDASHR,
    IMAPI_MEDIA_TYPE_DVDDASHRW,
    IMAPI_MEDIA_TYPE_DVDDASHR_DUALLAYER,
    IMAPI_MEDIA_TYPE_DISK,
    IMAPI_MEDIA_TYPE_DVDPLUSRW_DUALLAYER,
    IMAPI_MEDIA_TYPE_BDR,
    IMAPI_MEDIA_TYPE_BDRE,
};

constexpr FormatFacts kFacts{IID_IDiscFormat2Data,
                             u"MsftDiscFormat2Data",
                             "IDiscFormat2Data",
                             E_IMAPI_DF2DATA_RECORDER_NOT_SUPPORTED,
                             E_IMAPI_DF2DATA_CLIENT_NAME_IS_NOT_VALID,
                             kMediaTypes,
                             &isUsableForData};

// The speed that a request gets: the fastest one that is not faster, or the slowest.
LONG speedFor(LONG requested, const std::vector<LONG>& speeds) {
  if (speeds.empty()) return requested;
  if (requested < 0) return speeds.front();
  for (const LONG speed : speeds) {
    if (speed <= requested) return speed;
  }
  return speeds.back();
}

class DiscFormat2Data final : public DiscFormat<IDiscFormat2Data, IID_IDiscFormat2Data, kFacts> {
 public:
  // Settings that change nothing here: drives of the layer always protect against running empty,
  // and an image comes as its maker made it.
  HRESULT STDMETHODCALLTYPE put_BufferUnderrunFreeDisabled(VARIANT_BOOL value) override {
    return put(isUnderrunFreeDisabled_, value);
  }
  HRESULT STDMETHODCALLTYPE get_BufferUnderrunFreeDisabled(VARIANT_BOOL* value) override {
    return get(isUnderrunFreeDisabled_, value);
  }
  HRESULT STDMETHODCALLTYPE put_PostgapAlreadyInImage(VARIANT_BOOL value) override {
    return put(hasPostgap_, value);
  }
  HRESULT STDMETHODCALLTYPE get_PostgapAlreadyInImage(VARIANT_BOOL* value) override {
    return get(hasPostgap_, value);
  }
  HRESULT STDMETHODCALLTYPE put_ForceMediaToBeClosed(VARIANT_BOOL value) override {
    return put(isClosing_, value);
  }
  HRESULT STDMETHODCALLTYPE get_ForceMediaToBeClosed(VARIANT_BOOL* value) override {
    return get(isClosing_, value);
  }
  HRESULT STDMETHODCALLTYPE put_DisableConsumerDvdCompatibilityMode(VARIANT_BOOL value) override {
    return put(isPlayerIgnored_, value);
  }
  HRESULT STDMETHODCALLTYPE get_DisableConsumerDvdCompatibilityMode(VARIANT_BOOL* value) override {
    return get(isPlayerIgnored_, value);
  }
  HRESULT STDMETHODCALLTYPE put_ForceOverwrite(VARIANT_BOOL value) override {
    return put(isOverwriting_, value);
  }
  HRESULT STDMETHODCALLTYPE get_ForceOverwrite(VARIANT_BOOL* value) override {
    return get(isOverwriting_, value);
  }

  HRESULT STDMETHODCALLTYPE get_CurrentMediaStatus(IMAPI_FORMAT2_DATA_MEDIA_STATE* value) override {
    return answerMedia("get_CurrentMediaStatus", [&](Recorder&, const MediaFacts& facts) {
      return giveNumber(facts.state, value);
    });
  }
  HRESULT STDMETHODCALLTYPE
  get_WriteProtectStatus(IMAPI_MEDIA_WRITE_PROTECT_STATE* value) override {
    return answerMedia("get_WriteProtectStatus", [&](Recorder&, const MediaFacts& facts) {
      return giveNumber(facts.writeProtect, value);
    });
  }
  HRESULT STDMETHODCALLTYPE get_TotalSectorsOnMedia(LONG* value) override {
    return answerSectors("get_TotalSectorsOnMedia", value,
                         [](const MediaFacts& facts) { return facts.totalSectors; });
  }
  HRESULT STDMETHODCALLTYPE get_FreeSectorsOnMedia(LONG* value) override {
    return answerSectors("get_FreeSectorsOnMedia", value, [this](const MediaFacts& facts) {
      return isOverwriting_ && facts.isOverwritable ? facts.totalSectors : facts.freeSectors;
    });
  }
  HRESULT STDMETHODCALLTYPE get_NextWritableAddress(LONG* value) override {
    return answerSectors("get_NextWritableAddress", value, [this](const MediaFacts& facts) {
      return isOverwriting_ && facts.isOverwritable ? 0 : facts.nextWritableSector;
    });
  }
  HRESULT STDMETHODCALLTYPE get_StartAddressOfPreviousSession(LONG* value) override {
    return answerSectors("get_StartAddressOfPreviousSession", value,
                         [](const MediaFacts& facts) { return facts.previousSessionStart; });
  }
  HRESULT STDMETHODCALLTYPE get_LastWrittenAddressOfPreviousSession(LONG* value) override {
    return answerSectors("get_LastWrittenAddressOfPreviousSession", value,
                         [](const MediaFacts& facts) { return facts.previousSessionLastSector; });
  }

  HRESULT STDMETHODCALLTYPE get_RequestedWriteSpeed(LONG* value) override {
    return answer("get_RequestedWriteSpeed",
                  [&](Recorder&) { return giveNumber(requestedSpeed_, value); });
  }
  HRESULT STDMETHODCALLTYPE get_RequestedRotationTypeIsPureCAV(VARIANT_BOOL* value) override {
    return answer("get_RequestedRotationTypeIsPureCAV",
                  [&](Recorder&) { return giveBool(isPureCavRequested_, value); });
  }
  HRESULT STDMETHODCALLTYPE get_CurrentWriteSpeed(LONG* value) override {
    return answerWritable("get_CurrentWriteSpeed", [&](const MediaFacts& facts) {
      return giveNumber(speedFor(requestedSpeed_, facts.writeSpeeds), value);
    });
  }
  HRESULT STDMETHODCALLTYPE get_CurrentRotationTypeIsPureCAV(VARIANT_BOOL* value) override {
    return answerWritable("get_CurrentRotationTypeIsPureCAV",
                          [&](const MediaFacts&) { return giveBool(false, value); });
  }
  HRESULT STDMETHODCALLTYPE get_SupportedWriteSpeeds(SAFEARRAY** value) override {
    return answerWritable("get_SupportedWriteSpeeds", [&](const MediaFacts& facts) {
      return giveNumbers(facts.writeSpeeds, VT_UI4, value);
    });
  }
  HRESULT STDMETHODCALLTYPE get_SupportedWriteSpeedDescriptors(SAFEARRAY** value) override {
    if (value != nullptr) *value = nullptr;
    return E_NOTIMPL;
  }
  // One image makes one session: there is nothing to go on with.
  HRESULT STDMETHODCALLTYPE get_MultisessionInterfaces(SAFEARRAY** value) override {
    return answer("get_MultisessionInterfaces",
                  [&](Recorder&) { return giveNumbers({}, VT_DISPATCH, value); });
  }
  HRESULT STDMETHODCALLTYPE SetWriteSpeed(LONG requested, VARIANT_BOOL isPureCav) override;

  HRESULT STDMETHODCALLTYPE Write(IStream* data) override {
    return answer("Write", [&](Recorder& drive) { return write(drive, data); });
  }
  HRESULT STDMETHODCALLTYPE CancelWrite() override {
    if (!isWriting_) return E_IMAPI_DF2DATA_WRITE_NOT_IN_PROGRESS;
    isCancelled_ = true;
    return S_OK;
  }

 protected:
  DiscResult checkNewRecorder(IDiscRecorder2*) override {
    return isWriting_ ? E_IMAPI_DF2DATA_WRITE_IN_PROGRESS : S_OK;
  }

 private:
  HRESULT put(bool& setting, VARIANT_BOOL value) {
    if (isWriting_) return E_IMAPI_DF2DATA_WRITE_IN_PROGRESS;
    setting = value != VARIANT_FALSE;
    return S_OK;
  }
  static HRESULT get(bool setting, VARIANT_BOOL* value) { return giveBool(setting, value).code; }

  // Questions that only a disc that the device could write answers.
  template <typename Body>
  HRESULT answerWritable(std::string_view operation, Body body) {
    return answerMedia(operation, [&](Recorder& drive, const MediaFacts& facts) -> DiscResult {
      if (!isWritableType(drive.identity(), facts)) return E_IMAPI_DF2DATA_INVALID_MEDIA_STATE;
      return body(facts);
    });
  }
  template <typename Sectors>
  HRESULT answerSectors(std::string_view operation, LONG* value, Sectors sectors) {
    return answerWritable(
        operation, [&](const MediaFacts& facts) { return giveNumber(sectors(facts), value); });
  }

  DiscResult write(Recorder& drive, IStream* data);

  bool isUnderrunFreeDisabled_ = false;
  bool hasPostgap_ = false;
  bool isClosing_ = false;
  bool isPlayerIgnored_ = false;
  bool isOverwriting_ = false;
  bool isPureCavRequested_ = false;
  LONG requestedSpeed_ = -1;
  std::atomic<bool> isWriting_ = false;
  std::atomic<bool> isCancelled_ = false;
};

HRESULT STDMETHODCALLTYPE DiscFormat2Data::SetWriteSpeed(LONG requested, VARIANT_BOOL isPureCav) {
  return answerWritable("SetWriteSpeed", [&](const MediaFacts& facts) -> DiscResult {
    if (requested < -1 || requested == 0) return E_INVALIDARG;
    requestedSpeed_ = requested;
    isPureCavRequested_ = isPureCav != VARIANT_FALSE;
    const bool isAdjusted = requested != -1 && speedFor(requested, facts.writeSpeeds) != requested;
    // No drive of the layer turns at one speed throughout.
    if (isPureCavRequested_) return isAdjusted ? S_IMAPI_BOTHADJUSTED : S_IMAPI_ROTATIONADJUSTED;
    return isAdjusted ? S_IMAPI_SPEEDADJUSTED : S_OK;
  });
}

DiscResult DiscFormat2Data::write(Recorder& drive, IStream* data) {
  if (data == nullptr) return E_POINTER;
  if (clientName_.empty()) return E_IMAPI_DF2DATA_CLIENT_NAME_IS_NOT_VALID;
  const Busy busy(isWriting_);
  if (!busy.isMine()) return E_IMAPI_DF2DATA_WRITE_IN_PROGRESS;
  isCancelled_ = false;
  STATSTG stat{};
  const HRESULT hr = data->Stat(&stat, STATFLAG_NONAME);
  if (FAILED(hr)) return hr;
  if (stat.cbSize.QuadPart == 0 || stat.cbSize.QuadPart % kSectorBytes != 0) {
    return E_IMAPI_DF2DATA_STREAM_NOT_SUPPORTED;
  }
  WriteRequest request;
  request.clientName = clientName_;
  request.image = data;
  request.sectors = stat.cbSize.QuadPart / kSectorBytes;
  request.closeDisc = isClosing_;
  request.compatibleDvd = !isPlayerIgnored_;
  request.overwrite = isOverwriting_;
  request.sectorsPerSecond = requestedSpeed_;
  request.progress = discProgressCallback();
  request.cancel = &isCancelled_;
  return drive.write(request);
}

}  // namespace

HRESULT createDiscFormat2Data(REFIID riid, void** object) {
  return createCurrentObject<DiscFormat2Data>(riid, object);
}

}  // namespace quillon::platform
