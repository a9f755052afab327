// A file set as a ZIP file, as DICOM puts media into one: the DICOMDIR first, and every file under
// its File ID.
#pragma once

#include <string>

#include "medium_output.h"
#include "platform/archive.h"
#include "set_sums.h"

namespace quillon::cli {

// Of the directory, whose files are read while it is written. sums: those of the files, which go
// with them; null for none. When the output cannot be written, the output says why.
Outcome writeZip(const std::string& directory, const platform::ArchiveOptions& options,
                 SetSums* sums, OutputFile& output, const MediumOutput::Progress& progress);

}  // namespace quillon::cli
