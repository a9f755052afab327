// The pixel data of an icon image. Its VR and byte order say less than they should: implicit data
// sets name neither, and in a compressed object an icon that is not compressed carries the
// object's syntax.
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "dicom/byte_order.h"
#include "dicom/dict.h"
#include "dicom/elem_sq.h"
#include "dicom/log.h"
#include "dicom/parse_header.h"
#include "dicom/tags.h"

namespace quillon {
namespace {

bool readUint16(const DcElemSqItem& item, DcTag tag, std::uint16_t& value) {
  if (item.getValue(tag, value) == kDcOk) return true;
  dcLog(DcLogLevel::Error, "DcElemSqItem::processIconImage", "Missing or invalid %s",
        dcTagName(tag).c_str());
  return false;
}

// Words of a big endian data set change their order before they are called little endian.
DcElemValueBuf asLittleEndian(const DcElemValueBuf& segment) {
  std::vector<std::uint8_t> bytes(segment.data(), segment.data() + segment.lengthBytes());
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
  return DcElemValueBuf::copyOf(bytes.data(), segment.lengthBytes(), DcUid::ExplicitLittleEndian);
}

}  // namespace

DcCode DcElemSqItem::processIconImage() {
  DcElem* pixelData = find(tags::kPixelData);
  if (pixelData == nullptr) return kDcOk;
  std::uint16_t rows = 0;
  std::uint16_t columns = 0;
  std::uint16_t bitsStored = 0;
  // Each missing one has its message.
  const bool hasRows = readUint16(*this, tags::kRows, rows);
  const bool hasColumns = readUint16(*this, tags::kColumns, columns);
  const bool hasBits = readUint16(*this, tags::kBitsStored, bitsStored);
  if (!hasRows || !hasColumns || !hasBits) return kDcNotAccepted;

  const unsigned bytesPerPixel = bitsStored <= 8 ? 1 : 2;
  std::uint64_t length = 0;
  for (const DcElemValueBuf& segment : pixelData->segments()) length += segment.lengthBytes();
  // Another length means that the icon is compressed: it keeps the data set's syntax.
  if (length != std::uint64_t{rows} * columns * bytesPerPixel) return kDcOk;

  const bool isWords = pixelData->resolvedVr() != DcVr::OB;
  for (DcElemValueBuf& segment : pixelData->segments()) {
    if (isWords && isBigEndian(segment.transferSyntax()) && segment.data() != nullptr) {
      segment = asLittleEndian(segment);
    } else {
      segment.setTransferSyntax(DcUid::ExplicitLittleEndian);
    }
  }
  pixelData->setVr(bytesPerPixel == 1 ? DcVr::OB : DcVr::OW);
  return kDcOk;
}

}  // namespace quillon
