// The header of one encoded element: tag, VR (explicit forms) and value length.
#pragma once

#include <cstddef>
#include <cstdint>

#include "dicom/element_form.h"
#include "dicom/tag_set.h"
#include "dicom/types.h"

namespace quillon {

// How a stretch of elements is encoded; handed down the recursion.
inline constexpr unsigned kParseExplicit = 4;
inline constexpr unsigned kParseBig = 16;
inline constexpr unsigned kParseImplicitLittleForm = 10;
inline constexpr unsigned kParseExplicitLittleForm = 12;
inline constexpr unsigned kParseExplicitBigForm = 20;
// Added for a value of undefined length: it ends at its delimitation item, not with the bytes.
inline constexpr unsigned kParseOpenEnd = 32;

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

// Reads the header at `bytes`. False when fewer bytes are available than it takes.
[[nodiscard]] bool utilGetElemInfo(const std::uint8_t* bytes, std::size_t available, unsigned flags,
                                   ElemInfo& info);

// Steps over elements that are not wanted and whose headers leave nothing to look up: explicit
// little endian with the short header, in ascending order, whole within `length`, not Pixel Data,
// and of no group that dictates a form. Nearly every element of a file is one. Answers where the
// first other element (or the rest of the bytes) stands. wanted may be null: none is. lastTag: the
// tag in front of `at`, and on return of the last element that was stepped over.
std::size_t passPlainElements(const std::uint8_t* bytes, std::size_t at, std::size_t length,
                              const DcTagSet* wanted, DcTag& lastTag);

// An item or delimitation tag stands in the byte order of the form, also where groups dictate one.
inline DcTag loadItemTag(const std::uint8_t* bytes, unsigned flags) {
  return loadTag(bytes, (flags & kParseBig) != 0);
}
inline std::uint32_t loadItemLength(const std::uint8_t* bytes, unsigned flags) {
  return load32(bytes + 4, (flags & kParseBig) != 0);
}

}  // namespace quillon
