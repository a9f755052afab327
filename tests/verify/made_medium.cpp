#include "made_medium.h"

#include <stdexcept>

#include "platform/sha256.h"

namespace quillon::test {

namespace {

// In an item.
constexpr std::uint32_t kNextValueAt = 16;
constexpr std::uint32_t kInUseValueAt = 28;
constexpr std::uint32_t kLowerValueAt = 38;

void put(Bytes& bytes, std::size_t at, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes.at(at + i) = static_cast<std::uint8_t>(value >> (8 * i));
}

ObjectDescription objectOf(ObjectKind kind, int series, int instance) {
  ObjectDescription description;
  description.kind = kind;
  description.series = series;
  description.instance = instance;
  return description;
}

MadeRecord imageRecord(std::size_t parent, const char* fileId, const ObjectDescription& object) {
  MadeRecord record{"IMAGE",
                    parent,
                    {{0x00200013, {"IS", std::to_string(object.instance)}}},
                    fileId,
                    sopClassUidOf(object.kind),
                    instanceUidOf(object)};
  return record;
}

Bytes recordBytes(const MadeRecord& record) {
  DataSetBytes bytes;
  bytes.beginItem().ul(0x00041400, {0}).us(0x00041410, {0xFFFF}).ul(0x00041420, {0});
  bytes.text(0x00041430, "CS", record.type);
  if (!record.fileId.empty()) {
    bytes.text(0x00041500, "CS", record.fileId);
    if (record.hasReferences) {
      bytes.text(0x00041510, "UI", record.sopClassUid);
      bytes.text(0x00041511, "UI", record.sopInstanceUid);
      bytes.text(0x00041512, "UI", record.transferSyntaxUid);
    }
  }
  for (const auto& [tag, key] : record.keys) bytes.text(tag, key.vr, key.value);
  return bytes.endItem().take();
}

}  // namespace

MadeMedium::MadeMedium() {
  const ObjectDescription objects[] = {objectOf(ObjectKind::Ct, 1, 1),
                                       objectOf(ObjectKind::Ct, 1, 2),
                                       objectOf(ObjectKind::Mr, 2, 3)};
  records = {
      {"PATIENT", {}, {{0x00100010, {"PN", "PATIENT^1"}}, {0x00100020, {"LO", "ID1"}}}},
      {"STUDY",
       kPatient,
       {{0x00080020, {"DA", "20090305"}},
        {0x00080030, {"TM", "120000"}},
        {0x00080050, {"SH", ""}},
        {0x00081030, {"LO", "Sample study"}},
        {0x0020000D, {"UI", studyUidOf(objects[0])}},
        {0x00200010, {"SH", "1"}}}},
      {"SERIES",
       kStudy,
       {{0x00080060, {"CS", "CT"}},
        {0x0020000E, {"UI", seriesUidOf(objects[0])}},
        {0x00200011, {"IS", "1"}}}},
      imageRecord(kSeries1, kFile1, objects[0]),
      imageRecord(kSeries1, kFile2, objects[1]),
      {"SERIES",
       kStudy,
       {{0x00080060, {"CS", "MR"}},
        {0x0020000E, {"UI", seriesUidOf(objects[2])}},
        {0x00200011, {"IS", "2"}}}},
      imageRecord(kSeries2, kFile3, objects[2]),
  };
  const char* const names[] = {kFile1, kFile2, kFile3};
  for (int i = 0; i < 3; ++i) {
    medium.files[WidenText(names[i], CP_ACP)] = makeObject(objects[i]);
  }
}

void MadeMedium::makeDicomDir() {
  DataSetBytes header;
  header.text(0x00041130, "CS", fileSetId).ul(0x00041200, {0}).ul(0x00041202, {0});
  header.us(0x00041212, {0}).header(0x00041220, "SQ", 0);
  Bytes file = dicomFile(header.take(), sopClassUid, "1.2.3.4", kExplicitLittleUid);
  if (!hasPreamble) file.erase(file.begin(), file.begin() + 132);
  const std::size_t sequenceAt = file.size();
  offsets.clear();
  for (const MadeRecord& record : records) {
    offsets.push_back(static_cast<std::uint32_t>(file.size()));
    const Bytes bytes = recordBytes(record);
    file.insert(file.end(), bytes.begin(), bytes.end());
  }
  put(file, sequenceAt - 4, static_cast<std::uint32_t>(file.size() - sequenceAt), 4);
  dicomDir() = file;
  std::optional<std::size_t> lastOfRoot;
  for (std::size_t i = 0; i < records.size(); ++i) {
    std::optional<std::size_t> before;
    for (std::size_t j = 0; j < i; ++j) {
      if (records[j].parent == records[i].parent) before = j;
    }
    if (before) setNext(*before, offsets[i]);
    if (!before && records[i].parent) setLower(*records[i].parent, offsets[i]);
    if (!before && !records[i].parent) setHeader(0x00041200, offsets[i]);
    if (!records[i].parent) lastOfRoot = i;
  }
  if (lastOfRoot) setHeader(0x00041202, offsets[*lastOfRoot]);
}

void MadeMedium::makeSums() {
  std::string text;
  for (const auto& [path, bytes] : medium.files) {
    if (path == OLESTR("SHA256SUMS")) continue;
    Sha256 digest;
    digest.Update(bytes.data(), bytes.size());
    std::string name = NarrowText(path, CP_ACP);
    for (char& c : name) c = c == '\\' ? '/' : c;
    text += digest.Finish() + (text.empty() ? " *" : "  ") + name + "\n";
  }
  file("SHA256SUMS") = Bytes(text.begin(), text.end());
}

Bytes& MadeMedium::file(const std::string& path) { return medium.files[WidenText(path, CP_ACP)]; }

void MadeMedium::setNext(std::size_t record, std::uint32_t offset) {
  put(dicomDir(), offsets.at(record) + kNextValueAt, offset, 4);
}
void MadeMedium::setLower(std::size_t record, std::uint32_t offset) {
  put(dicomDir(), offsets.at(record) + kLowerValueAt, offset, 4);
}
void MadeMedium::setInUse(std::size_t record, std::uint16_t flag) {
  put(dicomDir(), offsets.at(record) + kInUseValueAt, flag, 2);
}

void MadeMedium::setHeader(std::uint32_t tag, std::uint32_t value) {
  const std::uint8_t group[] = {static_cast<std::uint8_t>(tag >> 16), 0,
                                static_cast<std::uint8_t>(tag),
                                static_cast<std::uint8_t>(tag >> 8)};
  Bytes& bytes = dicomDir();
  const auto found = std::search(bytes.begin(), bytes.end(), std::begin(group), std::end(group));
  if (found == bytes.end()) throw std::runtime_error("no such element in the DICOMDIR");
  // Behind tag, VR and length; of the sequence the length itself stands there.
  put(bytes, static_cast<std::size_t>(found - bytes.begin()) + 8, value, tag == 0x00041212 ? 2 : 4);
}

}  // namespace quillon::test
