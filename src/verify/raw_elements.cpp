#include "raw_elements.h"

#include <algorithm>

#include "dicom/byte_order.h"
#include "dicom/element_form.h"
#include "dicom/parse_header.h"
#include "dicom/read_file.h"
#include "dicom/tags.h"
#include "findings.h"

namespace quillon {

namespace {

constexpr int kMaxDepth = 16;
// No directory record is larger; to look for the end of a longer item would be looked for in vain.
constexpr std::size_t kMaxOpenItemBytes = std::size_t{16} << 20;

// Nor has one so many elements: of a hostile one each would take four times its own bytes.
constexpr std::size_t kMaxElements = 100'000;

const std::uint8_t* At(std::string_view bytes, std::size_t at) {
  return reinterpret_cast<const std::uint8_t*>(bytes.data()) + at;
}

// Where a sequence of undefined length ends, without its delimitation item, and where what follows
// begins.
bool MeasureOpenSequence(std::string_view bytes, std::size_t begin, std::size_t end,
                         std::size_t& valueEnd, std::size_t& next) {
  std::size_t at = begin;
  while (at <= end && end - at >= kShortHeaderBytes) {
    if (loadItemTag(At(bytes, at), kParseExplicitLittleForm) == tags::kSequenceDelimitationItem) {
      valueEnd = at;
      next = at + kShortHeaderBytes;
      return true;
    }
    RawItem item;
    if (!MeasureItem(bytes, at, end, item)) return false;
    at = item.end;
  }
  return false;
}

}  // namespace

const RawElement* RawElements::Find(DcTag tag) const {
  const auto found = std::ranges::find(elements, tag, &RawElement::tag);
  return found == elements.end() ? nullptr : &*found;
}

std::string_view RawElements::Text(DcTag tag) const {
  const RawElement* found = Find(tag);
  return found == nullptr ? std::string_view() : TrimmedBytes(found->value);
}

bool RawElements::Number(DcTag tag, std::uint16_t& number) const {
  const RawElement* found = Find(tag);
  if (found == nullptr || found->value.size() != sizeof number) return false;
  number = loadLe16(At(found->value, 0));
  return true;
}

bool RawElements::Number(DcTag tag, std::uint32_t& number) const {
  const RawElement* found = Find(tag);
  if (found == nullptr || found->value.size() != sizeof number) return false;
  number = loadLe32(At(found->value, 0));
  return true;
}

bool MeasureItem(std::string_view bytes, std::size_t at, std::size_t end, RawItem& item) {
  if (at > end || end - at < kShortHeaderBytes ||
      loadItemTag(At(bytes, at), kParseExplicitLittleForm) != tags::kItem) {
    return false;
  }
  const std::size_t left = end - at - kShortHeaderBytes;
  const std::uint32_t declared = loadItemLength(At(bytes, at), kParseExplicitLittleForm);
  item.at = at;
  item.valueAt = at + kShortHeaderBytes;
  if (declared != kUndefinedLength) {
    if (declared > left) return false;
    item.valueEnd = item.end = item.valueAt + declared;
    return true;
  }
  std::uint32_t valueLength = 0;
  std::uint32_t trailerLength = 0;
  if (utilGetSqItemValLen(At(bytes, at + 4),
                          static_cast<std::uint32_t>(std::min(left, kMaxOpenItemBytes)),
                          DcUid::ExplicitLittleEndian, &valueLength, &trailerLength) != kDcOk) {
    return false;
  }
  item.valueEnd = item.valueAt + valueLength;
  item.end = item.valueEnd + trailerLength;
  return true;
}

RawElements ReadRawElements(std::string_view bytes, std::size_t begin, std::size_t end,
                            const std::function<bool(DcTag)>& isLast) {
  RawElements read;
  read.end = begin;
  while (read.end < end) {
    ElemInfo info;
    if (read.elements.size() == kMaxElements ||
        !utilGetElemInfo(At(bytes, read.end), end - read.end, kParseExplicitLittleForm, info)) {
      return read;
    }
    if (isLast && isLast(info.tag)) break;
    const std::size_t valueAt = read.end + info.headerBytes;
    std::size_t valueEnd = 0;
    std::size_t next = 0;
    if (info.valueLength == kUndefinedLength) {
      if (!MeasureOpenSequence(bytes, valueAt, end, valueEnd, next)) return read;
    } else {
      if (info.valueLength > end - valueAt) return read;
      valueEnd = next = valueAt + info.valueLength;
    }
    read.elements.push_back({info.tag, info.vr, bytes.substr(valueAt, valueEnd - valueAt)});
    read.end = next;
  }
  read.isWhole = true;
  return read;
}

bool AnyElement(const RawElements& elements, const std::function<bool(const RawElement&)>& accept,
                int depth) {
  for (const RawElement& element : elements.elements) {
    if (accept(element)) return true;
    if (element.vr != DcVr::SQ || depth >= kMaxDepth) continue;
    RawItem item;
    for (std::size_t at = 0; MeasureItem(element.value, at, element.value.size(), item);
         at = item.end) {
      const RawElements inside = ReadRawElements(element.value, item.valueAt, item.valueEnd);
      if (AnyElement(inside, accept, depth + 1)) return true;
    }
  }
  return false;
}

}  // namespace quillon
