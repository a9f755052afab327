#include "dicom_dir_bytes.h"

#include <stdexcept>
#include <string_view>

namespace quillon::test {

namespace {

constexpr std::size_t kPrefixBytes = 132;  // preamble and "DICM"
constexpr std::uint32_t kRecordSequence = 0x00041220;
constexpr std::uint32_t kItem = 0xFFFEE000;

class Reader {
 public:
  Reader(const Bytes& bytes, std::size_t from, std::size_t to)
      : bytes_(bytes), at_(from), end_(to) {}

  [[nodiscard]] bool atEnd() const { return at_ == end_; }
  [[nodiscard]] std::size_t position() const { return at_; }
  std::uint32_t number(std::size_t count) {
    std::uint32_t value = 0;
    const std::size_t start = skip(count);
    for (std::size_t i = count; i > 0; --i) value = value << 8 | bytes_[start + i - 1];
    return value;
  }
  std::uint32_t tag() {
    const std::uint32_t group = number(2);
    return group << 16 | number(2);
  }
  std::string text(std::size_t count) {
    const std::size_t start = skip(count);
    return {reinterpret_cast<const char*>(bytes_.data()) + start, count};
  }
  std::size_t skip(std::size_t count) {
    if (count > end_ - at_) throw std::runtime_error("the DICOMDIR ends too early");
    const std::size_t start = at_;
    at_ += count;
    return start;
  }
  // VR and length of an explicit VR element.
  std::uint32_t header(std::string& vr) {
    vr = text(2);
    if (vr == "OB" || vr == "OW" || vr == "SQ" || vr == "UN" || vr == "UT") {
      skip(2);
      return number(4);
    }
    return number(2);
  }

 private:
  const Bytes& bytes_;
  std::size_t at_;
  std::size_t end_;
};

std::string withoutPadding(std::string value, const std::string& vr) {
  if (vr == "UL" || vr == "US" || vr == "OB" || vr == "SQ") return value;
  while (!value.empty() && (value.back() == ' ' || value.back() == '\0')) value.pop_back();
  return value;
}

RecordElements readElements(Reader& in) {
  RecordElements elements;
  while (!in.atEnd()) {
    const std::uint32_t tag = in.tag();
    std::string vr;
    const std::uint32_t length = in.header(vr);
    elements[tag] = withoutPadding(in.text(length), vr);
  }
  return elements;
}

}  // namespace

DicomDirBytes readDicomDir(const Bytes& file) {
  DicomDirBytes result;
  Reader in(file, 0, file.size());
  if (in.text(kPrefixBytes).substr(kPrefixBytes - 4) != "DICM") {
    throw std::runtime_error("no DICM");
  }
  while (true) {
    const std::uint32_t tag = in.tag();
    std::string vr;
    const std::uint32_t length = in.header(vr);
    if (tag != kRecordSequence) {
      result.header[tag] = withoutPadding(in.text(length), vr);
      continue;
    }
    if (in.position() + length != file.size()) throw std::runtime_error("sequence length");
    break;
  }
  while (!in.atEnd()) {
    if (in.tag() != kItem) throw std::runtime_error("no item tag");
    const std::uint32_t length = in.number(4);
    const std::size_t start = in.skip(length);
    Reader item(file, start, start + length);
    result.records.push_back(readElements(item));
  }
  return result;
}

std::string recordTypes(const DicomDirBytes& dicomDir) {
  std::string types;
  for (const RecordElements& record : dicomDir.records) {
    if (!types.empty()) types += ' ';
    types += record.at(0x00041430);
  }
  return types;
}

}  // namespace quillon::test
