// One data element's value in the type that its VR calls for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "dicom/elem.h"
#include "dicomobjects/dicom_value.h"

namespace quillon {

// The VR to read an element by: of OX, which says bytes or words, words when the pixels take more
// than 8 bits each (bitsAllocated 0: not known).
DcVr ReadableVr(const DcElem& element, std::uint16_t bitsAllocated);

// vr: how to take the value, which is the element's own unless that leaves a choice (OX). An
// element without a value gives monostate. False when a value cannot be had: a type that the
// element does not deliver, or bytes left in a file that cannot be read. Of an array the first
// maxEntries are read, unless it is one of bulk bytes.
[[nodiscard]] bool ReadElementValue(
    DcElem& element, DcVr vr, bool asArray, DicomValue& value,
    std::size_t maxEntries = std::numeric_limits<std::size_t>::max());

// All bytes of a bulk value. False when they cannot be had from their file.
[[nodiscard]] bool ReadBulkBytes(const DcElem& element, std::vector<std::uint8_t>& bytes);

}  // namespace quillon
