// Element values as the model keeps them: as text, in the platform's 8-bit code page, at most 1,024
// characters.
#pragma once

#include "dicom/elem_list.h"
#include "foundation/text.h"

namespace quillon {

inline constexpr std::size_t kMaxValueChars = 1024;

// out receives the first value without surrounding white space, cut to 1,024 characters (code
// kDcBufferTooShort then). An element that is absent (kDcNotInList) or has no value (kDcNoValue)
// gives an empty text.
[[nodiscard]] DcCode ReadElementText(const DcElemList& dataSet, DcTag tag, Text& out);
// The same where absent, empty and cut texts will do. False, and out unchanged, when the element
// cannot be read.
[[nodiscard]] bool TakeElementText(const DcElemList& dataSet, DcTag tag, Text& out);

}  // namespace quillon
