#pragma once

#include <optional>
#include <string>

namespace emulated {

// Answers an ioctl to a drive: 0 or more, or a negative errno.
long controlDevice(const std::string& directory, unsigned long request, void* argument);

}  // namespace emulated
