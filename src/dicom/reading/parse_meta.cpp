#include "parse_meta.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "dicom/dict.h"
#include "dicom/elem_list.h"
#include "dicom/log.h"
#include "dicom/tags.h"
#include "parse_list.h"
#include "parse_walk.h"

namespace quillon {
namespace {

constexpr std::uint64_t kSmallestFile = 136;
constexpr std::uint64_t kMagicAt = 128;
constexpr std::size_t kMagicBytes = 4;
constexpr std::uint16_t kMetaGroup = dcGroup(tags::kTransferSyntaxUid);
constexpr std::size_t kMaxUidChars = 128;
constexpr std::size_t kMaxNameChars = 16;

// Undefined lengths have no place in the meta group: where one stands, only the bytes of the
// delimitation item tell where it ends.
bool scanToDelimiter(FileWindow& window, std::uint64_t& position) {
  while (const std::uint8_t* bytes = window.at(position, kShortHeaderBytes)) {
    if (loadTag(bytes, false) == tags::kSequenceDelimitationItem && loadLe32(bytes + 4) == 0) {
      position += kShortHeaderBytes;
      return true;
    }
    ++position;
  }
  return false;
}

// Moves `position` from the first element of the group to the first tag behind it.
bool walkMetaGroup(FileWindow& window, std::uint64_t& position) {
  while (true) {
    const std::uint8_t* group = window.at(position, sizeof(DcTag));
    if (group == nullptr) return false;
    if (loadLe16(group) != kMetaGroup) return true;
    std::size_t available = 0;
    const std::uint8_t* bytes = headerAt(window, position, available);
    ElemInfo info;
    if (bytes == nullptr || !utilGetElemInfo(bytes, available, kParseExplicitLittleForm, info)) {
      return false;
    }
    position += info.headerBytes;
    if (info.valueLength != kUndefinedLength) {
      position += info.valueLength;
    } else if (!scanToDelimiter(window, position)) {
      return false;
    }
  }
}

void take(const DcElemList& group, DcTag tag, std::size_t maxChars, std::string& out) {
  const DcElem* found = group.find(tag);
  if (found == nullptr) return;
  if (const auto text = found->stringValue(0)) out = text->substr(0, maxChars);
}

const DcElemValueBuf* bytesOf(const DcElemList& group, DcTag tag) {
  const DcElem* found = group.find(tag);
  if (found == nullptr || found->segments().empty()) return nullptr;
  return &found->segments().front();
}

void fillRecord(const DcElemList& group, DcFileMetaInfo& metaInfo) {
  if (const DcElemValueBuf* version = bytesOf(group, tags::kFileMetaInformationVersion);
      version != nullptr && version->lengthBytes() >= 2) {
    metaInfo.version = loadBe16(version->data());
  }
  take(group, tags::kMediaStorageSopClassUid, kMaxUidChars, metaInfo.sopClassUid);
  take(group, tags::kMediaStorageSopInstanceUid, kMaxUidChars, metaInfo.sopInstanceUid);
  take(group, tags::kTransferSyntaxUid, kMaxUidChars, metaInfo.transferSyntaxUid);
  take(group, tags::kImplementationClassUid, kMaxUidChars, metaInfo.implementationClassUid);
  take(group, tags::kImplementationVersionName, kMaxNameChars, metaInfo.implementationVersionName);
  take(group, tags::kSourceApplicationEntityTitle, kMaxNameChars, metaInfo.sourceAeTitle);
  take(group, tags::kPrivateInformationCreatorUid, kMaxUidChars, metaInfo.privateCreatorUid);
  if (const DcElemValueBuf* information = bytesOf(group, tags::kPrivateInformation)) {
    metaInfo.privateInformation.assign(information->data(),
                                       information->data() + information->lengthBytes());
  }
}

void resolveUids(DcFileMetaInfo& metaInfo, DataSetPlace& place) {
  if (!metaInfo.sopClassUid.empty()) metaInfo.sopClass = dcUidOf(metaInfo.sopClassUid);
  if (metaInfo.transferSyntaxUid.empty()) return;
  const DcUid syntax = dcUidOf(metaInfo.transferSyntaxUid);
  if (isTransferSyntaxUid(syntax)) {
    metaInfo.transferSyntax = syntax;
    place.syntax = syntax;
  } else {
    place.syntax = DcUid::ExplicitLittleEndian;
  }
}

DcCode metaReadError(const FileWindow& window, std::uint64_t offset) {
  dcLog(DcLogLevel::Error, "dirReadFileMetaInfo", "Error reading fileMetaInfo at offset 0x%x",
        static_cast<unsigned>(offset));
  return window.fault() == kDcNoMemory ? kDcNoMemory : kDcReadFailed;
}

}  // namespace

DcCode readMetaInfo(FileWindow& window, DcFileMetaInfo& metaInfo, DataSetPlace& place) {
  // What a record that is written gets is not what a file says that is read.
  metaInfo.clear();
  metaInfo.implementationClassUid.clear();
  metaInfo.implementationVersionName.clear();
  metaInfo.transferSyntax = DcUid::ImplicitLittleEndian;
  place = DataSetPlace{};
  if (window.size() < kSmallestFile) return kDcOk;
  const std::uint8_t* head = window.at(0, kSmallestFile);
  if (head == nullptr) return metaReadError(window, 0);
  if (std::memcmp(head + kMagicAt, "DICM", kMagicBytes) != 0) return kDcNotDicom;
  place.hasMagic = true;
  std::copy_n(head, metaInfo.preamble.size(), metaInfo.preamble.begin());

  std::uint64_t end = kMetaGroupAt;
  if (!walkMetaGroup(window, end)) return metaReadError(window, end);
  place.offset = end;
  if (end == kMetaGroupAt) return kDcNotDicom;
  const std::uint8_t* bytes = nullptr;
  if (const DcCode code = window.load(kMetaGroupAt, end, bytes); code != kDcOk) return code;
  DcElemList group;
  std::size_t consumed = 0;
  // The walk has found where the data set begins: the elements that can be read are enough.
  static_cast<void>(processElemListDM(group, bytes, static_cast<std::size_t>(end - kMetaGroupAt),
                                      DcUid::ExplicitLittleEndian, kParseExplicitLittleForm,
                                      consumed, kMetaGroupAt, 0));
  // Without the transfer syntax, say, the data set would be misread.
  if (group.lostElements()) return kDcNoMemory;
  for (std::size_t i = 0; i < group.size(); ++i) place.metaTags.push_back(group.at(i)->tag());
  fillRecord(group, metaInfo);
  resolveUids(metaInfo, place);
  return kDcOk;
}

}  // namespace quillon
