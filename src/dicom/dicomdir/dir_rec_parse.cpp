// Reads one directory record from the bytes of a DICOMDIR.
#include "dir_rec_parse.h"

#include <string>
#include <utility>

#include "dicom/dict.h"
#include "dicom/dir_dicom_dir.h"
#include "dicom/dir_rec.h"
#include "dicom/element_form.h"
#include "dicom/log.h"
#include "dicom/parse_header.h"
#include "dicom/read_file.h"
#include "dicom/tags.h"

namespace quillon {

namespace {

constexpr const char* kFunction = "DcDirRec::parse";

// What the lists of items have while values are not checked.
DcCode acceptText(void*, DcTag, DcVr, const char*, std::string*, bool*) { return kDcOk; }

// Offsets print as the signed numbers that the messages have always shown.
int shown(std::uint32_t offset) { return static_cast<int>(offset); }

DcCode missing(std::uint32_t offset, DcTag tag) {
  dcLog(DcLogLevel::Error, kFunction, "Offset - %d (0x%06x), %s missing or invalid", shown(offset),
        offset, dcTagName(tag).c_str());
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
      loadItemTag(item, kParseExplicitLittleForm) != tags::kItem) {
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
  nextOffset_ = offsetOf(*this, tags::kOffsetOfTheNextDirectoryRecord);
  lowerOffset_ = offsetOf(*this, tags::kOffsetOfReferencedLowerLevelDirectoryEntity);
  if (getValue(tags::kRecordInUseFlag, inUseFlag_) != kDcOk) {
    return missing(offsetInFile, tags::kRecordInUseFlag);
  }
  const auto typeName = dirTextOf(*this, tags::kRecordType);
  if (!typeName) return missing(offsetInFile, tags::kRecordType);
  type_ = dirGetType(*typeName);
  if (type_ == DcDirRecType::Unknown) {
    dcLog(DcLogLevel::Error, kFunction, "Offset - %d (0x%06x), invalid Record Type - '%s'",
          shown(offsetInFile), offsetInFile, typeName->data());
    return kDcInvalidDicomDir;
  }
  const auto privateUid = dirTextOf(*this, tags::kPrivateRecordUid);
  privateRecordUid_ = privateUid.value_or("");
  if (type_ == DcDirRecType::Private && !privateUid) {
    return missing(offsetInFile, tags::kPrivateRecordUid);
  }
  rc = parseReference(offsetInFile);
  if (rc == kDcOk) removeGroup(0x0004);
  return rc;
}

DcCode DcDirRec::parseReference(std::uint32_t offsetInFile) {
  const DcElem* fileIdElement = find(tags::kReferencedFileId);
  mrdrOffset_ = fileIdElement == nullptr ? offsetOf(*this, tags::kMrdrDirectoryRecordOffset) : 0;
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
  const std::pair<DcTag, std::string&> uids[] = {
      {tags::kReferencedFileClassUid, reference.sopClassUid},
      {tags::kReferencedFileInstanceUid, reference.sopInstanceUid},
      {tags::kReferencedFileXferSynUid, reference.transferSyntaxUid},
  };
  for (const auto& [tag, target] : uids) {
    if (const auto text = dirTextOf(*this, tag)) {
      target = *text;
    } else if (required) {
      return missing(offsetInFile, tag);
    }
  }
  setReference(std::move(reference));
  return kDcOk;
}

}  // namespace quillon
