#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "builder_job.h"
#include "fileset/model/media_item_list.h"
#include "fileset/model/patient_list.h"

namespace quillon::test {
namespace {

struct Element {
  DcTag tag;
  const char* value;
};

DcElemList dataSetOf(const std::vector<Element>& elements) {
  DcElemList list;
  for (const Element& element : elements) {
    list.add(std::make_unique<DcElem>(element.tag, element.value));
  }
  return list;
}

TEST(FileSetModel, APatientIsRefusedForWhatItsUniqueIdIs) {
  const DcElemList dataSet = dataSetOf({{0x00100010, "DOE^JOHN"}});
  const struct {
    const char* what;
    bool hasDataSet;
    Text uniqueId;
    bool accepted;
    std::string sentence;
  } cases[] = {
      {"no data set", false, u"P1", false,
       "The element list to extract patient information from is invalid."},
      {"empty", true, u"", false, "The patient unique ID is invalid."},
      {"1,024 characters", true, Text(1024, u'A'), true, ""},
      {"1,025 characters", true, Text(1025, u'A'), false,
       "The patient unique ID composed of the patient name and the patient ID is too long."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    CPatientList patients;
    EXPECT_EQ(patients.AddPatient(c.hasDataSet ? &dataSet : nullptr, c.uniqueId), c.accepted);
    EXPECT_EQ(narrow(patients.ErrorMessage()), c.sentence);
    EXPECT_EQ(patients.GetCount(), c.accepted ? 1U : 0U);
    EXPECT_EQ(patients.FindByUniqueId(c.uniqueId) != nullptr, c.accepted);
  }
}

TEST(FileSetModel, KeysAreFoundExactlyAndTheFirstOfEqualOnesWins) {
  CPatientList patients;
  const DcElemList first = dataSetOf({{0x00100010, "FIRST"}, {0x00100020, " ID1 "}});
  const DcElemList second = dataSetOf({{0x00100010, "SECOND"}});
  ASSERT_TRUE(patients.AddPatient(&first, u"KEY"));
  ASSERT_TRUE(patients.AddPatient(&second, u"KEY"));
  ASSERT_TRUE(patients.AddPatient(&second, u"KEY2"));
  EXPECT_EQ(patients.GetCount(), 3U);
  ASSERT_NE(patients.FindByUniqueId(u"KEY"), nullptr);
  EXPECT_EQ(patients.FindByUniqueId(u"KEY")->Name(), u"FIRST");
  EXPECT_EQ(patients.FindByUniqueId(u"KEY")->PatientId(), u"ID1");
  EXPECT_EQ(patients.FindByUniqueId(u"key"), nullptr);
  EXPECT_EQ(patients.FindByUniqueId(u"KE"), nullptr);
  EXPECT_EQ(patients.FindByUniqueId(u""), nullptr);
  EXPECT_EQ(narrow(patients.ErrorMessage()), "The given patient unique ID is invalid.");

  patients.RemoveAll();
  EXPECT_EQ(patients.FindByUniqueId(u"KEY"), nullptr);
  ASSERT_TRUE(patients.AddPatient(&second, u"KEY"));
  EXPECT_EQ(patients.FindByUniqueId(u"KEY")->Name(), u"SECOND");

  CStudyList studies;
  EXPECT_EQ(studies.FindByStudyInstanceUid(u""), nullptr);
  EXPECT_EQ(narrow(studies.ErrorMessage()), "The given study instance UID is invalid.");
  EXPECT_FALSE(studies.AddStudy(nullptr));
  EXPECT_EQ(narrow(studies.ErrorMessage()), "The element list is invalid.");
  CSeriesList series;
  EXPECT_EQ(series.FindBySeriesInstanceUid(u""), nullptr);
  EXPECT_EQ(narrow(series.ErrorMessage()), "The given series instance UID is invalid.");
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
  ASSERT_TRUE(studies.AddStudy(&empty));
  ASSERT_TRUE(studies.AddStudy(&full));
  EXPECT_EQ(studies.At(0)->StudyId(), u"1");
  EXPECT_EQ(studies.At(0)->StudyDate(), u"");
  const CStudy* study = studies.FindByStudyInstanceUid(u"2.999.2");
  ASSERT_NE(study, nullptr);
  EXPECT_EQ(study->StudyId(), u"7");
  EXPECT_EQ(study->StudyDate(), u"20090305");
  EXPECT_EQ(study->StudyTime(), u"101500");
  EXPECT_EQ(study->AccessionNumber(), u"ACC1");
  EXPECT_EQ(study->Description(), u"M\u00FCnchen");
}

TEST(FileSetModel, MediaItemsAreCopiesFoundByTheirWholePath) {
  CMediaItem item;
  item.SetPath(u"C:\\SET");
  item.SetValue(-3);
  CMediaItemList list;
  ASSERT_TRUE(list.AddItem(item));
  item.SetPath(u"D:\\OTHER");
  EXPECT_EQ(list.At(0)->Path(), u"C:\\SET");
  EXPECT_EQ(list.At(0)->Value(), -3);
  EXPECT_TRUE(list.Contains(u"C:\\SET"));
  EXPECT_FALSE(list.Contains(u"C:\\SE"));
  EXPECT_FALSE(list.Contains(u"c:\\set"));
  ASSERT_TRUE(list.AddItem(CMediaItem()));
  EXPECT_FALSE(list.Contains(u""));
}

}  // namespace
}  // namespace quillon::test
