#include "keyed_hash.h"

#include <algorithm>

#include "platform/sha256.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kBlockBytes = 64;  // of SHA-256

std::string bytesOfHex(std::string_view digits) {
  const auto valueOf = [](char digit) { return digit <= '9' ? digit - '0' : digit - 'a' + 10; };
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    bytes += static_cast<char>(valueOf(digits[i]) << 4 | valueOf(digits[i + 1]));
  }
  return bytes;
}

std::string sumOf(std::string_view first, std::string_view second) {
  Sha256 sum;
  sum.Update(first.data(), first.size());
  sum.Update(second.data(), second.size());
  return sum.Finish();
}

std::string mixed(std::string block, unsigned char with) {
  std::ranges::transform(block, block.begin(), [with](char c) {
    return static_cast<char>(static_cast<unsigned char>(c) ^ with);
  });
  return block;
}

}  // namespace

std::string keyedHash(std::string_view key, std::string_view text) {
  std::string block = key.size() > kBlockBytes ? bytesOfHex(sumOf(key, {})) : std::string(key);
  block.resize(kBlockBytes, '\0');
  const std::string inner = sumOf(mixed(block, 0x36), text);
  return inner.empty() ? inner : sumOf(mixed(block, 0x5C), bytesOfHex(inner));
}

}  // namespace quillon::cli
