// The value representations: everything that a rule of the toolkit needs to know of one.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <variant>

#include "dicom/types.h"

namespace quillon {

// What one stored value is.
enum class DcStorage : std::uint8_t {
  None,  // no value array: sequences, items, invalid VRs
  String,
  Int16,
  UInt16,
  Int32,
  UInt32,  // also AT, group in the high half
  Float,
  Double,
  Segments,  // DcElemValueBuf
};

// What a value is to those who add or read it as a number; a tag is one of 32 bits only.
enum class DcNumber : std::uint8_t { None, Integer, Real, Tag };

// What text must be to become a value. FX is the rule of text that becomes an FL or FD value.
enum class DcTextRule : std::uint8_t {
  None,  // neither text nor a number becomes a value
  Any,
  AE,
  CS,
  DS,
  FX,
  IS,
  LO,
  SH,
  UI,
  AS,
  AT,
  DA,
  DT,
  TM
};

// How text falls into values at its backslashes.
enum class DcSplit : std::uint8_t {
  Whole,    // one value, however many it holds
  Split,    // at each
  Escapes,  // not between two ESC: text in another character set, whose second bytes may look so
};

// Which characters text is made of: ASCII, or those of the character set that the data set
// declares. How text of the second kind is divided decides where a set that was switched to ends.
enum class DcCharacters : std::uint8_t {
  Ascii,
  Names,       // values of components
  Values,      // several values
  Paragraphs,  // one value
};

struct VrRow {
  DcVr vr;
  char code[3];    // two characters; empty: no such row in the dictionary
  bool hasLimits;  // size class and maximum length are defined
  DcSizeClass sizeClass;
  std::uint32_t maxBytes;       // of one value; 0: no limit
  std::uint32_t estimateBytes;  // of one encoded value; 0: it is measured
  DcStorage storage;
  DcVr writtenAs;  // None: it cannot be written
  DcNumber number;
  DcTextRule textRule;
  DcSplit split;
  DcCharacters characters;
  char pad;  // makes the length of a value even

