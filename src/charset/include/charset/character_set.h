// What the bytes of a data set's text say, by the character sets that it declares in Specific
// Character Set (0008,0005).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "foundation/text.h"

namespace quillon {

struct GraphicSet;

// How a value is divided, which decides where a character set that was switched to ends.
enum class ValueForm {
  PersonNames,  // PN: values, component groups, components
  Values,       // SH, LO, UC: several values, a backslash between each two
  Paragraphs,   // ST, LT, UT: one value of lines; a backslash is a character
};

// Decoding throws nothing but std::bad_alloc, whatever the bytes are. Escape sequences are obeyed
// whether their sets are declared or not.
class CharacterSet {
 public:
  // Nothing declared: ASCII, and bytes beyond it as the ANSI code page has them (CP_ACP), as the
  // system reads text.
  CharacterSet();
  // declared: the values of Specific Character Set (0008,0005), a backslash between each two. Terms
  // in other spellings ("ISO IR 100", "ISO-2022 ir100") are known as well.
  explicit CharacterSet(std::string_view declared);

  // False when nothing is declared or the first term is none that is known: then as if nothing were
  // declared.
  [[nodiscard]] bool IsKnown() const { return form_ != Form::System; }
  // As declared, without padding; empty when nothing is.
  [[nodiscard]] const std::string& Terms() const { return terms_; }
  // All bytes of an element's value as they stand in the file -> its values as text. A backslash
  // that is part of a character divides nothing. What the set cannot hold becomes U+FFFD, one for
  // each byte or character that cannot be read; nothing is lost. Values are trimmed of the padding
  // that their form has: spaces at both ends (of Paragraphs at the end) and zero bytes behind.
  [[nodiscard]] std::vector<Text> Decode(std::string_view bytes, ValueForm form) const;
  // The same as one text with backslashes between the values.
  [[nodiscard]] Text DecodeJoined(std::string_view bytes, ValueForm form) const;

 private:
  enum class Form {
    System,   // nothing that is known is declared
    Iso2022,  // g0_ and g1_ until an escape sequence switches to another set
    Utf8,
    Gbk,
    Gb18030,
  };

  [[nodiscard]] bool Take(std::string_view firstTerm, bool hasMore);
  // The values are not trimmed; each U+005C divides two, but in Paragraphs.
  [[nodiscard]] Text DecodeWhole(std::string_view bytes, ValueForm form) const;

  std::string terms_;
  Form form_ = Form::System;
  const GraphicSet* g0_;
  const GraphicSet* g1_;  // null: bytes beyond ASCII mean nothing before an escape sequence
};

// Bytes that say the same in every set: ASCII without an escape. (JIS X 0201 has a yen sign and an
// overline for the backslash and the tilde.)
[[nodiscard]] bool IsDefaultRepertoire(std::string_view bytes);

}  // namespace quillon
