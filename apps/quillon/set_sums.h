// The sums of a file set's files, for whoever gets it: sha256sum -c checks them.
#pragma once

#include <string>

#include "medium_file.h"
#include "outcome.h"

namespace quillon::cli {

inline constexpr const char* kSumsName = "SHA256SUMS";

// Writes the file of that name in the root of a file set, in the place of an old one; a line for
// each other file, in ascending order. On failure nothing has changed.
Outcome writeSums(const std::string& root, const MediumFile::Progress& progress);

}  // namespace quillon::cli
