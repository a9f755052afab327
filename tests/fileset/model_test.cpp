#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "builder_job.h"
#include "dicomobjects/dicom_util.h"
#include "fileset/model/media_item_list.h"
#include "fileset/model/patient_list.h"
#include "support/failing_new.h"

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

// Bytes where a text should be cannot be read as one.
TEST(FileSetModel, EachAttributeThatCannotBeReadHasItsSentence) {
  const auto patient = [](CBaseItem*& told, const DcElemList& dataSet) {
    static CPatientList list;
    told = &list;
    return list.AddPatient(&dataSet, u"P") || list.GetCount() != 0;
  };
  const auto study = [](CBaseItem*& told, const DcElemList& dataSet) {
    static CStudyList list;
    told = &list;
    return list.AddStudy(&dataSet) || list.GetCount() != 0;
  };
  const auto series = [](CBaseItem*& told, const DcElemList& dataSet) {
    static CSeriesList list;
    told = &list;
    return list.AddSeries(&dataSet) || list.GetCount() != 0;
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
    ASSERT_TRUE(file.ReadFile(wide(dir / "f"), /*deferPixelData=*/true));
    CBaseItem* told = nullptr;
    EXPECT_FALSE(c.add(told, *file.GetElementList()));
    EXPECT_EQ(narrow(told->ErrorMessage()), c.sentence);
  }
}

// Whatever allocation fails: the list is as it was, or holds the whole node and finds it.
TEST(FileSetModel, WithoutMemoryNothingIsAdded) {
  const DcElemList dataSet = dataSetOf({{0x0020000D, "2.999.1.2.3.4.5.6"},
                                        {0x0020000E, "2.999.1.2.3.4.5.7"},
                                        {0x00100010, "A NAME THAT TAKES MEMORY"}});
  const Text key = u"A KEY THAT TAKES MEMORY";
  // Answers the sentences; isWhole says whether an item is there and found.
  const auto sentences = [](auto makeList, auto add, auto isFound) {
    return withEachAllocationFailing([&](long n, bool& happened) {
      auto list = makeList();
      bool isAdded = false;
      {
        const FailingNew failing(n);
        isAdded = add(*list);
        happened = failing.happened();
      }
      EXPECT_EQ(list->GetCount(), isAdded ? 1U : 0U) << n;
      EXPECT_EQ(isFound(*list), isAdded) << n;
      EXPECT_EQ(isAdded, !happened) << n;
      return narrow(list->ErrorMessage());
    });
  };
  using Sentences = std::set<std::string>;
  EXPECT_EQ(sentences([] { return std::make_unique<CPatientList>(); },
                      [&](CPatientList& list) { return list.AddPatient(&dataSet, key); },
                      [&](CPatientList& list) { return list.FindByUniqueId(key) != nullptr; }),
            (Sentences{"", "Cannot allocate storage for new patient information.",
                       "Cannot set the new patient unique ID.", "The patient name is invalid."}));
  EXPECT_EQ(sentences([] { return std::make_unique<CStudyList>(); },
                      [&](CStudyList& list) { return list.AddStudy(&dataSet); },
                      [](CStudyList& list) {
                        return list.FindByStudyInstanceUid(u"2.999.1.2.3.4.5.6") != nullptr;
                      }),
            (Sentences{"", "Cannot allocate storage for new study information.",
                       "The study instance UID is invalid."}));
  EXPECT_EQ(sentences([] { return std::make_unique<CSeriesList>(); },
                      [&](CSeriesList& list) { return list.AddSeries(&dataSet); },
                      [](CSeriesList& list) {
                        return list.FindBySeriesInstanceUid(u"2.999.1.2.3.4.5.7") != nullptr;
                      }),
            (Sentences{"", "Cannot allocate storage for new series information.",
                       "The series instance UID is invalid."}));
  CMediaItem item;
  item.SetPath(key);
  EXPECT_EQ(sentences([] { return std::make_unique<CMediaItemList>(); },
                      [&](CMediaItemList& list) { return list.AddItem(item); },
                      [&](CMediaItemList& list) { return list.Contains(key); }),
            (Sentences{"", "Cannot allocate storage for new media item information."}));
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
