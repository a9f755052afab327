#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

using ParsingSequences = ToolkitTest;

TEST_F(ParsingSequences, ItemsOfBothKindsOfLengthInEverySyntax) {
  for (const NamedSyntax& s : kSyntaxes) {
    for (int kinds = 0; kinds < 16; ++kinds) {
      SCOPED_TRACE(testing::Message() << s.name << ", kinds of length " << kinds);
      const bool sequence = (kinds & 1) != 0;
      const bool item = (kinds & 2) != 0;
      const bool nested = (kinds & 4) != 0;
      const bool nestedItem = (kinds & 8) != 0;
      DataSetBytes bytes(s.syntax);
      bytes.beginSequence(0x00081140, sequence);
      bytes.beginItem(item).text(0x00081150, "UI", "1.2").beginSequence(0x00081199, nested);
      bytes.beginItem(nestedItem).endItem().endSequence().endItem();
      bytes.beginItem(nestedItem).endItem();
      bytes.beginItem(item).us(0x00280010, {3}).endItem();
      bytes.endSequence().us(0x00280010, {258});
      EXPECT_EQ(parsed(bytes.take(), s.id),
                "00081140 SQ\n>item\n>00081150 UI 1.2\n>00081199 SQ\n>>item\n>item\n>item\n"
                ">00280010 US 3\n00280010 US 258");
    }
  }
}

TEST_F(ParsingSequences, AnItemKnowsWhereItStood) {
  DataSetBytes bytes;
  bytes.us(0x00080005, {1}).beginSequence(0x00081140);
  bytes.beginItem().us(0x00280010, {3}).endItem().endSequence();
  DcElemList list;
  ASSERT_EQ(parseInto(list, bytes.take(), kExplicit), kDcOk);
  DcElemSq* sequence = nullptr;
  ASSERT_EQ(list.getElem(0x00081140, &sequence), kDcOk);
  EXPECT_EQ(sequence->item(0)->offsetInBuffer, 22U);  // behind 10 bytes of element and the header
  EXPECT_EQ(sequence->item(0)->lengthBytes, 10U);
}

