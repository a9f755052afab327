// Trimming without a copy.
#pragma once

#include "foundation/text.h"

namespace quillon {

// Space, tab, line feed, vertical tab, form feed, carriage return.
constexpr bool IsWhiteSpace(OLECHAR unit) {
  return unit == OLESTR(' ') || (unit >= OLESTR('\t') && unit <= OLESTR('\r'));
}

constexpr TextView TrimmedView(TextView text) {
  while (!text.empty() && IsWhiteSpace(text.back())) text.remove_suffix(1);
  while (!text.empty() && IsWhiteSpace(text.front())) text.remove_prefix(1);
  return text;
}

}  // namespace quillon
