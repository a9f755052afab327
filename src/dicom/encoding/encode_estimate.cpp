// Upper bounds of encoded sizes, from which callers allocate.
#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "dicom/elem.h"
#include "dicom/elem_list.h"
#include "dicom/elem_sq.h"
#include "dicom/element_form.h"

namespace quillon {
namespace {

// The largest header of an element, which the estimates assume for every element.
constexpr std::uint64_t kElementHeaderBytes = 12;

struct FixedSize {
  DcVr vr;
  std::uint64_t bytesPerValue;
};

// clang-format off
// VRs whose values are counted, not measured.
constexpr std::array kFixedSizes{
    FixedSize{DcVr::AS,   4},
    FixedSize{DcVr::AT,  12},
    FixedSize{DcVr::DA,  22},
    FixedSize{DcVr::DT,  26},
    FixedSize{DcVr::FD,   8},
    FixedSize{DcVr::FL,   4},
    FixedSize{DcVr::PN, 324},
    FixedSize{DcVr::SL,   4},
    FixedSize{DcVr::SS,   2},
    FixedSize{DcVr::TM,  34},
    FixedSize{DcVr::UL,   4},
    FixedSize{DcVr::US,   2},
    FixedSize{DcVr::XL,   4},
    FixedSize{DcVr::XS,   2},
};
// clang-format on

std::uint64_t fixedSizeOf(DcVr vr) {
  const auto* row = std::ranges::find(kFixedSizes, vr, &FixedSize::vr);
  return row != kFixedSizes.end() ? row->bytesPerValue : 0;
}

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
    std::uint64_t sum = tag_ == kPixelDataTag ? kDelimiterBytes : 0;
    for (const DcElemValueBuf& segment : segments_) {
      if (segment.storage() == DcElemValueBuf::Storage::Memory) sum += segment.lengthBytes();
    }
    return sum + sum % 2;
  }
  const std::uint64_t fixed = fixedSizeOf(resolvedVr()) * static_cast<std::uint64_t>(valueCount());
  const auto* texts = std::get_if<DcTextValues>(&values_);
  if (texts == nullptr) return fixed;
  if (fixed == 0) return textSize(*texts);
  // Dates, times and names can be longer than their VR allows while values are not checked.
  const std::uint64_t joined = texts->joined().size();
  return std::max(fixed, joined + joined % 2);
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
