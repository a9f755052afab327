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

// The line of an element: "ggggeeee", the VR, the VM, its name and what stands between the tags.
std::string line(const std::string& tag, const std::string& vr, const std::string& vm,
                 const std::string& name, const std::string& content = "") {
  return "<tag grp=\"" + tag.substr(0, 4) + "\" element=\"" + tag.substr(4) + "\" VR=\"" + vr +
         "\" VM=\"" + vm + "\" name=\"" + name + "\">" + content + "</tag>\n";
}
std::string values(const std::vector<std::string>& written, std::size_t total) {
  std::string text = "<values count=\"" + std::to_string(written.size()) + "\" total=\"" +
                     std::to_string(total) + "\">\n";
  for (const std::string& value : written) text += "<value>" + value + "</value>\n";
  return text + "</values>\n";
}
std::string values(const std::vector<std::string>& written) {
  return values(written, written.size());
}

const std::string kOpening = "<?xml version=\"1.0\" ?>\n<data-set>\n";
const std::string kVersion = line("00020001", "OB", "1", "fileMetaInformationVersion", "0\\1");
const std::string kBegin =
    kOpening + kVersion +
    line("00020002", "UI", "1", "mediaStorageSopClassUid", "1.2.840.10008.5.1.4.1.1.7") +
    line("00020003", "UI", "1", "mediaStorageSopInstanceUid", "1.2.826.0.1.3680043.2.1545.1");
const std::string kRestOfMetaGroup =
    line("00020012", "UI", "1", "implementationClassUid", "2.25.171263500") +
    line("00020013", "SH", "1", "implementationVersionName", "SAMPLE_OBJECTS") +
    line("00020016", "AE", "0", "sourceApplicationEntityTitle") +
    line("00020100", "UI", "0", "privateInformationCreatorUid") +
    line("00020102", "OB", "0", "privateInformation");
