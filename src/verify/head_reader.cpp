#include "head_reader.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "dicom/element_form.h"
#include "dicom/parse_header.h"
#include "dicom/tags.h"

namespace quillon {

namespace {

constexpr std::uint64_t kMagicAt = 128;
// Of more fragments nobody is asked to read every header: a sum tells whether they are whole.
constexpr std::size_t kMaxFragments = 100'000;

}  // namespace

bool HeadReader::FillKept() {
  if (isKept_) return true;
  const auto wanted =
      static_cast<std::size_t>(std::min<std::uint64_t>(kept_.size(), file_.SizeBytes()));
  isKept_ = wanted == 0 || file_.ReadAt(0, kept_.data(), wanted);
  if (isKept_) keptBytes_ = wanted;
  return isKept_;
}

bool HeadReader::readAt(std::uint64_t offset, void* buffer, std::size_t lengthBytes) {
  if (!kept_.empty() && !FillKept()) {
    hasFailed_ = true;
    return false;
  }
  if (offset < keptBytes_) {
    const std::size_t fromKept =
        std::min(lengthBytes, keptBytes_ - static_cast<std::size_t>(offset));
    std::memcpy(buffer, kept_.data() + offset, fromKept);
    if (fromKept == lengthBytes) return true;
    offset += fromKept;
    buffer = static_cast<std::uint8_t*>(buffer) + fromKept;
    lengthBytes -= fromKept;
  }
  if (file_.ReadAt(offset, buffer, lengthBytes)) return true;
  hasFailed_ = true;
  return false;
}

bool HeadReader::HasMagic() {
  std::array<char, 4> magic{};
  return sizeBytes() >= kMagicAt + magic.size() && readAt(kMagicAt, magic.data(), magic.size()) &&
         std::memcmp(magic.data(), "DICM", magic.size()) == 0;
}

void HeadReader::ReadHead(const char* name, const DcTagSet& wanted, FileHead& head) {
  std::uint64_t pixelAt = kNoPixelData;
  std::uint32_t pixelLength = 0;
  head.code = dirReadFile(*this, name, head.metaInfo, head.elements, &pixelAt, &pixelLength,
                          &head.reading, &wanted);
  head.isCut = head.reading.isPixelDataCut;
  if (head.code == kDcOk && !head.isCut && pixelLength == kUndefinedLength) {
    head.isCut = !ArePixelFragmentsWhole(pixelAt);
  }
}

bool HeadReader::ArePixelFragmentsWhole(std::uint64_t at) {
  for (std::size_t i = 0; i < kMaxFragments; ++i) {
    std::array<std::uint8_t, kShortHeaderBytes> header{};
    if (at > sizeBytes() || sizeBytes() - at < header.size()) return false;
    if (!readAt(at, header.data(), header.size())) return true;  // which is another fault
    const DcTag tag = loadItemTag(header.data(), kParseExplicitLittleForm);
    // What is neither is no cut.
    if (tag != tags::kItem) return true;
    at += header.size() + loadItemLength(header.data(), kParseExplicitLittleForm);
  }
  return true;
}

bool HeadReader::NextPiece(std::span<const std::uint8_t>& piece) {
  piece = {};
  if (nextPieceAt_ == 0) {
    if (!FillKept()) return false;
  } else {
    const auto wanted = static_cast<std::size_t>(
        std::min<std::uint64_t>(kept_.size(), file_.SizeBytes() - nextPieceAt_));
    keptBytes_ = 0;
    if (wanted > 0 && !file_.ReadAt(nextPieceAt_, kept_.data(), wanted)) return false;
    piece = kept_.first(wanted);
    nextPieceAt_ += wanted;
    return true;
  }
  piece = kept_.first(keptBytes_);
  nextPieceAt_ = keptBytes_;
  return true;
}

}  // namespace quillon
