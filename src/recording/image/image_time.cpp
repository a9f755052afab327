#include "image/image_time.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

#include "platform/win32/system.h"

namespace quillon::platform {
namespace {

constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600;

std::tm brokenDown(const ImageTime& time) {
  std::tm local{};
  local.tm_year = time.year - 1900;
  local.tm_mon = time.month - 1;
  local.tm_mday = time.day;
  local.tm_hour = time.hour;
  local.tm_min = time.minute;
  local.tm_sec = time.second;
  local.tm_isdst = -1;
  return local;
}

unsigned quarterHours(const ImageTime& time) {
  return static_cast<unsigned>(time.offsetMinutes / 15) & 0xFF;
}

}  // namespace

ImageTime imageTimeOf(std::int64_t unixSeconds) {
  const std::time_t seconds = unixSeconds;
  std::tm local{};
  if (::localtime_r(&seconds, &local) == nullptr) return {};
  return {local.tm_year + 1900,
          local.tm_mon + 1,
          local.tm_mday,
          local.tm_hour,
          local.tm_min,
          local.tm_sec,
          0,
          static_cast<int>(local.tm_gmtoff / 60)};
}

ImageTime imageTimeNow() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  ImageTime time{
      now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds / 10,
      0};
  std::tm local = brokenDown(time);
  ::mktime(&local);
  time.offsetMinutes = static_cast<int>(local.tm_gmtoff / 60);
  return time;
}

std::int64_t unixSecondsOf(const ImageTime& time) {
  std::tm asIfUtc = brokenDown(time);
  return ::timegm(&asIfUtc) - std::int64_t{time.offsetMinutes} * 60;
}

std::int64_t unixSecondsOfFileTime(const FILETIME& time) { return timeSpecOfFileTime(time).tv_sec; }

timespec timeSpecOfFileTime(const FILETIME& time) {
  constexpr std::uint64_t kUnitsPerSecond = 10'000'000;
  const std::uint64_t units =
      (static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
  return {static_cast<std::int64_t>(units / kUnitsPerSecond) - kSecondsFrom1601To1970,
          static_cast<long>(units % kUnitsPerSecond) * 100};
}

void putRecordTime(FieldWriter& out, const ImageTime& time) {
  const int years = std::clamp(time.year - 1900, 0, 255);
  out.u8(static_cast<unsigned>(years))
      .u8(static_cast<unsigned>(time.month))
      .u8(static_cast<unsigned>(time.day))
      .u8(static_cast<unsigned>(time.hour))
      .u8(static_cast<unsigned>(time.minute))
      .u8(static_cast<unsigned>(std::min(time.second, 59)))
      .u8(quarterHours(time));
}

void putVolumeTime(FieldWriter& out, const ImageTime& time) {
  char digits[32];
  std::snprintf(digits, sizeof(digits), "%04u%02u%02u%02u%02u%02u%02u",
                static_cast<unsigned>(time.year) % 10'000U,
                static_cast<unsigned>(time.month) % 100U, static_cast<unsigned>(time.day) % 100U,
                static_cast<unsigned>(time.hour) % 100U, static_cast<unsigned>(time.minute) % 100U,
                static_cast<unsigned>(time.second) % 100U,
                static_cast<unsigned>(time.centisecond) % 100U);
  out.text(std::string_view(digits, 16)).u8(quarterHours(time));
}

void putUdfTime(FieldWriter& out, const ImageTime& time) {
  constexpr unsigned kLocalTime = 1U << 12;  // what kind of time, above the 12 bits of its offset
  out.le16(kLocalTime | (static_cast<unsigned>(time.offsetMinutes) & 0xFFF))
      .le16(static_cast<unsigned>(time.year) & 0xFFFF)
      .u8(static_cast<unsigned>(time.month))
      .u8(static_cast<unsigned>(time.day))
      .u8(static_cast<unsigned>(time.hour))
      .u8(static_cast<unsigned>(time.minute))
      .u8(static_cast<unsigned>(std::min(time.second, 59)))
      .u8(static_cast<unsigned>(time.centisecond))
      .zeros(2);  // finer parts of the second
}

}  // namespace quillon::platform