const std::string kEnd = "</data-set>\n";

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
  const std::string begin = kBegin +
                            line("00020010", "UI", "1", "transferSyntaxUid", std::string(uid)) +
                            kRestOfMetaGroup;
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
       line("00280010", "US", "1", "rows", "512")},
      {"empty", ElementMap().text(0x00080050, "SH", ""), kMaxValues,
       line("00080050", "SH", "0", "accessionNumber")},
      {"markup", ElementMap().text(0x00081030, "LO", "a<b & \"c\" > 'd'@e"), kMaxValues,
       line("00081030", "LO", "1", "studyDescription",
            "a&lt;b &amp; &quot;c&quot; &gt; &apos;d&apos;&#64;e")},
      {"texts", ElementMap().text(0x00080008, "CS", "ORIGINAL\\PRIMARY\\<&"), kMaxValues,
       line("00080008", "CS", "3", "imageType", values({"ORIGINAL", "PRIMARY", "&lt;&amp;"}))},
      {"ten values cut to four",
       ElementMap().text(0x00200037, "DS", "0\\1\\2\\3\\4\\5\\6\\7\\8\\9"), 4,
       line("00200037", "DS", "4", "imageOrientationPatient", values({"0", "1", "2", "3"}, 10))},
      {"exactly as many values as are written", ElementMap().us(0x00281101, {256, 0, 16}), 3,
       line("00281101", "US", "3", "redPaletteColorLookupTableDescriptor",
            values({"256", "0", "16"}))},
      {"text with backslashes that is one value", ElementMap().text(0x00104000, "LT", "a\\b\r\nc"),
       kMaxValues, line("00104000", "LT", "1", "patientComments", "a\\b  c")},
      {"bytes, as many as there are", ElementMap().raw(0x00091010, "OB", {1, 2, 254, 0}), 3,
       line("00091010", "OB", "3", "1010", values({"1", "2", "254"}, 4))},
      {"words", ElementMap().us(0x00091010, {0x1234, 0xFF00}, "OW"), kMaxValues,
       line("00091010", "OW", "2", "1010", values({"4660", "65280"}))},
      {"signed numbers", ElementMap().us(0x00189219, {0xFFFD, 3}, "SS"), kMaxValues,
       line("00189219", "SS", "2", "tagAngleSecondAxis", values({"-3", "3"}))},
      {"floats",
       ElementMap().raw(0x00186060, "FL", {0xCD, 0xCC, 0xCC, 0x3D, 0xF9, 0x02, 0x15, 0x50}),
       kMaxValues, line("00186060", "FL", "2", "rWaveTimeVector", values({"0.1", "1E+10"}))},
      {"float run", ElementMap().raw(0x00091013, "OF", {0, 0, 0x80, 0x3F, 0, 0, 0, 0xBF}),
       kMaxValues, line("00091013", "OF", "2", "1013", values({"1", "-0.5"}))},
      {"tag", ElementMap().us(0x00280009, {0x0018, 0x1063}, "AT"), kMaxValues,
       line("00280009", "AT", "1", "frameIncrementPointer", "(0018,1063)")},
      {"private creator and element",
       ElementMap().text(0x00091010, "LO", "x").text(0x00090010, "LO", "MAKER"), kMaxValues,
       line("00090010", "LO", "1", "privateCreatorId", "MAKER") +
           line("00091010", "LO", "1", "1010", "x")},
      {"empty sequence", ElementMap().sequence(0x0040A730, {}), kMaxValues,
       line("0040a730", "SQ", "", "contentSequence", "\n")},
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
    return line("00280100", "US", "1", "bitsAllocated", number);
  };
  struct {
    const char* what;
    ElementMap elements;
    std::string expected;
  } const cases[] = {
      {"words of 12 bits", implicit().us(0x00280100, {12}).us(kPixelDataTag, {0x0102, 3}),
       bits("12") + line("7fe00010", "OW", "2", "pixelData", values({"258", "3"}))},
      {"bytes", implicit().us(0x00280100, {8}).us(kPixelDataTag, {0x0102}),
       bits("8") + line("7fe00010", "OB", "2", "pixelData", values({"2", "1"}))},
      {"not said", implicit().us(kPixelDataTag, {0x0102}),
       line("7fe00010", "OB/OW", "2", "pixelData", values({"2", "1"}))},
      {"a single word", implicit().us(0x00280100, {16}).us(kPixelDataTag, {7}),
       bits("16") + line("7fe00010", "OB/OW", "1", "pixelData", "7")},
      {"signed or not", implicit().us(0x00280120, {0xFFFE}),
       line("00280120", "US", "1", "pixelPaddingValue", "-2")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(dataSetXml(c.elements, kMaxValues, true, test::kImplicitLittleUid, false),
              c.expected);
  }
}

