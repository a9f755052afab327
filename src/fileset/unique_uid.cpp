#include "unique_uid.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/com.h"

namespace quillon {

namespace {

// The decimal digits of a number of 16 bytes, the highest first.
std::string Decimal(std::array<std::uint8_t, 16> number) {
  std::string digits;
  while (std::ranges::any_of(number, [](std::uint8_t byte) { return byte != 0; })) {
    unsigned rest = 0;
    for (std::uint8_t& byte : number) {
      const unsigned part = rest << 8 | byte;
      byte = static_cast<std::uint8_t>(part / 10);
      rest = part % 10;
    }
    digits.push_back(static_cast<char>('0' + rest));
  }
  std::ranges::reverse(digits);
  return digits;
}

}  // namespace

std::string MakeUniqueUid() {
  GUID uuid{};
  if (FAILED(CoCreateGuid(&uuid))) return {};
  std::array<std::uint8_t, 16> bytes{};
  for (std::size_t i = 0; i < 4; ++i)
    bytes[i] = static_cast<std::uint8_t>(uuid.Data1 >> (24 - 8 * i));
  bytes[4] = static_cast<std::uint8_t>(uuid.Data2 >> 8);
  bytes[5] = static_cast<std::uint8_t>(uuid.Data2);
  bytes[6] = static_cast<std::uint8_t>(uuid.Data3 >> 8);
  bytes[7] = static_cast<std::uint8_t>(uuid.Data3);
  std::ranges::copy(uuid.Data4, bytes.begin() + 8);
  return "2.25." + Decimal(bytes);
}

}  // namespace quillon
