#include "dicomobjects/documents.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "element_map.h"

namespace quillon {
namespace {

using test::ElementMap;
using test::Plain;
using test::TempDir;

constexpr std::uint32_t kCodeSequence = 0x0040A043;

// What a document is read from: an element of it, or of the item of its code sequence.
template <typename Document>
struct Attribute {
  std::uint32_t tag;
  std::string vr;
  std::string name;  // in "Cannot set the <document> <name>."
  const Text& (Document::*get)() const;
  std::string value;
  bool isOfCode = false;

  [[nodiscard]] std::string path() const {
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08x", tag);
    return (isOfCode ? "0040a043,SQ,1:" : "") + std::string(digits) + "," + vr;
  }
};
template <typename Document>
using Attributes = std::vector<Attribute<Document>>;

const Attributes<CKeyObjectDocument> kKeyObject = {
    {0x00200013, "IS", "instance number", &CKeyObjectDocument::InstanceNumber, "4"},
    {0x00080023, "DA", "content date", &CKeyObjectDocument::ContentDate, "20090305"},
    {0x00080033, "TM", "content time", &CKeyObjectDocument::ContentTime, "1030"}};
const Attributes<CPresentation> kPresentation = {
    {0x00200013, "IS", "instance number", &CPresentation::InstanceNumber, "5"},
    {0x00700080, "CS", "content label", &CPresentation::ContentLabel, "LABEL"},
    {0x00700081, "LO", "content description", &CPresentation::ContentDescription, "Described"},
    {0x00700084, "PN", "content creator name", &CPresentation::ContentCreatorName, "Maker^M"},
    {0x00700082, "DA", "creation date", &CPresentation::CreationDate, "20090306"},
    {0x00700083, "TM", "content time", &CPresentation::CreationTime, "1100"}};
using Report = CStructuredReport;
const Attributes<Report> kReport = {
    {0x00200013, "IS", "instance number", &Report::InstanceNumber, "6"},
    {0x0040A491, "CS", "completion flag", &Report::CompletionFlag, "COMPLETE"},
    {0x0040A493, "CS", "verification flag", &Report::VerificationFlag, "VERIFIED"},
    {0x0040A030, "DT", "verification date and time", &Report::VerificationDateTime,
     "20090307120000"},
    {0x00080023, "DA", "content date", &Report::ContentDate, "20090305"},
    {0x00080033, "TM", "content time", &Report::ContentTime, "1030"},
    {0x00080100, "SH", "code value", &Report::CodeValue, "121060", true},
    {0x00080102, "SH", "coding scheme designator", &Report::CodingSchemeDesignator, "DCM", true},
    {0x00080104, "LO", "code meaning", &Report::CodeMeaning, "History", true}};

// The whole document, with another value for the attribute of this name.
template <typename Document>
ElementMap elements(const Attributes<Document>& attributes, const std::string& changed = {},
                    const std::string& otherValue = {}) {
  ElementMap map;
  ElementMap code;
  for (const Attribute<Document>& a : attributes) {
    (a.isOfCode ? code : map).text(a.tag, a.vr, a.name == changed ? otherValue : a.value);
  }
  return code.bytes().empty() ? map : map.sequence(kCodeSequence, {code});
}

template <typename Document>
bool readInto(Document& document, const ElementMap& map) {
  const TempDir directory;
  CDicomUtil util;
  EXPECT_TRUE(util.ReadFile(map.write(directory, "document.dcm"), true));
  return document.ReadFromDicom(util);
}

TEST(PresentationStates, HaveNamesForWhatIsEmpty) {
  CPresentation document;
  ASSERT_TRUE(readInto(
      document, elements(kPresentation).text(0x00700081, "LO", "").text(0x00700084, "PN", "")));
  EXPECT_EQ(document.ContentDescription(), OLESTR("Unknown"));
  EXPECT_EQ(document.ContentCreatorName(), OLESTR("Unknown^Unknown"));
}

TEST(StructuredReports, HaveAVerificationTimeOnlyWhenVerified) {
  Report document;
  ASSERT_TRUE(readInto(document, elements(kReport)));
  // The time of the report before must not stay.
  const ElementMap unverified = elements(kReport, "verification flag", "UNVERIFIED");
  ASSERT_TRUE(readInto(document, ElementMap(unverified).without(0x0040A030)));
  EXPECT_EQ(document.VerificationDateTime(), OLESTR(""));
  EXPECT_FALSE(readInto(document, elements(kReport).without(0x0040A030)));
}

TEST(StructuredReports, AreVerifiedWhenTheirLastObserverDidIt) {
  const test::UncheckedValues asInTheProgram;
  const struct {
    const char* what;
    std::vector<const char*> times;  // of the observers in their order; null for one without
    const char* expected;            // null when there is none
  } cases[] = {
      {"one", {"20100101120000"}, "20100101120000"},
      {"the last", {"20090101120000", "20100101120000"}, "20100101120000"},
      {"the first", {"20100101120000", "20090101120000"}, "20100101120000"},
      {"a fraction later", {"20100101120000.5", "20100101120000.25"}, "20100101120000.5"},
      {"later by its offset", {"20100101120000+0100", "20100101113000"}, "20100101113000"},
      {"west of it", {"20100101120000-0100", "20100101123000+0000"}, "20100101120000-0100"},
      {"the same point", {"20100101120000+0100", "20100101110000+0000"}, "20100101120000+0100"},
      {"before 1970", {"19601231", "19690101"}, "19690101"},
      {"a date alone", {"20100101", "20091231235959"}, "20100101"},
      {"no date", {"yesterday", "20090101120000", ""}, "20090101120000"},
      {"nothing but no date", {"yesterday"}, "yesterday"},
      {"empty", {""}, ""},
      {"one without", {nullptr, "20090101120000"}, "20090101120000"},
      {"none with one", {nullptr}, nullptr},
      {"no observers", {}, nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    std::vector<ElementMap> observers;
    for (const char* time : c.times) {
      ElementMap observer = ElementMap().text(0x0040A027, "LO", "Hospital");
      observers.push_back(time == nullptr ? observer : observer.text(0x0040A030, "DT", time));
    }
    ElementMap map = elements(kReport).sequence(0x0040A073, observers);
    Report document;
    ASSERT_TRUE(readInto(document, map));
    EXPECT_EQ(Plain(document.VerificationDateTime()), "20090307120000") << "its own comes first";
    EXPECT_EQ(readInto(document, map.without(0x0040A030)), c.expected != nullptr);
    EXPECT_EQ(Plain(document.VerificationDateTime()), c.expected != nullptr ? c.expected : "");
    EXPECT_EQ(Plain(document.ErrorMessage()),
              c.expected != nullptr
                  ? ""
                  : "Cannot retrieve the \"0040a030,DT\" structured report tag value.");
  }
}

// A text that cannot be stored leaves its sentence and an empty field, and the document is taken;
// one that is absent, or empty while values are required, refuses the document.
template <typename Document>
void expectEachAttributeReadOrTold(const Attributes<Document>& attributes,
                                   const std::string& name) {
  const test::UncheckedValues asInTheProgram;
  const auto errorOf = [](const Document& document) { return Plain(document.ErrorMessage()); };
  for (const Attribute<Document>& a : attributes) {
    SCOPED_TRACE(a.path());
    Document document;
    ASSERT_TRUE(readInto(document, elements(attributes)));
    EXPECT_EQ(Plain((document.*a.get)()), a.value);
    EXPECT_TRUE(readInto(document, elements(attributes, a.name, std::string(1025, '1'))));
    EXPECT_EQ(errorOf(document), "Cannot set the " + name + " " + a.name + ".");
    EXPECT_EQ(Plain((document.*a.get)()), "");
    const std::uint32_t outer = a.isOfCode ? kCodeSequence : a.tag;
    EXPECT_FALSE(readInto(document, elements(attributes).without(outer)));
    const std::string missing = a.isOfCode ? "0040a043,SQ,1:00080100,SH" : a.path();
    EXPECT_EQ(errorOf(document), "Cannot retrieve the \"" + missing + "\" " + name + " tag value.");
    document.SetValuesRequired(true);
    EXPECT_FALSE(readInto(document, elements(attributes, a.name, "")));
    EXPECT_EQ(errorOf(document),
              "The " + name + " tag \"" + a.path() + "\" does not have a value.");
  }
  Document fresh;
  CDicomUtil util;
  Text out;
  EXPECT_FALSE(fresh.ReadTagValue(util, {}, out));
  EXPECT_EQ(errorOf(fresh), "The " + name + " tag is invalid.");
}

TEST(Documents, ReadEachAttributeAndTellWhichIsAbsentEmptyOrTooLong) {
  expectEachAttributeReadOrTold(kKeyObject, "key object document");
  expectEachAttributeReadOrTold(kPresentation, "presentation");
  expectEachAttributeReadOrTold(kReport, "structured report");
}

TEST(Documents, KeepTheirTextsWhenSettersRefuse) {
  CKeyObjectDocument document;
  EXPECT_TRUE(document.SetContentDate(OLESTR("20090305")));
  document.SetValuesRequired(true);
  for (const Text& refused : {Text(1025, OLESTR('1')), Text()}) {
    document.ClearError();
    EXPECT_FALSE(document.SetContentDate(refused));
    EXPECT_EQ(document.ErrorMessage(), OLESTR("Cannot set the key object document content date."));
    EXPECT_EQ(document.ContentDate(), OLESTR("20090305"));
  }
}

}  // namespace
}  // namespace quillon
