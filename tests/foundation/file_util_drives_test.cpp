// Directories on drives, which on Linux are directories of the test's own; drive E does not exist.
#include <cstdlib>

#include "foundation/file_util.h"
#include "foundation_test_support.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using test::ErrorOf;

class Drives : public test::InTempDirectory {
 protected:
  Drives() {
    fs::create_directories(dir_ / "drives/d");
    fs::create_directory(dir_ / "work");
    ::setenv("QUILLON_DRIVES", (dir_ / "drives").c_str(), 1);
    fs::current_path(dir_ / "work");
  }
  ~Drives() override {
    EXPECT_EQ(fs::current_path(), dir_ / "work") << "the working directory was not restored";
    ::unsetenv("QUILLON_DRIVES");
  }

  CFileUtil files_;
};

TEST_F(Drives, TreesAreCreatedAndDeleted) {
  struct Case {
    const char* what;
    Text path;
    std::string made;  // in the test's directory
  };
  const Case cases[] = {
      {"drive", u"D:\\P0000001\\S0000001", "drives/d/P0000001/S0000001"},
      {"drive without a separator", u"d:k\\l", "drives/d/k/l"},
      {"deeper", u"d:\\a\\tree\\", "drives/d/a/tree"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_TRUE(files_.CreateDirectoryTree(c.path)) << ErrorOf(files_);
    EXPECT_TRUE(fs::is_directory(dir_ / c.made));
    Write(c.made + "/sub/deep/IM2", "x");
    EXPECT_EQ(fs::current_path(), dir_ / "work");
    EXPECT_TRUE(files_.DeleteDirectoryTree(c.path, /*recurse=*/true)) << ErrorOf(files_);
    EXPECT_FALSE(Exists(c.made));
    EXPECT_TRUE(fs::exists((dir_ / c.made).parent_path()));
    EXPECT_EQ(fs::current_path(), dir_ / "work");
  }
}

TEST_F(Drives, ADrivesRootIsEmptiedAndStays) {
  for (const Text& root : {Text(u"D:\\"), Text(u"D:")}) {
    EXPECT_TRUE(files_.CreateDirectoryTree(root)) << ErrorOf(files_);
    Write("drives/d/sub/x", "x");
    EXPECT_TRUE(files_.DeleteDirectoryTree(root, /*recurse=*/true)) << ErrorOf(files_);
    EXPECT_TRUE(fs::is_empty(dir_ / "drives/d"));
  }
}

TEST_F(Drives, DeletingNeverFollowsANameThatReadsAsAPath) {
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

}  // namespace
}  // namespace quillon
