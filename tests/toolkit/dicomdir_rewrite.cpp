// Reads the DICOMDIR in one directory and writes it again in another: dicomdir_rewrite FROM TO.
// Prints the number of records; fails when it was not read whole or not written.
#include <cstdio>

#include "dicom/dict.h"
#include "dicom/dir_dicom_dir.h"
#include "dicom/log.h"

namespace {

std::size_t count(const quillon::DcDirRec& record) {
  std::size_t total = 0;
  for (std::size_t i = 0; i < record.lowerCount(); ++i) total += 1 + count(*record.lower(i));
  return total;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace quillon;
  if (argc != 3) return 2;
  theDictionary();
  for (int level = 0; level < kDcLogLevels; ++level) {
    dcTheLog()->enable(static_cast<DcLogLevel>(level), false);
  }
  DcDirDicomDir directory(argv[1]);
  if (directory.initialCode() != kDcOk) {
    std::fprintf(stderr, "read: 0x%04x\n", directory.initialCode());
    return 1;
  }
  const DcCode code = directory.write(argv[2]);
  if (code != kDcOk) {
    std::fprintf(stderr, "write: 0x%04x\n", code);
    return 1;
  }
  std::printf("%zu\n", count(directory));
  return 0;
}
