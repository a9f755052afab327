#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

using Parsing = ToolkitTest;

TEST_F(Parsing, BytesCarryTheSyntaxTheyAreEncodedIn) {
  const Bytes native = DataSetBytes().raw(kPixelData, "OB", {1, 2}).take();
  const Bytes fragments = DataSetBytes().encapsulated({{}, {1, 2}}).take();
  const struct {
    const char* what;
    const Bytes& bytes;
    DcUid parsedAs;
    DcUid expected;
  } cases[] = {
      {"uncompressed", native, kExplicit, kExplicit},
      {"native data in a compressed object", native, kJpeg, kExplicit},
      {"encapsulated data", fragments, kJpeg, kJpeg},
      {"a syntax that is none", native, DcUid::Verification, kExplicit},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DcElemList list;
    ASSERT_EQ(parseInto(list, c.bytes, c.parsedAs), kDcOk);
    ASSERT_TRUE(list.contains(kPixelData));
    const DcElem& pixelData = *list.find(kPixelData);
    EXPECT_EQ(pixelData.transferSyntax(), c.expected);
    ASSERT_EQ(pixelData.segments().size(), 1U);
    EXPECT_EQ(pixelData.segments()[0].transferSyntax(), c.expected);
  }
}

TEST_F(Parsing, TheLastValuesStayWithinTheVmWhileCheckingIsOn) {
  // Rows: exactly one value.
  const Bytes bytes = DataSetBytes().us(0x00280010, {1, 2, 3}).take();
  EXPECT_EQ(parsed(bytes, kExplicit), "00280010 US 3");
  static_cast<void>(dcSetValueChecking(false));
  EXPECT_EQ(parsed(bytes, kExplicit), "00280010 US 1/2/3");
}

TEST_F(Parsing, WhatTheHookRefusesIsDroppedAndParsingGoesOn) {
  const Bytes bytes = DataSetBytes()
                          .text(0x00080020, "DA", "20000230")
                          .text(0x00080030, "TM", "1200")
                          .text(0x00080021, "DA", "20000231")
                          .take();
  DcElemList list;
  list.setStringHook(
      {nullptr, [](void*, DcTag, DcVr, const char*, std::string*, bool*) { return DcCode{1}; }});
  EXPECT_EQ(parseInto(list, bytes, kExplicit), kDcOk);
  EXPECT_EQ(describe(list), "00080030 TM 1200");
}

