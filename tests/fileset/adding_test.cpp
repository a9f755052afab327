#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "builder_job.h"

namespace quillon::test {
namespace {

constexpr const char* kUniqueId = "DOE^JOHN 12345";

// A CT data set of nothing but its keys.
Bytes bareObject(const std::string& studyUid, const std::string& seriesUid,
                 const std::string& instanceUid) {
  const Bytes dataSet = DataSetBytes()
                            .text(0x00080016, "UI", "1.2.840.10008.5.1.4.1.1.2")
                            .text(0x00080018, "UI", instanceUid)
                            .text(0x00080060, "CS", "CT")
                            .text(0x0020000D, "UI", studyUid)
                            .text(0x0020000E, "UI", seriesUid)
                            .take();
  return dicomFile(dataSet, "1.2.840.10008.5.1.4.1.1.2", "2.999.1.2.3.4.5.6.7", kExplicitLittleUid);
}

// One whose element, which should be a text, holds bytes.
Bytes objectWithBytesIn(std::uint32_t tag, const std::string& studyUid,
                        const std::string& seriesUid, const std::string& instanceUid) {
  DataSetBytes dataSet;
  const std::pair<std::uint32_t, std::string> rows[] = {
      {0x00080018, instanceUid}, {0x00080020, "20090305"}, {0x00080021, "20090305"},
      {0x00100010, "DOE^JOHN"},  {0x0020000D, studyUid},   {0x0020000E, seriesUid}};
  for (const auto& [rowTag, value] : rows) {
    const bool isUid = rowTag != 0x00080020 && rowTag != 0x00080021 && rowTag != 0x00100010;
    if (rowTag == tag) {
      dataSet.raw(tag, "OB", {1, 2});
    } else {
      dataSet.text(rowTag, isUid ? "UI" : rowTag == 0x00100010 ? "PN" : "DA", value);
    }
  }
  return dicomFile(dataSet.take(), "1.2.840.10008.5.1.4.1.1.2", instanceUid, kExplicitLittleUid);
}

// As some converters write it: every VR given away.
Bytes objectOfUnknownVrs(const std::string& studyUid, const std::string& seriesUid,
                         const std::string& instanceUid) {
  DataSetBytes dataSet;
  const std::pair<std::uint32_t, std::string> rows[] = {{0x00080016, "1.2.840.10008.5.1.4.1.1.2"},
                                                        {0x00080018, instanceUid},
                                                        {0x00080060, "CT"},
                                                        {0x00100010, "DOE^JOHN"},
                                                        {0x00100030, ""},
                                                        {0x0020000D, studyUid},
                                                        {0x0020000E, seriesUid}};
  for (const auto& [tag, value] : rows) {
    Bytes bytes(value.begin(), value.end());
    if (bytes.size() % 2 != 0) bytes.push_back(0);
    dataSet.raw(tag, "UN", bytes);
  }
  return dicomFile(dataSet.take(), "1.2.840.10008.5.1.4.1.1.2", instanceUid, kExplicitLittleUid);
}

TEST(AddingFiles, TellsWhyAFileIsRefused) {
  const std::string study = "2.999.1.1111111111111";
  const std::string series = "2.999.2.1111111111111";
  const std::string instance = "2.999.3.1111111111111";
  const std::string maker = "1.2.840.987654.99.";
  const struct {
    const char* what;
    Bytes file;
    std::string sentence;  // {file} stands for the path; empty when accepted
    int count;  // objects in the list afterwards; -1 without a patient, whom a refused file does
                // not leave
  } cases[] = {
      {"whole", bareObject(study, series, instance), "", 1},
      {"not DICOM", Bytes(300, 'x'), "Cannot read the DICOM information from {file}.", -1},
      {"study UID without a value", bareObject("", series, instance),
       "Cannot read the study information for the patient DOE^JOHN 12345 from {file}.", -1},
      {"series UID without a value", bareObject(study, "", instance),
       "Cannot read the series information for the study " + study +
           " for the patient DOE^JOHN 12345 from {file}.",
       -1},
      {"SOP instance UID without a value", bareObject(study, series, ""),
       "The image SOP instance UID (0008,0018) is missing from the image file {file} for the "
       "sries " +
           series + " in study " + study + " for the patient DOE^JOHN 12345.",
       -1},
      {"bytes for a patient's name", objectWithBytesIn(0x00100010, study, series, instance),
       "Cannot add the patient information from {file} for the patient DOE^JOHN 12345 to the "
       "patient list.",
       -1},
      {"bytes for a study date", objectWithBytesIn(0x00080020, study, series, instance),
       "Cannot add the study information " + study + " for the patient DOE^JOHN 12345 from {file}.",
       -1},
      {"bytes for a series date", objectWithBytesIn(0x00080021, study, series, instance),
       "Cannot add the series " + series + " to the study " + study +
           " for the patient DOE^JOHN 12345 from {file}.",
       -1},
      {"every element as UN", objectOfUnknownVrs(study, series, instance), "", 1},
      {"maker's form", bareObject(study, series, maker + "1234.5"), "", 1},
      {"maker's form, only dot first", bareObject(study, series, maker + ".1234"),
       "The image instance UID from {file} is invalid.", -1},
      {"maker's form, dot last", bareObject(study, series, maker + "1234."),
       "The instance UID is invalid.", -1},
      {"the maker's root inside", bareObject(study, series, "1." + maker + "1234.5"),
       "Cannot add the image 1." + maker + "1234.5 to the series " + series + " in the study " +
           study + " for the patient DOE^JOHN 12345 from {file}.",
       -1},
      {"maker's form without a frame", bareObject(study, series, maker + "1234"),
       "Cannot add the image " + maker + "1234 to the series " + series + " in the study " + study +
           " for the patient DOE^JOHN 12345 from {file}.",
       -1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    BuilderJob job;
    const fs::path file = job.in / "object";
    writeBytes(file, c.file);
    EXPECT_EQ(job.builder.AddFile(WideOf(file)), c.sentence.empty());
    std::string sentence = c.sentence;
    insert(sentence, "{file}", file);
    EXPECT_EQ(job.sentence(), sentence);
    EXPECT_EQ(job.count(), c.count);
  }
}

TEST(AddingFiles, AFileWithoutOneOfTheThreeUidsIsPassedOver) {
  for (const std::uint32_t missing : {0x00080018U, 0x0020000DU, 0x0020000EU}) {
    SCOPED_TRACE(missing);
    DataSetBytes dataSet;
    for (const std::uint32_t tag : {0x00080018U, 0x0020000DU, 0x0020000EU}) {
      if (tag != missing) dataSet.text(tag, "UI", "2.999.1.1111111111111");
    }
    BuilderJob job;
    writeBytes(job.in / "object", dicomFile(dataSet.take(), "1.2.840.10008.5.1.4.1.1.2", "2.999.1",
                                            kExplicitLittleUid));
    EXPECT_TRUE(job.builder.AddFile(WideOf(job.in / "object")));
    EXPECT_EQ(job.count(), -1);
    EXPECT_EQ(job.sentence(), "There is no patient information to process.");
  }
}

TEST(AddingFiles, AnObjectIsAddedOnceAndFilesItselfUnderItsKeys) {
  BuilderJob job;
  job.add("a", {});
  ASSERT_TRUE(job.added);
  EXPECT_TRUE(job.builder.AddFile(WideOf(job.in / "a")));
  // The same object in another file.
  job.add("b", {});
  EXPECT_TRUE(job.added);
  EXPECT_EQ(job.count(), 1);
  // The frames of a split image are objects of their own, also the one whose name is the key.
  const std::string maker = "1.2.840.987654.99.77.1234";
  for (const char* frame : {".0", ".5", ".6", ".5"}) {
    ObjectDescription d;
    d.instanceUid = maker + frame;
    job.add(std::string("frame") + frame, d);
    EXPECT_TRUE(job.added) << job.sentence();
  }
  EXPECT_EQ(job.count(), 4);
  // Patients are told apart by the job's unique ID alone.
  EXPECT_TRUE(job.builder.SetUniquePatientId(OLESTR("doe^john 12345")));
  job.add("c", {});
  EXPECT_TRUE(job.added);
  EXPECT_EQ(job.count(), 5);
}

// Who came first describes the patient, the study and the series.
TEST(AddingFiles, LaterFilesOfTheSameKeysChangeNothing) {
  BuilderJob job;
  const auto objectOf = [](const char* instance, const char* patientId, const char* studyId) {
    return dicomFile(DataSetBytes()
                         .text(0x00080018, "UI", instance)
                         .text(0x00100010, "PN", "DOE^JOHN")
                         .text(0x00100020, "LO", patientId)
                         .text(0x0020000D, "UI", "2.999.1.1111111111111")
                         .text(0x0020000E, "UI", "2.999.2.1111111111111")
                         .text(0x00200010, "SH", studyId)
                         .take(),
                     "1.2.840.10008.5.1.4.1.1.2", instance, kExplicitLittleUid);
  };
  writeBytes(job.in / "1", objectOf("2.999.3.1111111111111", "FIRST", "S1"));
  writeBytes(job.in / "2", objectOf("2.999.3.2222222222222", "SECOND", "S2"));
  ASSERT_TRUE(job.builder.AddDirectory(WideOf(job.in), false));
  ASSERT_EQ(job.count(), 2);
  ASSERT_TRUE(job.create()) << job.sentence();
  const Bytes written = readBytes(job.root / "DICOMDIR");
  const std::string directory(written.begin(), written.end());
  for (const auto& [text, isThere] : std::vector<std::pair<std::string, bool>>{
           {"FIRST", true}, {"S1", true}, {"SECOND", false}, {"S2", false}}) {
    EXPECT_EQ(directory.find(text) != std::string::npos, isThere) << text;
  }
}

TEST(AddingFiles, WithoutAUniquePatientIdNothingIsAdded) {
  BuilderJob job;
  EXPECT_TRUE(job.builder.SetUniquePatientId(OLESTR("")));
  const fs::path file = job.add("a", {});
  EXPECT_FALSE(job.added);
  EXPECT_EQ(job.sentence(), "Cannot add the patient information from " + file.string() +
                                " for the patient  to the patient list.");
  EXPECT_EQ(job.count(), -1);
  EXPECT_FALSE(job.builder.AddFile(OLESTR("")));
  EXPECT_EQ(job.sentence(), "The path name is invalid.");
}

TEST(AddingFiles, ADiscardedListIsMadeAgain) {
  BuilderJob job;
  job.add("a", {});
  job.builder.DiscardPatientList();
  EXPECT_EQ(job.count(), -1);
  EXPECT_EQ(job.sentence(), "The patient list is invalid.");
  job.add("b", {});
  EXPECT_EQ(job.count(), 1);
}

ObjectDescription instance(int number) {
  ObjectDescription d;
  d.instance = number;
  return d;
}

TEST(AddingDirectories, AreWalkedAsTheSettingSays) {
  BuilderJob job;
  job.make("1", instance(1));
  job.make("b/2", instance(2));
  job.make("b/c/3", instance(3));
  fs::create_directory(job.in / "empty");
  job.builder.allowAddHierarchyTree = false;
  EXPECT_TRUE(job.builder.AddDirectory(WideOf(job.in), false));
  EXPECT_EQ(job.count(), 1);
  job.builder.allowAddHierarchyTree = true;
  EXPECT_TRUE(job.builder.AddDirectory(WideOf(job.in.string() + "/"), false)) << job.sentence();
  EXPECT_EQ(job.count(), 3);
}

TEST(AddingDirectories, AnEmptyNameIsTheCurrentDirectory) {
  BuilderJob job;
  job.make("1", instance(1));
  const fs::path before = fs::current_path();
  fs::current_path(job.in);
  EXPECT_TRUE(job.builder.AddDirectory(OLESTR(""), /*createAfterwards=*/true)) << job.sentence();
  fs::current_path(before);
  EXPECT_TRUE(fs::exists(job.root / "DICOMDIR"));
}

TEST(AddingDirectories, TheFirstFileThatFailsEndsTheWalk) {
  BuilderJob job;
  job.make("a", instance(1));
  writeText(job.in / "b.txt", "This is a text, and a text is no DICOM object.");
  job.make("c", instance(2));
  EXPECT_FALSE(job.builder.AddDirectory(WideOf(job.in), false));
  EXPECT_EQ(job.sentence(),
            "Cannot read the DICOM information from " + job.in.string() + "\\b.txt.");
  EXPECT_EQ(job.count(), 1);
}

TEST(AddingDirectories, RefusesWhatCannotBeWalked) {
  BuilderJob job;
  EXPECT_FALSE(job.builder.AddDirectory(WideOf(job.in / "none"), false));
  EXPECT_EQ(job.sentence(),
            "The file search specification " + (job.in / "none").string() + "\\*.* is invalid.");
  EXPECT_FALSE(job.builder.AddDirectory(Text(261, OLESTR('A')), false));
  EXPECT_EQ(job.sentence(),
            "The path name " + std::string(261, 'A') + " is longer than 260 characters.");
  const std::string nearlyTooLong =
      job.in.string() + "/" + std::string(258 - job.in.string().size(), 'A');
  EXPECT_FALSE(job.builder.AddDirectory(WideOf(nearlyTooLong), false));
  EXPECT_EQ(job.sentence(),
            "The current path name " + nearlyTooLong +
                "\\ plus the new path component *.* is longer than 260 characters.");
}

}  // namespace
}  // namespace quillon::test
