// Directory records in memory: the tree, its level rules and what a record refers to.
#include "dicom/dir_rec.h"

#include <algorithm>
#include <new>

#include "dicom/dir_dicom_dir.h"
#include "dicom/file_meta_info.h"
#include "dicom/log.h"
#include "dicom/text_scan.h"
#include "dir_file_id.h"
#include "record_types.h"

namespace quillon {

namespace {

constexpr const char* kSetRefFile = "DcDirRec::setRefFile";
constexpr std::size_t kMaxUidChars = 128;

bool isMrdr(const std::unique_ptr<DcDirRec>& record) {
  return record->type() == DcDirRecType::Mrdr;
}

}  // namespace

DcDirRec::DcDirRec(DcDirRecType type) : type_(type) {}

DcDirRec::DcDirRec(const std::uint8_t* file, std::uint32_t fileBytes, std::uint32_t offsetInFile,
                   DcCode* code)
    : type_(DcDirRecType::Unknown) {
  const DcCode rc = parse(file, fileBytes, offsetInFile);
  if (code != nullptr) *code = rc;
}

DcDirRec::~DcDirRec() = default;

DcCode DcDirRec::checkLevel(DcDirRecType parent, DcDirRecType child) {
  // A value outside the enumeration has no bit; its row is that of Unknown.
  const DcDirTypeRow& childRow = dirTypeRow(child);
  if ((dirTypeRow(parent).allowed & dirTypeBit(childRow.type)) != 0) return kDcOk;
  dcLog(DcLogLevel::Error, "DcDirRec::checkLevel", "'%s' cannot be a lower level entity to '%s'",
        childRow.name, dirTypeRow(parent).name);
  return kDcHierarchyError;
}

DcDirRec* DcDirRec::addLower(std::unique_ptr<DcDirRec> child) {
  if (child == nullptr) {
    dcLog(DcLogLevel::Error, "DcDirRec::addLower", "Null argument passed");
    return nullptr;
  }
  if (checkLevel(type_, child->type_) != kDcOk) return nullptr;
  DcDirRec* const added = child.get();
  added->parent_ = this;
  if (isMrdr(child) || lower_.empty() || !isMrdr(lower_.back())) {
    lower_.push_back(std::move(child));
  } else {
    const auto firstMrdr = std::partition_point(
        lower_.begin(), lower_.end(),
        [](const std::unique_ptr<DcDirRec>& record) { return !isMrdr(record); });
    lower_.insert(firstMrdr, std::move(child));
  }
  if (const DcDirDicomDir* dir = dicomDir(nullptr)) dir->fileIds_->addWithLowerLevels(*added);
  return added;
}

DcDirRec& DcDirRec::addKey(std::unique_ptr<DcElem> element) {
  add(std::move(element));
  return *this;
}

DcDirRec& DcDirRec::addKey(DcTag tag, const char* text) {
  // A text that is refused leaves the key empty.
  static_cast<void>(add(std::make_unique<DcElem>(tag))->addValue(text));
  return *this;
}

std::unique_ptr<DcDirRec> DcDirRec::copyOfKeys() const try {
  auto copy = std::make_unique<DcDirRec>(type_);
  copy->privateRecordUid_ = privateRecordUid_;
  copy->addCopiesOf(*this);
  return copy;
} catch (const std::bad_alloc&) {
  return nullptr;
}

const DcDirRec& DcDirRec::top() const {
  const DcDirRec* record = this;
  while (record->parent_ != nullptr) record = record->parent_;
  return *record;
}

const DcDirDicomDir* DcDirRec::dicomDir(const char* function) const {
  const DcDirRec& topmost = top();
  const auto* dir = dynamic_cast<const DcDirDicomDir*>(&topmost);
  if (dir == nullptr && function != nullptr) {
    dcLog(DcLogLevel::Error, function, "Topmost object in hierarchy is '%s', expecting DICOMDIR",
          dirTypeRow(topmost.type_).name);
  }
  return dir;
}

DcCode DcDirRec::getRootPath(std::string* path) const {
  if (path == nullptr) {
    dcLog(DcLogLevel::Error, "DcDirRec::getRootPath", "Null argument passed");
    return kDcFileNullArgument;
  }
  const DcDirDicomDir* dir = dicomDir("DcDirRec::getRootPath");
  if (dir == nullptr) return kDcHierarchyError;
  *path = dir->rootPath();
  return kDcOk;
}

std::string DcDirRec::fileId() const {
  std::string joined;
  for (const std::string& part : fileIdParts_) {
    if (!joined.empty()) joined += '\\';
    joined += part;
  }
  return joined;
}

DcCode DcDirRec::checkFileId(const char* fileId, std::string& trimmedId,
                             Reference& reference) const {
  const DcCode rc = dirTakeFileId(fileId, kSetRefFile, trimmedId);
  if (rc != kDcOk) return rc;
  const DcDirDicomDir* dir = dicomDir(kSetRefFile);
  if (dir == nullptr) return kDcHierarchyError;
  if (dir->fileIds_->isUsedByAnother(trimmedId, *this)) {
    dcLog(DcLogLevel::Error, kSetRefFile, "File ID '%s' is already in use", trimmedId.c_str());
    return kDcInvalidFileId;
  }
  return dirSplitFileId(trimmedId, kSetRefFile, reference.fileIdParts);
}

DcCode DcDirRec::setRefFile(const char* fileId) {
  std::string id;
  Reference reference;
  DcCode rc = checkFileId(fileId, id, reference);
  if (rc != kDcOk) return rc;
  const std::string& rootPath = dicomDir(nullptr)->rootPath();
  if (rootPath.empty()) {
    dcLog(DcLogLevel::Error, kSetRefFile, "DICOMDIR root path not set");
    return kDcNotDicom;
  }
  rc = dirReadFileUids(rootPath, id, kSetRefFile, reference.sopClassUid, reference.sopInstanceUid,
                       reference.transferSyntaxUid);
  if (rc == kDcOk) setReference(std::move(reference));
  return rc;
}

DcCode DcDirRec::setRefFile(const char* fileId, const DcFileMetaInfo& metaInfo) {
  std::string id;
  Reference reference;
  DcCode rc = checkFileId(fileId, id, reference);
  if (rc != kDcOk) return rc;
  const std::string& rootPath = dicomDir(nullptr)->rootPath();
  rc =
      dirTakeFileUids(metaInfo, rootPath.empty() ? id : dirFileName(rootPath, id), kSetRefFile,
                      reference.sopClassUid, reference.sopInstanceUid, reference.transferSyntaxUid);
  if (rc == kDcOk) setReference(std::move(reference));
  return rc;
}

DcCode DcDirRec::setRefFile(const char* fileId, const DcFileMetaInfo& metaInfo,
                            const std::string& rootPath) {
  std::string id;
  Reference reference;
  DcCode rc = dirTakeFileId(fileId, kSetRefFile, id);
  if (rc == kDcOk) rc = dirSplitFileId(id, kSetRefFile, reference.fileIdParts);
  if (rc == kDcOk) {
    rc = dirTakeFileUids(metaInfo, dirFileName(rootPath, id), kSetRefFile, reference.sopClassUid,
                         reference.sopInstanceUid, reference.transferSyntaxUid);
  }
  if (rc == kDcOk) setReference(std::move(reference));
  return rc;
}

void DcDirRec::setReference(Reference reference) {
  const DcDirDicomDir* dir = dicomDir(nullptr);
  if (dir != nullptr) dir->fileIds_->remove(*this);
  dropMrdrLink();
  fileIdParts_ = std::move(reference.fileIdParts);
  refSopClassUid_ = std::move(reference.sopClassUid);
  refSopInstanceUid_ = std::move(reference.sopInstanceUid);
  refTransferSyntaxUid_ = std::move(reference.transferSyntaxUid);
  if (dir != nullptr) dir->fileIds_->add(*this);
}

void DcDirRec::linkTo(DcDirRec& mrdr) {
  setReference({});
  mrdr_ = &mrdr;
  ++mrdr.referenceCount_;
  fileIdParts_ = mrdr.fileIdParts_;
  refSopClassUid_ = mrdr.refSopClassUid_;
  refSopInstanceUid_ = mrdr.refSopInstanceUid_;
  refTransferSyntaxUid_ = mrdr.refTransferSyntaxUid_;
}

void DcDirRec::dropMrdrLink() {
  if (mrdr_ != nullptr && mrdr_->referenceCount_ > 0) --mrdr_->referenceCount_;
  mrdr_ = nullptr;
}

DcCode DcDirRec::setPrivateRecordUid(std::string_view uid) {
  if (uid.size() > kMaxUidChars) return kDcTooLong;
  privateRecordUid_ = trimmed(uid);
  return kDcOk;
}

}  // namespace quillon
