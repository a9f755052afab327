// One open file of a medium as the toolkit reads it. The first piece can be kept, so that a file
// that is summed too is read once.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "dicom/byte_source.h"
#include "dicom/elem_list.h"
#include "dicom/read_file.h"
#include "medium/medium_source.h"

namespace quillon {

// What the header of a file says.
struct FileHead {
  DcCode code = kDcOk;
  DcFileReading reading;    // the meta information as it stands there
  DcFileMetaInfo metaInfo;  // completed from the data set
  DcElemList elements;
  bool isCut = false;  // the pixel data does not end within the file
};

class HeadReader final : public DcByteSource {
 public:
  // kept: where the first piece goes; empty: nothing is kept.
  HeadReader(MediumFile& file, std::span<std::uint8_t> kept) : file_(file), kept_(kept) {}

  [[nodiscard]] std::uint64_t sizeBytes() const override { return file_.SizeBytes(); }
  [[nodiscard]] bool readAt(std::uint64_t offset, void* buffer, std::size_t lengthBytes) override;

  // "DICM" behind the preamble.
  [[nodiscard]] bool HasMagic();
  void ReadHead(const char* name, const DcTagSet& wanted, FileHead& head);

  // The file's next piece, from its beginning on, for its sum; empty at its end. Valid until the
  // next call. False when it cannot be read.
  [[nodiscard]] bool NextPiece(std::span<const std::uint8_t>& piece);
  [[nodiscard]] bool HasFailed() const { return hasFailed_; }

 private:
  [[nodiscard]] bool FillKept();
  [[nodiscard]] bool ArePixelFragmentsWhole(std::uint64_t at);

  MediumFile& file_;
  std::span<std::uint8_t> kept_;
  std::size_t keptBytes_ = 0;  // at the beginning of the file
  bool isKept_ = false;
  std::uint64_t nextPieceAt_ = 0;
  bool hasFailed_ = false;
};

}  // namespace quillon
