#include "recorders/optical_library.h"

namespace quillon::platform {

const char* opticalRelease() { return QUILLON_VERSION " " QUILLON_BORDER; }

}  // namespace quillon::platform
