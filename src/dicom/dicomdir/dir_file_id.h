// File IDs: the rules for one that is to be referenced, what its file says about itself, and which
// record refers to which file.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "dicom/dir_rec.h"
#include "dicom/file_meta_info.h"
#include "dicom/types.h"

namespace quillon {

// The three steps of refusing a file ID, each with its log line. `fileId` is trimmed.
DcCode dirCheckFileIdLength(const std::string& fileId, const char* function);
DcCode dirCheckFileIdCharacters(const std::string& fileId, const char* function);
DcCode dirSplitFileId(const std::string& fileId, const char* function,
                      std::vector<std::string>& parts);

// A file ID as a caller gives it, trimmed and through the first two; null is refused.
DcCode dirTakeFileId(const char* given, const char* function, std::string& fileId);

std::string dirFileName(const std::string& rootPath, const std::string& fileId);

// What a record says of the file it refers to: its SOP class and instance and transfer syntax. The
// UIDs are the file's own text, so that a SOP class the dictionary does not know is referenced all
// the same. Taken from meta information at hand (fileName is for the log line), or read.
DcCode dirTakeFileUids(const DcFileMetaInfo& metaInfo, const std::string& fileName,
                       const char* function, std::string& sopClassUid, std::string& sopInstanceUid,
                       std::string& transferSyntaxUid);
DcCode dirReadFileUids(const std::string& rootPath, const std::string& fileId, const char* function,
                       std::string& sopClassUid, std::string& sopInstanceUid,
                       std::string& transferSyntaxUid);

// Records by the file they refer to. Records linked to an MRDR are left out: they refer to the
// MRDR, which is in here. A DICOMDIR that was read can have several records for one file.
class DcFileIdIndex {
 public:
  // Both go by the record's current file ID and do nothing when it has none or is linked.
  void add(DcDirRec& record);
  void remove(const DcDirRec& record);
  void addWithLowerLevels(DcDirRec& record);
  void clear() { records_.clear(); }

  [[nodiscard]] bool isUsedByAnother(const std::string& fileId, const DcDirRec& record) const;
  // The only record, or null and the number of records (0 or more than 1).
  [[nodiscard]] DcDirRec* findOnly(const std::string& fileId, std::size_t& count) const;

 private:
  std::unordered_multimap<std::string, DcDirRec*> records_;
};

}  // namespace quillon
