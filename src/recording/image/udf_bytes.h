// The building stones of UDF 1.02 descriptors: tags with their checksums, texts, identifiers.
#pragma once

#include <string>
#include <string_view>

#include "image/image_bytes.h"

namespace quillon::platform {

enum class UdfTag : std::uint16_t {
  PrimaryVolume = 1,
  AnchorVolume = 2,
  ImplementationUseVolume = 4,
  Partition = 5,
  LogicalVolume = 6,
  UnallocatedSpace = 7,
  Terminating = 8,
  LogicalVolumeIntegrity = 9,
  FileSet = 256,
  FileIdentifier = 257,
  FileEntry = 261,
};

inline constexpr std::size_t kUdfTagBytes = 16;
inline constexpr unsigned kUdfRevision = 0x0102;

// Fills in the tag of the descriptor that starts at start (its tag's bytes are there already) and
// ends at the end of bytes. The checksum covers all of it, so what fills up the sector comes after.
// location is the sector of the descriptor, in the partition for what lies in it.
void sealUdfDescriptor(ImageBytes& bytes, std::size_t start, UdfTag tag, std::uint32_t location);

// Compressed Unicode: a byte that says how wide the characters are, then 8 or 16 bits for each.
std::string udfText(std::u16string_view text);
// The same in a field of a fixed width whose last byte is the length; cut where it is too long.
void putUdfString(FieldWriter& out, std::u16string_view text, std::size_t width);
// The character set of all texts.
void putUdfCharacterSet(FieldWriter& out);

// Identifiers: who wrote a field, and which domain the volume belongs to.
void putUdfImplementation(FieldWriter& out);
void putUdfVersioned(FieldWriter& out, std::string_view identifier);
void putUdfIdentifier(FieldWriter& out, std::string_view identifier);

// Extent of volume space, and the address of blocks in the partition.
inline void putUdfExtent(FieldWriter& out, std::uint32_t bytes, std::uint32_t sector) {
  out.le32(bytes).le32(sector);
}
inline void putUdfLongAddress(FieldWriter& out, std::uint32_t bytes, std::uint32_t block) {
  out.le32(bytes).le32(block).le16(0).zeros(6);
}

}  // namespace quillon::platform
