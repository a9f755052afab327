#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dicom/dict.h"
#include "dicom/elem_list.h"
#include "dir_test_tools.h"
#include "parse_test_tools.h"
#include "support/dicom_bytes.h"

namespace quillon::test {
namespace {

using Lines = std::vector<std::string>;

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

}  // namespace
}  // namespace quillon::test
