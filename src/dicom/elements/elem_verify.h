// The rules of text; DcElem's verifyValue functions are the public face of some.
#pragma once

#include <string_view>

#include "dicom/types.h"
#include "dicom/vr_table.h"

namespace quillon {

// What a conversion answers for AS, AT, DA, DT and TM. Of the others kDcOk when checking is off,
// else kDcNoValue, kDcTooLong or kDcIllegalCharacter.
DcCode dcVerifyText(DcTag tag, DcTextRule which, std::string_view text);

}  // namespace quillon
