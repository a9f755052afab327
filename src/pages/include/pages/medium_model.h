// What the pages of a medium tell: its patients, studies and series in the order of the file set,
// by reference to the model, and what stands on the medium beside them.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "fileset/model/patient_list.h"

namespace quillon {

struct SeriesOnMedium {
  const CSeries* series = nullptr;
  std::vector<const CDicomObjectProperties*> objects;
  std::size_t firstObject = 0;  // its number in the file set, from 0
  Text headerPage;              // the file name of a page with the first object's header, if any
};

struct StudyOnMedium {
  const CStudy* study = nullptr;
  std::vector<SeriesOnMedium> series;
  Text page;  // its file name
};

struct PatientOnMedium {
  const CPatient* patient = nullptr;
  std::vector<StudyOnMedium> studies;
};

// Who hands the medium out, and what it was made by. Empty texts where nothing is known.
struct MediumOrigin {
  Text institution;
  Text address;
  Text phone;
  Text web;
  Text disclaimer;
  Text created;  // YYYYMMDD
};

// The names of the files, which every file system of a medium takes.
inline constexpr const OLECHAR* kPagesDirectory = OLESTR("IHE_PDI");
inline constexpr const OLECHAR* kIndexPageName = OLESTR("INDEX.HTM");
inline constexpr const OLECHAR* kReadmeName = OLESTR("README.TXT");
inline constexpr const OLECHAR* kPageStyleName = OLESTR("STYLE.CSS");
// STUDY001.HTM, STUD1000.HTM, HEAD0001.HTM: numbers count from 1, and of the word as much is left
// as eight characters have room for.
[[nodiscard]] Text StudyPageName(std::size_t number);
[[nodiscard]] Text HeaderPageName(std::size_t number);

struct MediumModel {
  std::vector<PatientOnMedium> patients;
  std::size_t objectsOfNoPatient = 0;
  std::uint64_t bytes = 0;  // of all objects
  MediumOrigin origin;
  // Of several media that hold one set of objects: which this is, from 1, and how many there are.
  unsigned number = 1;
  unsigned count = 1;
  // The name of an object in the file set, by its number from 0.
  std::function<Text(std::size_t)> fileIdOf;

  Text readme = kReadmeName;
  // Below the root; empty where there is none.
  Text objectDirectory;
  Text otherContentDirectory;
  // The page of the set lies in the directory of the others, because the root has one of another
  // origin.
  bool indexIsBelow = false;
};

struct MediumTotals {
  std::size_t patients = 0;
  std::size_t studies = 0;
  std::size_t series = 0;
  std::size_t objects = 0;
};
[[nodiscard]] MediumTotals TotalsOf(const MediumModel& medium);
[[nodiscard]] MediumTotals TotalsOf(const PatientOnMedium& patient);
[[nodiscard]] MediumTotals TotalsOf(const StudyOnMedium& study);

}  // namespace quillon
