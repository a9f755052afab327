// A bare data set in memory; the first byte chooses the transfer syntax and value checking.
#include <array>
#include <cstdlib>
#include <vector>

#include "dicom/elem_list.h"
#include "dicom/elem_sq.h"
#include "quiet.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  static const bool silenced = fuzz::quiet();
  (void)silenced;
  if (size < 1) return 0;
  constexpr std::array kSyntaxes{DcUid::ImplicitLittleEndian, DcUid::ExplicitLittleEndian,
                                 DcUid::ExplicitBigEndian, static_cast<DcUid>(176)};
  const DcUid syntax = kSyntaxes[data[0] % kSyntaxes.size()];
  static_cast<void>(dcSetValueChecking((data[0] & 0x80U) != 0));

  // A copy of exactly the right size, so that a read past the end is seen.
  const std::vector<std::uint8_t> bytes(data + 1, data + size);
  DcElemList list;
  static_cast<void>(list.parse(bytes.data(), static_cast<std::uint32_t>(bytes.size()), syntax));

  const std::uint64_t estimate = list.encodedLengthEstimate();
  std::vector<std::uint8_t> out(estimate);
  std::uint32_t written = 0;
  static_cast<void>(list.frame(out.data(), written, syntax));
  if (written > estimate) std::abort();

  // The stricter way in: a sequence built straight from a buffer.
  DcElemSq sequence(dcTag(0x0008, 0x1140), bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                    syntax);
  return 0;
}
