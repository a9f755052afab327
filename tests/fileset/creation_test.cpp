#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "builder_job.h"
#include "dicom_dir_bytes.h"

namespace quillon::test {
namespace {

ObjectDescription object(int patient, int study, int series, int instance) {
  ObjectDescription d;
  d.patient = patient;
  d.study = study;
  d.series = series;
  d.instance = instance;
  return d;
}

// Elements of the caller's own, in the place of group 0004.
RecordElements keysOf(const RecordElements& record) {
  RecordElements keys;
  for (const auto& [tag, value] : record) {
    if (tag >> 16 != 0x0004) keys[tag] = value;
  }
  return keys;
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
  job.builder.SetDicomObjectDirectory(u"/IMG/SET/");
  int made = 0;
  const auto add = [&](const Text& patient, int study, int series, int instance) {
    job.builder.SetUniquePatientId(patient);
    job.add(std::to_string(++made), object(1, study, series, instance));
  };
  // The order of the model, not of the adding, gives the numbers.
  add(u"B", 1, 1, 1);
  add(u"A", 1, 1, 1);
  add(u"A", 2, 1, 1);
  add(u"B", 1, 2, 1);
  add(u"B", 1, 1, 2);
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

// A file that the presentation reader refuses.
Bytes stateWithoutCreator() {
  const std::string sopClass = "1.2.840.10008.5.1.4.1.1.11.1";
  const std::string instance = "2.999.20.1.1.9.1";
  return dicomFile(DataSetBytes()
                       .text(0x00080016, "UI", sopClass)
                       .text(0x00080018, "UI", instance)
                       .text(0x00080060, "CS", "PR")
                       .text(0x00100010, "PN", "PATIENT^1")
                       .text(0x0020000D, "UI", studyUidOf({}))
                       .text(0x0020000E, "UI", "2.999.20.1.1.9")
                       .text(0x00200013, "IS", "1")
                       .text(0x00700080, "CS", "LABEL")
                       .text(0x00700081, "LO", "")
                       .take(),
                   sopClass, instance, kExplicitLittleUid);
}

TEST(FileSetCreation, AFailingStepLeavesItsSentenceAndThePatientsAsTheyShouldBe) {
  struct Case {
    const char* what;
    std::function<void(BuilderJob&)> prepare;
    std::string sentence;  // {root} and {in} stand for the directories
    bool isKept;           // whether the patient list stays
    std::vector<std::string> files;
  };
  const Case cases[] = {
      {"lower-case object directory",
       [](BuilderJob& job) { job.builder.SetDicomObjectDirectory(u"dicomobj"); },
       "The File ID dicomobj\\ does not conform to the DICOM standard because it may only be "
       "comprised of these characters:  ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_\\/",
       true,
       {}},
      {"object directory of nothing",
       [](BuilderJob& job) { job.builder.SetDicomObjectDirectory(u"\\"); },
       "The File ID does not conform to the DICOM standard because it is empty or null.",
       true,
       {}},
      {"DICOMDIR is a directory",
       [](BuilderJob& job) { fs::create_directories(job.root / "DICOMDIR"); },
       "Cannot delete the file {root}\\DICOMDIR.",
       true,
       {}},
      {"object directory is a file",
       [](BuilderJob& job) {
         fs::create_directories(job.root);
         writeText(job.root / "DICOMOBJ", "x");
       },
       "Cannot create the directory DICOMOBJ for this reason:  Cannot create a file when that file "
       "already exists.",
       true,
       {"DICOMOBJ"}},
      {"source is gone",
       [](BuilderJob& job) { fs::remove(job.in / "b"); },
       "The path {in}/b cannot be found.",
       false,
       {"DICOMOBJ/QLN00001"}},
      {"target is a directory",
       [](BuilderJob& job) { fs::create_directories(job.root / "DICOMOBJ" / "QLN00002" / "x"); },
       "Cannot open the file {root}\\DICOMOBJ\\QLN00002.",
       false,
       {"DICOMOBJ/QLN00001"}},
      {"series directory is a file",
       [](BuilderJob& job) {
         job.builder.useHierarchyForDicomObjects = true;
         fs::create_directories(job.root / "DICOMOBJ");
         writeText(job.root / "DICOMOBJ" / "P0000001", "x");
       },
       "Cannot create the directory P0000001 for this reason:  Cannot create a file when that file "
       "already exists.",
       false,
       {"DICOMOBJ/P0000001"}},
      {"File ID too deep",
       [](BuilderJob& job) {
         job.builder.useHierarchyForDicomObjects = true;
         job.builder.SetDicomObjectDirectory(u"A\\B\\C\\D\\E");
       },
       "The File ID A\\B\\C\\D\\E\\P0000001\\S0000001\\E0000001\\QLN00001 does not conform to the "
       "DICOM standard because the directory hierarchy exceeds 8 levels.",
       false,
       {}},
      {"level of eleven characters",
       [](BuilderJob& job) { job.builder.SetDicomObjectDirectory(u"DICOMOBJECT"); },
       "Cannot set the image file reference to DICOMOBJECT\\QLN00001 for the series " +
           seriesUidOf({}) + " in study " + studyUidOf({}) +
           " for the patient DOE^JOHN 12345 from the file {in}/a.",
       false,
       {"DICOMOBJECT/QLN00001"}},
      {"presentation state that cannot be read",
       [](BuilderJob& job) {
         writeBytes(job.in / "pr", stateWithoutCreator());
         ASSERT_TRUE(job.builder.AddFile(wide(job.in / "pr"))) << job.sentence();
       },
       "Cannot retrieve the \"00700084,PN\" presentation tag value.",
       true,
       {"DICOMOBJ/QLN00001", "DICOMOBJ/QLN00002", "DICOMOBJ/QLN00003"}},
      {"root of almost 260 characters",
       [](BuilderJob& job) {
         const std::string start = job.root.string() + "/";
         job.builder.SetDicomRootDirectory(wide(start + std::string(253 - start.size(), 'R')));
       },
       "The current path name {long}\\ plus the new path component DICOMDIR is longer than 260 "
       "characters.",
       true,
       {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    BuilderJob job;
    job.add("a", object(1, 1, 1, 1));
    job.add("b", object(1, 1, 1, 2));
    c.prepare(job);
    const int before = job.count();
    const fs::path directory = fs::current_path();
    EXPECT_FALSE(job.create());
    std::string sentence = c.sentence;
    const std::pair<const char*, std::string> places[] = {
        {"{root}", job.root.string()},
        {"{in}", job.in.string()},
        {"{long}", narrow(job.builder.DicomRootDirectory())}};
    for (const auto& [name, value] : places) {
      if (const auto at = sentence.find(name); at != std::string::npos) {
        sentence.replace(at, std::string(name).size(), value);
      }
    }
    EXPECT_EQ(job.sentence(), sentence);
    EXPECT_EQ(job.count(), c.isKept ? before : -1);
    EXPECT_EQ(filesBelow(job.root), c.files);
    EXPECT_EQ(fs::current_path(), directory);
  }
}

TEST(FileSetCreation, NeverOverwritesAFileThatIsStillToBeMoved) {
  const struct {
    const char* what;
    std::string name;  // below the root
    std::string root;  // as the setting names it, after the job's directory
    bool isRefused;
  } cases[] = {
      {"in the object directory", "DICOMOBJ/QLN00002", "/root", true},
      {"deep below it", "DICOMOBJ/A/B", "/root/", true},
      {"the root spelled otherwise", "DICOMOBJ/X", "/in/../root", true},
      {"the DICOMDIR itself", "DICOMDIR", "/root", true},
      {"beside the object directory", "DICOMOBJ2/X", "/root", false},
      {"in the root", "X", "/root", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    BuilderJob job;
    job.builder.SetDicomRootDirectory(wide(job.dir.path().string() + c.root));
    job.add("a", object(1, 1, 1, 1));
    const fs::path source = job.root / c.name;
    fs::create_directories(source.parent_path());
    makeObjectFile(source, object(1, 1, 1, 2));
    ASSERT_TRUE(job.builder.AddFile(wide(source)));
    EXPECT_EQ(job.create(), !c.isRefused);
    if (!c.isRefused) continue;
    EXPECT_EQ(job.sentence(),
              "The file " + source.string() + " already lies where the file set is to be created.");
    EXPECT_EQ(filesBelow(job.root), (std::vector<std::string>{c.name}));
    EXPECT_TRUE(fs::exists(job.in / "a"));
    EXPECT_EQ(job.count(), 2);
  }
}

TEST(FileSetCreation, ASourceThatIsALinkIsCopied) {
  BuilderJob job;
  const fs::path target = job.make("target", {});
  const Bytes contents = readBytes(target);
  fs::create_symlink(target, job.in / "link");
  ASSERT_TRUE(job.builder.AddFile(wide(job.in / "link")));
  ASSERT_TRUE(job.create()) << job.sentence();
  EXPECT_EQ(readBytes(target), contents);
  EXPECT_FALSE(fs::exists(fs::symlink_status(job.in / "link")));
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(job.root / "DICOMOBJ/QLN00001")));
}

}  // namespace
}  // namespace quillon::test
