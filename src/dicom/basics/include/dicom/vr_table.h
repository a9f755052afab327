// The value representations: everything that a rule of the toolkit needs to know of one.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "dicom/types.h"

namespace quillon {

// What one stored value is.
enum class DcStorage : std::uint8_t {
  None,  // no value array: sequences, items, invalid VRs
  Text,  // std::string
  Int16,
  UInt16,
  Int32,
  UInt32,  // also AT, group in the high half
  Float,
  Double,
  Segments,  // DcElemValueBuf
};

struct VrRow {
  DcVr vr;
  char code[3];    // two characters; empty: no such row in the dictionary
  bool pseudo;     // never stands in a file: its code is not answered by getVr
  bool hasLimits;  // size class and maximum length are defined
  DcSizeClass sizeClass;
  std::uint32_t maxBytes;  // of one value; 0: no limit
  DcStorage storage;
};

// Indexed by the VR itself. XX has no code of its own.
// clang-format off
inline constexpr std::array<VrRow, 36> kVrTable{{
    //  vr         code  pseudo limits size class              max    storage
    {DcVr::None, "",   true,  false, DcSizeClass::NoScalar, 0,     DcStorage::None},
    {DcVr::AE,   "AE", false, true,  DcSizeClass::Bytes,    16,    DcStorage::Text},
    {DcVr::AS,   "AS", false, true,  DcSizeClass::Bytes,    4,     DcStorage::Text},
    {DcVr::AT,   "AT", false, true,  DcSizeClass::Integers, 4,     DcStorage::UInt32},
    {DcVr::CS,   "CS", false, true,  DcSizeClass::Bytes,    16,    DcStorage::Text},
    {DcVr::DA,   "DA", false, true,  DcSizeClass::Bytes,    22,    DcStorage::Text},
    {DcVr::DS,   "DS", false, true,  DcSizeClass::Bytes,    16,    DcStorage::Text},
    {DcVr::DT,   "DT", false, true,  DcSizeClass::Bytes,    26,    DcStorage::Text},
    {DcVr::FL,   "FL", false, true,  DcSizeClass::Floats,   4,     DcStorage::Float},
    {DcVr::FD,   "FD", false, true,  DcSizeClass::Doubles,  8,     DcStorage::Double},
    {DcVr::IS,   "IS", false, true,  DcSizeClass::Bytes,    12,    DcStorage::Text},
    {DcVr::LO,   "LO", false, true,  DcSizeClass::Bytes,    64,    DcStorage::Text},
    {DcVr::LT,   "LT", false, true,  DcSizeClass::Bytes,    10240, DcStorage::Text},
    {DcVr::OB,   "OB", false, true,  DcSizeClass::Bytes,    0,     DcStorage::Segments},
    {DcVr::OF,   "OF", false, true,  DcSizeClass::Floats,   0,     DcStorage::Segments},
    {DcVr::OW,   "OW", false, true,  DcSizeClass::Words,    0,     DcStorage::Segments},
    {DcVr::PN,   "PN", false, true,  DcSizeClass::Bytes,    324,   DcStorage::Text},
    {DcVr::SH,   "SH", false, true,  DcSizeClass::Bytes,    16,    DcStorage::Text},
    {DcVr::SL,   "SL", false, true,  DcSizeClass::Integers, 4,     DcStorage::Int32},
    {DcVr::SQ,   "SQ", false, true,  DcSizeClass::NoScalar, 0,     DcStorage::None},
    {DcVr::SS,   "SS", false, true,  DcSizeClass::Words,    2,     DcStorage::Int16},
    {DcVr::ST,   "ST", false, true,  DcSizeClass::Bytes,    1024,  DcStorage::Text},
    {DcVr::TM,   "TM", false, true,  DcSizeClass::Bytes,    34,    DcStorage::Text},
    {DcVr::UI,   "UI", false, true,  DcSizeClass::Bytes,    128,   DcStorage::Text},
    {DcVr::UL,   "UL", false, true,  DcSizeClass::Integers, 4,     DcStorage::UInt32},
    {DcVr::UN,   "UN", false, true,  DcSizeClass::Bytes,    0,     DcStorage::Segments},
    {DcVr::US,   "US", false, true,  DcSizeClass::Words,    2,     DcStorage::UInt16},
    {DcVr::UT,   "UT", false, true,  DcSizeClass::Bytes,    0,     DcStorage::Segments},
    {DcVr::OX,   "OX", true,  true,  DcSizeClass::Words,    0,     DcStorage::Segments},
    {DcVr::XL,   "XL", true,  true,  DcSizeClass::Integers, 4,     DcStorage::Int32},
    {DcVr::XS,   "XS", true,  true,  DcSizeClass::Words,    2,     DcStorage::Int16},
    {DcVr::RT,   "RT", true,  true,  DcSizeClass::NoScalar, 0,     DcStorage::None},
    {DcVr::IM,   "IM", true,  false, DcSizeClass::NoScalar, 0,     DcStorage::None},
    {DcVr::EX,   "EX", true,  false, DcSizeClass::NoScalar, 0,     DcStorage::None},
    {DcVr::SI,   "SI", true,  true,  DcSizeClass::NoScalar, 0,     DcStorage::None},
    {DcVr::Xx,   "",   true,  true,  DcSizeClass::Bytes,    0,     DcStorage::Segments},
}};
// clang-format on

constexpr bool vrTableIsIndexedByVr() {
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

// Two characters of a VR as they are written: the pseudo VRs as what stands for them (OX as OB,
// XL as UL, XS as US, 35 as UN); empty for a VR that cannot be written.
constexpr std::string_view vrCodeAsWritten(DcVr vr) {
  switch (vr) {
    case DcVr::OX:
      return "OB";
    case DcVr::XL:
      return "UL";
    case DcVr::XS:
      return "US";
    case DcVr::Xx:
      return "UN";
    default:
      return vrRow(vr).pseudo ? std::string_view() : std::string_view(vrRow(vr).code);
  }
}
// VRs whose value is raw segments.
constexpr bool isBulkVr(DcVr vr) { return vrStorage(vr) == DcStorage::Segments; }
// VRs whose explicit form has the 4-byte length behind two reserved bytes.
constexpr bool hasLongHeader(DcVr vr) { return isBulkVr(vr) || vr == DcVr::SQ; }

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

constexpr bool isVrLetter(unsigned char c) { return c >= 'A' && c <= 'Z'; }

// The VR, a pseudo VR too, with these two characters; None when there is none.
constexpr DcVr vrByCode(unsigned char first, unsigned char second) {
  if (!isVrLetter(first) || !isVrLetter(second)) return DcVr::None;
  return kVrByCode[static_cast<std::size_t>(first - 'A') * kVrCodeLetters +
                   static_cast<std::size_t>(second - 'A')];
}

}  // namespace quillon
