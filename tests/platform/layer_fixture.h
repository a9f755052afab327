// A temporary directory with the layer's drives and registry in it; the process's working directory
// and environment are as before at the end.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/win32.h"
#include "support/temp_dir.h"

namespace quillon::test {

class ScopedEnvironment {
 public:
  ScopedEnvironment(const char* name, const std::string& value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    ::setenv(name, value.c_str(), 1);
  }
  ~ScopedEnvironment() {
    if (old_) {
      ::setenv(name_.c_str(), old_->c_str(), 1);
    } else {
      ::unsetenv(name_.c_str());
    }
  }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
  std::string name_;
  std::optional<std::string> old_;
};

class LayerTest : public ::testing::Test {
 protected:
  LayerTest()
      : before_(std::filesystem::current_path()),
        drives_("QUILLON_DRIVES", (dir_ / "drives").string()),
        registry_("QUILLON_REGISTRY", (dir_ / "registry.reg").string()) {
    std::filesystem::create_directory(dir_ / "work");
    std::filesystem::current_path(dir_ / "work");
  }
  ~LayerTest() override { std::filesystem::current_path(before_); }

  // The native name of something in the temporary directory, as the product writes it.
  [[nodiscard]] std::u16string wide(std::string_view name) const {
    return (dir_ / name).u16string();
  }

  static std::u16string currentDirectory() {
    std::u16string text(GetCurrentDirectoryW(0, nullptr), u'\0');
    text.resize(GetCurrentDirectoryW(static_cast<DWORD>(text.size()), text.data()));
    return text;
  }

  TempDir dir_;

 private:
  std::filesystem::path before_;
  ScopedEnvironment drives_;
  ScopedEnvironment registry_;
};

// For readable failures: GoogleTest prints a u16string as numbers. ASCII only.
inline std::string narrow(std::u16string_view text) { return {text.begin(), text.end()}; }

}  // namespace quillon::test
