#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/file_util.h"
#include "foundation_test_support.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using test::ErrorOf;
using test::Plain;

class Files : public test::InTempDirectory {
 protected:
  CFileUtil files_;
};

ino_t InodeOf(const fs::path& path) {
  struct stat status {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0);
  return status.st_ino;
}

TEST_F(Files, SizesAreThoseOfFilesThatHoldSomething) {
  Write("some", "12345");
  Write("empty", "");
  Write("huge", "");
  fs::create_directory(dir_ / "dir");
  fs::resize_file(dir_ / "huge", std::uintmax_t{1} << 32);  // sparse; its low half is 0
  Write("huger", "");
  fs::resize_file(dir_ / "huger", (std::uintmax_t{1} << 32) + 5);
  struct Case {
    std::string name;
    std::uint32_t low;
    std::uint64_t whole;
    std::string error;  // of the 64-bit question
  };
  const auto notAFile = [&](const char* name) {
    return "The path " + Name(name) + " does not refer to a valid file.";
  };
  const Case cases[] = {
      {"some", 5, 5, ""},
      {"empty", 0, 0, notAFile("empty")},
      {"dir", 0, 0, notAFile("dir")},
      {"missing", 0, 0, "The path " + Name("missing") + " cannot be found."},
      {"wh?t", 0, 0, "The filename wh?t cannot contain these characters: \\/:*?\"<>|"},
      {"huge", 0, 4294967296, ""},
      {"huger", 5, 4294967301, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::uint32_t low = 0;
    std::uint64_t whole = 0;
    EXPECT_EQ(files_.GetFileSize(Wide(c.name), low), c.low != 0);
    EXPECT_EQ(low, c.low);
    files_.ClearError();
    EXPECT_EQ(files_.GetFileSize64(Wide(c.name), whole), c.whole != 0);
    EXPECT_EQ(whole, c.whole);
    EXPECT_EQ(ErrorOf(files_), c.error);
  }
  EXPECT_TRUE(files_.PathExists(Wide("dir")));
  EXPECT_TRUE(files_.PathExists(Wide("empty")));
  EXPECT_FALSE(files_.PathExists(Wide("missing/x")));
  EXPECT_EQ(ErrorOf(files_), "The path " + Name("missing/x") + " cannot be found.");
}

TEST_F(Files, OneFileHasOneIdentityWhateverItIsCalled) {
  Write("file", "x");
  Write("other", "x");
  fs::create_symlink("file", dir_ / "link");
  fs::create_hard_link(dir_ / "file", dir_ / "second");
  fs::create_directory(dir_ / "dir");
  FileIdentity file;
  ASSERT_TRUE(files_.GetFileIdentity(Wide("file"), file)) << ErrorOf(files_);
  const std::pair<const char*, bool> cases[] = {
      {"link", true}, {"second", true}, {"dir/../file", true}, {"other", false}, {"dir", false}};
  for (const auto& [name, isSame] : cases) {
    SCOPED_TRACE(name);
    FileIdentity identity;
    EXPECT_TRUE(files_.GetFileIdentity(Wide(name), identity)) << ErrorOf(files_);
    EXPECT_EQ(identity == file, isSame);
  }
  EXPECT_FALSE(files_.GetFileIdentity(Wide("missing"), file));
  EXPECT_EQ(ErrorOf(files_), "The path " + Name("missing") + " cannot be found.");
}

TEST_F(Files, CopyTakesEveryByteWhateverTheLength) {
  for (const std::size_t length : {1u, 32767u, 32768u, 32769u, 65536u, 100000u}) {
    SCOPED_TRACE(length);
    std::string content(length, '\0');
    for (std::size_t i = 0; i < length; ++i) content[i] = static_cast<char>(i * 7 + i / 256);
    Write("src", content);
    Write("dst", std::string(70000, 'o'));  // longer and shorter than what replaces it
    EXPECT_TRUE(files_.CopyFile(Wide("dst"), Wide("src"), /*append=*/false)) << ErrorOf(files_);
    EXPECT_TRUE(Read("dst") == content);
    EXPECT_TRUE(Read("src") == content);
  }
}

TEST_F(Files, CopyFailsWithTheReasonAndLeavesTheSource) {
  Write("src", "content");
  Write("empty", "");
  fs::create_directory(dir_ / "dir");
  fs::create_symlink("src", dir_ / "link");
  fs::create_hard_link(dir_ / "src", dir_ / "second");
  fs::create_directory_symlink(".", dir_ / "here");
  struct Case {
    const char* what;
    Text dst;
    Text src;
    std::string expected;
  };
  const Case cases[] = {
      {"bad source name", Wide("dst"), Wide("s|c"), "The source filename is invalid."},
      {"no source name", Wide("dst"), u"", "The source filename is invalid."},
      {"bad destination name", Wide("d*"), Wide("src"), "The destination filename is invalid."},
      {"both bad", u"", u"", "The source filename is invalid."},
      {"missing source", Wide("dst"), Wide("none"),
       "The path " + Name("none") + " cannot be found."},
      {"source is a directory", Wide("dst"), Wide("dir"),
       "The path " + Name("dir") + " does not refer to a valid file."},
      {"empty source", Wide("dst"), Wide("empty"),
       "The path " + Name("empty") + " does not refer to a valid file."},
      {"destination is a directory", Wide("dir"), Wide("src"),
       "Cannot open the file " + Name("dir") + "."},
      {"destination's directory is missing", Wide("none/dst"), Wide("src"),
       "Cannot open the file " + Name("none/dst") + "."},
      {"onto itself", Wide("src"), Wide("src"), "Cannot open the file " + Name("src") + "."},
      {"onto itself by another spelling", Wide("dir/../src"), u"src",
       "Cannot open the file " + Name("dir/../src") + "."},
      {"onto a link to it", Wide("link"), Wide("src"),
       "Cannot open the file " + Name("link") + "."},
      {"from a link to the target", Wide("src"), Wide("link"),
       "Cannot open the file " + Name("src") + "."},
      {"onto its second name", Wide("second"), Wide("src"),
       "Cannot open the file " + Name("second") + "."},
      {"through a linked directory", Wide("here/src"), Wide("src"),
       "Cannot open the file " + Name("here/src") + "."},
      {"full disk", u"/dev/full", Wide("src"), "Cannot write data to the destination stream."},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_FALSE(files_.CopyFile(c.dst, c.src, /*append=*/false));
    EXPECT_EQ(ErrorOf(files_), c.expected);
    EXPECT_EQ(Read("src"), "content");
    EXPECT_FALSE(Exists("dst"));
  }
}

// Root may do everything, so the tests of missing rights run as somebody else.
class WithoutRights : public Files {
 protected:
  void SetUp() override {
    fs::permissions(dir_.path(), fs::perms::all);
    Write("in/src", "content");
    Write("in/secret", "secret");
    fs::create_directory(dir_ / "out");
    fs::permissions(dir_ / "out", fs::perms::all);
    fs::permissions(dir_ / "in/secret", fs::perms::none);
    fs::permissions(dir_ / "in", fs::perms{0555});
    Write("out/earlier", "earlier");
    fs::permissions(dir_ / "out/earlier", fs::perms::all);
    if (user_ == 0 && ::seteuid(65534) != 0) GTEST_SKIP() << "cannot act as another user";
  }
  void TearDown() override { EXPECT_EQ(::seteuid(user_), 0); }

  void ActAsBefore() { ASSERT_EQ(::seteuid(user_), 0); }

 private:
  uid_t user_ = ::geteuid();
};

TEST_F(WithoutRights, EveryOperationSaysWhatItCouldNotDo) {
  EXPECT_FALSE(files_.CopyFile(Wide("out/dst"), Wide("in/secret"), /*append=*/false));
  EXPECT_EQ(ErrorOf(files_), "Cannot open the file " + Name("in/secret") + ".");
  EXPECT_FALSE(files_.CopyFile(Wide("in/dst"), Wide("in/src"), /*append=*/false));
  EXPECT_EQ(ErrorOf(files_), "Cannot open the file " + Name("in/dst") + ".");
  EXPECT_FALSE(files_.DeleteFile(Wide("in/src")));
  EXPECT_EQ(ErrorOf(files_), "Cannot delete the file " + Name("in/src") + ".");
  EXPECT_FALSE(files_.DirectoryOperation(Wide("in/sub"), DirectoryOp::Create));
  EXPECT_EQ(ErrorOf(files_), "Cannot create the directory " + Name("in/sub") +
                                 " for this reason:  Access is denied.");
  EXPECT_FALSE(Exists("out/dst"));
}

TEST_F(WithoutRights, AMoveThatCannotTakeTheSourceAwayLeavesBothWhole) {
  EXPECT_FALSE(files_.MoveFile(Wide("out/dst"), Wide("in/src")));
  EXPECT_EQ(ErrorOf(files_), "Cannot delete the file " + Name("in/src") + ".");
  ActAsBefore();
  EXPECT_EQ(Read("out/dst"), "content");
  EXPECT_EQ(Read("in/src"), "content");
}

TEST_F(WithoutRights, AMoveThatCannotReadTheSourceLeavesTheDestinationAsItWas) {
  EXPECT_FALSE(files_.MoveFile(Wide("out/earlier"), Wide("in/secret")));
  EXPECT_EQ(ErrorOf(files_), "Cannot open the file " + Name("in/secret") + ".");
  EXPECT_EQ(Read("out/earlier"), "earlier");
}

TEST_F(Files, MoveRenamesWithinAFileSystem) {
  Write("in/src", "content");
  Write("out/dst", "earlier, longer content");
  const ino_t inode = InodeOf(dir_ / "in/src");
  EXPECT_TRUE(files_.MoveFile(Wide("out/dst"), Wide("in/src"))) << ErrorOf(files_);
  EXPECT_EQ(Read("out/dst"), "content");
  EXPECT_EQ(InodeOf(dir_ / "out/dst"), inode);
  EXPECT_FALSE(Exists("in/src"));
}

TEST_F(Files, MoveOntoItselfKeepsTheFile) {
  Write("src", "content");
  EXPECT_TRUE(files_.MoveFile(Wide("src"), Wide("src"))) << ErrorOf(files_);
  EXPECT_EQ(Read("src"), "content");
}

TEST_F(Files, MoveCopiesWhatALinkLeadsToAndTakesTheLinkAway) {
  Write("user/image", "content");
  fs::create_symlink("image", dir_ / "user/link");
  EXPECT_TRUE(files_.MoveFile(Wide("dst"), Wide("user/link"))) << ErrorOf(files_);
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(dir_ / "dst")));
  EXPECT_EQ(Read("dst"), "content");
  EXPECT_FALSE(Exists("user/link"));
  EXPECT_EQ(Read("user/image"), "content");
}

