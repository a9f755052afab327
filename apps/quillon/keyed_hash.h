// HMAC-SHA-256 (RFC 2104): who does not have the key cannot try values until one fits.
#pragma once

#include <string>
#include <string_view>

namespace quillon::cli {

// 64 lower-case hexadecimal digits; empty where the system has no SHA-256.
std::string keyedHash(std::string_view key, std::string_view text);

}  // namespace quillon::cli
