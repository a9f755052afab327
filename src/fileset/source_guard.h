// Keeps the files that are to be moved from being overwritten by the file set before their turn.
#pragma once

#include "fileset/model/patient_list.h"
#include "foundation/base_item.h"
#include "foundation/file_util.h"

namespace quillon {

// A file set may be made again where one was, from files that lie in it. False, with the sentence
// left in errors, when an added file lies in the object directory or is the DICOMDIR, by whatever
// name: a link, another spelling, a second name of the same file.
bool CheckSourcesOutside(const CPatientList& patients, const Text& objectDirectory,
                         const Text& dicomDir, CFileUtil& files, CBaseItem& errors);

}  // namespace quillon
