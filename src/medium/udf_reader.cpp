// UDF 1.02 to 2.01 with plain partitions. Every descriptor begins with a tag of 16 bytes:
//     0  what it is     4  sum of the other bytes of the tag     8  CRC of what follows
//    10  length of that       12  the block that it stands in
// An anchor (block 256, the last one or the 257th last) tells where the descriptors of the volume
// lie; these tell the partition, the size of a block and where the file set descriptor is, and that
// one the file entry of the root directory. A directory is a list of identifiers, each of which
// names a file entry; a file entry tells where the data lies.
#include <algorithm>
#include <array>
#include <optional>

#include "image_file_system.h"

namespace quillon {

namespace {

using Kind = MediumEntry::Kind;

enum class Tag : std::uint16_t {
  Anchor = 2,
  Partition = 5,
  LogicalVolume = 6,
  Terminating = 8,
  FileSet = 256,
  FileIdentifier = 257,
  AllocationExtent = 258,
  FileEntry = 261,
  ExtendedFileEntry = 266,
};

constexpr std::size_t kTagBytes = 16;
constexpr std::array<std::uint32_t, 4> kBlockSizes{2048, 512, 4096, 1024};
constexpr std::uint64_t kAnchorBlock = 256;
constexpr std::uint32_t kMostDescriptors = 256;
constexpr std::size_t kMostPartitions = 64;
constexpr std::size_t kMostExtents = std::size_t{1} << 20;

constexpr std::uint8_t kTypeDirectory = 4;
constexpr std::uint8_t kTypeFile = 5;
constexpr std::uint8_t kTypeLink = 12;

constexpr unsigned kIsDeleted = 0x04;
constexpr unsigned kIsParent = 0x08;

using Block = std::vector<std::uint8_t>;

struct Address {
  std::uint32_t block = 0;
  std::uint16_t partition = 0;  // index in the map of the logical volume
};

struct Partition {
  std::uint64_t firstBlock = 0;
  std::uint64_t blocks = 0;
};

constexpr std::array<std::uint16_t, 256> CrcTable() {
  constexpr unsigned kPolynomial = 0x1021;
  std::array<std::uint16_t, 256> table{};
  for (unsigned i = 0; i < table.size(); ++i) {
    unsigned crc = i << 8;
    for (int bit = 0; bit < 8; ++bit) {
      crc = (crc & 0x8000U) != 0 ? crc << 1 ^ kPolynomial : crc << 1;
    }
    table[i] = static_cast<std::uint16_t>(crc);
  }
  return table;
}

std::uint16_t CrcOf(const std::uint8_t* bytes, std::size_t count) {
  static constexpr std::array<std::uint16_t, 256> kTable = CrcTable();
  unsigned crc = 0;
  for (std::size_t i = 0; i < count; ++i) {
    crc = (crc << 8 ^ kTable[(crc >> 8 ^ bytes[i]) & 0xFFU]) & 0xFFFFU;
  }
  return static_cast<std::uint16_t>(crc);
}

// Of at least the bytes of a tag.
bool HasTag(const Block& bytes, Tag tag) {
  if (Little16(bytes.data()) != static_cast<std::uint16_t>(tag)) return false;
  unsigned sum = 0;
  for (std::size_t i = 0; i < kTagBytes; ++i) sum += i == 4 ? 0U : bytes[i];
  if ((sum & 0xFFU) != bytes[4]) return false;
  const std::size_t length = Little16(&bytes[10]);
  return length <= bytes.size() - kTagBytes &&
         CrcOf(bytes.data() + kTagBytes, length) == Little16(&bytes[8]);
}

// A byte that tells the width of the characters, and the characters. False for neither width.
bool ReadName(const std::uint8_t* bytes, std::size_t count, Text& name) {
  name.clear();
  if (count < 2) return false;
  const bool isWide = bytes[0] == 16 || bytes[0] == 255;
  if (!isWide && bytes[0] != 8 && bytes[0] != 254) return false;
  if (!isWide) {
    for (std::size_t i = 1; i < count; ++i) name += static_cast<OLECHAR>(bytes[i]);
    return true;
  }
  for (std::size_t i = 1; i + 1 < count; i += 2) {
    name += static_cast<OLECHAR>(bytes[i] << 8 | bytes[i + 1]);
  }
  return !name.empty();
}

// A file entry, once it is known to be one.
struct FileEntry {
  Block block;
  std::uint64_t offset = 0;  // in the image
  std::uint8_t type = 0;
  unsigned allocation = 0;  // what the allocation descriptors are
  std::uint64_t sizeBytes = 0;
  std::size_t allocationsAt = 0;
  std::size_t allocationBytes = 0;
};

class Udf final : public ImageFileSystem {
 public:
  Udf(ImageFile& image, std::uint32_t blockBytes) : image_(image), blockBytes_(blockBytes) {}

