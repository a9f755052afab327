// One raw segment of a bulk value (OB, OW, UN, ...): bytes in memory, owned or not, or a stretch
// of a file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dicom/types.h"

namespace quillon {

class DcElemValueBuf {
 public:
  enum class Storage { Memory, File };

  DcElemValueBuf() = default;
  static DcElemValueBuf copyOf(const void* bytes, std::uint32_t lengthBytes, DcUid transferSyntax);
  static DcElemValueBuf inFile(std::string fileName, std::uint64_t offsetInFile,
                               std::uint32_t lengthBytes, DcUid transferSyntax);
  // Refers to the same bytes without owning them: valid while this segment lives.
  [[nodiscard]] DcElemValueBuf view() const;

  [[nodiscard]] bool ownsMemory() const { return owns_; }
  [[nodiscard]] Storage storage() const { return storage_; }
  // Null for a file segment.
  [[nodiscard]] const std::uint8_t* data() const { return owns_ ? owned_.data() : data_; }
  [[nodiscard]] std::uint32_t lengthBytes() const { return lengthBytes_; }
  [[nodiscard]] const std::string& fileName() const { return fileName_; }
  [[nodiscard]] std::uint64_t offsetInFile() const { return offsetInFile_; }
  [[nodiscard]] DcUid transferSyntax() const { return transferSyntax_; }
  void setTransferSyntax(DcUid transferSyntax) { transferSyntax_ = transferSyntax; }

 private:
  Storage storage_ = Storage::Memory;
  bool owns_ = false;
  const std::uint8_t* data_ = nullptr;
  std::vector<std::uint8_t> owned_;
  std::string fileName_;
  std::uint64_t offsetInFile_ = 0;
  std::uint32_t lengthBytes_ = 0;
  DcUid transferSyntax_ = DcUid::ExplicitLittleEndian;
};

}  // namespace quillon
