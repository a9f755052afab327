#include "dicom/dir_bytes.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "dicom/byte_order.h"
#include "dicom/file.h"

namespace quillon {

void DcDirBytes::clear() {
  pieces_.clear();
  size_ = 0;
}

void DcDirBytes::append(const std::vector<std::uint8_t>& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const std::size_t at = size_ % kPieceBytes;
    // What is not written to yet takes no memory.
    if (at == 0) {
      std::unique_ptr<std::uint8_t[]> piece(new std::uint8_t[kPieceBytes]);
      pieces_.push_back(std::move(piece));
    }
    const std::size_t count = std::min(bytes.size() - done, kPieceBytes - at);
    std::copy_n(bytes.data() + done, count, pieces_.back().get() + at);
    done += count;
    size_ += count;
  }
}

void DcDirBytes::patch(std::size_t offset, std::uint32_t value) {
  std::array<std::uint8_t, sizeof value> bytes{};
  storeLe32(bytes.data(), value);
  for (const std::uint8_t byte : bytes) {
    pieces_[offset / kPieceBytes][offset % kPieceBytes] = byte;
    ++offset;
  }
}

bool DcDirBytes::writeTo(DcFile& file) const {
  std::size_t left = size_;
  for (const auto& piece : pieces_) {
    const std::size_t count = std::min(left, kPieceBytes);
    if (!file.write(piece.get(), count)) return false;
    left -= count;
  }
  return true;
}

}  // namespace quillon
