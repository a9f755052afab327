// How the 8-bit text of element values becomes wide text, and text becomes a number.
#pragma once

#include <cstdint>
#include <string_view>

#include "foundation/text.h"

namespace quillon {

// An element's bytes in the ANSI code page, of which ASCII is the part that nearly all values keep
// to: those are widened without asking the platform.
Text WidenValue(std::string_view text);

// The decimal number that the text starts with, an optional sign before it: 0 without digits,
// the nearest 32-bit bound when it is too large.
std::int32_t LeadingNumber(TextView text);

}  // namespace quillon
