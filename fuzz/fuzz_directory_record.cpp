// The directory records of a hostile object, as it is filed today and in the tree of older media:
// a row, a syntax, the character set that stands for the object's own, up to a zero byte, and the
// object's data set. Records that can be written are read again as they were.
#include <algorithm>
#include <array>

#include "dicom/dir_dicom_dir.h"
#include "dicomobjects/dicom_object_list.h"
#include "directory_record.h"
#include "fileset/model/patient_list.h"
#include "input_parts.h"
#include "key_inventor.h"
#include "quiet.h"
#include "record_keys.h"
#include "scratch_directory.h"

namespace quillon {
namespace {

using fuzz::require;

constexpr const char* kFileId = "DICOM\\QLN00001";

using Bytes = std::vector<std::uint8_t>;
Bytes encoded(DcElemList& list) {
  if (list.size() == 0) return {};
  Bytes bytes(list.encodedLengthEstimate());
  std::uint32_t length = 0;
  require(list.DcElemList::frame(bytes.data(), length, DcUid::ExplicitLittleEndian) == kDcOk);
  bytes.resize(length);
  return bytes;
}

// As any reader of data sets has them: a control character at the end of a text, which is written
// as a space, goes with the padding.
Bytes encodedAsRead(DcElemList& list) {
  const Bytes bytes = encoded(list);
  if (bytes.empty()) return {};
  DcElemList again;
  require(again.parse(bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                      DcUid::ExplicitLittleEndian) == kDcOk);
  return encoded(again);
}

// The records of a chain from the top, each below the one before, with its keys as written.
struct Level {
  DcDirRecType type;
  Bytes keys;
};

void writeAndReadAgain(const std::filesystem::path& root,
                       std::vector<std::unique_ptr<DcDirRec>> records) {
  DcDirDicomDir dir(nullptr);
  DcDirRec* above = &dir;
  std::vector<Level> levels;
  for (std::unique_ptr<DcDirRec>& record : records) {
    // The directory's own group is written anew.
    record->removeGroup(0x0004);
    record->removeGroup(0x0000);
    levels.push_back({record->type(), encodedAsRead(*record)});
    above = above->addLower(std::move(record));
    require(above != nullptr);
  }
  DcFileMetaInfo metaInfo;
  metaInfo.sopClassUid = "1.2.840.10008.5.1.4.1.1.2";
  metaInfo.sopInstanceUid = "2.25.1";
  metaInfo.transferSyntaxUid = "1.2.840.10008.1.2.1";
  require(above->setRefFile(kFileId, metaInfo) == kDcOk);
  require(dir.write(root.c_str()) == kDcOk);

  DcDirDicomDir again(root.c_str());
  require(again.initialCode() == kDcOk);
  DcDirRec* record = &again;
  for (const Level& level : levels) {
    require(record->lowerCount() == 1);
    record = record->lower(0);
    require(record->type() == level.type && encoded(*record) == level.keys);
  }
  require(record->lowerCount() == 0 && record->fileId() == kFileId);
}

std::vector<std::unique_ptr<DcDirRec>> recordsOfToday(const RecordRow& row, CDicomUtil& file,
                                                      std::string_view declared,
                                                      KeyInventor* inventor) {
  std::vector<const RecordRow*> rows;
  if (!IsTopLevel(row.type)) {
    for (const DcDirRecType type :
         {DcDirRecType::Patient, DcDirRecType::Study, DcDirRecType::Series}) {
      rows.push_back(&RecordRowOf(type));
    }
  }
  rows.push_back(&row);
  std::vector<std::unique_ptr<DcDirRec>> records;
  for (const RecordRow* one : rows) {
    KeptRecord kept = CopyRecord(*one, file, declared);
    require(MissingKeys(*one, *kept.record) == kept.missingKeys);
    if (inventor != nullptr) {
      TakeOtherTimes(*kept.record, *file.GetElementList(), kept.missingKeys);
      GiveUsualStudyId(*kept.record, kept.missingKeys);
      inventor->Invent(*kept.record, MissingKeys(*one, *kept.record));
    }
    AddEmptyKeys(*one, *kept.record);
    if (kept.record->type() == DcDirRecType::Private) {
      static_cast<void>(kept.record->setPrivateRecordUid("2.25.2"));
    }
    records.push_back(std::move(kept.record));
  }
  return records;
}

std::vector<std::unique_ptr<DcDirRec>> recordsOfOlderMedia(CDicomUtil& file) {
  std::vector<std::unique_ptr<DcDirRec>> records;
  CPatientList patients;
  CPatient* const patient = patients.Add(file.GetElementList(), OLESTR("K"));
  if (patient == nullptr) return records;
  CStudy* const study = patient->Studies().Add(file.GetElementList());
  if (study == nullptr) return records;
  CSeries* const series = study->Series().Add(file.GetElementList());
  if (series == nullptr) return records;
  CDicomObjectList objects;
  const CDicomObjectProperties* object = objects.AddObject(file, /*instanceUidOptional=*/true);
  if (object == nullptr) return records;
  Text problem;
  std::unique_ptr<DcDirRec> last = MakeDocumentRecord(*object, file, problem);
  if (last == nullptr) last = MakeImageRecord(*object);
  records.push_back(MakePatientRecord(*patient));
  records.push_back(MakeStudyRecord(*study));
  records.push_back(MakeSeriesRecord(*series));
  records.push_back(std::move(last));
  return records;
}

}  // namespace
}  // namespace quillon

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  static const bool silenced = fuzz::quiet();
  (void)silenced;
  static const fuzz::ScratchDirectory root;
  static_cast<void>(dcSetValueChecking(false));  // as the builder has it
  constexpr std::array kSyntaxes{DcUid::ImplicitLittleEndian, DcUid::ExplicitLittleEndian,
                                 DcUid::ExplicitBigEndian};
  fuzz::InputParts parts(data, size);
  auto type = static_cast<DcDirRecType>(parts.byte());
  if (type == DcDirRecType::Patient || type == DcDirRecType::Study ||
      type == DcDirRecType::Series) {
    type = DcDirRecType::Image;  // no object has these
  }
  const unsigned choice = parts.byte();
  const std::string_view declared = parts.text();
  const std::vector<std::uint8_t> bytes(parts.rest().begin(), parts.rest().end());
  DcElemList list;
  static_cast<void>(list.parse(bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                               kSyntaxes[choice % kSyntaxes.size()]));
  CDicomUtil file(list);
  file.SettleUnknownVrs();

  KeyInventor inventor;
  writeAndReadAgain(root.path(), recordsOfToday(RecordRowOf(type), file, declared,
                                                (choice & 0x80U) != 0 ? &inventor : nullptr));
  std::vector<std::unique_ptr<DcDirRec>> older = recordsOfOlderMedia(file);
  if (!older.empty()) writeAndReadAgain(root.path(), std::move(older));
  return 0;
}
