// A DICOM file: read up to its pixel data, read whole, encoded again in the three syntaxes.
#include <vector>

#include "dicom/read_file.h"
#include "quiet.h"
#include "scratch_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  static const bool silenced = fuzz::quiet();
  (void)silenced;
  const fuzz::ScratchFile file(data, size);
  const std::string path = file.path();

  // The first bit of the input's size chooses whether values are checked.
  static_cast<void>(dcSetValueChecking((size & 1U) != 0));
  DcFileMetaInfo meta;
  DcElemList header;
  std::uint64_t pixelOffset = 0;
  std::uint32_t pixelLength = 0;
  static_cast<void>(dirReadFile(path.c_str(), meta, header, &pixelOffset, &pixelLength));

  DcElemList whole;
  if (dirReadFile(path.c_str(), meta, whole) != kDcOk) return 0;
  for (const DcUid syntax :
       {DcUid::ImplicitLittleEndian, DcUid::ExplicitLittleEndian, DcUid::ExplicitBigEndian}) {
    const std::uint64_t estimate = whole.encodedLengthEstimate();
    std::vector<std::uint8_t> out(estimate);
    std::uint32_t written = 0;
    const DcCode code = whole.frame(out.data(), written, syntax);
    if (written > estimate) std::abort();  // the estimate is never below the encoded size
    if (code != kDcOk) continue;
    DcElemList again;
    static_cast<void>(again.parse(out.data(), written, syntax));
  }
  return 0;
}
