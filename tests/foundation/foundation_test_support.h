// What the tests of this folder share: text to compare and print, and a directory of the test's own
// as the working directory.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "foundation/base_item.h"
#include "foundation/file_util.h"
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

  // Sentences about a file of this name.
  [[nodiscard]] std::string CannotOpen(std::string_view name) const {
    return "Cannot open the file " + Name(name) + ".";
  }
  [[nodiscard]] std::string CannotBeFound(std::string_view name) const {
    return "The path " + Name(name) + " cannot be found.";
  }
  [[nodiscard]] std::string IsNoFile(std::string_view name) const {
    return "The path " + Name(name) + " does not refer to a valid file.";
  }

  std::filesystem::path before_ = std::filesystem::current_path();
  TempDir dir_;
};

// Starts in the directory "work" below, which each test leaves as the working directory.
class InWorkDirectory : public InTempDirectory {
 protected:
  InWorkDirectory() {
    std::filesystem::create_directory(dir_ / "work");
    std::filesystem::current_path(dir_ / "work");
  }
  ~InWorkDirectory() override {
    EXPECT_EQ(std::filesystem::current_path(), dir_ / "work")
        << "the working directory was not restored";
  }

  // Creates the tree of the path, which is the one of this name in the test's directory, and
  // deletes it with all that is in it.
  void ExpectCreatedAndDeleted(const Text& path, const std::string& tree) {
    SCOPED_TRACE(Plain(path));
    EXPECT_TRUE(files_.CreateDirectoryTree(path)) << ErrorOf(files_);
    EXPECT_TRUE(std::filesystem::is_directory(dir_ / tree));
    EXPECT_EQ(std::filesystem::current_path(), dir_ / "work");
    Write(tree + "/IM1", "x");
    Write(tree + "/sub/deep/IM2", "x");
    EXPECT_TRUE(files_.DeleteDirectoryTree(path, /*recurse=*/true)) << ErrorOf(files_);
    EXPECT_FALSE(Exists(tree));
    EXPECT_TRUE(std::filesystem::exists((dir_ / tree).parent_path()));
    EXPECT_EQ(std::filesystem::current_path(), dir_ / "work");
    EXPECT_EQ(ErrorOf(files_), "");
  }

  CFileUtil files_;
};

}  // namespace quillon::test
