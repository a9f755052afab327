// Creations that move their sources to another file system: when a source may go.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "builder_job.h"

namespace quillon::test {
namespace {

constexpr int kObjects = 5;

// The sources lie in memory, the root where other tests have it.
class MovingBetweenDisks : public ::testing::Test {
 protected:
  MovingBetweenDisks() : memory_("/dev/shm/quillon-moving-" + std::to_string(::getpid())) {}
  ~MovingBetweenDisks() override { fs::remove_all(memory_); }

  void SetUp() override {
    struct stat here {};
    struct stat there {};
    std::error_code error;
    fs::create_directories(memory_, error);
    if (error || ::stat(job_.dir.path().c_str(), &here) != 0 ||
        ::stat(memory_.c_str(), &there) != 0 || here.st_dev == there.st_dev) {
      GTEST_SKIP() << "/dev/shm is not another file system than the temporary directory";
    }
    for (int i = 1; i <= kObjects; ++i) {
      const fs::path source = memory_ / std::to_string(i);
      makeObjectFile(source, object(1, 1, 1, i));
      objects_.push_back(readBytes(source));
      ASSERT_TRUE(job_.builder.AddFile(WideOf(source)));
    }
  }

  [[nodiscard]] std::size_t sources() const { return filesBelow(memory_).size(); }
  // Of the objects, in their order.
  [[nodiscard]] fs::path inSet(int object) const {
    return job_.root / ("DICOMOBJ/QLN0000" + std::to_string(object));
  }
  [[nodiscard]] bool isWholeInSet(int object) const {
    return fs::exists(inSet(object)) &&
           readBytes(inSet(object)) == objects_[static_cast<std::size_t>(object - 1)];
  }
  void expectInPlace(int object) const {
    EXPECT_EQ(readBytes(memory_ / std::to_string(object)),
              objects_[static_cast<std::size_t>(object - 1)]);
  }

  // The third source cannot be read, and the flush of what stands before it ends so.
  void failInTheMiddle(DWORD flush) {
    int flushes = 0;
    platform::testing::SubstituteFileSystemFlush([&]() -> DWORD {
      ++flushes;
      return flush;
    });
    platform::testing::BreakRead("/3", 1, 0, ERROR_IO_DEVICE);
    EXPECT_FALSE(job_.create());
    EXPECT_EQ(job_.sentence(), "Cannot read data from the source stream.");
    Text path;
    Text reason;
    ASSERT_TRUE(job_.builder.GetFailedFile(path, reason));
    EXPECT_EQ(Plain(path), (memory_ / "3").string());
    EXPECT_EQ(Plain(reason), "The request could not be performed because of an I/O device error.");
    EXPECT_EQ(flushes, 1);
    EXPECT_EQ(
        filesBelow(job_.root),
        (std::vector<std::string>{"DICOMOBJ/QLN00001", "DICOMOBJ/QLN00002", "UNFINISHED.TXT"}));
    EXPECT_TRUE(isWholeInSet(1) && isWholeInSet(2));
    for (int i = 3; i <= kObjects; ++i) expectInPlace(i);
  }

