// The file meta information, read from a window on the file so that what follows it is read from
// the same bytes.
#pragma once

#include <cstdint>
#include <vector>

#include "dicom/file_meta_info.h"
#include "dicom/types.h"
#include "parse_window.h"

namespace quillon {

inline constexpr std::uint64_t kMetaGroupAt = 132;  // behind the preamble and "DICM"

struct DataSetPlace {
  bool hasMagic = false;  // "DICM" behind the preamble
  std::uint64_t offset = 0;
  // What the data set is parsed in: explicit little endian for a syntax nobody knows.
  DcUid syntax = DcUid::ImplicitLittleEndian;
  std::vector<DcTag> metaTags;  // of the elements of group 0002
};

// The codes of dirReadFileMetaInfo.
DcCode readMetaInfo(FileWindow& window, DcFileMetaInfo& metaInfo, DataSetPlace& place);

// The codes after which a file is read on; without "DICM" it is a bare data set.
[[nodiscard]] inline bool isReadOnAfter(DcCode metaCode) {
  return metaCode == kDcOk || metaCode == kDcNotDicom;
}

}  // namespace quillon
