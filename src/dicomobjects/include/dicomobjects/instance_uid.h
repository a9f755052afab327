// The two ways in which a SOP Instance UID names an instance.
//
// The maker's systems give each frame that they split out of a multi-frame image a UID of its own:
//   "1.2.840.987654.99." key "." frame index
// Every other UID stands for itself.
#pragma once

#include <cstdint>

#include "foundation/text.h"

namespace quillon {

inline constexpr TextView kMakerUidRoot = OLESTR("1.2.840.987654.99.");

struct InstanceUidParts {
  TextView key;  // within the UID
  std::uint32_t frameIndex = 0;
  bool isMakerForm = false;
};

// False for a UID that has the maker's root but not the form, and for one that is not longer than
// the root, unless those are accepted as their own keys.
[[nodiscard]] bool ParseInstanceUidText(TextView uid, bool acceptShort, InstanceUidParts& parts);

// The key, with "." and the frame index behind it when that is not 0.
Text FrameKeyOf(const InstanceUidParts& parts);

}  // namespace quillon
