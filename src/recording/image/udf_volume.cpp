#include "udf_volume.h"

#include "image/udf_tree.h"
#include "udf_bytes.h"

namespace quillon::platform {
namespace {

constexpr std::uint32_t kSequenceBytes = 16 * kImageSectorBytes;
constexpr std::uint32_t kIntegrityBytes = 2 * kImageSectorBytes;
constexpr std::uint32_t kFileSetBytes = 2 * kImageSectorBytes;
constexpr std::size_t kDescriptorBytes = 512;

// Descriptors one after the other, each at the start of a sector.
class Sequence {
 public:
  explicit Sequence(std::uint32_t sector) : sector_(sector) {}

  // The tag's room is there; the fields that are left out at the end are zeros.
  FieldWriter& begin() {
    start_ = bytes_.size();
    return out_.zeros(kUdfTagBytes);
  }
  void end(UdfTag tag, std::size_t descriptorBytes = kDescriptorBytes) {
    out_.zeros(start_ + descriptorBytes - bytes_.size());
    const auto sectorsBefore = static_cast<std::uint32_t>(start_ / kImageSectorBytes);
    sealUdfDescriptor(bytes_, start_, tag, sector_ + sectorsBefore);
    out_.fillSector();
  }
  void terminate() {
    begin();
    end(UdfTag::Terminating);
  }
  [[nodiscard]] ImageBytes take() { return std::move(bytes_); }

 private:
  ImageBytes bytes_;
  FieldWriter out_{bytes_};
  std::uint32_t sector_;
  std::size_t start_ = 0;
};

void putPrimaryVolume(Sequence& sequence, const UdfVolume& volume) {
  FieldWriter& out = sequence.begin();
  out.le32(0).le32(0);  // place in the sequence, number
  putUdfString(out, volume.name, 32);
  out.le16(1).le16(1);  // the only volume of its set
  out.le16(2).le16(2);  // interchange level of one volume
  out.le32(1).le32(1);  // character sets: the one of all texts
  putUdfString(out, volume.setName, 128);
  putUdfCharacterSet(out);
  putUdfCharacterSet(out);
  out.zeros(16);  // no abstract, no copyright
  putUdfIdentifier(out, "");
  putUdfTime(out, volume.made);
  putUdfImplementation(out);
  sequence.end(UdfTag::PrimaryVolume);
}

void putImplementationUse(Sequence& sequence, const UdfVolume& volume) {
  FieldWriter& out = sequence.begin();
  out.le32(1);
  putUdfVersioned(out, "*UDF LV Info");
  putUdfCharacterSet(out);
  putUdfString(out, volume.name, 128);
  out.zeros(std::size_t{3} * 36);  // owner, organisation, contact
  putUdfImplementation(out);
  sequence.end(UdfTag::ImplementationUseVolume);
}

void putPartition(Sequence& sequence, const UdfVolume& volume) {
  constexpr unsigned kAllocated = 1;
  constexpr std::uint32_t kReadOnly = 1;
  FieldWriter& out = sequence.begin();
  out.le32(2).le16(kAllocated).le16(0);
  putUdfIdentifier(out, "+NSR02");
  out.zeros(128);
  out.le32(kReadOnly).le32(UdfTree::kPartitionSector).le32(volume.partitionSectors);
  putUdfImplementation(out);
  sequence.end(UdfTag::Partition);
}

void putLogicalVolume(Sequence& sequence, const UdfVolume& volume) {
  constexpr std::uint32_t kMapBytes = 6;
  constexpr std::size_t kBytes = 440 + kMapBytes;
  FieldWriter& out = sequence.begin();
  out.le32(3);
  putUdfCharacterSet(out);
  putUdfString(out, volume.name, 128);
  out.le32(kImageSectorBytes);
  putUdfVersioned(out, "*OSTA UDF Compliant");
  putUdfLongAddress(out, kFileSetBytes, 0);
  out.le32(kMapBytes).le32(1);
  putUdfImplementation(out);
  out.zeros(128);
  putUdfExtent(out, kIntegrityBytes, kUdfIntegritySequence);
  out.u8(1).u8(kMapBytes).le16(1).le16(0);  // the partition as it is
  sequence.end(UdfTag::LogicalVolume, kBytes);
}

void putUnallocatedSpace(Sequence& sequence) {
  constexpr std::size_t kBytes = 24;
  sequence.begin().le32(4);
  sequence.end(UdfTag::UnallocatedSpace, kBytes);
}

}  // namespace

ImageBytes udfRecognition() {
  ImageBytes bytes;
  FieldWriter out(bytes);
  for (const char* identifier : {"BEA01", "NSR02", "TEA01"}) {
    out.u8(0).text(identifier).u8(1);
    out.fillSector();
  }
  return bytes;
}

ImageBytes udfAnchor(std::uint32_t sector) {
  Sequence sequence(sector);
  FieldWriter& out = sequence.begin();
  putUdfExtent(out, kSequenceBytes, kUdfMainSequence);
  putUdfExtent(out, kSequenceBytes, kUdfReserveSequence);
  sequence.end(UdfTag::AnchorVolume);
  return sequence.take();
}

ImageBytes udfVolumeSequence(const UdfVolume& volume, std::uint32_t sector) {
  Sequence sequence(sector);
  putPrimaryVolume(sequence, volume);
  putImplementationUse(sequence, volume);
  putPartition(sequence, volume);
  putLogicalVolume(sequence, volume);
  putUnallocatedSpace(sequence);
  sequence.terminate();
  return sequence.take();
}

ImageBytes udfIntegritySequence(const UdfVolume& volume) {
  constexpr std::uint32_t kClosed = 1;
  constexpr std::uint32_t kImplementationBytes = 46;
  constexpr std::size_t kBytes = 88 + kImplementationBytes;
  Sequence sequence(kUdfIntegritySequence);
  FieldWriter& out = sequence.begin();
  putUdfTime(out, volume.made);
  out.le32(kClosed).zeros(8);
  out.le64(volume.nextUniqueId).zeros(24);
  out.le32(1).le32(kImplementationBytes);
  out.le32(0).le32(volume.partitionSectors);  // free blocks, all blocks
  putUdfImplementation(out);
  out.le32(volume.files).le32(volume.directories);
  out.le16(kUdfRevision).le16(kUdfRevision).le16(kUdfRevision);  // to read, to write, at most
  sequence.end(UdfTag::LogicalVolumeIntegrity, kBytes);
  sequence.terminate();
  return sequence.take();
}

ImageBytes udfFileSet(const UdfVolume& volume) {
  Sequence sequence(0);
  FieldWriter& out = sequence.begin();
  putUdfTime(out, volume.made);
  out.le16(3).le16(3);  // interchange level
  out.le32(1).le32(1);  // character sets
  out.le32(0).le32(0);  // the only file set
  putUdfCharacterSet(out);
  putUdfString(out, volume.name, 128);
  putUdfCharacterSet(out);
  putUdfString(out, volume.name, 32);
  out.zeros(std::size_t{2} * 32);  // no files of copyright and abstract
  putUdfLongAddress(out, kImageSectorBytes, volume.rootBlock);
  putUdfVersioned(out, "*OSTA UDF Compliant");
  sequence.end(UdfTag::FileSet);
  sequence.terminate();
  return sequence.take();
}

}  // namespace quillon::platform
