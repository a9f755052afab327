#include "file_check.h"

#include <algorithm>
#include <string>
#include <utility>

#include "charset/character_set.h"
#include "dicom/dict.h"
#include "dicom/tags.h"
#include "dicomobjects/decoded_text.h"
#include "fileset/record_rows.h"
#include "fileset/root_names.h"
#include "head_reader.h"
#include "platform/services.h"
#include "platform/sha256.h"
#include "profiles/profile_check.h"

namespace quillon {

namespace {

constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

DcTagSet WantedTags(const Profile* profile) {
  std::vector<DcTag> wanted{tags::kSpecificCharacterSet, tags::kSopClassUid, tags::kSopInstanceUid};
  for (const IdentityRow& row : kIdentityRows) wanted.push_back(row.tag);
  if (profile != nullptr) {
    const std::vector<DcTag> more = ElementsOf(*profile);
    wanted.insert(wanted.end(), more.begin(), more.end());
  }
  return DcTagSet(std::move(wanted));
}

// A text element of the file's own data set, empty when there is none.
Text FileValue(const DcElemList& elements, DcTag tag) {
  const DcElem* element = elements.find(tag);
  if (element == nullptr) return {};
  const DcElem* set = elements.find(tags::kSpecificCharacterSet);
  return IdentityText(tag, ValueBytes(*element), set == nullptr ? std::string() : ValueBytes(*set));
}

const OLECHAR* KindText(MediumEntry::Kind kind) {
  switch (kind) {
    case MediumEntry::Kind::Directory:
      return OLESTR("directory");
    case MediumEntry::Kind::Link:
      return OLESTR("link");
    default:
      return OLESTR("device or pipe");
  }
}

TextView NameOf(TextView path) {
  const std::size_t separator = path.rfind(OLESTR('\\'));
  return separator == TextView::npos ? path : path.substr(separator + 1);
}

}  // namespace

FileCheck::FileCheck(MediumSource& medium, MediumIndex& index, const SumsFile& sums,
                     const VerifyOptions& options, bool isCaseIgnored, Findings& findings,
                     VerifyReport& report)
    : medium_(medium),
      index_(index),
      sums_(sums),
      options_(options),
      isCaseIgnored_(isCaseIgnored),
      findings_(findings),
      report_(report),
      kept_(WantedTags(options.profile)),
      namedAt_(index.Entries().size()) {
  if (sums.IsThere()) {
    buffer_.resize(kPieceBytes);
    progress_.isBytes = true;
    progress_.total = sums.Bytes();
  } else {
    progress_.total = static_cast<std::uint64_t>(
        std::ranges::count(index.Entries(), MediumEntry::Kind::File, &MediumEntry::kind));
  }
}

FileCheck::~FileCheck() = default;

void FileCheck::Advance(std::uint64_t count) {
  progress_.done += count;
  if (options_.progress) options_.progress(progress_);
}

std::optional<std::size_t> FileCheck::FindFile(const FileRecord& record) {
  auto entry = index_.Find(record.path);
  if (!entry) {
    entry = index_.FindFolded(record.path);
    if (entry && !isCaseIgnored_) {
      findings_.Add(Fault::FileNameCase, {ShownPath(index_.Entries()[*entry].path), record.text},
                    {record.text, ShownValue(TextView(ShownPath(record.path)))});
    }
  }
  if (!entry) {
    findings_.Add(Fault::FileMissing, {ShownPath(record.path), record.text}, {record.text});
    return std::nullopt;
  }
  const MediumEntry& found = index_.Entries()[*entry];
  if (found.kind == MediumEntry::Kind::File) return entry;
  findings_.Add(Fault::FileNotRegular, {ShownPath(found.path), record.text},
                {KindText(found.kind), record.text});
  return std::nullopt;
}

bool FileCheck::CheckNamed(const FileRecord& record) {
  if (IsStopped()) return false;
  const auto entry = FindFile(record);
  if (!entry) return true;
  const MediumEntry& found = index_.Entries()[*entry];
  const FaultPlace place{ShownPath(found.path), record.text};
  const bool isFirst = namedAt_[*entry] == 0;
  if (isFirst) {
    namedAt_[*entry] = record.offset;
    ++report_.files;
    report_.bytes += found.sizeBytes;
  } else if (!record.isShared) {
    findings_.Add(Fault::FileNamedTwice, place, {record.text, HexText(namedAt_[*entry])});
  }
  // Millions of records may name one file, which is not opened for each of them.
  if (!isFirst && ++repeats_ > kMaxFindingsOfKind) return true;
  const bool isSummed = isFirst && sums_.SumOf(*entry) != nullptr;
  if (sums_.IsThere() && isFirst && !isSummed) findings_.Add(Fault::SumMissing, place);
  const std::unique_ptr<MediumFile> file = medium_.Open(found.path);
  if (file == nullptr) {
    findings_.Add(Fault::FileUnreadable, place);
    return true;
  }
  HeadReader reader(*file, isSummed ? std::span(buffer_) : std::span<std::uint8_t>());
  if (file->SizeBytes() == 0) {
    findings_.Add(Fault::FileEmpty, place, {record.text});
  } else {
    Compare(record, place, reader);
  }
  if (reader.HasFailed()) return true;
  if (!progress_.isBytes && isFirst) Advance(1);
  return !isSummed || CheckSum(*entry, place, reader);
}

void FileCheck::Compare(const FileRecord& record, const FaultPlace& place, HeadReader& reader) {
  FileHead head;
  reader.ReadHead(NarrowText(place.file, FileSystemCodePage()).c_str(), kept_, head);
  if (reader.HasFailed()) {
    findings_.Add(Fault::FileUnreadable, place);
    return;
  }
  if (!head.reading.hasMagic) {
    findings_.Add(Fault::FileNotDicom, place, {record.text});
    return;
  }
  const auto hasMeta = [&](DcTag tag) {
    return std::ranges::count(head.reading.metaTags, tag) != 0;
  };
  for (const DcTag tag : {tags::kMediaStorageSopClassUid, tags::kMediaStorageSopInstanceUid,
                          tags::kTransferSyntaxUid}) {
    if (head.reading.metaCode == kDcOk && !hasMeta(tag)) {
      findings_.Add(Fault::FileMetaMissing, place, {KeyName(tag)});
    }
  }
  CompareUids(record, place, head);
  if (head.metaInfo.transferSyntax == DcUid::DeflatedExplicitLittleEndian) {
    findings_.Add(Fault::FileDeflated, place);
    if (options_.profile != nullptr) CheckProfile(record, place, head);
    return;
  }
  if (head.code != kDcOk) {
    findings_.Add(Fault::FileDamaged, place);
    return;
  }
  if (head.isCut) findings_.Add(Fault::FileCut, place);
  CompareIdentities(record, place, head);
  if (options_.profile != nullptr) CheckProfile(record, place, head);
}

void FileCheck::CheckProfile(const FileRecord& record, const FaultPlace& place,
                             const FileHead& head) {
  const Text name = WideBytes(options_.profile->name);
  const std::string sopClass(TrimmedBytes(head.metaInfo.sopClassUid));
  const std::string syntax(TrimmedBytes(head.metaInfo.transferSyntaxUid));
  const bool isReadable =
      head.metaInfo.transferSyntax != DcUid::DeflatedExplicitLittleEndian && head.code == kDcOk;
  const ProfileObject object{sopClass, syntax, RecordRowOf(sopClass).type != DcDirRecType::Private,
                             head.elements, isReadable};
  for (const ProfileBreach& breach : CheckObject(*options_.profile, object)) {
    findings_.Add(Fault::ProfileObjectDiffers, place,
                  {name, WideBytes(breach.rule), ShownValue(std::string_view(breach.found))});
  }
  if (!isReadable) return;
  for (const LackedKey& lacked : record.lackedKeys) {
    const DcTag tag = lacked.key->element.tag;
    if (!WantsValue(*lacked.key, head.elements)) continue;
    if (!toldKeys_.emplace(lacked.recordOffset, tag).second) continue;
    findings_.Add(Fault::ProfileKeyMissing, {InDicomDir().file, lacked.record},
                  {name, WideBytes(KeyRule(*lacked.key)), lacked.record});
  }
}

void FileCheck::CompareUids(const FileRecord& record, const FaultPlace& place,
                            const FileHead& head) {
  struct Row {
    Fault fault;
    DcTag inDataSet;
    const std::string& ofFile;
    const std::string& ofRecord;
  };
  for (const Row& row : {Row{Fault::SopClassDiffers, tags::kSopClassUid, head.metaInfo.sopClassUid,
                             record.sopClassUid},
                         Row{Fault::SopInstanceDiffers, tags::kSopInstanceUid,
                             head.metaInfo.sopInstanceUid, record.sopInstanceUid},
                         Row{Fault::TransferSyntaxDiffers, tags::kTransferSyntaxUid,
                             head.metaInfo.transferSyntaxUid, record.transferSyntaxUid}}) {
    const std::string_view ofFile = TrimmedBytes(row.ofFile);
    if (ofFile.empty() || row.ofRecord.empty() || ofFile == row.ofRecord) continue;
    // A file that says both is at fault, not the record.
    if (FileValue(head.elements, row.inDataSet) == WideBytes(row.ofRecord)) continue;
    findings_.Add(row.fault, place, {ShownValue(ofFile), record.text, ShownValue(row.ofRecord)});
  }
}

void FileCheck::CompareIdentities(const FileRecord& record, const FaultPlace& place,
                                  const FileHead& head) {
  const std::pair<DcTag, const std::string&> meta[] = {
      {tags::kSopClassUid, head.reading.metaInfo.sopClassUid},
      {tags::kSopInstanceUid, head.reading.metaInfo.sopInstanceUid}};
  for (const auto& [tag, inMeta] : meta) {
    const Text inDataSet = FileValue(head.elements, tag);
    const Text there = WideBytes(TrimmedBytes(inMeta));
    if (there.empty() || inDataSet.empty() || there == inDataSet) continue;
    findings_.Add(Fault::FileMetaDiffers, place,
                  {KeyName(tag), ShownValue(TextView(there)), ShownValue(TextView(inDataSet))});
  }
  for (std::size_t i = 0; i < kIdentities; ++i) {
    const IdentityValue& said = record.identities[i];
    if (said.record.empty()) continue;
    const Text ofFile = FileValue(head.elements, kIdentityRows[i].tag);
    if (ofFile == said.value) continue;
    const Text shown = ShownValue(TextView(said.value));
    if (ofFile.empty()) {
      findings_.Add(Fault::ValueMadeUp, place, {KeyName(kIdentityRows[i].tag), said.record, shown});
    } else {
      findings_.Add(kIdentityRows[i].differs, place,
                    {ShownValue(TextView(ofFile)), said.record, shown});
    }
  }
}

bool FileCheck::CheckSum(std::size_t entry, const FaultPlace& place, HeadReader& reader) {
  Sha256 digest;
  std::span<const std::uint8_t> piece;
  do {
    if (IsStopped()) return false;
    if (!reader.NextPiece(piece)) {
      findings_.Add(Fault::FileUnreadable, place);
      return true;
    }
    digest.Update(piece.data(), piece.size());
    Advance(piece.size());
  } while (!piece.empty());
  const std::string sum = digest.Finish();
  const std::string& listed = *sums_.SumOf(entry);
  ++report_.checkedSums;
  if (sum.empty()) {
    findings_.Add(Fault::SumImpossible, place);
  } else if (sum != listed) {
    findings_.Add(Fault::SumDiffers, place, {WideBytes(sum), WideBytes(listed)});
  }
  return true;
}

bool FileCheck::CheckOthers(bool isTold) {
  for (std::size_t i = 0; i < index_.Entries().size(); ++i) {
    const MediumEntry& entry = index_.Entries()[i];
    if (namedAt_[i] != 0) continue;
    if (entry.kind == MediumEntry::Kind::Link) {
      findings_.Add(Fault::LinkOnMedium, {ShownPath(entry.path), {}});
    }
    if (entry.kind == MediumEntry::Kind::File && !CheckOther(i, isTold)) return false;
  }
  return true;
}

bool FileCheck::CheckOther(std::size_t entry, bool isTold) {
  if (IsStopped()) return false;
  const MediumEntry& found = index_.Entries()[entry];
  const FaultPlace place{ShownPath(found.path), {}};
  const bool isSummed = sums_.SumOf(entry) != nullptr;
  // Another file set may lie below.
  const bool isLookedAt =
      isTold && Folded(NameOf(found.path)) != kDicomDirName && found.path != kSumsFileName;
  if (!progress_.isBytes) Advance(1);
  if (!isSummed && !isLookedAt) return true;
  const std::unique_ptr<MediumFile> file = medium_.Open(found.path);
  if (file == nullptr) {
    if (isSummed) findings_.Add(Fault::FileUnreadable, place);
    return true;
  }
  HeadReader reader(*file, isSummed ? std::span(buffer_) : std::span<std::uint8_t>());
  if (isLookedAt && reader.HasMagic()) findings_.Add(Fault::FileUnreferenced, place);
  return !isSummed || CheckSum(entry, place, reader);
}

}  // namespace quillon
