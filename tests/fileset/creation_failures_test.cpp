// Creations that fail: what is said, what stays in the patient list, and where every file is.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "builder_job.h"

namespace quillon::test {
namespace {

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
    std::string sentence;              // what stands in braces is a path
    bool isKept;                       // whether the patient list stays
    std::vector<std::string> files;    // in the root
    std::vector<std::string> sources;  // in their place
  };
  const std::vector<std::string> all{"a", "b"};
  const Case cases[] = {
      {"lower-case object directory",
       [](BuilderJob& job) {
         EXPECT_TRUE(job.builder.SetDicomObjectDirectory(OLESTR("dicomobj")));
       },
       "The File ID dicomobj\\ does not conform to the DICOM standard because it may only be "
       "comprised of these characters:  ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_\\/",
       true,
       {},
       all},
      {"object directory of nothing",
       [](BuilderJob& job) { EXPECT_TRUE(job.builder.SetDicomObjectDirectory(OLESTR("\\"))); },
       "The File ID does not conform to the DICOM standard because it is empty or null.",
       true,
       {},
       all},
      {"DICOMDIR is a directory",
       [](BuilderJob& job) { fs::create_directories(job.root / "DICOMDIR"); },
       "Cannot delete the file {root}\\DICOMDIR.",
       true,
       {},
       all},
      {"object directory is a file",
       [](BuilderJob& job) {
         fs::create_directories(job.root);
         writeText(job.root / "DICOMOBJ", "x");
       },
       "Cannot create the directory DICOMOBJ for this reason:  " + kFileExists,
       true,
       {"DICOMOBJ"},
       all},
      {"root is a file",
       [](BuilderJob& job) { writeText(job.root, "x"); },
       "Cannot create the directory root for this reason:  " + kFileExists,
       true,
       {},
       all},
      {"source is gone",
       [](BuilderJob& job) { fs::remove(job.in / "b"); },
       "The path {b} cannot be found.",
       false,
       {},
       {"a"}},
      {"source is empty",
       [](BuilderJob& job) { writeText(job.in / "b", ""); },
       "The path {b} does not refer to a valid file.",
       false,
       {},
       all},
      {"source has changed",
       [](BuilderJob& job) { job.make("b", object(1, 1, 1, 345)); },
       "The file {b} has changed since it was added.",
       false,
       {},
       all},
      {"source comes up twice",
       [](BuilderJob& job) {
         EXPECT_TRUE(job.builder.SetUniquePatientId(OLESTR("ROE^JANE 2")));
         ASSERT_TRUE(job.builder.AddFile(WideOf(job.in / "b")));
       },
       "The path {b} cannot be found.",
       false,
       {},
       all},
      {"target is a directory",
       [](BuilderJob& job) { fs::create_directories(job.root / "DICOMOBJ" / "QLN00002" / "x"); },
       "Cannot open the file {root}\\DICOMOBJ\\QLN00002.",
       false,
       {},
       all},
      {"series directory is a file",
       [](BuilderJob& job) {
         job.builder.useHierarchyForDicomObjects = true;
         fs::create_directories(job.root / "DICOMOBJ");
         writeText(job.root / "DICOMOBJ" / "P0000001", "x");
       },
       "Cannot create the directory P0000001 for this reason:  " + kFileExists,
       false,
       {"DICOMOBJ/P0000001"},
       all},
      {"File ID too deep",
       [](BuilderJob& job) {
         job.builder.useHierarchyForDicomObjects = true;
         EXPECT_TRUE(job.builder.SetDicomObjectDirectory(OLESTR("A\\B\\C\\D\\E")));
       },
       "The File ID A\\B\\C\\D\\E\\P0000001\\S0000001\\E0000001\\QLN00001 does not conform to the "
       "DICOM standard because the directory hierarchy exceeds 8 levels.",
       false,
       {},
       all},
      {"level of eleven characters",
       [](BuilderJob& job) {
         EXPECT_TRUE(job.builder.SetDicomObjectDirectory(OLESTR("DICOMOBJECT")));
       },
       "Cannot set the image file reference to DICOMOBJECT\\QLN00001 for the series " +
           seriesUidOf({}) + " in study " + studyUidOf({}) +
           " for the patient DOE^JOHN 12345 from the file {a}.",
       false,
       {},
       all},
      {"presentation state that cannot be read",
       [](BuilderJob& job) {
         writeBytes(job.in / "pr", stateWithoutCreator());
         ASSERT_TRUE(job.builder.AddFile(WideOf(job.in / "pr"))) << job.sentence();
       },
       "Cannot retrieve the \"00700084,PN\" presentation tag value.",
       true,
       {},
       {"a", "b", "pr"}},
#ifndef _WIN32  // where the tests have no links
      {"other content with a link that leads nowhere",
       [](BuilderJob& job) {
         job.builder.includeOtherContent = true;
         fs::create_directory(job.dir / "viewer");
         fs::create_symlink("nowhere", job.dir / "viewer/link");
         job.registry.setOtherContent(job.dir / "viewer");
       },
       "Cannot open the file {viewer}\\link.",
       false,
       {},
       all},
#endif
      {"other content around the root",
       [](BuilderJob& job) {
         job.builder.includeOtherContent = true;
         job.registry.setOtherContent(job.dir.path());
       },
       "The directory {dir} of the other content holds the root directory {root}.",
       false,
       {},
       all},
      {"other content where the objects lie",
       [](BuilderJob& job) {
         job.builder.includeOtherContent = true;
         EXPECT_TRUE(job.builder.SetOtherContentDirectory(OLESTR("DICOMOBJ")));
         writeText(job.dir / "viewer/QLN00001", "x");
         job.registry.setOtherContent(job.dir / "viewer");
       },
       "The other content of {viewer} would put DICOMOBJ/QLN00001 into the file set, which has its "
       "own there.",
       false,
       {},
       all},
      {"label is a directory",
       [](BuilderJob& job) { fs::create_directories(job.root / "LABEL.TXT"); },
       "Cannot open the file {root}\\LABEL.TXT.",
       false,
       {},
       all},
      {"root of almost 260 characters",
       [](BuilderJob& job) {
         const std::string start = job.root.string() + "/";
         EXPECT_TRUE(job.builder.SetDicomRootDirectory(
             WideOf(start + std::string(253 - start.size(), 'R'))));
       },
       "The current path name {long}\\ plus the new path component DICOMDIR is longer than 260 "
       "characters.",
       true,
       {},
       all},
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
    insert(sentence, "{root}", job.root);
    insert(sentence, "{a}", job.in / "a");
    insert(sentence, "{b}", job.in / "b");
    insert(sentence, "{viewer}", job.dir / "viewer");
    insert(sentence, "{dir}", job.dir.path());
    insert(sentence, "{long}", job.builder.DicomRootDirectory());
    EXPECT_EQ(job.sentence(), sentence);
    EXPECT_EQ(job.count(), c.isKept ? before : -1);
    EXPECT_EQ(filesBelow(job.root), c.files);
    EXPECT_EQ(filesBelow(job.in), c.sources);
    EXPECT_TRUE(job.builder.IheLabel().empty());
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
    EXPECT_TRUE(job.builder.SetDicomRootDirectory(WideOf(job.dir.path().string() + c.root)));
    job.add("a", object(1, 1, 1, 1));
    const fs::path file = job.root / c.name;
    fs::create_directories(file.parent_path());
    makeObjectFile(file, object(1, 1, 1, 2));
    ASSERT_TRUE(job.builder.AddFile(WideOf(file)));
    EXPECT_EQ(job.create(), !c.isRefused) << job.sentence();
    if (!c.isRefused) continue;
    EXPECT_EQ(job.sentence(),
              "The file " + file.string() + " already lies where the file set is to be created.");
    EXPECT_EQ(filesBelow(job.root), (std::vector<std::string>{c.name}));
    EXPECT_TRUE(fs::exists(job.in / "a"));
    EXPECT_EQ(job.count(), 2);
  }
}

}  // namespace
}  // namespace quillon::test
