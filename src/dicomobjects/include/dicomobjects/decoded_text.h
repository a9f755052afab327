// The text of data elements by the character set that their data set declares.
#pragma once

#include <string>

#include "charset/character_set.h"
#include "dicom/elem.h"
#include "dicom/elem_list.h"
#include "foundation/text.h"

namespace quillon {

// The set that the data set itself declares in Specific Character Set (0008,0005).
CharacterSet CharacterSetOf(const DcElemList& dataSet);

// All text values of an element as bytes in the file's own form, a backslash between each two (UT:
// its bytes). Empty for others, and for bytes left in a file that cannot be read.
std::string ValueBytes(const DcElem& element);

// The element's values as text in that set, joined by backslashes; of VRs that the character set
// does not concern in the ANSI code page. Empty for an element without text.
Text DecodedText(const DcElem& element, const CharacterSet& set);

// False for text that says the same in every character set, and for elements that none concerns.
[[nodiscard]] bool NeedsCharacterSet(const DcElem& element);

}  // namespace quillon
