// Cuts an input into the parts that a target is made of.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace quillon::fuzz {

// What must hold whatever the input is; else the line is told before the process ends.
inline void require(bool holds, int line = __builtin_LINE()) {
  if (holds) return;
  std::fprintf(stderr, "What line %d requires does not hold.\n", line);
  std::abort();
}

class InputParts {
 public:
  InputParts(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  [[nodiscard]] bool isEmpty() const { return rest_.empty(); }
  // 0 when nothing is left.
  std::uint8_t byte() {
    if (rest_.empty()) return 0;
    const auto value = static_cast<std::uint8_t>(rest_.front());
    rest_.remove_prefix(1);
    return value;
  }
  std::string_view bytes(std::size_t count) {
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(taken.size());
    return taken;
  }
  // Up to the next zero byte, which goes too.
  std::string_view text() {
    const std::string_view taken = rest_.substr(0, rest_.find('\0'));
    rest_.remove_prefix(std::min(taken.size() + 1, rest_.size()));
    return taken;
  }
  [[nodiscard]] std::string_view rest() const { return rest_; }

 private:
  std::string_view rest_;
};

}  // namespace quillon::fuzz
