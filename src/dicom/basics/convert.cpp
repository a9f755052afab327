#include "dicom/convert.h"

#include <algorithm>
#include <cstdint>

#include "dicom/byte_order.h"
#include "dicom/log.h"
#include "dicom/text_scan.h"
#include "dicom/text_to_number.h"

namespace quillon {
namespace {

constexpr const char* kToValue = "utilStrgToValue";
constexpr const char* kToYMD = "utilStrgToYMD";
constexpr const char* kToHMS = "utilStrgToHMS";

constexpr std::size_t kAsChars = 4;
constexpr std::size_t kAtChars = 11;
constexpr std::size_t kDateDigits = 8;
// January 0 of a year that is refused however many digits follow.
constexpr std::uint64_t kFarFuture = 100'000'000'000;
constexpr std::size_t kMaxTimeChars = 34;
constexpr std::size_t kMaxDateTimeChars = 26;
constexpr std::size_t kNowhere = std::string_view::npos;

// Where the separators of the older forms stand: YYYY.MM.DD and HH:MM:SS.
constexpr std::size_t kDotAfterYear = 4;
constexpr std::size_t kDotAfterMonth = 7;
constexpr std::size_t kColonAfterHour = 2;
constexpr std::size_t kColonAfterMinute = 5;

DcCode refuseNull(const char* function) {
  dcLog(DcLogLevel::Error, function, "Null argument passed");
  return kDcHelperNullArgument;
}

// The length that "%.*s" takes.
int chars(std::string_view text) { return static_cast<int>(text.size()); }

int daysOfMonth(std::uint64_t year, int month) {
  constexpr std::array<int, 12> kDays{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month == 2 && year % 4 == 0) return 29;
  return kDays[static_cast<std::size_t>(month - 1)];
}

DcCode refuseDate(DcTag tag, const char* what, int value, std::string_view text) {
  dcLog(DcLogLevel::Error, kToYMD, "Element (%04x,%04x) - invalid %s %d in string '%.*s'",
        dcGroup(tag), dcElement(tag), what, value, chars(text), text.data());
  return kDcNotConvertible;
}

DcCode refuseTime(DcTag tag, const char* what, std::string_view text) {
  dcLog(DcLogLevel::Error, kToValue, "Element (%04x,%04x) - invalid %s value in string '%.*s'",
        dcGroup(tag), dcElement(tag), what, chars(text), text.data());
  return kDcNotConvertible;
}

DcCode refuseCharacter(DcTag tag, const char* function, char c, std::string_view text) {
  dcLog(DcLogLevel::Error, function, "Element (%04x,%04x) - non numeric char '%c' in string '%.*s'",
        dcGroup(tag), dcElement(tag), c, chars(text), text.data());
  return kDcNotConvertible;
}

DcCode refuseSeparator(DcTag tag, const char* function, char separator, std::string_view text) {
  dcLog(DcLogLevel::Error, function,
        "Element (%04x,%04x) - unexpected occurence of '%c' in string '%.*s'", dcGroup(tag),
        dcElement(tag), separator, chars(text), text.data());
  return kDcNotConvertible;
}

// Two digits at a place that was found to hold digits.
int twoDigits(std::string_view text, std::size_t at) {
  return (text[at] - '0') * 10 + (text[at + 1] - '0');
}

bool dotsAreWellPlaced(std::string_view text) {
  const std::size_t first = text.find('.');
  if (first == kNowhere) return true;
  return first == kDotAfterYear && text.find('.', first + 1) == kDotAfterMonth &&
         text.find('.', kDotAfterMonth + 1) == kNowhere;
}

bool colonsAreWellPlaced(std::string_view text) {
  const std::size_t first = text.find(':');
  if (first == kNowhere) return true;
  if (first != kColonAfterHour) return false;
  const std::size_t second = text.find(':', first + 1);
  return second == kNowhere ||
         (second == kColonAfterMinute && text.find(':', kColonAfterMinute + 1) == kNowhere);
}

// Hexadecimal digits of one half of an AT value; negative when there is something else.
int fourHexDigits(std::string_view digits) {
  int value = 0;
  for (const char c : digits) {
    int digit = 0;
    if (isDigit(c)) {
      digit = c - '0';
    } else if (c >= 'a' && c <= 'f') {
      digit = c - 'a' + 10;
    } else if (c >= 'A' && c <= 'F') {
      digit = c - 'A' + 10;
    } else {
      return -1;
    }
    value = value * 16 + digit;
  }
  return value;
}

}  // namespace

DcCode utilStrgToValue(DcTag tag, std::string_view text, DcElemValueAS* value) {
  if (text.data() == nullptr || value == nullptr) return refuseNull(kToValue);
  text = trimmed(text);
  if (text.size() != kAsChars) {
    dcLog(DcLogLevel::Error, kToValue,
          "Element (%04x,%04x) - '%.*s' incorrect AS string length, must be 4 bytes", dcGroup(tag),
          dcElement(tag), chars(text), text.data());
    return kDcNotConvertible;
  }
  const char unit = text[kAsChars - 1];
  const std::string_view number = text.substr(0, kAsChars - 1);
  const bool unitIsKnown = unit == 'D' || unit == 'W' || unit == 'M' || unit == 'Y';
  if (!unitIsKnown || !std::all_of(number.begin(), number.end(), isDigit)) {
    dcLog(DcLogLevel::Error, kToValue, "Element (%04x,%04x) - invalid string %.*s", dcGroup(tag),
          dcElement(tag), chars(text), text.data());
    return kDcNotConvertible;
  }
  value->number = textToInt32(number);
  value->unit = unit;
  return kDcOk;
}

DcCode utilStrgToValue(DcTag tag, std::string_view text, DcElemValueAT* value) {
  if (text.data() == nullptr || value == nullptr) return refuseNull(kToValue);
  if (text.size() != kAtChars) {
    dcLog(DcLogLevel::Error, kToValue,
          "Element (%04x,%04x) - %.*s incorrect string length, should be 11 bytes", dcGroup(tag),
          dcElement(tag), chars(text), text.data());
    return kDcNotConvertible;
  }
  // "(gggg,eeee)"
  const int group = fourHexDigits(text.substr(1, 4));
  const int element = fourHexDigits(text.substr(6, 4));
  if (text[0] != '(' || text[5] != ',' || text[10] != ')' || group < 0 || element < 0) {
    dcLog(DcLogLevel::Error, kToValue,
          "Element (%04x,%04x) - invalid string '%.*s', expecting (gggg,eeee)", dcGroup(tag),
          dcElement(tag), chars(text), text.data());
    return kDcNotConvertible;
  }
  value->group = static_cast<std::uint16_t>(group);
  value->element = static_cast<std::uint16_t>(element);
  return kDcOk;
}

DcCode utilStrgToYMD(DcTag tag, std::string_view text, DcElemValueDA* value) {
  if (text.data() == nullptr || value == nullptr) return refuseNull(kToYMD);
  text = trimmed(text);
  if (!dotsAreWellPlaced(text)) return refuseSeparator(tag, kToYMD, '.', text);

  std::size_t digits = 0;
  std::uint64_t number = 0;
  char wrong = '\0';
  for (const char c : text) {
    if (c == '.') continue;
    ++digits;
    if (isDigit(c)) {
      number = number * 10 + static_cast<std::uint64_t>(c - '0');
      // Whatever comes before, month and day are the last four digits.
      if (number > kFarFuture) number = kFarFuture + number % 10'000;
    } else if (wrong == '\0') {
      wrong = c;
    }
  }
  if (digits < kDateDigits) {
    dcLog(DcLogLevel::Error, kToYMD,
          "Element (%04x,%04x) - short string '%.*s', should be 8 digits", dcGroup(tag),
          dcElement(tag), chars(text), text.data());
    return kDcNotConvertible;
  }
  if (wrong != '\0') return refuseCharacter(tag, kToYMD, wrong, text);

  // More than eight digits make a year of more than four.
  const std::uint64_t year = number / 10'000;
  const int month = static_cast<int>(number / 100 % 100);
  const int day = static_cast<int>(number % 100);
  if (month < 1 || month > 12) return refuseDate(tag, "month", month, text);
  if (day < 1 || day > daysOfMonth(year, month)) return refuseDate(tag, "day", day, text);
  if (year > 9999) return refuseDate(tag, "year", static_cast<int>(year), text);
  *value = {static_cast<int>(year), month, day};
  return kDcOk;
}

DcCode utilStrgToValue(DcTag tag, std::string_view text, DcElemValueDA* value) {
  return utilStrgToYMD(tag, text, value);
}

DcCode utilStrgToHMS(DcTag tag, std::string_view text, DcElemValueTM* value) {
  if (text.data() == nullptr || value == nullptr) return refuseNull(kToHMS);
  text = trimmed(text).substr(0, kMaxTimeChars);
  if (!colonsAreWellPlaced(text)) return refuseSeparator(tag, kToHMS, ':', text);

  std::array<char, kMaxTimeChars> withoutColons{};
  const auto end = std::copy_if(text.begin(), text.end(), withoutColons.begin(),
                                [](char c) { return c != ':'; });
  const std::string_view time(withoutColons.data(),
                              static_cast<std::size_t>(end - withoutColons.begin()));
  const std::size_t dot = std::min(time.find('.'), time.size());
  if (dot != 2 && dot != 4 && dot != 6) {
    dcLog(DcLogLevel::Error, kToHMS,
          "Element (%04x,%04x) - invalid HHMMSS part in string '%.*s', should be 2, 4 or 6 chars",
          dcGroup(tag), dcElement(tag), chars(text), text.data());
    return kDcNotConvertible;
  }
  for (std::size_t i = 0; i < time.size(); ++i) {
    if (!isDigit(time[i]) && i != dot) return refuseCharacter(tag, kToHMS, time[i], text);
  }
  value->hour = twoDigits(time, 0);
  value->minute = dot >= 4 ? twoDigits(time, 2) : 0;
  // What follows the minute (or, without one, the hour) is the second and its fraction.
  value->second = textToDouble(time.substr(std::min<std::size_t>(dot, 4)));
  return kDcOk;
}

DcCode utilStrgToValue(DcTag tag, std::string_view text, DcElemValueTM* value) {
  const DcCode code = utilStrgToHMS(tag, text, value);
  if (code != kDcOk) return code;
  text = trimmed(text);
  if (value->hour > 23) return refuseTime(tag, "hour", text);
  if (value->minute > 59) return refuseTime(tag, "minute", text);
  if (value->second >= 60) return refuseTime(tag, "second", text);
  return kDcOk;
}

DcCode utilStrgToValue(DcTag tag, std::string_view text, DcElemValueDT* value) {
  if (text.data() == nullptr || value == nullptr) return refuseNull(kToValue);
  text = text.substr(0, kMaxDateTimeChars);
  std::array<char, kMaxDateTimeChars> kept{};
  const auto end =
      std::copy_if(text.begin(), text.end(), kept.begin(), [](char c) { return !isDcSpace(c); });
  const std::string_view all(kept.data(), static_cast<std::size_t>(end - kept.begin()));
  if (all.empty()) return kDcNoValue;

  *value = {};
  DcCode code = utilStrgToYMD(tag, all.substr(0, kDateDigits), &value->date);
  if (code != kDcOk || all.size() == kDateDigits) return code;

  const std::string_view rest = all.substr(kDateDigits);
  const std::size_t sign = rest.find_first_of("+-");
  const std::string_view time = rest.substr(0, sign);
  if (!time.empty()) code = utilStrgToValue(tag, time, &value->time);
  if (code != kDcOk || sign == kNowhere) return code;
  value->offsetSign = rest[sign];
  return utilStrgToValue(tag, rest.substr(sign + 1), &value->offset);
}

DcCode utilStrgToValue(DcTag, std::string_view text, DcElemValuePN* value) {
  if (text.data() == nullptr || value == nullptr) return refuseNull(kToValue);
  *value = {};
  if (text.find('=') != kNowhere) {
    value->components[0] = text;
    return kDcOk;
  }
  for (std::string_view& component : value->components) {
    const std::size_t caret = text.find('^');
    component = text.substr(0, caret).substr(0, DcElemValuePN::kMaxComponentChars);
    if (caret == kNowhere) break;
    text.remove_prefix(caret + 1);
  }
  return kDcOk;
}

DcCode utilStrgTrim(std::string* text, unsigned mode) {
  if (text == nullptr) return refuseNull("utilStrgTrim");
  if ((mode & kTrimEverywhere) != 0) {
    std::erase_if(*text, isDcSpace);
    return kDcOk;
  }
  std::string_view kept = *text;
  if ((mode & kTrimLeading) != 0) kept = trimmedLeft(kept);
  if ((mode & kTrimTrailing) != 0) kept = trimmedRight(kept);
  *text = std::string(kept);
  return kDcOk;
}

namespace {

template <typename Unit>
void swapUnits(std::uint8_t* bytes, std::size_t lengthBytes) {
  for (std::size_t at = 0; at + sizeof(Unit) <= lengthBytes; at += sizeof(Unit)) {
    storeBe(bytes + at, loadLe<Unit>(bytes + at));
  }
}

}  // namespace

DcCode utilSwab(void* buffer, std::size_t lengthBytes, DcSizeClass unit) {
  if (buffer == nullptr) return refuseNull("utilSwab");
  auto* const bytes = static_cast<std::uint8_t*>(buffer);
  switch (unit) {
    case DcSizeClass::Words:
      swapUnits<std::uint16_t>(bytes, lengthBytes);
      break;
    case DcSizeClass::Integers:
    case DcSizeClass::Floats:
      swapUnits<std::uint32_t>(bytes, lengthBytes);
      break;
    case DcSizeClass::Doubles:
      swapUnits<std::uint64_t>(bytes, lengthBytes);
      break;
    case DcSizeClass::Bytes:
    case DcSizeClass::NoScalar:
      break;
  }
  return kDcOk;
}

}  // namespace quillon
