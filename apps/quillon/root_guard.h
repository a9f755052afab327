// Decides whether a root directory may be used, and whether it may be wiped.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillon::cli {

enum class RootEntry { Missing, Empty, NotEmpty, NotDirectory, Unreadable };
RootEntry rootEntry(const std::string& root);

// Both with symbolic links resolved. A path lies within itself.
bool liesWithin(const std::string& path, const std::string& directory);

// A sentence why wiping the root would take more than an old file set with it; none when it may be
// wiped. All paths are absolute.
std::optional<std::string> reasonNotToWipe(const std::string& root,
                                           const std::vector<std::string>& sources);

}  // namespace quillon::cli
