// The sums of a file set's files, for whoever gets it: sha256sum -c checks them.
#pragma once

#include <string>
#include <string_view>

#include "fileset/root_names.h"
#include "foundation/file_util.h"

namespace quillon {

// A line of the file. name: below the root, with slashes.
std::string SumLine(std::string_view sum, std::string_view name);

// Writes the sums of all files below the root, but for that file itself, into the file of that name
// in the root, in the place of an old one. Where the system cannot compute them it writes none, and
// takes the old one away. False, with a sentence left in errors.
[[nodiscard]] bool WriteSetSums(TextView rootDirectory, CFileUtil& files, CBaseItem& errors);

}  // namespace quillon
