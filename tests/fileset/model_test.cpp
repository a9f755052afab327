#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "builder_job.h"
#include "data_set_of.h"
#include "dicomobjects/dicom_util.h"
#include "fileset/model/media_item_list.h"
#include "fileset/model/patient_list.h"

namespace quillon::test {
namespace {

TEST(FileSetModel, APatientIsRefusedForWhatItsUniqueIdIs) {
  const DcElemList dataSet = dataSetOf({{0x00100010, "DOE^JOHN"}});
  const struct {
    const char* what;
    bool hasDataSet;
    Text uniqueId;
    bool accepted;
    std::string sentence;
  } cases[] = {
      {"no data set", false, OLESTR("P1"), false,
       "The element list to extract patient information from is invalid."},
      {"empty", true, OLESTR(""), false, "The patient unique ID is invalid."},
      {"1,024 characters", true, Text(1024, OLESTR('A')), true, ""},
      {"1,025 characters", true, Text(1025, OLESTR('A')), false,
       "The patient unique ID composed of the patient name and the patient ID is too long."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    CPatientList patients;
    EXPECT_EQ(patients.Add(c.hasDataSet ? &dataSet : nullptr, c.uniqueId) != nullptr, c.accepted);
    EXPECT_EQ(Plain(patients.ErrorMessage()), c.sentence);
    EXPECT_EQ(patients.GetCount(), c.accepted ? 1U : 0U);
    EXPECT_EQ(patients.Find(c.uniqueId) != nullptr, c.accepted);
  }
}

TEST(FileSetModel, KeysAreFoundExactlyAndTheFirstOfEqualOnesWins) {
  CPatientList patients;
  const DcElemList first = dataSetOf({{0x00100010, "FIRST"}, {0x00100020, " ID1 "}});
  const DcElemList second = dataSetOf({{0x00100010, "SECOND"}});
  ASSERT_TRUE(patients.Add(&first, OLESTR("KEY")));
  ASSERT_TRUE(patients.Add(&second, OLESTR("KEY")));
  ASSERT_TRUE(patients.Add(&second, OLESTR("KEY2")));
  EXPECT_EQ(patients.GetCount(), 3U);
  ASSERT_NE(patients.Find(OLESTR("KEY")), nullptr);
  EXPECT_EQ(patients.Find(OLESTR("KEY"))->Name(), OLESTR("FIRST"));
  EXPECT_EQ(patients.Find(OLESTR("KEY"))->PatientId(), OLESTR("ID1"));
  EXPECT_EQ(patients.Find(OLESTR("key")), nullptr);
  EXPECT_EQ(patients.Find(OLESTR("KE")), nullptr);
  EXPECT_EQ(patients.Find(OLESTR("")), nullptr);
  EXPECT_EQ(Plain(patients.ErrorMessage()), "The given patient unique ID is invalid.");

  patients.RemoveAll();
  EXPECT_EQ(patients.Find(OLESTR("KEY")), nullptr);
  ASSERT_TRUE(patients.Add(&second, OLESTR("KEY")));
  EXPECT_EQ(patients.Find(OLESTR("KEY"))->Name(), OLESTR("SECOND"));

  CStudyList studies;
  EXPECT_EQ(studies.Find(OLESTR("")), nullptr);
  EXPECT_EQ(Plain(studies.ErrorMessage()), "The given study instance UID is invalid.");
  EXPECT_FALSE(studies.Add(nullptr));
  EXPECT_EQ(Plain(studies.ErrorMessage()), "The element list is invalid.");
  CSeriesList series;
  EXPECT_EQ(series.Find(OLESTR("")), nullptr);
  EXPECT_EQ(Plain(series.ErrorMessage()), "The given series instance UID is invalid.");
}

TEST(FileSetModel, AStudyTakesItsTextsFromTheDataSet) {
  const DcElemList empty = dataSetOf({{0x0020000D, "2.999.1"}, {0x00200010, ""}});
  const DcElemList full = dataSetOf({{0x00080020, "20090305"},
                                     {0x00080030, "101500"},
                                     {0x00080050, "ACC1"},
                                     {0x00081030, "M\xFCnchen"},
                                     {0x0020000D, "2.999.2"},
                                     {0x00200010, "7"}});
  CStudyList studies;
  ASSERT_TRUE(studies.Add(&empty));
  ASSERT_TRUE(studies.Add(&full));
  EXPECT_EQ(studies.At(0)->StudyId(), OLESTR("1"));
  EXPECT_EQ(studies.At(0)->StudyDate(), OLESTR(""));
  const CStudy* study = studies.Find(OLESTR("2.999.2"));
  ASSERT_NE(study, nullptr);
  EXPECT_EQ(study->StudyId(), OLESTR("7"));
  EXPECT_EQ(study->StudyDate(), OLESTR("20090305"));
  EXPECT_EQ(study->StudyTime(), OLESTR("101500"));
  EXPECT_EQ(study->AccessionNumber(), OLESTR("ACC1"));
  EXPECT_EQ(study->Description(), OLESTR("M\u00FCnchen"));
}

// Bytes where a text should be cannot be read as one.
TEST(FileSetModel, EachAttributeThatCannotBeReadHasItsSentence) {
  const auto patient = [](CBaseItem*& told, const DcElemList& dataSet) {
    static CPatientList list;
    told = &list;
    return list.Add(&dataSet, OLESTR("P")) != nullptr || list.GetCount() != 0;
  };
  const auto study = [](CBaseItem*& told, const DcElemList& dataSet) {
    static CStudyList list;
    told = &list;
    return list.Add(&dataSet) != nullptr || list.GetCount() != 0;
  };
  const auto series = [](CBaseItem*& told, const DcElemList& dataSet) {
    static CSeriesList list;
    told = &list;
    return list.Add(&dataSet) != nullptr || list.GetCount() != 0;
  };
  const struct {
    std::uint32_t tag;
    std::function<bool(CBaseItem*&, const DcElemList&)> add;
    std::string sentence;
  } cases[] = {
      {0x00100010, patient, "The patient name is invalid."},
      {0x00100020, patient, "The patient ID is invalid."},
      {0x00100040, patient, "The patient's sex is invalid."},
      {0x00101010, patient, "The patient age is invalid."},
      {0x00100030, patient, "The patient's birth date is invalid."},
      {0x00080050, study, "The accession number is invalid."},
      {0x00200010, study, "The study ID is invalid."},
      {0x00080020, study, "The study date is invalid."},
      {0x00081030, study, "The study description is invalid."},
      {0x00080030, study, "The study time is invalid."},
      {0x0020000D, study, "The study instance UID is invalid."},
      {0x00200011, series, "The series number is invalid."},
      {0x00080021, series, "The series date is invalid."},
      {0x00080060, series, "The modality is invalid."},
      {0x0020000E, series, "The series instance UID is invalid."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.sentence);
    const TempDir dir;
    writeBytes(dir / "f", dicomFile(DataSetBytes().raw(c.tag, "OB", {1, 2}).take(), "1.2", "1.3",
                                    kExplicitLittleUid));
    CDicomUtil file;
    ASSERT_TRUE(file.ReadFile(WideOf(dir / "f"), /*deferPixelData=*/true));
    CBaseItem* told = nullptr;
    EXPECT_FALSE(c.add(told, *file.GetElementList()));
    EXPECT_EQ(Plain(told->ErrorMessage()), c.sentence);
  }
}

TEST(FileSetModel, MediaItemsAreCopiesFoundByTheirWholePath) {
  CMediaItem item;
  item.SetPath(OLESTR("C:\\SET"));
  item.SetValue(-3);
  CMediaItemList list;
  ASSERT_TRUE(list.AddItem(item));
  item.SetPath(OLESTR("D:\\OTHER"));
  EXPECT_EQ(list.At(0)->Path(), OLESTR("C:\\SET"));
  EXPECT_EQ(list.At(0)->Value(), -3);
  EXPECT_TRUE(list.Contains(OLESTR("C:\\SET")));
  EXPECT_FALSE(list.Contains(OLESTR("C:\\SE")));
  EXPECT_FALSE(list.Contains(OLESTR("c:\\set")));
  ASSERT_TRUE(list.AddItem(CMediaItem()));
  EXPECT_FALSE(list.Contains(OLESTR("")));
}

}  // namespace
}  // namespace quillon::test
