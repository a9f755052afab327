// A tree of hostile names becomes an image of ISO 9660, Joliet and UDF: every entry is found again
// in each of them, under a legal name that no other has, with its data inside the image.
#include <cstring>
#include <set>
#include <string>

#include "image/image_layout.h"
#include "image/image_names.h"
#include "input_parts.h"
#include "platform/imapi2.h"
#include "platform/testing.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

using fuzz::require;

constexpr std::size_t kMostEntries = 300;
constexpr unsigned kDeepest = 24;

struct Tally {
  std::size_t files = 0;
  std::size_t directories = 0;
  std::uint64_t bytes = 0;
  bool operator==(const Tally&) const = default;
};

// ---- the tree

std::uint64_t sizeOf(unsigned kind) {
  constexpr std::uint64_t kSizes[] = {0, 1, 2048, 2049, 4'294'967'295, 5'000'000'000};
  return kSizes[kind % std::size(kSizes)];
}

// A byte that says what comes: a file, a directory that is gone into, or the way back up.
void fill(ImageNode& root, fuzz::InputParts& parts, Tally& tally) {
  ImageNode* at = &root;
  unsigned depth = 0;
  for (std::size_t count = 0; !parts.isEmpty() && count < kMostEntries; ++count) {
    const unsigned what = parts.byte();
    if (what % 4 == 3) {
      if (at->parent != nullptr && depth-- > 0) at = at->parent;
      continue;
    }
    const std::u16string name = wideFromNative(parts.text());
    if (!isLegalNodeName(name) || at->children.contains(name)) continue;
    const auto node = std::make_shared<ImageNode>();
    node->name = name;
    node->parent = at;
    node->isDirectory = what % 4 == 2 && depth < kDeepest;
    at->children.emplace(name, node);
    if (node->isDirectory) {
      ++tally.directories;
      at = node.get();
      ++depth;
    } else {
      node->size = sizeOf(what / 4);
      ++tally.files;
      tally.bytes += node->size;
    }
  }
}

// ---- names

bool isLegalIso(std::u16string_view name, std::size_t most) {
  const std::size_t dots = static_cast<std::size_t>(std::count(name.begin(), name.end(), u'.'));
  return !name.empty() && name.size() - dots <= most && dots <= 1 &&
         std::all_of(name.begin(), name.end(), [](char16_t c) {
           return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '.';
         });
}

bool isLegal(NameRules rules, std::u16string_view name, bool isDirectory) {
  switch (rules) {
    case NameRules::IsoLevel1: {
      const std::size_t dot = std::min(name.find(u'.'), name.size());
      return isLegalIso(name, isDirectory ? 8 : 11) && dot <= 8 && name.size() - dot <= 4;
    }
    case NameRules::IsoLevel2:
      return isLegalIso(name, isDirectory ? 31 : 30);
    case NameRules::Joliet:
      return !name.empty() && name.size() <= 64 && name.back() != '.' && name.back() != ' ' &&
             std::none_of(name.begin(), name.end(), [](char16_t c) {
               return c < 0x20 || std::u16string_view(u"*/:;?\\").find(c) != std::u16string::npos;
             });
    case NameRules::Udf:
      break;
  }
  const bool isWide = std::any_of(name.begin(), name.end(), [](char16_t c) { return c > 0xFF; });
  return !name.empty() && name.size() <= (isWide ? 127U : 254U) && name.find(u'/') == name.npos &&
         name.find(u'\0') == name.npos;
}

void checkNames(const ImageNode& directory) {
  std::vector<NameToMap> names;
  for (const auto& [name, child] : directory.children) {
    names.push_back({name, child->isDirectory});
    if (child->isDirectory) checkNames(*child);
  }
  for (const NameRules rules :
       {NameRules::IsoLevel1, NameRules::IsoLevel2, NameRules::Joliet, NameRules::Udf}) {
    std::vector<std::u16string> mapped;
    std::vector<std::u16string> again;
    require(mapNames(rules, names, mapped) && mapNames(rules, names, again) && mapped == again);
    std::set<std::u16string> taken;
    for (std::size_t i = 0; i < mapped.size(); ++i) {
      require(isLegal(rules, mapped[i], names[i].isDirectory));
      for (char16_t& c : mapped[i]) c = c >= 'a' && c <= 'z' ? static_cast<char16_t>(c - 32) : c;
      require(taken.insert(mapped[i]).second);
    }
  }
}

// ---- the image, read again

class Image {
 public:
  explicit Image(const ImageLayout& layout) : layout_(layout) {
    std::uint64_t end = 0;
    for (std::size_t i = 0; i < layout.segmentCount(); ++i) {
      const Segment& segment = layout.segment(i);
      require(segment.sector >= end);
      end = std::uint64_t{segment.sector} + segment.sectors;
    }
    require(end <= layout.sectors());
  }

  // The metadata from a sector on; it never crosses the end of a segment.
  [[nodiscard]] ImageBytes read(std::uint32_t sector, std::uint64_t bytes) const {
    const std::size_t index = layout_.segmentAt(sector);
    require(index < layout_.segmentCount());
    const Segment& segment = layout_.segment(index);
    require(sector >= segment.sector && segment.kind != Segment::Kind::FileData);
    const ImageBytes all = layout_.metadata(segment);
    require(all.size() <= std::size_t{segment.sectors} * kImageSectorBytes);
    const std::size_t from = std::size_t{sector - segment.sector} * kImageSectorBytes;
    require(from + bytes <= all.size());
    return {all.begin() + static_cast<std::ptrdiff_t>(from),
            all.begin() + static_cast<std::ptrdiff_t>(from + bytes)};
  }
  void requireInside(std::uint64_t sector, std::uint64_t bytes) const {
    require(sector + sectorsFor(bytes) <= layout_.sectors());
  }

