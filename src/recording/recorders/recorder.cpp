#include "recorders/recorder.h"

#include <algorithm>

#include "recorders/disc_operations.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

bool writesType(const DriveIdentity& drive, IMAPI_MEDIA_PHYSICAL_TYPE type) {
  return std::find(drive.writableTypes.begin(), drive.writableTypes.end(), type) !=
         drive.writableTypes.end();
}

// Without the rest of the media's checks, which come before.
DiscResult checkRoom(const MediaFacts& media, const WriteRequest& request) {
  std::uint32_t room = media.freeSectors;
  if (!media.isBlank()) {
    // A session behind another one would need an image that was laid out for that place.
    if (!request.isTestRun || !media.isErasable) return E_IMAPI_DF2DATA_MEDIA_NOT_BLANK;
    room = media.totalSectors;  // what it will be erased for, when the run is no test
  }
  return request.sectors > room ? E_IMAPI_DF2DATA_STREAM_TOO_LARGE_FOR_CURRENT_MEDIA : S_OK;
}

}  // namespace

bool isWritableType(const DriveIdentity& drive, const MediaFacts& media) {
  return writesType(drive, media.physicalType) &&
         !media.has(IMAPI_FORMAT2_DATA_MEDIA_STATE_UNSUPPORTED_MEDIA);
}

bool isUsableForData(const DriveIdentity& drive, const MediaFacts& media) {
  return media.present && isWritableType(drive, media) &&
         !media.has(IMAPI_FORMAT2_DATA_MEDIA_STATE_DAMAGED) &&
         !media.has(IMAPI_FORMAT2_DATA_MEDIA_STATE_WRITE_PROTECTED) &&
         (media.isBlank() || media.has(IMAPI_FORMAT2_DATA_MEDIA_STATE_APPENDABLE) ||
          media.isErasable || media.isOverwritable);
}

bool isUsableForErase(const DriveIdentity& drive, const MediaFacts& media) {
  return media.present && isWritableType(drive, media) && media.isErasable;
}

DiscResult checkWritable(const DriveIdentity& drive, const MediaFacts& media,
                         const WriteRequest& request) {
  if (!media.present) return E_IMAPI_RECORDER_MEDIA_NO_MEDIA;
  if (!isWritableType(drive, media)) return E_IMAPI_DF2DATA_MEDIA_NOT_SUPPORTED;
  if (media.has(IMAPI_FORMAT2_DATA_MEDIA_STATE_WRITE_PROTECTED)) {
    return E_IMAPI_RECORDER_MEDIA_WRITE_PROTECTED;
  }
  if (!isUsableForData(drive, media)) return E_IMAPI_DF2DATA_INVALID_MEDIA_STATE;
  return checkRoom(media, request);
}

DiscResult checkErasable(const DriveIdentity& drive, const MediaFacts& media) {
  if (!media.present) return E_IMAPI_RECORDER_MEDIA_NO_MEDIA;
  if (!media.isErasable) return E_IMAPI_ERASE_MEDIA_IS_NOT_ERASABLE;
  if (!isWritableType(drive, media)) return E_IMAPI_ERASE_MEDIA_IS_NOT_SUPPORTED;
  if (media.has(IMAPI_FORMAT2_DATA_MEDIA_STATE_WRITE_PROTECTED)) {
    return E_IMAPI_RECORDER_MEDIA_WRITE_PROTECTED;
  }
  return S_OK;
}

DiscResult checkReadable(const DriveIdentity& drive, const MediaFacts& media) {
  if (!media.present) return E_IMAPI_RECORDER_MEDIA_NO_MEDIA;
  std::string sentence = "The disc in the recorder \"" + drive.name + "\"";
  if (media.readableSectors == 0 || media.isBlank()) {
    sentence += " is blank.";
  } else if (media.lastSession > 0) {
    // What the first one holds may have been replaced since.
    sentence += " has several sessions: only a mounted one can be read.";
  } else {
    return S_OK;
  }
  return {E_IMAPI_RECORDER_MEDIA_INCOMPATIBLE, wideFromNative(sentence)};
}

