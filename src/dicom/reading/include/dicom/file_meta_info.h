// The file meta information (group 0002) of a DICOM file.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "dicom/types.h"

namespace quillon {

// A new record, and one that was cleared, holds the toolkit's own implementation values; one that
// was read from a file only what the file says.
struct DcFileMetaInfo {
  DcFileMetaInfo();
  void clear();

  std::array<std::uint8_t, 128> preamble{};
  std::uint16_t version = 1;  // the two bytes of (0002,0001), first byte high
  DcUid sopClass = DcUid::None;
  std::string sopClassUid;  // as read, also when the dictionary does not know it
  std::string sopInstanceUid;
  DcUid transferSyntax = DcUid::None;
  std::string transferSyntaxUid;  // as read, also when the dictionary does not know it
  std::string implementationClassUid;
  std::string implementationVersionName;
  std::string sourceAeTitle;
  std::string privateCreatorUid;
  std::vector<std::uint8_t> privateInformation;
};

}  // namespace quillon
