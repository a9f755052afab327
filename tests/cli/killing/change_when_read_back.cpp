// Preloaded into the program: a medium that does not give back what was written on it. The program
// tells the system to forget a file before it reads it back; at that moment the byte behind
// CHANGE_TEXT in it, which it must hold, is changed.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace {

void change(int file, const std::string& text) {
  struct stat status {};
  if (fstat(file, &status) != 0) return;
  std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
  if (pread(file, bytes.data(), bytes.size(), 0) != status.st_size) return;
  const std::size_t at = bytes.find(text);
  if (at == std::string::npos) return;
  const std::string path = "/proc/self/fd/" + std::to_string(file);
  const int writable = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  const char other = static_cast<char>(bytes[at + text.size()] ^ 1);
  static_cast<void>(!pwrite(writable, &other, 1, static_cast<off_t>(at + text.size())));
  close(writable);
}

}  // namespace

extern "C" int posix_fadvise(int file, off_t offset, off_t length, int advice) {
  using Function = int (*)(int, off_t, off_t, int);
  static const auto next = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "posix_fadvise"));
  const char* text = std::getenv("CHANGE_TEXT");
  if (advice == POSIX_FADV_DONTNEED && text != nullptr) change(file, text);
  return next(file, offset, length, advice);
}

extern "C" int posix_fadvise64(int file, off_t offset, off_t length, int advice) {
  return posix_fadvise(file, offset, length, advice);
}