  // Never stands in a file: its code is not answered by getVr.
  [[nodiscard]] constexpr bool isPseudo() const { return writtenAs != vr || vr == DcVr::None; }
  // The characters for a message.
  [[nodiscard]] constexpr const char* shownCode() const { return isPseudo() ? "" : code; }
};

// Indexed by the VR itself. XX has no code of its own.
inline constexpr std::array<VrRow, 36> kVrTable = [] {
  using V = DcVr;
  using R = DcTextRule;
  using enum DcSizeClass;
  using enum DcSplit;
  using enum DcCharacters;
  constexpr auto NoArray = DcStorage::None;
  constexpr auto String = DcStorage::String;
  constexpr auto Int16 = DcStorage::Int16;
  constexpr auto UInt16 = DcStorage::UInt16;
  constexpr auto Int32 = DcStorage::Int32;
  constexpr auto UInt32 = DcStorage::UInt32;
  constexpr auto Float = DcStorage::Float;
  constexpr auto Double = DcStorage::Double;
  constexpr auto Bulk = DcStorage::Segments;
  constexpr auto NoNumber = DcNumber::None;
  constexpr auto Integer = DcNumber::Integer;
  constexpr auto Real = DcNumber::Real;
  constexpr auto Tag = DcNumber::Tag;
  // clang-format off
  return std::array<VrRow, 36>{{
    //vr       code  limit  unit      max    est. storage  written  number    rule     text     characters  pad
    {V::None, "",   false, NoScalar, 0,     0,   NoArray, V::None, NoNumber, R::None, Whole,   Ascii,      ' '},
    {V::AE,   "AE", true,  Bytes,    16,    0,   String,  V::AE,   NoNumber, R::AE,   Split,   Ascii,      ' '},
    {V::AS,   "AS", true,  Bytes,    4,     4,   String,  V::AS,   NoNumber, R::AS,   Split,   Ascii,      ' '},
    {V::AT,   "AT", true,  Integers, 4,     12,  UInt32,  V::AT,   Tag,      R::AT,   Split,   Ascii,      ' '},
    {V::CS,   "CS", true,  Bytes,    16,    0,   String,  V::CS,   NoNumber, R::CS,   Escapes, Ascii,      ' '},
    {V::DA,   "DA", true,  Bytes,    22,    22,  String,  V::DA,   NoNumber, R::DA,   Split,   Ascii,      ' '},
    {V::DS,   "DS", true,  Bytes,    16,    0,   String,  V::DS,   Real,     R::DS,   Split,   Ascii,      ' '},
    {V::DT,   "DT", true,  Bytes,    26,    26,  String,  V::DT,   NoNumber, R::DT,   Split,   Ascii,      ' '},
    {V::FL,   "FL", true,  Floats,   4,     4,   Float,   V::FL,   Real,     R::FX,   Split,   Ascii,      ' '},
    {V::FD,   "FD", true,  Doubles,  8,     8,   Double,  V::FD,   Real,     R::FX,   Split,   Ascii,      ' '},
    {V::IS,   "IS", true,  Bytes,    12,    0,   String,  V::IS,   Integer,  R::IS,   Split,   Ascii,      ' '},
    {V::LO,   "LO", true,  Bytes,    64,    0,   String,  V::LO,   NoNumber, R::LO,   Escapes, Values,     ' '},
    {V::LT,   "LT", true,  Bytes,    10240, 0,   String,  V::LT,   NoNumber, R::Any,  Whole,   Paragraphs, ' '},
    {V::OB,   "OB", true,  Bytes,    0,     0,   Bulk,    V::OB,   NoNumber, R::None, Whole,   Ascii,      0},
    {V::OF,   "OF", true,  Floats,   0,     0,   Bulk,    V::OF,   NoNumber, R::None, Whole,   Ascii,      0},
    {V::OW,   "OW", true,  Words,    0,     0,   Bulk,    V::OW,   NoNumber, R::None, Whole,   Ascii,      0},
    {V::PN,   "PN", true,  Bytes,    324,   324, String,  V::PN,   NoNumber, R::Any,  Escapes, Names,      ' '},
    {V::SH,   "SH", true,  Bytes,    16,    0,   String,  V::SH,   NoNumber, R::SH,   Escapes, Values,     ' '},
    {V::SL,   "SL", true,  Integers, 4,     4,   Int32,   V::SL,   Integer,  R::IS,   Split,   Ascii,      ' '},
    {V::SQ,   "SQ", true,  NoScalar, 0,     0,   NoArray, V::SQ,   NoNumber, R::None, Whole,   Ascii,      ' '},
    {V::SS,   "SS", true,  Words,    2,     2,   Int16,   V::SS,   Integer,  R::IS,   Split,   Ascii,      ' '},
    {V::ST,   "ST", true,  Bytes,    1024,  0,   String,  V::ST,   NoNumber, R::Any,  Whole,   Paragraphs, ' '},
    {V::TM,   "TM", true,  Bytes,    34,    34,  String,  V::TM,   NoNumber, R::TM,   Split,   Ascii,      ' '},
    {V::UI,   "UI", true,  Bytes,    128,   0,   String,  V::UI,   NoNumber, R::UI,   Split,   Ascii,      0},
    {V::UL,   "UL", true,  Integers, 4,     4,   UInt32,  V::UL,   Integer,  R::IS,   Split,   Ascii,      ' '},
    {V::UN,   "UN", true,  Bytes,    0,     0,   Bulk,    V::UN,   NoNumber, R::None, Whole,   Ascii,      0},
    {V::US,   "US", true,  Words,    2,     2,   UInt16,  V::US,   Integer,  R::IS,   Split,   Ascii,      ' '},
    {V::UT,   "UT", true,  Bytes,    0,     0,   Bulk,    V::UT,   NoNumber, R::None, Whole,   Paragraphs, ' '},
    {V::OX,   "OX", true,  Words,    0,     0,   Bulk,    V::OB,   NoNumber, R::None, Whole,   Ascii,      0},
    {V::XL,   "XL", true,  Integers, 4,     4,   Int32,   V::UL,   Integer,  R::None, Whole,   Ascii,      ' '},
    {V::XS,   "XS", true,  Words,    2,     2,   Int16,   V::US,   Integer,  R::IS,   Split,   Ascii,      ' '},
    {V::RT,   "RT", true,  NoScalar, 0,     0,   NoArray, V::None, NoNumber, R::None, Whole,   Ascii,      ' '},
    {V::IM,   "IM", false, NoScalar, 0,     0,   NoArray, V::None, NoNumber, R::None, Whole,   Ascii,      ' '},
    {V::EX,   "EX", false, NoScalar, 0,     0,   NoArray, V::None, NoNumber, R::None, Whole,   Ascii,      ' '},
    {V::SI,   "SI", true,  NoScalar, 0,     0,   NoArray, V::None, NoNumber, R::None, Whole,   Ascii,      ' '},
    {V::Xx,   "",   true,  Bytes,    0,     0,   Bulk,    V::UN,   NoNumber, R::None, Whole,   Ascii,      0},
  }};
  // clang-format on
}();

[[nodiscard]] constexpr bool vrTableIsIndexedByVr() {
  for (std::size_t i = 0; i < kVrTable.size(); ++i) {
    if (static_cast<std::size_t>(kVrTable[i].vr) != i) return false;
  }
  return true;
}
static_assert(vrTableIsIndexedByVr(), "each row stands at the place of its VR");

// Row of a VR; that of None for a number that is no VR.
constexpr const VrRow& vrRow(DcVr vr) {
  const auto index = static_cast<std::size_t>(vr);
  return kVrTable[index < kVrTable.size() ? index : 0];
}
constexpr DcStorage vrStorage(DcVr vr) { return vrRow(vr).storage; }

// Two characters of a VR as they are written; empty for a VR that cannot be written.
constexpr std::string_view vrCodeAsWritten(DcVr vr) { return vrRow(vrRow(vr).writtenAs).code; }
// VRs whose value is raw segments.
[[nodiscard]] constexpr bool isBulkVr(DcVr vr) { return vrStorage(vr) == DcStorage::Segments; }
// VRs whose explicit form has the 4-byte length behind two reserved bytes.
[[nodiscard]] constexpr bool hasLongHeader(DcVr vr) { return isBulkVr(vr) || vr == DcVr::SQ; }

// Answers visit(T{}) with the type that a storage holds: a number, std::string_view for text,
// std::monostate where there is no value array. The only switch over what elements store.
template <typename Visit>
constexpr auto visitStorage(DcStorage storage, const Visit& visit) {
  switch (storage) {
    case DcStorage::String:
      return visit(std::string_view());
    case DcStorage::Int16:
      return visit(std::int16_t{});
    case DcStorage::UInt16:
      return visit(std::uint16_t{});
    case DcStorage::Int32:
      return visit(std::int32_t{});
    case DcStorage::UInt32:
      return visit(std::uint32_t{});
    case DcStorage::Float:
      return visit(float{});
    case DcStorage::Double:
      return visit(double{});
    case DcStorage::None:
    case DcStorage::Segments:
      break;
  }
  return visit(std::monostate());
}

// VRs by their two characters, from the first to the last letter of each.
inline constexpr std::size_t kVrCodeLetters = 26;
constexpr std::array<DcVr, kVrCodeLetters * kVrCodeLetters> makeVrByCode() {
  std::array<DcVr, kVrCodeLetters * kVrCodeLetters> byCode{};
  for (const VrRow& row : kVrTable) {
    if (row.code[0] == '\0') continue;
    byCode[static_cast<std::size_t>(row.code[0] - 'A') * kVrCodeLetters +
           static_cast<std::size_t>(row.code[1] - 'A')] = row.vr;
  }
  return byCode;
}
inline constexpr auto kVrByCode = makeVrByCode();

[[nodiscard]] constexpr bool isVrLetter(unsigned char c) { return c >= 'A' && c <= 'Z'; }

// The VR, a pseudo VR too, with these two characters; None when there is none.
constexpr DcVr vrByCode(unsigned char first, unsigned char second) {
  if (!isVrLetter(first) || !isVrLetter(second)) return DcVr::None;
  return kVrByCode[static_cast<std::size_t>(first - 'A') * kVrCodeLetters +
                   static_cast<std::size_t>(second - 'A')];
}

}  // namespace quillon
