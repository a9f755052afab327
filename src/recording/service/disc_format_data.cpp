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
    return answerSectors("get_FreeSectorsOnMedia", value,
                         [](const MediaFacts& facts) { return facts.freeSectors; });
  }
  HRESULT STDMETHODCALLTYPE get_RequestedWriteSpeed(LONG* value) override {
    return answer("get_RequestedWriteSpeed",
                  [&](Recorder&) { return giveNumber(requestedSpeed_, value); });
  }
  HRESULT STDMETHODCALLTYPE get_CurrentWriteSpeed(LONG* value) override {
    return answerWritable("get_CurrentWriteSpeed", [&](const MediaFacts& facts) {
      return giveNumber(speedFor(requestedSpeed_, facts.writeSpeeds), value);
    });
  }
  HRESULT STDMETHODCALLTYPE get_SupportedWriteSpeeds(SAFEARRAY** value) override {
    return answerWritable("get_SupportedWriteSpeeds", [&](const MediaFacts& facts) {
      return giveNumbers(facts.writeSpeeds, VT_UI4, value);
    });
  }
  HRESULT STDMETHODCALLTYPE SetWriteSpeed(LONG requested, VARIANT_BOOL isPureCav) override;

  HRESULT STDMETHODCALLTYPE Write(IStream* data) override {
    return answer("Write", [&](Recorder& drive) { return write(drive, data); });
  }

 protected:
  DiscResult checkNewRecorder(IDiscRecorder2*) override {
    return isWriting_ ? E_IMAPI_DF2DATA_WRITE_IN_PROGRESS : S_OK;
  }

 private:
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

  LONG requestedSpeed_ = -1;
  std::atomic<bool> isWriting_ = false;
};

HRESULT STDMETHODCALLTYPE DiscFormat2Data::SetWriteSpeed(LONG requested, VARIANT_BOOL isPureCav) {
  return answerWritable("SetWriteSpeed", [&](const MediaFacts& facts) -> DiscResult {
    if (requested < -1 || requested == 0) return E_INVALIDARG;
    requestedSpeed_ = requested;
    const bool isAdjusted = requested != -1 && speedFor(requested, facts.writeSpeeds) != requested;
    // No drive of the layer turns at one speed throughout.
    if (isPureCav != VARIANT_FALSE)
      return isAdjusted ? S_IMAPI_BOTHADJUSTED : S_IMAPI_ROTATIONADJUSTED;
    return isAdjusted ? S_IMAPI_SPEEDADJUSTED : S_OK;
  });
}

DiscResult DiscFormat2Data::write(Recorder& drive, IStream* data) {
  if (data == nullptr) return E_POINTER;
  if (clientName_.empty()) return E_IMAPI_DF2DATA_CLIENT_NAME_IS_NOT_VALID;
  const Busy busy(isWriting_);
  if (!busy.isMine()) return E_IMAPI_DF2DATA_WRITE_IN_PROGRESS;
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
  request.sectorsPerSecond = requestedSpeed_;
  request.progress = discProgressCallback();
  return drive.write(request);
}

}  // namespace

HRESULT createDiscFormat2Data(REFIID riid, void** object) {
  return createCurrentObject<DiscFormat2Data>(riid, object);
}

}  // namespace quillon::platform
