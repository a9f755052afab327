// Character sets whose characters take one to four bytes, without escape sequences.
#pragma once

#include <string_view>

#include "foundation/text.h"

namespace quillon {

Text DecodeUtf8(std::string_view bytes);
Text DecodeGbk(std::string_view bytes);
Text DecodeGb18030(std::string_view bytes);

}  // namespace quillon
