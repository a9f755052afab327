// The UIDs that the dictionary knows from the start. The order is that of the dictionary's slots.
#pragma once

#include <array>
#include <cstddef>

#include "dicom/types.h"

namespace quillon {

struct UidRow {
  unsigned id;
  DcUidKind kind;
  const char* uid;
  const char* description;
};

inline constexpr std::size_t kBuiltInUids = 209;
extern const std::array<UidRow, kBuiltInUids> kUidTable;

}  // namespace quillon
