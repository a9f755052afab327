#include "foundation/file_util.h"
#include "foundation_test_support.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using test::ErrorOf;
using test::Plain;

// src holds 4 files of 10 bytes in all; the walks start in it, as their callers do.
class Walks : public test::InTempDirectory {
 protected:
  Walks() {
    Write("src/b.dcm", "1");
    Write("src/c.txt", "22");
    Write("src/sub.dcm/d.dcm", "333");
    Write("src/sub.dcm/deep/e", "4444");
    fs::create_directory(dir_ / "src/void");
    fs::current_path(dir_ / "src");
  }
  ~Walks() override {
    EXPECT_EQ(fs::current_path(), dir_ / "src") << "the working directory was not restored";
  }

  CFileUtil files_;
};

TEST_F(Walks, CountAndMeasureWhatMatches) {
  const struct {
    Text fileSpec;
    bool recurse;
    std::uint32_t count;
    std::uint64_t sizeBytes;
    std::string error;  // left by a walk that succeeds
  } cases[] = {
      {OLESTR("*.*"), true, 4, 10, ""},
      {OLESTR("*.*"), false, 2, 3, ""},
      {OLESTR("*.dcm"), false, 1, 1, ""},
      {OLESTR("*.dcm"), true, 2, 4, ""},  // only directories that match are entered
      {OLESTR("c.txt"), true, 1, 2, ""},
      {OLESTR("*.none"), true, 0, 0, "The file specification *.none is invalid."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(Plain(c.fileSpec));
    std::uint32_t count = 99;
    std::uint64_t sizeBytes = 99;
    files_.ClearError();
    EXPECT_TRUE(files_.CountFiles(count, Wide("src"), c.fileSpec, c.recurse)) << ErrorOf(files_);
    EXPECT_EQ(count, c.count);
    EXPECT_EQ(ErrorOf(files_), c.error);
    EXPECT_TRUE(
        files_.GetDirectorySize(sizeBytes, Wide("src") + OLESTR("/"), c.fileSpec, c.recurse));
    EXPECT_EQ(sizeBytes, c.sizeBytes);
    EXPECT_EQ(fs::current_path(), dir_ / "src");
  }
}

TEST_F(Walks, CopyKeepsTheStructure) {
  EXPECT_TRUE(files_.CopyDirectory(Wide("dst\\new"), Wide("src"), OLESTR("*.*"),
                                   /*recurse=*/false) == false)
      << "the destination itself is the caller's to make";
  fs::create_directory(dir_ / "dst");
  Write("dst/b.dcm", "replaced");
  EXPECT_TRUE(files_.CopyDirectory(Wide("dst"), Wide("src"), OLESTR("*.*"), /*recurse=*/true))
      << ErrorOf(files_);
  EXPECT_EQ(Read("dst/b.dcm"), "1");
  EXPECT_EQ(Read("dst/c.txt"), "22");
  EXPECT_EQ(Read("dst/sub.dcm/d.dcm"), "333");
  EXPECT_EQ(Read("dst/sub.dcm/deep/e"), "4444");
  EXPECT_TRUE(fs::is_directory(dir_ / "dst/void"));
  EXPECT_EQ(Read("src/sub.dcm/deep/e"), "4444");
}

TEST_F(Walks, FailuresGiveTheReasonAndNoCount) {
  std::uint32_t count = 99;
  std::uint64_t sizeBytes = 99;
  EXPECT_FALSE(files_.CountFiles(count, OLESTR(""), OLESTR("*.*"), true));
  EXPECT_EQ(ErrorOf(files_), "The source filename is invalid.");
  EXPECT_EQ(count, 0u);
  EXPECT_FALSE(files_.CopyDirectory(OLESTR("a//b"), Wide("src"), OLESTR("*.*"), true));
  EXPECT_EQ(ErrorOf(files_), "The destination filename is invalid.");
  EXPECT_FALSE(files_.GetDirectorySize(sizeBytes, Wide("src"), OLESTR(""), true));
  EXPECT_EQ(ErrorOf(files_), "The file specification is invalid.");
  EXPECT_EQ(sizeBytes, 0u);
}

TEST_F(Walks, TheFirstFailureEndsTheWalk) {
  Write("src/sub.dcm/deep/empty", "");
  const std::string reason =
      "The path " + Name("src\\sub.dcm\\deep\\empty") + " does not refer to a valid file.";
  std::uint64_t sizeBytes = 99;
  EXPECT_FALSE(files_.GetDirectorySize(sizeBytes, Wide("src"), OLESTR("*.*"), /*recurse=*/true));
  EXPECT_EQ(ErrorOf(files_), reason);
  EXPECT_EQ(sizeBytes, 0u);
  EXPECT_EQ(fs::current_path(), dir_ / "src");

  Write("src/z", "after it");
  fs::create_directory(dir_ / "dst");
  EXPECT_FALSE(files_.CopyDirectory(Wide("dst"), Wide("src"), OLESTR("*.*"), /*recurse=*/true));
  EXPECT_EQ(ErrorOf(files_), reason);
  EXPECT_FALSE(Exists("dst/z"));
}

TEST_F(Walks, ANameOfTheTopIsLeftOutWhenAsked) {
  Write("src/sub.dcm/b.dcm", "55555");
  fs::create_directory(dir_ / "dst");
  EXPECT_TRUE(files_.CopyDirectory(Wide("dst"), Wide("src"), OLESTR("*.*"), /*recurse=*/true,
                                   /*leaveOut=*/OLESTR("b.dcm")))
      << ErrorOf(files_);
  EXPECT_FALSE(Exists("dst/b.dcm"));
  EXPECT_EQ(Read("dst/sub.dcm/b.dcm"), "55555") << "below it nothing is left out";
  EXPECT_EQ(Read("dst/c.txt"), "22");
}

TEST_F(Walks, EmptyFilesAreTakenOnlyWhenAccepted) {
  Write("src/sub.dcm/empty", "");
  std::uint64_t sizeBytes = 0;
  fs::create_directory(dir_ / "dst");
  const auto copy = [&] {
    return files_.CopyDirectory(Wide("dst"), Wide("src"), OLESTR("*.*"), /*recurse=*/true);
  };
  EXPECT_FALSE(copy());
  EXPECT_EQ(ErrorOf(files_), IsNoFile("src\\sub.dcm\\empty"));
  fs::current_path(dir_ / "src");
  files_.SetAcceptEmptyFiles(true);
  EXPECT_TRUE(copy()) << ErrorOf(files_);
  EXPECT_EQ(Read("dst/sub.dcm/empty"), "");
  EXPECT_TRUE(files_.GetDirectorySize(sizeBytes, Wide("src"), OLESTR("*.*"), /*recurse=*/true));
  EXPECT_EQ(sizeBytes, 10u);
}

}  // namespace
}  // namespace quillon
