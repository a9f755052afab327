#include "image/udf_tree.h"

#include <algorithm>

#include "image/image_names.h"
#include "image/image_results.h"
#include "image/image_time.h"
#include "udf_bytes.h"

namespace quillon::platform {
namespace {

constexpr std::size_t kIdentifierHeaderBytes = 38;
// The longest extent that one allocation descriptor can describe.
constexpr std::uint64_t kLargestExtent = (std::uint64_t{1} << 30) - kImageSectorBytes;
constexpr std::size_t kShortAddressBytes = 8;
constexpr std::uint64_t kFirstUniqueId = 16;  // the ones below are reserved; the root has 0

constexpr unsigned kDirectoryFlag = 0x02;
constexpr unsigned kParentFlag = 0x08;

constexpr unsigned kFileTypeDirectory = 4;
constexpr unsigned kFileTypeBytes = 5;
constexpr std::uint32_t kEveryoneReads = 0x1084;
constexpr std::uint32_t kEveryoneEnters = 0x0421;
constexpr std::uint32_t kNobody = 0xFFFF'FFFF;

std::uint32_t identifierBytes(std::size_t nameBytes) {
  return static_cast<std::uint32_t>((kIdentifierHeaderBytes + nameBytes + 3) / 4 * 4);
}

std::uint64_t uniqueIdOf(std::uint32_t entry) { return entry == 0 ? 0 : kFirstUniqueId + entry; }

}  // namespace

HRESULT UdfTree::prepare() {
  names_.resize(entries_.size());
  listBytes_.resize(entries_.size());
  blocks_.resize(entries_.size());
  for (std::uint32_t index = 0; index < entries_.size(); ++index) {
    const LayoutEntry& entry = entries_[index];
    if (!entry.isDirectory) continue;
    const std::vector<std::uint32_t> children = entry.children();
    std::vector<NameToMap> names;
    names.reserve(children.size());
    for (const std::uint32_t child : children) {
      names.push_back({entries_[child].name, entries_[child].isDirectory});
    }
    std::vector<std::u16string> mapped;
    if (!mapNames(NameRules::Udf, names, mapped)) {
      return refuseImage(IMAPI_E_NO_UNIQUE_NAME, u"Too many names are alike in the directory",
                         entry.name);
    }
    listBytes_[index] = identifierBytes(0);
    for (std::size_t i = 0; i < children.size(); ++i) {
      names_[children[i]] = udfText(mapped[i]);
      listBytes_[index] += identifierBytes(names_[children[i]].size());
    }
  }
  return S_OK;
}

std::uint32_t UdfTree::entryBlocks(std::uint32_t entry) const {
  return 1 + static_cast<std::uint32_t>(sectorsFor(listBytes_[entry]));
}

std::uint64_t UdfTree::nextUniqueId() const { return kFirstUniqueId + entries_.size(); }

void UdfTree::putIdentifier(ImageBytes& bytes, std::size_t listStart, std::uint32_t listBlock,
                            std::uint32_t target, bool isParent) const {
  const LayoutEntry& entry = entries_[target];
  const std::string name = isParent ? std::string() : names_[target];
  const std::size_t start = bytes.size();
  FieldWriter out(bytes);
  out.zeros(kUdfTagBytes).le16(1);  // version of the file
  out.u8((entry.isDirectory ? kDirectoryFlag : 0) | (isParent ? kParentFlag : 0));
  out.u8(static_cast<unsigned>(name.size()));
  putUdfLongAddress(out, kImageSectorBytes, blocks_[target]);
  out.le16(0).text(name);
  out.zeros(start + identifierBytes(name.size()) - bytes.size());
  sealUdfDescriptor(
      bytes, start, UdfTag::FileIdentifier,
      listBlock + static_cast<std::uint32_t>((start - listStart) / kImageSectorBytes));
}

ImageBytes UdfTree::directory(std::uint32_t index) const {
  ImageBytes bytes;
  bytes.reserve(std::size_t{entryBlocks(index)} * kImageSectorBytes);
  putFileEntry(bytes, index);
  const std::size_t listStart = bytes.size();
  const std::uint32_t listBlock = blocks_[index] + 1;
  putIdentifier(bytes, listStart, listBlock, entries_[index].parent, true);
  for (const std::uint32_t child : entries_[index].children()) {
    putIdentifier(bytes, listStart, listBlock, child, false);
  }
  FieldWriter(bytes).fillSector();
  return bytes;
}

ImageBytes UdfTree::files(std::uint32_t first, std::uint32_t count) const {
  ImageBytes bytes;
  bytes.reserve(std::size_t{count} * kImageSectorBytes);
  for (std::uint32_t entry = first; entry < first + count; ++entry) putFileEntry(bytes, entry);
  return bytes;
}

void UdfTree::putFileEntry(ImageBytes& bytes, std::uint32_t index) const {
  const LayoutEntry& entry = entries_[index];
  const std::uint64_t size = entry.isDirectory ? listBytes_[index] : entry.size;
  std::uint32_t block =
      entry.isDirectory ? blocks_[index] + 1 : entry.dataSector - kPartitionSector;
  // Names that lead here: a file has one, a directory also those of the directories below it.
  const std::size_t links = 1 + entry.directories.size();
  const std::uint64_t extents = (size + kLargestExtent - 1) / kLargestExtent;

  const std::size_t start = bytes.size();
  FieldWriter out(bytes);
  out.zeros(kUdfTagBytes);
  // How the entry is recorded: strategy 4, one entry, short addresses.
  out.le32(0).le16(4).le16(0).le16(1).u8(0);
  out.u8(entry.isDirectory ? kFileTypeDirectory : kFileTypeBytes).zeros(6).le16(0);
  out.le32(kNobody).le32(kNobody);
  out.le32(kEveryoneReads | (entry.isDirectory ? kEveryoneEnters : 0));
  out.le16(static_cast<unsigned>(std::min<std::size_t>(links, 0xFFFF)));
  out.zeros(6);  // no records in the file
  out.le64(size).le64(sectorsFor(size));
  const ImageTime modified = imageTimeOf(entry.modified);
  for (int time = 0; time < 3; ++time) putUdfTime(out, modified);  // accessed, modified, changed
  out.le32(1).zeros(16);                                           // no extended attributes
  putUdfImplementation(out);
  out.le64(uniqueIdOf(index)).le32(0);
  out.le32(static_cast<std::uint32_t>(extents * kShortAddressBytes));
  for (std::uint64_t left = size; left > 0;) {
    const auto length = static_cast<std::uint32_t>(std::min(left, kLargestExtent));
    out.le32(length).le32(block);
    block += static_cast<std::uint32_t>(sectorsFor(length));
    left -= length;
  }
  sealUdfDescriptor(bytes, start, UdfTag::FileEntry, blocks_[index]);
  out.fillSector();
}

}  // namespace quillon::platform
