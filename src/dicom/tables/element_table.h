// The data elements that the dictionary knows, one row each, in ascending tag order.
// Made by scripts/make_dictionary.py from data_elements.tsv: change that file instead.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "dicom/types.h"

namespace quillon {

// vm: n > 0 exactly n values, 0 one or more without bound, -k one to k values. Repeating groups
// stand once, with FF as the low byte of the group.
struct ElementRow {
  DcTag tag;
  std::uint8_t vr;  // a DcVr
  std::int8_t vm;
  const char* keyword;
};

inline constexpr std::size_t kElementCount = 2607;
extern const std::array<ElementRow, kElementCount> kElementTable;
// The tags of the rows alone, so that a search touches few cache lines.
extern const std::array<DcTag, kElementCount> kElementTags;

}  // namespace quillon
