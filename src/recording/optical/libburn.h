// libburn's header, which needs off_t of <sys/types.h> and puts its names into a namespace.
#pragma once

#include <sys/types.h>

#include <libburn/libburn.h>

namespace quillon::platform {

using namespace burn;  // its names have a prefix of their own

}  // namespace quillon::platform
