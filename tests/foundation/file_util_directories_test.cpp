#include "foundation/file_util.h"
#include "foundation_test_support.h"
#include "support/system_sentence.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using test::ErrorOf;
using test::Plain;
using test::systemSentence;
using test::WideOf;

std::string because(HRESULT code, const std::string& onWindows) {
  return " for this reason:  " + systemSentence(code, onWindows);
}
const std::string kNotFound =
    because(ERROR_FILE_NOT_FOUND, "The system cannot find the file specified.");
const std::string kNoDirectory = because(ERROR_DIRECTORY, "The directory name is invalid.");
const std::string kExists =
    because(ERROR_ALREADY_EXISTS, "Cannot create a file when that file already exists.");
const std::string kNotEmpty = because(ERROR_DIR_NOT_EMPTY, "The directory is not empty.");

class Directories : public test::InWorkDirectory {};

TEST_F(Directories, OperationsFailWithTheSystemsReason) {
  Write("file", "x");
  Write("full/x", "x");
  const struct {
    Text path;
    DirectoryOp op;
    std::string expected;
  } cases[] = {
      {Wide("none"), DirectoryOp::ChangeTo,
       "Cannot change to the directory " + Name("none") + kNotFound},
      {Wide("file"), DirectoryOp::ChangeTo,
       "Cannot change to the directory " + Name("file") + kNoDirectory},
      {Wide("full"), DirectoryOp::Create, "Cannot create the directory " + Name("full") + kExists},
      {Wide("none/sub"), DirectoryOp::Create,
       "Cannot create the directory " + Name("none/sub") +
           because(ERROR_PATH_NOT_FOUND, "The system cannot find the path specified.")},
      {Wide("full"), DirectoryOp::Remove,
       "Cannot remove the directory " + Name("full") + kNotEmpty},
      {Wide("file"), DirectoryOp::Remove,
       "Cannot remove the directory " + Name("file") + kNoDirectory},
      {Wide("full"), DirectoryOp{3}, "The directory operation is invalid."},
      {OLESTR(""), DirectoryOp{3}, "The path name is invalid."},
      {OLESTR("a<b"), DirectoryOp::Create,
       "The filename a<b cannot contain these characters: \\/:*?\"<>|"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.expected);
    EXPECT_FALSE(files_.DirectoryOperation(c.path, c.op));
    EXPECT_EQ(ErrorOf(files_), c.expected);
  }
}

TEST_F(Directories, TheWorkingDirectoryIsReadAndChanged) {
  Text directory;
  ASSERT_TRUE(files_.ChangeDirectory(Wide("full").substr(0, Wide("").size() - 1)));
  ASSERT_TRUE(files_.GetCurrentDirectory(directory));
  EXPECT_EQ(Plain(directory), dir_.path().string());
  ASSERT_TRUE(files_.ChangeDirectory(OLESTR("work")));
}

TEST_F(Directories, TreesAreCreatedWithWhatIsMissingAndDeletedWithAllThatIsInThem) {
  Write("have/file", "x");
  ExpectCreatedAndDeleted(Wide("have/a/b/c"), "have/a/b/c");
  ExpectCreatedAndDeleted(Wide("have/a/b"), "have/a/b");  // is there already
  ExpectCreatedAndDeleted(Wide("have\\d\\e"), "have/d/e");
  ExpectCreatedAndDeleted(Wide("have/f\\g/h\\"), "have/f/g/h");
  ExpectCreatedAndDeleted(Wide("have/i/j/"), "have/i/j");
  ExpectCreatedAndDeleted(Wide("tree.v1.2"), "tree.v1.2");
  ExpectCreatedAndDeleted(Wide("\u65e5\u672c/\u0141"), "\u65e5\u672c/\u0141");
  // What has no drive and no root lies in the working directory.
  ExpectCreatedAndDeleted(OLESTR("rel\\sub.dir"), "work/rel/sub.dir");
  ExpectCreatedAndDeleted(OLESTR("tree"), "work/tree");
  ExpectCreatedAndDeleted(OLESTR("..\\up\\x"), "up/x");
  EXPECT_EQ(Read("have/file"), "x");
}

