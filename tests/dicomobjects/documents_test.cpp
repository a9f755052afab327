#include "dicomobjects/documents.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "element_map.h"

namespace quillon {
namespace {

using test::ElementMap;
using test::TempDir;

ElementMap keyObject() {
  ElementMap map;
  map.text(0x00080023, "DA", "20090305").text(0x00080033, "TM", "1030").text(0x00200013, "IS", "4");
  return map;
}

ElementMap presentation() {
  ElementMap map;
  map.text(0x00200013, "IS", "5")
      .text(0x00700080, "CS", "LABEL")
      .text(0x00700081, "LO", "Described")
      .text(0x00700082, "DA", "20090306")
      .text(0x00700083, "TM", "1100")
      .text(0x00700084, "PN", "Maker^M");
  return map;
}

ElementMap report(std::string_view verification) {
  ElementMap code;
  code.text(0x00080100, "SH", "121060")
      .text(0x00080102, "SH", "DCM")
      .text(0x00080104, "LO", "History");
  ElementMap map;
  map.text(0x00080023, "DA", "20090305")
      .text(0x00080033, "TM", "1030")
      .text(0x00200013, "IS", "6")
      .text(0x0040A030, "DT", "20090307120000")
      .sequence(0x0040A043, {code})
      .text(0x0040A491, "CS", "COMPLETE")
      .text(0x0040A493, "CS", verification);
  return map;
}

template <typename Document>
class Reader {
 public:
  bool read(const ElementMap& map) {
    const TempDir directory;
    CDicomUtil util;
    EXPECT_TRUE(util.ReadFile(map.write(directory, "document.dcm"), true));
    return document.ReadFromDicom(util);
  }
  Document document;
};

TEST(KeyObjectDocuments, AreRead) {
  Reader<CKeyObjectDocument> reader;
  ASSERT_TRUE(reader.read(keyObject()));
  EXPECT_EQ(reader.document.InstanceNumber(), OLESTR("4"));
  EXPECT_EQ(reader.document.ContentDate(), OLESTR("20090305"));
  EXPECT_EQ(reader.document.ContentTime(), OLESTR("1030"));
}

TEST(PresentationStates, AreReadWithNamesForWhatIsEmpty) {
  Reader<CPresentation> reader;
  ASSERT_TRUE(reader.read(presentation()));
  EXPECT_EQ(reader.document.InstanceNumber(), OLESTR("5"));
  EXPECT_EQ(reader.document.ContentLabel(), OLESTR("LABEL"));
  EXPECT_EQ(reader.document.ContentDescription(), OLESTR("Described"));
  EXPECT_EQ(reader.document.ContentCreatorName(), OLESTR("Maker^M"));
  EXPECT_EQ(reader.document.CreationDate(), OLESTR("20090306"));
  EXPECT_EQ(reader.document.CreationTime(), OLESTR("1100"));

  ASSERT_TRUE(reader.read(presentation().text(0x00700081, "LO", "").text(0x00700084, "PN", "")));
  EXPECT_EQ(reader.document.ContentDescription(), OLESTR("Unknown"));
  EXPECT_EQ(reader.document.ContentCreatorName(), OLESTR("Unknown^Unknown"));
}

TEST(StructuredReports, HaveAVerificationTimeOnlyWhenVerified) {
  Reader<CStructuredReport> reader;
  ASSERT_TRUE(reader.read(report("VERIFIED")));
  EXPECT_EQ(reader.document.InstanceNumber(), OLESTR("6"));
  EXPECT_EQ(reader.document.CompletionFlag(), OLESTR("COMPLETE"));
  EXPECT_EQ(reader.document.VerificationFlag(), OLESTR("VERIFIED"));
  EXPECT_EQ(reader.document.VerificationDateTime(), OLESTR("20090307120000"));
  EXPECT_EQ(reader.document.ContentDate(), OLESTR("20090305"));
  EXPECT_EQ(reader.document.ContentTime(), OLESTR("1030"));
  EXPECT_EQ(reader.document.CodeValue(), OLESTR("121060"));
  EXPECT_EQ(reader.document.CodingSchemeDesignator(), OLESTR("DCM"));
  EXPECT_EQ(reader.document.CodeMeaning(), OLESTR("History"));

  // The time of the report before must not stay.
  ASSERT_TRUE(reader.read(report("UNVERIFIED").without(0x0040A030)));
  EXPECT_EQ(reader.document.VerificationDateTime(), OLESTR(""));
  EXPECT_FALSE(reader.read(report("VERIFIED").without(0x0040A030)));
}

Text hexText(std::uint32_t value) {
  char digits[9];
  std::snprintf(digits, sizeof digits, "%08x", value);
  return {digits, digits + 8};
}

struct AttributeCase {
  std::uint32_t tag;
  const char* path;
  const char* vr;
  Text name;  // in "Cannot set the <document> <name>."
};

// A text that cannot be stored leaves its sentence and an empty field, and the document is taken;
// one that is absent, or empty while values are required, refuses the document.
template <typename Document>
void expectEachAttributeTold(const ElementMap& whole, const Text& document,
                             std::initializer_list<AttributeCase> attributes) {
  const test::UncheckedValues asInTheProgram;
  const std::string tooLong(1025, '1');
  for (const AttributeCase& c : attributes) {
    SCOPED_TRACE(c.path);
    const bool isCode = c.tag == 0x0040A043;
    const Text path(c.path, c.path + std::char_traits<char>::length(c.path));
    const auto with = [&](const std::string& value) {
      if (!isCode) return ElementMap(whole).text(c.tag, c.vr, value);
      ElementMap code;
      for (const std::uint32_t tag : {0x00080100, 0x00080102, 0x00080104}) {
        const bool isMeant = path.find(Text(1, OLESTR(':')) + hexText(tag)) != Text::npos;
        code.text(tag, tag == 0x00080104 ? "LO" : "SH", isMeant ? value : "1");
      }
      return ElementMap(whole).sequence(c.tag, {code});
    };
    Reader<Document> reader;
    ASSERT_TRUE(reader.read(whole));
    EXPECT_TRUE(reader.read(with(tooLong)));
    EXPECT_EQ(reader.document.ErrorMessage(),
              OLESTR("Cannot set the ") + document + OLESTR(" ") + c.name + OLESTR("."));
    EXPECT_FALSE(reader.read(ElementMap(whole).without(c.tag)));
    const Text missing = isCode ? Text(OLESTR("0040a043,SQ,1:00080100,SH")) : path;
    EXPECT_EQ(reader.document.ErrorMessage(), OLESTR("Cannot retrieve the \"") + missing +
                                                  OLESTR("\" ") + document + OLESTR(" tag value."));
    reader.document.SetValuesRequired(true);
    EXPECT_FALSE(reader.read(with("")));
    EXPECT_EQ(reader.document.ErrorMessage(), OLESTR("The ") + document + OLESTR(" tag \"") + path +
                                                  OLESTR("\" does not have a value."));
  }
  Document fresh;
  CDicomUtil util;
  Text out;
  EXPECT_FALSE(fresh.ReadTagValue(util, {}, out));
  EXPECT_EQ(fresh.ErrorMessage(), OLESTR("The ") + document + OLESTR(" tag is invalid."));
}

TEST(Documents, TellEachAttributeThatIsAbsentEmptyOrTooLong) {
  expectEachAttributeTold<CKeyObjectDocument>(
      keyObject(), OLESTR("key object document"),
      {{0x00200013, "00200013,IS", "IS", OLESTR("instance number")},
       {0x00080023, "00080023,DA", "DA", OLESTR("content date")},
       {0x00080033, "00080033,TM", "TM", OLESTR("content time")}});
  expectEachAttributeTold<CPresentation>(
      presentation(), OLESTR("presentation"),
      {{0x00200013, "00200013,IS", "IS", OLESTR("instance number")},
       {0x00700080, "00700080,CS", "CS", OLESTR("content label")},
       {0x00700081, "00700081,LO", "LO", OLESTR("content description")},
       {0x00700084, "00700084,PN", "PN", OLESTR("content creator name")},
       {0x00700082, "00700082,DA", "DA", OLESTR("creation date")},
       {0x00700083, "00700083,TM", "TM", OLESTR("content time")}});
  expectEachAttributeTold<CStructuredReport>(
      report("VERIFIED"), OLESTR("structured report"),
      {{0x00200013, "00200013,IS", "IS", OLESTR("instance number")},
       {0x0040A491, "0040a491,CS", "CS", OLESTR("completion flag")},
       {0x0040A493, "0040a493,CS", "CS", OLESTR("verification flag")},
       {0x0040A030, "0040a030,DT", "DT", OLESTR("verification date and time")},
       {0x00080023, "00080023,DA", "DA", OLESTR("content date")},
       {0x00080033, "00080033,TM", "TM", OLESTR("content time")},
       {0x0040A043, "0040a043,SQ,1:00080100,SH", "SQ", OLESTR("code value")},
       {0x0040A043, "0040a043,SQ,1:00080102,SH", "SQ", OLESTR("coding scheme designator")},
       {0x0040A043, "0040a043,SQ,1:00080104,LO", "SQ", OLESTR("code meaning")}});
}

TEST(Documents, SettersKeepTheRulesOfReading) {
  CKeyObjectDocument document;
  EXPECT_TRUE(document.SetContentDate(OLESTR("20090305")));
  EXPECT_FALSE(document.SetContentDate(Text(1025, OLESTR('1'))));
  EXPECT_EQ(document.ErrorMessage(), OLESTR("Cannot set the key object document content date."));
  EXPECT_EQ(document.ContentDate(), OLESTR("20090305"));
  EXPECT_TRUE(document.SetContentDate({}));
  document.SetValuesRequired(true);
  EXPECT_FALSE(document.SetContentTime({}));
  EXPECT_EQ(document.ErrorMessage(), OLESTR("Cannot set the key object document content time."));
}

}  // namespace
}  // namespace quillon
