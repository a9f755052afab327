// What the file operations say and leave behind when a call of the system fails in their middle.
#include <cerrno>
#include <functional>

#include "foundation/file_util.h"
#include "foundation_test_support.h"
#include "platform/testing.h"
#include "support/failing_calls.h"
#include "support/failing_new.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using test::Call;
using test::ErrorOf;
using test::FailingCall;
using test::Plain;

class FileFaults : public test::InTempDirectory {
 protected:
  void SetUp() override {
    Write("src", content_);
    Write("old", "old");
  }
  bool Append(const char* name) {
    const std::uint8_t bytes[] = {'+'};
    return files_.WriteData(bytes, 1, Wide(name), /*append=*/true);
  }

  const std::string content_ = std::string(70000, 'c');
  CFileUtil files_;
};

TEST_F(FileFaults, EachFailingCallHasItsSentence) {
  const auto copy = [&] { return files_.CopyFile(Wide("old"), Wide("src"), /*append=*/false); };
  const auto copyBehind = [&] { return files_.CopyFile(Wide("old"), Wide("src"), true); };
  const auto append = [&] { return Append("old"); };
  const struct {
    const char* what;
    Call call;
    int nth;
    std::function<bool()> operation;
    std::string sentence;
    const char* failed = "old";
  } cases[] = {
      {"source is not opened", Call::Open, 1, copy, CannotOpen("src"), "src"},
      {"first read", Call::Read, 1, copy, "Cannot read data from the source stream.", "src"},
      {"last read", Call::Read, 3, copy, "Cannot read data from the source stream.", "src"},
      {"first write", Call::Write, 1, copy, "Cannot write data to the destination stream."},
      {"last write", Call::Write, 3, copy, "Cannot write data to the destination stream."},
      {"flush", Call::Sync, 1, copy, "Cannot flush the destination stream."},
      {"destination closed", Call::Close, 1, copy, "Cannot close the file " + Name("old") + "."},
      {"source closed", Call::Close, 2, copy, "Cannot close the file " + Name("src") + ".", "src"},
      {"copy behind", Call::Seek, 1, copyBehind, "Cannot append data to the destination stream."},
      {"written file not opened", Call::Open, 0, append, CannotOpen("old")},
      {"append", Call::Seek, 1, append, "Cannot append data to " + Name("old") + "."},
      {"written file's write", Call::Write, 1, append,
       "Cannot write data to the destination stream."},
      {"written file's flush", Call::Sync, 1, append, "Cannot flush the destination stream."},
      {"written file closed", Call::Close, 1, append, "Cannot close the file " + Name("old") + "."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    {
      const FailingCall failing(c.call, c.nth, EIO);
      EXPECT_FALSE(c.operation());
      EXPECT_TRUE(failing.happened());
    }
    EXPECT_EQ(ErrorOf(files_), c.sentence);
    EXPECT_EQ(Plain(files_.FailedPath()), Name(c.failed));
    EXPECT_EQ(Plain(files_.FailedReason()),
              "The request could not be performed because of an I/O device error.");
    EXPECT_EQ(Read("src"), content_);
    EXPECT_TRUE(c.operation()) << "nothing is left open: " << ErrorOf(files_);
    EXPECT_TRUE(files_.FailedPath().empty());
  }
}

// Whatever the system has copied by then: reading and writing go on behind it.
TEST_F(FileFaults, WhatTheSystemDoesNotCopyIsReadAndWritten) {
  const std::string large = content_ + std::string((std::size_t{3} << 20) + 5, 'l');
  Write("large", large);
  for (const int nth : {0, 1, 2, 7}) {
    for (const bool append : {false, true}) {
      SCOPED_TRACE(std::to_string(nth) + (append ? ", behind" : ""));
      Write("dst", "earlier");
      std::uint64_t toldBytes = 0;
      files_.SetCopyProgress([&toldBytes](std::uint64_t bytes) { toldBytes += bytes; });
      const FailingCall failing(Call::CopyRange, nth, nth == 1 ? EXDEV : EIO);
      EXPECT_TRUE(files_.CopyFile(Wide("dst"), Wide("large"), append)) << ErrorOf(files_);
      EXPECT_TRUE(failing.happened());
      EXPECT_TRUE(Read("dst") == large);
      EXPECT_EQ(toldBytes, large.size());
    }
  }
}

// With one flush for all, too, a failure is the file's in which it happened, and ends the copy.
TEST_F(FileFaults, ACopyOfManyFilesTellsWhichOneFailedAndLeavesNothingBesides) {
  const platform::testing::Scope restored;
  fs::create_directory("dst");
  int flushes = 0;
  platform::testing::SubstituteFileSystemFlush([&flushes]() -> DWORD {
    ++flushes;
    return ERROR_SUCCESS;
  });
  for (const char* name : {"tree/a", "tree/b", "tree/c", "tree/d"}) Write(name, content_);
  fs::current_path(dir_ / "tree");
  const auto copy = [&] { return files_.CopyDirectory(Wide("dst"), Wide("tree"), u"*.*", true); };
  {
    const FailingCall range(Call::CopyRange, 0, EOPNOTSUPP);
    platform::testing::BreakRead("/tree/c", 2, 10, ERROR_IO_DEVICE);
    EXPECT_FALSE(copy());
  }
  EXPECT_EQ(ErrorOf(files_), "Cannot read data from the source stream.");
  EXPECT_EQ(Plain(files_.FailedPath()), Name("tree\\c"));
  EXPECT_EQ(Plain(files_.FailedReason()),
            "The request could not be performed because of an I/O device error.");
  EXPECT_EQ(flushes, 0);
  EXPECT_EQ(std::distance(fs::directory_iterator(dir_ / "dst"), {}), 3);
  EXPECT_TRUE(Read("dst/a") == content_ && Read("dst/b") == content_);
  EXPECT_FALSE(Exists("dst/d"));
  platform::testing::BreakRead({}, 0, 0, ERROR_SUCCESS);
  EXPECT_TRUE(copy()) << ErrorOf(files_);
  EXPECT_EQ(flushes, 1);
  EXPECT_TRUE(Read("dst/d") == content_);
}

// Between file systems a move is a copy and a deletion.
TEST_F(FileFaults, AMoveBetweenFileSystemsLosesNothingWhateverFails) {
  for (int nth = 1;; ++nth) {
    SCOPED_TRACE(nth);
    Write("src", content_);
    fs::remove(dir_ / "dst");
    Write("dst", "earlier");
    fs::create_hard_link(dir_ / "dst", dir_ / "other");
    bool isMoved = false;
    bool happened = false;
    {
      const FailingCall otherDevice(Call::Rename, 1, EXDEV);
      const FailingCall failing(Call::Any, nth, EIO);
      isMoved = files_.MoveFile(Wide("dst"), Wide("src"));
      happened = failing.happened();
    }
    // Only the directory's own flush may fail unnoticed: not every file system has one.
    EXPECT_TRUE(isMoved ? !Exists("src") : !ErrorOf(files_).empty());
    EXPECT_TRUE((Exists("src") && Read("src") == content_) ||
                (Exists("dst") && Read("dst") == content_));
    // Never half a file, under whatever name, and never a file that was there and is not.
    const std::string copied = Read("dst");
    EXPECT_TRUE(copied == content_ || copied == "earlier");
    EXPECT_EQ(Read("other"), "earlier") << "another name of the file that was replaced";
    const auto names = std::distance(fs::directory_iterator(dir_.path()), {});
    EXPECT_EQ(names, Exists("src") ? 4 : 3);
    fs::remove(dir_ / "other");
    if (!happened) {
      EXPECT_TRUE(isMoved);
      EXPECT_GT(nth, 10);
      break;
    }
  }
}

// As from a disk that is dying: some bytes of the piece come, and then the call fails.
TEST_F(FileFaults, AMoveBetweenFileSystemsSurvivesAReadThatBreaksOff) {
  const platform::testing::Scope restored;
  const FailingCall otherDevice(Call::RenameElsewhere, 0, EXDEV);
  Write("from/src", content_);
  Write("to/dst", "earlier");
  for (const int nth : {1, 2, 3}) {
    for (const DWORD afterBytes : {0U, 1U, 4000U}) {
      SCOPED_TRACE(std::to_string(nth) + ", " + std::to_string(afterBytes));
      platform::testing::BreakRead("/from/src", nth, afterBytes, ERROR_IO_DEVICE);
      EXPECT_FALSE(files_.MoveFile(Wide("to/dst"), Wide("from/src")));
      EXPECT_EQ(ErrorOf(files_), "Cannot read data from the source stream.");
      EXPECT_EQ(Plain(files_.FailedPath()), Name("from/src"));
      EXPECT_EQ(Plain(files_.FailedReason()),
                "The request could not be performed because of an I/O device error.");
      EXPECT_EQ(Read("from/src"), content_);
      EXPECT_EQ(Read("to/dst"), "earlier");
      EXPECT_EQ(std::distance(fs::directory_iterator(dir_ / "to"), {}), 1) << "half a copy";
    }
  }
  platform::testing::BreakRead("/from/src", 4, 0, ERROR_IO_DEVICE);
  EXPECT_TRUE(files_.MoveFile(Wide("to/dst"), Wide("from/src"))) << "three reads are all it takes";
  EXPECT_EQ(Read("to/dst"), content_);
  EXPECT_FALSE(Exists("from/src"));
}

// What a share that goes away does to a listing. Nothing may take the part for the whole: a copy
// would lack files, and its source might then be deleted.
TEST_F(FileFaults, AListingThatBreaksOffIsAFailure) {
  const platform::testing::Scope restored;
  std::uint32_t count = 0;
  std::uint64_t sizeBytes = 0;
  const std::pair<const char*, std::function<bool()>> cases[] = {
      {"count", [&] { return files_.CountFiles(count, Wide("tree"), u"*.*", true); }},
      {"size", [&] { return files_.GetDirectorySize(sizeBytes, Wide("tree"), u"*.*", true); }},
      {"copy", [&] { return files_.CopyDirectory(Wide("dst"), Wide("tree"), u"*.*", true); }},
      {"delete", [&] { return files_.DeleteAllFiles(Wide("tree"), true); }},
  };
  fs::create_directory("dst");
  for (const auto& [what, operation] : cases) {
    for (const std::size_t afterEntries : {2u, 3u, 4u}) {  // the first two are "." and ".."
      SCOPED_TRACE(what);
      SCOPED_TRACE(afterEntries);
      for (const char* name : {"tree/a", "tree/b", "tree/sub/c", "tree/sub/d"}) Write(name, "x");
      fs::current_path(dir_ / "tree");
      files_.ClearError();
      platform::testing::BreakListings(afterEntries, ERROR_IO_DEVICE);
      EXPECT_FALSE(operation());
      EXPECT_EQ(ErrorOf(files_), "The file specification *.* is invalid.");
      EXPECT_EQ(Plain(files_.FailedReason()),
                "The request could not be performed because of an I/O device error.");
      EXPECT_EQ(count, 0u);
    }
  }
}

TEST_F(FileFaults, AReadOnlyFileThatCannotBeDeletedStaysReadOnly) {
  fs::permissions("old", fs::perms{0444});
  const FailingCall failing(Call::Unlink, 0, EBUSY);
  EXPECT_FALSE(files_.DeleteFile(Wide("old")));
  EXPECT_EQ(ErrorOf(files_), "Cannot delete the file " + Name("old") + ".");
  EXPECT_EQ(Plain(files_.FailedReason()), "The requested resource is in use.");
  EXPECT_EQ(fs::status("old").permissions(), fs::perms{0444});
}

TEST_F(FileFaults, WithoutMemoryNothingIsCopied) {
  const auto outcomes = test::withEachAllocationFailing([&](long n, bool& happened) {
    Write("dst", "earlier");
    files_.ClearError();
    try {
      const test::FailingNew failing(n);
      static_cast<void>(files_.CopyFile(Wide("dst"), Wide("src"), /*append=*/false));
      happened = failing.happened();
    } catch (const std::bad_alloc&) {
      happened = true;
    }
    EXPECT_EQ(Read("src"), content_);
    return ErrorOf(files_);
  });
  EXPECT_TRUE(outcomes.contains("Cannot allocate resources to facilitate the file copy."));
  EXPECT_TRUE(files_.CopyFile(Wide("dst"), Wide("src"), /*append=*/false)) << ErrorOf(files_);
}

TEST_F(FileFaults, ARemovedWorkingDirectoryHasNoName) {
  fs::create_directory("gone");
  fs::current_path("gone");
  fs::remove(dir_ / "gone");
  Text name;
  EXPECT_FALSE(files_.GetCurrentDirectory(name));
  EXPECT_EQ(ErrorOf(files_), "Cannot retrieve the current working directory.");
}

}  // namespace
}  // namespace quillon
