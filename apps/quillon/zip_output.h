// A file set as a ZIP file, as DICOM puts media into one: the DICOMDIR first, and every file under
// its File ID.
#pragma once

#include <string>

#include "medium_file.h"
#include "platform/archive.h"

namespace quillon::cli {

// Of the directory, whose files are read while it is written. When the output cannot be written,
// the output says why.
Outcome writeZip(const std::string& directory, const platform::ArchiveOptions& options,
                 OutputFile& output, const MediumFile::Progress& progress);

}  // namespace quillon::cli
