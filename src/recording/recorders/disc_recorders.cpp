#include "recording/disc_recorders.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <utility>

#include "recorders/catalogue.h"
#include "recorders/disc_types.h"
#include "recorders/progress.h"
#include "recording/disc_reader.h"
#include "recording/virtual_discs.h"
#include "virtual_recorder.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

constexpr std::u16string_view kHand = u"Quillon disc handling";

// Discs that a drive may hold and a virtual recorder does not.
struct OtherMedia {
  IMAPI_MEDIA_PHYSICAL_TYPE type;
  const char* keyword;
};
constexpr std::array kOtherMedia{
    OtherMedia{IMAPI_MEDIA_TYPE_DVDROM, "dvd-rom"},
    OtherMedia{IMAPI_MEDIA_TYPE_DVDRAM, "dvd-ram"},
    OtherMedia{IMAPI_MEDIA_TYPE_DVDDASHR_DUALLAYER, "dvd-r-dl"},
    OtherMedia{IMAPI_MEDIA_TYPE_BDROM, "bd-rom"},
};

std::string mediaName(IMAPI_MEDIA_PHYSICAL_TYPE type) {
  for (const DiscType& known : discTypes()) {
    if (known.physicalType == type) return std::string(known.keyword);
  }
  const auto* const other =
      std::find_if(kOtherMedia.begin(), kOtherMedia.end(),
                   [type](const OtherMedia& row) { return row.type == type; });
  return other == kOtherMedia.end() ? "unknown" : other->keyword;
}

// Other discs that hold data are refused by those who write through the service, until somebody has
// erased them.
bool isErasedByWriters(IMAPI_MEDIA_PHYSICAL_TYPE type) {
  constexpr std::array kTypes{IMAPI_MEDIA_TYPE_CDRW, IMAPI_MEDIA_TYPE_DVDPLUSRW,
                              IMAPI_MEDIA_TYPE_DVDDASHRW, IMAPI_MEDIA_TYPE_DVDPLUSRW_DUALLAYER};
  return std::find(kTypes.begin(), kTypes.end(), type) != kTypes.end();
}

DiscState stateOf(const MediaFacts& media) {
  if (media.isBlank()) return DiscState::Blank;
  if (media.has(IMAPI_FORMAT2_DATA_MEDIA_STATE_DAMAGED)) return DiscState::Damaged;
  return media.isOverwritable || media.has(IMAPI_FORMAT2_DATA_MEDIA_STATE_APPENDABLE)
             ? DiscState::Appendable
             : DiscState::Finalised;
}

struct Sentence {
  HRESULT code;
  const char* before;  // the recorder's name follows, in quotation marks
  const char* after;
};
// clang-format off
constexpr std::array kSentences{
    Sentence{E_IMAPI_RECORDER_LOCKED,               "Another program is using the recorder ", "."},
    Sentence{E_IMAPI_RECORDER_MEDIA_NO_MEDIA,       "There is no disc in the recorder ", "."},
    Sentence{E_IMAPI_RECORDER_MEDIA_BECOMING_READY, "The disc in the recorder ", " is not ready yet."},
    Sentence{E_IMAPI_RECORDER_MEDIA_BUSY,           "The disc in the recorder ", " is not ready yet."},
    Sentence{E_IMAPI_RECORDER_MEDIA_WRITE_PROTECTED, "The disc in the recorder ", " is write-protected."},
    Sentence{E_IMAPI_RECORDER_MEDIA_INCOMPATIBLE,   "The disc in the recorder ", " cannot be read."},
    Sentence{E_IMAPI_ERASE_MEDIA_IS_NOT_ERASABLE,   "The disc in the recorder ", " cannot be erased."},
    Sentence{E_IMAPI_ERASE_MEDIA_IS_NOT_SUPPORTED,  "The recorder ", " does not write discs of this kind."},
};
// clang-format on

DiscResult withSentence(DiscResult result, const std::string& name) {
  if (!result.failed() || !result.text.empty()) return result;
  const auto* const row =
      std::find_if(kSentences.begin(), kSentences.end(),
                   [&](const Sentence& sentence) { return sentence.code == result.code; });
  std::string text;
  if (row != kSentences.end()) {
    text = row->before + ("\"" + name + "\"") + row->after;
  } else {
    std::array<char, 16> code{};
    std::snprintf(code.data(), code.size(), "0x%08X", static_cast<unsigned>(result.code));
    text = "The recorder \"" + name + "\" failed with the code " + code.data() + ".";
  }
  return {result.code, wideFromNative(text)};
}

