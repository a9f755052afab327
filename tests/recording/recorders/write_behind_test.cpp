// A disk that fails behind the writing of an image.
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "recorder_fixture.h"

namespace quillon::test {
namespace {

// What waiting for a part to reach the disk fails with; 0 for not at all.
int waitingFailure = 0;

}  // namespace
}  // namespace quillon::test

// Takes the place of the C library's in this program.
extern "C" int sync_file_range(int file, off64_t offset, off64_t count, unsigned flags) {
  if ((flags & SYNC_FILE_RANGE_WAIT_AFTER) != 0 && quillon::test::waitingFailure != 0) {
    errno = quillon::test::waitingFailure;
    return -1;
  }
  return static_cast<int>(::syscall(SYS_sync_file_range, file, offset, count, flags));
}

namespace quillon::test {
namespace {

class WriteBehind : public RecorderTest {};

// The kernel tells such a failure once: who passes over it here calls a disc good that is not.
TEST_F(WriteBehind, APartThatDoesNotReachTheDiskFailsTheWriting) {
  constexpr std::uint64_t kManyParts = 9'000;
  const struct {
    const char* what;
    int failure;
    HRESULT result;
  } kCases[] = {
      {"a disk that works", 0, S_OK},
      {"a disk that fails", EIO, HRESULT_FROM_WIN32(ERROR_IO_DEVICE)},
      {"a disk that fills up", ENOSPC, HRESULT_FROM_WIN32(ERROR_DISK_FULL)},
      {"a system that cannot wait", ENOSYS, S_OK},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    ASSERT_NO_FATAL_FAILURE(insertBlank("cd-r", 10'000));
    Client client;
    waitingFailure = c.failure;
    EXPECT_EQ(client.write(kManyParts), c.result);
    waitingFailure = 0;
    if (c.result == S_OK) {
      EXPECT_TRUE(readBytes(file("disc.iso")) == patternBytes(kManyParts, 1));
    } else {
      EXPECT_EQ(errorDescription(),
                "The virtual recorder cannot write \"" + file("disc.iso").string() + "\".");
    }
    EXPECT_EQ(client.isUsable(), c.result == S_OK);
  }
}

}  // namespace
}  // namespace quillon::test
