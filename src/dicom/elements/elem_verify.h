// The text rules by name; DcElem's verifyValue functions are their public face.
#pragma once

#include <string_view>

#include "dicom/types.h"

namespace quillon {

enum class DcTextRule { AE, CS, DS, FX, IS, LO, SH, UI };

// kDcOk when checking is off; else kDcNoValue, kDcTooLong or kDcIllegalCharacter.
DcCode dcVerifyText(DcTag tag, DcTextRule which, std::string_view text);

}  // namespace quillon
