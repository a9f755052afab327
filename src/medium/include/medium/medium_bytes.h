// A file of a medium as the toolkit reads files.
#pragma once

#include "dicom/byte_source.h"
#include "medium/medium_source.h"

namespace quillon {

class MediumBytes final : public DcByteSource {
 public:
  explicit MediumBytes(MediumFile& file) : file_(file) {}

  [[nodiscard]] std::uint64_t sizeBytes() const override { return file_.SizeBytes(); }
  [[nodiscard]] bool readAt(std::uint64_t offset, void* buffer, std::size_t lengthBytes) override {
    return file_.ReadAt(offset, buffer, lengthBytes);
  }

 private:
  MediumFile& file_;
};

}  // namespace quillon
