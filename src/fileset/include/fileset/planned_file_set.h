// What a creation will make of the objects that were added, as far as it is known beforehand.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "dicom/types.h"
#include "fileset/disc_room.h"
#include "foundation/shared_text.h"

namespace quillon {

struct DicomFileFacts;

struct PlannedObject {
  // Its name in the set, below the root.
  [[nodiscard]] Text FileId() const;

  SharedText source;     // the file that is moved
  SharedText directory;  // of its File ID, with a separator at its end unless it is empty
  std::uint32_t number;  // in the set, from 1: its name is made of it
  // What reading the file told; none when another file stands in for it.
  std::shared_ptr<const DicomFileFacts> facts;
  std::uint64_t sizeBytes = 0;
};

// The objects of one series stand one after the other in the plan.
struct PlannedSeries {
  Text studyUid;
  Text seriesUid;
  Text studyDate;               // as the object has it
  std::size_t firstObject = 0;  // the last of them stands before the next series' first
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
  // Those with objects; one without UIDs holds the objects of no patient.
  std::vector<PlannedSeries> seriesOfObjects;
  Text label;
  std::vector<Text> labelRemarks;  // the lines that the label leaves out: dates that are none
  std::vector<Text> pageRemarks;   // sentences about pages that are not as one would expect
  DiscRoom room;                   // on a disc
  Text contentGap;  // why configured content is left out that should be there; else empty
  // Whose it is: each once, in the order of the records, without empty ones.
  std::vector<Text> patientIds;
  std::vector<Text> studyUids;
  // With currentPractice only.
  std::vector<MissingKey> incomplete;
  std::vector<RepeatedPatient> repeatedPatients;
};

}  // namespace quillon
