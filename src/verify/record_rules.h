// What holds for each directory record by itself.
#pragma once

#include <string_view>
#include <vector>

#include "dicom/dir_rec.h"
#include "findings.h"
#include "raw_elements.h"

namespace quillon {

// The keys that its type has, its character set, its UIDs and its flag.
void CheckRecord(const RawElements& elements, DcDirRecType type, const FaultPlace& place,
                 Findings& findings);

// A Referenced File ID as a path of the medium, its parts joined with backslashes. Empty when it
// leads outside, which is told; other faults of it are told too.
Text CheckFileId(std::string_view fileId, const FaultPlace& place, Findings& findings);

}  // namespace quillon
