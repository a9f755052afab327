// How much a stylesheet and an HTTP server may ask of this process. A test sets its own
// (platform/xml_testing.h).
#pragma once

#include <cstddef>
#include <cstdint>

namespace quillon::platform {

// One transform. A header of some ten thousand elements needs about a hundredth of each.
struct TransformLimits {
  std::int64_t memoryBytes = std::int64_t{1} << 30;
  long milliseconds = 60'000;
  // Steps of expressions, and again of instructions: bounds also what neither allocates nor ends.
  unsigned long steps = 2'000'000'000;
};

struct HttpLimits {
  long connectMilliseconds = 30'000;
  long stallSeconds = 60;  // without a byte coming
  long totalSeconds = 600;
  std::size_t bodyBytes = std::size_t{64} << 20;
};

// Those that hold now.
TransformLimits& transformLimits();
HttpLimits& httpLimits();

}  // namespace quillon::platform
