// The image of a disc, as the disc-mastering service makes it, into a file.
#pragma once

#include <string>

#include "image/late_file.h"
#include "medium_output.h"
#include "set_sums.h"

namespace quillon::cli {

// Of the directory, whose files are read while it is written. sums: those of the files, which go
// with them; null for none. When the output cannot be written, the output says why.
Outcome writeImage(const std::string& directory, const std::string& volume, SetSums* sums,
                   OutputFile& output, const MediumOutput::Progress& progress);

// The sums as the file of an image of that directory that is known last. They must be there as long
// as such images are read.
platform::LateFile lateFileOf(SetSums& sums, const std::string& directory);

}  // namespace quillon::cli
