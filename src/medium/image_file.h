// The bytes of an image, whatever lies in it. No byte beyond its end is ever asked of the system.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "foundation/text.h"
#include "medium/medium_source.h"

namespace quillon {

// A file of the system, as the bytes of an image. Null when it cannot be opened.
[[nodiscard]] std::unique_ptr<MediumFile> OpenSystemFile(const Text& path);

class ImageFile {
 public:
  // Null: there is no image.
  explicit ImageFile(std::unique_ptr<MediumFile> bytes);

  [[nodiscard]] bool IsOpen() const { return bytes_ != nullptr; }
  [[nodiscard]] std::uint64_t SizeBytes() const { return sizeBytes_; }
  // Whether all of [offset, offset + count) lies in the image.
  [[nodiscard]] bool Holds(std::uint64_t offset, std::uint64_t count) const {
    return offset <= sizeBytes_ && count <= sizeBytes_ - offset;
  }
  // False, with the bytes undefined, when not all of them can be had.
  [[nodiscard]] bool ReadAt(std::uint64_t offset, void* bytes, std::size_t count);

 private:
  [[nodiscard]] bool FillBlock(std::uint64_t block);

  std::unique_ptr<MediumFile> bytes_;
  std::uint64_t sizeBytes_ = 0;
  // Directories are read a few bytes at a time: the block that was asked of last.
  std::vector<std::uint8_t> block_;
  std::uint64_t blockNumber_ = UINT64_MAX;
};

// A part of the image that belongs to a file or directory.
struct ImageExtent {
  std::uint64_t offset = 0;  // in the image
  std::uint64_t bytes = 0;
  bool isHole = false;  // nothing was recorded: zeros
};

// Extents as the bytes of one file. The image outlives it.
class ExtentBytes {
 public:
  // Those behind sizeBytes are not looked at.
  ExtentBytes(ImageFile& image, const std::vector<ImageExtent>& extents, std::uint64_t sizeBytes);

  // Whether the extents are as long as the file, and lie in the image.
  [[nodiscard]] bool IsWhole() const { return isWhole_; }
  [[nodiscard]] std::uint64_t SizeBytes() const { return sizeBytes_; }
  [[nodiscard]] bool ReadAt(std::uint64_t offset, void* bytes, std::size_t count);

 private:
  struct Piece {
    std::uint64_t start;  // in the file
    ImageExtent extent;
  };

  ImageFile& image_;
  std::vector<Piece> pieces_;
  std::uint64_t sizeBytes_;
  bool isWhole_ = false;
};

// Numbers of the formats, of which whoever calls has seen that they are there.
inline std::uint16_t Little16(const std::uint8_t* at) {
  return static_cast<std::uint16_t>(at[0] | at[1] << 8);
}
inline std::uint32_t Little32(const std::uint8_t* at) {
  return Little16(at) | static_cast<std::uint32_t>(Little16(at + 2)) << 16;
}
inline std::uint64_t Little64(const std::uint8_t* at) {
  return Little32(at) | static_cast<std::uint64_t>(Little32(at + 4)) << 32;
}

}  // namespace quillon
