// A directory of a test's own, removed with everything in it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::test {

class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] std::filesystem::path operator/(std::string_view name) const {
    return path_ / name;
  }

 private:
  std::filesystem::path path_;
};

std::vector<std::uint8_t> readBytes(const std::filesystem::path& file);
void writeBytes(const std::filesystem::path& file, const std::vector<std::uint8_t>& bytes);
void writeText(const std::filesystem::path& file, std::string_view text);

// Where Debian's python3-pydicom keeps its sample files; empty when it is not installed.
std::filesystem::path pydicomData();

}  // namespace quillon::test
