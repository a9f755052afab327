#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "dicom/elem_sq.h"
#include "dicomobjects/dicom_util.h"
#include "dicomobjects/xml_text.h"
#include "element_map.h"
#include "foundation/text.h"
#include "support/text.h"

namespace quillon {
namespace {

using test::Bytes;
using test::ElementMap;
using test::Syntax;
using test::TempDir;

constexpr std::uint32_t kMaxValues = 100;
constexpr std::uint32_t kPixelDataTag = 0x7FE00010;

const std::string kBegin =
    "<?xml version=\"1.0\" ?>\n<data-set>\n"
    "<tag grp=\"0002\" element=\"0001\" VR=\"OB\" VM=\"1\" name=\"fileMetaInformationVersion\">"
    "0\\1</tag>\n"
    "<tag grp=\"0002\" element=\"0002\" VR=\"UI\" VM=\"1\" name=\"mediaStorageSopClassUid\">"
    "1.2.840.10008.5.1.4.1.1.7</tag>\n"
    "<tag grp=\"0002\" element=\"0003\" VR=\"UI\" VM=\"1\" name=\"mediaStorageSopInstanceUid\">"
    "1.2.826.0.1.3680043.2.1545.1</tag>\n";
const std::string kRestOfMetaGroup =
    "<tag grp=\"0002\" element=\"0012\" VR=\"UI\" VM=\"1\" name=\"implementationClassUid\">"
    "2.25.171263500</tag>\n"
    "<tag grp=\"0002\" element=\"0013\" VR=\"SH\" VM=\"1\" name=\"implementationVersionName\">"
    "SAMPLE_OBJECTS</tag>\n"
    "<tag grp=\"0002\" element=\"0016\" VR=\"AE\" VM=\"0\" name=\"sourceApplicationEntityTitle\">"
    "</tag>\n"
    "<tag grp=\"0002\" element=\"0100\" VR=\"UI\" VM=\"0\" name=\"privateInformationCreatorUid\">"
    "</tag>\n"
    "<tag grp=\"0002\" element=\"0102\" VR=\"OB\" VM=\"0\" name=\"privateInformation\"></tag>\n";
const std::string kEnd = "</data-set>\n";

std::string transferSyntaxLine(std::string_view uid) {
  return R"(<tag grp="0002" element="0010" VR="UI" VM="1" name="transferSyntaxUid">)" +
         std::string(uid) + "</tag>\n";
}

std::string utf8(const Text& text) { return NarrowText(text, CP_UTF8); }

// Of the file with these elements, without the lines of the meta group and those around them.
std::string dataSetXml(const ElementMap& elements, std::uint32_t maxValues, bool includePixelData,
                       std::string_view uid = test::kExplicitLittleUid, bool deferred = true) {
  const TempDir dir;
  CDicomUtil util;
  Text out;
  EXPECT_TRUE(util.ReadFile(elements.write(dir, "object.dcm", uid), deferred));
  EXPECT_TRUE(util.GetHeaderXml(out, maxValues, includePixelData));
  std::string xml = utf8(out);
  const std::string begin = kBegin + transferSyntaxLine(uid) + kRestOfMetaGroup;
  EXPECT_TRUE(xml.starts_with(begin)) << xml;
  EXPECT_TRUE(xml.ends_with(kEnd)) << xml;
  return xml.size() < begin.size() + kEnd.size()
             ? xml
             : xml.substr(begin.size(), xml.size() - begin.size() - kEnd.size());
}

TEST(HeaderXml, WritesEachValueAsItsVrAsksFor) {
  const test::UncheckedValues asInTheProgram;
  struct {
    const char* what;
    ElementMap elements;
    std::uint32_t maxValues;
    std::string expected;
  } const cases[] = {
      {"number", ElementMap().us(0x00280010, {512}), kMaxValues,
       "<tag grp=\"0028\" element=\"0010\" VR=\"US\" VM=\"1\" name=\"rows\">512</tag>\n"},
      {"empty", ElementMap().text(0x00080050, "SH", ""), kMaxValues,
       "<tag grp=\"0008\" element=\"0050\" VR=\"SH\" VM=\"0\" name=\"accessionNumber\"></tag>\n"},
      {"markup", ElementMap().text(0x00081030, "LO", "a<b & \"c\" > 'd'@e"), kMaxValues,
       "<tag grp=\"0008\" element=\"1030\" VR=\"LO\" VM=\"1\" name=\"studyDescription\">"
       "a&lt;b &amp; &quot;c&quot; &gt; &apos;d&apos;&#64;e</tag>\n"},
      {"texts", ElementMap().text(0x00080008, "CS", "ORIGINAL\\PRIMARY\\<&"), kMaxValues,
       "<tag grp=\"0008\" element=\"0008\" VR=\"CS\" VM=\"3\" name=\"imageType\">"
       "<values count=\"3\" total=\"3\">\n<value>ORIGINAL</value>\n<value>PRIMARY</value>\n"
       "<value>&lt;&amp;</value>\n</values>\n</tag>\n"},
      {"ten values cut to four",
       ElementMap().text(0x00200037, "DS", "0\\1\\2\\3\\4\\5\\6\\7\\8\\9"), 4,
       "<tag grp=\"0020\" element=\"0037\" VR=\"DS\" VM=\"4\" name=\"imageOrientationPatient\">"
       "<values count=\"4\" total=\"10\">\n<value>0</value>\n<value>1</value>\n<value>2</value>\n"
       "<value>3</value>\n</values>\n</tag>\n"},
      {"exactly as many values as are written", ElementMap().us(0x00281101, {256, 0, 16}), 3,
       "<tag grp=\"0028\" element=\"1101\" VR=\"US\" VM=\"3\" "
       "name=\"redPaletteColorLookupTableDescriptor\"><values count=\"3\" total=\"3\">\n"
       "<value>256</value>\n<value>0</value>\n<value>16</value>\n</values>\n</tag>\n"},
      {"text with backslashes that is one value", ElementMap().text(0x00104000, "LT", "a\\b\r\nc"),
       kMaxValues,
       "<tag grp=\"0010\" element=\"4000\" VR=\"LT\" VM=\"1\" name=\"patientComments\">"
       "a\\b  c</tag>\n"},
      {"bytes, as many as there are", ElementMap().raw(0x00091010, "OB", {1, 2, 254, 0}), 3,
       "<tag grp=\"0009\" element=\"1010\" VR=\"OB\" VM=\"3\" name=\"1010\">"
       "<values count=\"3\" total=\"4\">\n<value>1</value>\n<value>2</value>\n<value>254</value>\n"
       "</values>\n</tag>\n"},
      {"words", ElementMap().us(0x00091010, {0x1234, 0xFF00}, "OW"), kMaxValues,
       "<tag grp=\"0009\" element=\"1010\" VR=\"OW\" VM=\"2\" name=\"1010\">"
       "<values count=\"2\" total=\"2\">\n<value>4660</value>\n<value>65280</value>\n</values>\n"
       "</tag>\n"},
      {"signed numbers", ElementMap().us(0x00189219, {0xFFFD, 3}, "SS"), kMaxValues,
       "<tag grp=\"0018\" element=\"9219\" VR=\"SS\" VM=\"2\" name=\"tagAngleSecondAxis\">"
       "<values count=\"2\" total=\"2\">\n<value>-3</value>\n<value>3</value>\n</values>\n"
       "</tag>\n"},
      {"floats",
       ElementMap().raw(0x00186060, "FL", {0xCD, 0xCC, 0xCC, 0x3D, 0xF9, 0x02, 0x15, 0x50}),
       kMaxValues,
       "<tag grp=\"0018\" element=\"6060\" VR=\"FL\" VM=\"2\" name=\"rWaveTimeVector\">"
       "<values count=\"2\" total=\"2\">\n<value>0.1</value>\n<value>1E+10</value>\n</values>\n"
       "</tag>\n"},
      {"float run", ElementMap().raw(0x00091013, "OF", {0, 0, 0x80, 0x3F, 0, 0, 0, 0xBF}),
       kMaxValues,
       "<tag grp=\"0009\" element=\"1013\" VR=\"OF\" VM=\"2\" name=\"1013\">"
       "<values count=\"2\" total=\"2\">\n<value>1</value>\n<value>-0.5</value>\n</values>\n"
       "</tag>\n"},
      {"tag", ElementMap().us(0x00280009, {0x0018, 0x1063}, "AT"), kMaxValues,
       "<tag grp=\"0028\" element=\"0009\" VR=\"AT\" VM=\"1\" name=\"frameIncrementPointer\">"
       "(0018,1063)</tag>\n"},
      {"private creator and element",
       ElementMap().text(0x00091010, "LO", "x").text(0x00090010, "LO", "MAKER"), kMaxValues,
       "<tag grp=\"0009\" element=\"0010\" VR=\"LO\" VM=\"1\" name=\"privateCreatorId\">MAKER"
       "</tag>\n"
       "<tag grp=\"0009\" element=\"1010\" VR=\"LO\" VM=\"1\" name=\"1010\">x</tag>\n"},
      {"empty sequence", ElementMap().sequence(0x0040A730, {}), kMaxValues,
       "<tag grp=\"0040\" element=\"a730\" VR=\"SQ\" VM=\"\" name=\"contentSequence\">\n</tag>\n"},
      {"nested sequences start every line at the margin",
       ElementMap().sequence(
           0x0040A730,
           {ElementMap().sequence(0x0040A168, {ElementMap().text(0x00080104, "LO", "x")}),
            ElementMap()}),
       kMaxValues,
       "<tag grp=\"0040\" element=\"a730\" VR=\"SQ\" VM=\"\" name=\"contentSequence\">\n<item>\n"
       "<tag grp=\"0040\" element=\"a168\" VR=\"SQ\" VM=\"\" name=\"conceptCodeSequence\">\n"
       "<item>\n<tag grp=\"0008\" element=\"0104\" VR=\"LO\" VM=\"1\" name=\"codeMeaning\">x"
       "</tag>\n</item>\n</tag>\n</item>\n<item>\n</item>\n</tag>\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(dataSetXml(c.elements, c.maxValues, false), c.expected);
  }
}

// Of the VRs that the dictionary leaves open, the bits of the image decide one.
TEST(HeaderXml, NamesTheVrsThatImplicitDataSetsLeaveOpen) {
  const auto implicit = [] { return ElementMap(Syntax::ImplicitLittle); };
  const auto bits = [](const char* number) {
    return R"(<tag grp="0028" element="0100" VR="US" VM="1" name="bitsAllocated">)" +
           std::string(number) + "</tag>\n";
  };
  const auto pixels = [](const char* vr, const char* vm, const std::string& content) {
    return R"(<tag grp="7fe0" element="0010" VR=")" + std::string(vr) + "\" VM=\"" + vm +
           "\" name=\"pixelData\">" + content + "</tag>\n";
  };
  struct {
    const char* what;
    ElementMap elements;
    std::string expected;
  } const cases[] = {
      {"words of 12 bits", implicit().us(0x00280100, {12}).us(kPixelDataTag, {0x0102, 3}),
       bits("12") + pixels("OW", "2",
                           "<values count=\"2\" total=\"2\">\n<value>258</value>\n<value>3</value>"
                           "\n</values>\n")},
      {"bytes", implicit().us(0x00280100, {8}).us(kPixelDataTag, {0x0102}),
       bits("8") + pixels("OB", "2",
                          "<values count=\"2\" total=\"2\">\n<value>2</value>\n<value>1</value>\n"
                          "</values>\n")},
      {"not said", implicit().us(kPixelDataTag, {0x0102}),
       pixels("OB/OW", "2",
              "<values count=\"2\" total=\"2\">\n<value>2</value>\n<value>1</value>\n"
              "</values>\n")},
      {"a single word", implicit().us(0x00280100, {16}).us(kPixelDataTag, {7}),
       bits("16") + pixels("OB/OW", "1", "7")},
      {"signed or not", implicit().us(0x00280120, {0xFFFE}),
       "<tag grp=\"0028\" element=\"0120\" VR=\"US\" VM=\"1\" name=\"pixelPaddingValue\">-2"
       "</tag>\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(dataSetXml(c.elements, kMaxValues, true, test::kImplicitLittleUid, false),
              c.expected);
  }
}

TEST(HeaderXml, TellsOfPixelDataThatItLeavesOut) {
  const std::string notLoaded =
      "<tag grp=\"7fe0\" element=\"0010\" VR=\"OW\" VM=\"1\" name=\"pixelData\">NOT LOADED"
      "</tag>\n";
  const auto length = [](const char* bytes) {
    return R"(<tag grp="7fe0" element="0000" VR="UL" VM="1" name="groupLength">)" +
           std::string(bytes) + "</tag>\n";
  };
  const ElementMap nested = ElementMap().us(kPixelDataTag, {1, 2}, "OW");
  const std::string nestedXml =
      "<tag grp=\"0040\" element=\"a730\" VR=\"SQ\" VM=\"\" name=\"contentSequence\">\n<item>\n" +
      length("4") + notLoaded + "</item>\n</tag>\n";
  struct {
    const char* what;
    ElementMap elements;
    std::string expected;
  } const cases[] = {
      {"without a group length", ElementMap().us(kPixelDataTag, {1, 2, 3}, "OW"),
       length("6") + notLoaded},
      {"with one", ElementMap().ul(0x7FE00000, {14}).us(kPixelDataTag, {1, 2, 3}, "OW"),
       length("14") + notLoaded},
      {"in each list on its own",
       ElementMap().sequence(0x0040A730, {nested}).us(kPixelDataTag, {1, 2, 3}, "OW"),
       nestedXml + length("6") + notLoaded},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(dataSetXml(c.elements, kMaxValues, false, test::kExplicitLittleUid, false),
              c.expected);
  }
  // What was deferred has no VR of its own: the dictionary leaves it open.
  EXPECT_EQ(dataSetXml(ElementMap().us(0x00280100, {16}).us(kPixelDataTag, {1, 2, 3}, "OW"),
                       kMaxValues, false),
            "<tag grp=\"0028\" element=\"0100\" VR=\"US\" VM=\"1\" name=\"bitsAllocated\">16"
            "</tag>\n" +
                length("6") + notLoaded);
}

TEST(HeaderXml, TakesTheMetaGroupFromTheDataSetThatHoldsIt) {
  DcElemList list;
  list.add(
      std::make_unique<DcElem>(dcTag(0x0002, 0x0001), "\0\1", 2U, DcUid::ExplicitLittleEndian));
  list.add(
      std::make_unique<DcElem>(dcTag(0x0002, 0x0102), "\5\6", 2U, DcUid::ExplicitLittleEndian));
  CDicomUtil util(list);
  Text out;
  ASSERT_TRUE(util.GetHeaderXml(out, kMaxValues, false));
  EXPECT_EQ(utf8(out),
            "<?xml version=\"1.0\" ?>\n<data-set>\n"
            "<tag grp=\"0002\" element=\"0001\" VR=\"OB\" VM=\"1\" "
            "name=\"fileMetaInformationVersion\">0\\1</tag>\n"
            "<tag grp=\"0002\" element=\"0102\" VR=\"OB\" VM=\"2\" name=\"privateInformation\">"
            "<values count=\"2\" total=\"2\">\n<value>5</value>\n<value>6</value>\n</values>\n"
            "</tag>\n</data-set>\n");
}

TEST(HeaderXml, FailsWithoutADataSetOrAValue) {
  CDicomUtil unread;
  Text out = OLESTR("before");
  EXPECT_FALSE(unread.GetHeaderXml(out, kMaxValues, false));
  EXPECT_TRUE(out.empty());

  const TempDir dir;
  const Text path = test::imageElements().write(dir, "gone.dcm");
  CDicomUtil util;
  ASSERT_TRUE(util.ReadFile(path, true));
  std::filesystem::remove(std::filesystem::path(path));
  EXPECT_FALSE(util.GetHeaderXml(out, kMaxValues, true));
  EXPECT_TRUE(util.GetHeaderXml(out, kMaxValues, false));
}

TEST(EscapedText, HoldsNothingThatXmlCannotCarry) {
  struct {
    const char* what;
    Text text;
    Text expected;
    std::size_t replacements;
  } const cases[] = {
      {"nothing to do", OLESTR("Caf\u00E9 \u0085 \t\x7F\\"), OLESTR("Caf\u00E9 \u0085 \t\x7F\\"),
       0},
      {"entities are not escaped twice", OLESTR("&lt;@"), OLESTR("&amp;lt;&#64;"), 2},
      {"every character with a name", OLESTR("&><\"'@\r\f\x1B\n"),
       OLESTR("&amp;&gt;&lt;&quot;&apos;&#64;    "), 10},
      {"control characters", Text(OLESTR("a\0b\x01\x0B\x1F"), 6),
       OLESTR("a\u2400b\u2401\u240B\u241F"), 4},
      {"a pair", OLESTR("\U0001F4C0"), OLESTR("\U0001F4C0"), 0},
      {"halves of pairs", Text{OLESTR('a'), 0xDC80, OLESTR('b'), 0xD83D}, OLESTR("a\uFFFDb\uFFFD"),
       2},
      {"halves beside a pair", Text{0xD83D, 0xD83D, 0xDCC0, 0xDCC0},
       OLESTR("\uFFFD\U0001F4C0\uFFFD"), 2},
      {"characters that are none", Text{0xFFFD, 0xFFFE, 0xFFFF}, OLESTR("\uFFFD\uFFFD\uFFFD"), 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Text text = c.text;
    EXPECT_EQ(EscapeXmlText(text), c.replacements);
    EXPECT_EQ(text, c.expected);
  }
}

// Whole headers of real files, as they were looked through once. QUILLON_GOLDEN_UPDATE=1 writes
// them anew.
TEST(HeaderXml, OfRealFilesIsThatOfTheGoldenFiles) {
  if (test::pydicomData().empty()) GTEST_SKIP() << "python3-pydicom is not installed";
  const test::UncheckedValues asInTheProgram;
  for (const char* name : {"CT_small", "reportsi", "nested_priv_SQ", "MR_small_jp2klossless"}) {
    SCOPED_TRACE(name);
    CDicomUtil util;
    Text out;
    const auto file = test::pydicomData() / "test_files" / (std::string(name) + ".dcm");
    ASSERT_TRUE(util.ReadFile(test::WideOf(file), true));
    ASSERT_TRUE(util.GetHeaderXml(out, kMaxValues, false));
    const auto golden = std::filesystem::path(QUILLON_GOLDEN_DIR) / (std::string(name) + ".xml");
    if (std::getenv("QUILLON_GOLDEN_UPDATE") != nullptr) test::writeText(golden, utf8(out));
    const Bytes expected = test::readBytes(golden);
    EXPECT_EQ(utf8(out), std::string(expected.begin(), expected.end()));
  }
}

}  // namespace
}  // namespace quillon
