// The printf forms that the message texts use, with typed arguments.
#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <variant>

#include "foundation/text.h"

namespace quillon {

class TextArg {
 public:
  TextArg(TextView text) : value_(text) {}
  TextArg(const Text& text) : value_(TextView(text)) {}
  TextArg(const OLECHAR* text) : value_(text == nullptr ? TextView() : TextView(text)) {}
  // Every integer type: on Windows LONG and DWORD are types of their own beside the fixed widths.
  template <std::integral Int>
  TextArg(Int value) : value_(static_cast<std::int64_t>(value)) {}

  [[nodiscard]] const std::variant<TextView, std::int64_t>& value() const { return value_; }

 private:
  std::variant<TextView, std::int64_t> value_;
};

// Understands %s %S %d %i %u %x %X %c %% with the flags 0 # -, a width and a precision and the
// length letters l h I64. "%05s" pads with zeros. A conversion without an argument stands for an
// empty text; nothing is read that was not passed.
Text FormatText(TextView format, std::initializer_list<TextArg> args);

}  // namespace quillon
