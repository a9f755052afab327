#include "image/image_layout.h"

#include <algorithm>
#include <cstdio>
#include <limits>

#include "image/image_results.h"
#include "platform/imapi2.h"
#include "udf_volume.h"

namespace quillon::platform {
namespace {

constexpr std::uint32_t kFirstDescriptor = 16;
constexpr std::uint32_t kFileEntriesPerSegment = 256;
// Drives write whole error correction blocks: filling the last one up here keeps the anchor in the
// last sector of what is recorded.
constexpr std::uint64_t kSectorsPerBlock = 16;

// FNV-1a: spreads well enough for an identifier that only has to differ.
class Digest {
 public:
  void add(std::uint64_t value) {
    for (int shift = 0; shift < 64; shift += 8) {
      digest_ = (digest_ ^ ((value >> shift) & 0xFF)) * 0x0000'0100'0000'01B3;
    }
  }
  void add(std::u16string_view text) {
    for (const char16_t unit : text) add(std::uint64_t{unit});
    add(text.size());
  }
  [[nodiscard]] std::uint64_t value() const { return digest_; }

 private:
  std::uint64_t digest_ = 0xCBF2'9CE4'8422'2325;
};

}  // namespace

HRESULT ImageLayout::make(const ImageNode& root, const ImageSettings& settings,
                          std::shared_ptr<const ImageLayout>& layout) {
  if (!settings.has(FsiFileSystemISO9660 | FsiFileSystemJoliet | FsiFileSystemUDF)) {
    return refuseImage(IMAPI_E_NO_OUTPUT, u"No file system is chosen");
  }
  if (const HRESULT hr = checkLimits(root, 1, settings); FAILED(hr)) return hr;
  std::shared_ptr<ImageLayout> made(new ImageLayout(settings));
  if (const HRESULT hr = made->prepare(root); FAILED(hr)) return hr;
  layout = std::move(made);
  return S_OK;
}

HRESULT ImageLayout::prepare(const ImageNode& root) {
  made_ = imageTimeNow();
  addEntry(root, 0);
  flatten(root, 0);
  computeIdentity();
  if (settings_.has(FsiFileSystemISO9660 | FsiFileSystemJoliet)) {
    // Joliet hangs on the descriptors of ISO 9660, which is then there with an empty root.
    const NameRules rules = settings_.isoLevel() == 1 ? NameRules::IsoLevel1 : NameRules::IsoLevel2;
    isoTrees_[0].emplace(entries_, rules, settings_.has(FsiFileSystemISO9660));
  }
  if (settings_.has(FsiFileSystemJoliet)) isoTrees_[1].emplace(entries_, NameRules::Joliet, true);
  if (settings_.has(FsiFileSystemUDF)) udf_.emplace(entries_);
  for (std::optional<IsoTree>& tree : isoTrees_) {
    if (!tree) continue;
    if (const HRESULT hr = tree->prepare(); FAILED(hr)) return hr;
  }
  if (udf_) {
    if (const HRESULT hr = udf_->prepare(); FAILED(hr)) return hr;
  }
  return place();
}

std::uint32_t ImageLayout::addEntry(const ImageNode& node, std::uint32_t parent) {
  LayoutEntry& entry = entries_.emplace_back();
  entry.name = node.name;
  entry.parent = parent;
  entry.isDirectory = node.isDirectory;
  entry.modified = node.modified;
  entry.size = node.size;
  entry.source = node.source;
  entry.isLast = node.isLast;
  return static_cast<std::uint32_t>(entries_.size() - 1);
}

void ImageLayout::flatten(const ImageNode& directory, std::uint32_t parent) {
  const auto firstFile = static_cast<std::uint32_t>(entries_.size());
  std::shared_ptr<ImageNode> readFirst;
  if (parent == 0) {
    const auto found = directory.children.find(u"DICOMDIR");
    if (found != directory.children.end() && !found->second->isDirectory) {
      readFirst = found->second;
      addEntry(*readFirst, parent);
    }
  }
  for (const auto& [name, child] : directory.children) {
    if (!child->isDirectory && child != readFirst) addEntry(*child, parent);
  }
  entries_[parent].firstFile = firstFile;
  entries_[parent].fileCount = static_cast<std::uint32_t>(entries_.size()) - firstFile;
  for (const auto& [name, child] : directory.children) {
    if (!child->isDirectory) continue;
    const std::uint32_t index = addEntry(*child, parent);
    entries_[parent].directories.push_back(index);
    flatten(*child, index);
  }
}

void ImageLayout::computeIdentity() {
  Digest digest;
  digest.add(settings_.volumeName);
  digest.add(static_cast<std::uint64_t>(unixSecondsOf(made_)));
  digest.add(static_cast<std::uint64_t>(made_.centisecond));
  for (const LayoutEntry& entry : entries_) {
    digest.add(entry.name);
    digest.add(entry.size);
    digest.add(static_cast<std::uint64_t>(entry.modified));
  }
  identity_ = digest.value();
}

void ImageLayout::add(Segment::Kind kind, std::uint32_t index, std::uint64_t sectors,
                      std::uint8_t isoTree) {
  segments_.push_back({static_cast<std::uint32_t>(next_), static_cast<std::uint32_t>(sectors), kind,
                       isoTree, index});
  next_ += sectors;
}

void ImageLayout::addFixed(std::uint32_t sector, ImageBytes bytes) {
  segments_.push_back({sector, static_cast<std::uint32_t>(bytes.size() / kImageSectorBytes),
                       Segment::Kind::Fixed, 0, static_cast<std::uint32_t>(fixed_.size())});
  fixed_.push_back(std::move(bytes));
}

HRESULT ImageLayout::place() {
  constexpr std::uint32_t kFileSetSectors = 2;
  // Room for every descriptor of ISO 9660 and the recognition sequence.
  next_ = udf_ ? UdfTree::kPartitionSector + kFileSetSectors : kUdfMainSequence;
  if (udf_) placeUdfTree();
  for (std::uint8_t which = 0; which < 2; ++which) {
    if (isoTrees_[which]) placeIsoTree(which);
  }
  dataSector_ = static_cast<std::uint32_t>(next_);
  if (!placeFiles()) {
    return refuseImage(IMAPI_E_IMAGE_SIZE_LIMIT, u"The image is larger than any disc");
  }
  if (udf_) ++next_;  // the last anchor
  next_ = (next_ + kSectorsPerBlock - 1) / kSectorsPerBlock * kSectorsPerBlock;
  sectors_ = static_cast<std::uint32_t>(next_);
  addDescriptors();
  std::sort(segments_.begin(), segments_.end(),
            [](const Segment& a, const Segment& b) { return a.sector < b.sector; });
  return S_OK;
}

void ImageLayout::placeUdfTree() {
  const auto block = [this] {
    return static_cast<std::uint32_t>(next_) - UdfTree::kPartitionSector;
  };
  for (std::uint32_t index = 0; index < entries_.size(); ++index) {
    if (!entries_[index].isDirectory) continue;
    udf_->placeEntry(index, block());
    add(Segment::Kind::UdfDirectory, index, udf_->entryBlocks(index));
    const std::uint32_t end = entries_[index].firstFile + entries_[index].fileCount;
    for (std::uint32_t first = entries_[index].firstFile; first < end;) {
      const std::uint32_t count = std::min(end - first, kFileEntriesPerSegment);
      for (std::uint32_t i = 0; i < count; ++i) udf_->placeEntry(first + i, block() + i);
      add(Segment::Kind::UdfFiles, first, count);
      first += count;
    }
  }
}

void ImageLayout::placeIsoTree(std::uint8_t which) {
  IsoTree& tree = *isoTrees_[which];
  const std::uint64_t tableSectors = sectorsFor(tree.pathTableBytes());
  tree.placePathTables(static_cast<std::uint32_t>(next_),
                       static_cast<std::uint32_t>(next_ + tableSectors));
  add(Segment::Kind::PathTable, 0, tableSectors, which);
  add(Segment::Kind::BigEndianPathTable, 0, tableSectors, which);
  for (std::uint32_t i = 0; i < tree.directoryCount(); ++i) {
    tree.placeDirectory(i, static_cast<std::uint32_t>(next_));
    add(Segment::Kind::IsoDirectory, i, tree.directorySectors(i), which);
  }
}

// False when the sectors run out: their numbers, and those of a drive, have 31 bits.
bool ImageLayout::placeFiles() {
  constexpr std::uint64_t kMostSectors = std::numeric_limits<LONG>::max() - 32;
  for (const bool placesLast : {false, true}) {
    for (std::uint32_t index = 0; index < entries_.size(); ++index) {
      LayoutEntry& entry = entries_[index];
      if (entry.isDirectory || entry.size == 0 || entry.isLast != placesLast) continue;
      const std::uint64_t sectors = sectorsFor(entry.size);
      if (sectors > kMostSectors || next_ + sectors > kMostSectors) return false;
      entry.dataSector = static_cast<std::uint32_t>(next_);
      add(Segment::Kind::FileData, index, sectors);
    }
  }
  return next_ <= kMostSectors;
}

void ImageLayout::addDescriptors() {
  char identity[17];
  std::snprintf(identity, sizeof(identity), "%016llX", static_cast<unsigned long long>(identity_));
  ImageBytes recognition;
  FieldWriter out(recognition);
  const std::u16string names[2] = {isoVolumeName(settings_.volumeName),
                                   jolietVolumeName(settings_.volumeName)};
  for (std::uint8_t which = 0; which < 2; ++which) {
    if (!isoTrees_[which]) continue;
    isoTrees_[which]->placeEmptyFiles(dataSector_);
    out.bytes(isoTrees_[which]->volumeDescriptor({names[which], identity, sectors_, made_}));
  }
  if (isoTrees_[0]) out.bytes(isoTerminator());
  if (udf_) out.bytes(udfRecognition());
  addFixed(kFirstDescriptor, std::move(recognition));
  if (!udf_) return;

  UdfVolume volume;
  volume.name = settings_.volumeName;
  volume.setName = std::u16string(identity, identity + 16) + settings_.volumeName;
  volume.made = made_;
  volume.partitionSectors = sectors_ - 1 - UdfTree::kPartitionSector;
  volume.rootBlock = udf_->entryBlock(0);
  volume.directories = static_cast<std::uint32_t>(std::count_if(
      entries_.begin(), entries_.end(), [](const LayoutEntry& e) { return e.isDirectory; }));
  volume.files = static_cast<std::uint32_t>(entries_.size()) - volume.directories;
  volume.nextUniqueId = udf_->nextUniqueId();
  addFixed(kUdfMainSequence, udfVolumeSequence(volume, kUdfMainSequence));
  addFixed(kUdfReserveSequence, udfVolumeSequence(volume, kUdfReserveSequence));
  addFixed(kUdfIntegritySequence, udfIntegritySequence(volume));
  addFixed(kUdfAnchor, udfAnchor(kUdfAnchor));
  addFixed(UdfTree::kPartitionSector, udfFileSet(volume));
  addFixed(sectors_ - 1, udfAnchor(sectors_ - 1));
}

std::size_t ImageLayout::segmentAt(std::uint32_t sector) const {
  const auto after = std::upper_bound(
      segments_.begin(), segments_.end(), sector,
      [](std::uint32_t wanted, const Segment& segment) { return wanted < segment.sector; });
  const auto index = static_cast<std::size_t>(after - segments_.begin());
  if (index == 0) return 0;
  const Segment& before = segments_[index - 1];
  return sector - before.sector < before.sectors ? index - 1 : index;
}

ImageBytes ImageLayout::metadata(const Segment& segment) const {
  switch (segment.kind) {
    case Segment::Kind::Fixed:
      return fixed_[segment.index];
    case Segment::Kind::PathTable:
      return isoTrees_[segment.isoTree]->pathTable(false);
    case Segment::Kind::BigEndianPathTable:
      return isoTrees_[segment.isoTree]->pathTable(true);
    case Segment::Kind::IsoDirectory:
      return isoTrees_[segment.isoTree]->directory(segment.index);
    case Segment::Kind::UdfDirectory:
      return udf_->directory(segment.index);
    case Segment::Kind::UdfFiles:
      return udf_->files(segment.index, segment.sectors);
    case Segment::Kind::FileData:
      break;
  }
  return {};
}

}  // namespace quillon::platform
