#include "dicomobjects/dicom_value.h"

#include <charconv>
#include <limits>
#include <string_view>
#include <type_traits>

#include "value_text.h"

namespace quillon {

namespace {

// The digits that are certain, and a capital E before an exponent: how the platform writes a
// floating-point VARIANT.
template <typename Float>
Text FloatText(Float value) {
  char text[64];
  const auto [end, error] =
      std::to_chars(std::begin(text), std::end(text), value, std::chars_format::general,
                    std::is_same_v<Float, float> ? 7 : 15);
  if (error != std::errc{}) return {};
  for (char* c = text; c != end; ++c) {
    if (*c == 'e') *c = 'E';
  }
  return WidenValue({text, static_cast<std::size_t>(end - text)});
}

struct ToText {
  Text& out;

  bool operator()(std::monostate) const { return true; }
  bool operator()(const Text& text) const {
    out = text;
    return true;
  }
  template <typename Number>
  requires std::is_arithmetic_v<Number>
  bool operator()(Number number) const {
    if constexpr (std::is_floating_point_v<Number>) {
      out = FloatText(number);
    } else {
      out = NumberText(number);
    }
    return true;
  }
  template <typename Entry>
  bool operator()(const std::vector<Entry>&) const {
    return false;
  }
};

}  // namespace

bool DicomValueToText(const DicomValue& value, Text& out) {
  out.clear();
  return std::visit(ToText{out}, value);
}

}  // namespace quillon
