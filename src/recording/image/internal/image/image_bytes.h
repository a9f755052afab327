// Writes the fields of a descriptor one after the other, in the byte orders of ISO 9660 and UDF.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace quillon::platform {

using ImageBytes = std::vector<std::uint8_t>;

inline constexpr std::uint32_t kImageSectorBytes = 2048;

constexpr std::uint64_t sectorsFor(std::uint64_t bytes) {
  return (bytes + kImageSectorBytes - 1) / kImageSectorBytes;
}

class FieldWriter {
 public:
  explicit FieldWriter(ImageBytes& bytes) : bytes_(bytes) {}

  FieldWriter& u8(unsigned value) {
    bytes_.push_back(static_cast<std::uint8_t>(value));
    return *this;
  }
  FieldWriter& le16(unsigned value) { return u8(value & 0xFF).u8((value >> 8) & 0xFF); }
  FieldWriter& be16(unsigned value) { return u8((value >> 8) & 0xFF).u8(value & 0xFF); }
  FieldWriter& le32(std::uint32_t value) { return le16(value & 0xFFFF).le16(value >> 16); }
  FieldWriter& be32(std::uint32_t value) { return be16(value >> 16).be16(value & 0xFFFF); }
  FieldWriter& le64(std::uint64_t value) {
    return le32(static_cast<std::uint32_t>(value & 0xFFFFFFFF))
        .le32(static_cast<std::uint32_t>(value >> 32));
  }
  // ISO 9660 writes its numbers in both byte orders.
  FieldWriter& both16(unsigned value) { return le16(value).be16(value); }
  FieldWriter& both32(std::uint32_t value) { return le32(value).be32(value); }
  FieldWriter& zeros(std::size_t count) {
    bytes_.resize(bytes_.size() + count);
    return *this;
  }
  FieldWriter& text(std::string_view value) {
    for (const char byte : value) bytes_.push_back(static_cast<std::uint8_t>(byte));
    return *this;
  }
  // The text in a field of its own width, cut or filled up.
  FieldWriter& text(std::string_view value, std::size_t width, char filler) {
    text(value.substr(0, width));
    bytes_.resize(bytes_.size() + width - std::min(width, value.size()),
                  static_cast<std::uint8_t>(filler));
    return *this;
  }
  FieldWriter& bytes(const ImageBytes& value) {
    bytes_.insert(bytes_.end(), value.begin(), value.end());
    return *this;
  }

  [[nodiscard]] std::size_t size() const { return bytes_.size(); }
  // Zeros up to the end of the sector.
  void fillSector() { bytes_.resize(sectorsFor(bytes_.size()) * kImageSectorBytes); }

 private:
  ImageBytes& bytes_;
};

}  // namespace quillon::platform
