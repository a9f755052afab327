// Changes to the bytes of an image that readers still take for an image: the sums of UDF's
// descriptors are made to fit again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace quillon::test {

inline constexpr std::size_t kSectorBytes = 2048;

inline unsigned byteAt(const std::string& bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

inline void putLittle(std::string& bytes, std::size_t at, std::uint64_t number, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) bytes[at + i] = static_cast<char>(number >> (8 * i));
}

// The CRC of ECMA 182 and the sum of the tag, of a descriptor of at most a sector.
inline void mendTag(std::string& bytes, std::size_t tag) {
  const std::size_t length = byteAt(bytes, tag + 10) | byteAt(bytes, tag + 11) << 8;
  if (length > kSectorBytes - 16 || tag + 16 + length > bytes.size()) return;
  unsigned crc = 0;
  for (std::size_t i = 0; i < length; ++i) {
    crc ^= byteAt(bytes, tag + 16 + i) << 8;
    for (int bit = 0; bit < 8; ++bit) crc = (crc << 1 ^ ((crc & 0x8000U) != 0 ? 0x1021U : 0U));
    crc &= 0xFFFFU;
  }
  putLittle(bytes, tag + 8, crc, 2);
  unsigned sum = 0;
  for (std::size_t i = 0; i < 16; ++i) sum += i == 4 ? 0U : byteAt(bytes, tag + i);
  bytes[tag + 4] = static_cast<char>(sum);
}

}  // namespace quillon::test
