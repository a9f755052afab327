#include "dicom/elem_value_buf.h"

#include <utility>

namespace quillon {

DcElemValueBuf DcElemValueBuf::copyOf(const void* bytes, std::uint32_t lengthBytes,
                                      DcUid transferSyntax) {
  DcElemValueBuf segment;
  segment.owns_ = true;
  if (bytes != nullptr) {
    const auto* const first = static_cast<const std::uint8_t*>(bytes);
    segment.owned_.assign(first, first + lengthBytes);
    segment.lengthBytes_ = lengthBytes;
  }
  segment.transferSyntax_ = transferSyntax;
  return segment;
}

DcElemValueBuf DcElemValueBuf::inFile(std::string fileName, std::uint64_t offsetInFile,
                                      std::uint32_t lengthBytes, DcUid transferSyntax) {
  DcElemValueBuf segment;
  segment.storage_ = Storage::File;
  segment.fileName_ = std::move(fileName);
  segment.offsetInFile_ = offsetInFile;
  segment.lengthBytes_ = lengthBytes;
  segment.transferSyntax_ = transferSyntax;
  return segment;
}

DcElemValueBuf DcElemValueBuf::view() const {
  DcElemValueBuf segment;
  segment.storage_ = storage_;
  segment.data_ = data();
  segment.fileName_ = fileName_;
  segment.offsetInFile_ = offsetInFile_;
  segment.lengthBytes_ = lengthBytes_;
  segment.transferSyntax_ = transferSyntax_;
  return segment;
}

}  // namespace quillon
