// A recorder as the legacy service shows it.
#pragma once

#include <atomic>
#include <memory>
#include <string_view>

#include "legacy_results.h"
#include "platform/com/com_object.h"
#include "platform/refusing_disc_interfaces.h"
#include "recorders/recorder.h"

namespace quillon::platform {

// The service knows CDs only: other recorders are not there for it.
bool writesCds(const DriveIdentity& drive);
bool isCd(const MediaFacts& media);

// What QueryMediaType answers. A disc is writable when this service could write it, now or after
// erasing it.
struct LegacyMedium {
  LONG type = 0;
  LONG flags = 0;
};
LegacyMedium legacyMediumOf(const DriveIdentity& drive, const MediaFacts& media);

// Answered by objects of the class below alone, whose own interface it stands for.
inline constexpr IID kOwnLegacyRecorder = {
    0x1B7C5F0E, 0x6A0D, 0x4E55, {0x8F, 0x3A, 0x52, 0xD9, 0x0C, 0x77, 0x41, 0xE2}};

class LegacyRecorder final
    : public ComObject<Refusing<IDiscRecorder>, IID_IDiscRecorder, kOwnLegacyRecorder> {
 public:
  explicit LegacyRecorder(std::unique_ptr<Recorder> recorder) : recorder_(std::move(recorder)) {}
  // Null for an object of another make.
  static LegacyRecorder* of(IDiscRecorder* object);

  [[nodiscard]] Recorder& recorder() { return *recorder_; }
  // Waits for a disc that is becoming ready: callers of this service do not ask again.
  DiscResult media(MediaFacts& facts);
  void setBurning(bool isBurning) { isBurning_ = isBurning; }

  HRESULT STDMETHODCALLTYPE GetRecorderType(LONG* typeCode) override;
  HRESULT STDMETHODCALLTYPE GetRecorderState(ULONG* devStateFlags) override;
  HRESULT STDMETHODCALLTYPE OpenExclusive() override;
  HRESULT STDMETHODCALLTYPE QueryMediaType(LONG* mediaType, LONG* mediaFlags) override;
  HRESULT STDMETHODCALLTYPE Erase(BYTE fullErase) override;
  HRESULT STDMETHODCALLTYPE Close() override;

 private:
  template <typename Body>
  HRESULT answer(std::string_view operation, Body body) {
    return legacyAnswer([&]() -> DiscResult {
      DiscResult result = recorder_->enter(operation);
      return result.code == S_OK ? body() : result;
    });
  }
  // The same for what needs exclusive access.
  template <typename Body>
  HRESULT answerOpened(std::string_view operation, Body body) {
    return answer(operation,
                  [&]() -> DiscResult { return isOpened_ ? body() : IMAPI_E_NOTINITIALIZED; });
  }

  std::unique_ptr<Recorder> recorder_;
  bool isOpened_ = false;
  std::atomic<bool> isBurning_ = false;
};

}  // namespace quillon::platform
