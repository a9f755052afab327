// A DICOMDIR in memory: file-set header and a tree of directory records, rooted at the directory
// that holds the file set.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "dicom/dir_rec.h"
#include "dicom/file_meta_info.h"

namespace quillon {

inline constexpr std::size_t kMaxRootPathChars = 257;
// A DICOMDIR whose contents are not what they must be. Shares its number with a file ID that is
// too long: 0x5801 is this area's code for a refused value.
inline constexpr DcCode kDcInvalidDicomDir{0x5801};

class DcDirDicomDir final : public DcDirRec {
 public:
  // Runs initialize(rootPath), whose code initialCode keeps.
  explicit DcDirDicomDir(const char* rootPath);
  ~DcDirDicomDir() override;

  // A fresh object with a new SOP instance UID; with a root path, the DICOMDIR there is read. A
  // path that is too long or a bare drive leaves the root empty and gives kDcNotDicom.
  DcCode initialize(const char* rootPath);
  // The same without reading what lies there: for one that is to take its place.
  DcCode startEmpty(const char* rootPath);
  [[nodiscard]] DcCode initialCode() const { return initialCode_; }
  [[nodiscard]] const std::string& rootPath() const { return rootPath_; }

  [[nodiscard]] DcFileMetaInfo fileMetaInfo() const { return metaInfo_; }
  // Version, SOP class and transfer syntax are forced to those of a DICOMDIR.
  void setFileMetaInfo(const DcFileMetaInfo& metaInfo);

  // Reads the DICOMDIR in the root directory in place of the records held; none there is a success
  // and an empty object. A record that cannot be built ends the reading with a code; what was read
  // before it stays, so whoever writes afterwards must look at the code or lose records. No byte
  // of the file is taken for more than one record.
  // MRDR records: chains of records end before them, so those that no chain reaches are found by
  // walking the Directory Record Sequence. Then each record whose (0004,1504) is the offset of an
  // MRDR is linked to it, as linkRecToMrdr does; one whose MRDR is not there has no file ID.
  DcCode read();
  // Writes it there, or in rootPath (which is not kept). The bytes are brought to the disk as
  // DICOMDIR.NEW, which then takes the place of a DICOMDIR; that one is as it was whenever writing
  // fails, also where it is a second name of a file or a link. kDcReadFailed when the bytes did not
  // all reach the disk. Written again without changes it has the same bytes.
  DcCode write(const char* rootPath = nullptr);
  // Finds the record that refers to a file; the last one when a DICOMDIR that was read has more.
  // kDcNoRecords in an empty DICOMDIR, kDcNotInList when no record does; null then.
  DcCode getRefFileObj(const char* fileId, DcDirRec** recordOut);
  // Makes a record refer to an MRDR of this DICOMDIR instead of a file, or (null) to nothing. Both
  // must hang in this DICOMDIR (kDcHierarchyError, kDcInvalidMrdrLink): a record that is deleted
  // before it would leave its link behind, or find its MRDR gone.
  DcCode linkRecToMrdr(DcDirRec* record, DcDirRec* mrdr);

  std::string fileSetId;
  std::vector<std::string> descriptorFileIdParts;
  std::string descriptorCharacterSet;
  std::uint16_t consistencyFlag = 0;

 private:
  friend class DcDirRec;
  friend class DcDirWriter;
  friend class DcDirReader;

  void clearRecords();

  std::string rootPath_;
  DcFileMetaInfo metaInfo_;
  DcCode initialCode_ = kDcOk;
  std::unique_ptr<DcFileIdIndex> fileIds_;
};

}  // namespace quillon
