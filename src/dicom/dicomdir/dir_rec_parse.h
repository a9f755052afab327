// Where one directory record stands in a DICOMDIR in memory.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "dicom/elem_list.h"
#include "dicom/types.h"

namespace quillon {

// An item: its tag (FFFE,E000) and 4-byte length stand in front of its value; endAt is behind its
// delimitation item when its length is undefined.
struct DcDirItemExtent {
  std::uint32_t valueAt = 0;
  std::uint32_t valueBytes = 0;
  std::uint32_t endAt = 0;
};

// Keys and header elements are kept as they stand in the file, whatever the checking switch says:
// they are written again, and what another system formed oddly must not be lost on the way. Values
// are not checked while one of these lives.
class DcDirUnchecked {
 public:
  DcDirUnchecked() : wasOn_(dcValueChecking()) { static_cast<void>(dcSetValueChecking(false)); }
  ~DcDirUnchecked() { static_cast<void>(dcSetValueChecking(wasOn_)); }
  DcDirUnchecked(const DcDirUnchecked&) = delete;
  DcDirUnchecked& operator=(const DcDirUnchecked&) = delete;

 private:
  bool wasOn_;
};

// The extent of the item at an offset; a code and a log line when there is none inside the file.
DcCode dirMeasureItem(const std::uint8_t* file, std::uint32_t fileBytes, std::uint32_t offsetInFile,
                      DcDirItemExtent& extent);

// First value of a text element, with a zero byte behind it; none when it is absent, empty or not
// text.
std::optional<std::string_view> dirTextOf(const DcElemList& list, DcTag tag);

}  // namespace quillon