TEST(HeaderXml, TellsOfPixelDataThatItLeavesOut) {
  const auto notLoaded = [](const char* length) {
    return line("7fe00000", "UL", "1", "groupLength", length) +
           line("7fe00010", "OW", "1", "pixelData", "NOT LOADED");
  };
  const ElementMap pixels = ElementMap().us(kPixelDataTag, {1, 2, 3}, "OW");
  const ElementMap nested = ElementMap().us(kPixelDataTag, {1, 2}, "OW");
  struct {
    const char* what;
    ElementMap elements;
    std::string expected;
    bool deferred = false;
  } const cases[] = {
      {"without a group length", pixels, notLoaded("6")},
      {"with one", ElementMap(pixels).ul(0x7FE00000, {14}), notLoaded("14")},
      {"in each list on its own", ElementMap(pixels).sequence(0x0040A730, {nested}),
       line("0040a730", "SQ", "", "contentSequence", "\n<item>\n" + notLoaded("4") + "</item>\n") +
           notLoaded("6")},
      // What was deferred has no VR of its own: the dictionary leaves it open.
      {"deferred", ElementMap(pixels).us(0x00280100, {16}),
       line("00280100", "US", "1", "bitsAllocated", "16") + notLoaded("6"), true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(dataSetXml(c.elements, kMaxValues, false, test::kExplicitLittleUid, c.deferred),
              c.expected);
  }
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
  EXPECT_EQ(utf8(out), kOpening + kVersion +
                           line("00020102", "OB", "2", "privateInformation", values({"5", "6"})) +
                           kEnd);
}

TEST(HeaderXml, WritesAllThatTheMetaGroupOfAFileHolds) {
  // Group 0002 begins with its length: what is put at its end is counted there.
  constexpr std::size_t kLengthAt = 140;
  Bytes file = test::dicomFile(ElementMap().us(0x00280010, {1}).bytes(), ElementMap::kSopClass,
                               ElementMap::kSopInstance, test::kExplicitLittleUid);
  const Bytes more = test::DataSetBytes()
                         .text(0x00020016, "AE", "SENDER")
                         .text(0x00020100, "UI", "1.2.3.4")
                         .raw(0x00020102, "OB", {5, 6})
                         .take();
  const std::size_t length = file[kLengthAt] + (std::size_t{file[kLengthAt + 1]} << 8);
  file.insert(file.begin() + static_cast<std::ptrdiff_t>(kLengthAt + 4 + length), more.begin(),
              more.end());
  file[kLengthAt] = static_cast<std::uint8_t>(length + more.size());
  file[kLengthAt + 1] = static_cast<std::uint8_t>((length + more.size()) >> 8);
  const TempDir dir;
  test::writeBytes(dir / "private.dcm", file);
  CDicomUtil util;
  Text out;
  ASSERT_TRUE(util.ReadFile(test::WideOf(dir / "private.dcm"), true));
  ASSERT_TRUE(util.GetHeaderXml(out, kMaxValues, false));
  const std::string expected =
      line("00020016", "AE", "1", "sourceApplicationEntityTitle", "SENDER") +
      line("00020100", "UI", "1", "privateInformationCreatorUid", "1.2.3.4") +
      line("00020102", "OB", "2", "privateInformation", values({"5", "6"})) +
      line("00280010", "US", "1", "rows", "1") + kEnd;
  EXPECT_TRUE(utf8(out).ends_with(expected)) << utf8(out);
}

// No file holds one: its VR is one that only the toolkit's own callers can give an element.
TEST(HeaderXml, EndsAtARunOfBytesThatHasOtherEntries) {
  DcElemList list;
  auto element = std::make_unique<DcElem>(dcTag(0x0009, 0x1010), DcVr::XL);
  const std::uint8_t longs[8] = {1, 0, 0, 0, 2};
  ASSERT_EQ(element->parseVal(longs, sizeof longs, DcUid::ExplicitLittleEndian), kDcOk);
  list.add(std::move(element));
  CDicomUtil util(list);
  Text out;
  EXPECT_FALSE(util.GetHeaderXml(out, kMaxValues, false));
  EXPECT_EQ(utf8(out).find("1010"), std::string::npos);
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

// The names that people know elements and UIDs by have a test of their own.
std::string withoutNames(std::string xml) {
  for (const std::string begin : {" title=\"", " meaning=\""}) {
    for (std::size_t at = xml.find(begin); at != std::string::npos; at = xml.find(begin, at)) {
      xml.erase(at, xml.find('"', at + begin.size()) + 1 - at);
    }
  }
  return xml;
}

// With what the field does today: texts in their character set, and of the meta group what the file
// has, which here is as little as a file can have.
std::string practiceXml(const ElementMap& elements, const HeaderOptions& options,
                        std::uint32_t maxValues = kMaxValues) {
  const TempDir dir;
  CDicomUtil util;
  Text out;
  EXPECT_TRUE(util.ReadFile(elements.write(dir, "object.dcm"), true));
  EXPECT_TRUE(util.GetHeaderXml(out, maxValues, false, options));
  std::string xml = withoutNames(utf8(out));
  const std::string meta =
      kBegin.substr(kOpening.size()) +
      line("00020010", "UI", "1", "transferSyntaxUid", std::string(test::kExplicitLittleUid)) +
      kRestOfMetaGroup.substr(0, kRestOfMetaGroup.find("<tag grp=\"0002\" element=\"0016\""));
  const std::size_t at = xml.find(meta);
  EXPECT_NE(at, std::string::npos) << xml;
  EXPECT_TRUE(xml.ends_with(kEnd)) << xml;
  if (at == std::string::npos) return xml;
  xml.erase(at, meta.size());
  return xml.substr(0, xml.size() - kEnd.size());
}

std::string begunWith(const std::string& attributes) {
  return "<?xml version=\"1.0\" ?>\n<data-set " + attributes + ">\n";
}

TEST(HeaderXml, ReadsTextsInTheCharacterSetOfTheirDataSet) {
  const test::UncheckedValues asInTheProgram;
  constexpr std::uint32_t kCharacterSet = 0x00080005;
  constexpr std::uint32_t kName = 0x00100010;
  constexpr std::uint32_t kSequence = 0x0040A730;
  const auto declared = [](const char* vm, const std::string& content) {
    return line("00080005", "CS", vm, "specificCharacterSet", content);
  };
  const auto name = [](const std::string& content) {
    return line("00100010", "PN", "1", "patientsName", content);
  };
  const auto itemOf = [](const std::string& content) {
    return line("0040a730", "SQ", "", "contentSequence", "\n<item>\n" + content + "</item>\n");
  };
  const ElementMap latin = ElementMap().text(kCharacterSet, "CS", "ISO_IR 100");
  const ElementMap greek = ElementMap().text(kCharacterSet, "CS", "ISO_IR 126");
  const ElementMap nothing = ElementMap().text(kCharacterSet, "CS", "");
  const auto named = [&](ElementMap elements, std::string_view bytes) {
    return elements.text(kName, "PN", bytes);
  };
  const HeaderOptions practice{true, {}};
  const std::string kLatin = begunWith("charset=\"ISO_IR 100\"");
  const std::string kNone = begunWith("charset=\"\" code-page=\"1252\"");
  struct {
    const char* what;
    ElementMap elements;
    HeaderOptions options;
    std::string expected;
    std::uint32_t maxValues = kMaxValues;
  } const cases[] = {
      {"declared", named(latin, "B\xE9<"), practice,
       kLatin + declared("1", "ISO_IR 100") + name("Bé&lt;")},
      {"several terms",
       named(ElementMap().text(kCharacterSet, "CS", "\\ISO 2022 IR 87"), "A=\x1B$B;3ED\x1B(B"),
       practice,
       begunWith("charset=\"\\ISO 2022 IR 87\"") + declared("2", values({"", "ISO 2022 IR 87"})) +
           name("A=山田")},
      {"not declared", named(ElementMap(), "B\xE9\x80"), practice, kNone + name("Bé€")},
      {"not known", named(ElementMap().text(kCharacterSet, "CS", "A<\t\"\\B"), "B\xE9"), practice,
       begunWith("charset=\"A&lt; &quot;\\B\" code-page=\"1252\"") +
           declared("2", values({"A&lt;\t&quot;", "B"})) + name("Bé")},
      {"told",
       named(latin, "\xC3\xA9"),
       {true, "ISO_IR 192"},
       begunWith("charset=\"ISO_IR 192\"") + declared("1", "ISO_IR 100") + name("é")},
      {"told, of items too",
       ElementMap(latin).sequence(kSequence, {named(greek, "\xC3\xA9")}),
       {true, "ISO_IR 192"},
       begunWith("charset=\"ISO_IR 192\"") + declared("1", "ISO_IR 100") +
           itemOf(declared("1", "ISO_IR 126") + name("é"))},
      {"an item's own, and the data set's again",
       ElementMap(latin)
           .sequence(0x00081140,
                     {named(greek, "\xE1").sequence(kSequence, {named(ElementMap(), "\xE1")})})
           .text(kName, "PN", "\xE1"),
       practice,
       kLatin + declared("1", "ISO_IR 100") +
           line("00081140", "SQ", "", "referencedImageSequence",
                "\n<item>\n" + declared("1", "ISO_IR 126") + name("α") + itemOf(name("α")) +
                    "</item>\n") +
           name("á")},
      {"an item that says nothing", ElementMap(latin).sequence(kSequence, {named(nothing, "\xE1")}),
       practice,
       kLatin + declared("1", "ISO_IR 100") +
           itemOf(line("00080005", "CS", "0", "specificCharacterSet") + name("á"))},
      {"several values, some of them written",
       ElementMap(latin).text(0x00081070, "PN", " \xC4 \\b\\\xE9\\\\d"), practice,
       kLatin + declared("1", "ISO_IR 100") +
           line("00081070", "PN", "3", "operatorsName", values({"Ä", "b", "é"}, 5)),
       3},
      {"a backslash in a character",
       ElementMap().text(kCharacterSet, "CS", "GBK").text(kName, "PN", "A^\xD5\x5C "), practice,
       begunWith("charset=\"GBK\"") + declared("1", "GBK") + name("A^誠")},
      {"lines", ElementMap(latin).text(0x00104000, "LT", " \xE9\\b\r\nc "), practice,
       kLatin + declared("1", "ISO_IR 100") +
           line("00104000", "LT", "1", "patientComments", "é\\b  c")},
      {"long text", ElementMap(latin).text(0x0040A160, "UT", "\xE9\\b "), practice,
       kLatin + declared("1", "ISO_IR 100") + line("0040a160", "UT", "1", "textValue", "é\\b")},
      {"no text for people",
       ElementMap().text(kCharacterSet, "CS", "ISO_IR 192").text(0x00080060, "CS", "\xC3\xA9"),
       practice,
       begunWith("charset=\"ISO_IR 192\"") + declared("1", "ISO_IR 192") +
           line("00080060", "CS", "1", "modality", "Ã©")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(practiceXml(c.elements, c.options, c.maxValues), c.expected);
  }
}

// What a user asks for is done; the rest of the header stays as it is.
TEST(HeaderXml, ReadsTextsAsToldWithoutTheFieldsPractice) {
  const TempDir dir;
  CDicomUtil util;
  Text out;
  ASSERT_TRUE(util.ReadFile(
      ElementMap().text(0x00100010, "PN", "\xC3\xA9").write(dir, "object.dcm"), true));
  ASSERT_TRUE(util.GetHeaderXml(out, kMaxValues, false, {false, "ISO_IR 192"}));
  EXPECT_EQ(
      utf8(out),
      begunWith("charset=\"ISO_IR 192\"") + kBegin.substr(kOpening.size()) +
          line("00020010", "UI", "1", "transferSyntaxUid", std::string(test::kExplicitLittleUid)) +
          kRestOfMetaGroup + line("00100010", "PN", "1", "patientsName", "é") + kEnd);
}

TEST(HeaderXml, LeavesOutWhatTheMetaGroupOfAFileLacks) {
  const Bytes dataSet = ElementMap(Syntax::ImplicitLittle).us(0x00280010, {1}).bytes();
  const std::string rows = line("00280010", "US", "1", "rows", "1");
  // A group with one element that has a value and one that has none; its length stands first.
  const Bytes group = test::DataSetBytes()
                          .text(0x00020010, "UI", "1.2.840.10008.1.2")
                          .text(0x00020016, "AE", "")
                          .take();
  Bytes file(128, 0);
  for (const char c : {'D', 'I', 'C', 'M'}) file.push_back(static_cast<std::uint8_t>(c));
  const Bytes length =
      test::DataSetBytes().ul(0x00020000, {static_cast<std::uint32_t>(group.size())}).take();
  for (const Bytes* part : {&length, &group, &dataSet}) {
    file.insert(file.end(), part->begin(), part->end());
  }
  const struct {
    const char* what;
    Bytes bytes;
    std::string meta;
  } cases[] = {
      {"little", file,
       line("00020010", "UI", "1", "transferSyntaxUid", "1.2.840.10008.1.2") +
           line("00020016", "AE", "0", "sourceApplicationEntityTitle")},
      {"none",
       ElementMap(Syntax::ImplicitLittle)
           .text(0x00080016, "UI", ElementMap::kSopClass)
           .text(0x00081030, "LO", std::string(200, 'x'))
           .us(0x00280010, {1})
           .bytes(),
       line("00080016", "UI", "1", "sopClassUid", std::string(ElementMap::kSopClass)) +
           line("00081030", "LO", "1", "studyDescription", std::string(200, 'x'))},
  };
  const test::UncheckedValues asInTheProgram;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const TempDir dir;
    test::writeBytes(dir / "a.dcm", c.bytes);
    CDicomUtil util;
    Text out;
    ASSERT_TRUE(util.ReadFile(test::WideOf(dir / "a.dcm"), true));
    ASSERT_TRUE(util.GetHeaderXml(out, kMaxValues, false, {true, {}}));
    std::string expected = begunWith("charset=\"\" code-page=\"1252\"");
    expected.append(c.meta).append(rows).append(kEnd);
    EXPECT_EQ(withoutNames(utf8(out)), expected);
  }
}

TEST(HeaderXml, NamesElementsAndUidsAsPeopleKnowThem) {
  const TempDir dir;
  const Text path = ElementMap()
                        .text(0x00080016, "UI", "1.2.840.10008.5.1.4.1.1.88.67")
                        .text(0x00080018, "UI", "2.25.1")
                        .text(0x0008001A, "UI", "1.2.840.10008.1.2\\1.2.840.10008.1.2.1")
                        .text(0x00091001, "UN", "x")
                        .text(0x00090010, "LO", "MAKER")
                        .text(0x00100010, "PN", "DOE")
                        .us(0x00181153, {1})
                        .write(dir, "object.dcm");
  const struct {
    const char* tag;
    std::string names;
  } cases[] = {
      {"0008\" element=\"0016",
       R"( title="SOP Class UID" meaning="X-Ray Radiation Dose SR Storage")"},
      {"0008\" element=\"0018", R"( title="SOP Instance UID")"},
      {"0008\" element=\"001a", R"( title="Related General SOP Class UID")"},
      {"0009\" element=\"0010", R"( title="Private Creator")"},
      {"0009\" element=\"1001", ""},
      {"0010\" element=\"0010", R"( title="Patient&apos;s Name")"},
      {"0018\" element=\"1153", R"( title="Exposure in µAs")"},
  };
  for (const bool isPractice : {true, false}) {
    CDicomUtil util;
    Text out;
    ASSERT_TRUE(util.ReadFile(path, true));
    ASSERT_TRUE(util.GetHeaderXml(out, kMaxValues, false, {isPractice, {}}));
    const std::string xml = utf8(out);
    for (const auto& c : cases) {
      SCOPED_TRACE(c.tag);
      const std::size_t at = xml.find(std::string("<tag grp=\"") + c.tag);
      ASSERT_NE(at, std::string::npos);
      const std::string tag = xml.substr(at, xml.find('>', at) - at);
      const std::size_t name = tag.find(" name=\"") + 7;
      const std::string behind = tag.substr(tag.find('"', name) + 1);
      EXPECT_EQ(behind, isPractice ? c.names : "");
    }
  }
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
