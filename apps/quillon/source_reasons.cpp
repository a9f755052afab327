#include "source_reasons.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace quillon::cli {

std::optional<std::string> reasonNotToRead(const std::string& path) {
  // Without waiting: a named pipe has no writer that would let the call return.
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (file < 0) return std::string("it cannot be opened: ") + std::strerror(errno) + ".";
  struct stat status {};
  std::optional<std::string> reason;
  char byte = 0;
  if (fstat(file, &status) == 0 && !S_ISREG(status.st_mode)) {
    reason = "it is not a regular file.";
  } else if (::pread(file, &byte, 1, 0) < 0) {
    reason = std::string("it cannot be read: ") + std::strerror(errno) + ".";
  }
  ::close(file);
  return reason;
}

}  // namespace quillon::cli
