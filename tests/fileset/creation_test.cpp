#include <gtest/gtest.h>

#include <string>

#include "builder_job.h"
#include "dicom_dir_bytes.h"

namespace quillon::test {
namespace {

// Elements of the caller's own, in the place of group 0004.
RecordElements keysOf(const RecordElements& record) {
  RecordElements keys;
  for (const auto& [tag, value] : record) {
    if (tag >> 16 != 0x0004) keys[tag] = value;
  }
  return keys;
}

TEST(FileSetCreation, TellsHowManyBytesAreInTheirPlaces) {
  BuilderJob job;
  job.add("x", object(1, 1, 1, 1));
  job.add("y", object(1, 1, 1, 2));
  std::vector<std::pair<std::uint64_t, std::uint64_t>> told;
  job.builder.progress = [&](std::uint64_t done, std::uint64_t total) {
    told.emplace_back(done, total);
  };
  const std::uint64_t x = fs::file_size(job.in / "x");
  const std::uint64_t all = x + fs::file_size(job.in / "y");
  ASSERT_TRUE(job.create()) << job.sentence();
  EXPECT_EQ(told, (decltype(told){{0, all}, {x, all}, {all, all}}));
}

TEST(FileSetCreation, MovesTheFilesAndDescribesThem) {
  BuilderJob job;
  const fs::path sources[] = {job.add("x", object(1, 1, 1, 1)), job.add("y", object(1, 1, 1, 2)),
                              job.add("z", object(1, 1, 2, 1))};
  const Bytes contents[] = {readBytes(sources[0]), readBytes(sources[1]), readBytes(sources[2])};
  ASSERT_TRUE(job.create()) << job.sentence();

  EXPECT_EQ(filesBelow(job.root),
            (std::vector<std::string>{"DICOMDIR", "DICOMOBJ/QLN00001", "DICOMOBJ/QLN00002",
                                      "DICOMOBJ/QLN00003", "LABEL.TXT"}));
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(fs::exists(sources[i]));
    EXPECT_EQ(readBytes(job.root / "DICOMOBJ" / ("QLN0000" + std::to_string(i + 1))), contents[i]);
  }

  const DicomDirBytes dicomDir = readDicomDir(readBytes(job.root / "DICOMDIR"));
  EXPECT_EQ(dicomDir.header.at(0x00020012), "1.2.840.987654.1.1");
  EXPECT_EQ(dicomDir.header.at(0x00020013), "QuillonV3,2,1,33");
  EXPECT_EQ(dicomDir.header.at(0x00020016), "QuillonDicomSCP");
  EXPECT_EQ(dicomDir.header.at(0x00020002), "1.2.840.10008.1.3.10");
  EXPECT_EQ(dicomDir.header.at(0x00020010), kExplicitLittleUid);
  EXPECT_EQ(dicomDir.header.at(0x00041130), "");
  ASSERT_EQ(recordTypes(dicomDir), "PATIENT STUDY SERIES IMAGE IMAGE SERIES IMAGE");
  EXPECT_EQ(keysOf(dicomDir.records[0]), (RecordElements{{0x00100010, "PATIENT^1"},
                                                         {0x00100020, "ID1"},
                                                         {0x00100030, "19500102"},
                                                         {0x00100040, "O"},
                                                         {0x00101010, "059Y"}}));
  EXPECT_EQ(keysOf(dicomDir.records[1]), (RecordElements{{0x00080020, "20090305"},
                                                         {0x00080030, "101500"},
                                                         {0x00080050, "ACC1-1"},
                                                         {0x00081030, "Sample study"},
                                                         {0x0020000D, studyUidOf({})},
                                                         {0x00200010, "STUDY1"}}));
  EXPECT_EQ(keysOf(dicomDir.records[2]), (RecordElements{{0x00080021, "20090305"},
                                                         {0x00080060, "CT"},
                                                         {0x0020000E, seriesUidOf({})},
                                                         {0x00200011, "1"}}));
  EXPECT_EQ(keysOf(dicomDir.records[4]),
            (RecordElements{{0x00080018, instanceUidOf(object(1, 1, 1, 2))}, {0x00200013, "2"}}));
  EXPECT_EQ(dicomDir.records[6].at(0x00041500), "DICOMOBJ\\QLN00003");
  EXPECT_EQ(dicomDir.records[6].at(0x00041510), "1.2.840.10008.5.1.4.1.1.2");
  EXPECT_EQ(dicomDir.records[6].at(0x00041511), instanceUidOf(object(1, 1, 2, 1)));
  EXPECT_EQ(dicomDir.records[6].at(0x00041512), kExplicitLittleUid);

