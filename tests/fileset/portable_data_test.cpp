#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "builder_job.h"

namespace quillon::test {
namespace {

struct PagesJob : BuilderJob {
  PagesJob() : source(dir / "viewer") {
    builder.portableData = true;
    add("a", {});
  }
  // Other content in the root itself.
  void bring(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
      fs::create_directories((source / name).parent_path());
      writeText(source / name, "theirs");
    }
    registry.setOtherContent(source);
    builder.includeOtherContent = true;
    ASSERT_TRUE(builder.SetOtherContentDirectory(OLESTR("\\")));
  }
  [[nodiscard]] std::string textOf(const fs::path& name) const {
    const Bytes bytes = readBytes(root / name);
    return {bytes.begin(), bytes.end()};
  }
  fs::path source;
};

TEST(PortableData, IsMadeWithTheRegistrysValueOnAndCountsForTheRoom) {
  BuilderJob job;
  job.registry.setNumber("PortableData", 1);
  CDicomDirProcessor builder;
  ASSERT_TRUE(builder.portableData);
  builder.includeOtherContent = false;
  ASSERT_TRUE(builder.SetDicomRootDirectory(WideOf(job.root)));
  ASSERT_TRUE(builder.SetUniquePatientId(OLESTR("KEY")));
  ASSERT_TRUE(builder.AddFile(WideOf(job.make("a", {}))));
  ASSERT_TRUE(builder.PlanFileSet({}, {}));
  const DiscRoom room = builder.Planned().room;
  ASSERT_TRUE(builder.CreatePlannedFileSet()) << Plain(builder.ErrorMessage());
  const std::vector<std::string> made = filesBelow(job.root);
  EXPECT_EQ(made, (std::vector<std::string>{"DICOMDIR", "DICOMOBJ/QLN00001", "IHE_PDI/HEAD0001.HTM",
                                            "IHE_PDI/STUDY001.HTM", "IHE_PDI/STYLE.CSS",
                                            "INDEX.HTM", "LABEL.TXT", "README.TXT"}));
  EXPECT_EQ(room.Files(), made.size());
  std::uint64_t bytes = 0;
  for (const std::string& name : made) bytes += fs::file_size(job.root / name);
  const std::uint64_t directory = fs::file_size(job.root / "DICOMDIR");
  EXPECT_LE(room.Bytes(), bytes);
  EXPECT_GE(room.Bytes(), bytes - directory);
}

// A host without today's practice keeps the names' bytes, and pages read them all the same.
TEST(PortableData, ReadsTextsInTheirCharacterSetWhateverThePractice) {
  for (const bool practice : {false, true}) {
    PagesJob job;
    job.builder.currentPractice = practice;
    ObjectDescription greek = object(2, 1, 1, 1);
    greek.patientName = "\xC4\xE9^\xC1";
    const fs::path file = job.make("greek", greek);
    Bytes bytes = readBytes(file);
    const std::string declared = "ISO_IR 100";
    const auto at = std::search(bytes.begin(), bytes.end(), declared.begin(), declared.end());
    ASSERT_NE(at, bytes.end());
    std::copy_n("126", 3, at + 7);
    writeBytes(file, bytes);
    ASSERT_TRUE(job.builder.SetUniquePatientId(OLESTR("GREEK")));
    ASSERT_TRUE(job.builder.AddFile(WideOf(file))) << job.sentence();
    ASSERT_TRUE(job.create()) << job.sentence();
    EXPECT_NE(job.textOf("INDEX.HTM").find("\u0394\u03B9, \u0391"), std::string::npos) << practice;
  }
}

TEST(PortableData, LeavesTheOtherContentItsReadmeAndItsIndex) {
  PagesJob job;
  job.bring({"README.TXT", "index.htm"});
  ASSERT_TRUE(job.builder.PlanFileSet({}, {})) << job.sentence();
  EXPECT_EQ(job.builder.Planned().pageRemarks.size(), 2U);
  ASSERT_TRUE(job.builder.CreatePlannedFileSet()) << job.sentence();
  EXPECT_EQ(job.textOf("README.TXT"), "theirs");
  EXPECT_EQ(job.textOf("index.htm"), "theirs");
  // Windows would find theirs by this name.
  const std::vector<std::string> files = filesBelow(job.root);
  EXPECT_EQ(std::ranges::find(files, "INDEX.HTM"), files.end());
  EXPECT_NE(job.textOf("IHE_PDI/INDEX.HTM").find("href=\"../README.TXT\""), std::string::npos);
  EXPECT_NE(job.textOf("IHE_PDI/STUDY001.HTM").find("href=\"INDEX.HTM\""), std::string::npos);
  EXPECT_EQ(job.sentence(), "The other content brings a README.TXT, and none is made.");
}

TEST(PortableData, IsRefusedWithNothingChangedWhereANameIsTaken) {
  const struct {
    const char* what;
    std::function<void(PagesJob&)> prepare;
    const char* taken;
  } cases[] = {
      {"an index of an earlier set", [](PagesJob& job) { writeText(job.root / "INDEX.HTM", "x"); },
       "INDEX.HTM"},
      {"a directory", [](PagesJob& job) { fs::create_directory(job.root / "README.TXT"); },
       "README.TXT"},
      {"pages of an earlier set", [](PagesJob& job) { fs::create_directory(job.root / "IHE_PDI"); },
       "IHE_PDI"},
      {"objects among the pages",
       [](PagesJob& job) {
         ASSERT_TRUE(job.builder.SetDicomObjectDirectory(OLESTR("IHE_PDI\\A")));
       },
       "IHE_PDI"},
      {"other content among the pages", [](PagesJob& job) { job.bring({"IHE_PDI/A.JPG"}); },
       "IHE_PDI\\A.JPG"},
      {"other content below the index", [](PagesJob& job) { job.bring({"INDEX.HTM/A.JPG"}); },
       "INDEX.HTM\\A.JPG"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    PagesJob job;
    fs::create_directory(job.root);
    c.prepare(job);
    const std::vector<std::string> before = filesBelow(job.dir.path());
    EXPECT_FALSE(job.create());
    std::string sentence = job.sentence();
    std::replace(sentence.begin(), sentence.end(), '/', '\\');
    EXPECT_NE(sentence.find(std::string(c.taken) + " is taken."), std::string::npos) << sentence;
    EXPECT_EQ(filesBelow(job.dir.path()), before);
    EXPECT_EQ(job.count(), 1);
  }
  PagesJob job;
  fs::create_directories(job.root / "IHE_PDI");
  job.builder.emptiesRoot = true;
  ASSERT_TRUE(job.builder.PlanFileSet({}, {})) << job.sentence();
  fs::remove(job.root / "IHE_PDI");
  EXPECT_TRUE(job.builder.CreatePlannedFileSet()) << job.sentence();
}

}  // namespace
}  // namespace quillon::test
