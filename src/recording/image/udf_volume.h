// The descriptors that make a volume of sectors a UDF volume.
#pragma once

#include <string>

#include "image/image_bytes.h"
#include "image/image_time.h"

namespace quillon::platform {

struct UdfVolume {
  std::u16string name;
  std::u16string setName;  // starts with 16 characters that no other volume has
  ImageTime made;
  std::uint32_t partitionSectors = 0;
  std::uint32_t rootBlock = 0;  // of the root's file entry
  std::uint32_t files = 0;
  std::uint32_t directories = 0;
  std::uint64_t nextUniqueId = 0;
};

inline constexpr std::uint32_t kUdfMainSequence = 32;
inline constexpr std::uint32_t kUdfReserveSequence = 48;
inline constexpr std::uint32_t kUdfIntegritySequence = 64;
inline constexpr std::uint32_t kUdfAnchor = 256;

// Three sectors that say that UDF descriptors follow.
ImageBytes udfRecognition();
// The anchor of sector kUdfAnchor or of the last one, which points at both sequences.
ImageBytes udfAnchor(std::uint32_t sector);
// One of the two equal sequences, which starts at that sector.
ImageBytes udfVolumeSequence(const UdfVolume& volume, std::uint32_t sector);
ImageBytes udfIntegritySequence(const UdfVolume& volume);
// Blocks 0 and 1 of the partition.
ImageBytes udfFileSet(const UdfVolume& volume);

}  // namespace quillon::platform
