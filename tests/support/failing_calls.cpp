#include "support/failing_calls.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace quillon::test {

namespace {

std::vector<FailingCall*>& living() {
  static std::vector<FailingCall*> calls;
  return calls;
}

std::string_view directoryOf(std::string_view path) {
  const std::size_t separator = path.rfind('/');
  return path.substr(0, separator == std::string_view::npos ? 0 : separator);
}

bool fails(Call call) {
  return std::any_of(living().begin(), living().end(),
                     [call](FailingCall* one) { return one->strikes(call); });
}

bool isAnyOf(std::initializer_list<Call> kinds) {
  return std::any_of(living().begin(), living().end(), [&kinds](FailingCall* one) {
    return std::find(kinds.begin(), kinds.end(), one->kind()) != kinds.end();
  });
}

}  // namespace

FailingCall::FailingCall(Call call, int nth, int error) : call_(call), nth_(nth), error_(error) {
  living().push_back(this);
}

FailingCall::~FailingCall() { std::erase(living(), this); }

bool FailingCall::strikes(Call call) {
  const bool isRename = call_ == Call::Rename && call == Call::RenameElsewhere;
  if (call_ != Call::Any && call_ != call && !isRename) return false;
  if (nth_ != 0 && ++count_ != nth_) return false;
  happened_ = true;
  errno = error_;
  return true;
}

}  // namespace quillon::test

using quillon::test::Call;
using quillon::test::directoryOf;
using quillon::test::fails;
using quillon::test::isAnyOf;

// The C library's own, as the linker finds them first in the program.
extern "C" {

int open(const char* path, int flags, ...) {
  unsigned mode = 0;
  if ((flags & O_CREAT) != 0) {
    va_list more;
    va_start(more, flags);
    mode = va_arg(more, unsigned);
    va_end(more);
  }
  if (fails(Call::Open)) return -1;
  return static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

ssize_t read(int fd, void* buffer, size_t count) {
  return fails(Call::Read) ? -1 : ::syscall(SYS_read, fd, buffer, count);
}

ssize_t write(int fd, const void* buffer, size_t count) {
  return fails(Call::Write) ? -1 : ::syscall(SYS_write, fd, buffer, count);
}

ssize_t copy_file_range(int from, off64_t* fromAt, int to, off64_t* toAt, size_t count,
                        unsigned int flags) {
  if (fails(Call::CopyRange)) return -1;
  if (isAnyOf({Call::Read, Call::Write})) {
    errno = EOPNOTSUPP;
    return -1;
  }
  return ::syscall(SYS_copy_file_range, from, fromAt, to, toAt, count, flags);
}

off_t lseek(int fd, off_t offset, int origin) noexcept {
  return fails(Call::Seek) ? -1 : ::syscall(SYS_lseek, fd, offset, origin);
}

int fsync(int fd) { return fails(Call::Sync) ? -1 : static_cast<int>(::syscall(SYS_fsync, fd)); }

int close(int fd) {
  const int result = static_cast<int>(::syscall(SYS_close, fd));
  return fails(Call::Close) ? -1 : result;
}

int renameat2(int fromDir, const char* from, int toDir, const char* to,
              unsigned int flags) noexcept {
  const bool isElsewhere = directoryOf(from) != directoryOf(to);
  if (fails(isElsewhere ? Call::RenameElsewhere : Call::Rename)) return -1;
  return static_cast<int>(::syscall(SYS_renameat2, fromDir, from, toDir, to, flags));
}

int rename(const char* from, const char* to) noexcept {
  return renameat2(AT_FDCWD, from, AT_FDCWD, to, 0);
}

int unlink(const char* path) noexcept {
  if (fails(Call::Unlink)) return -1;
  return static_cast<int>(::syscall(SYS_unlinkat, AT_FDCWD, path, 0));
}

int mkdir(const char* path, mode_t mode) noexcept {
  if (fails(Call::MakeDirectory)) return -1;
  return static_cast<int>(::syscall(SYS_mkdirat, AT_FDCWD, path, mode));
}

}  // extern "C"
