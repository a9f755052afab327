// This build has no optical drives: libburn, through which they would be reached, is not in it.
#include "discmastering/catalogue.h"

namespace quillon::platform {

RecorderList listOpticalDrives(std::string_view) { return {}; }

void releaseOpticalDrives() {}

}  // namespace quillon::platform
