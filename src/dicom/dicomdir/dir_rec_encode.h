// The fixed places in a directory record as it is written (explicit VR, little endian):
//   item tag (FFFE,E000) and length             8 bytes
//   (0004,1400) offset of the next record       UL  8-byte header + 4   value at item + 16
//   (0004,1410) record in-use flag              US  8-byte header + 2
//   (0004,1420) offset of the lower level       UL  8-byte header + 4   value at item + 38
// then type, reference and keys, of any length. Offsets count from the start of the file to the
// item tag.
#pragma once

#include <cstddef>

namespace quillon {

inline constexpr std::size_t kNextOffsetValueAt = 16;
inline constexpr std::size_t kLowerOffsetValueAt = 38;

}  // namespace quillon
