// What the toolkit knows of each directory record type: its name in the file, whether a record of
// that type stands for a file, and which types may stand below it.
#pragma once

#include <cstdint>

#include "dicom/dir_rec.h"

namespace quillon {

// One bit per record type.
using DcDirTypeSet = std::uint64_t;

constexpr DcDirTypeSet dirTypeBit(DcDirRecType type) {
  return DcDirTypeSet{1} << static_cast<unsigned>(type);
}

struct DcDirTypeRow {
  DcDirRecType type;
  const char* name;      // value of Directory Record Type (0004,1430)
  bool refersToFile;     // the record stands for one file and is incomplete without it
  DcDirTypeSet allowed;  // types that may stand directly below
};

// The row of a type; the row of Unknown for values outside the enumeration.
const DcDirTypeRow& dirTypeRow(DcDirRecType type);

}  // namespace quillon
