// The module that this code is part of (the program, or the server's library): its string table
// holds the messages.
#pragma once

#include "platform/win32.h"

namespace quillon {

HINSTANCE OwnModule();

}  // namespace quillon
