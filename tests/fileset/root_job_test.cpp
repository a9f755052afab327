// Whose the root directory is: jobs that meet in one, and what jobs leave behind that did not end.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "builder_job.h"
#include "dicom_dir_bytes.h"

namespace quillon::test {
namespace {

std::string inUse(const fs::path& root) {
  return "The root directory " + root.string() + " is in use by another job.";
}

// A second builder for the root of a job, with one object of its own.
struct SecondJob {
  explicit SecondJob(BuilderJob& first) : dir(first.dir.path()) {
    EXPECT_TRUE(builder.SetDicomRootDirectory(WideOf(first.root)));
    EXPECT_TRUE(builder.SetUniquePatientId(OLESTR("ROE^JANE 2")));
    builder.includeOtherContent = false;
    fs::create_directory(dir / "in2");
    makeObjectFile(source, object(2, 1, 1, 1));
    EXPECT_TRUE(builder.AddFile(WideOf(source)));
  }
  fs::path dir;
  fs::path source = dir / "in2" / "other";
  CDicomDirProcessor builder;
};

TEST(RootDirectory, IsOneJobsUntilItsFileSetIsDelivered) {
  struct Case {
    const char* what;
    std::function<void(BuilderJob&)> end;
    bool isFree;
  };
  const Case cases[] = {
      {"created, not yet delivered", [](BuilderJob&) {}, false},
      {"delivered",
       [](BuilderJob& job) {
         job.builder.performDirectCopy = true;
         EXPECT_TRUE(job.builder.SetDirectCopyDirectory(WideOf(job.dir / "out")));
         ASSERT_TRUE(job.builder.WriteMedia({}, false, false, false, false)) << job.sentence();
       },
       true},
      {"could not be delivered",
       [](BuilderJob& job) {
         job.builder.performDirectCopy = true;
         writeText(job.dir / "file", "x");
         EXPECT_TRUE(job.builder.SetDirectCopyDirectory(WideOf(job.dir / "file")));
         ASSERT_FALSE(job.builder.WriteMedia({}, false, false, false, false));
       },
       false},
      {"wiped", [](BuilderJob& job) { job.builder.Wipe(); }, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    BuilderJob job;
    job.add("a", object(1, 1, 1, 1));
    ASSERT_TRUE(job.create()) << job.sentence();
    c.end(job);
    SecondJob second(job);
    const std::vector<std::string> before = filesBelow(job.root);
    EXPECT_EQ(second.builder.CreateDicomFileSet({}, {}), c.isFree);
    EXPECT_EQ(fs::exists(second.source), !c.isFree);
    if (c.isFree) continue;
    EXPECT_EQ(Plain(second.builder.ErrorMessage()), inUse(job.root));
    EXPECT_FALSE(second.builder.WriteMedia({}, false, false, false, true));
    EXPECT_EQ(Plain(second.builder.ErrorMessage()), inUse(job.root));
    second.builder.Wipe();
    EXPECT_EQ(filesBelow(job.root), before);
  }
}

TEST(RootDirectory, GoesAwayAgainWhenNothingWasCreatedInIt) {
  BuilderJob job;
  EXPECT_TRUE(job.builder.SetDicomRootDirectory(WideOf(job.dir / "new" / "root")));
  job.add("a", object(1, 1, 1, 1));
  fs::remove(job.in / "a");
  EXPECT_FALSE(job.create());
  EXPECT_FALSE(fs::exists(job.dir / "new"));
}

// What a creation leaves that was cut off after its first object.
void makeUnfinished(const fs::path& root, const Bytes& moved) {
  fs::create_directories(root / "DICOMOBJ");
  writeBytes(root / "DICOMOBJ/QLN00001", moved);
  writeText(root / "UNFINISHED.TXT",
            "Unfinished file set\nmoved\nDICOMOBJ\\QLN00001\tC:\\IN\\A\nDICOMOBJ\\QLN00002\tB\n");
}

TEST(UnfinishedFileSet, IsNobodysToDestroy) {
  const Bytes first = makeObject(object(1, 1, 1, 1));
  struct Case {
    const char* what;
    std::function<bool(SecondJob&)> act;
    bool isDone;
    bool isAside;
  };
  const Case cases[] = {
      {"the next creation", [](SecondJob& job) { return job.builder.CreateDicomFileSet({}, {}); },
       true, true},
      {"a wipe",
       [](SecondJob& job) {
         job.builder.Wipe();
         return true;
       },
       true, true},
      {"a delivery, with the set cleared afterwards",
       [](SecondJob& job) {
         job.builder.performDirectCopy = true;
         EXPECT_TRUE(job.builder.SetDirectCopyDirectory(WideOf(job.dir / "out")));
         return job.builder.WriteMedia({}, false, false, false, true);
       },
       false, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    BuilderJob job;
    makeUnfinished(job.root, first);
    SecondJob second(job);
    EXPECT_EQ(c.act(second), c.isDone) << Plain(second.builder.ErrorMessage());
    const fs::path place = c.isAside ? job.root.string() + ".unfinished-1" : job.root.string();
    EXPECT_EQ(readBytes(place / "DICOMOBJ/QLN00001"), first);
    if (c.isDone) continue;
    EXPECT_EQ(Plain(second.builder.ErrorMessage()),
              "The root directory " + job.root.string() +
                  " holds 1 objects of a job that did not finish, perhaps the only copies; "
                  "UNFINISHED.TXT in it names them. Move it to a safe place, or wipe it: that sets "
                  "them aside.");
    EXPECT_FALSE(fs::exists(job.dir / "out"));
  }
}

}  // namespace
}  // namespace quillon::test
