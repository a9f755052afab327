// A tag path, up to the first zero byte, and the data set that it is looked up in.
#include <algorithm>
#include <array>
#include <vector>

#include "dicomobjects/dicom_util.h"
#include "quiet.h"
#include "tag_path.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  static const bool silenced = fuzz::quiet();
  (void)silenced;
  const std::uint8_t* const end = data + size;
  const std::uint8_t* const zero = std::find(data, end, 0);
  const std::string path(data, zero);
  const std::vector<std::uint8_t> bytes(zero == end ? end : zero + 1, end);

  TagPathCursor cursor(path);
  TagPathStep step;
  std::size_t steps = 0;
  while (cursor.Next(step)) {
    if (++steps > path.size()) std::abort();  // every step takes something of the path
  }

  DcElemList list;
  static_cast<void>(list.parse(bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                               DcUid::ExplicitLittleEndian));
  CDicomUtil file(list);
  DicomValue value;
  static_cast<void>(file.GetValue(path, value, /*asArray=*/false));
  static_cast<void>(file.GetValue(path, value, /*asArray=*/true));
  return 0;
}
