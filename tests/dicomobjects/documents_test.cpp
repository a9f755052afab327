#include "dicomobjects/documents.h"

#include <gtest/gtest.h>

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
  EXPECT_EQ(reader.document.InstanceNumber(), u"4");
  EXPECT_EQ(reader.document.ContentDate(), u"20090305");
  EXPECT_EQ(reader.document.ContentTime(), u"1030");
}

TEST(KeyObjectDocuments, AreAcceptedWithoutATextThatCannotBeStored) {
  const test::UncheckedValues asInTheProgram;
  Reader<CKeyObjectDocument> reader;
  ASSERT_TRUE(reader.read(keyObject()));
  // A list of many times is one text, which may grow longer than any value.
  std::string times = "103000";
  while (times.size() <= 1024) times += "\\103000";
  EXPECT_TRUE(reader.read(keyObject().text(0x00080033, "TM", times)));
  EXPECT_EQ(reader.document.ErrorMessage(), u"Cannot set the key object document content time.");
  EXPECT_EQ(reader.document.ContentTime(), u"") << "the document before had 1030";
  EXPECT_EQ(reader.document.ContentDate(), u"20090305");
}

TEST(PresentationStates, AreReadWithNamesForWhatIsEmpty) {
  Reader<CPresentation> reader;
  ASSERT_TRUE(reader.read(presentation()));
  EXPECT_EQ(reader.document.InstanceNumber(), u"5");
  EXPECT_EQ(reader.document.ContentLabel(), u"LABEL");
  EXPECT_EQ(reader.document.ContentDescription(), u"Described");
  EXPECT_EQ(reader.document.ContentCreatorName(), u"Maker^M");
  EXPECT_EQ(reader.document.CreationDate(), u"20090306");
  EXPECT_EQ(reader.document.CreationTime(), u"1100");

  ASSERT_TRUE(reader.read(presentation().text(0x00700081, "LO", "").text(0x00700084, "PN", "")));
  EXPECT_EQ(reader.document.ContentDescription(), u"Unknown");
  EXPECT_EQ(reader.document.ContentCreatorName(), u"Unknown^Unknown");
}

TEST(StructuredReports, HaveAVerificationTimeOnlyWhenVerified) {
  Reader<CStructuredReport> reader;
  ASSERT_TRUE(reader.read(report("VERIFIED")));
  EXPECT_EQ(reader.document.InstanceNumber(), u"6");
  EXPECT_EQ(reader.document.CompletionFlag(), u"COMPLETE");
  EXPECT_EQ(reader.document.VerificationFlag(), u"VERIFIED");
  EXPECT_EQ(reader.document.VerificationDateTime(), u"20090307120000");
  EXPECT_EQ(reader.document.ContentDate(), u"20090305");
  EXPECT_EQ(reader.document.ContentTime(), u"1030");
  EXPECT_EQ(reader.document.CodeValue(), u"121060");
  EXPECT_EQ(reader.document.CodingSchemeDesignator(), u"DCM");
  EXPECT_EQ(reader.document.CodeMeaning(), u"History");

  // The time of the report before must not stay.
  ASSERT_TRUE(reader.read(report("UNVERIFIED").without(0x0040A030)));
  EXPECT_EQ(reader.document.VerificationDateTime(), u"");
  EXPECT_FALSE(reader.read(report("VERIFIED").without(0x0040A030)));
}

TEST(Documents, SayWhichAttributeIsAbsent) {
  Reader<CKeyObjectDocument> keyObjects;
  EXPECT_FALSE(keyObjects.read(keyObject().without(0x00080023)));
  EXPECT_EQ(keyObjects.document.ErrorMessage(),
            u"Cannot retrieve the \"00080023,DA\" key object document tag value.");
  Reader<CPresentation> presentations;
  EXPECT_FALSE(presentations.read(presentation().without(0x00700084)));
  EXPECT_EQ(presentations.document.ErrorMessage(),
            u"Cannot retrieve the \"00700084,PN\" presentation tag value.");
  Reader<CStructuredReport> reports;
  EXPECT_FALSE(reports.read(report("VERIFIED").without(0x0040A043)));
  EXPECT_EQ(reports.document.ErrorMessage(),
            u"Cannot retrieve the \"0040a043,SQ,1:00080100,SH\" structured report tag value.");
}

TEST(Documents, RefuseEmptyValuesWhenValuesAreRequired) {
  Reader<CKeyObjectDocument> reader;
  reader.document.SetValuesRequired(true);
  EXPECT_FALSE(reader.read(keyObject().text(0x00080023, "DA", "")));
  EXPECT_EQ(reader.document.ErrorMessage(),
            u"The key object document tag \"00080023,DA\" does not have a value.");
  EXPECT_FALSE(reader.document.SetContentDate({}));
  EXPECT_EQ(reader.document.ErrorMessage(), u"Cannot set the key object document content date.");
  CDicomUtil util;
  Text out;
  EXPECT_FALSE(reader.document.ReadTagValue(util, {}, out));
  EXPECT_EQ(reader.document.ErrorMessage(), u"The key object document tag is invalid.");
}

}  // namespace
}  // namespace quillon
