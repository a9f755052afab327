// A sequence element and its items. Item lengths are always written defined.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "dicom/elem.h"
#include "dicom/elem_list.h"

namespace quillon {

class DcElemSqItem : public DcElemList {
 public:
  // Item tag, defined length and elements. Code kDcItemNullBuffer for a null buffer.
  DcCode frame(std::uint8_t* buffer, std::uint32_t& lengthOut, DcUid transferSyntax) override;
  // Settles OB or OW for the pixel data of an icon image. Called after an item of the Icon Image
  // Sequence was parsed.
  DcCode processIconImage();

  // Where the item stood in what it was parsed from: offset of its tag, length of its contents.
  std::uint32_t offsetInBuffer = 0;
  std::uint32_t lengthBytes = 0;
};

class DcElemSq : public DcElem {
 public:
  explicit DcElemSq(DcTag tag, DcVr vr = DcVr::SQ);
  // Parses the items; only items of defined length are accepted here.
  DcElemSq(DcTag tag, const void* buffer, std::uint32_t lengthBytes, DcUid transferSyntax,
           DcVr vr = DcVr::SQ);

  DcCode frame(std::uint8_t* buffer, std::uint32_t& lengthOut, DcUid transferSyntax) override;
  [[nodiscard]] std::uint64_t encodedLengthEstimate() const override;
  [[nodiscard]] std::uint64_t encodedValueLengthEstimate() const override;
  DcCode parseVal(const std::uint8_t* buffer, std::uint32_t lengthBytes,
                  DcUid transferSyntax) override;
  void resetIterator() override;
  void dump(std::string& out) const override;
  [[nodiscard]] std::unique_ptr<DcElem> copy() const override;

  // Appends at the end and answers the item; null answers null.
  DcElemSqItem* addItem(std::unique_ptr<DcElemSqItem> item);
  [[nodiscard]] std::size_t itemCount() const { return items_.size(); }
  [[nodiscard]] DcElemSqItem* item(std::size_t index) const { return items_[index].get(); }

 private:
  DcElemSq(const DcElemSq& other);

  std::vector<std::unique_ptr<DcElemSqItem>> items_;
};

}  // namespace quillon
