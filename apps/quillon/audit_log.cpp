#include "audit_log.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <thread>

namespace quillon::cli {

namespace {

Outcome unwritable(const std::string& path, const std::string& reason) {
  return "The audit file " + path + " cannot be written: " + reason + ".";
}

void flushDirectoryOf(const std::string& path) {
  const std::string directory = std::filesystem::path(path).parent_path().string();
  const int descriptor = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  ::fsync(descriptor);
  ::close(descriptor);
}

// syslog(3) tells nobody that there is no log.
bool hasSystemLogDaemon() {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, "/dev/log", sizeof address.sun_path - 1);
  for (const int kind : {SOCK_DGRAM, SOCK_STREAM}) {
    const int descriptor = ::socket(AF_UNIX, kind | SOCK_CLOEXEC, 0);
    if (descriptor < 0) continue;
    const bool isThere =
        ::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(descriptor);
    if (isThere) return true;
  }
  return false;
}

// Lines stay whole without: one write is one piece. So nobody waits long for a job that hangs.
bool waitForTurn(int file) {
  constexpr int kTries = 100;
  constexpr std::chrono::milliseconds kPause{50};
  for (int tried = 0; tried < kTries; ++tried) {
    if (::flock(file, LOCK_EX | LOCK_NB) == 0) return true;
    if (errno != EWOULDBLOCK && errno != EINTR) return false;
    std::this_thread::sleep_for(kPause);
  }
  return false;
}

bool endsInCutLine(int file) {
  struct stat status {};
  char last = '\n';
  return ::fstat(file, &status) == 0 && status.st_size > 0 &&
         ::pread(file, &last, 1, status.st_size - 1) == 1 && last != '\n';
}

Outcome noSystemLog() { return "There is no system log at /dev/log for the record of the job."; }

}  // namespace

AuditLog::~AuditLog() {
  if (file_ >= 0) ::close(file_);
}

Outcome AuditLog::openFile(const std::string& path) {
  path_ = path;
  // Opening a pipe would wait for its reader.
  constexpr int kFlags = O_RDWR | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
  constexpr mode_t kOwnerOnly = 0600;
  file_ = ::open(path.c_str(), kFlags);
  if (file_ < 0 && errno == ENOENT) {
    file_ = ::open(path.c_str(), kFlags | O_CREAT, kOwnerOnly);
    if (file_ >= 0) flushDirectoryOf(path);
  }
  if (file_ < 0) return unwritable(path, std::strerror(errno));
  struct stat status {};
  if (::fstat(file_, &status) != 0) return unwritable(path, std::strerror(errno));
  return S_ISREG(status.st_mode) ? Outcome() : unwritable(path, "it is not a regular file");
}

Outcome AuditLog::openSystemLog() {
  hasSystemLog_ = true;
  return hasSystemLogDaemon() ? Outcome() : noSystemLog();
}

Outcome AuditLog::append(const std::string& line) {
  Outcome outcome;
  if (file_ >= 0) outcome = appendToFile(line);
  if (!hasSystemLog_) return outcome;
  if (!hasSystemLogDaemon()) return outcome.failed() ? outcome : noSystemLog();
  // Where what is private goes: the record names patients.
  ::openlog("quillon", LOG_PID, LOG_AUTHPRIV);
  ::syslog(LOG_NOTICE, "%s", line.c_str());
  ::closelog();
  return outcome;
}

Outcome AuditLog::appendToFile(const std::string& line) {
  const bool isLocked = waitForTurn(file_);
  // Behind a line that a full disk has cut, this one begins anew. What another job is about to
  // write would look like one.
  const std::string bytes = (isLocked && endsInCutLine(file_) ? "\n" : "") + line + "\n";
  ssize_t written = 0;
  do {
    written = ::write(file_, bytes.data(), bytes.size());
  } while (written < 0 && errno == EINTR);
  const int error = errno;
  if (isLocked) ::flock(file_, LOCK_UN);
  if (written < 0) return unwritable(path_, std::strerror(error));
  // The rest would come behind what other jobs have written meanwhile.
  if (static_cast<std::size_t>(written) != bytes.size()) {
    return unwritable(path_, "only part of the line has room");
  }
  return ::fsync(file_) == 0 ? Outcome() : unwritable(path_, std::strerror(errno));
}

}  // namespace quillon::cli
