// Where everything lies in an image, computed before the first byte of a file is read. Directories
// and descriptors are made when they are asked for; nothing of the size of the tree is kept beside
// the list of its entries.
//
// Sectors, of 2048 bytes:
//   0     empty (system area)
//   16    ISO 9660 volume descriptors, then the UDF recognition sequence
//   32    UDF main volume descriptors, 48 reserve, 64 integrity         | only with UDF
//   256   UDF anchor; 257 is block 0 of the partition, its file set     |
//   next  UDF file entries and directories, directory by directory
//         ISO 9660 path tables (little endian, big endian) and directories, then those of Joliet
//         file data, in the order of the entries: DICOMDIR, then directory by directory; then that
//         of a late file
//   last  UDF anchor
// The file data is there once; all file systems point at it.
#pragma once

#include <memory>
#include <optional>

#include "image/image_bytes.h"
#include "image/image_time.h"
#include "image/image_tree.h"
#include "image/iso9660_tree.h"
#include "image/layout_entry.h"
#include "image/udf_tree.h"

namespace quillon::platform {

// A run of sectors that is made or read as a whole.
struct Segment {
  enum class Kind : std::uint8_t {
    Fixed,  // index in the list of the layout
    PathTable,
    BigEndianPathTable,
    IsoDirectory,  // index of the directory in its tree
    UdfDirectory,  // index of the entry
    UdfFiles,      // index of the first entry
    FileData,      // index of the entry
  };

  std::uint32_t sector = 0;
  std::uint32_t sectors = 0;
  Kind kind = Kind::Fixed;
  std::uint8_t isoTree = 0;  // 0 ISO 9660, 1 Joliet
  std::uint32_t index = 0;
};

class ImageLayout {
 public:
  // Refuses a tree that the settings do not allow.
  static HRESULT make(const ImageNode& root, const ImageSettings& settings,
                      std::shared_ptr<const ImageLayout>& layout);

  [[nodiscard]] std::uint32_t sectors() const { return sectors_; }
  [[nodiscard]] std::uint64_t sizeBytes() const {
    return std::uint64_t{sectors_} * kImageSectorBytes;
  }
  [[nodiscard]] const LayoutEntry& entry(std::uint32_t index) const { return entries_[index]; }
  // The segment that holds the sector, else the next one; the end when only zeros follow.
  [[nodiscard]] std::size_t segmentAt(std::uint32_t sector) const;
  [[nodiscard]] std::size_t segmentCount() const { return segments_.size(); }
  [[nodiscard]] const Segment& segment(std::size_t index) const { return segments_[index]; }
  // The bytes of a segment that is not file data.
  [[nodiscard]] ImageBytes metadata(const Segment& segment) const;

 private:
  explicit ImageLayout(const ImageSettings& settings) : settings_(settings) {}

  HRESULT prepare(const ImageNode& root);
  void flatten(const ImageNode& directory, std::uint32_t parent);
  std::uint32_t addEntry(const ImageNode& node, std::uint32_t parent);
  void computeIdentity();
  HRESULT place();
  void placeIsoTree(std::uint8_t which);
  void placeUdfTree();
  bool placeFiles();
  void addDescriptors();
  void add(Segment::Kind kind, std::uint32_t index, std::uint64_t sectors,
           std::uint8_t isoTree = 0);
  void addFixed(std::uint32_t sector, ImageBytes bytes);

  ImageSettings settings_;
  ImageTime made_;
  // A number made of the names, sizes and times; the same for the same tree and clock.
  std::uint64_t identity_ = 0;
  std::vector<LayoutEntry> entries_;
  std::optional<IsoTree> isoTrees_[2];
  std::optional<UdfTree> udf_;
  std::vector<ImageBytes> fixed_;
  std::vector<Segment> segments_;  // ascending
  std::uint64_t next_ = 0;         // the first sector that is not given out yet
  std::uint32_t dataSector_ = 0;
  std::uint32_t sectors_ = 0;
};

}  // namespace quillon::platform
