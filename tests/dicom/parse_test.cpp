#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "dicom/dict.h"
#include "dicom/elem_list.h"
#include "dicom/elem_sq.h"
#include "dir_test_tools.h"
#include "parse_test_tools.h"
#include "support/dicom_bytes.h"

namespace quillon::test {
namespace {

using Lines = std::vector<std::string>;

// A vector of no bytes may have a null pointer, which parse refuses.
DcCode parseInto(DcElemList& list, const Bytes& bytes, DcUid transferSyntax) {
  return list.parse(bytes.data(), static_cast<std::uint32_t>(bytes.size()), transferSyntax);
}

class ValueChecking {
 public:
  explicit ValueChecking(bool on) { dcSetValueChecking(on); }
  ~ValueChecking() { dcSetValueChecking(true); }
  ValueChecking(const ValueChecking&) = delete;
  ValueChecking& operator=(const ValueChecking&) = delete;
};

TEST(ParsingValues, EveryVrIsReadInBothByteOrders) {
  const struct {
    const char* what;
    DcTag tag;
    const char* vr;
    Bytes little;
    Bytes big;
    const char* expected;
  } cases[] = {
      {"tag",
       0x00280009,
       "AT",
       {0x18, 0x00, 0x63, 0x10},
       {0x00, 0x18, 0x10, 0x63},
       "00280009 AT (0018,1063)"},
      {"words", 0x00280010, "US", {0x02, 0x01}, {0x01, 0x02}, "00280010 US 258"},
      {"signed words", 0x00189219, "SS", {0xFE, 0xFF}, {0xFF, 0xFE}, "00189219 SS -2"},
      {"integers",
       0x00080008,
       "UL",
       {1, 0, 0, 0, 2, 0, 0, 0},
       {0, 0, 0, 1, 0, 0, 0, 2},
       "00080008 UL 1|2"},
      {"signed integer",
       0x00186020,
       "SL",
       {0xFF, 0xFF, 0xFF, 0xFF},
       {0xFF, 0xFF, 0xFF, 0xFF},
       "00186020 SL -1"},
      {"float",
       0x00089459,
       "FL",
       {0x00, 0x00, 0xC0, 0x3F},
       {0x3F, 0xC0, 0x00, 0x00},
       "00089459 FL 1.5"},
      {"double",
       0x00189073,
       "FD",
       {0, 0, 0, 0, 0, 0, 0xF8, 0xBF},
       {0xBF, 0xF8, 0, 0, 0, 0, 0, 0},
       "00189073 FD -1.5"},
      {"half a value at the end",
       0x00080008,
       "UL",
       {1, 0, 0, 0, 9, 9},
       {0, 0, 0, 1, 9, 9},
       "00080008 UL 1"},
      {"words kept raw", 0x7FE00010, "OW", {0x02, 0x01}, {0x01, 0x02}, "7fe00010 OW 0201"},
      {"bytes kept raw", 0x7FE00010, "OB", {0x02, 0x01}, {0x02, 0x01}, "7fe00010 OB 0201"},
      {"texts", 0x00080008, "CS", {'A', '\\', 'B', ' '}, {'A', '\\', 'B', ' '}, "00080008 CS A|B"},
      {"padded UID", 0x00080018, "UI", {'1', '.', '2', 0}, {'1', '.', '2', 0}, "00080018 UI 1.2"},
      {"one text with backslashes",
       0x00204000,
       "LT",
       {'A', '\\', 'B', ' '},
       {'A', '\\', 'B', ' '},
       "00204000 LT A\\B"},
      {"unlimited text kept raw", 0x0040A160, "UT", {'A', ' '}, {'A', ' '}, "0040a160 UT 4120"},
      {"no value", 0x00100010, "PN", {}, {}, "00100010 PN"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DcCode code = kDcOk;
    const Bytes little = DataSetBytes(Syntax::ExplicitLittle).raw(c.tag, c.vr, c.little).take();
    EXPECT_EQ(parsed(little, DcUid::ExplicitLittleEndian, code), Lines{c.expected});
    EXPECT_EQ(code, kDcOk);
    const Bytes big = DataSetBytes(Syntax::ExplicitBig).raw(c.tag, c.vr, c.big).take();
    EXPECT_EQ(parsed(big, DcUid::ExplicitBigEndian, code), Lines{c.expected});
    EXPECT_EQ(code, kDcOk);
  }
}

TEST(ParsingValues, BytesCarryTheSyntaxTheyAreEncodedIn) {
  const DcUid jpeg{176};
  const Bytes native = DataSetBytes().raw(0x7FE00010, "OB", {1, 2}).take();
  const Bytes fragments = DataSetBytes().encapsulated({{}, {1, 2}}).take();
  const struct {
    const char* what;
    const Bytes& bytes;
    DcUid parsedAs;
    DcUid expected;
  } cases[] = {
      {"uncompressed", native, DcUid::ExplicitLittleEndian, DcUid::ExplicitLittleEndian},
      {"native data in a compressed object", native, jpeg, DcUid::ExplicitLittleEndian},
      {"encapsulated data", fragments, jpeg, jpeg},
      {"a syntax that is none", native, DcUid::Verification, DcUid::ExplicitLittleEndian},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DcElemList list;
    ASSERT_EQ(parseInto(list, c.bytes, c.parsedAs), kDcOk);
    ASSERT_TRUE(list.contains(0x7FE00010));
    const DcElem& pixelData = *list.find(0x7FE00010);
    EXPECT_EQ(pixelData.transferSyntax(), c.expected);
    ASSERT_EQ(pixelData.segments().size(), 1U);
    EXPECT_EQ(pixelData.segments()[0].transferSyntax(), c.expected);
  }
}

TEST(ParsingValues, TheLastValuesStayWithinTheVmWhileCheckingIsOn) {
  // Rows: exactly one value.
  const Bytes bytes = DataSetBytes().us(0x00280010, {1, 2, 3}).take();
  DcCode code = kDcOk;
  EXPECT_EQ(parsed(bytes, DcUid::ExplicitLittleEndian, code), Lines{"00280010 US 3"});
  const ValueChecking off(false);
  EXPECT_EQ(parsed(bytes, DcUid::ExplicitLittleEndian, code), Lines{"00280010 US 1|2|3"});
}

DcCode refuse(void*, DcTag, DcVr, const char*, std::string*, bool*) { return 1; }

TEST(ParsingValues, WhatTheHookRefusesIsDroppedAndParsingGoesOn) {
  const Bytes bytes = DataSetBytes()
                          .text(0x00080020, "DA", "20000230")
                          .text(0x00080030, "TM", "1200")
                          .text(0x00080021, "DA", "20000231")
                          .take();
  DcElemList list;
  list.setStringHook({nullptr, refuse});
  EXPECT_EQ(parseInto(list, bytes, DcUid::ExplicitLittleEndian), kDcOk);
  EXPECT_EQ(describe(list), Lines{"00080030 TM 1200"});
}

TEST(ParsingHeaders, TheVrComesFromTheDataSetOrTheDictionary) {
  const Bytes item = {0xFE, 0xFF, 0x00, 0xE0, 0, 0, 0, 0};
  const struct {
    const char* what;
    Bytes bytes;
    DcUid syntax;
    Lines expected;
    Lines messages;
  } cases[] = {
      {"implicit, known",
       DataSetBytes(Syntax::ImplicitLittle).us(0x00280010, {5}).take(),
       DcUid::ImplicitLittleEndian,
       {"00280010 US 5"},
       {}},
      {"implicit, US or SS",
       DataSetBytes(Syntax::ImplicitLittle).us(0x00280106, {5}).take(),
       DcUid::ImplicitLittleEndian,
       {"00280106 XS 5"},
       {}},
      {"implicit, unknown",
       DataSetBytes(Syntax::ImplicitLittle).raw(0x00091010, "", {1, 2}).take(),
       DcUid::ImplicitLittleEndian,
       {"00091010 UN 0102"},
       {}},
      {"implicit, unknown with an item",
       DataSetBytes(Syntax::ImplicitLittle).raw(0x00091010, "", item).take(),
       DcUid::ImplicitLittleEndian,
       {"00091010 SQ", ">item"},
       {}},
      {"implicit, unknown with an item, undefined length",
       DataSetBytes(Syntax::ImplicitLittle)
           .beginSequence(0x00091010, true)
           .beginItem(true)
           .us(0x00280010, {7})
           .endItem()
           .endSequence()
           .take(),
       DcUid::ImplicitLittleEndian,
       {"00091010 SQ", ">item", ">00280010 US 7"},
       {}},
      {"implicit, unknown and empty in front of what looks like an item",
       DataSetBytes(Syntax::ImplicitLittle).raw(0x00091010, "", {}).us(0xFFFEE00D, {}).take(),
       DcUid::ImplicitLittleEndian,
       {"00091010 UN"},
       {"Stray tag 0xfffee00d passed over at offset 0x8"}},
      {"private creator",
       DataSetBytes(Syntax::ImplicitLittle).text(0x00090010, "", "ME").take(),
       DcUid::ImplicitLittleEndian,
       {"00090010 LO ME"},
       {}},
      {"no VR, known tag",
       DataSetBytes().text(0x00100020, "??", "ID").take(),
       DcUid::ExplicitLittleEndian,
       {"00100020 LO ID"},
       {"Invalid VR for T_0010_0020_patientId, substituted VR from Dictionary"}},
      {"pseudo VR, known tag",
       DataSetBytes().us(0x00280010, {9}, "XS").take(),
       DcUid::ExplicitLittleEndian,
       {"00280010 US 9"},
       {"Invalid VR for T_0028_0010_rows, substituted VR from Dictionary"}},
      {"no VR, unknown tag",
       DataSetBytes().raw(0x00091010, "??", {1, 2}).take(),
       DcUid::ExplicitLittleEndian,
       {"00091010 UN 0102"},
       {}},
      {"a younger VR has the long header",
       DataSetBytes().raw(0x00091010, "UC", {1, 2}).us(0x00280010, {3}).take(),
       DcUid::ExplicitLittleEndian,
       {"00091010 UN 0102", "00280010 US 3"},
       {}},
      {"the data set knows better than the dictionary",
       DataSetBytes().text(0x00100020, "SH", "ID").take(),
       DcUid::ExplicitLittleEndian,
       {"00100020 SH ID"},
       {}},
  };
  LoggedLines log;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DcCode code = kDcOk;
    EXPECT_EQ(parsed(c.bytes, c.syntax, code), c.expected);
    EXPECT_EQ(code, kDcOk);
    EXPECT_EQ(log.take(), c.messages);
  }
}

TEST(ParsingHeaders, SomeGroupsHaveOneFormInEveryDataSet) {
  // Group 0000 implicit, 0002 and 0004 explicit, all little endian.
  const Bytes command = {0x00, 0x00, 0x00, 0x01, 2, 0, 0, 0, 0x30, 0x00};
  const Bytes meta = {0x02, 0x00, 0x10, 0x00, 'U', 'I', 4, 0, '1', '.', '2', 0};
  const Bytes dir = {0x04, 0x00, 0x12, 0x12, 'U', 'S', 2, 0, 1, 0};
  const Lines expected = {"00000100 US 48", "00020010 UI 1.2", "00041212 US 1", "00280010 US 5"};
  for (const Syntax syntax : kSyntaxes) {
    SCOPED_TRACE(nameOf(syntax));
    const Bytes bytes =
        DataSetBytes(syntax).append(command).append(meta).append(dir).us(0x00280010, {5}).take();
    DcCode code = kDcOk;
    EXPECT_EQ(parsed(bytes, uidOf(syntax), code), expected);
    EXPECT_EQ(code, kDcOk);
  }
  // In big endian, group 0400 begins with the bytes that group 0004 has in little endian.
  DcCode code = kDcOk;
  const Bytes signature = DataSetBytes(Syntax::ExplicitBig).us(0x04000005, {7}).take();
  EXPECT_EQ(parsed(signature, DcUid::ExplicitBigEndian, code), Lines{"04000005 US 7"});
  EXPECT_EQ(code, kDcOk);
}

TEST(ParsingOrder, KnownTagsMayComeLateUnknownOnesMayNot) {
  const struct {
    const char* what;
    std::vector<DcTag> tags;
    DcCode code;
    Lines expected;
    Lines messages;
  } cases[] = {
      {"known tag late",
       {0x00280011, 0x00280010, 0x00280100},
       kDcOk,
       {"00280010 US 2", "00280011 US 1", "00280100 US 3"},
       {}},
      {"backwards",
       {0x00280103, 0x00280101, 0x00280100, 0x00280011, 0x00280010},
       kDcOk,
       {"00280010 US 5", "00280011 US 4", "00280100 US 3", "00280101 US 2", "00280103 US 1"},
       {}},
      {"private tag late",
       {0x00280010, 0x00091010},
       kDcNotAccepted,
       {"00280010 US 1"},
       {"Elements out of order, last - 0x00280010, this - 0x00091010"}},
      {"zero tag twice",
       {0x00000000, 0x00000000},
       kDcNotAccepted,
       {"00000000 UL"},
       {"Elements out of order, last - 0x00000000, this - 0x00000000"}},
      {"same tag twice",
       {0x00280010, 0x00280010},
       kDcOk,
       {"00280010 US 2"},
       {"Element (0028,0010) added again, previous instance deleted"}},
      {"same tag again behind others",
       {0x00280010, 0x00280011, 0x00280010, 0x00280010},
       kDcOk,
       {"00280010 US 4", "00280011 US 2"},
       {"Element (0028,0010) added again, previous instance deleted",
        "Element (0028,0010) added again, previous instance deleted"}},
  };
  LoggedLines log;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DataSetBytes bytes(Syntax::ExplicitLittle);
    std::uint16_t value = 0;
    for (const DcTag tag : c.tags) {
      if (tag == 0) {
        bytes.append(Bytes(8, 0));  // implicit, without a value
      } else {
        bytes.us(tag, {++value});
      }
    }
    DcCode code = kDcOk;
    EXPECT_EQ(parsed(bytes.take(), DcUid::ExplicitLittleEndian, code), c.expected);
    EXPECT_EQ(code, c.code);
    EXPECT_EQ(log.take(), c.messages);
  }
}

TEST(ParsingOrder, AParsedListTakesMoreElements) {
  DcElemList list;
  ASSERT_EQ(parseInto(list, DataSetBytes().us(0x00280010, {1}).us(0x00280100, {1}).take(),
                      DcUid::ExplicitLittleEndian),
            kDcOk);
  ASSERT_EQ(parseInto(list, DataSetBytes().us(0x00280011, {2}).us(0x00280101, {2}).take(),
                      DcUid::ExplicitLittleEndian),
            kDcOk);
  EXPECT_EQ(describe(list),
            (Lines{"00280010 US 1", "00280011 US 2", "00280100 US 1", "00280101 US 2"}));
}

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

// Everything that has a form of its own, at the top level and nested.
struct Sample {
  Bytes bytes;
  std::vector<std::pair<std::size_t, std::size_t>> elements;  // start, bytes of header
};

Sample sampleOf(Syntax syntax) {
  Sample sample;
  DataSetBytes bytes(syntax);
  const std::size_t longHeader = syntax == Syntax::ImplicitLittle ? 8 : 12;
  const auto starts = [&](std::size_t headerBytes) {
    sample.elements.emplace_back(bytes.bytes().size(), headerBytes);
  };
  starts(8);
  bytes.text(0x00080005, "CS", "ISO_IR 100");
  starts(longHeader);
  bytes.beginSequence(0x00081140, true).beginItem(true).text(0x00081150, "UI", "1.2");
  bytes.beginSequence(0x00081199).beginItem().us(0x00280010, {1}).endItem().endSequence();
  bytes.endItem().beginItem().endItem().endSequence();
  starts(longHeader);
  bytes.beginSequence(0x00082112).beginItem(true).text(0x00081150, "UI", "1.2").endItem();
  bytes.endSequence();
  starts(longHeader);
  bytes.raw(0x00091010, "UN", {1, 2, 3, 4});
  starts(8);
  bytes.us(0x00280010, {1, 2});
  if (syntax == Syntax::ExplicitLittle) {
    starts(longHeader);
    bytes.encapsulated({{}, {1, 2, 3, 4}});
  } else {
    starts(longHeader);
    bytes.raw(0x7FE00010, "OW", {1, 2, 3, 4});
  }
  sample.bytes = bytes.take();
  return sample;
}

TEST(ParsingHostileData, ACutInsideAValueIsAnErrorWhereverItIs) {
  const QuietLog quiet;
  for (const Syntax syntax : kSyntaxes) {
    const Sample sample = sampleOf(syntax);
    for (std::size_t kept = 1; kept <= sample.bytes.size(); ++kept) {
      SCOPED_TRACE(testing::Message() << nameOf(syntax) << ", " << kept << " bytes");
      std::size_t start = 0;
      std::size_t headerBytes = 0;
      for (const auto& [at, header] : sample.elements) {
        if (at < kept) start = at, headerBytes = header;
      }
      // Too few bytes for another element are no element.
      const bool isWhole = kept - start < headerBytes || kept == sample.bytes.size() ||
                           std::ranges::any_of(sample.elements, [kept](const auto& element) {
                             return element.first == kept;
                           });
      DcCode code = kDcOk;
      parsed(Bytes(sample.bytes.begin(), sample.bytes.begin() + static_cast<std::ptrdiff_t>(kept)),
             uidOf(syntax), code);
      EXPECT_EQ(code == kDcOk, isWhole);
    }
  }
}

TEST(ParsingHostileData, DamagedBytesAnywhereAreSurvived) {
  const QuietLog quiet;
  const Bytes damages[] = {{0xFF},
                           {0x00},
                           {0xFF, 0xFF, 0xFF, 0xFF},
                           {0, 0, 0, 0x80},
                           {0xFE, 0xFF, 0x00, 0xE0},
                           {0xFE, 0xFF, 0xDD, 0xE0, 0, 0, 0, 0}};
  for (const Syntax syntax : kSyntaxes) {
    const Sample sample = sampleOf(syntax);
    for (const Bytes& damage : damages) {
      for (std::size_t at = 0; at + damage.size() <= sample.bytes.size(); ++at) {
        Bytes bytes = sample.bytes;
        std::ranges::copy(damage, bytes.begin() + static_cast<std::ptrdiff_t>(at));
        for (const Syntax readAs : kSyntaxes) {
          DcElemList list;
          parseInto(list, bytes, uidOf(readAs));
          // What came out of it can be encoded within its estimate.
          Bytes encoded(list.encodedLengthEstimate() + 1);
          std::uint32_t length = 0;
          list.frame(encoded.data(), length, DcUid::ExplicitLittleEndian);
          ASSERT_LE(length, list.encodedLengthEstimate());
        }
      }
    }
  }
}

Bytes nested(int levels, bool undefined, bool asUnknown) {
  // Built from the inside: a defined length covers everything within.
  const Syntax syntax = Syntax::ImplicitLittle;
  if (undefined) {
    DataSetBytes bytes(syntax);
    for (int i = 0; i < levels; ++i) bytes.beginSequence(0x00081140, true).beginItem(true);
    for (int i = 0; i < levels; ++i) bytes.endItem().endSequence();
    Bytes result = bytes.take();
    if (!asUnknown) return result;
    // The outermost header as explicit UN.
    Bytes unknown = DataSetBytes().header(0x00091010, "UN", 0xFFFFFFFF).take();
    unknown.insert(unknown.end(), result.begin() + 8, result.end());
    return unknown;
  }
  DataSetBytes bytes(syntax);
  for (int i = levels; i > 0; --i) {
    const auto contents = static_cast<std::uint32_t>((i - 1) * 16);
    bytes.header(0x00081140, "SQ", contents + 8).header(0xFFFEE000, "", contents);
  }
  return bytes.take();
}

TEST(ParsingHostileData, NestingIsCutAtTheLimit) {
  const QuietLog quiet;
  for (const int levels : {kMaxNesting, kMaxNesting + 1, 300, 100'000}) {
    const DcCode expected = levels <= kMaxNesting ? kDcOk : kDcTooDeep;
    SCOPED_TRACE(levels);
    DcElemList defined;
    EXPECT_EQ(parseInto(defined, nested(levels, false, false), DcUid::ImplicitLittleEndian),
              expected);
    DcElemList undefined;
    EXPECT_EQ(parseInto(undefined, nested(levels, true, false), DcUid::ImplicitLittleEndian),
              expected);
    DcElemList unknown;
    EXPECT_EQ(parseInto(unknown, nested(levels, true, true), DcUid::ExplicitLittleEndian),
              expected);
  }
}

TEST(ParsingHostileData, ABackwardsDataSetCostsNoQuadraticTime) {
  // 300,000 private creators in descending order: inserting each at the front would move
  // 360 gigabytes.
  constexpr int kElements = 300'000;
  DataSetBytes bytes(Syntax::ImplicitLittle);
  std::vector<DcTag> tags;
  for (DcTag group = 0x0009; tags.size() < kElements; group += 2) {
    for (DcTag element = 0x10; element <= 0xFF && tags.size() < kElements; ++element) {
      tags.push_back(group << 16 | element);
    }
  }
  for (auto tag = tags.rbegin(); tag != tags.rend(); ++tag) bytes.header(*tag, "LO", 0);
  DcElemList list;
  ASSERT_EQ(parseInto(list, bytes.take(), DcUid::ImplicitLittleEndian), kDcOk);
  ASSERT_EQ(list.size(), tags.size());
  for (std::size_t i = 0; i < tags.size(); ++i) ASSERT_EQ(list.at(i)->tag(), tags[i]);
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
