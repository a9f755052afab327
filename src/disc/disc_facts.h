// Facts that the classes over the disc-mastering service share.
#pragma once

#include <cstdint>

#include "foundation/text.h"

namespace quillon {

inline constexpr std::uint64_t kSectorBytes = 2048;

// The name under which drives are locked.
inline constexpr const OLECHAR* kClientName = OLESTR("Quillon");

}  // namespace quillon
