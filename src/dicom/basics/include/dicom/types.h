// The small integers that the whole toolkit passes around: tags, value representations, UID ids
// and result codes.
#pragma once

#include <cstdint>

namespace quillon {

// Group in the high half, element in the low half.
using DcTag = std::uint32_t;

constexpr DcTag dcTag(std::uint16_t group, std::uint16_t element) {
  return (static_cast<DcTag>(group) << 16) | element;
}
constexpr std::uint16_t dcGroup(DcTag tag) { return static_cast<std::uint16_t>(tag >> 16); }
constexpr std::uint16_t dcElement(DcTag tag) { return static_cast<std::uint16_t>(tag & 0xFFFF); }

// Value representations. OX is "OB or OW", XS "US or SS", XL a 32-bit integer; SI marks item and
// delimitation tags, RT a retired element, IM "look the VR up in the tag dictionary when it is
// needed", EX no valid VR. Xx (35) has no dictionary row and is encoded as UN. Values outside the
// list can occur in arguments and are refused where they do.
enum class DcVr : std::uint32_t {
  None = 0,
  AE,
  AS,
  AT,
  CS,
  DA,
  DS,
  DT,
  FL,
  FD,
  IS,
  LO,
  LT,
  OB,
  OF,
  OW,
  PN,
  SH,
  SL,
  SQ,
  SS,
  ST,
  TM,
  UI,
  UL,
  UN,
  US,
  UT,
  OX,
  XL,
  XS,
  RT,
  IM,
  EX,
  SI,
  Xx
};

// Identifies a row of the UID dictionary. The named ones are those that the code itself needs.
enum class DcUid : std::uint32_t {
  None = 0,
  Verification = 1,
  MediaStorageDirectory = 2,
  ImplicitLittleEndian = 172,
  ExplicitLittleEndian = 173,
  DeflatedExplicitLittleEndian = 174,
  ExplicitBigEndian = 175,
};

// What a UID names. SopClassAdded is what a SOP class registered at run time is recorded as.
enum class DcUidKind : std::uint32_t {
  Other = 0,
  SopClass = 1,
  TransferSyntax = 2,
  SopClassAdded = 4
};

// Unit in which a value is stored and byte-swapped.
enum class DcSizeClass : std::uint32_t {
  Bytes = 0,
  Words = 1,
  Integers = 2,
  Floats = 3,
  Doubles = 4,
  NoScalar = 5
};

// Value of a Command Field (0000,0100).
enum class DcCommandField : std::uint16_t {};

// Every toolkit operation that can fail answers with one of these; 0 is success. The same number
// can mean different things in different areas: the area is in the high byte.
// None is dropped unseen.
enum [[nodiscard]] DcCode : std::uint32_t{};

inline constexpr DcCode kDcOk{0};
// Dictionary.
inline constexpr DcCode kDcUidKnown{0x1401};
inline constexpr DcCode kDcNotFound{0x1402};
inline constexpr DcCode kDcDictNullArgument{0x1403};
inline constexpr DcCode kDcUidTableFull{0x1404};
inline constexpr DcCode kDcDictInvalidArgument{0x1408};
// Elements, values, parsing and encoding of data sets.
inline constexpr DcCode kDcNotAccepted{0x1602};  // type refused; order or length error; too long
inline constexpr DcCode kDcNotReadable{0x1604};  // VR cannot be read as this type; invalid VR
inline constexpr DcCode kDcNotTransferSyntax{0x1605};
inline constexpr DcCode kDcNullArgument{0x1606};
inline constexpr DcCode kDcNoValue{0x160A};
inline constexpr DcCode kDcTooLong{0x160B};
inline constexpr DcCode kDcIllegalCharacter{0x160C};
inline constexpr DcCode kDcBufferTooShort{0x160D};
inline constexpr DcCode kDcNoMoreValues{0x160E};
inline constexpr DcCode kDcIndexOutOfRange{0x1624};
inline constexpr DcCode kDcNotSequence{0x1625};
inline constexpr DcCode kDcHookRefused{0x1626};
inline constexpr DcCode kDcNoMemory{0x1627};
inline constexpr DcCode kDcTooDeep{0x1628};  // nesting beyond kMaxNesting
inline constexpr DcCode kDcNotInList{0x1802};
inline constexpr DcCode kDcItemNullBuffer{0x2F01};
// String conversion and walking helpers.
inline constexpr DcCode kDcNotConvertible{0x4402};  // also: item tag expected and not found
inline constexpr DcCode kDcHelperNullArgument{0x4405};
inline constexpr DcCode kDcFieldReadError{0x4408};
inline constexpr DcCode kDcItemLengthUnknown{0x440A};
// Files and DICOMDIR.
inline constexpr DcCode kDcFileIdTooLong{0x5801};
inline constexpr DcCode kDcNotDicom{0x5802};  // no "DICM" / empty meta group / no root path
inline constexpr DcCode kDcInvalidFileId{0x5803};
inline constexpr DcCode kDcReadFailed{0x5804};  // meta information unreadable / write failed
inline constexpr DcCode kDcOpenFailed{0x5805};
inline constexpr DcCode kDcFileTooLarge{0x5807};
inline constexpr DcCode kDcStatFailed{0x5808};
inline constexpr DcCode kDcHierarchyError{0x580A};
inline constexpr DcCode kDcNoRecords{0x580C};
inline constexpr DcCode kDcFileNullArgument{0x580D};
inline constexpr DcCode kDcInvalidMrdrLink{0x580E};

// Sequences nested deeper than this are refused, so that hostile input cannot exhaust the stack.
inline constexpr int kMaxNesting = 256;
// Files read in one piece may not be larger (512 MiB).
inline constexpr std::uint64_t kMaxFileBytes = 536'870'912;
inline constexpr std::uint32_t kUndefinedLength = 0xFFFFFFFF;

}  // namespace quillon
