// The header of one encoded element: tag, VR (explicit forms) and value length.
//
//   implicit          tag 4, length 4
//   explicit, short   tag 4, VR 2, length 2
//   explicit, long    tag 4, VR 2, reserved 2, length 4
//   item, delimiter   tag 4, length 4 in every form
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "byte_order.h"
#include "dicom/types.h"
#include "tables/vr_table.h"

namespace quillon {

// How a stretch of elements is encoded; handed down the recursion.
inline constexpr unsigned kParseExplicit = 4;
inline constexpr unsigned kParseBig = 16;
inline constexpr unsigned kParseImplicitLittleForm = 10;
inline constexpr unsigned kParseExplicitLittleForm = 12;
inline constexpr unsigned kParseExplicitBigForm = 20;
// Added for a value of undefined length: it ends at its delimitation item, not with the bytes.
inline constexpr unsigned kParseOpenEnd = 32;

inline constexpr DcTag kItemTag = 0xFFFEE000;
inline constexpr DcTag kItemDelimitation = 0xFFFEE00D;
inline constexpr DcTag kSequenceDelimitation = 0xFFFEE0DD;
inline constexpr DcTag kPixelDataTag = 0x7FE00010;
inline constexpr DcTag kIconImageSequence = 0x00880200;

inline constexpr std::size_t kShortHeaderBytes = 8;
inline constexpr std::size_t kLongHeaderBytes = 12;

struct ElemInfo {
  DcTag tag = 0;
  DcVr vr = DcVr::None;           // None in the implicit form
  std::uint32_t valueLength = 0;  // kUndefinedLength when the value ends at a delimitation item
  std::size_t headerBytes = 0;
  unsigned flags = 0;               // the form of this element, which its group can dictate
  bool isVrFromDictionary = false;  // the encoded VR is none that exists
};

// The form of a data set; every transfer syntax but the two others is explicit little endian.
unsigned parseFormOf(DcUid transferSyntax);
bool isTransferSyntaxUid(DcUid uid);
// The same for an argument: kDcOk, or `refusal` after the dictionary's log line.
DcCode checkTransferSyntax(DcUid uid, DcCode refusal = kDcNotTransferSyntax);
// The byte order in which a data set of this syntax is encoded.
inline bool isBigEndian(DcUid transferSyntax) { return transferSyntax == DcUid::ExplicitBigEndian; }
// The three syntaxes in which pixel data is not encapsulated.
inline bool isUncompressed(DcUid transferSyntax) {
  return transferSyntax == DcUid::ImplicitLittleEndian ||
         transferSyntax == DcUid::ExplicitLittleEndian ||
         transferSyntax == DcUid::ExplicitBigEndian;
}

// Reads the header at `bytes`. False when fewer bytes are available than it takes.
bool utilGetElemInfo(const std::uint8_t* bytes, std::size_t available, unsigned flags,
                     ElemInfo& info);

inline DcTag loadTag(const std::uint8_t* bytes, bool bigEndian) {
  return dcTag(load16(bytes, bigEndian), load16(bytes + 2, bigEndian));
}
// An item or delimitation tag stands in the byte order of the form, also where groups dictate one.
inline DcTag loadItemTag(const std::uint8_t* bytes, unsigned flags) {
  return loadTag(bytes, (flags & kParseBig) != 0);
}
inline std::uint32_t loadItemLength(const std::uint8_t* bytes, unsigned flags) {
  return load32(bytes + 4, (flags & kParseBig) != 0);
}

// Two characters of a VR as they are written: the pseudo VRs as what stands for them (OX as OB,
// XL as UL, XS as US, 35 as UN); empty for a VR that cannot be written.
std::string_view vrCodeAsWritten(DcVr vr);
// VRs whose value is raw segments.
constexpr bool isBulkVr(DcVr vr) { return vrRow(vr).storage == DcStorage::Segments; }
// VRs whose explicit form has the 4-byte length behind two reserved bytes.
constexpr bool hasLongHeader(DcVr vr) { return isBulkVr(vr) || vr == DcVr::SQ; }

}  // namespace quillon
