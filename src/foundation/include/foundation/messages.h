// Names of the numbered messages. Numbers and texts stand in resources/messages.inc, nowhere else.
#pragma once

#include "platform/win32.h"

namespace quillon {

enum MessageId : UINT {
#define QUILLON_MESSAGE(name, number, text) name = (number),
#include "messages.inc"
#undef QUILLON_MESSAGE
};

}  // namespace quillon