  // Nothing is left for another creation.
  EXPECT_FALSE(job.create());
  EXPECT_EQ(job.sentence(), "There is no patient information to process.");
}

TEST(FileSetCreation, NamesTheHierarchyByCountersOfEachLevel) {
  BuilderJob job;
  job.builder.useHierarchyForDicomObjects = true;
  EXPECT_TRUE(job.builder.SetDicomObjectDirectory(OLESTR("/IMG/SET/")));
  int made = 0;
  const auto add = [&](const Text& patient, int study, int series, int instance) {
    EXPECT_TRUE(job.builder.SetUniquePatientId(patient));
    job.add(std::to_string(++made), object(1, study, series, instance));
  };
  // The order of the model, not of the adding, gives the numbers.
  add(OLESTR("B"), 1, 1, 1);
  add(OLESTR("A"), 1, 1, 1);
  add(OLESTR("A"), 2, 1, 1);
  add(OLESTR("B"), 1, 2, 1);
  add(OLESTR("B"), 1, 1, 2);
  ASSERT_TRUE(job.create()) << job.sentence();
  const std::vector<std::string> expected{"DICOMDIR",
                                          "IMG/SET/P0000001/S0000001/E0000001/QLN00001",
                                          "IMG/SET/P0000001/S0000001/E0000001/QLN00002",
                                          "IMG/SET/P0000001/S0000001/E0000002/QLN00003",
                                          "IMG/SET/P0000002/S0000001/E0000001/QLN00004",
                                          "IMG/SET/P0000002/S0000002/E0000001/QLN00005",
                                          "LABEL.TXT"};
  EXPECT_EQ(filesBelow(job.root), expected);
  const DicomDirBytes dicomDir = readDicomDir(readBytes(job.root / "DICOMDIR"));
  EXPECT_EQ(recordTypes(dicomDir),
            "PATIENT STUDY SERIES IMAGE IMAGE SERIES IMAGE PATIENT STUDY SERIES IMAGE STUDY SERIES "
            "IMAGE");
  EXPECT_EQ(dicomDir.records[6].at(0x00041500), "IMG\\SET\\P0000001\\S0000001\\E0000002\\QLN00003");
}

TEST(FileSetCreation, DocumentsGetTheKeysOfTheirKind) {
  const std::string instance = instanceUidOf({});
  const RecordElements report{{0x00080018, instance},    {0x00080023, "20090305"},
                              {0x00080033, "103000"},    {0x00200013, "1"},
                              {0x0040A043, "121060"},    {0x0040A491, "COMPLETE"},
                              {0x0040A493, "UNVERIFIED"}};
  RecordElements verified = report;
  verified[0x0040A493] = "VERIFIED";
  verified[0x0040A030] = "20090305120000";
  RecordElements modified = report;
  modified[0x0040A730] = "HAS CONCEPT MOD";
  const RecordElements presentation{{0x00080018, instance},
                                    {0x00081115, seriesUidOf({})},
                                    {0x00200013, "1"},
                                    {0x00700080, "PRESENTATION"},
                                    {0x00700081, "Sample presentation state"},
                                    {0x00700082, "20090305"},
                                    {0x00700083, "110000"},
                                    {0x00700084, "CREATOR^CONTENT"}};
  const RecordElements keyObject{{0x00080018, instance}, {0x00080023, "20090305"},
                                 {0x00080033, "103000"}, {0x00200013, "1"},
                                 {0x0040A043, "113013"}, {0x0040A730, "113011"}};
  RecordElements plainKeyObject = keyObject;
  plainKeyObject.erase(0x0040A730);
  const struct {
    const char* what;
    ObjectKind kind;
    const char* verification;
    const char* relationship;
    const char* type;
    RecordElements keys;  // of a sequence, a text that it must hold
  } cases[] = {
      {"report", ObjectKind::Sr, "UNVERIFIED", "CONTAINS", "SR DOCUMENT", report},
      {"verified report", ObjectKind::Sr, "VERIFIED", "CONTAINS", "SR DOCUMENT", verified},
      {"report with a modified title", ObjectKind::Sr, "UNVERIFIED", "HAS CONCEPT MOD",
       "SR DOCUMENT", modified},
      {"presentation state", ObjectKind::Presentation, "", "", "PRESENTATION", presentation},
      {"key object document", ObjectKind::KeyObject, "", "HAS CONCEPT MOD", "KEY OBJECT DOC",
       keyObject},
      {"key object document without a modifier", ObjectKind::KeyObject, "", "CONTAINS",
       "KEY OBJECT DOC", plainKeyObject},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    BuilderJob job;
    ObjectDescription d;
    d.kind = c.kind;
    d.verificationFlag = c.verification;
    d.relationshipType = c.relationship;
    job.add("a", d);
    ASSERT_TRUE(job.create()) << job.sentence();
    const DicomDirBytes dicomDir = readDicomDir(readBytes(job.root / "DICOMDIR"));
    ASSERT_EQ(recordTypes(dicomDir), std::string("PATIENT STUDY SERIES ") + c.type);
    const RecordElements keys = keysOf(dicomDir.records[3]);
    for (const auto& [tag, value] : c.keys) {
      SCOPED_TRACE(tag);
      ASSERT_EQ(keys.count(tag), 1U);
      const bool isSequence = tag == 0x0040A043 || tag == 0x0040A730 || tag == 0x00081115;
      if (isSequence) {
        EXPECT_NE(keys.at(tag).find(value), std::string::npos);
      } else {
        EXPECT_EQ(keys.at(tag), value);
      }
    }
    EXPECT_EQ(keys.size(), c.keys.size());
    EXPECT_EQ(dicomDir.records[3].at(0x00041500), "DICOMOBJ\\QLN00001");
  }
}

TEST(FileSetCreation, ReplacesTheDicomDirThatWasThere) {
  BuilderJob job;
  job.add("a", object(1, 1, 1, 1));
  ASSERT_TRUE(job.create()) << job.sentence();
  job.add("b", object(2, 1, 1, 1));
  ASSERT_TRUE(job.create()) << job.sentence();
  const DicomDirBytes dicomDir = readDicomDir(readBytes(job.root / "DICOMDIR"));
  ASSERT_EQ(recordTypes(dicomDir), "PATIENT STUDY SERIES IMAGE");
  EXPECT_EQ(dicomDir.records[0].at(0x00100020), "ID2");
}

}  // namespace
}  // namespace quillon::test