  BuilderJob job_;
  fs::path memory_;
  std::vector<Bytes> objects_;
  platform::testing::Scope restored_;
};

TEST_F(MovingBetweenDisks, SourcesGoWhenAllTheirCopiesAreOnTheDiskAndNoSooner) {
  std::vector<std::size_t> sourcesAtFlush;
  platform::testing::SubstituteFileSystemFlush([&]() -> DWORD {
    sourcesAtFlush.push_back(sources());
    for (int i = 1; i <= kObjects; ++i) EXPECT_TRUE(isWholeInSet(i)) << i;
    EXPECT_FALSE(fs::exists(job_.root / "DICOMDIR"));
    return ERROR_SUCCESS;
  });
  EXPECT_TRUE(job_.create()) << job_.sentence();
  EXPECT_EQ(sourcesAtFlush, std::vector<std::size_t>{kObjects});
  EXPECT_EQ(sources(), 0U);
  EXPECT_TRUE(fs::exists(job_.root / "DICOMDIR"));
}

TEST_F(MovingBetweenDisks, AFlushThatFailsLeavesEverySourceInItsPlace) {
  platform::testing::SubstituteFileSystemFlush([]() -> DWORD { return ERROR_IO_DEVICE; });
  EXPECT_FALSE(job_.create());
  EXPECT_EQ(job_.sentence(), "Cannot flush the destination stream.");
  Text path;
  Text reason;
  ASSERT_TRUE(job_.builder.GetFailedFile(path, reason));
  EXPECT_EQ(Plain(path), job_.root.string());
  EXPECT_EQ(Plain(reason), "The request could not be performed because of an I/O device error.");
  for (int i = 1; i <= kObjects; ++i) expectInPlace(i);
  EXPECT_FALSE(fs::exists(job_.root / "DICOMDIR"));
  EXPECT_TRUE(fs::exists(job_.root / "UNFINISHED.TXT"));
}

// What stood before it is moved, as if each had been moved alone; the failure told is the first.
TEST_F(MovingBetweenDisks, AFailureInTheMiddleIsToldAndTheFilesBeforeItAreMoved) {
  failInTheMiddle(ERROR_SUCCESS);
  EXPECT_EQ(filesBelow(memory_), (std::vector<std::string>{"3", "4", "5"}));
}

TEST_F(MovingBetweenDisks, AFailureInTheMiddleIsToldAndNoSourceGoesWithoutAFlush) {
  failInTheMiddle(ERROR_WRITE_PROTECT);
  EXPECT_EQ(sources(), std::size_t{kObjects});
}

// Between the copy and the deletion lies a flush, and time enough for another program to write.
TEST_F(MovingBetweenDisks, ASourceThatIsWrittenToMeanwhileStays) {
  platform::testing::SubstituteFileSystemFlush([&]() -> DWORD {
    writeText(memory_ / "2", "what was written last");
    return ERROR_SUCCESS;
  });
  EXPECT_FALSE(job_.create());
  EXPECT_EQ(job_.sentence(),
            "The file " + (memory_ / "2").string() + " has changed since it was added.");
  EXPECT_FALSE(fs::exists(memory_ / "1"));
  EXPECT_EQ(readBytes(memory_ / "2").size(), 21U);
  for (int i = 3; i <= kObjects; ++i) expectInPlace(i);
  EXPECT_TRUE(fs::exists(job_.root / "UNFINISHED.TXT"));
}

// A link goes and its target stays, whether or not that is moved too.
TEST_F(MovingBetweenDisks, ALinkGoesWithoutItsTarget) {
  const fs::path target = job_.make("target", object(1, 1, 1, 9));
  fs::create_symlink(target, memory_ / "link");
  ASSERT_TRUE(job_.builder.AddFile(WideOf(memory_ / "link")));
  ASSERT_TRUE(job_.create()) << job_.sentence();
  EXPECT_EQ(sources(), 0U);
  EXPECT_TRUE(fs::exists(target));
  EXPECT_EQ(readBytes(inSet(kObjects + 1)), readBytes(target));
}

TEST_F(MovingBetweenDisks, ManyFilesAreFlushedInParts) {
  constexpr int kMany = 1000 + kObjects;
  for (int i = kObjects + 1; i <= kMany; ++i) {
    const fs::path source = memory_ / std::to_string(i);
    makeObjectFile(source, object(1, 1, 1, i));
    ASSERT_TRUE(job_.builder.AddFile(WideOf(source)));
  }
  std::vector<std::size_t> sourcesAtFlush;
  platform::testing::SubstituteFileSystemFlush([&]() -> DWORD {
    sourcesAtFlush.push_back(sources());
    return ERROR_SUCCESS;
  });
  ASSERT_TRUE(job_.create()) << job_.sentence();
  EXPECT_EQ(sourcesAtFlush, (std::vector<std::size_t>{kMany, kObjects}));
  EXPECT_EQ(sources(), 0U);
}

// Copies whose sources stay are on the disk before a DICOMDIR says that there is a file set: who
// made them may delete the sources then.
TEST_F(MovingBetweenDisks, CopiesThatWereHandedOverAreOnTheDiskBeforeTheDicomDir) {
  for (const bool isFailing : {true, false}) {
    SCOPED_TRACE(isFailing);
    fs::remove_all(job_.root);
    job_.builder.sourcesStay = true;
    ASSERT_TRUE(job_.builder.PlanFileSet({}, {})) << job_.sentence();
    for (int i = 1; i <= kObjects; ++i) {
      const fs::path copy = job_.in / std::to_string(i);
      writeBytes(copy, objects_[static_cast<std::size_t>(i - 1)]);
      ASSERT_TRUE(job_.builder.HandOver(static_cast<std::size_t>(i - 1), WideOf(copy)));
    }
    int flushes = 0;
    platform::testing::SubstituteFileSystemFlush([&]() -> DWORD {
      ++flushes;
      for (int i = 1; i <= kObjects; ++i) EXPECT_TRUE(isWholeInSet(i)) << i;
      EXPECT_FALSE(fs::exists(job_.root / "DICOMDIR"));
      return isFailing ? ERROR_IO_DEVICE : ERROR_SUCCESS;
    });
    EXPECT_EQ(job_.builder.CreatePlannedFileSet(), !isFailing) << job_.sentence();
    EXPECT_EQ(flushes, 1);
    EXPECT_EQ(fs::exists(job_.root / "DICOMDIR"), !isFailing);
    if (!isFailing) continue;
    EXPECT_EQ(job_.sentence(), "Cannot flush the destination stream.");
    for (int i = 1; i <= kObjects; ++i) {
      ASSERT_TRUE(job_.builder.AddFile(WideOf(memory_ / std::to_string(i)))) << job_.sentence();
    }
  }
}

}  // namespace
}  // namespace quillon::test
