// One directory record of a DICOMDIR: an element list of keys, a record type, the file it refers
// to and its lower-level records.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "dicom/elem_list.h"
#include "dicom/types.h"

namespace quillon {

enum class DcDirRecType : std::uint16_t {
  Unknown = 0,
  BasicImageBox,
  BasicFilmBox,
  BasicFilmSession,
  Curve,
  DicomDir,
  EncapDoc,
  Fiducial,
  HangingProtocol,
  Hl7StrucDoc,
  Image,
  Interpretation,
  KeyObjectDoc,
  ModalityLut,
  Mrdr,
  Overlay,
  Patient,
  Presentation,
  PrintQueue,
  Private,
  RawData,
  Registration,
  Results,
  RtTreatRecord,
  RtPlan,
  RtStructureSet,
  RtDose,
  Series,
  Spectroscopy,
  SrDocument,
  Stereometric,
  StoredPrint,
  StudyComponent,
  Study,
  Topic,
  ValueMap,
  Visit,
  VoiLut,
  Waveform,
  // Types that the standard has gained since, the first of them a type above by its right name.
  EncapsulatedDocument = 40,
  Palette,
  Implant,
  ImplantGroup,
  ImplantAssembly,
  Plan,
  Measurement,
  Surface,
  SurfaceScan,
  Tract,
  Assessment,
  Radiotherapy,
  Annotation,
  Inventory,
  WaveformPresentation
};

inline constexpr std::size_t kMaxFileIdChars = 103;
inline constexpr std::size_t kMaxFileIdParts = 8;
inline constexpr std::size_t kMaxFileIdPartChars = 8;

// Name of a record type as (0004,1430) holds it; "UNKNOWN" for any other. Null: code.
DcCode dirGetDesc(DcDirRecType type, std::string* name);
// The reverse; Unknown when there is no such name.
DcDirRecType dirGetType(std::string_view name);
// Whether a record of this type stands for one file and is incomplete without a file ID.
[[nodiscard]] bool dirRefersToFile(DcDirRecType type);

class DcDirRec;
class DcDirDicomDir;
struct DcFileMetaInfo;
// Finds a record by its Referenced File ID; the DICOMDIR keeps one for all its records, so that
// setting the n-th file does not search n-1 records.
class DcFileIdIndex;

class DcDirRec : public DcElemList {
 public:
  explicit DcDirRec(DcDirRecType type);
  // Parses the record at an offset of a DICOMDIR in memory; code (may be null) tells how it went.
  DcDirRec(const std::uint8_t* file, std::uint32_t fileBytes, std::uint32_t offsetInFile,
           DcCode* code);
  ~DcDirRec() override;

  [[nodiscard]] DcDirRecType type() const { return type_; }
  [[nodiscard]] DcDirRec* parent() const { return parent_; }
  [[nodiscard]] std::size_t lowerCount() const { return lower_.size(); }
  [[nodiscard]] DcDirRec* lower(std::size_t index) const { return lower_[index].get(); }

  // kDcHierarchyError when `child` may not stand below `parent`.
  static DcCode checkLevel(DcDirRecType parent, DcDirRecType child);
  // Adds below this record, MRDR records last. Refused: the child is deleted, null is answered.
  DcDirRec* addLower(std::unique_ptr<DcDirRec> child);
  // Adds a key; answers this record so that calls can be chained.
  DcDirRec& addKey(std::unique_ptr<DcElem> element);
  // The same for a key of one text, which while values are not checked is kept whatever its form:
  // an element that gets its text before it is in a list would refuse a date that is none.
  DcDirRec& addKey(DcTag tag, const char* text);

  // A record of the same type with copies of the keys and the private record UID, that hangs
  // nowhere and refers to no file. Null when there is no memory.
  [[nodiscard]] std::unique_ptr<DcDirRec> copyOfKeys() const;

  // Refers to a file below the DICOMDIR's root: the file must exist and have meta information,
  // from which SOP class, instance and transfer syntax are taken. A refused file ID leaves the
  // record as it was.
  DcCode setRefFile(const char* fileId);
  // The same by what the caller knows the file's meta information to be (dirReadFileMetaInfo's
  // answer for it). No file is looked for, so the DICOMDIR needs no root path.
  DcCode setRefFile(const char* fileId, const DcFileMetaInfo& metaInfo);
  // The same for a record that hangs nowhere and is to go to the DICOMDIR in rootPath by way of a
  // DcDirWriter: whether another record has the file ID is the caller's to know.
  DcCode setRefFile(const char* fileId, const DcFileMetaInfo& metaInfo,
                    const std::string& rootPath);
  [[nodiscard]] const std::vector<std::string>& fileIdParts() const { return fileIdParts_; }
  [[nodiscard]] std::string fileId() const;  // parts joined with "\"
  // Root path of the DICOMDIR at the top, or kDcHierarchyError.
  DcCode getRootPath(std::string* path) const;

