// Decides whether a root directory may be used, and whether it may be wiped.
#pragma once

#include <string>
#include <vector>

#include "outcome.h"

namespace quillon::cli {

enum class RootEntry { Missing, Empty, NotEmpty, NotDirectory, Unreadable };
RootEntry rootEntry(const std::string& root);

// Both with symbolic links resolved. A path lies within itself.
[[nodiscard]] bool liesWithin(const std::string& path, const std::string& directory);

// Fails when wiping the root would take more than an old file set with it. All paths are absolute.
Outcome mayWipe(const std::string& root, const std::vector<std::string>& sources);

}  // namespace quillon::cli
