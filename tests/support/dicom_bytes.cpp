#include "support/dicom_bytes.h"

#include <array>
#include <stdexcept>

namespace quillon::test {

namespace {

constexpr std::uint32_t kItem = 0xFFFEE000;
constexpr std::uint32_t kItemEnd = 0xFFFEE00D;
constexpr std::uint32_t kSequenceEnd = 0xFFFEE0DD;
constexpr std::uint32_t kPixelData = 0x7FE00010;
constexpr std::uint32_t kUndefined = 0xFFFFFFFF;
constexpr std::size_t kPreambleBytes = 128;

// Their explicit header has two reserved bytes and a 32-bit length.
bool hasLongHeader(std::string_view vr) {
  constexpr std::array<std::string_view, 13> kLong = {"OB", "OD", "OF", "OL", "OV", "OW", "SQ",
                                                      "SV", "UC", "UN", "UR", "UT", "UV"};
  for (std::string_view one : kLong) {
    if (one == vr) return true;
  }
  return false;
}

}  // namespace

void DataSetBytes::put16(std::uint16_t value) {
  const auto low = static_cast<std::uint8_t>(value & 0xFF);
  const auto high = static_cast<std::uint8_t>(value >> 8);
  const bool big = syntax_ == Syntax::ExplicitBig;
  bytes_.push_back(big ? high : low);
  bytes_.push_back(big ? low : high);
}

void DataSetBytes::put32(std::uint32_t value) {
  const auto low = static_cast<std::uint16_t>(value & 0xFFFF);
  const auto high = static_cast<std::uint16_t>(value >> 16);
  const bool big = syntax_ == Syntax::ExplicitBig;
  put16(big ? high : low);
  put16(big ? low : high);
}

void DataSetBytes::tag(std::uint32_t tag) {
  put16(static_cast<std::uint16_t>(tag >> 16));
  put16(static_cast<std::uint16_t>(tag & 0xFFFF));
}

DataSetBytes& DataSetBytes::header(std::uint32_t elementTag, std::string_view vr,
                                   std::uint32_t declaredLength) {
  tag(elementTag);
  const bool hasVr = syntax_ != Syntax::ImplicitLittle && (elementTag >> 16) != 0xFFFE;
  if (!hasVr) {
    put32(declaredLength);
    return *this;
  }
  bytes_.insert(bytes_.end(), vr.begin(), vr.end());
  if (hasLongHeader(vr)) {
    put16(0);
    put32(declaredLength);
  } else {
    put16(static_cast<std::uint16_t>(declaredLength));
  }
  return *this;
}

DataSetBytes& DataSetBytes::text(std::uint32_t elementTag, std::string_view vr,
                                 std::string_view value) {
  const bool isOdd = value.size() % 2 != 0;
  header(elementTag, vr, static_cast<std::uint32_t>(value.size() + (isOdd ? 1 : 0)));
  bytes_.insert(bytes_.end(), value.begin(), value.end());
  if (isOdd) bytes_.push_back(vr == "UI" ? 0 : ' ');
  return *this;
}

DataSetBytes& DataSetBytes::us(std::uint32_t elementTag, const std::vector<std::uint16_t>& values,
                               std::string_view vr) {
  header(elementTag, vr, static_cast<std::uint32_t>(values.size() * 2));
  bytes_.reserve(bytes_.size() + values.size() * 2);
  for (std::uint16_t value : values) put16(value);
  return *this;
}

DataSetBytes& DataSetBytes::ul(std::uint32_t elementTag, const std::vector<std::uint32_t>& values,
                               std::string_view vr) {
  header(elementTag, vr, static_cast<std::uint32_t>(values.size() * 4));
  for (std::uint32_t value : values) put32(value);
  return *this;
}

DataSetBytes& DataSetBytes::raw(std::uint32_t elementTag, std::string_view vr, const Bytes& value) {
  header(elementTag, vr, static_cast<std::uint32_t>(value.size()));
  return append(value);
}

DataSetBytes& DataSetBytes::append(const Bytes& bytes) {
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
  return *this;
}

// The length field of a sequence or an item is the last four bytes of its header; it is filled in
// at the end when it is defined.
DataSetBytes& DataSetBytes::beginSequence(std::uint32_t elementTag, bool undefined) {
  header(elementTag, "SQ", undefined ? kUndefined : 0);
  open_.push_back({bytes_.size() - 4, undefined});
  return *this;
}

DataSetBytes& DataSetBytes::beginItem(bool undefined) {
  header(kItem, "", undefined ? kUndefined : 0);
  open_.push_back({bytes_.size() - 4, undefined});
  return *this;
}

DataSetBytes& DataSetBytes::endSequence() {
  if (open_.empty()) throw std::logic_error("endSequence without beginSequence");
  const Open open = open_.back();
  open_.pop_back();
  if (open.undefined) return header(kSequenceEnd, "", 0);
  const auto length = static_cast<std::uint32_t>(bytes_.size() - open.lengthAt - 4);
  for (std::size_t i = 0; i < 4; ++i) {
    const std::size_t shift = 8 * (syntax_ == Syntax::ExplicitBig ? 3 - i : i);
    bytes_[open.lengthAt + i] = static_cast<std::uint8_t>(length >> shift);
  }
  return *this;
}

DataSetBytes& DataSetBytes::endItem() {
  if (open_.empty()) throw std::logic_error("endItem without beginItem");
  if (!open_.back().undefined) return endSequence();
  open_.pop_back();
  return header(kItemEnd, "", 0);
}

DataSetBytes& DataSetBytes::encapsulated(const std::vector<Bytes>& fragments) {
  header(kPixelData, "OB", kUndefined);
  for (const Bytes& fragment : fragments) {
    header(kItem, "", static_cast<std::uint32_t>(fragment.size()));
    append(fragment);
  }
  return header(kSequenceEnd, "", 0);
}

Bytes dicomFile(const Bytes& dataSet, std::string_view sopClassUid, std::string_view sopInstanceUid,
                std::string_view transferSyntaxUid) {
  const Bytes group = DataSetBytes(Syntax::ExplicitLittle)
                          .raw(0x00020001, "OB", {0x00, 0x01})
                          .text(0x00020002, "UI", sopClassUid)
                          .text(0x00020003, "UI", sopInstanceUid)
                          .text(0x00020010, "UI", transferSyntaxUid)
                          .text(0x00020012, "UI", "2.25.171263500")
                          .text(0x00020013, "SH", "SAMPLE_OBJECTS")
                          .take();
  const Bytes groupLength = DataSetBytes(Syntax::ExplicitLittle)
                                .ul(0x00020000, {static_cast<std::uint32_t>(group.size())})
                                .take();
  Bytes file(kPreambleBytes, 0);
  file.reserve(kPreambleBytes + 4 + groupLength.size() + group.size() + dataSet.size());
  for (char c : std::string_view("DICM")) file.push_back(static_cast<std::uint8_t>(c));
  file.insert(file.end(), groupLength.begin(), groupLength.end());
  file.insert(file.end(), group.begin(), group.end());
  file.insert(file.end(), dataSet.begin(), dataSet.end());
  return file;
}

}  // namespace quillon::test
