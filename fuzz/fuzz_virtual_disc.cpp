// The files of a virtual recorder as anybody may have changed them (recorder.txt, disc.txt,
// faults.txt, the record beside an image), each up to a zero byte, and an image that is put in.
// Whatever stands there, an image that was taken in comes out as it was, and what was written is
// what was sent.
#include <cstring>

#include "input_parts.h"
#include "platform/com/com_object.h"
#include "platform/com/refusing.h"
#include "recorders/disc_record.h"
#include "recorders/recorder_store.h"
#include "recording/virtual_discs.h"
#include "scratch_directory.h"
#include "virtual_recorder.h"

namespace quillon::platform {
namespace {

using fuzz::readFile;
using fuzz::require;
using fuzz::writeFile;

class SentImage final : public ComObject<Refusing<IStream>, IID_ISequentialStream, IID_IStream> {
 public:
  static constexpr std::uint64_t kSectors = 3;

  [[nodiscard]] const std::string& bytes() const { return bytes_; }
  HRESULT STDMETHODCALLTYPE Read(void* buffer, ULONG length, ULONG* read) override {
    *read = static_cast<ULONG>(std::min<std::size_t>(length, bytes_.size() - position_));
    std::memcpy(buffer, bytes_.data() + position_, *read);
    position_ += *read;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD, ULARGE_INTEGER* at) override {
    position_ = static_cast<std::size_t>(move.QuadPart);
    if (at != nullptr) at->QuadPart = position_;
    return S_OK;
  }

 private:
  std::string bytes_ = std::string(kSectors * kSectorBytes, 'q');
  std::size_t position_ = 0;
};

struct Place {
  fuzz::ScratchDirectory store;
  std::filesystem::path recorder = store / "r";
  std::filesystem::path image = store / "X.iso";
  std::filesystem::path besides = store / "X.disc.txt";

  Place() { ::setenv("QUILLON_RECORDERS", store.path().c_str(), 1); }
  void renew() const {
    store.empty();
    std::filesystem::create_directory(recorder);
  }
};

// Every failure carries a sentence.
bool isDone(const DiscResult& result) {
  require(!result.failed() || !result.text.empty());
  return !result.failed();
}

// Where a disc that is taken out may come to lie.
void requireEjected(const Place& place, const std::string& leftAt) {
  const std::filesystem::path path(leftAt);
  require(path.parent_path() == place.recorder / kEjectedDirectory && path.has_filename());
  require(std::filesystem::is_regular_file(std::filesystem::symlink_status(path)));
}

void insertAndEject(const Place& place, const std::string& image) {
  DiscToInsert disc;
  disc.image = place.image;
  if (!isDone(insertVirtualDisc("r", disc))) {
    require(readFile(place.image) == image);
    return;
  }
  VirtualRecorderStatus status;
  require(isDone(virtualRecorderStatus("r", status)) && status.hasDisc);
  const bool isBlank = status.state == "blank" || status.state == "erased";
  std::string leftAt;
  require(isDone(ejectVirtualDisc("r", leftAt)));
  require(isBlank == leftAt.empty());
  if (isBlank) return;
  requireEjected(place, leftAt);
  require(readFile(leftAt) == image && readFile(place.image) == image);
}

void write(const Place& place) {
  VirtualRecorder recorder(place.recorder);
  MediaFacts facts;
  static_cast<void>(recorder.media(facts));
  CurrentPages pages;
  static_cast<void>(recorder.currentPages(pages));
  ComPtr<SentImage> image;
  image.Attach(new SentImage);
  WriteRequest request;
  request.image = image.Get();
  request.sectors = SentImage::kSectors;
  const bool isWritten = !recorder.write(request).failed();
  if (isWritten) require(readFile(place.recorder / kImageFile) == image->bytes());
  static_cast<void>(recorder.media(facts));
  require(!isWritten || !facts.present || !facts.isBlank());
  const bool isErased = !recorder.erase(/*full=*/true, kOwnClientName, {}).failed();
  if (isErased) require(std::filesystem::file_size(place.recorder / kImageFile) == 0);
}

}  // namespace
}  // namespace quillon::platform

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  using namespace quillon::platform;
  static const Place place;
  place.renew();
  fuzz::InputParts parts(data, size);
  const unsigned choice = parts.byte();
  fuzz::writeFile(place.recorder / kRecorderFile, parts.text());
  const std::string_view disc = parts.text();
  if ((choice & 1U) != 0) fuzz::writeFile(place.recorder / kDiscFile, disc);
  const std::string_view faults = parts.text();
  if ((choice & 2U) != 0) fuzz::writeFile(place.recorder / kFaultFile, faults);
  const std::string_view besides = parts.text();
  if ((choice & 4U) != 0) fuzz::writeFile(place.besides, besides);
  std::string image(parts.rest());
  // Most images are made of whole sectors.
  if ((choice & 8U) != 0) image.resize((image.size() / kSectorBytes + 1) * kSectorBytes);
  if ((choice & 16U) != 0) image.insert(0, 16 * std::size_t{kSectorBytes}, '\0');
  fuzz::writeFile(place.image, image);
  if ((choice & 32U) != 0) fuzz::writeFile(place.recorder / kImageFile, image);

  std::vector<VirtualRecorderStatus> recorders;
  fuzz::require(isDone(listVirtualRecorders(recorders)) && recorders.size() == 1);
  VirtualRecorderStatus status;
  static_cast<void>(isDone(virtualRecorderStatus("r", status)));
  write(place);
  std::string leftAt;
  if (isDone(ejectVirtualDisc("r", leftAt)) && !leftAt.empty()) requireEjected(place, leftAt);
  insertAndEject(place, image);
  return 0;
}
