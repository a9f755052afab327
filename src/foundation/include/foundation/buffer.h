// The system's raw byte container: a block that it owns or refers to. Filled once in its life.
#pragma once

#include <cstdint>

namespace quillon {

class CBuffer {
 public:
  CBuffer() = default;
  virtual ~CBuffer();
  CBuffer(const CBuffer&) = delete;
  CBuffer& operator=(const CBuffer&) = delete;

  // Both answer 0 on success, unlike every other operation of the system.
  // A new block of undefined contents. 1, and nothing changed, when the buffer already holds data
  // or memory ran out.
  [[nodiscard]] int Allocate(std::uint32_t sizeBytes);
  // Refers to a block, and frees it when it owns it. 1, and nothing changed, when the buffer
  // already holds data. With owns, data was made by new[].
  [[nodiscard]] int Attach(std::uint8_t* data, std::uint32_t sizeBytes, bool owns);
  [[nodiscard]] std::uint8_t* GetData() const { return data_; }
  [[nodiscard]] std::uint32_t GetSize() const { return sizeBytes_; }
  [[nodiscard]] bool IsEmpty() const { return data_ == nullptr && sizeBytes_ == 0; }

 private:
  std::uint8_t* data_ = nullptr;
  std::uint32_t sizeBytes_ = 0;
  bool owns_ = false;
};

}  // namespace quillon