 private:
  const ImageLayout& layout_;
};

template <typename Number>
Number numberAt(const ImageBytes& bytes, std::size_t at) {
  require(at + sizeof(Number) <= bytes.size());
  Number number = 0;
  std::memcpy(&number, bytes.data() + at, sizeof number);
  return number;
}

// Each directory's list of records, those of a file in several sections taken together.
void walkIso(const Image& image, std::uint32_t sector, std::uint32_t bytes, Tally& tally) {
  const ImageBytes list = image.read(sector, bytes);
  std::set<std::string> identifiers;
  for (std::size_t at = 0, number = 0; at < list.size();) {
    const unsigned length = list[at];
    if (length == 0) {
      at = (at / kImageSectorBytes + 1) * kImageSectorBytes;
      continue;
    }
    require(length >= 34 && at % kImageSectorBytes + length <= kImageSectorBytes);
    const auto extent = numberAt<std::uint32_t>(list, at + 2);
    const auto size = numberAt<std::uint32_t>(list, at + 10);
    const unsigned flags = list[at + 25];
    const unsigned nameBytes = list[at + 32];
    require(33 + nameBytes <= length);
    image.requireInside(extent, size);
    if (number++ >= 2) {  // behind the directory itself and the one above it
      const auto name = list.begin() + static_cast<std::ptrdiff_t>(at + 33);
      const bool isNew = identifiers.insert(std::string(name, name + nameBytes)).second;
      if ((flags & 2) != 0) {
        require(isNew);
        ++tally.directories;
        walkIso(image, extent, size, tally);
      } else {
        tally.files += isNew ? 1 : 0;
        tally.bytes += size;
      }
    }
    at += length;
  }
}

void walkIsoVolume(const Image& image, std::uint32_t descriptorSector, const Tally& expected) {
  const ImageBytes descriptor = image.read(descriptorSector, kImageSectorBytes);
  require(std::memcmp(descriptor.data() + 1, "CD001", 5) == 0);
  Tally tally;
  walkIso(image, numberAt<std::uint32_t>(descriptor, 158), numberAt<std::uint32_t>(descriptor, 166),
          tally);
  require(tally == expected);
}

constexpr std::uint32_t kPartition = 257;

void walkUdf(const Image& image, std::uint32_t block, Tally& tally) {
  constexpr std::size_t kAllocationsAt = 176;
  const ImageBytes entry = image.read(kPartition + block, kImageSectorBytes);
  require(numberAt<std::uint16_t>(entry, 0) == 261);
  const auto size = numberAt<std::uint64_t>(entry, 56);
  const auto allocationBytes = numberAt<std::uint32_t>(entry, 172);
  std::uint64_t allocated = 0;
  std::uint32_t first = 0;
  for (std::size_t at = kAllocationsAt; at < kAllocationsAt + allocationBytes; at += 8) {
    const auto bytes = numberAt<std::uint32_t>(entry, at);
    if (allocated == 0) first = numberAt<std::uint32_t>(entry, at + 4);
    image.requireInside(kPartition + std::uint64_t{numberAt<std::uint32_t>(entry, at + 4)}, bytes);
    allocated += bytes;
  }
  require(allocated == size);
  if (entry[16 + 11] != 4) {
    ++tally.files;
    tally.bytes += size;
    return;
  }
  const ImageBytes list = image.read(kPartition + first, size);
  for (std::size_t at = 0; at < list.size();) {
    require(numberAt<std::uint16_t>(list, at) == 257);
    const unsigned nameBytes = list[at + 19];
    const bool isParent = (list[at + 18] & 8) != 0;
    if (!isParent) {
      tally.directories += (list[at + 18] & 2) != 0 ? 1 : 0;
      walkUdf(image, numberAt<std::uint32_t>(list, at + 24), tally);
    }
    at += (38 + nameBytes + 3) / 4 * 4;
    require(at <= list.size());
  }
}

}  // namespace
}  // namespace quillon::platform

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  using namespace quillon::platform;
  static const bool hasClock =
      (testing::SubstituteClock([] { return SYSTEMTIME{2021, 3, 5, 5, 14, 15, 9, 260}; }), true);
  (void)hasClock;
  fuzz::InputParts parts(data, size);
  ImageSettings settings;
  const unsigned choice = parts.byte();
  settings.fileSystems = choice & 7U;
  settings.isStrict = (choice & 8U) != 0;
  settings.volumeName = wideFromNative(parts.text());
  ImageNode root;
  root.isDirectory = true;
  Tally expected;
  fill(root, parts, expected);
  checkNames(root);

  std::shared_ptr<const ImageLayout> layout;
  if (FAILED(ImageLayout::make(root, settings, layout))) return 0;
  const Image image(*layout);
  if (settings.has(FsiFileSystemISO9660)) walkIsoVolume(image, 16, expected);
  if (settings.has(FsiFileSystemJoliet)) walkIsoVolume(image, 17, expected);
  if (settings.has(FsiFileSystemUDF)) {
    Tally tally;
    walkUdf(image, numberAt<std::uint32_t>(image.read(kPartition, kImageSectorBytes), 404), tally);
    fuzz::require(tally == expected);
  }
  return 0;
}
