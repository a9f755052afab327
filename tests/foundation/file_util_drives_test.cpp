// Directories on drives, which on Linux are directories of the test's own; drive E does not exist.
#include <cstdlib>

#include "foundation/file_util.h"
#include "foundation_test_support.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using test::ErrorOf;

class Drives : public test::InWorkDirectory {
 protected:
  Drives() {
    fs::create_directories(dir_ / "drives/d");
    ::setenv("QUILLON_DRIVES", (dir_ / "drives").c_str(), 1);
  }
  ~Drives() override { ::unsetenv("QUILLON_DRIVES"); }
};

TEST_F(Drives, TreesAreCreatedAndDeleted) {
  ExpectCreatedAndDeleted(u"D:\\P0000001\\S0000001", "drives/d/P0000001/S0000001");
  ExpectCreatedAndDeleted(u"d:k\\l", "drives/d/k/l");
  ExpectCreatedAndDeleted(u"d:\\a\\tree\\", "drives/d/a/tree");
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
