#include <cstdlib>

#include "foundation/file_util.h"
#include "foundation_test_support.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using test::ErrorOf;
using test::Plain;
using test::WideOf;

// Drives of the test's own; drive E does not exist.
class Directories : public test::InTempDirectory {
 protected:
  Directories() {
    fs::create_directories(dir_ / "drives/d");
    fs::create_directory(dir_ / "work");
    ::setenv("QUILLON_DRIVES", (dir_ / "drives").c_str(), 1);
    fs::current_path(dir_ / "work");
  }
  ~Directories() override {
    EXPECT_EQ(fs::current_path(), dir_ / "work") << "the working directory was not restored";
    ::unsetenv("QUILLON_DRIVES");
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
       "Cannot change to the directory " + Name("none") +
           " for this reason:  The system cannot find the file specified."},
      {Wide("file"), DirectoryOp::ChangeTo,
       "Cannot change to the directory " + Name("file") +
           " for this reason:  The directory name is invalid."},
      {Wide("full"), DirectoryOp::Create,
       "Cannot create the directory " + Name("full") +
           " for this reason:  Cannot create a file when that file already exists."},
      {Wide("none/sub"), DirectoryOp::Create,
       "Cannot create the directory " + Name("none/sub") +
           " for this reason:  The system cannot find the path specified."},
      {Wide("full"), DirectoryOp::Remove,
       "Cannot remove the directory " + Name("full") +
           " for this reason:  The directory is not empty."},
      {Wide("file"), DirectoryOp::Remove,
       "Cannot remove the directory " + Name("file") +
           " for this reason:  The directory name is invalid."},
      {Wide("full"), DirectoryOp{3}, "The directory operation is invalid."},
      {u"", DirectoryOp{3}, "The path name is invalid."},
      {u"a<b", DirectoryOp::Create,
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
  ASSERT_TRUE(files_.ChangeDirectory(u"work"));
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
      {"relative", u"rel\\sub.dir", "work/rel/sub.dir"},
      {"upwards", u"..\\up\\x", "up/x"},
      {"drive", u"D:\\P0000001\\S0000001", "drives/d/P0000001/S0000001"},
      {"drive without a separator", u"d:k\\l", "drives/d/k/l"},
      {"not ASCII", Wide("\u65e5\u672c/\u0141"), "\u65e5\u672c/\u0141"},
      {"a drive's root", u"D:\\", "drives/d"},
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
      {Wide("file/sub"),
       "Cannot create the directory file for this reason:  Cannot create a file when that file "
       "already exists."},
      {Wide("new/" + std::string(300, 'n')).substr(0, 261),
       "The path name " + Name("new/" + std::string(300, 'n')).substr(0, 261) +
           " is longer than 260 characters."},
      {u"E:\\sub", "Cannot change the working drive to E:\\."},
      {u"\\\\quillon-no-server\\share\\sub",
       "Cannot change the working drive to \\\\quillon-no-server\\share\\."},
      {u"", "The path name is invalid."},
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
  EXPECT_TRUE(files_.DeleteAllFiles(u"../tree", /*recurse=*/false)) << ErrorOf(files_);
  EXPECT_FALSE(Exists("tree/a"));
  EXPECT_FALSE(Exists("tree/z"));
  EXPECT_TRUE(Exists("tree/sub/deep/b"));
  EXPECT_TRUE(files_.ChangeDirectory(u"work"));

  EXPECT_TRUE(files_.DeleteAllFiles(u"../tree", /*recurse=*/true)) << ErrorOf(files_);
  EXPECT_TRUE(files_.ChangeDirectory(u"work"));
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
      {"drive", "drives/d/tree", u"D:\\tree"},
      {"deeper on a drive", "drives/d/a/tree", u"d:\\a\\tree\\"},
      {"a name alone lies in the working directory", "work/tree", u"tree"},
      {"relative", "work/a/tree", u"a/tree"},
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

TEST_F(Directories, ADrivesRootIsEmptiedAndStays) {
  for (const Text& root : {Text(u"D:\\"), Text(u"D:")}) {
    Write("drives/d/sub/x", "x");
    EXPECT_TRUE(files_.DeleteDirectoryTree(root, /*recurse=*/true)) << ErrorOf(files_);
    EXPECT_TRUE(fs::is_empty(dir_ / "drives/d"));
  }
}

TEST_F(Directories, DeletingTakesLinksAndNotWhatTheyLeadTo) {
  Write("user/image", "content");
  Write("tree/IM1", "x");
  fs::create_directory_symlink("../user", dir_ / "tree/dirlink");
  fs::create_symlink("../user/image", dir_ / "tree/filelink");
  fs::create_symlink("nowhere", dir_ / "tree/dangling");
  EXPECT_TRUE(files_.DeleteDirectoryTree(Wide("tree"), /*recurse=*/true)) << ErrorOf(files_);
  EXPECT_FALSE(Exists("tree"));
  EXPECT_EQ(Read("user/image"), "content");
}

TEST_F(Directories, DeletingNeverFollowsANameThatReadsAsAPath) {
  Write("drives/d/x", "kept");
  Write("work/up", "kept");
  for (const char* name : {"D:x", "a\\..\\..\\work\\up"}) {
    SCOPED_TRACE(name);
    Write("tree/" + std::string(name), "x");
    EXPECT_FALSE(files_.DeleteDirectoryTree(Wide("tree"), /*recurse=*/true));
    EXPECT_EQ(ErrorOf(files_), "The filename " + std::string(name) +
                                   " cannot contain these characters: \\/:*?\"<>|");
    fs::remove_all(dir_ / "tree");
  }
  EXPECT_EQ(Read("drives/d/x"), "kept");
  EXPECT_EQ(Read("work/up"), "kept");
}

TEST_F(Directories, TreesThatCannotBeDeletedSayWhy) {
  Write("file", "x");
  Write("tree/sub/x", "x");
  const Text at260 = u"/" + Text(259, u'n');
  const Text at259 = u"/none/" + Text(253, u'n');
  const std::pair<Text, std::string> cases[] = {
      {u"", "The path name is invalid."},
      {at260, "The path name " + Plain(at260) + " is longer than 260 characters."},
      {at259,
       "Cannot change to the directory /none/ for this reason:  The system cannot find the file "
       "specified."},
      {u"E:\\tree", "Cannot change the working drive to E:."},
      {Wide("none"),
       "Cannot change to the directory none for this reason:  The system cannot find the file "
       "specified."},
      {Wide("file"),
       "Cannot change to the directory file for this reason:  The directory name is invalid."},
  };
  for (const auto& [path, expected] : cases) {
    SCOPED_TRACE(Plain(path));
    EXPECT_FALSE(files_.DeleteDirectoryTree(path, /*recurse=*/true));
    EXPECT_EQ(ErrorOf(files_), expected);
    EXPECT_EQ(fs::current_path(), dir_ / "work");
  }
  EXPECT_FALSE(files_.DeleteDirectoryTree(Wide("tree"), /*recurse=*/false));
  EXPECT_EQ(ErrorOf(files_),
            "Cannot remove the directory tree for this reason:  The directory is not empty.");
  EXPECT_TRUE(Exists("tree/sub/x"));
}

TEST_F(Directories, TheTemporaryDirectoryEndsInASeparator) {
  ::setenv("TMPDIR", (dir_ / "tmp").c_str(), 1);
  Text out;
  EXPECT_TRUE(files_.GetTempDirectory(out, /*create=*/false, /*addSubdirectory=*/false));
  const std::string plain = Plain(out);
  ASSERT_FALSE(plain.empty());
  EXPECT_TRUE(plain.back() == '/' || plain.back() == '\\') << plain;
  EXPECT_EQ(plain.substr(0, plain.size() - 1), (dir_ / "tmp").string());
  EXPECT_FALSE(Exists("tmp"));

  EXPECT_TRUE(files_.GetTempDirectory(out, /*create=*/true, /*addSubdirectory=*/true));
  EXPECT_EQ(Plain(out), plain + "QUILLON");
  EXPECT_TRUE(Exists("tmp/QUILLON"));
  EXPECT_FALSE(files_.GetTempDirectory(out, /*create=*/true, /*addSubdirectory=*/true));
  EXPECT_EQ(ErrorOf(files_), "Cannot create the directory " + plain + "QUILLON.");
  ::unsetenv("TMPDIR");
}

}  // namespace
}  // namespace quillon
