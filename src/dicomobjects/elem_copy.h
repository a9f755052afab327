// Deep copies of data elements.
#pragma once

#include <memory>

#include "dicom/elem.h"

namespace quillon {

// Tag, VR and every value; a sequence with all its items. Null when a value cannot be had.
std::unique_ptr<DcElem> CopyElement(DcElem& element);

}  // namespace quillon
