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

class Directories : public test::InTempDirectory {
 protected:
  Directories() {
    fs::create_directory(dir_ / "work");
    fs::current_path(dir_ / "work");
  }
  ~Directories() override {
    EXPECT_EQ(fs::current_path(), dir_ / "work") << "the working directory was not restored";
  }

  CFileUtil files_;
};

TEST_F(Directories, OperationsFailWithTheSystemsReason) {
  Write("file", "x");
  Write("full/x", "x");
  struct Case {
    Text path;
    DirectoryOp op;
    std::string expected;
  };
  const Case cases[] = {
      {Wide("none"), DirectoryOp::ChangeTo,
       "Cannot change to the directory " + Name("none") + " for this reason:  " +
           systemSentence(ERROR_FILE_NOT_FOUND, "The system cannot find the file specified.")},
      {Wide("file"), DirectoryOp::ChangeTo,
       "Cannot change to the directory " + Name("file") + " for this reason:  " +
           systemSentence(ERROR_DIRECTORY, "The directory name is invalid.")},
      {Wide("full"), DirectoryOp::Create,
       "Cannot create the directory " + Name("full") + " for this reason:  " +
           systemSentence(ERROR_ALREADY_EXISTS,
                          "Cannot create a file when that file already exists.")},
      {Wide("none/sub"), DirectoryOp::Create,
       "Cannot create the directory " + Name("none/sub") + " for this reason:  " +
           systemSentence(ERROR_PATH_NOT_FOUND, "The system cannot find the path specified.")},
      {Wide("full"), DirectoryOp::Remove,
       "Cannot remove the directory " + Name("full") + " for this reason:  " +
           systemSentence(ERROR_DIR_NOT_EMPTY, "The directory is not empty.")},
      {Wide("file"), DirectoryOp::Remove,
       "Cannot remove the directory " + Name("file") + " for this reason:  " +
           systemSentence(ERROR_DIRECTORY, "The directory name is invalid.")},
      {Wide("full"), DirectoryOp{3}, "The directory operation is invalid."},
      {OLESTR(""), DirectoryOp{3}, "The path name is invalid."},
      {OLESTR("a<b"), DirectoryOp::Create,
       "The filename a<b cannot contain these characters: \\/:*?\"<>|"},
  };
  for (const Case& c : cases) {
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

TEST_F(Directories, TreesAreCreatedWithWhatIsMissing) {
  Write("have/file", "x");
  struct Case {
    const char* what;
    Text path;
    std::string made;  // in the test's directory
  };
  const Case cases[] = {
      {"absolute", Wide("have/a/b/c"), "have/a/b/c"},
      {"there already", Wide("have/a/b"), "have/a/b"},
      {"other separators", Wide("have\\d\\e"), "have/d/e"},
      {"mixed", Wide("have/f\\g/h"), "have/f/g/h"},
      {"trailing separator", Wide("have/i/j/"), "have/i/j"},
      {"relative", OLESTR("rel\\sub.dir"), "work/rel/sub.dir"},
      {"upwards", OLESTR("..\\up\\x"), "up/x"},
      {"not ASCII", Wide("\u65e5\u672c/\u0141"), "\u65e5\u672c/\u0141"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_TRUE(files_.CreateDirectoryTree(c.path)) << ErrorOf(files_);
    EXPECT_TRUE(fs::is_directory(dir_ / c.made));
    EXPECT_EQ(ErrorOf(files_), "");
    EXPECT_EQ(fs::current_path(), dir_ / "work");
  }
  EXPECT_EQ(Read("have/file"), "x");
}

TEST_F(Directories, TreesThatCannotBeCreatedSayWhy) {
  Write("file", "x");
  const std::pair<Text, std::string> cases[] = {
      {Wide("file/sub"), "Cannot create the directory file for this reason:  " +
                             systemSentence(ERROR_ALREADY_EXISTS,
                                            "Cannot create a file when that file already exists.")},
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

TEST_F(Directories, TreesAreDeletedWithAllThatIsInThem) {
  struct Case {
    const char* what;
    std::string tree;  // in the test's directory
    Text path;
  };
  const Case cases[] = {
      {"absolute", "tree", Wide("tree")},
      {"a dot in the name", "tree.v1.2", Wide("tree.v1.2")},
      {"trailing separator", "tree", Wide("tree/")},
      {"other separators", "a/tree", Wide("a\\tree\\")},
      {"a name alone lies in the working directory", "work/tree", OLESTR("tree")},
      {"relative", "work/a/tree", OLESTR("a/tree")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Write(c.tree + "/IM1", "x");
    Write(c.tree + "/sub/deep/IM2", "x");
    EXPECT_TRUE(files_.DeleteDirectoryTree(c.path, /*recurse=*/true)) << ErrorOf(files_);
    EXPECT_FALSE(Exists(c.tree));
    EXPECT_TRUE(fs::exists((dir_ / c.tree).parent_path()));
    EXPECT_EQ(fs::current_path(), dir_ / "work");
  }
}

TEST_F(Directories, TreesThatCannotBeDeletedSayWhy) {
  Write("file", "x");
  Write("tree/sub/x", "x");
  const Text at260 = OLESTR("/") + Text(259, OLESTR('n'));
  const Text at259 = OLESTR("/none/") + Text(253, OLESTR('n'));
  const std::pair<Text, std::string> cases[] = {
      {OLESTR(""), "The path name is invalid."},
      {at260, "The path name " + Plain(at260) + " is longer than 260 characters."},
      {at259,
       "Cannot change to the directory /none/ for this reason:  " +
           systemSentence(ERROR_FILE_NOT_FOUND, "The system cannot find the file specified.")},
      {OLESTR("E:\\tree"), "Cannot change the working drive to E:."},
      {Wide("none"),
       "Cannot change to the directory none for this reason:  " +
           systemSentence(ERROR_FILE_NOT_FOUND, "The system cannot find the file specified.")},
      {Wide("file"), "Cannot change to the directory file for this reason:  " +
                         systemSentence(ERROR_DIRECTORY, "The directory name is invalid.")},
  };
  for (const auto& [path, expected] : cases) {
    SCOPED_TRACE(Plain(path));
    EXPECT_FALSE(files_.DeleteDirectoryTree(path, /*recurse=*/true));
    EXPECT_EQ(ErrorOf(files_), expected);
    EXPECT_EQ(fs::current_path(), dir_ / "work");
  }
  EXPECT_FALSE(files_.DeleteDirectoryTree(Wide("tree"), /*recurse=*/false));
  EXPECT_EQ(ErrorOf(files_),
            "Cannot remove the directory tree for this reason:  " +
                systemSentence(ERROR_DIR_NOT_EMPTY, "The directory is not empty."));
  EXPECT_TRUE(Exists("tree/sub/x"));
}

}  // namespace
}  // namespace quillon
