// The directory records that objects have today: the type by the SOP class, and the keys of each
// type. What older media have stands in record_keys.h.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "dicom/dir_rec.h"

namespace quillon {

// What a record needs of a key.
enum class KeyNeed : std::uint8_t {
  Value,    // a value: without it the record is incomplete
  Place,    // the element, which may be empty
  IfThere,  // what the object has
};

struct RecordKey {
  DcTag tag;
  KeyNeed need;
  DcVr vr = DcVr::IM;  // the dictionary's
};

struct RecordRow {
  DcDirRecType type;
  std::span<const RecordKey> keys;
  std::span<const char* const> sopClasses;  // behind the root of the standard's, or whole
};

// Of an object. A class that nobody knows has the row of PRIVATE records.
const RecordRow& RecordRowOf(std::string_view sopClassUid);
// Of a type that objects have, or of PATIENT, STUDY and SERIES.
const RecordRow& RecordRowOf(DcDirRecType type);
// The keys that any row has; some more than once.
std::vector<DcTag> AllRecordKeys();
// Objects of the type belong to no patient: their records stand at the top.
bool IsTopLevel(DcDirRecType type);

}  // namespace quillon