TEST_F(Files, MoveFailsWithTheReasonAndLosesNothing) {
  Write("src", "content");
  Write("empty", "");
  Write("dir/inner", "inner");
  fs::create_symlink("nowhere", dir_ / "dangling");
  fs::create_symlink("src", dir_ / "link");
  struct Case {
    const char* what;
    Text dst;
    Text src;
    std::string expected;
  };
  const Case cases[] = {
      {"bad source name", Wide("dst"), Wide("s|c"), "The source filename is invalid."},
      {"bad destination name", Wide("d*"), Wide("src"), "The destination filename is invalid."},
      {"missing source", Wide("dst"), Wide("none"),
       "The path " + Name("none") + " cannot be found."},
      {"a directory", Wide("dst"), Wide("dir"),
       "The path " + Name("dir") + " does not refer to a valid file."},
      {"an empty file", Wide("dst"), Wide("empty"),
       "The path " + Name("empty") + " does not refer to a valid file."},
      {"a link that leads nowhere", Wide("dst"), Wide("dangling"),
       "The path " + Name("dangling") + " does not refer to a valid file."},
      {"a link onto what it leads to", Wide("src"), Wide("link"),
       "Cannot open the file " + Name("src") + "."},
      {"onto a directory", Wide("dir"), Wide("src"), "Cannot open the file " + Name("dir") + "."},
      {"into a missing directory", Wide("none/dst"), Wide("src"),
       "Cannot open the file " + Name("none/dst") + "."},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_FALSE(files_.MoveFile(c.dst, c.src));
    EXPECT_EQ(ErrorOf(files_), c.expected);
    EXPECT_EQ(Read("src"), "content");
    EXPECT_EQ(Read("dir/inner"), "inner");
    EXPECT_FALSE(Exists("dst"));
  }
}

