// Linux only, for tests: limits of the test's own for stylesheets and HTTP servers, process-wide.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quillon::platform::testing {

// What one run of a stylesheet may use before it is stopped. Steps are those of its expressions,
// and again those of its instructions.
void SubstituteTransformLimits(std::int64_t memoryBytes, long milliseconds, unsigned long steps);
// How long an HTTP server may be silent and take as a whole, and how much it may send.
void SubstituteHttpLimits(long stallSeconds, long totalSeconds, std::size_t bodyBytes);

// Gives the system's own limits back at the end of a test.
struct XmlLimitsScope {
  XmlLimitsScope() = default;
  XmlLimitsScope(const XmlLimitsScope&) = delete;
  XmlLimitsScope& operator=(const XmlLimitsScope&) = delete;
  ~XmlLimitsScope();
};

}  // namespace quillon::platform::testing