void fillDisc(const DriveIdentity& drive, const MediaFacts& media, DiscRecorderStatus& status) {
  status.hasDisc = media.present;
  if (!media.present) return;
  status.media = mediaName(media.physicalType);
  status.state = keywordOf(stateOf(media));
  status.isProtected = media.writeProtect != 0;
  status.capacitySectors = media.totalSectors;
  status.freeSectors = media.freeSectors;
  status.isErasable = media.isErasable || media.isOverwritable;
  if (!isUsableForData(drive, media)) return;
  if (media.isBlank()) {
    status.usableSectors = media.freeSectors;
  } else if (isErasedByWriters(media.physicalType)) {
    status.usableSectors = media.totalSectors;
  }
}

// What the directory tells beyond the facts that a drive has.
void addVirtualFacts(DiscRecorderStatus& status) {
  VirtualRecorderStatus more;
  if (virtualRecorderStatus(status.name, more).failed() || !more.hasDisc) return;
  status.state = more.state;
  status.isProtected = more.isProtected;
  status.image = more.image;
}

DiscRecorderStatus statusOf(Recorder& recorder) {
  const DriveIdentity& drive = recorder.identity();
  DiscRecorderStatus status;
  status.name = drive.name;
  status.device =
      nativeFromWide(drive.vendor + u" " + drive.product + u" (Revision: " + drive.revision + u")");
  status.isVirtual = dynamic_cast<VirtualRecorder*>(&recorder) != nullptr;
  for (const IMAPI_MEDIA_PHYSICAL_TYPE type : drive.writableTypes) {
    status.writableMedia.push_back(mediaName(type));
  }
  status.client = nativeFromWide(recorder.owner());
  MediaFacts media;
  const DiscResult result = withSentence(recorder.media(media), status.name);
  if (result.failed()) {
    status.problem = nativeFromWide(result.text);
    status.isBecomingReady = result.code == E_IMAPI_RECORDER_MEDIA_BECOMING_READY ||
                             result.code == E_IMAPI_RECORDER_MEDIA_BUSY;
    return status;
  }
  fillDisc(drive, media, status);
  if (status.isVirtual && status.hasDisc) addVirtualFacts(status);
  return status;
}

// what: the drive that is wanted, where no name is.
DiscResult noRecorder(const std::string& name, const char* what = "drive that writes discs") {
  std::string sentence = "There is no recorder \"" + name + "\".";
  if (name.empty()) {
    sentence = "There is no ";
    sentence.append(what).append(kWhenVirtual);
  }
  return {HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), wideFromNative(sentence)};
}

// An empty name stands for the first one that writes.
DiscResult findByName(const std::string& name, std::unique_ptr<Recorder>& found) {
  RecorderList recorders;
  DiscResult result = listRecorders(recorders);
  if (result.failed()) return result;
  for (std::unique_ptr<Recorder>& recorder : recorders) {
    const DriveIdentity& drive = recorder->identity();
    if (name.empty() ? drive.writableTypes.empty() : drive.name != name) continue;
    found = std::move(recorder);
    return S_OK;
  }
  // A drive that cannot be asked may be one that writes.
  for (const std::unique_ptr<Recorder>& recorder : recorders) {
    MediaFacts media;
    if (name.empty()) result = withSentence(recorder->media(media), recorder->identity().name);
    if (result.failed()) return result;
  }
  return noRecorder(name);
}

// An empty name stands for the first whose disc holds something. One that cannot be asked may have
// the disc that is meant, so that none is taken behind it.
DiscResult findDisc(const std::string& name, std::unique_ptr<Recorder>& found) {
  RecorderList recorders;
  DiscResult result = listRecorders(recorders);
  if (result.failed()) return result;
  DiscResult none = noRecorder(name, "drive");
  bool hasAsked = false;
  bool hasDisc = false;
  for (std::unique_ptr<Recorder>& recorder : recorders) {
    if (!name.empty() && recorder->identity().name != name) continue;
    MediaFacts media;
    result = recorder->media(media);
    if (!result.failed()) {
      result = checkReadable(recorder->identity(), media);
    } else if (name.empty()) {
      return withSentence(std::move(result), recorder->identity().name);
    }
    if (!result.failed()) {
      found = std::move(recorder);
      return S_OK;
    }
    // Of several, one with a blank disc says more than one without.
    if (!hasAsked || (media.present && !hasDisc)) {
      none = withSentence(std::move(result), recorder->identity().name);
    }
    hasAsked = true;
    hasDisc = hasDisc || media.present;
  }
  return none;
}

class HeldDisc final : public DiscReader {
 public:
  explicit HeldDisc(std::unique_ptr<Recorder> recorder) : recorder_(std::move(recorder)) {}

  DiscResult take();