// A file system of its own with room for 64 KiB.
class SmallDisk : public Files {
 protected:
  void SetUp() override {
    fs::create_directory(dir_ / "disk");
    if (::mount("tmpfs", (dir_ / "disk").c_str(), "tmpfs", 0, "size=64k") != 0) {
      GTEST_SKIP() << "cannot mount a file system here";
    }
    mounted_ = true;
  }
  void TearDown() override {
    if (mounted_) ::umount((dir_ / "disk").c_str());
  }

 private:
  bool mounted_ = false;
};

TEST_F(SmallDisk, MoveToItIsACopyAndTheSourceGoes) {
  const std::string content(40000, 'c');
  Write("src", content);
  EXPECT_TRUE(files_.MoveFile(Wide("disk/dst"), Wide("src"))) << ErrorOf(files_);
  EXPECT_EQ(Read("disk/dst"), content);
  EXPECT_FALSE(Exists("src"));
}

TEST_F(SmallDisk, AMoveThatDoesNotFitLeavesTheSourceAndNoHalfFile) {
  const std::string content(100000, 'c');
  Write("src", content);
  EXPECT_FALSE(files_.MoveFile(Wide("disk/dst"), Wide("src")));
  EXPECT_EQ(ErrorOf(files_), "Cannot write data to the destination stream.");
  EXPECT_EQ(Read("src"), content);
  EXPECT_FALSE(Exists("disk/dst"));
}

