// The field reader: requests in group 0002, at the top level, inside sequences, and Pixel Data.
#include <cstdlib>

#include "dicom/parse_fields.h"
#include "quiet.h"
#include "scratch_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  static const bool silenced = fuzz::quiet();
  (void)silenced;
  const fuzz::ScratchFile file(data, size);
  for (const bool readPixelLength : {false, true}) {
    std::array<DcFieldRequest, 8> table;
    table[0].tag = dcTag(0x0002, 0x0010);
    table[1].tag = dcTag(0x0008, 0x0018);
    table[2].tag = dcTag(0x0008, 0x1155);
    table[3].tag = dcTag(0x0010, 0x0010);
    table[4].tag = dcTag(0x0020, 0x000D);
    table[5].tag = dcTag(0x0040, 0xA730);
    table[6].tag = dcTag(0x7FE0, 0x0010);
    static_cast<void>(libParseFields(file.path().c_str(), table.data(), readPixelLength));
    for (const DcFieldRequest& request : table) {
      if (request.status == DcFieldStatus::Found && request.lengthBytes > kFieldValueBytes &&
          request.lengthBytes != kUndefinedLength && request.tag != dcTag(0x7FE0, 0x0010)) {
        std::abort();  // a value longer than the buffer was called whole
      }
    }
  }
  return 0;
}