  [[nodiscard]] const std::string& recorder() const override { return recorder_->identity().name; }
  [[nodiscard]] const std::string& media() const override { return media_; }
  [[nodiscard]] std::uint64_t sizeBytes() const override {
    return std::uint64_t{sectors_} * kSectorBytes;
  }
  [[nodiscard]] bool readAt(std::uint64_t offset, void* bytes, std::size_t count) override;
  [[nodiscard]] const DiscResult& failure() const override { return failure_; }

 private:
  [[nodiscard]] bool read(std::uint32_t sector, std::uint32_t count, void* bytes) {
    DiscResult result = recorder_->read(sector, count, bytes);
    if (!result.failed()) return true;
    failure_ = withSentence(std::move(result), recorder());
    return false;
  }

  std::unique_ptr<Recorder> recorder_;
  RecorderHold hold_{*recorder_};
  std::uint32_t sectors_ = 0;
  std::string media_;
  DiscResult failure_;
  // The sector of which a part was read last: the next part follows.
  std::array<char, kSectorBytes> part_{};
  std::uint64_t partOf_ = UINT64_MAX;
};

// The disc is looked at again: it may be another one by now.
DiscResult HeldDisc::take() {
  MediaFacts media;
  DiscResult result = hold_.acquire(kHand);
  if (!result.failed()) result = recorder_->media(media);
  if (!result.failed()) result = checkReadable(recorder_->identity(), media);
  sectors_ = media.readableSectors;
  media_ = mediaName(media.physicalType);
  return withSentence(std::move(result), recorder());
}

bool HeldDisc::readAt(std::uint64_t offset, void* bytes, std::size_t count) {
  constexpr std::size_t kMostSectors = 512;
  if (offset > sizeBytes() || count > sizeBytes() - offset) {
    failure_ = {E_INVALIDARG, wideFromNative("The disc in the recorder \"" + recorder() +
                                             "\" ends before what is to be read.")};
    return false;
  }
  auto* to = static_cast<char*>(bytes);
  while (count > 0) {
    const auto sector = static_cast<std::uint32_t>(offset / kSectorBytes);
    const auto within = static_cast<std::size_t>(offset % kSectorBytes);
    std::size_t piece = 0;
    if (within == 0 && count >= kSectorBytes) {
      const std::size_t whole = std::min(count / kSectorBytes, kMostSectors);
      if (!read(sector, static_cast<std::uint32_t>(whole), to)) return false;
      piece = whole * kSectorBytes;
    } else {
      if (partOf_ != sector) {
        partOf_ = UINT64_MAX;
        if (!read(sector, 1, part_.data())) return false;
        partOf_ = sector;
      }
      piece = std::min<std::size_t>(count, kSectorBytes - within);
      std::memcpy(to, part_.data() + within, piece);
    }
    to += piece;
    offset += piece;
    count -= piece;
  }
  return true;
}

}  // namespace

DiscResult openDisc(const std::string& recorder, std::unique_ptr<DiscReader>& disc) {
  disc.reset();
  std::unique_ptr<Recorder> found;
  DiscResult result = findDisc(recorder, found);
  if (result.failed()) return result;
  auto held = std::make_unique<HeldDisc>(std::move(found));
  result = held->take();
  if (!result.failed()) disc = std::move(held);
  return result;
}

DiscResult listDiscRecorders(std::vector<DiscRecorderStatus>& recorders) {
  recorders.clear();
  RecorderList found;
  DiscResult result = listRecorders(found);
  for (const std::unique_ptr<Recorder>& recorder : found) recorders.push_back(statusOf(*recorder));
  return result;
}

DiscResult describeDiscRecorder(const std::string& recorder, DiscRecorderStatus& status) {
  std::unique_ptr<Recorder> found;
  DiscResult result = findByName(recorder, found);
  if (!result.failed()) status = statusOf(*found);
  return result;
}

DiscResult eraseDisc(const std::string& recorderName, bool full) {
  std::unique_ptr<Recorder> recorder;
  DiscResult result = findByName(recorderName, recorder);
  if (result.failed()) return result;
  return withSentence(recorder->erase(full, kHand, discProgressCallback()),
                      recorder->identity().name);
}

DiscResult ejectDisc(const std::string& recorderName, std::string& imageLeftAt, bool& hadDisc) {
  imageLeftAt.clear();
  hadDisc = false;
  std::unique_ptr<Recorder> recorder;
  DiscResult result = findByName(recorderName, recorder);
  if (result.failed()) return result;
  const std::string& name = recorder->identity().name;
  MediaFacts media;
  // A disc that tells nothing of itself can be taken out all the same.
  hadDisc = recorder->media(media).failed() || media.present;
  if (dynamic_cast<VirtualRecorder*>(recorder.get()) != nullptr) {
    return ejectVirtualDisc(name, imageLeftAt);
  }
  return withSentence(recorder->eject(), name);
}

}  // namespace quillon::platform
