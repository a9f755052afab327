#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "builder_job.h"
#include "support/wine.h"

namespace quillon::test {
namespace {

const std::string kFileSetLines = "Fileset Creation Date:  " + CreationDay::text() +
                                  "\n"
                                  "Fileset Creator:  Quillon\n"
                                  "Fileset Content:  DICOM ONLY";

// Text as LABEL.TXT holds it: two bytes for each character, the low one first.
Bytes labelFile(const std::string& ascii) {
  Bytes bytes;
  for (const char c : ascii) {
    bytes.push_back(static_cast<std::uint8_t>(c));
    bytes.push_back(0);
  }
  return bytes;
}

ObjectDescription example() {
  ObjectDescription d;
  d.patientName = "DOE^JOHN";
  d.patientId = "12345";
  d.patientBirthDate = "19500102";
  d.studyDate = "20090305";
  return d;
}

TEST(MediumLabel, SaysWhoseDataItIs) {
  const struct {
    const char* what;
    std::function<void(BuilderJob&)> add;
    std::string lines;  // before those of the file set
  } cases[] = {
      {"one patient, one study", [](BuilderJob& job) { job.add("a", example()); },
       "Patient Name:  DOE JOHN\nPatient ID:  12345\nBirth Date:  02 Jan 1950\n"
       "Study Date:  05 Mar 2009\n"},
      {"name with five groups, and days at the ends of the calendar",
       [](BuilderJob& job) {
         ObjectDescription d = example();
         d.patientName = "A^B^C^D^E";
         d.patientBirthDate = "16010101";
         d.studyDate = "20000229";
         job.add("a", d);
       },
       "Patient Name:  A B C D E\nPatient ID:  12345\nBirth Date:  01 Jan 1601\n"
       "Study Date:  29 Feb 2000\n"},
      {"no name, and a caret in the ID",
       [](BuilderJob& job) {
         ObjectDescription d = example();
         d.patientName = " ";
         d.patientId = "1^2";
         job.add("a", d);
       },
       "Patient Name:  1 2\nPatient ID:  1^2\nBirth Date:  02 Jan 1950\nStudy Date:  05 Mar "
       "2009\n"},
      {"neither name nor ID",
       [](BuilderJob& job) {
         ObjectDescription d = example();
         d.patientName = " ";
         d.patientId = " ";
         job.add("a", d);
       },
       "Patient Name:  Patient\nBirth Date:  02 Jan 1950\nStudy Date:  05 Mar 2009\n"},
      {"dates of the old form, or none",
       [](BuilderJob& job) {
         ObjectDescription d = example();
         d.patientBirthDate = "1950.01.02";
         d.studyDate = "";
         job.add("a", d);
       },
       "Patient Name:  DOE JOHN\nPatient ID:  12345\n"},
      {"two studies",
       [](BuilderJob& job) {
         ObjectDescription d = example();
         job.add("a", d);
         d.study = 2;
         job.add("b", d);
       },
       "Patient Name:  DOE JOHN\nPatient ID:  12345\nBirth Date:  02 Jan 1950\nMultiple Studies\n"},
      {"two patients",
       [](BuilderJob& job) {
         job.add("a", example());
         EXPECT_TRUE(job.builder.SetUniquePatientId(OLESTR("OTHER")));
         job.add("b", example());
       },
       "Multiple Patients\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    BuilderJob job;
    c.add(job);
    ASSERT_TRUE(job.added) << job.sentence();
    ASSERT_TRUE(job.create()) << job.sentence();
    const std::string label = c.lines + kFileSetLines;
    EXPECT_EQ(Plain(job.builder.IheLabel()), label);
    EXPECT_EQ(readBytes(job.root / "LABEL.TXT"), labelFile(label + "\n"));
    // The next add begins another medium.
    EXPECT_FALSE(job.builder.AddFile(OLESTR("")));
    EXPECT_TRUE(job.builder.IheLabel().empty());
  }
}

TEST(MediumLabel, NamesTheInstitutionThatIsConfigured) {
  const struct {
    const char* name;
    const char* value;
    std::string line;  // behind those of every label
  } cases[] = {{"InstitutionName", "City Hospital", "\nInstitution:  City Hospital"},
               {"InstitutionAddress", "1 High Street", "\nAddress:  1 High Street"},
               {"InstitutionPhone", "+49 1", "\nPhone:  +49 1"},
               {"InstitutionWeb", "https://example.org", "\nWeb:  https://example.org"},
               {"InstitutionDisclaimer", "a\tb", "\nDisclaimer:  a b"},
               {"InstitutionName", "", ""}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    BuilderJob job;
    job.registry.setText(c.name, c.value);
    job.add("a", object(1, 1, 1, 1));
    ASSERT_TRUE(job.create()) << job.sentence();
    const std::string label = Plain(job.builder.IheLabel());
    const std::string end = kFileSetLines + c.line;
    EXPECT_TRUE(label.ends_with(end)) << label;
  }
  BuilderJob job;
  job.registry.setNumber("InstitutionWeb", 1);
  const fs::path file = job.add("a", object(1, 1, 1, 1));
  EXPECT_FALSE(job.create());
  EXPECT_EQ(job.sentence(),
            "Cannot query the registry key \"SOFTWARE\\Tarn Imaging\\Quillon\\Workstation\\"
            "MediaCreation\" for the value of \"InstitutionWeb\" for this reason:  \"The registry "
            "value is missing or corrupt.\"");
  EXPECT_TRUE(fs::exists(file));
  EXPECT_FALSE(fs::exists(job.root));
}

TEST(MediumLabel, ADateThatIsNoneFailsTheCreation) {
  const struct {
    const char* what;
    std::string birthDate;
    std::string studyDate;
  } cases[] = {{"birth date", "19501399", "20090305"}, {"study date", "19500102", "20090230"},
               {"letters", "19500102", "2009MR05"},    {"no leap year", "19500102", "19000229"},
               {"too early", "16001231", "20090305"},  {"spaces", "1950 1 2", "20090305"},
               {"zeros", "00000000", "20090305"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    if (isWine() && std::string(c.what) == "no leap year") continue;
    BuilderJob job;
    ObjectDescription d = example();
    d.patientBirthDate = c.birthDate;
    d.studyDate = c.studyDate;
    job.add("a", d);
    ASSERT_TRUE(job.added) << job.sentence();
    EXPECT_FALSE(job.create());
    EXPECT_EQ(job.sentence(), "Cannot retrieve the date.");
    EXPECT_FALSE(fs::exists(job.root));
    EXPECT_TRUE(fs::exists(job.in / "a"));
    EXPECT_EQ(job.count(), -1);

    // As the field has it: many a date is unknown, and the medium is wanted all the same.
    job.builder.currentPractice = true;
    ASSERT_TRUE(job.builder.AddFile(WideOf(job.in / "a")));
    EXPECT_TRUE(job.create()) << job.sentence();
    const std::string label = Plain(job.builder.IheLabel());
    EXPECT_EQ(label.find("Birth Date:  02 Jan 1950") != std::string::npos,
              c.birthDate == "19500102");
    EXPECT_EQ(label.find("Study Date:  05 Mar 2009") != std::string::npos,
              c.studyDate == "20090305");
    EXPECT_EQ(label.find("Date:  \n"), std::string::npos);
  }
}

TEST(MediumLabel, RefusesWhatItCannotBeWrittenFromOrTo) {
  BuilderJob job;
  EXPECT_FALSE(job.builder.WriteLabel(nullptr, WideOf(job.in)));
  EXPECT_EQ(job.sentence(), "There is no patient information to process.");
  CPatientList patients;
  EXPECT_FALSE(job.builder.WriteLabel(&patients, WideOf(job.in)));
  EXPECT_EQ(job.sentence(), "There is no patient information to process.");
  DcElemList dataSet;
  dataSet.add(std::make_unique<DcElem>(DcTag{0x00100010}, "DOE^JOHN"));
  ASSERT_TRUE(patients.Add(&dataSet, OLESTR("P")));
  EXPECT_FALSE(job.builder.WriteLabel(&patients, WideOf(job.in)));
  EXPECT_EQ(job.sentence(), "There are no studies for the patient.");
  dataSet.add(std::make_unique<DcElem>(DcTag{0x0020000D}, "2.999.1"));
  ASSERT_TRUE(patients.At(0)->Studies().Add(&dataSet));
  const std::string longRoot =
      job.in.string() + "/" + std::string(255 - job.in.string().size(), 'A');
  EXPECT_FALSE(job.builder.WriteLabel(&patients, WideOf(longRoot)));
  EXPECT_EQ(job.sentence(), "The current path name " + longRoot +
                                "\\ plus the new path component LABEL.TXT is longer than 260 "
                                "characters.");
  fs::create_directory(job.in / "LABEL.TXT");
  EXPECT_FALSE(job.builder.WriteLabel(&patients, WideOf(job.in)));
  EXPECT_EQ(job.sentence(), "Cannot open the file " + job.in.string() + "\\LABEL.TXT.");
}

}  // namespace
}  // namespace quillon::test
