#include "password_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

namespace quillon::cli {

namespace {

constexpr std::size_t kLongestPassword = 1024;

}  // namespace

Outcome readPassword(const std::string& file, std::string& password) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
  if (descriptor < 0) {
    return "The password file " + file + " cannot be read: " + std::strerror(errno) + ".";
  }
  struct stat status {};
  const bool isPrivate = ::fstat(descriptor, &status) == 0 && (status.st_mode & 077) == 0;
  std::array<char, kLongestPassword + 2> bytes{};
  std::size_t count = 0;
  ssize_t got = 1;
  while (isPrivate && count < bytes.size() && got > 0) {
    got = ::read(descriptor, bytes.data() + count, bytes.size() - count);
    if (got > 0) count += static_cast<std::size_t>(got);
  }
  const int error = errno;
  ::close(descriptor);
  if (!isPrivate) {
    return "The password file " + file + " can be read by others: chmod 600 " + file +
           " keeps them out.";
  }
  if (got < 0)
    return "The password file " + file + " cannot be read: " + std::strerror(error) + ".";
  const std::string_view text(bytes.data(), count);
  password = text.substr(0, text.find('\n'));
  if (password.ends_with('\r')) password.pop_back();
  if (password.empty())
    return "The password file " + file + " holds no password in its first line.";
  if (password.size() > kLongestPassword) {
    return "The password in " + file + " has more than " + std::to_string(kLongestPassword) +
           " bytes.";
  }
  if (password.find('\0') != std::string::npos) return "The password in " + file + " is no text.";
  return {};
}

}  // namespace quillon::cli
