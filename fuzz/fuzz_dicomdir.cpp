// A DICOMDIR: read into records; what was read is written again and read back.
#include "dicom/dir_dicom_dir.h"
#include "quiet.h"
#include "scratch_directory.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  static const bool silenced = fuzz::quiet();
  (void)silenced;
  static const fuzz::ScratchDirectory scratch;
  const std::string root = scratch.path();
  fuzz::writeFile(scratch / "DICOMDIR", {reinterpret_cast<const char*>(data), size});

  DcDirDicomDir dir(root.c_str());
  DcDirRec* found = nullptr;
  static_cast<void>(dir.getRefFileObj("DICOM\\IMG00001", &found));
  if (dir.write() == kDcOk) {
    DcDirDicomDir again(root.c_str());
    (void)again.initialCode();
  }
  return 0;
}
