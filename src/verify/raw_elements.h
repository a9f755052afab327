// Elements of explicit little endian bytes, as they stand there: nothing is copied or converted,
// and what is damaged does not hide what stands before it.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "dicom/types.h"

namespace quillon {

struct RawElement {
  DcTag tag = 0;
  DcVr vr = DcVr::None;
  std::string_view value;  // of a sequence: its items, without a delimitation item
};

struct RawElements {
  std::vector<RawElement> elements;
  std::size_t end = 0;   // of the last whole one
  bool isWhole = false;  // whether that is the end of what was to be read

  // The first one of that tag; null when there is none.
  [[nodiscard]] const RawElement* Find(DcTag tag) const;
  // Without padding; empty when there is none.
  [[nodiscard]] std::string_view Text(DcTag tag) const;
  // False when it is missing or has another length.
  [[nodiscard]] bool Number(DcTag tag, std::uint16_t& number) const;
  [[nodiscard]] bool Number(DcTag tag, std::uint32_t& number) const;
};

// The elements in [begin, end) of the bytes, at most until one that isLast accepts, which stays
// unread: end is then where it begins, and isWhole is true.
RawElements ReadRawElements(std::string_view bytes, std::size_t begin, std::size_t end,
                            const std::function<bool(DcTag)>& isLast = {});

// One item: its header's place, its value and where what follows begins.
struct RawItem {
  std::size_t at = 0;
  std::size_t valueAt = 0;
  std::size_t valueEnd = 0;
  std::size_t end = 0;
};

// False when no whole item begins there before the end.
[[nodiscard]] bool MeasureItem(std::string_view bytes, std::size_t at, std::size_t end,
                               RawItem& item);

// Whether accept answers true for any element, those within sequences included (to a depth that no
// record has).
[[nodiscard]] bool AnyElement(const RawElements& elements,
                              const std::function<bool(const RawElement&)>& accept, int depth = 0);

}  // namespace quillon
