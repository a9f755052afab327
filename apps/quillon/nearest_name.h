// What the user may have meant by a name that there is not.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon::cli {

// The one of the names that is least unlike it; upper and lower case are the same.
std::string nearestName(std::string_view name, const std::vector<std::string>& names);
// "; did you mean NAME?", or "." where even the nearest is more unlike than like.
std::string didYouMean(std::string_view name, const std::vector<std::string>& names);

}  // namespace quillon::cli
