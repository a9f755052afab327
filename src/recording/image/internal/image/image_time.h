// Points in time as the image holds them: local time with its distance from UTC, so that a reader
// that ignores the distance still shows what the user saw.
#pragma once

#include <cstdint>
#include <ctime>

#include "image/image_bytes.h"
#include "platform/com.h"

namespace quillon::platform {

struct ImageTime {
  int year = 1970;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int centisecond = 0;
  int offsetMinutes = 0;  // of the local time, east of UTC
};

ImageTime imageTimeOf(std::int64_t unixSeconds);
// By the layer's clock.
ImageTime imageTimeNow();
std::int64_t unixSecondsOf(const ImageTime& time);

std::int64_t unixSecondsOfFileTime(const FILETIME& time);
timespec timeSpecOfFileTime(const FILETIME& time);

// The 7 bytes of a directory record, the 17 of an ISO 9660 volume descriptor, the 12 of UDF.
void putRecordTime(FieldWriter& out, const ImageTime& time);
void putVolumeTime(FieldWriter& out, const ImageTime& time);
void putUdfTime(FieldWriter& out, const ImageTime& time);

}  // namespace quillon::platform
