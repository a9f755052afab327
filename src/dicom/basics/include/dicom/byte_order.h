// Loads and stores integers of a given byte order at any address. Neither alignment nor the
// machine's own byte order matters.
#pragma once

#include <bit>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <tuple>

namespace quillon {

template <std::unsigned_integral T>
constexpr T swapBytes(T value) {
  if constexpr (sizeof(T) == 1) {
    return value;
  } else if constexpr (sizeof(T) == 2) {
    return static_cast<T>((value << 8) | (value >> 8));
  } else if constexpr (sizeof(T) == 4) {
    return static_cast<T>(((value & 0x000000FFU) << 24) | ((value & 0x0000FF00U) << 8) |
                          ((value & 0x00FF0000U) >> 8) | ((value & 0xFF000000U) >> 24));
  } else {
    static_assert(sizeof(T) == 8);
    return (static_cast<T>(swapBytes(static_cast<std::uint32_t>(value))) << 32) |
           swapBytes(static_cast<std::uint32_t>(value >> 32));
  }
}

// The unsigned integer with as many bytes.
template <typename T>
using BitsOf =
    std::tuple_element_t<std::bit_width(sizeof(T)) - 1,
                         std::tuple<std::uint8_t, std::uint16_t, std::uint32_t, std::uint64_t>>;

template <typename T>
T loadIn(std::endian order, const void* from) {
  BitsOf<T> bits;
  std::memcpy(&bits, from, sizeof bits);
  return std::bit_cast<T>(std::endian::native == order ? bits : swapBytes(bits));
}
template <typename T>
void storeIn(std::endian order, void* to, T value) {
  auto bits = std::bit_cast<BitsOf<T>>(value);
  if (std::endian::native != order) bits = swapBytes(bits);
  std::memcpy(to, &bits, sizeof bits);
}

template <typename T>
T loadLe(const void* from) {
  return loadIn<T>(std::endian::little, from);
}
template <typename T>
T loadBe(const void* from) {
  return loadIn<T>(std::endian::big, from);
}
template <typename T>
void storeLe(void* to, T value) {
  storeIn(std::endian::little, to, value);
}
template <typename T>
void storeBe(void* to, T value) {
  storeIn(std::endian::big, to, value);
}

inline std::uint16_t loadLe16(const void* from) { return loadLe<std::uint16_t>(from); }
inline std::uint32_t loadLe32(const void* from) { return loadLe<std::uint32_t>(from); }
inline std::uint64_t loadLe64(const void* from) { return loadLe<std::uint64_t>(from); }
inline std::uint16_t loadBe16(const void* from) { return loadBe<std::uint16_t>(from); }
inline std::uint32_t loadBe32(const void* from) { return loadBe<std::uint32_t>(from); }
inline std::uint64_t loadBe64(const void* from) { return loadBe<std::uint64_t>(from); }

inline void storeLe16(void* to, std::uint16_t value) { storeLe(to, value); }
inline void storeLe32(void* to, std::uint32_t value) { storeLe(to, value); }
inline void storeLe64(void* to, std::uint64_t value) { storeLe(to, value); }
inline void storeBe16(void* to, std::uint16_t value) { storeBe(to, value); }
inline void storeBe32(void* to, std::uint32_t value) { storeBe(to, value); }
inline void storeBe64(void* to, std::uint64_t value) { storeBe(to, value); }

// The same with the order chosen at run time.
inline std::uint16_t load16(const void* from, bool bigEndian) {
  return bigEndian ? loadBe16(from) : loadLe16(from);
}
inline std::uint32_t load32(const void* from, bool bigEndian) {
  return bigEndian ? loadBe32(from) : loadLe32(from);
}
inline std::uint64_t load64(const void* from, bool bigEndian) {
  return bigEndian ? loadBe64(from) : loadLe64(from);
}
inline void store16(void* to, std::uint16_t value, bool bigEndian) {
  bigEndian ? storeBe16(to, value) : storeLe16(to, value);
}
inline void store32(void* to, std::uint32_t value, bool bigEndian) {
  bigEndian ? storeBe32(to, value) : storeLe32(to, value);
}
inline void store64(void* to, std::uint64_t value, bool bigEndian) {
  bigEndian ? storeBe64(to, value) : storeLe64(to, value);
}

}  // namespace quillon
