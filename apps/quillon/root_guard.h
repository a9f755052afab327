// Decides whether a root directory may be used, and whether it may be wiped.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillon::cli {

enum class RootState { Missing, Empty, NotEmpty, NotDirectory, Unreadable };
RootState rootState(const std::string& root);

// True for a directory that holds objects under the names of a file set, but no DICOMDIR: what is
// left of a creation that was cut off, perhaps the only copies of files that were moved.
bool holdsUnfinishedFileSet(const std::string& root);

// Both with symbolic links resolved. A path lies within itself.
bool liesWithin(const std::string& path, const std::string& directory);

// A sentence why wiping the root would take more than an old file set with it; none when it may be
// wiped. All paths are absolute.
std::optional<std::string> reasonNotToWipe(const std::string& root,
                                           const std::vector<std::string>& sources);

}  // namespace quillon::cli