TEST_F(Parsing, TheVrComesFromTheDataSetOrTheDictionary) {
  const auto implicitSet = [] { return DataSetBytes(Syntax::ImplicitLittle); };
  const Bytes item = hexBytes("FEFF 00E0 00000000");
  const Bytes undefined = implicitSet()
                              .beginSequence(kPrivate, true)
                              .beginItem(true)
                              .us(0x00280010, {7})
                              .endItem()
                              .endSequence()
                              .take();
  const struct {
    const char* what;
    DcUid syntax;
    Bytes bytes;
    const char* expected;
    const char* message;
  } cases[] = {
      {"known", kImplicit, implicitSet().us(0x00280010, {5}).take(), "00280010 US 5", ""},
      {"US or SS", kImplicit, implicitSet().us(0x00280106, {5}).take(), "00280106 XS 5", ""},
      {"unknown", kImplicit, implicitSet().raw(kPrivate, "", {1, 2}).take(), "00091010 UN 0102",
       ""},
      {"unknown with an item", kImplicit, implicitSet().raw(kPrivate, "", item).take(),
       "00091010 SQ\n>item", ""},
      {"unknown with no more than an item tag", kImplicit,
       implicitSet().raw(kPrivate, "", hexBytes("FEFF 00E0")).take(), "00091010 UN feff00e0", ""},
      {"unknown with an item, undefined length", kImplicit, undefined,
       "00091010 SQ\n>item\n>00280010 US 7", ""},
      {"unknown and empty in front of what looks like an item", kImplicit,
       implicitSet().raw(kPrivate, "", {}).us(0xFFFEE00D, {}).take(), "00091010 UN",
       "Stray tag 0xfffee00d passed over at offset 0x8"},
      {"private creator", kImplicit, implicitSet().text(0x00090010, "", "ME").take(),
       "00090010 LO ME", ""},
      {"no VR, known tag", kExplicit, DataSetBytes().text(0x00100020, "??", "ID").take(),
       "00100020 LO ID", "Invalid VR for T_0010_0020_patientId, substituted VR from Dictionary"},
      {"pseudo VR, known tag", kExplicit, DataSetBytes().us(0x00280010, {9}, "XS").take(),
       "00280010 US 9", "Invalid VR for T_0028_0010_rows, substituted VR from Dictionary"},
      {"no VR, unknown tag", kExplicit, DataSetBytes().raw(kPrivate, "??", {1, 2}).take(),
       "00091010 UN 0102", ""},
      {"a younger VR has the long header", kExplicit,
       DataSetBytes().raw(kPrivate, "UC", {1, 2}).us(0x00280010, {3}).take(),
       "00091010 UN 0102\n00280010 US 3", ""},
      {"the data set knows better than the dictionary", kExplicit,
       DataSetBytes().text(0x00100020, "SH", "ID").take(), "00100020 SH ID", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(parsed(c.bytes, c.syntax), c.expected);
    EXPECT_EQ(logged(), c.message);
  }
}

TEST_F(Parsing, KnownTagsMayComeLateUnknownOnesMayNot) {
  const std::string again = "Element (0028,0010) added again, previous instance deleted";
  // The n-th tag has the value n.
  const auto numbered = [](const std::vector<DcTag>& tags) {
    DataSetBytes bytes;
    std::uint16_t value = 0;
    for (const DcTag tag : tags) bytes.us(tag, {++value});
    return bytes.take();
  };
  const struct {
    const char* what;
    Bytes bytes;
    DcCode code;
    const char* expected;
    std::string message;
  } cases[] = {
      {"known tag late", numbered({0x00280011, 0x00280010, 0x00280100}), kDcOk,
       "00280010 US 2\n00280011 US 1\n00280100 US 3", ""},
      {"backwards", numbered({0x00280103, 0x00280101, 0x00280100, 0x00280011, 0x00280010}), kDcOk,
       "00280010 US 5\n00280011 US 4\n00280100 US 3\n00280101 US 2\n00280103 US 1", ""},
      {"private tag late", numbered({0x00280010, kPrivate}), kDcNotAccepted, "00280010 US 1",
       "Elements out of order, last - 0x00280010, this - 0x00091010"},
      {"zero tag twice", Bytes(16, 0), kDcNotAccepted, "00000000 UL",
       "Elements out of order, last - 0x00000000, this - 0x00000000"},
      {"same tag twice", numbered({0x00280010, 0x00280010}), kDcOk, "00280010 US 2", again},
      {"same tag again behind others", numbered({0x00280010, 0x00280011, 0x00280010, 0x00280010}),
       kDcOk, "00280010 US 4\n00280011 US 2", again + "\n" + again},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(parsed(c.bytes, kExplicit, c.code), c.expected);
    EXPECT_EQ(logged(), c.message);
  }
}

TEST_F(Parsing, AVrWithoutValuesTakesNone) {
  DcElem item(kPrivate, DcVr::SI);
  const Bytes bytes{1, 2};
  EXPECT_EQ(item.parseVal(bytes.data(), 2, kExplicit), kDcNotReadable);
  EXPECT_EQ(logged(), "Element (0009,1010) - invalid VR size");
}

TEST_F(Parsing, AParsedListTakesMoreElements) {
  DcElemList list;
  const Bytes first = DataSetBytes().us(0x00280010, {1}).us(0x00280100, {1}).take();
  const Bytes second = DataSetBytes().us(0x00280011, {2}).us(0x00280101, {2}).take();
  ASSERT_EQ(parseInto(list, first, kExplicit), kDcOk);
  ASSERT_EQ(parseInto(list, second, kExplicit), kDcOk);
  EXPECT_EQ(describe(list), "00280010 US 1\n00280011 US 2\n00280100 US 1\n00280101 US 2");
}

}  // namespace
}  // namespace quillon::test
