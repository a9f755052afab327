// What the toolkit's tests share: a fixture that reads the log, and data sets as text.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "dicom/elem_list.h"
#include "dicom/elem_sq.h"
#include "support/dicom_bytes.h"
#include "support/temp_dir.h"

namespace quillon::test {

inline constexpr DcTag kPrivate = 0x00091010;  // any VR can be given to it, and no VM is known
inline constexpr DcTag kPixelData = 0x7FE00010;
inline constexpr const char* kCtImage = "1.2.840.10008.5.1.4.1.1.2";

inline constexpr DcUid kImplicit = DcUid::ImplicitLittleEndian;
inline constexpr DcUid kExplicit = DcUid::ExplicitLittleEndian;
inline constexpr DcUid kBig = DcUid::ExplicitBigEndian;
inline constexpr DcUid kJpeg{176};
inline constexpr const char* kJpegUid = "1.2.840.10008.1.2.4.50";

struct NamedSyntax {
  Syntax syntax;
  DcUid id;
  std::string_view uid;
  const char* name;
};
inline constexpr NamedSyntax kSyntaxes[] = {
    {Syntax::ImplicitLittle, kImplicit, kImplicitLittleUid, "implicit little endian"},
    {Syntax::ExplicitLittle, kExplicit, kExplicitLittleUid, "explicit little endian"},
    {Syntax::ExplicitBig, kBig, kExplicitBigUid, "explicit big endian"}};

// Collects what the toolkit logs, and turns the checking of values on again at its end.
class ToolkitTest : public testing::Test {
 protected:
  ToolkitTest();
  ~ToolkitTest() override;

  // The messages so far, one a line, without time stamp, function and the name of the file that is
  // read or written; forgets them.
  std::string logged();
  // The function of the last line that logged() returned, and its file; empty when it names none.
  [[nodiscard]] const std::string& lastFunction() const { return lastFunction_; }
  [[nodiscard]] const std::string& lastFile() const { return lastFile_; }

  TempDir dir_;

 private:
  TempDir logDir_;
  std::string lastFunction_;
  std::string lastFile_;
};

// Keeps the toolkit from logging while it lives: damaged input by the thousand.
class QuietLog {
 public:
  QuietLog() { enable(false); }
  ~QuietLog() { enable(true); }
  QuietLog(const QuietLog&) = delete;
  QuietLog& operator=(const QuietLog&) = delete;

 private:
  static void enable(bool on);
};

// Bytes from two hexadecimal digits each; spaces are passed over.
Bytes hexBytes(std::string_view digits);
Bytes firstOf(const Bytes& bytes, std::size_t count);

// Every value as getValue answers it in text, with "/" between them; "-" when there is none.
std::string valuesOf(DcElem& element);

// One line per element: "00100010 PN A^B/C", nested ones behind ">". Binary numbers are decimal,
// tags (gggg,eeee). Raw segments are hexadecimal, of more than 32 bytes a checksum, with OW and OF
// in little endian order whatever order they were read in.
std::string describe(const DcElemList& list);

DcCode parseInto(DcElemList& list, const Bytes& bytes, DcUid transferSyntax);
// What parsing gives, as text, when its result is the expected one.
std::string parsed(const Bytes& bytes, DcUid transferSyntax, DcCode expected = kDcOk);

// Encodes into a buffer of the estimated size, which the sanitizer guards.
template <class Encodable>
Bytes framed(Encodable& encodable, DcUid transferSyntax, DcCode expected = kDcOk) {
  Bytes bytes(static_cast<std::size_t>(encodable.encodedLengthEstimate() + 1));
  std::uint32_t length = 0;
  EXPECT_EQ(encodable.frame(bytes.data(), length, transferSyntax), expected);
  EXPECT_LE(length, encodable.encodedLengthEstimate());
  bytes.resize(length);
  return bytes;
}

// An item with these elements.
template <class... Elements>
std::unique_ptr<DcElemSqItem> itemWith(std::unique_ptr<Elements>... elements) {
  auto item = std::make_unique<DcElemSqItem>();
  (item->add(std::move(elements)), ...);
  return item;
}

// A sequence with these items.
template <class... Items>
std::unique_ptr<DcElemSq> sequenceOf(DcTag tag, std::unique_ptr<Items>... items) {
  auto sequence = std::make_unique<DcElemSq>(tag);
  (sequence->addItem(std::move(items)), ...);
  return sequence;
}

template <class... Arguments>
std::unique_ptr<DcElem> elem(DcTag tag, Arguments... arguments) {
  return std::make_unique<DcElem>(tag, arguments...);
}

}  // namespace quillon::test
