// Puts fuzzed bytes where the toolkit's file operations can open them: a file in memory.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace quillon::fuzz {

class ScratchFile {
 public:
  ScratchFile(const std::uint8_t* data, std::size_t size)
      : descriptor_(memfd_create("fuzz", MFD_CLOEXEC)) {
    if (descriptor_ < 0) std::abort();
    std::size_t written = 0;
    while (written < size) {
      const ssize_t n = ::write(descriptor_, data + written, size - written);
      if (n <= 0) std::abort();
      written += static_cast<std::size_t>(n);
    }
  }
  ~ScratchFile() { close(descriptor_); }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  [[nodiscard]] std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

}  // namespace quillon::fuzz
