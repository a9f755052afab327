// ISO 9660 and Joliet. A volume descriptor is one sector of 2048 bytes, from sector 16 on:
//     0  type: 1 primary, 2 supplementary, 255 the end      1  "CD001"
//    88  of a supplementary one: its escape sequence, which tells Joliet
//   128  bytes of a logical block          156  the record of the root directory
// A directory record, which never crosses the end of a sector:
//     0  its length, 0 when the rest of the sector is empty
//     1  blocks of the extended attributes, which stand before the data
//     2  first block     10  bytes of data     25  flags      26  interleaving
//    32  length of the name, which stands at 33; behind it, at an even place, the system use
#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "image_file_system.h"
#include "platform/services.h"

namespace quillon {

namespace {

using Kind = MediumEntry::Kind;

constexpr std::size_t kSectorBytes = 2048;
constexpr std::uint64_t kFirstDescriptor = 16;
constexpr std::uint64_t kMostDescriptors = 64;
constexpr std::size_t kBlockSizeAt = 128;
constexpr std::size_t kEscapeAt = 88;
constexpr std::size_t kRootRecordAt = 156;
constexpr std::size_t kRecordBytes = 33;  // before the name
constexpr unsigned kIsDirectory = 0x02;
constexpr unsigned kIsAssociated = 0x04;
constexpr unsigned kGoesOn = 0x80;

constexpr std::size_t kMostContinuations = 8;

using Sector = std::array<std::uint8_t, kSectorBytes>;
using Bytes = std::basic_string_view<std::uint8_t>;

// What the system use of a record says about names, by Rock Ridge.
struct RockRidge {
  std::string name;
  bool isLink = false;
  bool isOther = false;  // a device and the like
};

struct Volume {
  std::uint32_t blockBytes = 0;
  bool isJoliet = false;
  ImageItem root;
};

Text NameOfBytes(Bytes bytes) {
  return WidenText({reinterpret_cast<const char*>(bytes.data()), bytes.size()},
                   FileSystemCodePage());
}

Text NameOfUnits(Bytes bytes) {
  Text name;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    name += static_cast<OLECHAR>(bytes[i] << 8 | bytes[i + 1]);
  }
  return name;
}

// ";1" and what is left of a name without an extension.
void StripVersion(Text& name, bool alsoDot) {
  const std::size_t at = name.rfind(OLESTR(';'));
  const bool isVersion =
      at != Text::npos && at + 1 < name.size() &&
      std::all_of(name.begin() + static_cast<std::ptrdiff_t>(at) + 1, name.end(),
                  [](OLECHAR c) { return c >= OLESTR('0') && c <= OLESTR('9'); });
  if (isVersion) name.resize(at);
  if (alsoDot && name.size() > 1 && name.back() == OLESTR('.')) name.pop_back();
}

class Iso9660 final : public ImageFileSystem {
 public:
  Iso9660(ImageFile& image, Volume volume) : image_(image), volume_(std::move(volume)) {}

  [[nodiscard]] const ImageItem& Root() const override { return volume_.root; }
  [[nodiscard]] bool ReadDirectory(const ImageItem& directory, std::size_t mostItems,
                                   std::vector<ImageItem>& items) override;
  [[nodiscard]] bool FindExtents(const ImageItem& file,
                                 std::vector<ImageExtent>& extents) override {
    extents = file.extents;
    return !extents.empty() || file.sizeBytes == 0;
  }
  // Whether the root directory can be read; finds Rock Ridge.
  [[nodiscard]] bool LookAtRoot();

 private:
  [[nodiscard]] bool AddRecord(Bytes record, std::vector<ImageItem>& items);
  void ReadSystemUse(Bytes area, std::size_t hops, RockRidge& found);

