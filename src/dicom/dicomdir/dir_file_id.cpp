#include "dir_file_id.h"

#include <algorithm>
#include <cstdint>

#include "dicom/dict.h"
#include "dicom/file.h"
#include "dicom/log.h"
#include "dicom/read_file.h"
#include "dicom/text_scan.h"

namespace quillon {

namespace {

constexpr char kSeparator = '\\';

bool isFileIdCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || c == '_' || c == kSeparator;
}

}  // namespace

DcCode dirCheckFileIdLength(const std::string& fileId, const char* function) {
  if (fileId.size() <= kMaxFileIdChars) return kDcOk;
  dcLog(DcLogLevel::Error, function, "File ID string exceeds %d char limit",
        static_cast<int>(kMaxFileIdChars));
  return kDcFileIdTooLong;
}

DcCode dirCheckFileIdCharacters(const std::string& fileId, const char* function) {
  for (const char c : fileId) {
    if (!isFileIdCharacter(c)) {
      dcLog(DcLogLevel::Error, function, "Invalid character - '%c' in string '%s'", c,
            fileId.c_str());
      return kDcInvalidFileId;
    }
  }
  return kDcOk;
}

DcCode dirTakeFileId(const char* given, const char* function, std::string& fileId) {
  if (given == nullptr) {
    dcLog(DcLogLevel::Error, function, "Null argument passed");
    return kDcFileNullArgument;
  }
  fileId = trimmed(given);
  const DcCode rc = dirCheckFileIdLength(fileId, function);
  return rc == kDcOk ? dirCheckFileIdCharacters(fileId, function) : rc;
}

DcCode dirSplitFileId(const std::string& fileId, const char* function,
                      std::vector<std::string>& parts) {
  parts.clear();
  for (std::size_t start = 0; start <= fileId.size();) {
    const std::size_t end = std::min(fileId.find(kSeparator, start), fileId.size());
    parts.push_back(fileId.substr(start, end - start));
    start = end + 1;
  }
  if (parts.size() > kMaxFileIdParts) {
    dcLog(DcLogLevel::Error, function, "Number of Entities exceeds %d in '%s'",
          static_cast<int>(kMaxFileIdParts), fileId.c_str());
    return kDcInvalidFileId;
  }
  for (const std::string& part : parts) {
    if (part.size() > kMaxFileIdPartChars) {
      dcLog(DcLogLevel::Error, function, "Record ID string '%s' exceeds %d char limit",
            part.c_str(), static_cast<int>(kMaxFileIdPartChars));
      return kDcInvalidFileId;
    }
    // A path with an empty level would name the same file under a second ID, or a directory.
    if (part.empty()) {
      dcLog(DcLogLevel::Error, function, "Zero length Record ID in '%s'", fileId.c_str());
      return kDcInvalidFileId;
    }
  }
  return kDcOk;
}

std::string dirFileName(const std::string& rootPath, const std::string& fileId) {
  return rootPath + kSeparator + fileId;
}

DcCode dirTakeFileUids(const DcFileMetaInfo& metaInfo, const std::string& fileName,
                       const char* function, std::string& sopClassUid, std::string& sopInstanceUid,
                       std::string& transferSyntaxUid) {
  if (metaInfo.sopClassUid.empty() || metaInfo.sopInstanceUid.empty()) {
    dcLog(DcLogLevel::Error, function, "File '%s', invalid Meta Info", fileName.c_str());
    return kDcNotDicom;
  }
  sopClassUid = metaInfo.sopClassUid;
  sopInstanceUid = metaInfo.sopInstanceUid;
  transferSyntaxUid = metaInfo.transferSyntaxUid;
  // A file that does not name its transfer syntax was read with the default one.
  if (transferSyntaxUid.empty()) transferSyntaxUid = dcUidText(metaInfo.transferSyntax);
  return kDcOk;
}

DcCode dirReadFileUids(const std::string& rootPath, const std::string& fileId, const char* function,
                       std::string& sopClassUid, std::string& sopInstanceUid,
                       std::string& transferSyntaxUid) {
  const std::string fileName = dirFileName(rootPath, fileId);
  std::uint64_t sizeBytes = 0;
  if (!DcFile::status(fileName.c_str(), sizeBytes)) {
    dcLog(DcLogLevel::Error, function, "File '%s' not found", fileName.c_str());
    return kDcStatFailed;
  }
  DcFileMetaInfo metaInfo;
  const DcCode rc = dirReadFileMetaInfo(fileName.c_str(), metaInfo, nullptr);
  if (rc != kDcOk && rc != kDcNotDicom) {
    dcLog(DcLogLevel::Error, function, "File '%s', rc - 0x%04x ", fileName.c_str(), rc);
    return rc;
  }
  return dirTakeFileUids(metaInfo, fileName, function, sopClassUid, sopInstanceUid,
                         transferSyntaxUid);
}

void DcFileIdIndex::add(DcDirRec& record) {
  if (record.fileIdParts().empty() || record.mrdr() != nullptr) return;
  records_.emplace(record.fileId(), &record);
}

void DcFileIdIndex::remove(const DcDirRec& record) {
  if (record.fileIdParts().empty() || record.mrdr() != nullptr) return;
  const auto [first, last] = records_.equal_range(record.fileId());
  for (auto it = first; it != last; ++it) {
    if (it->second == &record) {
      records_.erase(it);
      return;
    }
  }
}

void DcFileIdIndex::addWithLowerLevels(DcDirRec& record) {
  add(record);
  for (std::size_t i = 0; i < record.lowerCount(); ++i) addWithLowerLevels(*record.lower(i));
}

bool DcFileIdIndex::isUsedByAnother(const std::string& fileId, const DcDirRec& record) const {
  const auto [first, last] = records_.equal_range(fileId);
  for (auto it = first; it != last; ++it) {
    if (it->second != &record) return true;
  }
  return false;
}

DcDirRec* DcFileIdIndex::findOnly(const std::string& fileId, std::size_t& count) const {
  count = records_.count(fileId);
  return count == 1 ? records_.find(fileId)->second : nullptr;
}

}  // namespace quillon
