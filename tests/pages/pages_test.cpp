#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "dicom/tags.h"
#include "pages/medium_model.h"
#include "pages/page_stylesheets.h"
#include "pages/page_xml.h"
#include "pages/person_name.h"
#include "pages/readme_text.h"
#include "support/text.h"

namespace quillon::test {
namespace {

std::string groupsOf(TextView name) {
  std::string groups;
  for (const NameGroup& group : ReadableName(name)) {
    groups += std::string(group.form) + ":" + Plain(group.text) + ";";
  }
  return groups;
}

TEST(PersonNames, StandAsPeopleReadThem) {
  const struct {
    TextView name;
    std::string groups;
  } cases[] = {
      {OLESTR(""), ""},
      {OLESTR("DOE"), "letters:DOE;"},
      {OLESTR("DOE^JOHN"), "letters:DOE, JOHN;"},
      {OLESTR("Adams^John^Quincy^Rev.^B.A. M.Div."),
       "letters:Adams, Rev. John Quincy, B.A. M.Div.;"},
      {OLESTR("^JOHN"), "letters:JOHN;"},
      {OLESTR("DOE^^^^"), "letters:DOE;"},
      {OLESTR(" DOE ^ JOHN "), "letters:DOE, JOHN;"},
      {OLESTR("DOE^^^^^odd"), "letters:DOE odd;"},
      {OLESTR("Yamada^Tarou=\u5C71\u7530^\u592A\u90CE=\u3084^\u305F"),
       "letters:Yamada, Tarou;ideographs:\u5C71\u7530 \u592A\u90CE;phonetic:\u3084 \u305F;"},
      {OLESTR("=\u5C71\u7530^\u592A\u90CE"), "ideographs:\u5C71\u7530 \u592A\u90CE;"},
      {OLESTR("=="), ""},
      {OLESTR("A=B=C=D"), "letters:A;ideographs:B;phonetic:C=D;"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(Plain(c.name));
    EXPECT_EQ(groupsOf(c.name), c.groups);
  }
}

TEST(PageNames, FitEveryFileSystemAndAreUnique) {
  std::set<Text> names;
  for (const std::size_t number : {1U, 999U, 1000U, 9999U, 10000U, 99999U, 100000U, 999999U}) {
    for (const Text& name : {StudyPageName(number), HeaderPageName(number)}) {
      EXPECT_TRUE(names.insert(name).second) << Plain(name);
      EXPECT_LE(name.size(), 12U) << Plain(name);
      EXPECT_EQ(name.find_first_not_of(OLESTR("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.")),
                Text::npos);
    }
  }
  EXPECT_EQ(Plain(StudyPageName(7)), "STUDY007.HTM");
  EXPECT_EQ(Plain(StudyPageName(1234)), "STUD1234.HTM");
  EXPECT_EQ(Plain(HeaderPageName(7)), "HEAD0007.HTM");
}

// A patient with one study of one series.
struct Medium {
  explicit Medium(const char* name = "DOE^JOHN", const char* description = "Head") {
    DcElemList dataSet;
    const struct {
      DcTag tag;
      const char* value;
    } elements[] = {{tags::kPatientsName, name},
                    {tags::kPatientId, "4711"},
                    {tags::kStudyDescription, description},
                    {tags::kStudyInstanceUid, "1.2"},
                    {tags::kSeriesInstanceUid, "1.2.3"},
                    {tags::kModality, "CT"}};
    for (const auto& one : elements) dataSet.add(std::make_unique<DcElem>(one.tag, one.value));
    patient = patients.Add(&dataSet, OLESTR("KEY"));
    study = patient->Studies().Add(&dataSet);
    CSeries* series = study->Series().Add(&dataSet);
    SeriesOnMedium onMedium{series, {&object, &object}, 5, OLESTR("HEAD0001.HTM")};
    model.patients.push_back({patient, {{study, {onMedium}, OLESTR("STUDY001.HTM")}}});
    model.fileIdOf = [](std::size_t i) {
      return OLESTR("DICOMOBJ\\QLN0000") + NumberText(static_cast<long long>(i));
    };
    model.objectDirectory = OLESTR("DICOMOBJ");
    model.origin.created = OLESTR("20261127");
  }
  [[nodiscard]] std::string index() const { return Plain(IndexPageXml(model)); }
  [[nodiscard]] std::string studyPage() const {
    return Plain(StudyPageXml(model, model.patients[0], model.patients[0].studies[0]));
  }

  CPatientList patients;
  CPatient* patient = nullptr;
  CStudy* study = nullptr;
  CDicomObjectProperties object;
  MediumModel model;
};

#define EXPECT_HAS(text, part) EXPECT_NE((text).find(part), std::string::npos) << (text)
#define EXPECT_HAS_NOT(text, part) EXPECT_EQ((text).find(part), std::string::npos) << (text)

TEST(PageXml, TellsOfThePageThatIsMade) {
  Medium medium;
  medium.model.otherContentDirectory = OLESTR("VIEW ER\\A");
  const std::string index = medium.index();
  EXPECT_HAS(index,
             "<medium page=\"index\" index=\"INDEX.HTM\" readme=\"README.TXT\" "
             "style=\"IHE_PDI/STYLE.CSS\" other-content-name=\"VIEW ER\\A\" "
             "other-content=\"VIEW%20ER/A\"");
  EXPECT_HAS(index, "<study href=\"IHE_PDI/STUDY001.HTM\"");
  EXPECT_HAS(index, "modalities=\"CT\" series=\"1\" objects=\"2\"");
  EXPECT_HAS_NOT(index, "<series");
  const std::string study = medium.studyPage();
  EXPECT_HAS(study,
             "<medium page=\"study\" index=\"../INDEX.HTM\" readme=\"../README.TXT\" "
             "style=\"STYLE.CSS\"");
  EXPECT_HAS(study, "objects=\"2\" header=\"HEAD0001.HTM\"");
  EXPECT_HAS(study, "<object file=\"DICOMOBJ\\QLN00006\"");
  EXPECT_HAS_NOT(index, " disc=");
  medium.model.number = 2;
  medium.model.count = 3;
  EXPECT_HAS(medium.index(), "disc=\"2\" discs=\"3\"");
  EXPECT_HAS(ReadmeText(medium.model), "This is disc 2 of 3: ");
  medium.model.indexIsBelow = true;
  EXPECT_HAS(medium.index(), "index=\"INDEX.HTM\" readme=\"../README.TXT\" style=\"STYLE.CSS\"");
  EXPECT_HAS(medium.studyPage(), "index=\"INDEX.HTM\"");
}

TEST(PageXml, HoldsAnyTextAndReadsItInItsCharacterSet) {
  const struct {
    const char* what;
    const char* value;
    const char* characterSet;
    std::string shown;
  } cases[] = {
      {"markup", "</script>&\"'", "", "&lt;/script&gt;&amp;&quot;&apos;"},
      {"control characters",
       "a\x01"
       "b\x7f"
       "c",
       "", "a\u2401b c"},
      {"an override in UTF-8",
       "a\xE2\x80\xAE"
       "b\xE2\x81\xA6"
       "c",
       "ISO_IR 192", "a b c"},
      {"Greek", "\xC4\xE9", "ISO_IR 126", "\u0394\u03B9"},
      {"no set: the system's", "\xC4", "", "\u00C4"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Medium medium(c.value, c.value);
    medium.patient->SetCharacterSetOfBytes(c.characterSet);
    medium.study->SetCharacterSetOfBytes(c.characterSet);
    EXPECT_HAS(medium.index(), "<name value=\"" + c.shown + "\">");
    EXPECT_HAS(medium.index(), "<group form=\"letters\">" + c.shown + "</group>");
  }
}

TEST(ShippedStylesheets, ShowWhoMadeTheMediumAndRunNothingOfIt) {
  Medium medium;
  PageStylesheets stylesheets;
  ASSERT_TRUE(stylesheets.Load({})) << Plain(stylesheets.ErrorMessage());
  std::string page;
  ASSERT_TRUE(stylesheets.RenderPage(IndexPageXml(medium.model), page));
  EXPECT_HAS(page, "<title>Medical images</title>");
  EXPECT_HAS_NOT(page, "Telephone");
  EXPECT_HAS(page, "confidential");
  medium.model.origin.institution = OLESTR("H\u00F4pital <b>");
  medium.model.origin.phone = OLESTR("+49 1");
  medium.model.origin.web = OLESTR("javascript:alert(1)");
  medium.model.origin.disclaimer = OLESTR("</p><script>");
  ASSERT_TRUE(stylesheets.RenderPage(IndexPageXml(medium.model), page));
  EXPECT_HAS(page, "<title>Medical images \u2013 H\u00F4pital &lt;b&gt;</title>");
  EXPECT_HAS(page, "Telephone +49 1, javascript:alert(1)</p>");
  EXPECT_HAS(page, "&lt;/p&gt;&lt;script&gt;</p>");
  EXPECT_HAS_NOT(page, "confidential");
}

TEST(ReadmeText, IsShortAsciiLinesThatNameNobody) {
  Medium medium("SECRET^NAME");
  medium.model.origin.institution = OLESTR("H\u00F4pital \u5C71 ") + Text(200, OLESTR('x'));
  medium.model.origin.disclaimer = OLESTR("first line\nsecond\x01 line");
  medium.model.otherContentDirectory = OLESTR("QUILLON");
  const std::string text = ReadmeText(medium.model);
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = text.find('\n', begin);
    ASSERT_NE(end, std::string::npos);
    ASSERT_GT(end, begin);
    EXPECT_EQ(text[end - 1], '\r');
    EXPECT_LE(end - 1 - begin, 80U);
    for (std::size_t i = begin; i + 1 < end; ++i) EXPECT_TRUE(text[i] >= 0x20 && text[i] < 0x7F);
    begin = end + 1;
  }
  for (const char* const part : {"Hopital ?", "first line second", "2 objects in 1", "1 patient.",
                                 "INDEX.HTM", "DICOMDIR", "QUILLON", "2026-11-27"}) {
    EXPECT_HAS(text, part);
  }
  for (const char* const part : {"SECRET", "4711", "Head"}) EXPECT_HAS_NOT(text, part);
  medium.model.indexIsBelow = true;
  EXPECT_HAS(ReadmeText(medium.model), "Open IHE_PDI\\INDEX.HTM");
}

}  // namespace
}  // namespace quillon::test
