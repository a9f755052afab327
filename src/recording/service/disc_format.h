// What the data format and the erase format have in common.
#pragma once

#include <atomic>
#include <span>
#include <string>

#include "platform/com/com_object.h"
#include "platform/refusing_disc_interfaces.h"
#include "recorder_access.h"
#include "recorders/com_answers.h"
#include "recorders/progress.h"

namespace quillon::platform {

// In which a format differs from the other one.
struct FormatFacts {
  IID interfaceId;
  const OLECHAR* source;
  std::string_view interfaceName;
  HRESULT recorderNotSupported;
  HRESULT clientNameNotValid;
  std::span<const IMAPI_MEDIA_PHYSICAL_TYPE> mediaTypes;
  bool (*isUsable)(const DriveIdentity& drive, const MediaFacts& media);
};

template <typename Interface, const IID& kInterfaceId, const FormatFacts& kFacts>
class DiscFormat : public DispatchObject<Refusing<Interface>, IID_IDiscFormat2, kInterfaceId> {
 public:
  HRESULT STDMETHODCALLTYPE IsRecorderSupported(IDiscRecorder2* recorder,
                                                VARIANT_BOOL* value) override {
    return answerFor(recorder, "IsRecorderSupported",
                     [&](Recorder& drive) { return giveBool(writesAny(drive.identity()), value); });
  }
  // No disc is one that cannot be used, not a failure.
  HRESULT STDMETHODCALLTYPE IsCurrentMediaSupported(IDiscRecorder2* recorder,
                                                    VARIANT_BOOL* value) override {
    return answerFor(recorder, "IsCurrentMediaSupported", [&](Recorder& drive) {
      MediaFacts facts;
      DiscResult result = drive.media(facts);
      return result.failed() ? result : giveBool(kFacts.isUsable(drive.identity(), facts), value);
    });
  }
  HRESULT STDMETHODCALLTYPE get_MediaPhysicallyBlank(VARIANT_BOOL* value) override {
    return answerMedia("get_MediaPhysicallyBlank", [&](Recorder&, const MediaFacts& facts) {
      return giveBool(facts.isPhysicallyBlank, value);
    });
  }
  HRESULT STDMETHODCALLTYPE get_MediaHeuristicallyBlank(VARIANT_BOOL* value) override {
    return answerMedia("get_MediaHeuristicallyBlank", [&](Recorder&, const MediaFacts& facts) {
      return giveBool(facts.isHeuristicallyBlank, value);
    });
  }
  HRESULT STDMETHODCALLTYPE get_SupportedMediaTypes(SAFEARRAY** value) override {
    return answering(kInterfaceId, kFacts.source, [&] {
      const std::vector<LONG> types(kFacts.mediaTypes.begin(), kFacts.mediaTypes.end());
      return giveNumbers(types, VT_I4, value);
    });
  }

  HRESULT STDMETHODCALLTYPE put_Recorder(IDiscRecorder2* value) override {
    return answering(kInterfaceId, kFacts.source, [&]() -> DiscResult {
      DiscResult result = checkNewRecorder(value);
      if (!result.failed() && value != nullptr) {
        Recorder* drive = recorderOf(value);
        if (drive == nullptr) return E_IMAPI_RECORDER_REQUIRED;
        result = drive->enter(qualified("put_Recorder"));
        if (!result.failed() && !writesAny(drive->identity())) result = kFacts.recorderNotSupported;
      }
      if (!result.failed()) recorder_ = value;
      return result;
    });
  }
  HRESULT STDMETHODCALLTYPE
  get_CurrentPhysicalMediaType(IMAPI_MEDIA_PHYSICAL_TYPE* value) override {
    return answerMedia("get_CurrentPhysicalMediaType", [&](Recorder&, const MediaFacts& facts) {
      return giveNumber(facts.physicalType, value);
    });
  }
  HRESULT STDMETHODCALLTYPE put_ClientName(BSTR value) override {
    return answering(kInterfaceId, kFacts.source, [&]() -> DiscResult {
      const std::u16string_view name(value, SysStringLen(value));
      if (!isValidClientName(name)) return kFacts.clientNameNotValid;
      clientName_ = name;
      return S_OK;
    });
  }

 protected:
  // Runs the body on the recorder that was set.
  template <typename Body>
  HRESULT answer(std::string_view operation, Body body) {
    return answerFor(recorder_.Get(), operation, body);
  }
  // The same, with the disc in it; without one there is no answer.
  template <typename Body>
  HRESULT answerMedia(std::string_view operation, Body body) {
    return answer(operation, [&](Recorder& drive) -> DiscResult {
      MediaFacts facts;
      DiscResult result = drive.media(facts);
      if (result.failed()) return result;
      return facts.present ? body(drive, facts) : E_IMAPI_RECORDER_MEDIA_NO_MEDIA;
    });
  }
  // S_OK when the recorder can be exchanged for the value, which may be null.
  virtual DiscResult checkNewRecorder(IDiscRecorder2*) { return S_OK; }

  ComPtr<IDiscRecorder2> recorder_;
  std::u16string clientName_;

 private:
  static std::string qualified(std::string_view operation) {
    return std::string(kFacts.interfaceName).append("::").append(operation);
  }
  static bool writesAny(const DriveIdentity& drive) {
    for (const IMAPI_MEDIA_PHYSICAL_TYPE type : kFacts.mediaTypes) {
      MediaFacts facts;
      facts.physicalType = type;
      if (isWritableType(drive, facts)) return true;
    }
    return false;
  }
  template <typename Body>
  HRESULT answerFor(IDiscRecorder2* recorder, std::string_view operation, Body body) {
    return answering(kInterfaceId, kFacts.source, [&]() -> DiscResult {
      Recorder* drive = recorderOf(recorder);
      if (drive == nullptr) return E_IMAPI_RECORDER_REQUIRED;
      DiscResult result = drive->enter(qualified(operation));
      return result.code == S_OK ? body(*drive) : result;
    });
  }
};

// Set for the length of a scope; isMine is false when it was set before.
class Busy {
 public:
  explicit Busy(std::atomic<bool>& flag) : flag_(flag), isMine_(!flag.exchange(true)) {}
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;
  ~Busy() {
    if (isMine_) flag_ = false;
  }
  [[nodiscard]] bool isMine() const { return isMine_; }

 private:
  std::atomic<bool>& flag_;
  bool isMine_;
};

}  // namespace quillon::platform
