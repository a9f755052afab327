// Text as it stands between the tags of an XML document and in its attributes.
#pragma once

#include <cstddef>

#include "foundation/text.h"

namespace quillon {

// Replaces & > < " ' by their entities and @ by "&#64;"; carriage return, line feed, form feed and
// escape (0x1B) by a space each. Answers the number of replacements.
//
// What XML 1.0 cannot carry in any form would make the whole document unreadable, so it is replaced
// too: a control character by its picture (U+2400 and the character: NUL becomes U+2400), half of a
// surrogate pair, U+FFFE and U+FFFF by the replacement character U+FFFD.
std::size_t EscapeXmlText(Text& text);

}  // namespace quillon