  ImageFile& image_;
  Volume volume_;
  bool hasRockRidge_ = false;
  std::size_t skippedBytes_ = 0;  // before the system use
  bool isGoingOn_ = false;        // the last record was not the last one of its file
};

// False where the record contradicts itself. Extended attributes stand before the data.
bool TakeExtent(Bytes record, std::uint32_t blockBytes, ImageItem& item) {
  const std::uint64_t block = std::uint64_t{Little32(&record[2])} + record[1];
  const std::uint32_t bytes = Little32(&record[10]);
  item.sizeBytes += bytes;
  if (item.extents.empty()) item.location = block * blockBytes;
  item.extents.push_back({block * blockBytes, bytes});
  return record[26] == 0 && record[27] == 0;  // nothing is interleaved
}

Bytes SystemUseOf(Bytes record, std::size_t skipped) {
  std::size_t at = kRecordBytes + record[32];
  at += at % 2 + skipped;
  return at < record.size() ? record.substr(at) : Bytes();
}

bool Iso9660::LookAtRoot() {
  ExtentBytes bytes(image_, volume_.root.extents, volume_.root.sizeBytes);
  Sector sector;
  if (!bytes.IsWhole() || bytes.SizeBytes() < kSectorBytes ||
      !bytes.ReadAt(0, sector.data(), sector.size())) {
    return false;
  }
  const std::size_t length = sector[0];
  if (length < kRecordBytes + 1 || sector[32] != 1 || sector[kRecordBytes] != 0) return false;
  if (volume_.isJoliet) return true;
  const Bytes use = SystemUseOf(Bytes(sector.data(), length), 0);
  constexpr std::array<std::uint8_t, 6> kSharing{'S', 'P', 7, 1, 0xBE, 0xEF};
  hasRockRidge_ = use.size() >= 7 && std::equal(kSharing.begin(), kSharing.end(), use.begin());
  if (hasRockRidge_) skippedBytes_ = use[6];
  return true;
}

bool Iso9660::ReadDirectory(const ImageItem& directory, std::size_t mostItems,
                            std::vector<ImageItem>& items) {
  ExtentBytes bytes(image_, directory.extents, directory.sizeBytes);
  if (!bytes.IsWhole()) return false;
  isGoingOn_ = false;
  const std::size_t most = items.size() + mostItems;
  Sector sector;
  for (std::uint64_t start = 0; start < bytes.SizeBytes(); start += kSectorBytes) {
    const auto filled =
        static_cast<std::size_t>(std::min<std::uint64_t>(kSectorBytes, bytes.SizeBytes() - start));
    if (!bytes.ReadAt(start, sector.data(), filled)) return false;
    for (std::size_t at = 0; at < filled && sector[at] != 0; at += sector[at]) {
      const std::size_t length = sector[at];
      if (length <= kRecordBytes || length > filled - at) return false;
      if (items.size() >= most) return true;
      if (!AddRecord(Bytes(&sector[at], length), items)) return false;
    }
  }
  return !isGoingOn_;
}

// False when what follows cannot be trusted either.
bool Iso9660::AddRecord(Bytes record, std::vector<ImageItem>& items) {
  const std::size_t nameBytes = record[32];
  const unsigned flags = record[25];
  if (kRecordBytes + nameBytes > record.size() || nameBytes == 0) return false;
  const Bytes identifier = record.substr(kRecordBytes, nameBytes);
  // The directory itself and the one above it.
  if (nameBytes == 1 && identifier[0] <= 1) return true;
  if ((flags & kIsAssociated) != 0) return true;
  ImageItem item;
  item.name = volume_.isJoliet ? NameOfUnits(identifier) : NameOfBytes(identifier);
  if ((flags & kIsDirectory) != 0) {
    item.kind = Kind::Directory;
  } else {
    StripVersion(item.name, !volume_.isJoliet);
  }
  if (hasRockRidge_) {
    RockRidge more;
    ReadSystemUse(SystemUseOf(record, skippedBytes_), 0, more);
    if (!more.name.empty()) item.name = WidenText(more.name, FileSystemCodePage());
    if (more.isLink) item.kind = Kind::Link;
    if (more.isOther) item.kind = Kind::Other;
  }
  const bool goesOn = (flags & kGoesOn) != 0 && item.kind == Kind::File;
  if (isGoingOn_) {
    if (items.empty() || items.back().name != item.name || item.kind != Kind::File) return false;
    isGoingOn_ = goesOn;
    return TakeExtent(record, volume_.blockBytes, items.back());
  }
  isGoingOn_ = goesOn;
  const bool isFit = TakeExtent(record, volume_.blockBytes, item);
  items.push_back(std::move(item));
  return isFit;
}

// Entries: a signature of two letters, their length, a version, and what they say.
void Iso9660::ReadSystemUse(Bytes area, std::size_t hops, RockRidge& found) {
  constexpr unsigned kTypeOfFile = 0xF000;
  constexpr unsigned kRegular = 0x8000;
  constexpr unsigned kDirectory = 0x4000;
  constexpr unsigned kLink = 0xA000;
  constexpr unsigned kItselfOrAbove = 0x06;
  while (area.size() >= 4) {
    const std::size_t length = area[2];
    if (length < 4 || length > area.size()) return;
    const Bytes entry = area.substr(0, length);
    const auto is = [&](unsigned char a, unsigned char b) {
      return entry[0] == a && entry[1] == b;
    };
    if (is('N', 'M') && length > 5 && (entry[4] & kItselfOrAbove) == 0) {
      found.name.append(entry.begin() + 5, entry.end());
    } else if (is('S', 'L')) {
      found.isLink = true;
    } else if (is('P', 'X') && length >= 12) {
      const unsigned type = Little32(&entry[4]) & kTypeOfFile;
      found.isLink = found.isLink || type == kLink;
      found.isOther = type != kRegular && type != kDirectory && type != kLink;
    } else if (is('C', 'E') && length >= 28 && hops < kMostContinuations) {
      Sector more;
      const std::uint64_t at =
          std::uint64_t{Little32(&entry[4])} * volume_.blockBytes + Little32(&entry[12]);
      const std::size_t bytes = std::min<std::size_t>(Little32(&entry[20]), more.size());
      if (image_.ReadAt(at, more.data(), bytes)) {
        ReadSystemUse(Bytes(more.data(), bytes), hops + 1, found);
      }
    } else if (is('S', 'T')) {
      return;
    }
    area.remove_prefix(length);
  }
}

bool IsJoliet(const Sector& descriptor) {
  const std::string_view escape(reinterpret_cast<const char*>(&descriptor[kEscapeAt]), 3);
  return escape == "%/@" || escape == "%/C" || escape == "%/E";
}

}  // namespace

