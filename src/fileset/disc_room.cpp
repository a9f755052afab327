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

std::uint64_t SectorsFor(std::uint64_t bytes) {
  return (bytes + kDiscSectorBytes - 1) / kDiscSectorBytes;
}

}  // namespace

void DiscRoom::AddFile(std::uint64_t sizeBytes) {
  ++files_;
  bytes_ += sizeBytes;
  dataSectors_ += SectorsFor(sizeBytes);
}

void DiscRoom::Add(const DiscRoom& other) {
  files_ += other.files_;
  directories_ += other.directories_;
  bytes_ += other.bytes_;
  dataSectors_ += other.dataSectors_;
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

}  // namespace quillon
