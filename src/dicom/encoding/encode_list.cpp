// Encodes element lists, sequences and their items. Every length is defined.
#include <algorithm>
#include <cstdint>
#include <string>

#include "dicom/dict.h"
#include "dicom/elem_list.h"
#include "dicom/elem_sq.h"
#include "dicom/element_form.h"
#include "dicom/log.h"
#include "dicom/tags.h"

namespace quillon {
namespace {

constexpr DcTag kWaveformValues[] = {
    tags::kChannelMinimumValue,
    tags::kChannelMaximumValue,
    tags::kWaveformPaddingValue,
    tags::kWaveformData,
};
constexpr std::uint16_t kBitsOfByte = 8;
constexpr std::uint16_t kPixelGroup = dcGroup(tags::kPixelData);
// Bytes of the Pixel Data element beside its value.
constexpr std::uint32_t kPixelHeaderImplicit = 8;
constexpr std::uint32_t kPixelHeaderExplicit = 12;
constexpr std::uint32_t kPixelHeaderEncapsulated = 20;  // with the delimitation item

DcCode nullBuffer(const char* function, DcCode code) {
  dcLog(DcLogLevel::Error, function, "Null argument passed");
  return code;
}

DcVr bytesOrWords(std::uint16_t bits, DcUid transferSyntax) {
  return bits > kBitsOfByte && isUncompressed(transferSyntax) ? DcVr::OW : DcVr::OB;
}

void resolveWaveform(const DcElemList& list, DcUid transferSyntax) {
  std::uint16_t bits = 0;
  if (list.getValue(tags::kWaveformBitsAllocated, bits) != kDcOk) return;
  for (const DcTag tag : kWaveformValues) {
    if (DcElem* elem = list.find(tag)) elem->setVr(bytesOrWords(bits, transferSyntax));
  }
}

// Answers the length of the pixel data's first segment, with its padding.
std::uint32_t resolvePixelData(const DcElemList& list, DcUid transferSyntax) {
  DcElem* pixelData = list.find(tags::kPixelData);
  if (pixelData == nullptr) return 0;
  if (pixelData->resolvedVr() == DcVr::OX) {
    std::uint16_t bits = 0;  // when it is not there
    static_cast<void>(list.getValue(tags::kBitsAllocated, bits));
    pixelData->setVr(bytesOrWords(bits, transferSyntax));
  }
  if (pixelData->segments().empty()) return 0;
  const std::uint32_t length = pixelData->segments().front().lengthBytes();
  const bool isPadded = pixelData->segments().size() == 1 && isUncompressed(transferSyntax);
  return length % 2 != 0 && isPadded ? length + 1 : length;
}

std::uint64_t bytesInFiles(const DcElem& elem) {
  std::uint64_t sum = 0;
  for (const DcElemValueBuf& segment : elem.segments()) {
    if (segment.storage() == DcElemValueBuf::Storage::File) sum += segment.lengthBytes();
  }
  return sum;
}

// The group whose elements are being written. A group length element at its start learns its
// value when the group is complete, and is written again in its place.
class OpenGroup {
 public:
  OpenGroup(std::uint32_t pixelDataLength, bool hasPixelData, DcUid transferSyntax)
      : pixelDataLength_(pixelDataLength),
        hasPixelData_(hasPixelData),
        transferSyntax_(transferSyntax) {}

  void begin(DcElem& first, std::uint8_t* at, DcUid syntax) {
    group_ = first.group();
    isOpen_ = true;
    bytes_ = 0;
    lengthElem_ = nullptr;
    if (first.element() != 0 || first.resolvedVr() != DcVr::UL) return;
    // It gets its size before it is written for the first time.
    if (first.valueCount() == 0 && first.addValue(std::uint32_t{0}) != kDcOk) return;
    lengthElem_ = &first;
    lengthAt_ = at;
    syntax_ = syntax;
  }
  [[nodiscard]] bool contains(const DcElem& elem) const {
    return isOpen_ && elem.group() == group_;
  }
  void count(const DcElem& elem, std::uint64_t elementBytes) {
    if (&elem != lengthElem_) bytes_ += elementBytes;
  }
  DcCode end() {
    if (!isOpen_ || lengthElem_ == nullptr) return kDcOk;
    const std::uint64_t value = group_ == kPixelGroup && hasPixelData_
                                    ? std::uint64_t{pixelDataLength_} + pixelHeader()
                                    : bytes_;
    const DcCode code = lengthElem_->addValue(static_cast<std::uint32_t>(value), 0);
    if (code != kDcOk) return code;
    std::uint32_t rewritten = 0;
    return lengthElem_->frame(lengthAt_, rewritten, syntax_);
  }

