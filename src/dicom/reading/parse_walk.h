// Steps over values of undefined length without keeping anything of them: one pass over the
// bytes, from memory or from a file.
//
// A source offers size() and at(position, count), which answers the bytes there or null when they
// are not all available.
#pragma once

#include <algorithm>
#include <cstdint>

#include "dicom/parse_header.h"
#include "dicom/tags.h"

namespace quillon {

class MemorySource {
 public:
  MemorySource(const std::uint8_t* bytes, std::uint64_t sizeBytes)
      : bytes_(bytes), sizeBytes_(sizeBytes) {}
  [[nodiscard]] std::uint64_t size() const { return sizeBytes_; }
  [[nodiscard]] const std::uint8_t* at(std::uint64_t position, std::size_t count) const {
    return position <= sizeBytes_ && count <= sizeBytes_ - position ? bytes_ + position : nullptr;
  }

 private:
  const std::uint8_t* bytes_;
  std::uint64_t sizeBytes_;
};

// Bytes of the element header at a position: up to 12 when the source has as many.
template <class Source>
const std::uint8_t* headerAt(Source& source, std::uint64_t position, std::size_t& available) {
  if (position > source.size()) return nullptr;
  available =
      static_cast<std::size_t>(std::min<std::uint64_t>(kLongHeaderBytes, source.size() - position));
  return available < kShortHeaderBytes ? nullptr : source.at(position, available);
}

template <class Source>
DcCode walkSequence(Source& source, std::uint64_t& position, unsigned flags, int depth);

// A value of undefined length that stands in explicit VR as UN holds implicit little endian items.
inline unsigned formInside(const ElemInfo& info) {
  const bool isUnknown = info.vr == DcVr::UN && (info.flags & kParseExplicit) != 0;
  return (isUnknown ? kParseImplicitLittleForm : info.flags) & ~kParseOpenEnd;
}

// Steps over the value behind a header at `position`, which moves to the header's end first.
template <class Source>
DcCode walkValue(Source& source, std::uint64_t& position, const ElemInfo& info, int depth) {
  position += info.headerBytes;
  if (info.valueLength == kUndefinedLength) {
    return walkSequence(source, position, formInside(info), depth + 1);
  }
  if (info.valueLength > source.size() - position) return kDcNotAccepted;
  position += info.valueLength;
  return kDcOk;
}

// Steps over the elements of an item of undefined length and its delimitation item. An item that
// lacks the delimitation item ends in front of the next item or of the sequence's end;
// isDelimited tells.
template <class Source>
DcCode walkItem(Source& source, std::uint64_t& position, unsigned flags, int depth,
                bool& isDelimited) {
  isDelimited = false;
  while (true) {
    std::size_t available = 0;
    const std::uint8_t* bytes = headerAt(source, position, available);
    if (bytes == nullptr) return kDcNotAccepted;
    const DcTag itemTag = loadItemTag(bytes, flags);
    if (itemTag == tags::kItemDelimitationItem && loadItemLength(bytes, flags) == 0) {
      position += kShortHeaderBytes;
      isDelimited = true;
      return kDcOk;
    }
    if (itemTag == tags::kItem || itemTag == tags::kSequenceDelimitationItem) return kDcOk;
    ElemInfo info;
    if (!utilGetElemInfo(bytes, available, flags, info)) return kDcNotAccepted;
    if (const DcCode code = walkValue(source, position, info, depth); code != kDcOk) return code;
  }
}

// Steps over the items of a value of undefined length and its sequence delimitation item.
// On an error `position` is where the fault was found: kDcNotConvertible when it is no item,
// kDcNotAccepted when the bytes end too soon, kDcTooDeep.
template <class Source>
DcCode walkSequence(Source& source, std::uint64_t& position, unsigned flags, int depth) {
  if (depth > kMaxNesting) return kDcTooDeep;
  while (true) {
    const std::uint8_t* bytes = source.at(position, kShortHeaderBytes);
    if (bytes == nullptr) return kDcNotAccepted;
    const DcTag tag = loadItemTag(bytes, flags);
    const std::uint32_t length = loadItemLength(bytes, flags);
    if (tag == tags::kSequenceDelimitationItem && length == 0) {
      position += kShortHeaderBytes;
      return kDcOk;
    }
    if (tag != tags::kItem) return kDcNotConvertible;
    if (length == kUndefinedLength) {
      position += kShortHeaderBytes;
      bool isDelimited = false;
      const DcCode code = walkItem(source, position, flags, depth, isDelimited);
      if (code != kDcOk) return code;
      continue;
    }
    if (length > source.size() - position - kShortHeaderBytes) return kDcNotAccepted;
    position += kShortHeaderBytes + length;
  }
}

}  // namespace quillon
