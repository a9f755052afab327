#include "support/temp_dir.h"

#include <cstdlib>
#include <fstream>
#include <random>
#include <stdexcept>
#include <system_error>

namespace quillon::test {

namespace fs = std::filesystem;

TempDir::TempDir() {
  std::random_device random;
  do {
    path_ = fs::temp_directory_path() / ("quillon-test-" + std::to_string(random()));
  } while (!fs::create_directory(path_));
}

TempDir::~TempDir() {
  // A test may have taken the write permission away from a directory; it is given back first,
  // because what is in such a directory cannot be removed.
  std::error_code error;
  for (fs::recursive_directory_iterator it(path_, error), end; !error && it != end;
       it.increment(error)) {
    std::error_code ignored;
    if (it->is_directory(ignored) && !it->is_symlink(ignored)) {
      fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }
  }
  fs::remove_all(path_, error);
}

std::vector<std::uint8_t> readBytes(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::runtime_error("cannot open " + file.string());
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void writeBytes(const fs::path& file, const std::vector<std::uint8_t>& bytes) {
  writeText(file, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

void writeText(const fs::path& file, std::string_view text) {
  if (file.has_parent_path()) fs::create_directories(file.parent_path());
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  out.close();
  if (!out) throw std::runtime_error("cannot write " + file.string());
}

fs::path pydicomData() {
  const fs::path data = "/usr/lib/python3/dist-packages/pydicom/data";
  std::error_code error;
  return fs::is_directory(data / "test_files", error) ? data : fs::path();
}

}  // namespace quillon::test
