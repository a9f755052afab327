// How elements, items and their tags stand in encoded bytes: what every reader and every writer of
// them shares.
//
//   implicit          tag 4, length 4
//   explicit, short   tag 4, VR 2, length 2
//   explicit, long    tag 4, VR 2, reserved 2, length 4
//   item, delimiter   tag 4, length 4 in every form
#pragma once

#include <cstddef>
#include <cstdint>

#include "dicom/byte_order.h"
#include "dicom/types.h"

namespace quillon {

inline constexpr std::size_t kShortHeaderBytes = 8;
inline constexpr std::size_t kLongHeaderBytes = 12;
// Item header, delimitation item: tag and 4-byte length.
inline constexpr std::uint32_t kItemHeaderBytes = 8;
inline constexpr std::uint32_t kDelimiterBytes = 8;

inline DcTag loadTag(const std::uint8_t* bytes, bool bigEndian) {
  return dcTag(load16(bytes, bigEndian), load16(bytes + 2, bigEndian));
}
inline void storeTag(std::uint8_t* to, DcTag tag, bool bigEndian) {
  store16(to, dcGroup(tag), bigEndian);
  store16(to + 2, dcElement(tag), bigEndian);
}

[[nodiscard]] bool isTransferSyntaxUid(DcUid uid);
// The same for an argument: kDcOk, or `refusal` after the dictionary's log line.
DcCode checkTransferSyntax(DcUid uid, DcCode refusal = kDcNotTransferSyntax);
// Some groups have one encoding in every data set.
constexpr DcUid syntaxOfGroup(std::uint16_t group, DcUid transferSyntax) {
  if (group == 0x0000) return DcUid::ImplicitLittleEndian;
  if (group == 0x0002 || group == 0x0004) return DcUid::ExplicitLittleEndian;
  return transferSyntax;
}
// The byte order in which a data set of this syntax is encoded.
[[nodiscard]] constexpr bool isBigEndian(DcUid transferSyntax) {
  return transferSyntax == DcUid::ExplicitBigEndian;
}
// The three syntaxes in which pixel data is not encapsulated.
[[nodiscard]] constexpr bool isUncompressed(DcUid transferSyntax) {
  return transferSyntax == DcUid::ImplicitLittleEndian ||
         transferSyntax == DcUid::ExplicitLittleEndian ||
         transferSyntax == DcUid::ExplicitBigEndian;
}

}  // namespace quillon
