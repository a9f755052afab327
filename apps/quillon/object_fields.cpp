#include "object_fields.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "dicom/elem_list.h"
#include "dicom/file_meta_info.h"
#include "dicom/parse_fields.h"
#include "dicom/read_file.h"

namespace quillon::cli {

namespace {

struct FieldRow {
  DcTag tag;
  std::string ObjectFields::*field;
};
// In ascending order, as the field reader takes them.
// clang-format off
constexpr std::array kFields{
    FieldRow{0x00020002, &ObjectFields::mediaSopClassUid},
    FieldRow{0x00020003, &ObjectFields::mediaSopInstanceUid},
    FieldRow{0x00020010, &ObjectFields::transferSyntaxUid},
    FieldRow{0x00080018, &ObjectFields::instanceUid},
    FieldRow{0x00080020, &ObjectFields::studyDate},
    FieldRow{0x00080060, &ObjectFields::modality},
    FieldRow{0x00100010, &ObjectFields::patientName},
    FieldRow{0x00100020, &ObjectFields::patientId},
    FieldRow{0x00100030, &ObjectFields::patientBirthDate},
    FieldRow{0x0020000D, &ObjectFields::studyUid},
    FieldRow{0x0020000E, &ObjectFields::seriesUid},
};
// clang-format on
constexpr std::array<DcTag, 3> kObjectUids{0x00080018, 0x0020000D, 0x0020000E};
constexpr std::uint16_t kMetaGroup = 0x0002;
constexpr std::size_t kTextBytes = 1025;

std::string_view withoutPadding(std::string_view value) {
  constexpr std::string_view kPadding(" \0", 2);
  const std::size_t last = value.find_last_not_of(kPadding);
  if (last == std::string_view::npos) return {};
  const std::size_t first = value.find_first_not_of(' ');
  return value.substr(first, last - first + 1);
}

using Requests = std::array<DcFieldRequest, kFields.size() + 1>;

// The field reader answers a request also from inside a sequence, and has then passed the requests
// below it: a file in which a sequence holds a wanted tag (the series that a presentation state
// refers to, say) shows by what is missing.
bool isAnswered(const Requests& requests) {
  for (std::size_t i = 0; i < kFields.size(); ++i) {
    const DcFieldStatus status = requests[i].status;
    if (status != DcFieldStatus::Found && status != DcFieldStatus::FoundCut) return false;
  }
  return true;
}

bool readWithFieldReader(const std::string& path, ObjectFields& fields) {
  Requests requests;
  for (std::size_t i = 0; i < kFields.size(); ++i) requests[i].tag = kFields[i].tag;
  if (libParseFields(path.c_str(), requests.data(), false) != kDcOk || !isAnswered(requests)) {
    return false;
  }
  for (std::size_t i = 0; i < kFields.size(); ++i) {
    const DcFieldRequest& request = requests[i];
    const std::size_t bytes = std::min<std::size_t>(request.lengthBytes, kFieldValueBytes);
    fields.*kFields[i].field =
        withoutPadding({reinterpret_cast<const char*>(request.value.data()), bytes});
  }
  fields.namesObject = true;
  return true;
}

// The meta information on its own: a data set that is read lends the group what it lacks, and here
// it matters that it is lacking.
void readMetaInfo(const std::string& path, ObjectFields& fields) {
  DcFileMetaInfo metaInfo;
  if (dirReadFileMetaInfo(path.c_str(), metaInfo, nullptr) != kDcOk) return;
  fields.mediaSopClassUid = withoutPadding(metaInfo.sopClassUid);
  fields.mediaSopInstanceUid = withoutPadding(metaInfo.sopInstanceUid);
  fields.transferSyntaxUid = withoutPadding(metaInfo.transferSyntaxUid);
}

// The same as the field reader answers, from the parsed header, where the level of an element is
// known.
bool readWithHeader(const std::string& path, ObjectFields& fields) {
  fields = ObjectFields();
  readMetaInfo(path, fields);
  DcFileMetaInfo metaInfo;
  DcElemList elements;
  std::uint64_t pixelValueOffset = 0;
  if (dirReadFile(path.c_str(), metaInfo, elements, &pixelValueOffset, nullptr) != kDcOk) {
    return false;
  }
  for (const FieldRow& row : kFields) {
    if (dcGroup(row.tag) == kMetaGroup) continue;
    std::array<char, kTextBytes> text{};
    elements.getValue(row.tag, text.data(), text.size());
    fields.*row.field = withoutPadding(text.data());
  }
  fields.namesObject = true;
  for (const DcTag tag : kObjectUids) {
    fields.namesObject = fields.namesObject && elements.contains(tag);
  }
  return true;
}

}  // namespace

bool readObjectFields(const std::string& path, ObjectFields& fields) {
  return readWithFieldReader(path, fields) || readWithHeader(path, fields);
}

}  // namespace quillon::cli
