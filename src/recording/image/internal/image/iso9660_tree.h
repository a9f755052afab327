// The directory hierarchy of ISO 9660 or of Joliet over the entries of an image.
#pragma once

#include "image/image_bytes.h"
#include "image/image_names.h"
#include "image/image_time.h"
#include "image/layout_entry.h"

namespace quillon::platform {

class IsoTree {
 public:
  // The entries must outlive the tree. Without hasEntries it is a root with nothing in it.
  IsoTree(const LayoutEntries& entries, NameRules rules, bool hasEntries)
      : entries_(entries), rules_(rules), hasEntries_(hasEntries) {}

  // Names, order and sizes.
  HRESULT prepare();

  // Directories are numbered in the order of the path table, from 0.
  [[nodiscard]] std::uint32_t directoryCount() const {
    return static_cast<std::uint32_t>(directories_.size());
  }
  [[nodiscard]] std::uint32_t directorySectors(std::uint32_t index) const {
    return directories_[index].sectors;
  }
  void placeDirectory(std::uint32_t index, std::uint32_t sector) {
    directories_[index].sector = sector;
  }
  void placePathTables(std::uint32_t littleEndian, std::uint32_t bigEndian) {
    pathTable_ = littleEndian;
    bigEndianPathTable_ = bigEndian;
  }
  // What the records of empty files point at.
  void placeEmptyFiles(std::uint32_t sector) { emptyFileSector_ = sector; }

  [[nodiscard]] std::uint32_t pathTableBytes() const { return pathTableBytes_; }
  [[nodiscard]] ImageBytes pathTable(bool bigEndian) const;
  [[nodiscard]] ImageBytes directory(std::uint32_t index) const;

  struct Volume {
    std::u16string name;  // legal in this tree
    std::string setName;
    std::uint32_t sectors;
    ImageTime made;
  };
  [[nodiscard]] ImageBytes volumeDescriptor(const Volume& volume) const;

 private:
  struct Directory {
    std::uint32_t entry;
    std::uint32_t parent;  // its number
    std::uint32_t sector;
    std::uint32_t sectors;
    std::vector<std::uint32_t> children;  // entries in the order of their records
  };

  [[nodiscard]] bool isJoliet() const { return rules_ == NameRules::Joliet; }
  [[nodiscard]] std::string encode(std::u16string_view text) const;
  [[nodiscard]] std::string identifier(std::uint32_t entry) const;
  [[nodiscard]] bool comesBefore(std::uint32_t a, std::uint32_t b) const;
  HRESULT nameChildren(Directory& directory);
  [[nodiscard]] std::uint32_t sizeInSectors(const Directory& directory) const;
  void putRecords(FieldWriter& out, std::uint32_t entry) const;
  void putDirectoryRecord(FieldWriter& out, const Directory& directory,
                          std::string_view name) const;

  const LayoutEntries& entries_;
  NameRules rules_;
  bool hasEntries_;
  std::vector<std::u16string> names_;           // by entry
  std::vector<std::uint32_t> directoryNumber_;  // by entry
  std::vector<Directory> directories_;
  std::uint32_t pathTableBytes_ = 0;
  std::uint32_t pathTable_ = 0;
  std::uint32_t bigEndianPathTable_ = 0;
  std::uint32_t emptyFileSector_ = 0;
};

// The descriptor that ends the list of volume descriptors.
ImageBytes isoTerminator();

}  // namespace quillon::platform