  // One record of a DICOMDIR in memory. parse reads the item at an offset: keys, file ID and links
  // replace what the record holds; links are remembered as offsets, not followed. A record that
  // breaks a rule gives a code (kDcInvalidDicomDir in dir_dicom_dir.h, or the parser's) and one
  // log line.
  DcCode parse(const std::uint8_t* file, std::uint32_t fileBytes, std::uint32_t offsetInFile);
  // frame appends the item to the file's bytes and stores its offset; links are written as they
  // are remembered. Group 0004 elements among the keys are dropped: the record's own are written.
  DcCode frame(std::vector<std::uint8_t>& file);
  using DcElemList::frame;
  using DcElemList::parse;

  // (0004,1432), of PRIVATE records; at most 128 characters (kDcTooLong).
  DcCode setPrivateRecordUid(std::string_view uid);
  [[nodiscard]] const std::string& privateRecordUid() const { return privateRecordUid_; }

  [[nodiscard]] std::uint32_t offsetInFile() const { return offsetInFile_; }
  [[nodiscard]] std::uint16_t inUseFlag() const { return inUseFlag_; }
  [[nodiscard]] const std::string& refSopClassUid() const { return refSopClassUid_; }
  [[nodiscard]] const std::string& refSopInstanceUid() const { return refSopInstanceUid_; }
  [[nodiscard]] const std::string& refTransferSyntaxUid() const { return refTransferSyntaxUid_; }
  [[nodiscard]] DcDirRec* mrdr() const { return mrdr_; }
  [[nodiscard]] std::uint32_t referenceCount() const { return referenceCount_; }

 protected:
  friend class DcDirDicomDir;
  friend class DcDirWriter;
  friend class DcDirReader;

  // What a record refers to: the file's components and what its meta information says.
  struct Reference {
    std::vector<std::string> fileIdParts;
    std::string sopClassUid;
    std::string sopInstanceUid;
    std::string transferSyntaxUid;
  };

  [[nodiscard]] const DcDirRec& top() const;
  // The DICOMDIR this record hangs in; null (and, with a function name, a log line) without one.
  [[nodiscard]] const DcDirDicomDir* dicomDir(const char* function) const;
  // Whether `fileId` may be set, which fills reference.fileIdParts; `trimmedId` is it without white
  // space around it.
  DcCode checkFileId(const char* fileId, std::string& trimmedId, Reference& reference) const;
  // Replaces what the record refers to and drops a link to an MRDR; keeps the index.
  void setReference(Reference reference);
  void linkTo(DcDirRec& mrdr);
  void dropMrdrLink();
  DcCode parseItem(const std::uint8_t* value, std::uint32_t valueBytes, std::uint32_t offsetInFile);
  DcCode parseReference(std::uint32_t offsetInFile);
  // bytes: behind the first bytesBefore of the file. mrdrLinkAt: where the offset of the MRDR
  // stands in bytes, 0 without a link.
  DcCode frameItem(std::vector<std::uint8_t>& bytes, std::size_t bytesBefore,
                   std::size_t& mrdrLinkAt);

  DcDirRecType type_;
  DcDirRec* parent_ = nullptr;
  std::vector<std::unique_ptr<DcDirRec>> lower_;
  std::uint32_t offsetInFile_ = 0;
  std::uint32_t nextOffset_ = 0;   // of the next record of the same level, 0 for none
  std::uint32_t lowerOffset_ = 0;  // of the first lower-level record, 0 for none
  std::uint32_t mrdrOffset_ = 0;   // (0004,1504) as read; mrdr_ holds once the link is restored
  std::uint16_t inUseFlag_ = 0xFFFF;
  std::vector<std::string> fileIdParts_;
  std::string refSopClassUid_;
  std::string refSopInstanceUid_;
  std::string refTransferSyntaxUid_;
  std::string privateRecordUid_;
  DcDirRec* mrdr_ = nullptr;
  std::uint32_t referenceCount_ = 0;
};

}  // namespace quillon
