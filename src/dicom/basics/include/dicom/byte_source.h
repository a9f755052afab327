// Bytes that are read as a file's are, wherever they lie: in an archive, in an image, in memory.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quillon {

class DcByteSource {
 public:
  virtual ~DcByteSource() = default;
  [[nodiscard]] virtual std::uint64_t sizeBytes() const = 0;
  // The bytes [offset, offset + lengthBytes), which lie within sizeBytes(). False when not all of
  // them can be had.
  [[nodiscard]] virtual bool readAt(std::uint64_t offset, void* buffer,
                                    std::size_t lengthBytes) = 0;
};

}  // namespace quillon
