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
// The standard's names of the rows ("Patient's Name"), in UTF-8, in one text: pointers to them would
// be relocated at each start. The name of row i begins at kElementNameStarts[i] and ends where the
// next one begins.
extern const char kElementNames[];
extern const std::array<std::uint32_t, kElementCount + 1> kElementNameStarts;

}  // namespace quillon
