#include "foundation/directory_lock.h"

#include "foundation_test_support.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

class DirectoryLocks : public test::InTempDirectory {
 protected:
  DirectoryLocks() { fs::create_directory(dir_ / "root"); }
};

TEST_F(DirectoryLocks, OneObjectHoldsADirectoryUntilItIsReleased) {
  DirectoryLock other;
  {
    DirectoryLock lock;
    EXPECT_EQ(lock.Acquire(Wide("root")), LockResult::Held);
    for (const char* name : {"root", "root/"}) {
      SCOPED_TRACE(name);
      EXPECT_EQ(other.Acquire(Wide(name)), LockResult::InUse);
      EXPECT_FALSE(other.IsHeld());
    }
    // Its holder, and everybody who does not ask, uses it as ever.
    Write("root/IM1", "x");
    CFileUtil files;
    EXPECT_TRUE(files.DeleteAllFiles(Wide("root"), /*recurse=*/true));
    DirectoryLock moved(std::move(lock));
    EXPECT_TRUE(moved.IsHeld());
    EXPECT_EQ(other.Acquire(Wide("root")), LockResult::InUse);
    EXPECT_EQ(moved.Acquire(Wide("root")), LockResult::Held) << "its own is released first";
  }
  EXPECT_EQ(other.Acquire(Wide("root")), LockResult::Held);
  other.Release();
  EXPECT_EQ(DirectoryLock().Acquire(Wide("root")), LockResult::Held);
}

TEST_F(DirectoryLocks, WhatIsNoDirectoryCannotBeLocked) {
  Write("file", "x");
  const std::pair<const char*, DWORD> cases[] = {{"none", ERROR_FILE_NOT_FOUND},
                                                 {"none/sub", ERROR_PATH_NOT_FOUND},
                                                 {"file", ERROR_DIRECTORY}};
  for (const auto& [name, code] : cases) {
    SCOPED_TRACE(name);
    DirectoryLock lock;
    EXPECT_EQ(lock.Acquire(Wide(name)), LockResult::Failed);
    EXPECT_EQ(GetLastError(), code);
    EXPECT_FALSE(Exists("none"));
  }
  EXPECT_EQ(Read("file"), "x");
}

TEST_F(DirectoryLocks, ALockedDirectoryCanBeRenamedAndRemoved) {
  DirectoryLock lock;
  ASSERT_EQ(lock.Acquire(Wide("root")), LockResult::Held);
  fs::rename(dir_ / "root", dir_ / "delivered");
  fs::remove(dir_ / "delivered");
  EXPECT_TRUE(lock.IsHeld());
}

}  // namespace
}  // namespace quillon
