// Conversions of the text of a value into what it says, trimming and byte swapping. Every failure
// logs one line; `tag` stands in it. A view without data counts as a null argument
// (kDcHelperNullArgument); text that does not have the form of its VR gives kDcNotConvertible.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "dicom/types.h"

namespace quillon {

// Number and unit letter (D, W, M, Y) of an AS value; group and element of an AT value.
struct DcElemValueAS {
  int number = 0;
  char unit = 0;
};
struct DcElemValueAT {
  std::uint16_t group = 0;
  std::uint16_t element = 0;
};

struct DcElemValueDA {
  int year = 0;
  int month = 0;
  int day = 0;
  // YYYYMMDD as a number.
  [[nodiscard]] std::uint32_t number() const {
    return static_cast<std::uint32_t>(year * 10'000 + month * 100 + day);
  }
};

struct DcElemValueTM {
  int hour = 0;
  int minute = 0;
  double second = 0;  // with its fraction
};

struct DcElemValueDT {
  DcElemValueDA date;
  DcElemValueTM time;
  char offsetSign = 0;  // '+', '-', or 0 without an offset
  DcElemValueTM offset;
};

// Views into the converted text: family, given, middle, prefix, suffix. Text with component groups
// ("=") stands whole in the first.
struct DcElemValuePN {
  static constexpr std::size_t kComponents = 5;
  static constexpr std::size_t kMaxComponentChars = 64;
  std::array<std::string_view, kComponents> components;
};

// Three digits and a unit letter: D, W, M or Y.
DcCode utilStrgToValue(DcTag tag, std::string_view text, DcElemValueAS* value);
// "(gggg,eeee)" in hexadecimal.
DcCode utilStrgToValue(DcTag tag, std::string_view text, DcElemValueAT* value);
// YYYYMMDD or YYYY.MM.DD.
DcCode utilStrgToValue(DcTag tag, std::string_view text, DcElemValueDA* value);
// HH, HHMM, HHMMSS, HH:MM or HH:MM:SS, each with an optional fraction.
DcCode utilStrgToValue(DcTag tag, std::string_view text, DcElemValueTM* value);
// A date, a time and an offset from UTC, the latter two optional. kDcNoValue for an empty value.
DcCode utilStrgToValue(DcTag tag, std::string_view text, DcElemValueDT* value);
// Never refused for its form.
DcCode utilStrgToValue(DcTag tag, std::string_view text, DcElemValuePN* value);

// The date with its range checks.
DcCode utilStrgToYMD(DcTag tag, std::string_view text, DcElemValueDA* value);
// The fields of a time, which may still be out of range.
DcCode utilStrgToHMS(DcTag tag, std::string_view text, DcElemValueTM* value);

// White space is any byte below 14, and the space. Modes can be combined.
inline constexpr unsigned kTrimLeading = 1;
inline constexpr unsigned kTrimTrailing = 2;
inline constexpr unsigned kTrimEverywhere = 4;
DcCode utilStrgTrim(std::string* text, unsigned mode);

// Swaps the bytes of each 2-, 4- or 8-byte unit in place; a rest shorter than a unit stays. Null:
// kDcHelperNullArgument.
DcCode utilSwab(void* buffer, std::size_t lengthBytes, DcSizeClass unit);

}  // namespace quillon
