// Reads one directory record from the bytes of a DICOMDIR.
#include "dir_rec_parse.h"

#include <string>

#include "dicom/dir_dicom_dir.h"
#include "dicom/dir_rec.h"
#include "dicom/element_form.h"
#include "dicom/log.h"
#include "dicom/parse_header.h"
#include "dicom/read_file.h"

namespace quillon {

namespace {

constexpr const char* kFunction = "DcDirRec::parse";

constexpr DcTag kNextRecordOffset = 0x00041400;
constexpr DcTag kRecordInUseFlag = 0x00041410;
constexpr DcTag kLowerLevelOffset = 0x00041420;
constexpr DcTag kRecordType = 0x00041430;
constexpr DcTag kPrivateRecordUid = 0x00041432;
constexpr DcTag kReferencedFileId = 0x00041500;
constexpr DcTag kMrdrOffset = 0x00041504;
constexpr DcTag kReferencedSopClassUid = 0x00041510;
constexpr DcTag kReferencedSopInstanceUid = 0x00041511;
constexpr DcTag kReferencedTransferSyntaxUid = 0x00041512;

// What the lists of items have while values are not checked.
DcCode acceptText(void*, DcTag, DcVr, const char*, std::string*, bool*) { return kDcOk; }

// Offsets print as the signed numbers that the messages have always shown.
int shown(std::uint32_t offset) { return static_cast<int>(offset); }

DcCode missing(std::uint32_t offset, const char* element) {
  dcLog(DcLogLevel::Error, kFunction, "Offset - %d (0x%06x), %s missing or invalid", shown(offset),
        offset, element);
  return kDcInvalidDicomDir;
}

std::uint32_t offsetOf(const DcElemList& list, DcTag tag) {
  std::uint32_t offset = 0;
  return list.getValue(tag, offset) == kDcOk ? offset : 0;
}

}  // namespace

std::optional<std::string_view> dirTextOf(const DcElemList& list, DcTag tag) {
  const DcElem* element = list.find(tag);
  const auto text = element != nullptr ? element->stringValue(0) : std::nullopt;
  return text && !text->empty() ? text : std::nullopt;
}

DcCode dirMeasureItem(const std::uint8_t* file, std::uint32_t fileBytes, std::uint32_t offsetInFile,
                      DcDirItemExtent& extent) {
  if (offsetInFile >= fileBytes) {
    dcLog(DcLogLevel::Error, kFunction, "Offset %d (0x%06x) exceeds buffer length %d (0x%06x)",
          shown(offsetInFile), offsetInFile, shown(fileBytes), fileBytes);
    return kDcInvalidDicomDir;
  }
  const std::uint8_t* item = file + offsetInFile;
  if (fileBytes - offsetInFile < kItemHeaderBytes ||
      loadItemTag(item, kParseExplicitLittleForm) != kItemTag) {
    dcLog(DcLogLevel::Error, kFunction, "Offset - %d (0x%06x), Sequence Item missing",
          shown(offsetInFile), offsetInFile);
    return kDcInvalidDicomDir;
  }
  std::uint32_t trailerBytes = 0;
  const DcCode rc =
      utilGetSqItemValLen(item + 4, fileBytes - offsetInFile - kItemHeaderBytes,
                          DcUid::ExplicitLittleEndian, &extent.valueBytes, &trailerBytes);
  if (rc != kDcOk) return rc;
  extent.valueAt = offsetInFile + kItemHeaderBytes;
  extent.endAt = extent.valueAt + extent.valueBytes + trailerBytes;
  return kDcOk;
}

DcCode DcDirRec::parse(const std::uint8_t* file, std::uint32_t fileBytes,
                       std::uint32_t offsetInFile) {
  if (file == nullptr) {
    dcLog(DcLogLevel::Error, kFunction, "Null argument passed");
    return kDcFileNullArgument;
  }
  DcDirItemExtent extent;
  const DcCode rc = dirMeasureItem(file, fileBytes, offsetInFile, extent);
  if (rc != kDcOk) return rc;
  return parseItem(file + extent.valueAt, extent.valueBytes, offsetInFile);
}

DcCode DcDirRec::parseItem(const std::uint8_t* value, std::uint32_t valueBytes,
                           std::uint32_t offsetInFile) {
  clear();
  setReference({});
  const DcDirUnchecked unchecked;
  const DcStringHook hook = stringHook();
  setStringHook({nullptr, acceptText});
  DcCode rc = parse(value, valueBytes, DcUid::ExplicitLittleEndian);
  setStringHook(hook);
  // A record that lacks a key must not pass for whole: it would be written again without it.
  if (rc == kDcOk && lostElements()) rc = kDcNoMemory;
  if (rc != kDcOk) return rc;

  offsetInFile_ = offsetInFile;
  nextOffset_ = offsetOf(*this, kNextRecordOffset);
  lowerOffset_ = offsetOf(*this, kLowerLevelOffset);
  if (getValue(kRecordInUseFlag, inUseFlag_) != kDcOk) {
    return missing(offsetInFile, "T_0004_1410_recordInUseFlag");
  }
  const auto typeName = dirTextOf(*this, kRecordType);
  if (!typeName) return missing(offsetInFile, "T_0004_1430_recordType");
  type_ = dirGetType(*typeName);
  if (type_ == DcDirRecType::Unknown) {
    dcLog(DcLogLevel::Error, kFunction, "Offset - %d (0x%06x), invalid Record Type - '%s'",
          shown(offsetInFile), offsetInFile, typeName->data());
    return kDcInvalidDicomDir;
  }
  const auto privateUid = dirTextOf(*this, kPrivateRecordUid);
  privateRecordUid_ = privateUid.value_or("");
  if (type_ == DcDirRecType::Private && !privateUid) {
    return missing(offsetInFile, "T_0004_1432_privateRecordUid");
  }
  rc = parseReference(offsetInFile);
  if (rc == kDcOk) removeGroup(0x0004);
  return rc;
}

DcCode DcDirRec::parseReference(std::uint32_t offsetInFile) {
  const DcElem* fileIdElement = find(kReferencedFileId);
  mrdrOffset_ = fileIdElement == nullptr ? offsetOf(*this, kMrdrOffset) : 0;
  if (fileIdElement == nullptr && mrdrOffset_ == 0) return kDcOk;

  Reference reference;
  if (fileIdElement != nullptr) {
    const int parts = fileIdElement->valueCount();
    std::size_t chars = 0;
    bool fits = static_cast<std::size_t>(parts) <= kMaxFileIdParts;
    std::string joined;
    for (int i = 0; i < parts; ++i) {
      const auto part = fileIdElement->stringValue(i);
      if (!part) break;  // not text
      fits = fits && part->size() <= kMaxFileIdPartChars;
      chars += part->size();
      if (i > 0) joined += '\\';
      joined += *part;
      reference.fileIdParts.emplace_back(*part);
    }
    if (chars == 0) {
      dcLog(DcLogLevel::Error, kFunction, "Offset - %d (0x%06x), Zero length File ID",
            shown(offsetInFile), offsetInFile);
      return kDcInvalidDicomDir;
    }
    if (!fits) {
      dcLog(DcLogLevel::Error, kFunction,
            "Offset - %d (0x%06x), File ID '%s' exceeds limit in T_0004_1500_referencedFileId",
            shown(offsetInFile), offsetInFile, joined.c_str());
      return kDcFileIdTooLong;
    }
  }

  // A record that reaches its file through an MRDR, and the MRDR itself, need not repeat the UIDs.
  const bool required = fileIdElement != nullptr && type_ != DcDirRecType::Mrdr;
  const struct {
    DcTag tag;
    const char* name;
    std::string& target;
  } uids[] = {
      {kReferencedSopClassUid, "T_0004_1510_referencedFileClassUid", reference.sopClassUid},
      {kReferencedSopInstanceUid, "T_0004_1511_referencedFileInstanceUid",
       reference.sopInstanceUid},
      {kReferencedTransferSyntaxUid, "T_0004_1512_referencedFileXferSynUid",
       reference.transferSyntaxUid},
  };
  for (const auto& uid : uids) {
    if (const auto text = dirTextOf(*this, uid.tag)) {
      uid.target = *text;
    } else if (required) {
      return missing(offsetInFile, uid.name);
    }
  }
  setReference(std::move(reference));
  return kDcOk;
}

}  // namespace quillon
