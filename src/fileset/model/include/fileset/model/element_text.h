// Element values as the model keeps them: as text of at most 1,024 characters.
#pragma once

#include "charset/character_set.h"
#include "dicom/elem_list.h"
#include "foundation/text.h"

namespace quillon {

inline constexpr std::size_t kMaxValueChars = 1024;

// out receives the first value without surrounding white space, cut to 1,024 characters (code
// kDcBufferTooShort then). An element that is absent (kDcNotInList) or has no value (kDcNoValue)
// gives an empty text. Without a character set the bytes are in the platform's 8-bit code page.
[[nodiscard]] DcCode ReadElementText(const DcElemList& dataSet, DcTag tag, Text& out,
                                     const CharacterSet* characterSet = nullptr);
// The same where absent, empty and cut texts will do. False, and out unchanged, when the element
// cannot be read.
[[nodiscard]] bool TakeElementText(const DcElemList& dataSet, DcTag tag, Text& out,
                                   const CharacterSet* characterSet = nullptr);

}  // namespace quillon