bool isValidClientName(std::u16string_view name) {
  constexpr std::size_t kMaxUnits = 63;
  static constexpr std::u16string_view kMarks = u" ,.-:;_";
  return !name.empty() && name.size() <= kMaxUnits &&
         std::all_of(name.begin(), name.end(), [](char16_t unit) {
           return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'Z') ||
                  (unit >= u'a' && unit <= u'z') || kMarks.find(unit) != kMarks.npos;
         });
}

DiscResult Recorder::enter(std::string_view) { return S_OK; }

DiscResult Recorder::acquire(bool force, std::u16string_view clientName) {
  if (!isValidClientName(clientName)) return E_IMAPI_RECORDER_CLIENT_NAME_IS_NOT_VALID;
  if (holds_ == 0) {
    DiscResult result = lock(force, clientName);
    if (result.failed()) return result;
  }
  ++holds_;
  return S_OK;
}

DiscResult Recorder::release() {
  if (holds_ == 0) return {E_FAIL, u"This client has no exclusive access to the recorder."};
  return --holds_ == 0 ? unlock() : DiscResult();
}

DiscResult Recorder::write(const WriteRequest& request) {
  RecorderHold hold(*this);
  MediaFacts facts;
  DiscResult result = isHeld() ? DiscResult() : hold.acquire(request.clientName);
  if (!result.failed()) result = media(facts);
  if (!result.failed()) result = checkWritable(identity(), facts, request);
  if (result.failed()) return result;
  const HRESULT hr = request.image->Seek({}, STREAM_SEEK_SET, nullptr);
  if (FAILED(hr)) return hr;
  DiscOperation operation;
  if (areOperationsStopped()) return E_IMAPI_REQUEST_CANCELLED;
  result = burn(request);
  noteWrite(result);
  if (result.failed() && areOperationsStopped()) operation.tell(whatIsLeft("written"));
  return result;
}

DiscResult Recorder::erase(bool full, std::u16string_view clientName,
                           const DiscProgressCallback& progress) {
  RecorderHold hold(*this);
  MediaFacts facts;
  DiscResult result = isHeld() ? DiscResult() : hold.acquire(clientName);
  if (!result.failed()) result = media(facts);
  if (!result.failed()) result = checkErasable(identity(), facts);
  if (result.failed()) return result;
  DiscOperation operation;
  if (areOperationsStopped()) return E_IMAPI_REQUEST_CANCELLED;
  result = blank(full, progress);
  noteWork(result);
  if (result.failed() && areOperationsStopped()) operation.tell(whatIsLeft("erased"));
  return result;
}

std::string Recorder::whatIsLeft(const char* done) {
  const std::string disc = "The disc in " + identity().name;
  const std::string half = disc + " was only partly " + done;
  MediaFacts facts;
  if (media(facts).failed()) return half + " and cannot be relied on.";
  if (!facts.present) return "There is no disc in " + identity().name + " any more.";
  if (facts.isBlank()) return half + " and can be written as a blank one.";
  return half + (facts.isErasable ? ": it has to be erased before it is used again."
                                  : " and cannot be used any more.");
}

DiscResult Recorder::eject() {
  RecorderHold hold(*this);
  DiscResult result = isHeld() ? DiscResult() : hold.acquire(kOwnClientName);
  if (!result.failed()) result = openTray();
  noteWork(result);
  return result;
}

DiscResult Recorder::read(std::uint32_t sector, std::uint32_t count, void* bytes) {
  RecorderHold hold(*this);
  DiscResult result = isHeld() ? DiscResult() : hold.acquire(kOwnClientName);
  if (result.failed() || count == 0) return result;
  const DiscOperation operation;
  if (areOperationsStopped()) return E_IMAPI_REQUEST_CANCELLED;
  return fetch(sector, count, bytes);
}

}  // namespace quillon::platform
