// The file entries and directories of UDF over the entries of an image. Blocks count from the start
// of the partition.
#pragma once

#include "image/image_bytes.h"
#include "image/layout_entry.h"

namespace quillon::platform {

class UdfTree {
 public:
  // The first sector of the partition.
  static constexpr std::uint32_t kPartitionSector = 257;

  // The entries must outlive the tree.
  explicit UdfTree(const LayoutEntries& entries) : entries_(entries) {}

  HRESULT prepare();

  // A directory's file entry with its list of names behind it; for a file one block.
  [[nodiscard]] std::uint32_t entryBlocks(std::uint32_t entry) const;
  void placeEntry(std::uint32_t entry, std::uint32_t block) { blocks_[entry] = block; }
  [[nodiscard]] std::uint32_t entryBlock(std::uint32_t entry) const { return blocks_[entry]; }

  [[nodiscard]] ImageBytes directory(std::uint32_t entry) const;
  [[nodiscard]] ImageBytes files(std::uint32_t first, std::uint32_t count) const;

  // Unique identifiers of the entries end before this number.
  [[nodiscard]] std::uint64_t nextUniqueId() const;

 private:
  void putFileEntry(ImageBytes& bytes, std::uint32_t entry) const;
  void putIdentifier(ImageBytes& bytes, std::size_t listStart, std::uint32_t listBlock,
                     std::uint32_t target, bool isParent) const;

  const LayoutEntries& entries_;
  std::vector<std::string> names_;        // compressed Unicode, by entry
  std::vector<std::uint32_t> listBytes_;  // of a directory's list of names, by entry
  std::vector<std::uint32_t> blocks_;     // of the file entry, by entry
};

}  // namespace quillon::platform
