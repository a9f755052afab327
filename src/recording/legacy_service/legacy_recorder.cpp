#include "legacy_recorder.h"

#include <algorithm>

#include "platform/win32/system.h"
#include "recorders/com_answers.h"
#include "recorders/progress.h"

namespace quillon::platform {
namespace {

constexpr int kReadyTries = 30;
constexpr DWORD kReadyPauseMilliseconds = 1000;

bool writes(const DriveIdentity& drive, IMAPI_MEDIA_PHYSICAL_TYPE type) {
  return std::find(drive.writableTypes.begin(), drive.writableTypes.end(), type) !=
         drive.writableTypes.end();
}

bool isSettling(HRESULT code) {
  return code == E_IMAPI_RECORDER_MEDIA_BECOMING_READY || code == E_IMAPI_RECORDER_MEDIA_BUSY ||
         code == E_IMAPI_RECORDER_MEDIA_FORMAT_IN_PROGRESS;
}

}  // namespace

bool writesCds(const DriveIdentity& drive) {
  return writes(drive, IMAPI_MEDIA_TYPE_CDR) || writes(drive, IMAPI_MEDIA_TYPE_CDRW);
}

bool isCd(const MediaFacts& media) {
  return media.physicalType == IMAPI_MEDIA_TYPE_CDROM ||
         media.physicalType == IMAPI_MEDIA_TYPE_CDR || media.physicalType == IMAPI_MEDIA_TYPE_CDRW;
}

LegacyMedium legacyMediumOf(const DriveIdentity& drive, const MediaFacts& media) {
  if (!media.present) return {};
  if (!isCd(media)) return {MEDIA_SPECIAL, MEDIA_FORMAT_UNUSABLE_BY_IMAPI};
  LegacyMedium medium;
  medium.type = media.isBlank() ? MEDIA_CD_OTHER : MEDIA_CDDA_CDROM;
  if (media.isBlank()) medium.flags |= MEDIA_BLANK;
  if (media.isErasable) medium.flags |= MEDIA_RW;
  if (isWritableType(drive, media) && !media.has(IMAPI_FORMAT2_DATA_MEDIA_STATE_WRITE_PROTECTED) &&
      (media.isBlank() || media.isErasable)) {
    medium.flags |= MEDIA_WRITABLE;
  }
  return medium;
}

LegacyRecorder* LegacyRecorder::of(IDiscRecorder* object) {
  if (object == nullptr) return nullptr;
  ComPtr<IDiscRecorder> own;
  if (FAILED(object->QueryInterface(kOwnLegacyRecorder, own.PutVoid()))) return nullptr;
  return static_cast<LegacyRecorder*>(own.Get());
}

DiscResult LegacyRecorder::media(MediaFacts& facts) {
  DiscResult result = recorder_->media(facts);
  for (int i = 1; i < kReadyTries && isSettling(result.code); ++i) {
    Sleep(kReadyPauseMilliseconds);
    result = recorder_->media(facts);
  }
  return result;
}

HRESULT LegacyRecorder::GetRecorderType(LONG* typeCode) {
  return answer("IDiscRecorder::GetRecorderType", [&] {
    const bool rewrites = writes(recorder_->identity(), IMAPI_MEDIA_TYPE_CDRW);
    return giveNumber(rewrites ? RECORDER_CDRW : RECORDER_CDR, typeCode);
  });
}

HRESULT LegacyRecorder::GetRecorderState(ULONG* devStateFlags) {
  return answer("IDiscRecorder::GetRecorderState", [&] {
    ULONG state = isOpened_ ? RECORDER_OPENED : RECORDER_DOING_NOTHING;
    if (isBurning_) state = RECORDER_BURNING;
    return giveNumber(state, devStateFlags);
  });
}

HRESULT LegacyRecorder::OpenExclusive() {
  return answer("IDiscRecorder::OpenExclusive", [&]() -> DiscResult {
    if (isOpened_) return IMAPI_E_ALREADYOPEN;
    DiscResult result = recorder_->acquire(true, kOwnClientName);
    isOpened_ = !result.failed();
    return result;
  });
}

HRESULT LegacyRecorder::QueryMediaType(LONG* mediaType, LONG* mediaFlags) {
  return answerOpened("IDiscRecorder::QueryMediaType", [&]() -> DiscResult {
    if (mediaType == nullptr || mediaFlags == nullptr) return E_POINTER;
    MediaFacts facts;
    DiscResult result = media(facts);
    if (result.failed()) return result;
    const LegacyMedium medium = legacyMediumOf(recorder_->identity(), facts);
    *mediaType = medium.type;
    *mediaFlags = medium.flags;
    return S_OK;
  });
}

HRESULT LegacyRecorder::Erase(BYTE fullErase) {
  return answerOpened("IDiscRecorder::Erase", [&]() -> DiscResult {
    MediaFacts facts;
    DiscResult result = media(facts);
    if (result.failed()) return result;
    if (facts.present && !isCd(facts)) return IMAPI_E_MEDIUM_INVALIDTYPE;
    return recorder_->erase(fullErase != 0, kOwnClientName, discProgressCallback());
  });
}

// Closed even when a fault plan answers in its place.
HRESULT LegacyRecorder::Close() {
  if (!isOpened_) return IMAPI_E_NOTINITIALIZED;
  isOpened_ = false;
  DiscResult released = recorder_->release();
  return answer("IDiscRecorder::Close", [&] { return released; });
}

}  // namespace quillon::platform
