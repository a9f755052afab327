// The file set when memory runs out.
#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <set>
#include <string>

#include "builder_job.h"
#include "data_set_of.h"
#include "fileset/model/media_item_list.h"
#include "fileset/model/patient_list.h"
#include "support/failing_new.h"

namespace quillon::test {
namespace {

// Whatever allocation fails: the list is as it was, or holds the whole node and finds it.
TEST(FileSetModel, WithoutMemoryNothingIsAdded) {
  const DcElemList dataSet = dataSetOf({{0x0020000D, "2.999.1.2.3.4.5.6"},
                                        {0x0020000E, "2.999.1.2.3.4.5.7"},
                                        {0x00100010, "A NAME THAT TAKES MEMORY"}});
  const Text key = OLESTR("A KEY THAT TAKES MEMORY");
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
      return Plain(list->ErrorMessage());
    });
  };
  using Sentences = std::set<std::string>;
  EXPECT_EQ(sentences([] { return std::make_unique<CPatientList>(); },
                      [&](CPatientList& list) { return list.Add(&dataSet, key) != nullptr; },
                      [&](CPatientList& list) { return list.Find(key) != nullptr; }),
            (Sentences{"", "Cannot allocate storage for new patient information.",
                       "Cannot set the new patient unique ID.", "The patient name is invalid."}));
  EXPECT_EQ(
      sentences([] { return std::make_unique<CStudyList>(); },
                [&](CStudyList& list) { return list.Add(&dataSet) != nullptr; },
                [](CStudyList& list) { return list.Find(OLESTR("2.999.1.2.3.4.5.6")) != nullptr; }),
      (Sentences{"", "Cannot allocate storage for new study information.",
                 "The study instance UID is invalid."}));
  EXPECT_EQ(sentences([] { return std::make_unique<CSeriesList>(); },
                      [&](CSeriesList& list) { return list.Add(&dataSet) != nullptr; },
                      [](CSeriesList& list) {
                        return list.Find(OLESTR("2.999.1.2.3.4.5.7")) != nullptr;
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

// Whatever allocation fails: the object is in the set with whole records, or is not.
TEST(CurrentPractice, WithoutMemoryAnObjectIsAddedWholeOrNotAtAll) {
  BuilderJob job;
  job.builder.currentPractice = true;
  job.builder.characterSet = "ISO_IR 100";
  ObjectDescription description = object(1, 1, 1, 1);
  description.patientName = "M\xFCller^J\xF6rg";
  const fs::path file = job.make("a", description);
  int refused = 0;
  withEachAllocationFailing([&](long n, bool& happened) {
    job.builder.DiscardPatientList();
    bool isAdded = false;
    try {
      const FailingNew failing(n);
      isAdded = job.builder.AddFile(WideOf(file));
      happened = failing.happened();
    } catch (const std::bad_alloc&) {
      happened = true;
    }
    refused += isAdded ? 0 : 1;
    EXPECT_EQ(job.count(), isAdded ? 1 : -1) << n;
    if (!isAdded) return std::string();
    EXPECT_TRUE(job.builder.PreviewFileSet({}, {})) << n << job.sentence();
    EXPECT_EQ(job.builder.Planned().incomplete.size(), 0U) << n;
    return std::string();
  });
  EXPECT_GT(refused, 50);
}

TEST(MediumLabel, WithoutMemoryIsWholeOrMissing) {
  BuilderJob job;
  CPatientList patients;
  const DcElemList dataSet = dataSetOf({{0x00100010, "DOE^JOHN"}, {0x0020000D, "2.999.1"}});
  ASSERT_TRUE(patients.Add(&dataSet, OLESTR("P")));
  ASSERT_TRUE(patients.At(0)->Studies().Add(&dataSet));
  Bytes label;
  std::set<Bytes> labels;
  const auto outcomes = withEachAllocationFailing([&](long n, bool& happened) {
    fs::remove(job.in / "LABEL.TXT");
    job.builder.ClearError();
    bool isWritten = false;
    try {
      const FailingNew failing(n);
      isWritten = job.builder.WriteLabel(&patients, WideOf(job.in));
      happened = failing.happened();
    } catch (const std::bad_alloc&) {
      happened = true;
    }
    if (isWritten && label.empty()) label = readBytes(job.in / "LABEL.TXT");
    if (fs::exists(job.in / "LABEL.TXT")) labels.insert(readBytes(job.in / "LABEL.TXT"));
    return job.sentence();
  });
  EXPECT_EQ(labels, std::set<Bytes>{label});
  EXPECT_TRUE(
      outcomes.contains("Cannot allocate storage for processing the suggested IHE media label."));
}

}  // namespace
}  // namespace quillon::test
