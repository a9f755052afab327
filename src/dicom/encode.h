// What the encoders of elements, sequences and lists share.
#pragma once

#include <cstddef>
#include <cstdint>

#include "byte_order.h"
#include "dicom/types.h"

namespace quillon {

// Item header, delimitation item: tag and 4-byte length.
inline constexpr std::uint32_t kItemHeaderBytes = 8;
inline constexpr std::uint32_t kDelimiterBytes = 8;
// The largest header of an element, which the estimates assume for every element.
inline constexpr std::uint64_t kElementHeaderBytes = 12;

inline void storeTag(std::uint8_t* to, DcTag tag, bool bigEndian) {
  store16(to, dcGroup(tag), bigEndian);
  store16(to + 2, dcElement(tag), bigEndian);
}

}  // namespace quillon
