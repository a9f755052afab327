#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dicom/elem_list.h"
#include "dicom/elem_sq.h"
#include "dir_test_tools.h"
#include "parse_test_tools.h"
#include "support/dicom_bytes.h"

namespace quillon::test {
namespace {

using Lines = std::vector<std::string>;

TEST(ParsingSequences, ItemsOfBothKindsOfLengthInEverySyntax) {
  const Lines expected = {"00081140 SQ", ">item", ">00081150 UI 1.2", ">00081199 SQ",   ">>item",
                          ">item",       ">item", ">00280010 US 3",   "00280010 US 258"};
  for (const Syntax syntax : kSyntaxes) {
    for (int kinds = 0; kinds < 16; ++kinds) {
      SCOPED_TRACE(testing::Message() << nameOf(syntax) << ", kinds of length " << kinds);
      const bool sequence = (kinds & 1) != 0;
      const bool item = (kinds & 2) != 0;
      const bool nested = (kinds & 4) != 0;
      const bool nestedItem = (kinds & 8) != 0;
      const Bytes bytes = DataSetBytes(syntax)
                              .beginSequence(0x00081140, sequence)
                              .beginItem(item)
                              .text(0x00081150, "UI", "1.2")
                              .beginSequence(0x00081199, nested)
                              .beginItem(nestedItem)
                              .endItem()
                              .endSequence()
                              .endItem()
                              .beginItem(nestedItem)
                              .endItem()
                              .beginItem(item)
                              .us(0x00280010, {3})
                              .endItem()
                              .endSequence()
                              .us(0x00280010, {258})
                              .take();
      DcCode code = kDcOk;
      EXPECT_EQ(parsed(bytes, uidOf(syntax), code), expected);
      EXPECT_EQ(code, kDcOk);
    }
  }
}

TEST(ParsingSequences, AnItemKnowsWhereItStood) {
  const Bytes bytes = DataSetBytes()
                          .us(0x00080005, {1})
                          .beginSequence(0x00081140)
                          .beginItem()
                          .us(0x00280010, {3})
                          .endItem()
                          .endSequence()
                          .take();
  DcElemList list;
  ASSERT_EQ(parseInto(list, bytes, DcUid::ExplicitLittleEndian), kDcOk);
  DcElemSq* sequence = nullptr;
  ASSERT_EQ(list.getElem(0x00081140, &sequence), kDcOk);
  EXPECT_EQ(sequence->item(0)->offsetInBuffer, 22U);  // behind 10 bytes of element and the header
  EXPECT_EQ(sequence->item(0)->lengthBytes, 10U);
}

TEST(ParsingSequences, StructuralErrorsEndWithTheirCode) {
  const auto explicitSet = [] { return DataSetBytes(Syntax::ExplicitLittle); };
  const struct {
    const char* what;
    Bytes bytes;
    DcCode code;
    Lines expected;
    Lines messages;
  } cases[] = {
      {"value one byte too long",
       explicitSet().us(0x00280010, {1}).header(0x00280011, "US", 3).append({1, 2}).take(),
       kDcNotAccepted,
       {"00280010 US 1"},
       {"valueLen (0x00000003) exceeds the remaining buffer len (0x00000002) at offset 0xa"}},
      {"the largest length",
       explicitSet().header(0x7FE00010, "OB", 0xFFFFFFFE).append({1, 2}).take(),
       kDcNotAccepted,
       {},
       {"valueLen (0xfffffffe) exceeds the remaining buffer len (0x00000002) at offset 0x0"}},
      {"no item in a sequence",
       explicitSet().beginSequence(0x00081140).us(0x00280010, {1}).endSequence().take(),
       kDcNotConvertible,
       {"00081140 SQ"},
       {"Invalid tag 0x280010, expecting Sequence Item at offset 0xc"}},
      {"no fragment in pixel data",
       explicitSet().header(0x7FE00010, "OB", 0xFFFFFFFF).us(0x00280010, {1}).take(),
       kDcNotConvertible,
       {},
       {"Invalid tag 0x280010, expecting Sequence Item at offset 0xc"}},
      {"item longer than its sequence",
       explicitSet().header(0x00081140, "SQ", 8).header(0xFFFEE000, "", 1).append({0}).take(),
       kDcNotAccepted,
       {"00081140 SQ"},
       {"valueLen (0x00000001) exceeds the remaining buffer len (0x00000000) at offset 0xc"}},
      {"sequence without its end",
       explicitSet().beginSequence(0x00081140, true).take(),
       kDcNotAccepted,
       {"00081140 SQ"},
       {"The data ends at offset 0xc without the delimitation item of an undefined length"}},
      {"pixel data without its end",
       explicitSet().header(0x7FE00010, "OB", 0xFFFFFFFF).header(0xFFFEE000, "", 0).take(),
       kDcNotAccepted,
       {},
       {"The data ends at offset 0x14 without the delimitation item of an undefined length"}},
      {"item outside a sequence",
       explicitSet().header(0xFFFEE000, "", 0).take(),
       kDcNotAccepted,
       {},
       {"Unexpected tag 0xfffee000 at offset 0x0"}},
  };
  LoggedLines log;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DcCode code = kDcOk;
    EXPECT_EQ(parsed(c.bytes, DcUid::ExplicitLittleEndian, code), c.expected);
    EXPECT_EQ(code, c.code);
    EXPECT_EQ(log.take(), c.messages);
  }
}

TEST(ParsingSequences, MissingAndStrayDelimitationItemsLoseNothing) {
  const QuietLog quiet;
  const Lines expected = {"00081140 SQ", ">item",          ">00280010 US 1",
                          ">item",       ">00280010 US 2", "00280011 US 3"};
  for (const Syntax syntax : kSyntaxes) {
    SCOPED_TRACE(nameOf(syntax));
    DcCode code = kDcOk;
    const Bytes missing = DataSetBytes(syntax)
                              .beginSequence(0x00081140, true)
                              .header(0xFFFEE000, "", 0xFFFFFFFF)
                              .us(0x00280010, {1})
                              .header(0xFFFEE000, "", 0xFFFFFFFF)
                              .us(0x00280010, {2})
                              .endSequence()
                              .us(0x00280011, {3})
                              .take();
    EXPECT_EQ(parsed(missing, uidOf(syntax), code), expected);
    EXPECT_EQ(code, kDcOk);
    const Bytes stray = DataSetBytes(syntax)
                            .beginSequence(0x00081140)
                            .beginItem()
                            .us(0x00280010, {1})
                            .header(0xFFFEE0DD, "", 0)
                            .endItem()
                            .beginItem()
                            .us(0x00280010, {2})
                            .header(0xFFFEE00D, "", 0)
                            .endItem()
                            .header(0xFFFEE0DD, "", 0)
                            .endSequence()
                            .header(0xFFFEE00D, "", 0)
                            .us(0x00280011, {3})
                            .header(0xFFFEE0DD, "", 0)
                            .take();
    EXPECT_EQ(parsed(stray, uidOf(syntax), code), expected);
    EXPECT_EQ(code, kDcOk);
  }
}

TEST(ParsingUndefinedLengths, FragmentsStayWholeWithoutTheDelimitationItem) {
  // A fragment whose bytes look like the end of the sequence is stepped over by its length.
  const Bytes tricky = {0xFE, 0xFF, 0xDD, 0xE0, 0, 0, 0, 0};
  const Bytes bytes = DataSetBytes().encapsulated({{}, tricky}).us(0xFFFCFFFC, {}, "OB").take();
  DcCode code = kDcOk;
  EXPECT_EQ(parsed(bytes, DcUid{176}, code),
            (Lines{"7fe00010 OB feff00e000000000feff00e008000000feffdde000000000", "fffcfffc OB"}));
  EXPECT_EQ(code, kDcOk);
}

TEST(ParsingUndefinedLengths, AnUnknownVrHoldsImplicitItemsAndStaysRaw) {
  // In the explicit form the length of 0x00280010 would be read from the wrong bytes.
  const Bytes items = DataSetBytes(Syntax::ImplicitLittle)
                          .beginItem(true)
                          .us(0x00280010, {1})
                          .beginSequence(0x00081140, true)
                          .beginItem(true)
                          .endItem()
                          .endSequence()
                          .endItem()
                          .take();
  const Bytes end = DataSetBytes(Syntax::ImplicitLittle).header(0xFFFEE0DD, "", 0).take();
  for (const Syntax syntax : {Syntax::ExplicitLittle, Syntax::ExplicitBig}) {
    SCOPED_TRACE(nameOf(syntax));
    const Bytes bytes = DataSetBytes(syntax)
                            .header(0x00091010, "UN", 0xFFFFFFFF)
                            .append(items)
                            .append(end)
                            .us(0x00280010, {2})
                            .take();
    DcElemList list;
    ASSERT_EQ(parseInto(list, bytes, uidOf(syntax)), kDcOk);
    ASSERT_EQ(list.size(), 2U);
    ASSERT_EQ(list.at(0)->segments().size(), 1U);
    const DcElemValueBuf& kept = list.at(0)->segments()[0];
    EXPECT_EQ(Bytes(kept.data(), kept.data() + kept.lengthBytes()), items);
  }
}

TEST(ParsingIconImages, PixelDataOfTheExpectedLengthIsSettled) {
  const struct {
    const char* what;
    Syntax syntax;
    const char* vr;
    std::uint16_t bitsStored;
    Bytes pixels;
    const char* expected;
    DcUid expectedSyntax;
  } cases[] = {
      {"bytes",
       Syntax::ImplicitLittle,
       "",
       8,
       {1, 2, 3, 4},
       "OB 01020304",
       DcUid::ExplicitLittleEndian},
      {"words",
       Syntax::ImplicitLittle,
       "",
       12,
       {1, 2, 3, 4, 5, 6, 7, 8},
       "OW 0102030405060708",
       DcUid::ExplicitLittleEndian},
      {"big endian words",
       Syntax::ExplicitBig,
       "OW",
       16,
       {1, 2, 3, 4, 5, 6, 7, 8},
       "OW 0201040306050807",
       DcUid::ExplicitLittleEndian},
      {"big endian bytes",
       Syntax::ExplicitBig,
       "OB",
       8,
       {1, 2, 3, 4},
       "OB 01020304",
       DcUid::ExplicitLittleEndian},
      {"another length",
       Syntax::ImplicitLittle,
       "",
       8,
       {1, 2},
       "OX 0102",
       DcUid::ImplicitLittleEndian},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const Bytes bytes = DataSetBytes(c.syntax)
                            .beginSequence(0x00880200)
                            .beginItem(true)
                            .us(0x00280010, {2})
                            .us(0x00280011, {2})
                            .us(0x00280101, {c.bitsStored})
                            .raw(0x7FE00010, c.vr, c.pixels)
                            .endItem()
                            .endSequence()
                            .take();
    DcElemList list;
    ASSERT_EQ(parseInto(list, bytes, uidOf(c.syntax)), kDcOk);
    EXPECT_EQ(describe(list).back(), std::string(">7fe00010 ") + c.expected);
    DcElemSq* sequence = nullptr;
    ASSERT_EQ(list.getElem(0x00880200, &sequence), kDcOk);
    EXPECT_EQ(sequence->item(0)->find(0x7FE00010)->segments()[0].transferSyntax(),
              c.expectedSyntax);
  }
}

TEST(ParsingIconImages, MissingAttributesAreNamed) {
  LoggedLines log;
  const Bytes bytes = DataSetBytes()
                          .beginSequence(0x00880200)
                          .beginItem()
                          .us(0x00280011, {2})
                          .raw(0x7FE00010, "OB", {1, 2})
                          .endItem()
                          .endSequence()
                          .take();
  DcElemList list;
  EXPECT_EQ(parseInto(list, bytes, DcUid::ExplicitLittleEndian), kDcNotAccepted);
  EXPECT_EQ(log.take(), (Lines{"Missing or invalid T_0028_0010_rows",
                               "Missing or invalid T_0028_0101_bitsStored"}));
}

TEST(ParsingASequenceOnItsOwn, OnlyItemsOfDefinedLengthAreAccepted) {
  const auto set = [] { return DataSetBytes(Syntax::ExplicitLittle); };
  const struct {
    const char* what;
    Bytes bytes;
    DcUid syntax;
    DcCode code;
    std::size_t items;
    Lines messages;
  } cases[] = {
      {"two items",
       set().beginItem().us(0x00280010, {1}).endItem().beginItem().endItem().take(),
       DcUid::ExplicitLittleEndian,
       kDcOk,
       2,
       {}},
      {"ended by the delimitation item",
       set().beginItem().endItem().header(0xFFFEE0DD, "", 0).append({9, 9, 9}).take(),
       DcUid::ExplicitLittleEndian,
       kDcOk,
       1,
       {}},
      {"undefined length",
       set().beginItem(true).endItem().take(),
       DcUid::ExplicitLittleEndian,
       kDcNotAccepted,
       0,
       {"Element (0008,1140) - Data error, undefined length encountered"}},
      {"no item",
       set().us(0x00280010, {1}).take(),
       DcUid::ExplicitLittleEndian,
       kDcNotAccepted,
       0,
       {"Element (0008,1140) - Data error, did not find the expected sequence item tag"}},
      {"half an item header",
       {0xFE, 0xFF, 0x00, 0xE0},
       DcUid::ExplicitLittleEndian,
       kDcNotAccepted,
       0,
       {"SQ item length invalid for element (0008,1140)"}},
      {"item too long",
       set().header(0xFFFEE000, "", 5).append({1, 2, 3, 4}).take(),
       DcUid::ExplicitLittleEndian,
       kDcNotAccepted,
       0,
       {"Item length 5(0x5) exceeds buffer length 4(0x4)"}},
      {"no transfer syntax",
       set().beginItem().endItem().take(),
       DcUid::Verification,
       kDcNotTransferSyntax,
       0,
       {}},
  };
  LoggedLines log;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DcElemSq sequence(0x00081140);
    EXPECT_EQ(
        sequence.parseVal(c.bytes.data(), static_cast<std::uint32_t>(c.bytes.size()), c.syntax),
        c.code);
    EXPECT_EQ(sequence.itemCount(), c.items);
    EXPECT_EQ(log.take(), c.messages);
  }
  DcElemSq sequence(0x00081140);
  EXPECT_EQ(sequence.parseVal(nullptr, 8, DcUid::ExplicitLittleEndian), kDcNullArgument);
}

}  // namespace
}  // namespace quillon::test
