#include "dicom_dir_file.h"

#include <algorithm>

#include "dicom/byte_order.h"
#include "dicom/dict.h"
#include "dicom/element_form.h"
#include "dicom/parse_header.h"
#include "dicom/tags.h"
#include "fileset/root_names.h"

namespace quillon {

namespace {

constexpr std::size_t kMagicAt = 128;
constexpr std::string_view kMagic = "DICM";
constexpr std::size_t kMetaAt = kMagicAt + kMagic.size();
// File-set ID (0004,1130), with which the header behind the meta information begins.
constexpr std::string_view kHeaderBegin(
    "\x04\x00\x30\x11"
    "CS",
    6);
constexpr DcTag kMetaGroupLength = 0x00020000;
constexpr std::size_t kMaxFileSetIdChars = 16;

// Of a hostile file: it shall not take more memory than a few times its own size, nor be searched
// for the end of one damaged record after the other.
constexpr std::size_t kMaxRecords = 10'000'000;
constexpr std::size_t kMaxDamaged = 100;

constexpr DcTag kMetaWanted[] = {
    tags::kFileMetaInformationVersion, tags::kMediaStorageSopClassUid,
    tags::kMediaStorageSopInstanceUid, tags::kTransferSyntaxUid,
    tags::kImplementationClassUid,
};

DcTag TagAt(std::string_view bytes, std::size_t at) {
  if (at > bytes.size() || bytes.size() - at < sizeof(DcTag)) return 0;
  return loadTag(reinterpret_cast<const std::uint8_t*>(bytes.data()) + at, false);
}

bool IsFileSetId(std::string_view id) {
  return id.size() <= kMaxFileSetIdChars && std::ranges::all_of(id, [](char c) {
           return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == ' ' || c == '_';
         });
}

}  // namespace

FaultPlace InDicomDir() { return {kDicomDirName, {}}; }

bool DicomDirFile::Read(Findings& findings) {
  std::size_t begin = kMetaAt;
  if (std::string_view(bytes_).substr(std::min(kMagicAt, bytes_.size()), kMagic.size()) != kMagic) {
    findings.Add(Fault::DicomDirNoMagic, InDicomDir());
    // Some have no preamble; of others a byte was lost.
    if (const std::uint16_t group = dcGroup(TagAt(bytes_, 0)); group == 2 || group == 4) begin = 0;
  }
  if (begin > bytes_.size()) {
    findings.Add(Fault::NoRecords, InDicomDir());
    return false;
  }
  const std::size_t headerAt = ReadMeta(begin, findings);
  const std::size_t sequenceAt =
      headerAt < bytes_.size() ? ReadHeader(headerAt, findings) : headerAt;
  ElemInfo info;
  if (TagAt(bytes_, sequenceAt) != tags::kDirectoryRecordSequence ||
      !utilGetElemInfo(reinterpret_cast<const std::uint8_t*>(bytes_.data()) + sequenceAt,
                       bytes_.size() - sequenceAt, kParseExplicitLittleForm, info)) {
    findings.Add(Fault::NoRecords, InDicomDir());
    return false;
  }
  const std::size_t firstAt = sequenceAt + info.headerBytes;
  const std::size_t left = bytes_.size() - firstAt;
  const bool isOpen = info.valueLength == kUndefinedLength;
  const bool isCut = !isOpen && info.valueLength > left;
  if (isCut) {
    findings.Add(Fault::Cut, InDicomDir(),
                 {HexText(std::uint64_t{firstAt} + info.valueLength), HexText(bytes_.size())});
  }
  const std::size_t end = isOpen || isCut ? bytes_.size() : firstAt + info.valueLength;
  IndexRecords(firstAt, end, isOpen, isCut, findings);
  if (!hasRootOffset_ && !places_.empty()) rootOffset_ = places_.front().at;
  return !places_.empty() || rootOffset_ != 0;
}

std::size_t DicomDirFile::ReadMeta(std::size_t begin, Findings& findings) const {
  const RawElements meta =
      ReadRawElements(bytes_, begin, bytes_.size(), [](DcTag tag) { return dcGroup(tag) != 2; });
  if (!meta.isWhole) {
    findings.Add(Fault::MetaDamaged, InDicomDir(), {HexText(meta.end)});
    const std::size_t header = bytes_.find(kHeaderBegin, begin);
    return std::min(header, bytes_.size());
  }
  CheckMeta(meta, findings);
  std::uint32_t length = 0;
  if (!meta.Number(kMetaGroupLength, length)) {
    findings.Add(Fault::MetaMissing, InDicomDir(), {KeyName(kMetaGroupLength)});
    return meta.end;
  }
  constexpr std::size_t kLengthElementBytes = kShortHeaderBytes + sizeof length;
  const std::size_t groupBytes = meta.end - begin - kLengthElementBytes;
  if (length != groupBytes) {
    findings.Add(Fault::MetaGroupLength, InDicomDir(), {length, groupBytes});
  }
  return meta.end;
}

void DicomDirFile::CheckMeta(const RawElements& meta, Findings& findings) const {
  for (const DcTag tag : kMetaWanted) {
    if (meta.Text(tag).empty()) findings.Add(Fault::MetaMissing, InDicomDir(), {KeyName(tag)});
  }
  const std::string_view sopClass = meta.Text(tags::kMediaStorageSopClassUid);
  if (!sopClass.empty() && sopClass != dcUidText(DcUid::MediaStorageDirectory)) {
    findings.Add(Fault::MetaSopClass, InDicomDir(), {ShownValue(sopClass)});
  }
  const std::string_view syntax = meta.Text(tags::kTransferSyntaxUid);
  if (!syntax.empty() && syntax != dcUidText(DcUid::ExplicitLittleEndian)) {
    findings.Add(Fault::MetaTransferSyntax, InDicomDir(), {ShownValue(syntax)});
  }
}

std::size_t DicomDirFile::ReadHeader(std::size_t begin, Findings& findings) {
  const RawElements header = ReadRawElements(bytes_, begin, bytes_.size(), [](DcTag tag) {
    return tag >= tags::kDirectoryRecordSequence;
  });
  if (!header.isWhole) findings.Add(Fault::HeaderDamaged, InDicomDir(), {HexText(header.end)});
  const auto tellMissing = [&](DcTag tag) {
    if (header.isWhole) findings.Add(Fault::HeaderMissing, InDicomDir(), {KeyName(tag)});
  };
  if (header.Find(tags::kFileSetId) == nullptr) tellMissing(tags::kFileSetId);
  if (const std::string_view id = header.Text(tags::kFileSetId); !IsFileSetId(id)) {
    findings.Add(Fault::FileSetId, InDicomDir(), {ShownValue(id)});
  }
  hasRootOffset_ = header.Number(tags::kFirstRootEntityRecordOffset, rootOffset_);
  if (!hasRootOffset_) tellMissing(tags::kFirstRootEntityRecordOffset);
  constexpr DcTag kLast = tags::kOffsetOfTheLastDirectoryRecordOfTheRootDirectoryEnt;
  if (std::uint32_t last = 0; header.Number(kLast, last)) {
    lastOffset_ = last;
  } else {
    tellMissing(kLast);
  }
  std::uint16_t flag = 0;
  if (!header.Number(tags::kFileSetConsistencyFlag, flag)) {
    tellMissing(tags::kFileSetConsistencyFlag);
  } else if (flag != 0) {
    findings.Add(Fault::Inconsistent, InDicomDir(), {HexText(flag)});
  }
  return header.end;
}

void DicomDirFile::AddRecord(std::size_t at, std::size_t valueAt, std::size_t valueEnd) {
  places_.push_back({static_cast<std::uint32_t>(at), static_cast<std::uint32_t>(valueAt),
                     static_cast<std::uint32_t>(valueEnd)});
}

void DicomDirFile::IndexRecords(std::size_t begin, std::size_t end, bool isOpen, bool isCut,
                                Findings& findings) {
  for (std::size_t at = begin; at < end;) {
    if (isOpen && TagAt(bytes_, at) == tags::kSequenceDelimitationItem) return;
    if (places_.size() >= kMaxRecords || toldDamaged_.size() >= kMaxDamaged) {
      findings.Add(Fault::RecordsGivenUp, InDicomDir(), {HexText(at)});
      return;
    }
    RawItem item;
    if (MeasureItem(bytes_, at, end, item)) {
      AddRecord(at, item.valueAt, item.valueEnd);
      at = item.end;
      continue;
    }
    const std::size_t next = Resume(at, end);
    toldDamaged_.push_back(static_cast<std::uint32_t>(at));
    // The record in which a file was cut is no fault of its own.
    if (!isCut || next < end) findings.Add(Fault::RecordDamaged, InDicomDir(), {HexText(at)});
    at = next;
  }
  if (isOpen) {
    findings.Add(Fault::HeaderMissing, InDicomDir(), {KeyName(tags::kSequenceDelimitationItem)});
  }
}

std::size_t DicomDirFile::Resume(std::size_t at, std::size_t end) {
  // The length of the record before may be what is wrong: then the next one begins within it.
  const std::size_t from = places_.empty() ? at : places_.back().valueAt;
  std::size_t next = FindRecord(from);
  if (next < at) {
    places_.back().valueEnd = static_cast<std::uint32_t>(next);
    return next;
  }
  if (next == at) {
    next = std::min(FindRecord(at + 1), end);
    AddRecord(at, std::min(at + kItemHeaderBytes, next), next);
  }
  return std::min(next, end);
}

bool DicomDirFile::IsToldDamaged(std::size_t record) const {
  return std::ranges::find(toldDamaged_, places_[record].at) != toldDamaged_.end();
}

// The next bytes that look like the beginning of a record: an item that begins with the offset of
// the next one.
std::size_t DicomDirFile::FindRecord(std::size_t from) const {
  constexpr std::string_view kItem("\xFE\xFF\x00\xE0", 4);
  for (std::size_t at = bytes_.find(kItem, from); at != std::string::npos;
       at = bytes_.find(kItem, at + 1)) {
    if (TagAt(bytes_, at + kItemHeaderBytes) == tags::kOffsetOfTheNextDirectoryRecord) return at;
  }
  return bytes_.size();
}

std::optional<std::size_t> DicomDirFile::RecordAt(std::uint32_t offset) const {
  const auto found = std::ranges::lower_bound(places_, offset, {}, &Place::at);
  if (found == places_.end() || found->at != offset) return std::nullopt;
  return static_cast<std::size_t>(found - places_.begin());
}

RawElements DicomDirFile::ElementsOf(std::size_t record) const {
  const Place& place = places_[record];
  return ReadRawElements(bytes_, place.valueAt, place.valueEnd);
}

}  // namespace quillon
