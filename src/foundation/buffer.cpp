#include "foundation/buffer.h"

#include <new>

namespace quillon {

namespace {
constexpr int kFilled = 0;
constexpr int kRefused = 1;
}  // namespace

CBuffer::~CBuffer() {
  if (owns_) delete[] data_;
}

int CBuffer::Allocate(std::uint32_t sizeBytes) {
  if (data_ != nullptr) return kRefused;
  auto* block = new (std::nothrow) std::uint8_t[sizeBytes];
  return block == nullptr ? kRefused : Attach(block, sizeBytes, /*owns=*/true);
}

int CBuffer::Attach(std::uint8_t* data, std::uint32_t sizeBytes, bool owns) {
  if (data_ != nullptr) return kRefused;
  data_ = data;
  sizeBytes_ = sizeBytes;
  owns_ = owns;
  return kFilled;
}

}  // namespace quillon
