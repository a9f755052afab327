#include "udf_bytes.h"

#include <algorithm>
#include <array>

#include "image/image_names.h"

namespace quillon::platform {
namespace {

constexpr unsigned kDescriptorVersion = 2;

constexpr std::array<std::uint16_t, 256> crcTable() {
  std::array<std::uint16_t, 256> table{};
  for (unsigned value = 0; value < table.size(); ++value) {
    unsigned crc = value << 8;
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 0x8000) != 0 ? (crc << 1) ^ 0x1021 : crc << 1;
    table[value] = static_cast<std::uint16_t>(crc & 0xFFFF);
  }
  return table;
}
constexpr auto kCrcTable = crcTable();

unsigned crcOf(const std::uint8_t* bytes, std::size_t count) {
  unsigned crc = 0;
  for (std::size_t i = 0; i < count; ++i) {
    crc = ((crc << 8) ^ kCrcTable[((crc >> 8) ^ bytes[i]) & 0xFF]) & 0xFFFF;
  }
  return crc;
}

bool isNarrow(std::u16string_view text) {
  return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit <= 0xFF; });
}

}  // namespace

void sealUdfDescriptor(ImageBytes& bytes, std::size_t start, UdfTag tag, std::uint32_t location) {
  constexpr std::size_t kChecksumAt = 4;
  const std::size_t covered = bytes.size() - start - kUdfTagBytes;
  ImageBytes tagBytes;
  FieldWriter(tagBytes)
      .le16(static_cast<unsigned>(tag))
      .le16(kDescriptorVersion)
      .u8(0)
      .u8(0)
      .le16(0)  // serial number
      .le16(crcOf(bytes.data() + start + kUdfTagBytes, covered))
      .le16(static_cast<unsigned>(covered))
      .le32(location);
  unsigned sum = 0;
  for (const std::uint8_t byte : tagBytes) sum += byte;
  tagBytes[kChecksumAt] = static_cast<std::uint8_t>(sum & 0xFF);
  std::copy(tagBytes.begin(), tagBytes.end(), bytes.begin() + static_cast<std::ptrdiff_t>(start));
}

std::string udfText(std::u16string_view text) {
  if (text.empty()) return {};
  const bool narrow = isNarrow(text);
  std::string bytes(1, narrow ? '\x08' : '\x10');
  for (const char16_t unit : text) {
    if (!narrow) bytes += static_cast<char>(unit >> 8);
    bytes += static_cast<char>(unit & 0xFF);
  }
  return bytes;
}

void putUdfString(FieldWriter& out, std::u16string_view text, std::size_t width) {
  const std::size_t room = width - 2;  // without the width of the characters and the length
  text = cutUnits(text, isNarrow(text) ? room : room / 2);
  const std::string bytes = udfText(text);
  out.text(bytes, width - 1, '\0').u8(static_cast<unsigned>(bytes.size()));
}

void putUdfCharacterSet(FieldWriter& out) { out.u8(0).text("OSTA Compressed Unicode", 63, '\0'); }

void putUdfIdentifier(FieldWriter& out, std::string_view identifier) {
  out.u8(0).text(identifier, 23, '\0').zeros(8);
}

void putUdfVersioned(FieldWriter& out, std::string_view identifier) {
  out.u8(0).text(identifier, 23, '\0').le16(kUdfRevision).zeros(6);
}

void putUdfImplementation(FieldWriter& out) {
  constexpr unsigned kUnix = 4;
  constexpr unsigned kLinux = 5;
  out.u8(0).text("*Quillon", 23, '\0').u8(kUnix).u8(kLinux).zeros(6);
}

}  // namespace quillon::platform
