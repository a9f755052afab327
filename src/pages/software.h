// What pages say they were made by.
#pragma once

#include "foundation/text.h"

namespace quillon {

inline Text SoftwareName() { return WidenText("Quillon Media " QUILLON_VERSION, CP_ACP); }

}  // namespace quillon
