// The elements of a file that the model, the directory records and the label are made of. A file is
// read for them alone, once: whoever wants to know more of an object names the element there.
#pragma once

#include <vector>

#include "dicom/tag_set.h"

namespace quillon {

const DcTagSet& KeptElements();
// The same, for whoever reads files for more.
std::vector<DcTag> KeptTags();

}  // namespace quillon