TEST_F(SmallDisk, ADestinationThatWasNotOpenedIsNotTakenAway) {
  Write("src", "content");
  Write("disk/dst/inner", "inner");
  EXPECT_FALSE(files_.MoveFile(Wide("disk/dst"), Wide("src")));
  EXPECT_EQ(ErrorOf(files_), "Cannot open the file " + Name("disk/dst") + ".");
  EXPECT_EQ(Read("disk/dst/inner"), "inner");
  EXPECT_EQ(Read("src"), "content");
}

TEST_F(Files, DeleteTakesFilesOnly) {
  Write("file", "x");
  fs::create_directory(dir_ / "dir");
  fs::create_symlink("dir", dir_ / "link");
  EXPECT_TRUE(files_.DeleteFile(Wide("file"))) << ErrorOf(files_);
  EXPECT_FALSE(Exists("file"));
  for (const char* name : {"file", "dir"}) {
    EXPECT_FALSE(files_.DeleteFile(Wide(name)));
    EXPECT_EQ(ErrorOf(files_), "Cannot delete the file " + Name(name) + ".");
  }
  EXPECT_FALSE(files_.DeleteFile(u"a\\\\b"));
  EXPECT_EQ(ErrorOf(files_), "The directory name \\\\ cannot contain these characters: :*?\"<>|");
}

TEST_F(Files, WritesReplaceOrAppendWhateverTheLength) {
  for (const std::size_t length : {1u, 32767u, 32768u, 32769u, 65536u, 65537u}) {
    SCOPED_TRACE(length);
    std::string content(length, '\0');
    for (std::size_t i = 0; i < length; ++i) content[i] = static_cast<char>(i * 3 + i / 256);
    const auto* data = reinterpret_cast<const std::uint8_t*>(content.data());
    const auto lengthBytes = static_cast<std::uint32_t>(length);
    Write("dst", std::string(70000, 'o'));
    EXPECT_TRUE(files_.WriteData(data, lengthBytes, Wide("dst"), /*append=*/false));
    EXPECT_TRUE(Read("dst") == content);
    EXPECT_TRUE(files_.WriteData(data, lengthBytes, Wide("dst"), /*append=*/true));
    EXPECT_TRUE(Read("dst") == content + content);
    fs::remove(dir_ / "dst");
    EXPECT_TRUE(files_.WriteData(data, lengthBytes, Wide("dst"), /*append=*/true));
    EXPECT_TRUE(Read("dst") == content);
  }
}

TEST_F(Files, WritesFailWithTheReason) {
  fs::create_directory(dir_ / "dir");
  const std::uint8_t bytes[] = {1, 2, 3};
  struct Case {
    const char* what;
    const std::uint8_t* data;
    std::uint32_t lengthBytes;
    Text path;
    std::string expected;
  };
  const Case cases[] = {
      {"nothing", nullptr, 3, Wide("f"), "The data buffer is invalid."},
      {"no length", bytes, 0, Wide("f"), "The length of the data buffer is invalid."},
      {"no path", bytes, 3, u"", "The path name is invalid."},
      {"a directory", bytes, 3, Wide("dir"), "Cannot open the file " + Name("dir") + "."},
      {"missing directory", bytes, 3, Wide("none/f"),
       "Cannot open the file " + Name("none/f") + "."},
      {"full disk", bytes, 3, u"/dev/full", "Cannot write data to the destination stream."},
  };
  for (const Case& c : cases) {
    for (const bool append : {false, true}) {
      SCOPED_TRACE(c.what);
      EXPECT_FALSE(files_.WriteData(c.data, c.lengthBytes, c.path, append));
      EXPECT_EQ(ErrorOf(files_), c.expected);
    }
  }
  CBuffer buffer;
  EXPECT_FALSE(files_.WriteBuffer(buffer, Wide("f?"), /*append=*/false));
  EXPECT_EQ(ErrorOf(files_), "The path name is invalid.");
  EXPECT_FALSE(files_.WriteBuffer(buffer, Wide("f"), /*append=*/false));
  EXPECT_EQ(ErrorOf(files_), "The data buffer is invalid.");
  EXPECT_FALSE(Exists("f"));
  ASSERT_EQ(buffer.Allocate(2), 0);
  buffer.GetData()[0] = 'h';
  buffer.GetData()[1] = 'i';
  EXPECT_TRUE(files_.WriteBuffer(buffer, Wide("f"), /*append=*/false));
  EXPECT_EQ(Read("f"), "hi");
}

}  // namespace
}  // namespace quillon
