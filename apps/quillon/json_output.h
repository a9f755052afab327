// JSON text written by hand: values that come from file names and file contents need not be UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace quillon::cli {

// With the quotation marks. Bytes that are not UTF-8 become U+FFFD.
std::string jsonString(std::string_view text);
// null for an empty one.
std::string jsonTextOrNull(std::string_view text);
std::string jsonBool(bool value);
// A member of an object with the comma behind it.
std::string jsonMember(const char* name, const std::string& json);

// The member "path", and where that is no UTF-8 "path_hex" with its bytes.
std::string jsonPathMembers(std::string_view path);

}  // namespace quillon::cli
