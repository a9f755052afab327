// Upper bounds of encoded sizes, from which callers allocate.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "dicom/elem.h"
#include "dicom/elem_list.h"
#include "dicom/elem_sq.h"
#include "dicom/element_form.h"
#include "dicom/tags.h"
#include "dicom/vr_table.h"

namespace quillon {
namespace {

// The largest header of an element, which the estimates assume for every element.
constexpr std::uint64_t kElementHeaderBytes = 12;

std::uint64_t textSize(const DcTextValues& values) {
  std::uint64_t sum = 0;
  for (const std::string_view value : values) {
    sum += value.size() + 1;
    sum += sum % 2;
  }
  return sum;
}

}  // namespace

std::uint64_t DcElem::encodedValueLengthEstimate() const {
  if (!segments_.empty()) {
    // Room for the delimitation item of encapsulated pixel data.
    std::uint64_t sum = tag_ == tags::kPixelData ? kDelimiterBytes : 0;
    for (const DcElemValueBuf& segment : segments_) {
      if (segment.storage() == DcElemValueBuf::Storage::Memory) sum += segment.lengthBytes();
    }
    return sum + sum % 2;
  }
  const std::uint64_t fixed =
      vrRow(resolvedVr()).estimateBytes * static_cast<std::uint64_t>(valueCount());
  const auto* texts = std::get_if<DcTextValues>(&values_);
  if (texts == nullptr) return fixed;
  // Dates, times and names can be longer than their VR allows while values are not checked, and
  // text that is kept undivided longer than its values.
  const std::uint64_t joined = texts->joined().size();
  return std::max(fixed == 0 ? textSize(*texts) : fixed, joined + joined % 2);
}

std::uint64_t DcElem::encodedLengthEstimate() const {
  return kElementHeaderBytes + encodedValueLengthEstimate();
}

std::uint64_t DcElemSq::encodedValueLengthEstimate() const {
  std::uint64_t sum = 0;
  for (const std::unique_ptr<DcElemSqItem>& item : items_) {
    sum += kItemHeaderBytes + item->encodedLengthEstimate();
  }
  return sum;
}

std::uint64_t DcElemSq::encodedLengthEstimate() const {
  return kElementHeaderBytes + encodedValueLengthEstimate();
}

std::uint64_t DcElemList::encodedLengthEstimate() const {
  std::uint64_t sum = 0;
  for (const std::unique_ptr<DcElem>& elem : elements_) sum += elem->encodedLengthEstimate();
  return sum;
}

}  // namespace quillon