 private:
  [[nodiscard]] std::uint32_t pixelHeader() const {
    if (transferSyntax_ == DcUid::ImplicitLittleEndian) return kPixelHeaderImplicit;
    return isUncompressed(transferSyntax_) ? kPixelHeaderExplicit : kPixelHeaderEncapsulated;
  }

  std::uint32_t pixelDataLength_;
  bool hasPixelData_;
  DcUid transferSyntax_;
  std::uint16_t group_ = 0;
  bool isOpen_ = false;
  std::uint64_t bytes_ = 0;
  DcElem* lengthElem_ = nullptr;
  std::uint8_t* lengthAt_ = nullptr;
  DcUid syntax_ = DcUid::ExplicitLittleEndian;
};

}  // namespace

DcCode DcElemList::frame(std::uint8_t* buffer, std::uint32_t& lengthOut, DcUid transferSyntax) {
  constexpr const char* kFunction = "DcElemList::frame";
  lengthOut = 0;
  if (buffer == nullptr) return nullBuffer(kFunction, kDcNullArgument);
  if (!isTransferSyntaxUid(transferSyntax)) {
    dcLog(DcLogLevel::Error, kFunction, "'%s' is not a Transfer Syntax UID",
          dcUidText(transferSyntax).c_str());
    return kDcNotTransferSyntax;
  }
  resolveWaveform(*this, transferSyntax);
  const std::uint32_t pixelDataLength = resolvePixelData(*this, transferSyntax);
  OpenGroup group(pixelDataLength, contains(tags::kPixelData), transferSyntax);
  for (const std::unique_ptr<DcElem>& elem : elements_) {
    const DcUid syntax = syntaxOfGroup(elem->group(), transferSyntax);
    std::uint8_t* at = buffer + lengthOut;
    if (!group.contains(*elem)) {
      if (const DcCode code = group.end(); code != kDcOk) return code;
      group.begin(*elem, at, syntax);
    }
    std::uint32_t length = 0;
    const DcCode code = elem->frame(at, length, syntax);
    lengthOut += length;
    if (code != kDcOk) return code;
    group.count(*elem, length + bytesInFiles(*elem));
  }
  return group.end();
}

DcCode DcElemSqItem::frame(std::uint8_t* buffer, std::uint32_t& lengthOut, DcUid transferSyntax) {
  constexpr const char* kFunction = "DcElemSqItem::frame";
  lengthOut = 0;
  if (buffer == nullptr) return nullBuffer(kFunction, kDcItemNullBuffer);
  // The bytes of a file could only be appended behind the whole sequence.
  for (std::size_t i = 0; i < size(); ++i) {
    if (bytesInFiles(*at(i)) == 0) continue;
    dcLog(DcLogLevel::Error, kFunction, "Element (%04x,%04x) of an item is held in a file",
          at(i)->group(), at(i)->element());
    return kDcNotAccepted;
  }
  const bool big = isBigEndian(transferSyntax);
  storeTag(buffer, tags::kItem, big);
  store32(buffer + sizeof(DcTag), 0, big);
  std::uint32_t contents = 0;
  const DcCode code = DcElemList::frame(buffer + kItemHeaderBytes, contents, transferSyntax);
  store32(buffer + sizeof(DcTag), contents, big);
  lengthOut = kItemHeaderBytes + contents;
  return code;
}

DcCode DcElemSq::frame(std::uint8_t* buffer, std::uint32_t& lengthOut, DcUid transferSyntax) {
  constexpr const char* kFunction = "DcElemSq::frame";
  lengthOut = 0;
  if (buffer == nullptr) return nullBuffer(kFunction, kDcNullArgument);
  if (vr() != DcVr::SQ && vr() != DcVr::IM) {
    dcLog(DcLogLevel::Error, kFunction, "Element (%04x,%04x) is not a sequence", group(),
          element());
    return kDcNotReadable;
  }
  if (const DcCode code = checkTransferSyntax(transferSyntax); code != kDcOk) return code;
  const bool big = isBigEndian(transferSyntax);
  storeTag(buffer, tag(), big);
  std::uint8_t* to = buffer + sizeof(DcTag);
  if (transferSyntax != DcUid::ImplicitLittleEndian) {
    *to++ = 'S';
    *to++ = 'Q';
    *to++ = 0;
    *to++ = 0;
  }
  std::uint8_t* lengthField = to;
  to += sizeof(std::uint32_t);
  std::uint32_t contents = 0;
  DcCode code = kDcOk;
  for (const std::unique_ptr<DcElemSqItem>& item : items_) {
    std::uint32_t length = 0;
    code = item->frame(to + contents, length, transferSyntax);
    contents += length;
    if (code != kDcOk) break;
  }
  store32(lengthField, contents, big);
  lengthOut = static_cast<std::uint32_t>(to - buffer) + contents;
  return code;
}

}  // namespace quillon
