// The files that the records of a DICOMDIR name.
#pragma once

#include <vector>

#include "medium/medium_source.h"

namespace quillon {

struct ReferencedFile {
  Text path;  // as MediumEntry has it; of a file that is not there, as the record has it
  bool isThere = false;
};

// In the order of the records, each once. What is wrong with records is passed over: VerifyMedium
// tells it. False, with a sentence in errors, when the medium cannot be read or has no DICOMDIR
// that can.
[[nodiscard]] bool FindReferencedFiles(MediumSource& medium, std::vector<ReferencedFile>& files,
                                       CBaseItem& errors);

}  // namespace quillon
