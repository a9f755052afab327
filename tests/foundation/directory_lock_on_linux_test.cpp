// Locks of directories against other processes, other names and the directory's own end.
#include <sys/file.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <functional>

#include "foundation/directory_lock.h"
#include "foundation_test_support.h"

namespace {

// What happens between the opening of a directory and its locking.
std::function<bool()>& beforeLocking() {
  static std::function<bool()> event;
  return event;
}

}  // namespace

// The C library's own, as the linker finds it first in the program.
extern "C" int flock(int fd, int operation) noexcept {
  if (beforeLocking() && !beforeLocking()()) return -1;
  return static_cast<int>(::syscall(SYS_flock, fd, operation));
}

namespace quillon {
namespace {

namespace fs = std::filesystem;

class LinuxDirectoryLocks : public test::InTempDirectory {
 protected:
  LinuxDirectoryLocks() { fs::create_directory(dir_ / "root"); }
  ~LinuxDirectoryLocks() override { beforeLocking() = nullptr; }
};

TEST_F(LinuxDirectoryLocks, AnotherProcessIsKeptOutUntilTheHolderDies) {
  fs::create_directory_symlink("root", dir_ / "link");
  int toParent[2];
  ASSERT_EQ(::pipe(toParent), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    DirectoryLock lock;
    const char result = lock.Acquire(Wide("root")) == LockResult::Held ? 'h' : '?';
    if (::write(toParent[1], &result, 1) == 1) ::pause();
    ::_exit(1);
  }
  ::close(toParent[1]);  // so that a child which dies early is heard of
  char result = 0;
  EXPECT_EQ(::read(toParent[0], &result, 1), 1);
  EXPECT_EQ(result, 'h');
  DirectoryLock lock;
  EXPECT_EQ(lock.Acquire(Wide("root")), LockResult::InUse);
  EXPECT_EQ(lock.Acquire(Wide("link")), LockResult::InUse) << "by another name";
  EXPECT_EQ(::kill(child, SIGKILL), 0);
  EXPECT_EQ(::waitpid(child, nullptr, 0), child);
  EXPECT_EQ(lock.Acquire(Wide("root")), LockResult::Held);
  ::close(toParent[0]);
}

TEST_F(LinuxDirectoryLocks, ADirectoryThatIsMadeAnewMeanwhileIsTheOneThatIsLocked) {
  int times = 0;
  beforeLocking() = [&] {
    if (++times == 1) {
      fs::remove(dir_ / "root");
      fs::create_directory(dir_ / "other");  // so that the new one is not the old one again
      fs::create_directory(dir_ / "root");
    }
    return true;
  };
  DirectoryLock lock;
  EXPECT_EQ(lock.Acquire(Wide("root")), LockResult::Held);
  EXPECT_EQ(times, 2);
  EXPECT_EQ(DirectoryLock().Acquire(Wide("root")), LockResult::InUse);
}

TEST_F(LinuxDirectoryLocks, ADirectoryThatGoesAwayMeanwhileIsMissing) {
  beforeLocking() = [&] { return fs::remove(dir_ / "root"); };
  DirectoryLock lock;
  EXPECT_EQ(lock.Acquire(Wide("root")), LockResult::Failed);
  EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
}

TEST_F(LinuxDirectoryLocks, AFileSystemWithoutLocksIsTold) {
  beforeLocking() = [] {
    errno = EBADF;  // as network file systems answer for what is not open for writing
    return false;
  };
  DirectoryLock lock;
  EXPECT_EQ(lock.Acquire(Wide("root")), LockResult::Failed);
  EXPECT_EQ(GetLastError(), ERROR_NOT_SUPPORTED);
}

}  // namespace
}  // namespace quillon
