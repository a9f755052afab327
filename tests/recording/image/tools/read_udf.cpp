// Copies what libudfread finds in an image to a directory that does not exist yet, and prints the
// volume's name.
//
//   read_udf IMAGE TARGET
//   read_udf --places IMAGE
//
// The second form prints the first sector, the size and the name of each file of the root, and
// fails when one of them does not lie in one run of sectors.
#include <fcntl.h>
#include <sys/stat.h>
#include <udfread/udfread.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

[[noreturn]] void fail(const std::string& what) {
  std::fprintf(stderr, "read_udf: %s\n", what.c_str());
  std::exit(1);
}

void copyFile(UDFDIR* directory, const char* name, const std::string& target) {
  UDFFILE* file = udfread_file_openat(directory, name);
  const int out = ::open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (file == nullptr || out < 0) fail("cannot open " + target);
  std::vector<char> piece(1U << 20);
  off_t position = 0;
  for (;;) {
    const ssize_t got = udfread_file_read(file, piece.data(), piece.size());
    if (got < 0) fail("cannot read " + target);
    if (got == 0) break;
    if (::pwrite(out, piece.data(), static_cast<std::size_t>(got), position) != got) {
      fail("cannot write " + target);
    }
    position += got;
  }
  if (position != udfread_file_size(file)) fail("size of " + target);
  if (::close(out) != 0) fail("cannot write " + target);
  udfread_file_close(file);
}

void copyDirectory(UDFDIR* directory, const std::string& target) {
  if (directory == nullptr) fail("cannot open the directory for " + target);
  if (::mkdir(target.c_str(), 0777) != 0) fail("cannot make " + target);
  udfread_dirent entry{};
  while (udfread_readdir(directory, &entry) != nullptr) {
    const std::string name = entry.d_name;
    if (name == "." || name == "..") continue;
    if (entry.d_type == UDF_DT_DIR) {
      copyDirectory(udfread_opendir_at(directory, entry.d_name), target + '/' + name);
    } else {
      copyFile(directory, entry.d_name, target + '/' + name);
    }
  }
  udfread_closedir(directory);
}

void printPlaces(UDFDIR* root) {
  if (root == nullptr) fail("cannot open the root");
  udfread_dirent entry{};
  while (udfread_readdir(root, &entry) != nullptr) {
    if (entry.d_type != UDF_DT_REG) continue;
    UDFFILE* file = udfread_file_openat(root, entry.d_name);
    if (file == nullptr) fail(std::string("cannot open ") + entry.d_name);
    const std::int64_t size = udfread_file_size(file);
    const std::uint32_t first = udfread_file_lba(file, 0);
    for (std::uint32_t block = 0; block * std::int64_t{2048} < size; ++block) {
      if (udfread_file_lba(file, block) != first + block) fail("more than one run of sectors");
    }
    std::printf("%u %lld %s\n", first, static_cast<long long>(size), entry.d_name);
    udfread_file_close(file);
  }
  udfread_closedir(root);
}

}  // namespace

int main(int count, char** values) {
  if (count != 3) fail("usage: read_udf IMAGE TARGET or read_udf --places IMAGE");
  const bool printsPlaces = std::string(values[1]) == "--places";
  udfread* volume = udfread_init();
  if (volume == nullptr || udfread_open(volume, values[printsPlaces ? 2 : 1]) < 0) {
    fail("cannot open the image");
  }
  if (printsPlaces) {
    printPlaces(udfread_opendir(volume, "/"));
  } else {
    std::printf("%s\n", udfread_get_volume_id(volume));
    copyDirectory(udfread_opendir(volume, "/"), values[2]);
  }
  udfread_close(volume);
  return 0;
}
