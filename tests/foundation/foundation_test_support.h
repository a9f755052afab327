// What the tests of this folder share: text to compare and print, and a directory of the test's own
// as the working directory.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "foundation/base_item.h"
#include "support/temp_dir.h"
#include "support/text.h"

namespace quillon::test {

inline std::string ErrorOf(const CBaseItem& item) { return Plain(item.ErrorMessage()); }

// Starts each test in an empty directory and goes back afterwards.
class InTempDirectory : public ::testing::Test {
 protected:
  InTempDirectory() { std::filesystem::current_path(dir_.path()); }
  ~InTempDirectory() override { std::filesystem::current_path(before_); }

  [[nodiscard]] Text Wide(std::string_view name) const { return WideOf(dir_ / name); }
  [[nodiscard]] std::string Name(std::string_view name) const { return (dir_ / name).string(); }
  [[nodiscard]] bool Exists(std::string_view name) const {
    return std::filesystem::exists(std::filesystem::symlink_status(dir_ / name));
  }
  // Creates the directories on the way too.
  void Write(std::string_view name, std::string_view content) const {
    std::filesystem::create_directories((dir_ / name).parent_path());
    writeText(dir_ / name, content);
  }
  [[nodiscard]] std::string Read(std::string_view name) const {
    const auto bytes = readBytes(dir_ / name);
    return {bytes.begin(), bytes.end()};
  }

  std::filesystem::path before_ = std::filesystem::current_path();
  TempDir dir_;
};

}  // namespace quillon::test