std::unique_ptr<ImageFileSystem> OpenIso9660(ImageFile& image) {
  std::vector<Volume> volumes;
  for (std::uint64_t i = 0; i < kMostDescriptors; ++i) {
    Sector descriptor;
    if (!image.ReadAt((kFirstDescriptor + i) * kSectorBytes, descriptor.data(), kSectorBytes) ||
        std::memcmp(&descriptor[1], "CD001", 5) != 0 || descriptor[0] == 255) {
      break;
    }
    const bool isPrimary = descriptor[0] == 1;
    if (!isPrimary && (descriptor[0] != 2 || !IsJoliet(descriptor))) continue;
    Volume volume;
    volume.isJoliet = !isPrimary;
    volume.blockBytes = Little16(&descriptor[kBlockSizeAt]);
    if (volume.blockBytes != 512 && volume.blockBytes != 1024 && volume.blockBytes != 2048) {
      continue;
    }
    volume.root.kind = Kind::Directory;
    if (TakeExtent(Bytes(&descriptor[kRootRecordAt], kRecordBytes + 1), volume.blockBytes,
                   volume.root)) {
      volumes.push_back(std::move(volume));
    }
  }
  std::stable_sort(volumes.begin(), volumes.end(),
                   [](const Volume& a, const Volume& b) { return a.isJoliet && !b.isJoliet; });
  for (Volume& volume : volumes) {
    auto system = std::make_unique<Iso9660>(image, std::move(volume));
    if (system->LookAtRoot()) return system;
  }
  return nullptr;
}

}  // namespace quillon
