// Numbers and tags as text, in a buffer of the caller's.
#pragma once

#include <array>
#include <charconv>
#include <cstdio>
#include <string_view>
#include <type_traits>

#include "dicom/types.h"

namespace quillon {

using NumberText = std::array<char, 32>;

// Integers in decimal; others with as many significant digits as "%g" prints.
template <typename T>
std::string_view printNumber(NumberText& buffer, T value) {
  constexpr int kPrintedDigits = 6;
  std::to_chars_result result{};
  if constexpr (std::is_floating_point_v<T>) {
    result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                           std::chars_format::general, kPrintedDigits);
  } else {
    result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  }
  return {buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())};
}

inline std::string_view printTag(NumberText& buffer, DcTag tag) {
  const int length =
      std::snprintf(buffer.data(), buffer.size(), "(%04x,%04x)",
                    static_cast<unsigned>(dcGroup(tag)), static_cast<unsigned>(dcElement(tag)));
  return {buffer.data(), static_cast<std::size_t>(length)};
}

}  // namespace quillon
