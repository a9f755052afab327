// The image of a disc, as the disc-mastering service makes it, into a file.
#pragma once

#include <string>

#include "medium_file.h"

namespace quillon::cli {

// Of the directory, whose files are read while it is written. When the output cannot be written,
// the output says why.
Outcome writeImage(const std::string& directory, const std::string& volume, OutputFile& output,
                   const MediumFile::Progress& progress);

}  // namespace quillon::cli
