// Whose images lie on a medium: what the headers of its files say, patient by patient. No DICOMDIR
// is asked, so that a directory of files does as well.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "medium/medium_source.h"

namespace quillon {

// Texts in the character set that the first object of each declares; empty where it has none.
struct SeriesContents {
  Text uid;
  Text modality;
  Text number;
  Text description;
  std::size_t objects = 0;
  std::uint64_t bytes = 0;
};

struct StudyContents {
  Text uid;
  Text date;  // as the file has it: YYYYMMDD
  Text id;
  Text accessionNumber;
  Text description;
  std::vector<SeriesContents> series;  // by number
};

// Objects of one patient have the name and the ID alike.
struct PatientContents {
  Text name;
  Text id;
  Text birthDate;
  Text sex;
  std::vector<StudyContents> studies;  // by date
};

struct MediumContents {
  std::vector<PatientContents> patients;  // by name and ID
  std::size_t studies = 0;
  std::size_t series = 0;
  std::size_t objects = 0;  // with those that belong to no study
  std::uint64_t bytes = 0;  // of the objects
  std::size_t withoutStudy = 0;
  // Marked as DICOM, but not to be read.
  std::vector<Text> unreadable;
  std::size_t otherFiles = 0;  // DICOMDIR, label and what else there is
};

// How many entries of how many are done.
using ListingProgress = std::function<void(std::size_t done, std::size_t total)>;

// False, with a sentence in errors, when the medium's directories cannot be read. A file that
// cannot be opened is unreadable. progress may be empty.
[[nodiscard]] bool ListContents(MediumSource& medium, const ListingProgress& progress,
                                MediumContents& contents, CBaseItem& errors);

}  // namespace quillon
