#include "xml_limits.h"

#include "platform/xml_testing.h"

namespace quillon::platform {

TransformLimits& transformLimits() {
  static TransformLimits current;
  return current;
}

HttpLimits& httpLimits() {
  static HttpLimits current;
  return current;
}

namespace testing {

void SubstituteTransformLimits(std::int64_t memoryBytes, long milliseconds, unsigned long steps) {
  transformLimits() = {memoryBytes, milliseconds, steps};
}

void SubstituteHttpLimits(long stallSeconds, long totalSeconds, std::size_t bodyBytes) {
  httpLimits().stallSeconds = stallSeconds;
  httpLimits().totalSeconds = totalSeconds;
  httpLimits().bodyBytes = bodyBytes;
}

XmlLimitsScope::~XmlLimitsScope() {
  transformLimits() = {};
  httpLimits() = {};
}

}  // namespace testing
}  // namespace quillon::platform
