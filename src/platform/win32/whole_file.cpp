#include "win32/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>

#include "win32/environment.h"

namespace quillon::platform {

Descriptor::~Descriptor() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

std::string directoryOf(const std::string& path) {
  const std::size_t separator = path.rfind('/');
  if (separator == std::string::npos) return ".";
  return separator == 0 ? "/" : path.substr(0, separator);
}

bool readAll(int descriptor, std::string& bytes) {
  std::array<char, 65536> block;
  for (;;) {
    const ssize_t got = ::read(descriptor, block.data(), block.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    if (got == 0) return true;
    bytes.append(block.data(), static_cast<std::size_t>(got));
  }
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t put = ::write(descriptor, bytes.data(), bytes.size());
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(put));
  }
  return true;
}

bool readFile(const std::string& path, std::string& bytes) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  return file.isOpen() && readAll(file.get(), bytes);
}

int replaceFile(const std::string& path, std::string_view bytes) {
  std::string temporary = path + ".XXXXXX";
  const Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
  if (!file.isOpen()) return errno;
  struct stat old {};
  const bool existed = ::stat(path.c_str(), &old) == 0;
  const mode_t mask = ::umask(0);
  ::umask(mask);
  const mode_t mode = existed ? old.st_mode & 0777 : 0666 & ~mask;
  int error = 0;
  if (!writeAll(file.get(), bytes) || ::fchmod(file.get(), mode) != 0 || ::fsync(file.get()) != 0 ||
      ::rename(temporary.c_str(), path.c_str()) != 0) {
    error = errno;
    ::unlink(temporary.c_str());
    return error;
  }
  syncDirectory(directoryOf(path));
  return 0;
}

}  // namespace quillon::platform
