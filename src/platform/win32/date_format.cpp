// Dates as text.
#include <array>
#include <string>
#include <string_view>

#include "platform/win32/errors.h"
#include "platform/win32/system.h"
#include "win32/last_error.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

constexpr std::array<std::u16string_view, 12> kMonths{
    u"January", u"February", u"March",     u"April",   u"May",      u"June",
    u"July",    u"August",   u"September", u"October", u"November", u"December"};
constexpr std::array<std::u16string_view, 7> kDays{u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                                   u"Thursday", u"Friday", u"Saturday"};
// English abbreviates all names to three letters.
constexpr std::size_t kShortNameLetters = 3;

constexpr bool isLeapYear(int year) {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

constexpr int daysInMonth(int year, int month) {
  constexpr std::array<int, 12> kLengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && isLeapYear(year) ? 29 : kLengths[static_cast<std::size_t>(month - 1)];
}

// System times begin in 1601 and end in 30827.
bool isDate(const SYSTEMTIME& date) {
  return date.wYear >= 1601 && date.wYear <= 30827 && date.wMonth >= 1 && date.wMonth <= 12 &&
         date.wDay >= 1 && date.wDay <= daysInMonth(date.wYear, date.wMonth);
}

// The weekday is computed; the caller's is not looked at.
std::size_t dayOfWeek(int year, int month, int day) {
  constexpr std::array<int, 12> kMonthShift{0, 3, 2, 5, 0, 3, 5, 1, 4, 6, 2, 4};
  if (month < 3) --year;
  const int sum = year + year / 4 - year / 100 + year / 400 +
                  kMonthShift[static_cast<std::size_t>(month - 1)] + day;
  return static_cast<std::size_t>(sum % 7);
}

void appendNumber(std::u16string& out, unsigned value, std::size_t digits) {
  const std::string text = std::to_string(value);
  if (text.size() < digits) out.append(digits - text.size(), u'0');
  out.append(text.begin(), text.end());
}

void appendPicture(std::u16string& out, char16_t letter, std::size_t count,
                   const SYSTEMTIME& date) {
  if (letter == u'y') {
    // Four or more letters give the whole year; fewer its last two digits.
    if (count > 2) {
      appendNumber(out, date.wYear, 4);
    } else {
      appendNumber(out, date.wYear % 100U, count);
    }
    return;
  }
  const bool isDay = letter == u'd';
  if (count <= 2) {
    appendNumber(out, isDay ? date.wDay : date.wMonth, count);
    return;
  }
  const std::u16string_view name =
      isDay ? kDays[dayOfWeek(date.wYear, date.wMonth, date.wDay)] : kMonths[date.wMonth - 1U];
  out += count == 3 ? name.substr(0, kShortNameLetters) : name;
}

// Copies a text in apostrophes; a doubled one inside stands for itself. Answers what follows it.
std::u16string_view appendQuoted(std::u16string& out, std::u16string_view format) {
  format.remove_prefix(1);
  while (!format.empty()) {
    if (format[0] == u'\'') {
      if (format.size() < 2 || format[1] != u'\'') return format.substr(1);
      format.remove_prefix(1);
    }
    out.push_back(format[0]);
    format.remove_prefix(1);
  }
  return format;
}

std::u16string formatDate(std::u16string_view format, const SYSTEMTIME& date) {
  std::u16string out;
  while (!format.empty()) {
    const char16_t letter = format[0];
    if (letter == u'\'') {
      format = appendQuoted(out, format);
    } else if (letter == u'd' || letter == u'M' || letter == u'y') {
      const std::size_t end = format.find_first_not_of(letter);
      const std::size_t count = end == std::u16string_view::npos ? format.size() : end;
      appendPicture(out, letter, count, date);
      format.remove_prefix(count);
    } else {
      out.push_back(letter);
      format.remove_prefix(1);
    }
  }
  return out;
}

}  // namespace
}  // namespace quillon::platform

using namespace quillon::platform;

int WINAPI GetDateFormatW(LCID, DWORD flags, const SYSTEMTIME* date, LPCWSTR format, LPWSTR buffer,
                          int bufferUnits) {
  SYSTEMTIME shown{};
  if (date != nullptr) {
    shown = *date;
  } else {
    GetLocalTime(&shown);
  }
  // Flags choose one of the locale's own formats.
  if (format != nullptr && flags != 0) return failWith(ERROR_INVALID_FLAGS);
  if (!isDate(shown) || bufferUnits < 0 || (bufferUnits > 0 && buffer == nullptr)) {
    return failWith(ERROR_INVALID_PARAMETER);
  }
  const std::u16string text = formatDate(format == nullptr ? u"M/d/yyyy" : format, shown);
  const auto needed = static_cast<int>(text.size() + 1);
  if (bufferUnits == 0) return needed;
  if (bufferUnits < needed) return failWith(ERROR_INSUFFICIENT_BUFFER);
  copyOut(text, buffer, static_cast<DWORD>(bufferUnits));
  return needed;
}
