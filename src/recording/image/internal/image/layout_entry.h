// One file or directory of an image whose place is fixed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "image/image_tree.h"

namespace quillon::platform {

// Entries are numbered in the order in which their data lies: a directory, its files in ascending
// order (a DICOMDIR in the root before all others), then its directories with what is in them.
// The data of one that is last lies behind all others.
struct LayoutEntry {
  std::u16string name;
  std::uint32_t parent = 0;
  bool isDirectory = false;
  std::int64_t modified = 0;
  std::uint64_t size = 0;
  FileSource source;
  bool isLast = false;
  std::uint32_t dataSector = 0;  // of a file that is not empty

  // Of a directory: its files are numbered one after the other.
  std::uint32_t firstFile = 0;
  std::uint32_t fileCount = 0;
  std::vector<std::uint32_t> directories;

  // All children, files first.
  [[nodiscard]] std::vector<std::uint32_t> children() const {
    std::vector<std::uint32_t> all;
    all.reserve(fileCount + directories.size());
    for (std::uint32_t i = 0; i < fileCount; ++i) all.push_back(firstFile + i);
    all.insert(all.end(), directories.begin(), directories.end());
    return all;
  }
};

using LayoutEntries = std::vector<LayoutEntry>;

}  // namespace quillon::platform