  // Down to the root directory.
  [[nodiscard]] bool Mount(Text& unsupported);

  [[nodiscard]] const ImageItem& Root() const override { return root_; }
  [[nodiscard]] bool ReadDirectory(const ImageItem& directory, std::size_t mostItems,
                                   std::vector<ImageItem>& items) override;
  [[nodiscard]] bool FindExtents(const ImageItem& file, std::vector<ImageExtent>& extents) override;

 private:
  [[nodiscard]] bool ReadBlock(std::uint64_t block, Block& bytes);
  [[nodiscard]] bool ReadVolume(Text& unsupported);
  [[nodiscard]] bool ReadDescriptors(std::uint32_t bytes, std::uint32_t firstBlock,
                                     Text& unsupported);
  void TakePartition(const Block& bytes);
  [[nodiscard]] bool TakeMap(const Block& volume, Text& unsupported);
  [[nodiscard]] bool ReadRoot();
  [[nodiscard]] bool Locate(Address address, std::uint64_t& offset) const;
  [[nodiscard]] bool ReadEntry(std::uint64_t offset, FileEntry& entry);
  [[nodiscard]] bool ReadExtents(const FileEntry& entry, std::uint16_t partition,
                                 std::vector<ImageExtent>& extents);
  [[nodiscard]] bool FillItem(Address address, ImageItem& item);
  [[nodiscard]] std::uint16_t PartitionOf(std::uint64_t offset) const;

  struct FoundPartition {
    std::uint16_t number = 0;
    std::uint32_t sequence = 0;
    Partition partition;
  };

