// Writes one directory record behind the bytes of a DICOMDIR.
#include "dir_rec_encode.h"

#include "dicom/byte_order.h"
#include "dicom/dir_rec.h"
#include "dicom/elem_sq.h"
#include "dicom/element_form.h"
#include "dicom/log.h"
#include "dicom/tags.h"
#include "dir_element_bytes.h"
#include "record_types.h"

namespace quillon {

namespace {

constexpr const char* kFunction = "DcDirRec::frame";

// Bytes that stay in another file cannot be keys: their length would stand in the record without
// them.
bool staysInFile(const DcElemList& list);

bool staysInFile(const DcElem& element) {
  for (const DcElemValueBuf& segment : element.segments()) {
    if (segment.storage() == DcElemValueBuf::Storage::File) return true;
  }
  const auto* sequence = element.isSequence() ? dynamic_cast<const DcElemSq*>(&element) : nullptr;
  for (std::size_t i = 0; sequence != nullptr && i < sequence->itemCount(); ++i) {
    if (staysInFile(*sequence->item(i))) return true;
  }
  return false;
}

bool staysInFile(const DcElemList& list) {
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (staysInFile(*list.at(i))) return true;
  }
  return false;
}

}  // namespace

DcCode DcDirRec::frame(std::vector<std::uint8_t>& file) {
  std::size_t mrdrLinkAt = 0;
  return frameItem(file, 0, mrdrLinkAt);
}

DcCode DcDirRec::frameItem(std::vector<std::uint8_t>& bytes, std::size_t bytesBefore,
                           std::size_t& mrdrLinkAt) {
  const std::size_t itemAt = bytes.size();
  const bool isMrdr = type_ == DcDirRecType::Mrdr;
  offsetInFile_ = static_cast<std::uint32_t>(bytesBefore + itemAt);
  mrdrLinkAt = 0;
  if (type_ == DcDirRecType::Unknown) {
    dcLog(DcLogLevel::Warning, kFunction, "Record of type UNKNOWN framed at offset %d (0x%06x)",
          static_cast<int>(offsetInFile_), offsetInFile_);
  }
  if (isMrdr && fileIdParts_.empty()) {
    dcLog(DcLogLevel::Error, kFunction, "MRDR at offset %d (0x%06x) - missing Referenced File ID",
          static_cast<int>(offsetInFile_), offsetInFile_);
  }

  DcDirElementBytes elements(bytes);
  const std::size_t lengthAt = elements.itemHeader();
  elements.ul(tags::kOffsetOfTheNextDirectoryRecord, nextOffset_);
  elements.us(tags::kRecordInUseFlag, inUseFlag_);
  elements.ul(tags::kOffsetOfReferencedLowerLevelDirectoryEntity, lowerOffset_);
  elements.text(tags::kRecordType, dirTypeRow(type_).name);
  if (!privateRecordUid_.empty()) elements.text(tags::kPrivateRecordUid, privateRecordUid_);
  if (!fileIdParts_.empty()) {
    if (mrdr_ != nullptr) {
      mrdrLinkAt = elements.ul(tags::kMrdrDirectoryRecordOffset, mrdr_->offsetInFile_);
    } else {
      elements.parts(tags::kReferencedFileId, fileIdParts_);
    }
    if (isMrdr) {
      elements.ul(tags::kNumberOfReferences, referenceCount_);
    } else {
      elements.text(tags::kReferencedFileClassUid, refSopClassUid_);
      elements.text(tags::kReferencedFileInstanceUid, refSopInstanceUid_);
      elements.text(tags::kReferencedFileXferSynUid, refTransferSyntaxUid_);
    }
  }
  if (elements.code() != kDcOk) return elements.code();

  // The keys are encoded once, at their place: the estimate is never below what they take.
  removeGroup(0x0004);
  if (staysInFile(*this)) {
    dcLog(DcLogLevel::Error, kFunction, "Offset - %d (0x%06x), key with its value in a file",
          static_cast<int>(offsetInFile_), offsetInFile_);
    return kDcNotAccepted;
  }
  const std::size_t keysAt = bytes.size();
  std::uint32_t keyBytes = 0;
  if (size() != 0) {
    bytes.resize(keysAt + static_cast<std::size_t>(encodedLengthEstimate()));
    const DcCode rc = frame(&bytes[keysAt], keyBytes, DcUid::ExplicitLittleEndian);
    if (rc != kDcOk) return rc;
    bytes.resize(keysAt + keyBytes);
  }
  storeLe32(&bytes[lengthAt], static_cast<std::uint32_t>(bytes.size() - itemAt - kItemHeaderBytes));
  return kDcOk;
}

}  // namespace quillon
