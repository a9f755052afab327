// One data element's value in the type that its VR calls for.
#pragma once

#include "dicom/elem.h"
#include "dicomobjects/dicom_value.h"

namespace quillon {

// vr: how to take the value, which is the element's own unless that leaves a choice (OX). An
// element without a value gives monostate. False when a value cannot be had: a type that the
// element does not deliver, or bytes left in a file that cannot be read.
bool ReadElementValue(DcElem& element, DcVr vr, bool asArray, DicomValue& value);

}  // namespace quillon