  ImageFile& image_;
  std::uint32_t blockBytes_;
  std::vector<FoundPartition> found_;
  Block volume_;                       // the logical volume descriptor that holds
  std::vector<Partition> partitions_;  // as the logical volume numbers them
  ImageItem root_;
};

bool Udf::ReadBlock(std::uint64_t block, Block& bytes) {
  bytes.resize(blockBytes_);
  return block <= image_.SizeBytes() / blockBytes_ &&
         image_.ReadAt(block * blockBytes_, bytes.data(), bytes.size());
}

bool Udf::Mount(Text& unsupported) { return ReadVolume(unsupported) && ReadRoot(); }

bool Udf::ReadVolume(Text& unsupported) {
  const std::uint64_t blocks = image_.SizeBytes() / blockBytes_;
  for (const std::uint64_t back : {std::uint64_t{0}, std::uint64_t{1}, kAnchorBlock + 1}) {
    if (back > blocks) continue;
    Block anchor;
    if (!ReadBlock(back == 0 ? kAnchorBlock : blocks - back, anchor)) continue;
    if (!HasTag(anchor, Tag::Anchor)) continue;
    // The main descriptors, and their reserve.
    for (const std::size_t at : {kTagBytes, kTagBytes + 8}) {
      if (ReadDescriptors(Little32(&anchor[at]), Little32(&anchor[at + 4]), unsupported)) {
        return true;
      }
      if (!unsupported.empty()) return false;
    }
  }
  return false;
}

// Of those that stand there several times the one with the highest number holds.
bool Udf::ReadDescriptors(std::uint32_t bytes, std::uint32_t firstBlock, Text& unsupported) {
  constexpr std::size_t kSequenceAt = 16;
  found_.clear();
  volume_.clear();
  const std::uint32_t blocks = std::min(bytes / blockBytes_, kMostDescriptors);
  for (std::uint32_t i = 0; i < blocks; ++i) {
    Block descriptor;
    if (!ReadBlock(std::uint64_t{firstBlock} + i, descriptor)) break;
    if (HasTag(descriptor, Tag::Terminating)) break;
    if (HasTag(descriptor, Tag::Partition)) {
      TakePartition(descriptor);
    } else if (HasTag(descriptor, Tag::LogicalVolume) &&
               (volume_.empty() ||
                Little32(&descriptor[kSequenceAt]) >= Little32(&volume_[kSequenceAt]))) {
      volume_ = descriptor;
    }
  }
  return !volume_.empty() && TakeMap(volume_, unsupported);
}

void Udf::TakePartition(const Block& bytes) {
  const std::uint32_t sequence = Little32(&bytes[16]);
  const std::uint16_t number = Little16(&bytes[22]);
  const Partition partition{Little32(&bytes[188]), Little32(&bytes[192])};
  for (FoundPartition& one : found_) {
    if (one.number != number) continue;
    if (sequence >= one.sequence) one = {number, sequence, partition};
    return;
  }
  found_.push_back({number, sequence, partition});
}

bool Udf::TakeMap(const Block& volume, Text& unsupported) {
  constexpr std::size_t kMapAt = 440;
  constexpr std::size_t kPlainMapBytes = 6;
  partitions_.clear();
  if (Little32(&volume[212]) != blockBytes_) return false;
  const std::size_t count = Little32(&volume[268]);
  const std::size_t end = kMapAt + std::min<std::size_t>(Little32(&volume[264]), volume.size());
  std::size_t at = kMapAt;
  for (std::size_t i = 0; i < count && i < kMostPartitions; ++i) {
    if (at + kPlainMapBytes > std::min(end, volume.size())) return false;
    if (volume[at] != 1) {
      unsupported = OLESTR("a partition that is virtual, sparable or of metadata");
      return false;
    }
    if (volume[at + 1] != kPlainMapBytes) return false;
    const std::uint16_t number = Little16(&volume[at + 4]);
    const auto found = std::ranges::find(found_, number, &FoundPartition::number);
    if (found == found_.end()) return false;
    partitions_.push_back(found->partition);
    at += kPlainMapBytes;
  }
  return !partitions_.empty();
}

bool Udf::ReadRoot() {
  const std::uint32_t block = Little32(&volume_[252]);
  std::uint64_t offset = 0;
  Block fileSet;
  if (!Locate({block, Little16(&volume_[256])}, offset) ||
      !ReadBlock(offset / blockBytes_, fileSet) || !HasTag(fileSet, Tag::FileSet)) {
    return false;
  }
  return FillItem({Little32(&fileSet[404]), Little16(&fileSet[408])}, root_) &&
         root_.kind == Kind::Directory;
}

// Where a block of a partition lies in the image.
bool Udf::Locate(Address address, std::uint64_t& offset) const {
  if (address.partition >= partitions_.size()) return false;
  const Partition& partition = partitions_[address.partition];
  offset = (partition.firstBlock + address.block) * blockBytes_;
  return address.block < partition.blocks;
}

std::uint16_t Udf::PartitionOf(std::uint64_t offset) const {
  const std::uint64_t block = offset / blockBytes_;
  for (std::size_t i = 0; i < partitions_.size(); ++i) {
    const Partition& one = partitions_[i];
    if (block >= one.firstBlock && block - one.firstBlock < one.blocks) {
      return static_cast<std::uint16_t>(i);
    }
  }
  return 0;
}

// The tag of its allocation descriptors tells where the data lies: 0 short, 1 long, 3 the data
// itself.
bool Udf::ReadEntry(std::uint64_t offset, FileEntry& entry) {
  constexpr std::uint16_t kDirectStrategy = 4;
  if (!ReadBlock(offset / blockBytes_, entry.block)) return false;
  const bool isExtended = HasTag(entry.block, Tag::ExtendedFileEntry);
  if (!isExtended && !HasTag(entry.block, Tag::FileEntry)) return false;
  const Block& bytes = entry.block;
  entry.offset = offset;
  if (Little16(&bytes[20]) != kDirectStrategy) return false;
  entry.type = bytes[27];
  entry.allocation = bytes[34] & 7U;
  entry.sizeBytes = Little64(&bytes[56]);
  const std::size_t lengthsAt = isExtended ? 208 : 168;
  const std::uint64_t attributes = Little32(&bytes[lengthsAt]);
  const std::uint64_t allocations = Little32(&bytes[lengthsAt + 4]);
  const std::uint64_t from = lengthsAt + 8 + attributes;
  if (from + allocations > bytes.size()) return false;
  entry.allocationsAt = static_cast<std::size_t>(from);
  entry.allocationBytes = static_cast<std::size_t>(allocations);
  return true;
}

// Descriptors go on in other blocks where one says so. Holes have no place.
bool Udf::ReadExtents(const FileEntry& entry, std::uint16_t partition,
                      std::vector<ImageExtent>& extents) {
  enum : unsigned { Recorded = 0, GoesOn = 3 };
  constexpr std::uint32_t kLengthMask = 0x3FFFFFFF;
  constexpr std::size_t kContinuationAt = 24;
  if (entry.allocation == 3) {
    extents.push_back({entry.offset + entry.allocationsAt, entry.allocationBytes});
    return true;
  }
  if (entry.allocation > 1) return false;
  const std::size_t step = entry.allocation == 0 ? 8 : 16;
  Block bytes = entry.block;
  std::size_t at = entry.allocationsAt;
  std::size_t end = at + entry.allocationBytes;
  // A continuation that names itself ends with the number of extents that there may be.
  for (std::size_t seen = 0; at + step <= end; ++seen) {
    if (seen == kMostExtents) return false;
    const std::uint32_t word = Little32(&bytes[at]);
    const Address address{Little32(&bytes[at + 4]),
                          step == 16 ? Little16(&bytes[at + 8]) : partition};
    at += step;
    const std::uint32_t length = word & kLengthMask;
    const unsigned type = word >> 30;
    if (length == 0) break;
    std::uint64_t offset = 0;
    if ((type == Recorded || type == GoesOn) && !Locate(address, offset)) return false;
    if (type != GoesOn) {
      extents.push_back({offset, length, type != Recorded});
      continue;
    }
    if (!ReadBlock(offset / blockBytes_, bytes) || !HasTag(bytes, Tag::AllocationExtent)) {
      return false;
    }
    at = kContinuationAt;
    end = kContinuationAt + Little32(&bytes[20]);
    if (Little32(&bytes[20]) > bytes.size() - kContinuationAt) return false;
  }
  return true;
}

bool Udf::FindExtents(const ImageItem& file, std::vector<ImageExtent>& extents) {
  FileEntry entry;
  return ReadEntry(file.location, entry) && ReadExtents(entry, PartitionOf(file.location), extents);
}

bool Udf::FillItem(Address address, ImageItem& item) {
  FileEntry entry;
  if (!Locate(address, item.location) || !ReadEntry(item.location, entry)) return false;
  item.sizeBytes = entry.sizeBytes;
  item.kind = entry.type == kTypeDirectory ? Kind::Directory
              : entry.type == kTypeFile    ? Kind::File
              : entry.type == kTypeLink    ? Kind::Link
                                           : Kind::Other;
  return true;
}

bool Udf::ReadDirectory(const ImageItem& directory, std::size_t mostItems,
                        std::vector<ImageItem>& items) {
  constexpr std::size_t kIdentifierBytes = 38;
  std::vector<ImageExtent> extents;
  if (!FindExtents(directory, extents)) return false;
  // Whoever makes a directory of holes has no end of it.
  if (std::ranges::any_of(extents, &ImageExtent::isHole)) return false;
  ExtentBytes list(image_, extents, directory.sizeBytes);
  if (!list.IsWhole() || list.SizeBytes() > image_.SizeBytes()) return false;
  const std::size_t most = items.size() + mostItems;
  bool isSound = true;
  Block bytes;
  for (std::uint64_t at = 0; at < list.SizeBytes();) {
    bytes.resize(kIdentifierBytes);
    if (!list.ReadAt(at, bytes.data(), kIdentifierBytes)) return false;
    const std::size_t nameAt = kIdentifierBytes + Little16(&bytes[36]);
    const std::size_t nameBytes = bytes[19];
    const std::size_t whole = (nameAt + nameBytes + 3) / 4 * 4;
    bytes.resize(whole);
    if (!list.ReadAt(at, bytes.data(), whole) || !HasTag(bytes, Tag::FileIdentifier)) return false;
    at += whole;
    if ((bytes[18] & (kIsDeleted | kIsParent)) != 0) continue;
    if (items.size() >= most) return true;
    ImageItem item;
    if (ReadName(&bytes[nameAt], nameBytes, item.name) &&
        FillItem({Little32(&bytes[24]), Little16(&bytes[28])}, item)) {
      items.push_back(std::move(item));
    } else {
      isSound = false;
    }
  }
  return isSound;
}

}  // namespace

std::unique_ptr<ImageFileSystem> OpenUdf(ImageFile& image, Text& unsupported) {
  unsupported.clear();
  for (const std::uint32_t blockBytes : kBlockSizes) {
    auto system = std::make_unique<Udf>(image, blockBytes);
    if (system->Mount(unsupported)) return system;
  }
  return nullptr;
}

}  // namespace quillon
