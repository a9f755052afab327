// The elements of a file that the model, the directory records and the label are made of. A file is
// read for them alone, once: whoever wants to know more of an object names the element there.
#pragma once

#include "dicom/tag_set.h"

namespace quillon {

const DcTagSet& KeptElements();

}  // namespace quillon
