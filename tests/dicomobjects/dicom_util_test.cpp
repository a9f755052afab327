#include "dicomobjects/dicom_util.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "dicom/elem_sq.h"
#include "element_map.h"
#include "support/text.h"

namespace quillon {
namespace {

using test::Bytes;
using test::ElementMap;
using test::Syntax;
using test::TempDir;

struct ValueCase {
  std::string_view path;
  bool asArray;
  DicomValue expected;
};

void expectValues(CDicomUtil& util, const std::vector<ValueCase>& cases) {
  for (const ValueCase& c : cases) {
    SCOPED_TRACE(std::string(c.path) + (c.asArray ? " as array" : ""));
    DicomValue value = std::uint8_t{77};
    EXPECT_TRUE(util.GetValue(c.path, value, c.asArray));
    EXPECT_EQ(value.index(), c.expected.index());
    EXPECT_TRUE(value == c.expected);
  }
}

Text text(const OLECHAR* value) { return value; }

TEST(TagPathValues, ComeInTheTypeOfTheElementsVr) {
  const TempDir dir;
  ElementMap map;
  map.text(0x00080008, "CS", "ORIGINAL\\PRIMARY\\AXIAL")
      .text(0x00080060, "CS", "CT")
      .text(0x00080080, "LO", "")
      .text(0x00081030, "LO", "Caf\xE9 \x80")  // e acute and the euro sign of Windows-1252
      .text(0x00104000, "LT", "one\\two")
      .text(0x00200013, "IS", " 12 ")
      .raw(0x00181600, "CS", {})
      .us(0x00280009, {0x0018, 0x1063}, "AT")
      .us(0x00280010, {512})
      .us(0x00281101, {256, 0, 16})
      .us(0x00700052, {0xFFFE, 0xFFFF, 0x0000, 0x8000}, "SL")
      .ul(0x00186044, {7, 0xFFFFFFFF}, "UL")
      .raw(0x00189073, "FD", {0, 0, 0, 0, 0, 0, 0xF8, 0x3F})  // 1.5
      .raw(0x00189079, "FD", {0, 0, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0xE0, 0x3F})
      .raw(0x00089459, "FL", {0, 0, 0x20, 0xC0})  // -2.5
      .raw(0x00186060, "FL", {0, 0, 0x20, 0xC0, 0, 0, 0x80, 0x3F})
      .us(0x00189219, {0xFFFD}, "SS")
      .raw(0x00091010, "UN", {1, 2, 254})
      .raw(0x00091011, "OB", {9})
      .us(0x00091012, {0x1234, 0xFF00}, "OW")
      .text(0x0040A160, "UT", "long \\ text")
      .text(0x60003000, "OF", std::string_view("\0\0\x80\x3F\0\0\0\xBF", 8));
  CDicomUtil util;
  ASSERT_TRUE(util.ReadFile(map.write(dir, "values.dcm"), false));
  expectValues(util,
               {
                   {"00080008,CS", false, text(OLESTR("ORIGINAL\\PRIMARY\\AXIAL"))},
                   {"00080008,CS", true,
                    std::vector<Text>{text(OLESTR("ORIGINAL")), text(OLESTR("PRIMARY")),
                                      text(OLESTR("AXIAL"))}},
                   {"00080060,CS", true, text(OLESTR("CT"))},
                   {"00080080,LO", false, std::monostate{}},
                   {"00181600,CS", true, std::monostate{}},
                   {"00081030,LO", false, text(OLESTR("Caf\u00E9 \u20AC"))},
                   {"00104000,LT", true, text(OLESTR("one\\two"))},
                   {"00200013,IS", false, text(OLESTR("12"))},
                   {"00280009,AT", false, text(OLESTR("(0018,1063)"))},
                   {"00280010,US", false, std::uint16_t{512}},
                   {"00281101,US", false, std::uint16_t{256}},
                   {"00281101,US", true, std::vector<std::uint16_t>{256, 0, 16}},
                   {"00700052,SL", true, std::vector<std::int32_t>{-2, -2147483647 - 1}},
                   {"00186044,UL", true, std::vector<std::uint32_t>{7, 0xFFFFFFFF}},
                   {"00186044,UL", false, std::uint32_t{7}},
                   {"00189073,FD", true, 1.5},
                   {"00189079,FD", true, std::vector<double>{-2.0, 0.5}},
                   {"00089459,FL", false, -2.5F},
                   {"00186060,FL", true, std::vector<float>{-2.5F, 1.0F}},
                   {"00189219,SS", false, std::int16_t{-3}},
                   {"00091010,UN", false, std::vector<std::uint8_t>{1, 2, 254}},
                   {"00091012,OW", false, std::vector<std::uint16_t>{0x1234, 0xFF00}},
                   {"0040a160,UT", true, text(OLESTR("long \\ text"))},
                   {"60003000,OF", false, std::vector<float>{1.0F, -0.5F}},
                   // The element's VR counts, not the path's; both cases of hexadecimal digits do.
                   {"0040A160,OB/OW", false, text(OLESTR("long \\ text"))},
               });
}

TEST(TagPathValues, AreTheSameInEveryByteOrder) {
  const TempDir dir;
  ElementMap map(Syntax::ExplicitBig);
  map.us(0x00280009, {0x0018, 0x1063}, "AT")
      .us(0x00280010, {0x0102})
      .ul(0x00186044, {0x01020304}, "UL")
      .us(0x00091012, {0x1234, 0xFF00}, "OW")
      .raw(0x00091013, "OF", {0xC0, 0x20, 0, 0});
  CDicomUtil util;
  ASSERT_TRUE(util.ReadFile(map.write(dir, "big.dcm"), false));
  expectValues(util, {{"00280009,AT", false, text(OLESTR("(0018,1063)"))},
                      {"00280010,US", false, std::uint16_t{0x0102}},
                      {"00186044,UL", false, std::uint32_t{0x01020304}},
                      {"00091012,OW", false, std::vector<std::uint16_t>{0x1234, 0xFF00}},
                      {"00091013,OF", false, -2.5F}});
}

TEST(TagPathValues, OfTwoPossibleVrsAreTextOrFollowBitsAllocated) {
  const TempDir dir;
  ElementMap map(Syntax::ImplicitLittle);
  map.us(0x00280100, {16})
      .us(0x00280120, {0xF830})
      .us(0x00283002, {256, 0xFFFF, 12})
      .us(0x7FE00010, {0x0102, 3});
  CDicomUtil util;
  ASSERT_TRUE(util.ReadFile(map.write(dir, "words.dcm"), false));
  expectValues(util, {{"00280120,US", false, text(OLESTR("-2000"))},
                      {"00283002,US", true, std::vector<std::int16_t>{256, -1, 12}},
                      {"7fe00010,OW", false, std::vector<std::uint16_t>{0x0102, 3}}});

  map.us(0x00280100, {8});
  ASSERT_TRUE(util.ReadFile(map.write(dir, "bytes.dcm"), false));
  expectValues(util, {{"7fe00010,OW", false, std::vector<std::uint8_t>{2, 1, 3, 0}}});
}

TEST(TagPathValues, AreFoundInsideSequenceItems) {
  const TempDir dir;
  const ElementMap inner1 = ElementMap().text(0x00080100, "SH", "DEEP1");
  const ElementMap inner2 = ElementMap().text(0x00080100, "SH", "DEEP2");
  const ElementMap item1 = ElementMap().text(0x00080100, "SH", "CODE1");
  const ElementMap item2 =
      ElementMap().text(0x00080100, "SH", "CODE2").sequence(0x0040A168, {inner1, inner2});
  ElementMap map;
  map.sequence(0x0040A043, {item1, item2}).sequence(0x0040A730, {}).us(0x00280010, {1});
  CDicomUtil util;
  ASSERT_TRUE(util.ReadFile(map.write(dir, "nested.dcm"), false));
  expectValues(util, {{"0040a043,SQ,1:00080100,SH", false, text(OLESTR("CODE1"))},
                      {"0040a043,SQ,2:00080100,SH", false, text(OLESTR("CODE2"))},
                      {"0040a043,SQ,2:0040a168,SQ,2:00080100,SH", false, text(OLESTR("DEEP2"))},
                      {"0040a043,SQ", false, std::monostate{}},
                      {"0040a043,SQ,2:0040a168,SQ", true, std::monostate{}}});
  const auto expectRefused = [&util](const std::string& path) {
    SCOPED_TRACE(path);
    DicomValue value;
    EXPECT_FALSE(util.GetValue(path, value, false));
  };
  for (const char* path :
       {"", "0040a043", "0040a043,", "0040a043,S", "0040a04,SQ", "0040a0430,SQ", "0040g043,SQ",
        "0040a043;SQ", "0040a043,sq", "-040a043,SQ", "0x280010,US", "00280011,US"}) {
    expectRefused(path);
  }
  for (const char* rest :
       {"X", ",:00080100,SH", ",0:00080100,SH", ",-1:00080100,SH", ",+1:00080100,SH",
        ",3:00080100,SH", ",1", ",1:", ",1 :00080100,SH", ",4294967297:00080100,SH",
        ",1:00080102,SH", ",1:00080100,SH,1:00080100,SH", ",1:00020010,UI"}) {
    expectRefused("0040a043,SQ" + std::string(rest));
  }
  expectRefused("0040a730,SQ,1:00080100,SH");
  expectRefused("00280010,SQ,1:00080100,SH");
}

TEST(TagPathValues, OfGroup2ComeFromTheMetaInformation) {
  const TempDir dir;
  // A class that no dictionary knows keeps its text.
  const Bytes file = test::dicomFile(ElementMap().us(0x00280010, {1}).bytes(), "1.2.3.4.5.6",
                                     "1.2.3.4.5.6.7", test::kExplicitLittleUid);
  test::writeBytes(dir / "meta.dcm", file);
  CDicomUtil util;
  ASSERT_TRUE(util.ReadFile(test::WideOf(dir / "meta.dcm"), true));
  expectValues(util, {{"00020001,XX", false, std::uint16_t{1}},
                      {"00020002,UI", false, text(OLESTR("1.2.3.4.5.6"))},
                      {"00020003,UI", false, text(OLESTR("1.2.3.4.5.6.7"))},
                      {"00020010,UI", false, text(OLESTR("1.2.840.10008.1.2.1"))}});
  DicomValue value;
  EXPECT_FALSE(util.GetValue("00020000,UL", value, false));
  EXPECT_FALSE(util.GetValue("00020102,OB", value, false));
}

TEST(ReadingAFile, ThatFailsLeavesTheCodeAndNothingOfTheFileBefore) {
  const TempDir dir;
  CDicomUtil util;
  ASSERT_TRUE(util.ReadFile(test::imageElements().write(dir, "good.dcm"), true));
  EXPECT_FALSE(util.ReadFile(test::WideOf(dir / "missing.dcm"), true));
  EXPECT_NE(util.GetLastResult(), kDcOk);
  Text path = text(OLESTR("?"));
  util.GetFilePath(path);
  EXPECT_EQ(path, text(OLESTR("")));
  EXPECT_EQ(util.GetElementList(), nullptr);
  EXPECT_TRUE(util.HasNoPixelData());
  std::uint32_t lengthBytes = 0;
  EXPECT_FALSE(util.GetPixelDataLength(lengthBytes));
  DicomValue value;
  EXPECT_FALSE(util.GetValue("00280010,US", value, false));
  EXPECT_FALSE(util.GetValue("00020010,UI", value, false));
}

TEST(ReadingAFile, ThatIsNamedInAnyScriptWorks) {
  // The toolkit opens files by names in the code page, which is UTF-8 on Linux alone.
#ifdef _WIN32
  const std::string name = "\u00E9.dcm";
#else
  const std::string name = "\u65E5\u672C \u00E9.dcm";
#endif
  const TempDir dir;
  const Text path = test::imageElements().write(dir, name);
  CDicomUtil util;
  EXPECT_TRUE(util.ReadFile(path, true));
  // Deferred bytes are fetched from the file under its name when they are asked for.
  expectValues(util, {{"7fe00010,OW", false, std::vector<std::uint16_t>{1, 2, 3, 4, 5, 6}}});
}

TEST(PixelDataPlace, IsThatOfTheValueOrOfTheFirstFragment) {
  const TempDir dir;
  const Bytes fragment{0xFF, 0xD8, 0xAB, 0xCD, 0xFF, 0xD9};
  const auto compressed = [&](const Bytes& offsetTable) {
    return test::imageElements().put(
        0x7FE00010, test::DataSetBytes().encapsulated({offsetTable, fragment, {1, 2}}));
  };
  constexpr std::string_view kJpeg = "1.2.840.10008.1.2.4.50";
  const Bytes words{1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6, 0};
  const Bytes bigWords{0, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6};
  struct {
    const char* what;
    Text file;
    Bytes expected;
  } const cases[] = {
      {"explicit", test::imageElements().write(dir, "1"), words},
      {"implicit", test::imageElements(Syntax::ImplicitLittle).write(dir, "2"), words},
      {"big endian", test::imageElements(Syntax::ExplicitBig).write(dir, "3"), bigWords},
      {"empty offset table", compressed({}).write(dir, "4", kJpeg), fragment},
      {"none", ElementMap().us(0x00280010, {1}).write(dir, "6"), {}},
      {"offset table", compressed({0, 0, 0, 0}).write(dir, "5", kJpeg), fragment},
  };
  for (const auto& c : cases) {
    for (const bool deferred : {true, false}) {
      SCOPED_TRACE(std::string(c.what) + (deferred ? " deferred" : " loaded"));
      CDicomUtil util;
      ASSERT_TRUE(util.ReadFile(c.file, deferred));
      EXPECT_EQ(util.HasNoPixelData(), c.expected.empty());
      std::uint64_t offset = 0;
      std::uint32_t lengthBytes = 0;
      ASSERT_EQ(util.GetPixelDataPosition(offset, lengthBytes), !c.expected.empty());
      const Bytes file = test::readBytes(std::filesystem::path(c.file));
      ASSERT_LE(offset + lengthBytes, file.size());
      const auto at = file.begin() + static_cast<std::ptrdiff_t>(offset);
      EXPECT_EQ(Bytes(at, at + lengthBytes), c.expected);
    }
  }
}

TEST(ReadingBytesOfAFile, GivesExactlyWhatWasAskedForOrFails) {
  const TempDir dir;
  test::writeText(dir / "ten", "0123456789");
  test::writeText(dir / "empty", "");
  struct {
    const char* what;
    const char* file;
    std::uint64_t offset;
    std::uint32_t lengthBytes, allocatedBefore;
    bool succeeds;
    std::string expected;
  } const cases[] = {
      {"whole", "ten", 0, 0, 0, true, "0123456789"},
      {"rest", "ten", 7, 0, 0, true, "789"},
      {"part", "ten", 2, 3, 0, true, "234"},
      {"up to the last byte", "ten", 8, 2, 0, true, "89"},
      {"into the caller's buffer", "ten", 2, 5, 4, true, "2345"},
      {"one byte too many", "ten", 8, 3, 0, false, ""},
      {"a length that lies", "ten", 0, 0xFFFFFFFF, 0, false, ""},
      {"behind the end", "ten", 11, 1, 0, false, ""},
      {"far behind the end", "ten", ~0ULL, 1, 0, false, ""},
      {"whole into a used buffer", "ten", 0, 0, 4, false, ""},
      {"whole of nothing", "empty", 0, 0, 0, true, ""},
      {"no file", "eleven", 0, 0, 0, false, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    CBuffer buffer;
    if (c.allocatedBefore != 0) {
      ASSERT_EQ(buffer.Allocate(c.allocatedBefore), 0);
    }
    EXPECT_EQ(
        CDicomUtil::ReadUNCToBuffer(test::WideOf(dir / c.file), c.offset, c.lengthBytes, buffer),
        c.succeeds);
    if (!c.succeeds) continue;
    EXPECT_EQ(std::string(buffer.GetData(), buffer.GetData() + buffer.GetSize()), c.expected);
  }
}

// Every kind of value in a sequence must come out of the copy's encoding as it went in.
TEST(CopyingASequence, KeepsEveryByteWhenTheSourceIsGone) {
  const test::UncheckedValues asInTheProgram;
  const TempDir dir;
  const ElementMap deep = ElementMap().text(0x00080104, "LO", "Caf\xE9").us(0x00280010, {3});
  const ElementMap first =
      ElementMap()
          .text(0x00080008, "CS", "A\\B\\C")
          .text(0x00080023, "DA", "19990229")  // no such day, but it stands in the file
          .text(0x00080033, "TM", "")
          .raw(0x00091010, "UN", {1, 2, 3, 4})
          .text(0x00104000, "LT", "kept \\ whole")
          .us(0x00189219, {0xFFFD}, "SS")
          .us(0x00281101, {1, 0xFFFF, 3})
          .us(0x00280009, {0x0018, 0x1063}, "AT")
          .ul(0x00186044, {7, 0xFFFFFFFF}, "UL")
          .ul(0x00186020, {0xFFFFFFFE}, "SL")
          .raw(0x00189073, "FD", {0, 0, 0, 0, 0, 0, 0xF8, 0x3F})
          .raw(0x00089459, "FL", {0, 0, 0x20, 0xC0})
          .text(0x0040A160, "UT", "text")
          .us(0x50003000, {1, 2}, "OW")
          .sequence(0x0040A168, {deep, deep})
          .sequence(0x0040A730, {});
  ElementMap map;
  map.sequence(0x0040A043, {first, deep}).us(0x00280010, {9});
  const Bytes expected = ElementMap().sequence(0x0040A043, {first, deep}).bytes();

  DcElemList record;
  CDicomUtil target(record);
  {
    CDicomUtil source;
    ASSERT_TRUE(source.ReadFile(map.write(dir, "source.dcm"), true));
    EXPECT_FALSE(source.CopySequence(dcTag(0x0028, 0x0010), target));
    EXPECT_FALSE(source.CopySequence(dcTag(0x0008, 0x1115), target));
    EXPECT_EQ(record.size(), 0U);
    ASSERT_TRUE(source.CopySequence(dcTag(0x0040, 0xA043), target));
  }
  DcElem* copy = record.find(dcTag(0x0040, 0xA043));
  ASSERT_NE(copy, nullptr);
  Bytes encoded(static_cast<std::size_t>(copy->encodedLengthEstimate()));
  std::uint32_t lengthBytes = 0;
  ASSERT_EQ(copy->frame(encoded.data(), lengthBytes, DcUid::ExplicitLittleEndian), kDcOk);
  encoded.resize(lengthBytes);
  EXPECT_EQ(encoded, expected);
}

TEST(UidTexts, AreNullForIdsThatNoDictionaryKnows) {
  EXPECT_STREQ(CDicomUtilDict::UidText(DcUid::ExplicitBigEndian), "1.2.840.10008.1.2.2");
  EXPECT_STREQ(CDicomUtilDict::UidText(DcUid::ExplicitBigEndian), "1.2.840.10008.1.2.2");
  EXPECT_EQ(CDicomUtilDict::UidText(DcUid{99'999}), nullptr);
}

TEST(ValuesAsText, AreDecimalAndNeverArrays) {
  struct {
    const char* what;
    DicomValue value;
    const OLECHAR* expected;
  } const cases[] = {
      {"none", std::monostate{}, OLESTR("")},
      {"text", text(OLESTR("a\u00E9")), OLESTR("a\u00E9")},
      {"byte", std::uint8_t{200}, OLESTR("200")},
      {"negative", std::int16_t{-32768}, OLESTR("-32768")},
      {"largest", std::uint32_t{4294967295}, OLESTR("4294967295")},
      {"float", 0.1F, OLESTR("0.1")},
      {"double", 1.0 / 3, OLESTR("0.333333333333333")},
      {"whole double", 512.0, OLESTR("512")},
      {"exponent", 1e20, OLESTR("1E+20")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Text out = text(OLESTR("before"));
    EXPECT_TRUE(DicomValueToText(c.value, out));
    EXPECT_EQ(out, c.expected);
  }
  Text out;
  EXPECT_FALSE(DicomValueToText(std::vector<std::uint8_t>{1}, out));
}

}  // namespace
}  // namespace quillon