TEST_F(ParsingSequences, StructuralErrorsEndWithTheirCode) {
  const auto set = [] { return DataSetBytes(); };
  const struct {
    const char* what;
    Bytes bytes;
    DcCode code;
    const char* expected;
    const char* message;
  } cases[] = {
      {"value one byte too long",
       set().us(0x00280010, {1}).header(0x00280011, "US", 3).append({1, 2}).take(), kDcNotAccepted,
       "00280010 US 1",
       "valueLen (0x00000003) exceeds the remaining buffer len (0x00000002) at offset 0xa"},
      {"the largest length", set().header(kPixelData, "OB", 0xFFFFFFFE).append({1, 2}).take(),
       kDcNotAccepted, "",
       "valueLen (0xfffffffe) exceeds the remaining buffer len (0x00000002) at offset 0x0"},
      {"no item in a sequence",
       set().beginSequence(0x00081140).us(0x00280010, {1}).endSequence().take(), kDcNotConvertible,
       "00081140 SQ", "Invalid tag 0x280010, expecting Sequence Item at offset 0xc"},
      {"no fragment in pixel data",
       set().header(kPixelData, "OB", 0xFFFFFFFF).us(0x00280010, {1}).take(), kDcNotConvertible, "",
       "Invalid tag 0x280010, expecting Sequence Item at offset 0xc"},
      {"item longer than its sequence",
       set().header(0x00081140, "SQ", 8).header(0xFFFEE000, "", 1).append({0}).take(),
       kDcNotAccepted, "00081140 SQ",
       "valueLen (0x00000001) exceeds the remaining buffer len (0x00000000) at offset 0xc"},
      {"sequence without its end", set().beginSequence(0x00081140, true).take(), kDcNotAccepted,
       "00081140 SQ",
       "The data ends at offset 0xc without the delimitation item of an undefined length"},
      {"pixel data without its end",
       set().header(kPixelData, "OB", 0xFFFFFFFF).header(0xFFFEE000, "", 0).take(), kDcNotAccepted,
       "", "The data ends at offset 0x14 without the delimitation item of an undefined length"},
      {"item outside a sequence", set().header(0xFFFEE000, "", 0).take(), kDcNotAccepted, "",
       "Unexpected tag 0xfffee000 at offset 0x0"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(parsed(c.bytes, kExplicit, c.code), c.expected);
    EXPECT_EQ(logged(), c.message);
  }
}

TEST_F(ParsingSequences, MissingAndStrayDelimitationItemsLoseNothing) {
  constexpr const char* kExpected =
      "00081140 SQ\n>item\n>00280010 US 1\n>item\n>00280010 US 2\n00280011 US 3";
  const QuietLog quiet;
  for (const NamedSyntax& s : kSyntaxes) {
    SCOPED_TRACE(s.name);
    DataSetBytes missing(s.syntax);
    missing.beginSequence(0x00081140, true);
    missing.header(0xFFFEE000, "", 0xFFFFFFFF).us(0x00280010, {1});
    missing.header(0xFFFEE000, "", 0xFFFFFFFF).us(0x00280010, {2});
    missing.endSequence().us(0x00280011, {3});
    EXPECT_EQ(parsed(missing.take(), s.id), kExpected);
    DataSetBytes stray(s.syntax);
    stray.beginSequence(0x00081140);
    stray.beginItem().us(0x00280010, {1}).header(0xFFFEE0DD, "", 0).endItem();
    stray.beginItem().us(0x00280010, {2}).header(0xFFFEE00D, "", 0).endItem();
    stray.header(0xFFFEE0DD, "", 0).endSequence().header(0xFFFEE00D, "", 0);
    stray.us(0x00280011, {3}).header(0xFFFEE0DD, "", 0);
    EXPECT_EQ(parsed(stray.take(), s.id), kExpected);
  }
}

TEST_F(ParsingSequences, FragmentsStayWholeWithoutTheDelimitationItem) {
  // A fragment whose bytes look like the end of the sequence is stepped over by its length.
  const Bytes tricky = hexBytes("FEFF DDE0 00000000");
  const Bytes bytes = DataSetBytes().encapsulated({{}, tricky}).us(0xFFFCFFFC, {}, "OB").take();
  EXPECT_EQ(parsed(bytes, kJpeg),
            "7fe00010 OB feff00e000000000feff00e008000000feffdde000000000\nfffcfffc OB");
}

TEST_F(ParsingSequences, AnUnknownVrHoldsImplicitItemsAndStaysRaw) {
  // In the explicit form the length of 0x00280010 would be read from the wrong bytes.
  DataSetBytes implicitItems(Syntax::ImplicitLittle);
  implicitItems.beginItem(true).us(0x00280010, {1}).beginSequence(0x00081140, true);
  implicitItems.beginItem(true).endItem().endSequence().endItem();
  const Bytes items = implicitItems.take();
  const Bytes end = DataSetBytes(Syntax::ImplicitLittle).header(0xFFFEE0DD, "", 0).take();
  for (const Syntax syntax : {Syntax::ExplicitLittle, Syntax::ExplicitBig}) {
    DataSetBytes bytes(syntax);
    bytes.header(kPrivate, "UN", 0xFFFFFFFF).append(items).append(end).us(0x00280010, {2});
    DcElemList list;
    ASSERT_EQ(parseInto(list, bytes.take(), syntax == Syntax::ExplicitBig ? kBig : kExplicit),
              kDcOk);
    ASSERT_EQ(list.size(), 2U);
    ASSERT_EQ(list.at(0)->segments().size(), 1U);
    const DcElemValueBuf& kept = list.at(0)->segments()[0];
    EXPECT_EQ(Bytes(kept.data(), kept.data() + kept.lengthBytes()), items);
  }
}

TEST_F(ParsingSequences, PixelDataOfAnIconThatHasTheExpectedLengthIsSettled) {
  const struct {
    const char* what;
    const NamedSyntax& syntax;
    const char* vr;
    std::uint16_t bitsStored;
    const char* pixels;
    const char* expected;
    DcUid expectedSyntax;
  } cases[] = {
      {"bytes", kSyntaxes[0], "", 8, "01020304", "OB 01020304", kExplicit},
      {"words", kSyntaxes[0], "", 12, "0102030405060708", "OW 0102030405060708", kExplicit},
      {"big endian words", kSyntaxes[2], "OW", 16, "0102030405060708", "OW 0201040306050807",
       kExplicit},
      {"big endian bytes", kSyntaxes[2], "OB", 8, "01020304", "OB 01020304", kExplicit},
      {"another length", kSyntaxes[0], "", 8, "0102", "OX 0102", kImplicit},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DataSetBytes bytes(c.syntax.syntax);
    bytes.beginSequence(0x00880200).beginItem(true).us(0x00280010, {2}).us(0x00280011, {2});
    bytes.us(0x00280101, {c.bitsStored}).raw(kPixelData, c.vr, hexBytes(c.pixels));
    DcElemList list;
    ASSERT_EQ(parseInto(list, bytes.endItem().endSequence().take(), c.syntax.id), kDcOk);
    const std::string described = describe(list);
    EXPECT_TRUE(described.ends_with(std::string("\n>7fe00010 ") + c.expected)) << described;
    DcElemSq* sequence = nullptr;
    ASSERT_EQ(list.getElem(0x00880200, &sequence), kDcOk);
    EXPECT_EQ(sequence->item(0)->find(kPixelData)->segments()[0].transferSyntax(),
              c.expectedSyntax);
  }
  DataSetBytes incomplete;
  incomplete.beginSequence(0x00880200).beginItem();
  incomplete.raw(kPixelData, "OB", {1, 2}).endItem().endSequence();
  DcElemList list;
  EXPECT_EQ(parseInto(list, incomplete.take(), kExplicit), kDcNotAccepted);
  EXPECT_EQ(logged(),
            "Missing or invalid T_0028_0010_rows\nMissing or invalid T_0028_0011_columns\n"
            "Missing or invalid T_0028_0101_bitsStored");
}

TEST_F(ParsingSequences, OnItsOwnOnlyItemsOfDefinedLengthAreAccepted) {
  const auto set = [] { return DataSetBytes(); };
  const struct {
    const char* what;
    Bytes bytes;
    DcUid syntax;
    DcCode code;
    std::size_t items;
    const char* message;
  } cases[] = {
      {"two items", set().beginItem().us(0x00280010, {1}).endItem().beginItem().endItem().take(),
       kExplicit, kDcOk, 2, ""},
      {"ended by the delimitation item",
       set().beginItem().endItem().header(0xFFFEE0DD, "", 0).append({9, 9, 9}).take(), kExplicit,
       kDcOk, 1, ""},
      {"undefined length", set().beginItem(true).endItem().take(), kExplicit, kDcNotAccepted, 0,
       "Element (0008,1140) - Data error, undefined length encountered"},
      {"no item", set().us(0x00280010, {1}).take(), kExplicit, kDcNotAccepted, 0,
       "Element (0008,1140) - Data error, did not find the expected sequence item tag"},
      {"half an item header", hexBytes("FEFF 00E0"), kExplicit, kDcNotAccepted, 0,
       "SQ item length invalid for element (0008,1140)"},
      {"item too long", set().header(0xFFFEE000, "", 5).append({1, 2, 3, 4}).take(), kExplicit,
       kDcNotAccepted, 0, "Item length 5(0x5) exceeds buffer length 4(0x4)"},
      {"no transfer syntax", set().beginItem().endItem().take(), DcUid::Verification,
       kDcNotTransferSyntax, 0, "'1.2.840.10008.1.1' is not a Transfer Syntax UID"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DcElemSq sequence(0x00081140);
    EXPECT_EQ(
        sequence.parseVal(c.bytes.data(), static_cast<std::uint32_t>(c.bytes.size()), c.syntax),
        c.code);
    EXPECT_EQ(sequence.itemCount(), c.items);
    EXPECT_EQ(logged(), c.message);
  }
  DcElemSq sequence(0x00081140);
  EXPECT_EQ(sequence.parseVal(nullptr, 8, kExplicit), kDcNullArgument);
}

}  // namespace
}  // namespace quillon::test
