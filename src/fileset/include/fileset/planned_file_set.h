// What a creation will make of the objects that were added, as far as it is known beforehand.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "fileset/disc_room.h"
#include "foundation/file_util.h"

namespace quillon {

struct PlannedObject {
  Text source;  // the file that is moved
  Text fileId;  // its name in the set, below the root
  // Of the file as it was when it was read; none when another file stands in for it.
  std::optional<FileStamp> stamp;
  std::uint64_t sizeBytes = 0;
};

struct PlannedFileSet {
  std::size_t patients = 0;
  std::size_t studies = 0;
  std::size_t series = 0;
  std::uint64_t bytes = 0;             // of the objects
  std::uint64_t bytesOnDisk = 0;       // the same in whole blocks
  std::vector<PlannedObject> objects;  // in the order of moving
  Text label;
  std::vector<Text> labelRemarks;  // the lines that the label leaves out: dates that are none
  DiscRoom room;                   // on a disc
};

}  // namespace quillon
