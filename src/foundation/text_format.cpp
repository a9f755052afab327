#include "foundation/text_format.h"

#include <algorithm>
#include <optional>

namespace quillon {
namespace {

// More padding than any message has room for; keeps a format from asking for memory at will.
constexpr std::size_t kMaxFieldUnits = 4096;

struct Conversion {
  bool zeroPadded = false;
  bool prefixed = false;
  bool leftAligned = false;
  bool is64Bit = false;
  std::size_t width = 0;
  std::optional<std::size_t> precision;
  OLECHAR letter = 0;
};

class FormatReader {
 public:
  explicit FormatReader(TextView rest) : rest_(rest) {}

  [[nodiscard]] TextView rest() const { return rest_; }

  bool Take(TextView expected) {
    if (!rest_.starts_with(expected)) return false;
    rest_.remove_prefix(expected.size());
    return true;
  }

  std::size_t TakeNumber() {
    std::size_t number = 0;
    while (!rest_.empty() && rest_.front() >= OLESTR('0') && rest_.front() <= OLESTR('9')) {
      number = number * 10 + static_cast<std::size_t>(rest_.front() - OLESTR('0'));
      number = std::min(number, kMaxFieldUnits);
      rest_.remove_prefix(1);
    }
    return number;
  }

  OLECHAR TakeUnit() {
    if (rest_.empty()) return 0;
    const OLECHAR unit = rest_.front();
    rest_.remove_prefix(1);
    return unit;
  }

 private:
  TextView rest_;
};

// Reads what follows "%". Nothing for a conversion that is not one of ours.
std::optional<Conversion> ReadConversion(FormatReader& reader) {
  Conversion conversion;
  for (bool isFlag = true; isFlag;) {
    if (reader.Take(OLESTR("0"))) {
      conversion.zeroPadded = true;
    } else if (reader.Take(OLESTR("#"))) {
      conversion.prefixed = true;
    } else if (reader.Take(OLESTR("-"))) {
      conversion.leftAligned = true;
    } else {
      isFlag = false;
    }
  }
  conversion.width = reader.TakeNumber();
  if (reader.Take(OLESTR("."))) conversion.precision = reader.TakeNumber();
  if (reader.Take(OLESTR("I64"))) {
    conversion.is64Bit = true;
  } else {
    while (reader.Take(OLESTR("l")) || reader.Take(OLESTR("h"))) {
    }
  }
  conversion.letter = reader.TakeUnit();
  if (TextView(OLESTR("sSdiuxXc%")).find(conversion.letter) == TextView::npos) return std::nullopt;
  return conversion;
}

Text Digits(std::uint64_t magnitude, unsigned base, bool upperCase) {
  constexpr TextView kLower = OLESTR("0123456789abcdef");
  constexpr TextView kUpper = OLESTR("0123456789ABCDEF");
  const TextView digits = upperCase ? kUpper : kLower;
  Text reversed;
  do {
    reversed.push_back(digits[static_cast<std::size_t>(magnitude % base)]);
    magnitude /= base;
  } while (magnitude != 0);
  std::reverse(reversed.begin(), reversed.end());
  return reversed;
}

void AppendPadded(Text& out, TextView prefix, TextView body, const Conversion& conversion,
                  bool zeroPadded) {
  const std::size_t length = prefix.size() + body.size();
  const std::size_t padding = conversion.width > length ? conversion.width - length : 0;
  if (!conversion.leftAligned && !zeroPadded) out.append(padding, OLESTR(' '));
  out.append(prefix);
  if (!conversion.leftAligned && zeroPadded) out.append(padding, OLESTR('0'));
  out.append(body);
  if (conversion.leftAligned) out.append(padding, OLESTR(' '));
}

void AppendText(Text& out, TextView text, const Conversion& conversion) {
  if (conversion.precision.has_value()) text = text.substr(0, *conversion.precision);
  AppendPadded(out, {}, text, conversion, conversion.zeroPadded);
}

void AppendNumber(Text& out, std::int64_t value, const Conversion& conversion) {
  const bool isSigned = conversion.letter == OLESTR('d') || conversion.letter == OLESTR('i') ||
                        conversion.letter == OLESTR('s') || conversion.letter == OLESTR('S');
  const bool isHex = conversion.letter == OLESTR('x') || conversion.letter == OLESTR('X');
  auto magnitude = static_cast<std::uint64_t>(value);
  Text prefix;
  if (value < 0 && isSigned) {
    magnitude = 0 - magnitude;
    prefix = OLESTR("-");
  } else if (value < 0 && !conversion.is64Bit) {
    magnitude = static_cast<std::uint32_t>(value);  // a negative 32-bit value, such as an HRESULT
  }
  if (isHex && conversion.prefixed && magnitude != 0) {
    prefix = conversion.letter == OLESTR('x') ? OLESTR("0x") : OLESTR("0X");
  }
  Text digits = Digits(magnitude, isHex ? 16 : 10, conversion.letter == OLESTR('X'));
  const std::size_t minDigits = conversion.precision.value_or(1);
  if (digits.size() < minDigits) digits.insert(0, minDigits - digits.size(), OLESTR('0'));
  // As in C, a precision takes over from zero padding.
  AppendPadded(out, prefix, digits, conversion,
               conversion.zeroPadded && !conversion.precision.has_value());
}

void AppendArgument(Text& out, const TextArg* argument, const Conversion& conversion) {
  if (argument == nullptr) return AppendText(out, {}, conversion);
  const auto* number = std::get_if<std::int64_t>(&argument->value());
  if (conversion.letter == OLESTR('c')) {
    if (number == nullptr) {
      return AppendText(out, std::get<TextView>(argument->value()).substr(0, 1), conversion);
    }
    const auto unit = static_cast<OLECHAR>(*number);
    return AppendText(out, TextView(&unit, 1), conversion);
  }
  if (number == nullptr) return AppendText(out, std::get<TextView>(argument->value()), conversion);
  AppendNumber(out, *number, conversion);
}

}  // namespace

Text FormatText(TextView format, std::initializer_list<TextArg> args) {
  Text out;
  out.reserve(format.size());
  const TextArg* next = args.begin();
  while (!format.empty()) {
    const std::size_t literal = std::min(format.find(OLESTR('%')), format.size());
    out.append(format.substr(0, literal));
    format.remove_prefix(literal);
    if (format.empty()) break;
    FormatReader reader(format.substr(1));
    const std::optional<Conversion> conversion = ReadConversion(reader);
    const std::size_t consumed = format.size() - reader.rest().size();
    if (!conversion.has_value()) {
      out.append(format.substr(0, consumed));  // stands for itself, and takes no argument
    } else if (conversion->letter == OLESTR('%')) {
      out.push_back(OLESTR('%'));
    } else {
      AppendArgument(out, next == args.end() ? nullptr : next++, *conversion);
    }
    format.remove_prefix(consumed);
  }
  return out;
}

}  // namespace quillon
