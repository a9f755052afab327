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

// The enumerator hands out recorders that know their device.
HRESULT LegacyRecorder::Init(BYTE*, ULONG, ULONG) { return E_NOTIMPL; }

HRESULT LegacyRecorder::GetRecorderGUID(BYTE* uniqueId, ULONG bufferSize,
                                        ULONG* returnSizeRequired) {
  return answer("IDiscRecorder::GetRecorderGUID", [&]() -> DiscResult {
    const std::u16string& identifier = recorder_->identity().uniqueId;
    const auto length = static_cast<ULONG>(identifier.size() * sizeof(OLECHAR));
    if (returnSizeRequired != nullptr) *returnSizeRequired = length;
    if (uniqueId == nullptr) return returnSizeRequired == nullptr ? E_POINTER : S_OK;
    if (bufferSize < length) return IMAPI_S_BUFFER_TO_SMALL;
    std::copy_n(reinterpret_cast<const BYTE*>(identifier.data()), length, uniqueId);
    return S_OK;
  });
}

HRESULT LegacyRecorder::GetRecorderType(LONG* typeCode) {
  return answer("IDiscRecorder::GetRecorderType", [&] {
    const bool rewrites = writes(recorder_->identity(), IMAPI_MEDIA_TYPE_CDRW);
    return giveNumber(rewrites ? RECORDER_CDRW : RECORDER_CDR, typeCode);
  });
}

HRESULT LegacyRecorder::GetDisplayNames(BSTR* vendorId, BSTR* productId, BSTR* revision) {
  return answer("IDiscRecorder::GetDisplayNames", [&]() -> DiscResult {
    if (vendorId == nullptr || productId == nullptr || revision == nullptr) return E_POINTER;
    const DriveIdentity& drive = recorder_->identity();
    *vendorId = *productId = *revision = nullptr;
    DiscResult result = giveText(drive.vendor, vendorId);
    if (!result.failed()) result = giveText(drive.product, productId);
    if (!result.failed()) result = giveText(drive.revision, revision);
    if (!result.failed()) return result;
    for (BSTR* given : {vendorId, productId, revision}) {
      SysFreeString(*given);
      *given = nullptr;
    }
    return result;
  });
}

HRESULT LegacyRecorder::GetBasePnPID(BSTR* basePnpId) {
  return answer("IDiscRecorder::GetBasePnPID", [&] {
    const DriveIdentity& drive = recorder_->identity();
    return giveText(drive.vendor + u"_" + drive.product + u"_" + drive.revision, basePnpId);
  });
}

HRESULT LegacyRecorder::GetPath(BSTR* path) {
  return answer("IDiscRecorder::GetPath",
                [&] { return giveText(recorder_->identity().devicePath, path); });
}

// There is nothing to set: recorders of the layer write as fast as the disc allows.
HRESULT LegacyRecorder::GetRecorderProperties(IPropertyStorage** propStg) {
  if (propStg == nullptr) return E_POINTER;
  *propStg = nullptr;
  return IMAPI_E_DEVICE_NOPROPERTIES;
}
HRESULT LegacyRecorder::SetRecorderProperties(IPropertyStorage*) {
  return IMAPI_E_DEVICE_NOPROPERTIES;
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

HRESULT LegacyRecorder::QueryMediaInfo(BYTE* sessions, BYTE* lastTrack, ULONG* startAddress,
                                       ULONG* nextWritable, ULONG* freeBlocks) {
  return answerOpened("IDiscRecorder::QueryMediaInfo", [&]() -> DiscResult {
    if (sessions == nullptr || lastTrack == nullptr || startAddress == nullptr ||
        nextWritable == nullptr || freeBlocks == nullptr) {
      return E_POINTER;
    }
    MediaFacts facts;
    DiscResult result = media(facts);
    if (result.failed()) return result;
    if (!facts.present) return IMAPI_E_MEDIUM_NOTPRESENT;
    if (!isCd(facts)) return IMAPI_E_MEDIUM_INVALIDTYPE;
    *sessions = *lastTrack = facts.isBlank() ? 0 : 1;
    *startAddress = facts.previousSessionStart;
    *nextWritable = facts.nextWritableSector;
    *freeBlocks = facts.freeSectors;
    return S_OK;
  });
}

HRESULT LegacyRecorder::Eject() {
  return answer("IDiscRecorder::Eject", [&] { return recorder_->eject(); });
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
