// Where characters end in UTF-8 that may be ill-formed.
#pragma once

#include <cstddef>
#include <string_view>

namespace quillon::cli {

// The bytes of the well-formed sequence at the beginning of a text that is not empty; 0 when the
// first byte begins none.
std::size_t utf8SequenceBytes(std::string_view text);

}  // namespace quillon::cli
