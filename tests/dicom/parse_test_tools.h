// Element lists as text, so that what was parsed is compared in one piece.
#pragma once

#include <string>
#include <vector>

#include "dicom/elem_list.h"
#include "support/dicom_bytes.h"

namespace quillon::test {

// Keeps the toolkit from logging while it lives: damaged input by the thousand.
class QuietLog {
 public:
  QuietLog();
  ~QuietLog();
  QuietLog(const QuietLog&) = delete;
  QuietLog& operator=(const QuietLog&) = delete;
};

inline constexpr Syntax kSyntaxes[] = {Syntax::ImplicitLittle, Syntax::ExplicitLittle,
                                       Syntax::ExplicitBig};

DcUid uidOf(Syntax syntax);
const char* nameOf(Syntax syntax);

// One line per element: "00100010 PN A^B|C", nested ones behind ">". Binary numbers are decimal,
// tags (gggg,eeee). Raw segments are hexadecimal, of more than 32 bytes a checksum, with OW and OF
// in little endian order whatever order they were read in.
std::vector<std::string> describe(const DcElemList& list);

DcCode parseInto(DcElemList& list, const Bytes& bytes, DcUid transferSyntax);
// Parses with the public entry; code receives the result.
std::vector<std::string> parsed(const Bytes& bytes, DcUid transferSyntax, DcCode& code);

}  // namespace quillon::test
