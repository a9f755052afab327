#include "foundation/file_util.h"
#include "foundation_test_support.h"
#include "support/wine.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using test::ErrorOf;
using test::Plain;

class Files : public test::InTempDirectory {
 protected:
  CFileUtil files_;
};

TEST_F(Files, SizesAreThoseOfFilesThatHoldSomething) {
  for (const char* name : {"empty", "huge", "huger"}) Write(name, "");
  Write("some", "12345");
  fs::create_directory(dir_ / "dir");
  fs::resize_file(dir_ / "huge", std::uintmax_t{1} << 32);  // sparse; its low half is 0
  fs::resize_file(dir_ / "huger", (std::uintmax_t{1} << 32) + 5);
  const struct {
    std::string name;
    std::uint32_t low;
    std::uint64_t whole;
    std::string error;  // of the 64-bit question
  } cases[] = {
      {"some", 5, 5, ""},
      {"empty", 0, 0, IsNoFile("empty")},
      {"dir", 0, 0, IsNoFile("dir")},
      {"missing", 0, 0, CannotBeFound("missing")},
      {"wh?t", 0, 0, "The filename wh?t cannot contain these characters: \\/:*?\"<>|"},
      {"huge", 0, 4294967296, ""},
      {"huger", 5, 4294967301, ""},
  };
  for (const auto& c : cases) {
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
  EXPECT_EQ(ErrorOf(files_), CannotBeFound("missing/x"));
}

TEST_F(Files, EveryByteArrivesWhateverTheLength) {
  for (const std::size_t length : {1u, 32767u, 32768u, 32769u, 65536u, 100000u}) {
    SCOPED_TRACE(length);
    std::string content(length, '\0');
    for (std::size_t i = 0; i < length; ++i) content[i] = static_cast<char>(i * 7 + i / 256);
    const auto write = [&](bool append) {
      const auto* data = reinterpret_cast<const std::uint8_t*>(content.data());
      return files_.WriteData(data, static_cast<std::uint32_t>(length), Wide("dst"), append);
    };
    Write("src", content);
    const std::string longerAndShorter(70000, 'o');
    Write("dst", longerAndShorter);
    EXPECT_TRUE(files_.CopyFile(Wide("dst"), Wide("src"), /*append=*/false)) << ErrorOf(files_);
    EXPECT_TRUE(Read("dst") == content);
    EXPECT_TRUE(Read("src") == content);
    Write("dst", longerAndShorter);
    EXPECT_TRUE(write(/*append=*/false));
    EXPECT_TRUE(Read("dst") == content);
    EXPECT_TRUE(write(/*append=*/true));
    EXPECT_TRUE(Read("dst") == content + content);
    fs::remove(dir_ / "dst");
    EXPECT_TRUE(write(/*append=*/true));
    EXPECT_TRUE(Read("dst") == content);
  }
}

TEST_F(Files, CopyAndMoveFailWithTheReasonAndLoseNothing) {
  Write("src", "content");
  Write("empty", "");
  Write("dir/inner", "inner");
  const std::string badSource = "The source filename is invalid.";
  const struct {
    const char* what;
    Text dst;
    Text src;
    std::string expected;
    bool ofCopyAlone = false;
  } cases[] = {
      {"bad source name", Wide("dst"), Wide("s|c"), badSource},
      {"no source name", Wide("dst"), OLESTR(""), badSource},
      {"bad destination name", Wide("d*"), Wide("src"), "The destination filename is invalid."},
      {"both bad", OLESTR(""), OLESTR(""), badSource},
      {"missing source", Wide("dst"), Wide("none"), CannotBeFound("none")},
      {"source is a directory", Wide("dst"), Wide("dir"), IsNoFile("dir")},
      {"empty source", Wide("dst"), Wide("empty"), IsNoFile("empty")},
      {"destination is a directory", Wide("dir"), Wide("src"), CannotOpen("dir")},
      {"its directory is missing", Wide("none/dst"), Wide("src"), CannotOpen("none/dst")},
      {"onto itself", Wide("src"), Wide("src"), CannotOpen("src"), true},
      {"in another spelling", Wide("dir/../src"), OLESTR("src"), CannotOpen("dir/../src"), true},
  };
  for (const auto& c : cases) {
    for (const bool isMove : {false, true}) {
      SCOPED_TRACE(c.what);
      if (isMove && c.ofCopyAlone) continue;
      EXPECT_FALSE(isMove ? files_.MoveFile(c.dst, c.src)
                          : files_.CopyFile(c.dst, c.src, /*append=*/false));
      EXPECT_EQ(ErrorOf(files_), c.expected);
      EXPECT_EQ(Read("src"), "content");
      EXPECT_EQ(Read("dir/inner"), "inner");
      EXPECT_FALSE(Exists("dst"));
    }
  }
  EXPECT_TRUE(files_.MoveFile(Wide("src"), Wide("src"))) << "onto itself: " << ErrorOf(files_);
  EXPECT_EQ(Read("src"), "content");
}

TEST_F(Files, MoveRenamesWithinAFileSystem) {
  Write("in/src", "content");
  Write("out/dst", "earlier, longer content");
  FileIdentity before;
  FileIdentity after;
  EXPECT_TRUE(files_.GetFileIdentity(Wide("in/src"), before));
  EXPECT_TRUE(files_.MoveFile(Wide("out/dst"), Wide("in/src"))) << ErrorOf(files_);
  EXPECT_EQ(Read("out/dst"), "content");
  EXPECT_TRUE(files_.GetFileIdentity(Wide("out/dst"), after));
  EXPECT_EQ(before, after);
  EXPECT_FALSE(Exists("in/src"));
}

// A file whose size looks like none in 32 bits is a file as any other.
TEST_F(Files, FilesOfAMultipleOf4GiBAreMoved) {
  Write("src", "");
  fs::resize_file(dir_ / "src", std::uintmax_t{1} << 32);  // sparse
  EXPECT_TRUE(files_.MoveFile(Wide("dst"), Wide("src"))) << ErrorOf(files_);
  EXPECT_EQ(fs::file_size(dir_ / "dst"), std::uintmax_t{1} << 32);
  EXPECT_FALSE(Exists("src"));
}

// Files from a CD are marked read-only, which must keep nobody from making a set of them, nor from
// clearing it away.
TEST_F(Files, ReadOnlyFilesAreMovedReplacedAndDeleted) {
  const auto writeReadOnly = [&](const char* name) {
    Write(name, "content");
    fs::permissions(dir_ / name, fs::perms{0444});
  };
  const auto isReadOnly = [&](const char* name) {
    return (fs::status(dir_ / name).permissions() & fs::perms{0222}) == fs::perms::none;
  };
  writeReadOnly("src");
  writeReadOnly("dst");
  EXPECT_TRUE(files_.MoveFile(Wide("dst"), Wide("src"))) << ErrorOf(files_);
  EXPECT_FALSE(Exists("src"));
  EXPECT_EQ(Read("dst"), "content");
  EXPECT_FALSE(isReadOnly("dst"));

  writeReadOnly("label");
  const std::uint8_t bytes[] = {'n', 'e', 'w'};
  if (!test::isWine()) {  // whose administrator may write to them
    EXPECT_FALSE(files_.WriteData(bytes, 3, Wide("label"), /*append=*/true));
    EXPECT_EQ(ErrorOf(files_), CannotOpen("label"));
  }
  EXPECT_TRUE(isReadOnly("label"));
  EXPECT_TRUE(files_.WriteData(bytes, 3, Wide("label"), /*append=*/false)) << ErrorOf(files_);
  EXPECT_EQ(Read("label"), "new");

  writeReadOnly("tree/IM1");
  writeReadOnly("tree/sub/IM2");
  EXPECT_TRUE(files_.DeleteDirectoryTree(Wide("tree"), /*recurse=*/true)) << ErrorOf(files_);
  EXPECT_FALSE(Exists("tree"));
}

TEST_F(Files, DeleteTakesFilesOnly) {
  Write("file", "x");
  fs::create_directory(dir_ / "dir");
  EXPECT_TRUE(files_.DeleteFile(Wide("file"))) << ErrorOf(files_);
  EXPECT_FALSE(Exists("file"));
  for (const char* name : {"file", "dir"}) {
    EXPECT_FALSE(files_.DeleteFile(Wide(name)));
    EXPECT_EQ(ErrorOf(files_), "Cannot delete the file " + Name(name) + ".");
  }
  EXPECT_FALSE(files_.DeleteFile(OLESTR("a\\\\b")));
  EXPECT_EQ(ErrorOf(files_), "The directory name \\\\ cannot contain these characters: :*?\"<>|");
}

TEST_F(Files, WritesFailWithTheReason) {
  fs::create_directory(dir_ / "dir");
  const std::uint8_t bytes[] = {1, 2, 3};
  const struct {
    const char* what;
    const std::uint8_t* data;
    std::uint32_t lengthBytes;
    Text path;
    std::string expected;
  } cases[] = {
      {"nothing", nullptr, 3, Wide("f"), "The data buffer is invalid."},
      {"no length", bytes, 0, Wide("f"), "The length of the data buffer is invalid."},
      {"no path", bytes, 3, OLESTR(""), "The path name is invalid."},
      {"a directory", bytes, 3, Wide("dir"), CannotOpen("dir")},
      {"missing directory", bytes, 3, Wide("none/f"), CannotOpen("none/f")},
  };
  for (const auto& c : cases) {
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
  std::uint8_t content[] = {'h', 'i'};
  ASSERT_EQ(buffer.Attach(content, 2, /*owns=*/false), 0);
  EXPECT_TRUE(files_.WriteBuffer(buffer, Wide("f"), /*append=*/false));
  EXPECT_EQ(Read("f"), "hi");
}

}  // namespace
}  // namespace quillon
