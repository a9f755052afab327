// A file of a medium in memory.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "medium/medium_source.h"

namespace quillon {

// False when it cannot be read or is larger.
inline bool ReadWhole(MediumSource& medium, TextView path, std::uint64_t maxBytes,
                      std::string& bytes) {
  const std::unique_ptr<MediumFile> file = medium.Open(path);
  if (file == nullptr || file->SizeBytes() > maxBytes) return false;
  bytes.resize(static_cast<std::size_t>(file->SizeBytes()));
  return bytes.empty() || file->ReadAt(0, bytes.data(), bytes.size());
}

}  // namespace quillon