TEST_F(Directories, TreesThatCannotBeCreatedSayWhy) {
  Write("file", "x");
  const std::pair<Text, std::string> cases[] = {
      {Wide("file/sub"), "Cannot create the directory file" + kExists},
      {Wide("new/" + std::string(300, 'n')).substr(0, 261),
       "The path name " + Name("new/" + std::string(300, 'n')).substr(0, 261) +
           " is longer than 260 characters."},
      {OLESTR("E:\\sub"), "Cannot change the working drive to E:\\."},
      {OLESTR("\\\\quillon-no-server\\share\\sub"),
       "Cannot change the working drive to \\\\quillon-no-server\\share\\."},
      {OLESTR(""), "The path name is invalid."},
  };
  for (const auto& [path, expected] : cases) {
    SCOPED_TRACE(Plain(path));
    EXPECT_FALSE(files_.CreateDirectoryTree(path));
    EXPECT_EQ(ErrorOf(files_), expected);
    EXPECT_EQ(fs::current_path(), dir_ / "work");
  }
  EXPECT_FALSE(Exists("new"));
}

TEST_F(Directories, EmptyingKeepsDirectoriesUnlessToldToRecurse) {
  Write("tree/a", "x");
  Write("tree/sub/deep/b", "x");
  Write("tree/z", "x");
  EXPECT_TRUE(files_.DeleteAllFiles(OLESTR("../tree"), /*recurse=*/false)) << ErrorOf(files_);
  EXPECT_FALSE(Exists("tree/a"));
  EXPECT_FALSE(Exists("tree/z"));
  EXPECT_TRUE(Exists("tree/sub/deep/b"));
  EXPECT_TRUE(files_.ChangeDirectory(OLESTR("work")));

  EXPECT_TRUE(files_.DeleteAllFiles(OLESTR("../tree"), /*recurse=*/true)) << ErrorOf(files_);
  EXPECT_TRUE(files_.ChangeDirectory(OLESTR("work")));
  EXPECT_TRUE(fs::is_empty(dir_ / "tree"));
}

TEST_F(Directories, TreesThatCannotBeDeletedSayWhy) {
  Write("file", "x");
  Write("tree/sub/x", "x");
  const Text at260 = OLESTR("/") + Text(259, OLESTR('n'));
  const Text at259 = OLESTR("/none/") + Text(253, OLESTR('n'));
  const std::pair<Text, std::string> cases[] = {
      {OLESTR(""), "The path name is invalid."},
      {at260, "The path name " + Plain(at260) + " is longer than 260 characters."},
      {at259, "Cannot change to the directory /none/" + kNotFound},
      {OLESTR("E:\\tree"), "Cannot change the working drive to E:."},
      {Wide("none"), "Cannot change to the directory none" + kNotFound},
      {Wide("file"), "Cannot change to the directory file" + kNoDirectory},
  };
  for (const auto& [path, expected] : cases) {
    SCOPED_TRACE(Plain(path));
    EXPECT_FALSE(files_.DeleteDirectoryTree(path, /*recurse=*/true));
    EXPECT_EQ(ErrorOf(files_), expected);
    EXPECT_EQ(fs::current_path(), dir_ / "work");
  }
  EXPECT_FALSE(files_.DeleteDirectoryTree(Wide("tree"), /*recurse=*/false));
  EXPECT_EQ(ErrorOf(files_), "Cannot remove the directory tree" + kNotEmpty);
  EXPECT_TRUE(Exists("tree/sub/x"));
}

TEST_F(Directories, ADirectoryGetsAFreeNameOrKeepsItsOwn) {
  Write("set/IM1", "x");
  Write("file", "x");
  fs::create_directory(dir_ / "empty");
  const struct {
    Text to;
    Text from;
    std::string expected;
  } cases[] = {
      {Wide("empty"), Wide("set"), "Cannot rename " + Name("set") + " to " + Name("empty") + "."},
      {Wide("file"), Wide("set"), "Cannot rename " + Name("set") + " to " + Name("file") + "."},
      {Wide("new"), Wide("none"), "Cannot rename " + Name("none") + " to " + Name("new") + "."},
      {Wide("new"), OLESTR("s|t"), "The source filename is invalid."},
      {OLESTR("n|w"), Wide("set"), "The destination filename is invalid."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.expected);
    EXPECT_FALSE(files_.RenameDirectory(c.to, c.from));
    EXPECT_EQ(ErrorOf(files_), c.expected);
    EXPECT_TRUE(Exists("set/IM1") && Exists("empty") && Exists("file"));
  }
  EXPECT_TRUE(files_.RenameDirectory(Wide("delivered"), Wide("set")));
  EXPECT_TRUE(Exists("delivered/IM1"));
  EXPECT_FALSE(Exists("set"));
}

}  // namespace
}  // namespace quillon
