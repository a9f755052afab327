#include "dir_test_tools.h"

#include <stdexcept>

namespace quillon::test {

namespace {

constexpr std::size_t kMetaAt = 132;
constexpr std::uint32_t kSequence = 0x00041220;

}  // namespace

void makeReferredFile(const std::filesystem::path& file, std::string_view sopClassUid,
                      std::string_view sopInstanceUid, std::string_view transferSyntaxUid) {
  std::filesystem::create_directories(file.parent_path());
  const Bytes dataSet = DataSetBytes().text(0x00080018, "UI", sopInstanceUid).take();
  writeBytes(file, dicomFile(dataSet, sopClassUid, sopInstanceUid, transferSyntaxUid));
}

RawDicomDir::RawDicomDir(Bytes bytes) : bytes_(std::move(bytes)) {
  if (bytes_.size() < kMetaAt ||
      std::string(bytes_.begin() + 128, bytes_.begin() + 132) != "DICM") {
    throw std::runtime_error("no DICM");
  }
  header_ = elements(kMetaAt, bytes_.size());
  const auto sequence = header_.find(kSequence);
  if (sequence == header_.end()) throw std::runtime_error("no Directory Record Sequence");
  sequenceAt_ = sequence->second.valueAt;
}

std::uint32_t RawDicomDir::u16(std::size_t at) const {
  return bytes_.at(at) | static_cast<std::uint32_t>(bytes_.at(at + 1)) << 8;
}

std::uint32_t RawDicomDir::u32(std::size_t at) const { return u16(at) | u16(at + 2) << 16; }

RawElements RawDicomDir::elements(std::size_t from, std::size_t to) const {
  RawElements found;
  std::uint32_t last = 0;
  while (from < to) {
    const std::uint32_t tag = u16(from) << 16 | u16(from + 2);
    if (tag <= last) throw std::runtime_error("elements out of order");
    last = tag;
    RawElement element;
    element.vr = {static_cast<char>(bytes_.at(from + 4)), static_cast<char>(bytes_.at(from + 5))};
    const bool isLong = element.vr == "OB" || element.vr == "SQ" || element.vr == "UN" ||
                        element.vr == "OW" || element.vr == "UT";
    element.lengthBytes = isLong ? u32(from + 8) : u16(from + 6);
    element.valueAt = from + (isLong ? 12 : 8);
    found[tag] = element;
    if (tag == kSequence) return found;
    from = element.valueAt + element.lengthBytes;
  }
  if (from != to) throw std::runtime_error("elements do not fill their item");
  return found;
}

std::string RawDicomDir::text(const RawElements& from, std::uint32_t tag) const {
  const RawElement& element = from.at(tag);
  const auto begin = bytes_.begin() + static_cast<std::ptrdiff_t>(element.valueAt);
  return {begin, begin + element.lengthBytes};
}

std::uint32_t RawDicomDir::headerOffset(std::uint32_t tag) const {
  return u32(header_.at(tag).valueAt);
}

RawElements RawDicomDir::record(std::uint32_t offset) const {
  if (offset < sequenceAt_ || u16(offset) != 0xFFFE || u16(offset + 2) != 0xE000) return {};
  return elements(offset + 8, offset + 8 + u32(offset + 4));
}

std::uint32_t RawDicomDir::link(std::uint32_t offset, std::uint32_t tag) const {
  return u32(record(offset).at(tag).valueAt);
}

std::string RawDicomDir::tree(std::uint32_t offset) const {
  std::string names;
  for (; offset != 0; offset = link(offset, 0x00041400)) {
    std::string name = text(record(offset), 0x00041430);
    while (!name.empty() && name.back() == ' ') name.pop_back();
    if (!names.empty()) names += ' ';
    names += name;
    const std::uint32_t lower = link(offset, 0x00041420);
    if (lower != 0) names += "(" + tree(lower) + ")";
  }
  return names;
}

std::string treeOf(const DcDirRec& parent) {
  std::string names;
  for (std::size_t i = 0; i < parent.lowerCount(); ++i) {
    std::string name;
    static_cast<void>(dirGetDesc(parent.lower(i)->type(), &name));
    if (!names.empty()) names += ' ';
    names += name;
    if (parent.lower(i)->lowerCount() != 0) names += "(" + treeOf(*parent.lower(i)) + ")";
  }
  return names;
}

DcDirRec* addRecord(DcDirRec& parent, DcDirRecType type) {
  return parent.addLower(std::make_unique<DcDirRec>(type));
}

DcDirRec* addSeries(DcDirRec& root) {
  DcDirRec* const study = addRecord(*addRecord(root, DcDirRecType::Patient), DcDirRecType::Study);
  return addRecord(*study, DcDirRecType::Series);
}

void addTextKey(DcDirRec& record, DcTag tag, const char* text) {
  record.addKey(std::make_unique<DcElem>(tag, text));
}

}  // namespace quillon::test
