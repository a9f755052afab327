// The bytes of a file that is laid out in memory, in pieces: growing neither moves them nor holds
// them twice.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace quillon {

class DcFile;

class DcDirBytes {
 public:
  [[nodiscard]] std::size_t size() const { return size_; }
  void clear();
  void append(const std::vector<std::uint8_t>& bytes);
  // Replaces four bytes that are there, by a number in little endian.
  void patch(std::size_t offset, std::uint32_t value);
  [[nodiscard]] bool writeTo(DcFile& file) const;

 private:
  static constexpr std::size_t kPieceBytes = std::size_t{256} << 10;

  std::vector<std::unique_ptr<std::uint8_t[]>> pieces_;
  std::size_t size_ = 0;
};

}  // namespace quillon
