// A DICOMDIR: read into records; what was read is written again and read back.
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "dicom/dir_dicom_dir.h"
#include "quiet.h"

namespace {

std::string scratchDirectory() {
  std::string name = "/dev/shm/quillon-fuzz-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) std::abort();
  return name;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  static const bool silenced = fuzz::quiet();
  (void)silenced;
  static const std::string root = scratchDirectory();
  const std::string path = root + "/DICOMDIR";
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) std::abort();
  if (size > 0 && std::fwrite(data, 1, size, file) != size) std::abort();
  std::fclose(file);

  DcDirDicomDir dir(root.c_str());
  DcDirRec* found = nullptr;
  static_cast<void>(dir.getRefFileObj("DICOM\\IMG00001", &found));
  if (dir.write() == kDcOk) {
    DcDirDicomDir again(root.c_str());
    (void)again.initialCode();
  }
  ::unlink(path.c_str());
  return 0;
}
