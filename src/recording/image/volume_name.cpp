#include "image/volume_name.h"

#include <cstdio>

#include "image/image_time.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

constexpr std::size_t kLongestVolumeName = 32;

}  // namespace

bool isLegalVolumeName(std::u16string_view name) {
  for (std::size_t at = 0; at < name.size(); ++at) {
    if (name[at] < 0x20 || name[at] == 0x7F) return false;
    if (isHighSurrogate(name[at]) && at + 1 < name.size() && isLowSurrogate(name[at + 1])) {
      ++at;
    } else if (isHighSurrogate(name[at]) || isLowSurrogate(name[at])) {
      return false;
    }
  }
  return name.size() <= kLongestVolumeName;
}

std::u16string volumeNameOfToday() {
  const ImageTime now = imageTimeNow();
  char text[16];
  std::snprintf(text, sizeof(text), "%02u%02u%04u", static_cast<unsigned>(now.day) % 100U,
                static_cast<unsigned>(now.month) % 100U, static_cast<unsigned>(now.year) % 10'000U);
  return {text, text + 8};
}

}  // namespace quillon::platform
