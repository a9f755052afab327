// Reading the image that is to be written to a disc, block by block.
#pragma once

#include <cstdint>
#include <vector>

#include "recorders/recorder.h"

namespace quillon::platform {

// The objects of most studies are then read in one or two calls each; larger blocks gain nothing.
inline constexpr std::size_t kRunBlockBytes = std::size_t{1} << 18;

// The length of the block that starts at the position.
std::size_t blockAt(std::uint64_t position, std::uint64_t total);

// Reads one block as the request wants it: refuses when the request was cancelled, and a stream
// that ends early, which would leave a disc that is silently short.
DiscResult takeBlock(const WriteRequest& request, std::vector<char>& block, std::size_t wanted);

// Reads all of the image and writes nothing.
DiscResult testRun(const WriteRequest& request);

}  // namespace quillon::platform
