// JSON text written by hand: values that come from file names and file contents need not be UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace quillon::cli {

// With the quotation marks. Bytes that are not UTF-8 become U+FFFD.
std::string jsonString(std::string_view text);

}  // namespace quillon::cli
