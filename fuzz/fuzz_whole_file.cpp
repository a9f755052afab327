// A DICOM file: read up to its pixel data, of that some elements alone, read whole, encoded again
// in the three syntaxes.
#include <vector>

#include "dicom/read_file.h"
#include "quiet.h"
#include "scratch_file.h"

namespace {

// Some that most files have, at both ends of the data set, and sequences with others inside.
const quillon::DcTagSet& kept() {
  static const quillon::DcTagSet tags({0x00080005, 0x00080016, 0x00080018, 0x00081140, 0x00100010,
                                       0x0020000D, 0x00280010, 0x0040A730, 0x00540016});
  return tags;
}

// Stepping over elements finds what building them finds, and those that are kept are the same.
void compareWithKept(const std::string& path, quillon::DcCode code, std::uint64_t pixelOffset,
                     quillon::DcElemList& all) {
  using namespace quillon;
  DcFileMetaInfo meta;
  DcElemList some;
  std::uint64_t offset = 0;
  if (dirReadFile(path.c_str(), meta, some, &offset, nullptr, nullptr, &kept()) != code) {
    std::abort();
  }
  if (offset != pixelOffset) std::abort();
  DcElemList expected;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (kept().contains(all.at(i)->tag())) expected.add(all.at(i)->copy());
  }
  if (some.size() != expected.size()) std::abort();
  std::vector<std::uint8_t> bytes[2];
  std::uint32_t written[2] = {0, 0};
  DcCode framed[2];
  DcElemList* lists[2] = {&some, &expected};
  for (int i = 0; i < 2; ++i) {
    bytes[i].resize(lists[i]->encodedLengthEstimate());
    framed[i] = lists[i]->frame(bytes[i].data(), written[i], DcUid::ExplicitLittleEndian);
    bytes[i].resize(written[i]);
  }
  if (framed[0] != framed[1] || (framed[0] == kDcOk && bytes[0] != bytes[1])) std::abort();
}

}  // namespace

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
  const DcCode read = dirReadFile(path.c_str(), meta, header, &pixelOffset, &pixelLength);
  compareWithKept(path, read, pixelOffset, header);

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
