// Numbers as people read them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quillon::cli {

// "1 study", "2 studies".
std::string countText(std::uint64_t count, std::string_view one, std::string_view many);
// "512 B", "1.4 GB".
std::string sizeText(std::uint64_t bytes);

}  // namespace quillon::cli
