#include "fileset/disc_room.h"

#include <algorithm>

namespace quillon {

namespace {

// Up to the descriptors' terminator, in whole blocks of a drive; UDF's first anchor stands in
// sector 256 and its file set behind that.
constexpr std::uint64_t kFirstFreeSector = 32;
constexpr std::uint64_t kFirstFreeSectorWithUdf = 259;
constexpr std::uint64_t kPathTableSectors = 2;  // one for each byte order

// An entry with a name of one character.
constexpr std::uint64_t kIsoRecordBytes = 34;
constexpr std::uint64_t kJolietRecordBytes = 36;
constexpr std::uint64_t kUdfIdentifierBytes = 40;
constexpr std::uint64_t kPathRecordBytes = 8;     // before the name
constexpr std::uint64_t kLongestNameBytes = 255;  // also of a record, whose length has one byte
// Drives write whole blocks, so images are made of them.
constexpr std::uint64_t kSectorsPerBlock = 32;

std::uint64_t SectorsFor(std::uint64_t bytes) {
  return (bytes + kDiscSectorBytes - 1) / kDiscSectorBytes;
}

}  // namespace

void DiscRoom::AddFile(std::uint64_t leastBytes, std::uint64_t mostBytes) {
  ++files_;
  bytes_ += leastBytes;
  dataSectors_ += SectorsFor(leastBytes);
  mostDataSectors_ += SectorsFor(mostBytes);
}

void DiscRoom::Add(const DiscRoom& other) {
  files_ += other.files_;
  directories_ += other.directories_;
  bytes_ += other.bytes_;
  dataSectors_ += other.dataSectors_;
  mostDataSectors_ += other.mostDataSectors_;
}

std::uint64_t DiscRoom::LeastSectors(bool hasUdf) const {
  const std::uint64_t directories = directories_ + 1;
  const std::uint64_t entries = files_ + directories_;
  // Each directory begins a sector.
  const auto listing = [&](std::uint64_t entryBytes) {
    return std::max(directories, SectorsFor(entries * entryBytes));
  };
  std::uint64_t sectors =
      dataSectors_ + 2 * kPathTableSectors + listing(kIsoRecordBytes) + listing(kJolietRecordBytes);
  if (!hasUdf) return kFirstFreeSector + sectors;
  sectors += files_ + directories;  // an entry of its own for each
  return kFirstFreeSectorWithUdf + sectors + listing(kUdfIdentifierBytes);
}

std::uint64_t DiscRoom::MostSectors() const {
  const std::uint64_t directories = directories_ + 1;
  // A file of more than one extent, of 4 GiB less a sector, has a record for each.
  const std::uint64_t entries = files_ + directories + mostDataSectors_ / (std::uint64_t{1} << 20);
  // Records do not cross the ends of sectors: those of the greatest length leave an eighth.
  const auto listing = [&](std::uint64_t entryBytes) {
    return 2 * directories + SectorsFor(entries * entryBytes / 7 * 8);
  };
  const std::uint64_t tables =
      2 * kPathTableSectors * SectorsFor(directories * (kPathRecordBytes + kLongestNameBytes));
  return kFirstFreeSectorWithUdf + mostDataSectors_ + tables + 2 * listing(kLongestNameBytes) +
         files_ + directories + listing(kUdfIdentifierBytes + kLongestNameBytes) + kSectorsPerBlock;
}

}  // namespace quillon
