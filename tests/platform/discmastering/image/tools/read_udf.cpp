// Copies what libudfread finds in an image to a directory that does not exist yet, and prints the
// volume's name.
//
//   read_udf IMAGE TARGET
//
// Pieces that are all zeros become holes.
#include <fcntl.h>
#include <sys/stat.h>
#include <udfread/udfread.h>
#include <unistd.h>

#include <algorithm>
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
    const bool hole =
        std::all_of(piece.begin(), piece.begin() + got, [](char c) { return c == 0; });
    if (!hole && ::pwrite(out, piece.data(), static_cast<std::size_t>(got), position) != got) {
      fail("cannot write " + target);
    }
    position += got;
  }
  if (position != udfread_file_size(file)) fail("size of " + target);
  if (::ftruncate(out, position) != 0 || ::close(out) != 0) fail("cannot write " + target);
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

}  // namespace

int main(int count, char** values) {
  if (count != 3) fail("usage: read_udf IMAGE TARGET");
  udfread* volume = udfread_init();
  if (volume == nullptr || udfread_open(volume, values[1]) < 0) fail("cannot open the image");
  std::printf("%s\n", udfread_get_volume_id(volume));
  copyDirectory(udfread_opendir(volume, "/"), values[2]);
  udfread_close(volume);
  return 0;
}
