// What a creation will make of the objects that were added, as far as it is known beforehand.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "dicom/types.h"
#include "fileset/disc_room.h"
#include "foundation/file_util.h"

namespace quillon {

struct PlannedObject {
  Text source;  // the file that is moved
  Text fileId;  // its name in the set, below the root
  // The file as it was when it was read; none when another file stands in for it.
  std::optional<FileFacts> facts;
  std::uint64_t sizeBytes = 0;
};

// A required key of a directory record that the object which the record is made of has no value
// for.
struct MissingKey {
  Text source;  // the object's file
  DcTag tag;
  bool isMadeUp;  // the record has a value all the same
};

// Patients of the set that may be one: the same ID under several names, or the same name under
// several IDs.
struct RepeatedPatient {
  bool isSameId;
  Text same;
  std::vector<Text> others;
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
  // With currentPractice only.
  std::vector<MissingKey> incomplete;
  std::vector<RepeatedPatient> repeatedPatients;
};

}  // namespace quillon
