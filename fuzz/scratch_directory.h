// A directory in memory for targets whose code works on files by name; gone when the process ends.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace quillon::fuzz {

class ScratchDirectory {
 public:
  ScratchDirectory() {
    std::string name = "/dev/shm/quillon-fuzz-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) std::abort();
    path_ = name;
  }
  ~ScratchDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] std::filesystem::path operator/(std::string_view name) const {
    return path_ / name;
  }
  void empty() const {
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      std::filesystem::remove_all(entry);
    }
  }

 private:
  std::filesystem::path path_;
};

inline void writeFile(const std::filesystem::path& path, std::string_view bytes) {
  std::ofstream out(path, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out.flush()) std::abort();
}

inline std::string readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace quillon::fuzz
