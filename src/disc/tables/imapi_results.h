// Which message explains a result of the current disc-mastering service.
#pragma once

#include <optional>

#include "foundation/messages.h"

namespace quillon {

// Nothing for a result that only the platform explains.
std::optional<UINT> MessageOfImapiResult(HRESULT hr);

}  // namespace quillon
