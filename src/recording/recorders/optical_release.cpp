#include "recorders/optical_library.h"

namespace quillon::platform {

const char* opticalRelease() { return QUILLON_RELEASE; }

}  // namespace quillon::platform
