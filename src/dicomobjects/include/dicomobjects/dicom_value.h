// A value read by tag path, in the type that its VR calls for.
#pragma once

#include <cstdint>
#include <variant>
#include <vector>

#include "foundation/text.h"

namespace quillon {

// monostate: the element has no value. Arrays come for OB, OW and UN with more than one entry, and
// for the others when the caller asked for arrays and the element has several values.
using DicomValue =
    std::variant<std::monostate, Text, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
                 std::uint32_t, float, double, std::vector<Text>, std::vector<std::uint8_t>,
                 std::vector<std::int16_t>, std::vector<std::uint16_t>, std::vector<std::int32_t>,
                 std::vector<std::uint32_t>, std::vector<float>, std::vector<double>>;

// A single value as text: numbers in decimal, no value as empty text. False for an array.
[[nodiscard]] bool DicomValueToText(const DicomValue& value, Text& out);

}  // namespace quillon
