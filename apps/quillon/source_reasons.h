// Why a file that the user names cannot be read, in words that go on after "PATH: ".
#pragma once

#include <optional>
#include <string>

namespace quillon::cli {

// The operating system's reason when a file cannot be opened and read.
std::optional<std::string> reasonNotToRead(const std::string& path);

}  // namespace quillon::cli
