#include "image/iso9660_tree.h"

#include <algorithm>

#include "image/image_results.h"

namespace quillon::platform {
namespace {

constexpr std::uint32_t kRecordHeaderBytes = 33;
constexpr std::uint32_t kPathRecordHeaderBytes = 8;
constexpr std::uint32_t kMostDirectories = 65'535;  // a parent's number has 16 bits
// A file that is larger lies in several sections, each a whole number of sectors.
constexpr std::uint64_t kLargestSection = 0xFFFF'F800;

constexpr unsigned kDirectoryFlag = 0x02;
constexpr unsigned kMoreSectionsFlag = 0x80;

const std::string_view kSelf("\0", 1);
const std::string_view kParent("\1", 1);

std::uint32_t recordBytes(std::size_t identifierBytes) {
  const auto bytes = kRecordHeaderBytes + static_cast<std::uint32_t>(identifierBytes);
  return bytes + bytes % 2;
}

std::uint64_t sectionsOf(std::uint64_t size) {
  return std::max<std::uint64_t>(1, (size + kLargestSection - 1) / kLargestSection);
}

struct Extent {
  std::uint32_t sector;
  std::uint32_t bytes;
  unsigned flags;
};

void putRecord(FieldWriter& out, const Extent& extent, std::int64_t modified,
               std::string_view identifier) {
  const std::uint32_t length = recordBytes(identifier.size());
  out.u8(length).u8(0).both32(extent.sector).both32(extent.bytes);
  putRecordTime(out, imageTimeOf(modified));
  out.u8(extent.flags).zeros(2).both16(1);
  out.u8(static_cast<unsigned>(identifier.size())).text(identifier);
  out.zeros(length - kRecordHeaderBytes - identifier.size());
}

// Records do not cross the ends of sectors.
void makeRoom(FieldWriter& out, std::uint32_t length) {
  if (out.size() % kImageSectorBytes + length > kImageSectorBytes) out.fillSector();
}

// The name and the extension compare one after the other, each filled up with what sorts before
// every character that it may hold.
struct SortKey {
  std::u16string_view base;
  std::u16string_view extension;
};

SortKey sortKey(std::u16string_view name, bool isDirectory) {
  const std::size_t dot = isDirectory ? std::u16string_view::npos : name.rfind(u'.');
  if (dot == std::u16string_view::npos) return {name, {}};
  return {name.substr(0, dot), name.substr(dot + 1)};
}

}  // namespace

HRESULT IsoTree::prepare() {
  names_.resize(entries_.size());
  directoryNumber_.resize(entries_.size());
  directories_.push_back({});
  // Breadth first with sorted children: the order of the path table.
  for (std::uint32_t number = 0; number < directories_.size(); ++number) {
    Directory directory = std::move(directories_[number]);
    directoryNumber_[directory.entry] = number;
    if (hasEntries_) {
      if (const HRESULT hr = nameChildren(directory); FAILED(hr)) return hr;
    }
    for (const std::uint32_t child : directory.children) {
      if (entries_[child].isDirectory) directories_.push_back({child, number, 0, 0, {}});
    }
    directory.sectors = sizeInSectors(directory);
    const std::size_t nameBytes = number == 0 ? 1 : identifier(directory.entry).size();
    pathTableBytes_ +=
        kPathRecordHeaderBytes + static_cast<std::uint32_t>(nameBytes + nameBytes % 2);
    directories_[number] = std::move(directory);
    if (directories_.size() > kMostDirectories) {
      return refuseImage(IMAPI_E_TOO_MANY_DIRS, u"The image has too many directories");
    }
  }
  return S_OK;
}

HRESULT IsoTree::nameChildren(Directory& directory) {
  const LayoutEntry& entry = entries_[directory.entry];
  directory.children = entry.children();
  std::vector<NameToMap> names;
  names.reserve(directory.children.size());
  for (const std::uint32_t child : directory.children) {
    names.push_back({entries_[child].name, entries_[child].isDirectory});
  }
  std::vector<std::u16string> mapped;
  if (!mapNames(rules_, names, mapped)) {
    return refuseImage(IMAPI_E_NO_UNIQUE_NAME, u"Too many names are alike in the directory",
                       entry.name);
  }
  for (std::size_t i = 0; i < mapped.size(); ++i) {
    names_[directory.children[i]] = std::move(mapped[i]);
  }
  std::sort(directory.children.begin(), directory.children.end(),
            [this](std::uint32_t a, std::uint32_t b) { return comesBefore(a, b); });
  return S_OK;
}

bool IsoTree::comesBefore(std::uint32_t a, std::uint32_t b) const {
  const SortKey first = sortKey(names_[a], entries_[a].isDirectory);
  const SortKey second = sortKey(names_[b], entries_[b].isDirectory);
  if (first.base != second.base) return first.base < second.base;
  return first.extension < second.extension;
}

std::string IsoTree::encode(std::u16string_view text) const {
  std::string bytes;
  for (const char16_t unit : text) {
    if (isJoliet()) bytes += static_cast<char>(unit >> 8);
    bytes += static_cast<char>(unit & 0xFF);
  }
  return bytes;
}

std::string IsoTree::identifier(std::uint32_t entry) const {
  std::u16string name = names_[entry];
  if (entries_[entry].isDirectory) return encode(name);
  // ISO 9660 wants the dot even where no extension follows it.
  if (!isJoliet() && name.find(u'.') == std::u16string::npos) name += u'.';
  return encode(name + u";1");
}

std::uint32_t IsoTree::sizeInSectors(const Directory& directory) const {
  std::uint64_t sectors = 1;
  std::uint32_t used = 2 * recordBytes(1);
  for (const std::uint32_t child : directory.children) {
    const std::uint32_t length = recordBytes(identifier(child).size());
    for (std::uint64_t i = 0; i < sectionsOf(entries_[child].size); ++i) {
      if (used + length > kImageSectorBytes) {
        ++sectors;
        used = 0;
      }
      used += length;
    }
  }
  return static_cast<std::uint32_t>(sectors);
}

void IsoTree::putDirectoryRecord(FieldWriter& out, const Directory& directory,
                                 std::string_view name) const {
  const LayoutEntry& entry = entries_[directory.entry];
  putRecord(out, {directory.sector, directory.sectors * kImageSectorBytes, kDirectoryFlag},
            entry.modified, name);
}

void IsoTree::putRecords(FieldWriter& out, std::uint32_t index) const {
  const LayoutEntry& entry = entries_[index];
  const std::string name = identifier(index);
  if (entry.isDirectory) {
    makeRoom(out, recordBytes(name.size()));
    putDirectoryRecord(out, directories_[directoryNumber_[index]], name);
    return;
  }
  std::uint32_t sector = entry.size == 0 ? emptyFileSector_ : entry.dataSector;
  std::uint64_t left = entry.size;
  do {
    const auto bytes = static_cast<std::uint32_t>(std::min(left, kLargestSection));
    left -= bytes;
    makeRoom(out, recordBytes(name.size()));
    const unsigned flags = left > 0 ? kMoreSectionsFlag : 0;
    putRecord(out, {sector, bytes, flags}, entry.modified, name);
    sector += static_cast<std::uint32_t>(sectorsFor(bytes));
  } while (left > 0);
}

ImageBytes IsoTree::directory(std::uint32_t index) const {
  const Directory& directory = directories_[index];
  ImageBytes bytes;
  bytes.reserve(std::size_t{directory.sectors} * kImageSectorBytes);
  FieldWriter out(bytes);
  putDirectoryRecord(out, directory, kSelf);
  putDirectoryRecord(out, directories_[directory.parent], kParent);
  for (const std::uint32_t child : directory.children) putRecords(out, child);
  out.fillSector();
  return bytes;
}

ImageBytes IsoTree::pathTable(bool bigEndian) const {
  ImageBytes bytes;
  FieldWriter out(bytes);
  for (const Directory& directory : directories_) {
    const std::string name =
        directory.entry == 0 ? std::string(kSelf) : identifier(directory.entry);
    const unsigned parent = directory.parent + 1;
    out.u8(static_cast<unsigned>(name.size())).u8(0);
    if (bigEndian) {
      out.be32(directory.sector).be16(parent);
    } else {
      out.le32(directory.sector).le16(parent);
    }
    out.text(name).zeros(name.size() % 2);
  }
  out.fillSector();
  return bytes;
}

ImageBytes IsoTree::volumeDescriptor(const Volume& volume) const {
  const auto text = [this](std::u16string_view value, std::size_t width) {
    std::string bytes = encode(value);
    while (bytes.size() + 1 < width) bytes += isJoliet() ? std::string_view("\0 ", 2) : " ";
    bytes.resize(width, isJoliet() ? '\0' : ' ');
    return bytes;
  };
  const std::u16string setName(volume.setName.begin(), volume.setName.end());
  ImageBytes bytes;
  FieldWriter out(bytes);
  out.u8(isJoliet() ? 2 : 1).text("CD001").u8(1).u8(0);
  out.text(text(u"", 32)).text(text(volume.name, 32)).zeros(8).both32(volume.sectors);
  out.text(isJoliet() ? "%/E" : "", 32, '\0');  // UCS-2 level 3
  out.both16(1).both16(1).both16(kImageSectorBytes);
  out.both32(pathTableBytes_);
  out.le32(pathTable_).le32(0).be32(bigEndianPathTable_).be32(0);
  putDirectoryRecord(out, directories_[0], kSelf);
  out.text(text(setName, 128));
  // Publisher, preparer and application, then the files of copyright, abstract and bibliography.
  for (const std::size_t width : {128U, 128U, 128U, 37U, 37U, 37U}) out.text(text(u"", width));
  putVolumeTime(out, volume.made);
  putVolumeTime(out, volume.made);
  out.text("0000000000000000").u8(0);  // does not expire
  putVolumeTime(out, volume.made);
  out.u8(1);  // version of the structure
  out.fillSector();
  return bytes;
}

ImageBytes isoTerminator() {
  ImageBytes bytes;
  FieldWriter out(bytes);
  out.u8(255).text("CD001").u8(1);
  out.fillSector();
  return bytes;
}

}  // namespace quillon::platform
