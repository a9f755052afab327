// The drives of the machine as recorders.
#pragma once

#include <string_view>

#include "recorders/catalogue.h"

namespace quillon::platform {

// Those of the value Drives, or all that the system has; only the one of an address, where that is
// not empty. A drive that cannot be reached, because its library is missing, is there all the same:
// whatever it is asked, it answers with a sentence about that.
RecorderList listDrives(std::string_view only);

}  // namespace quillon::platform
