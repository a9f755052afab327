// The records of a DICOMDIR: each by itself, and how their offsets lead from one to the other.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "dicom/dir_rec.h"
#include "dicom/tags.h"
#include "dicom_dir_file.h"
#include "findings.h"
#include "profiles/profile.h"

namespace quillon {

// What records and files tell alike.
enum class Identity : std::uint8_t {
  PatientId,
  PatientName,
  StudyUid,
  SeriesUid,
  Modality,
  InstanceNumber
};
inline constexpr std::size_t kIdentities = 6;
struct IdentityRow {
  DcTag tag;
  Fault differs;
};
inline constexpr std::array<IdentityRow, kIdentities> kIdentityRows{{
    {tags::kPatientId, Fault::PatientIdDiffers},
    {tags::kPatientsName, Fault::PatientNameDiffers},
    {tags::kStudyInstanceUid, Fault::StudyUidDiffers},
    {tags::kSeriesInstanceUid, Fault::SeriesUidDiffers},
    {tags::kModality, Fault::ModalityDiffers},
    {tags::kInstanceNumber, Fault::InstanceNumberDiffers},
}};
struct IdentityValue {
  Text value;
  Text record;  // that says so; empty: none does
};
using Identities = std::array<IdentityValue, kIdentities>;

// Text of an element as it is compared: by its character set, without padding, of a name without
// the delimiters at its end.
Text IdentityText(DcTag tag, std::string_view bytes, std::string_view characterSet);

// A key of the profile that a record lacks, which is a fault where its objects have a value for it.
struct LackedKey {
  const ProfileKey* key = nullptr;
  std::uint32_t recordOffset = 0;
  Text record;
};

// A record that names a file.
struct FileRecord {
  std::uint32_t offset = 0;
  Text text;              // "IMAGE record at offset 0x2f0"
  Text path;              // parts of the File ID, joined with backslashes
  bool isShared = false;  // by an MRDR record: others may name it, too
  std::string sopClassUid;
  std::string sopInstanceUid;
  std::string transferSyntaxUid;
  Identities identities;
  std::vector<LackedKey> lackedKeys;  // its own and those of the records above it
};

class DirectoryRecords {
 public:
  // What is done with each record that names a file; false ends the walk.
  using OnFile = std::function<bool(const FileRecord&)>;
  // profile: null where none is asked for.
  DirectoryRecords(const DicomDirFile& file, const Profile* profile, Findings& findings,
                   VerifyReport& report, OnFile onFile);

  // False when it was ended.
  [[nodiscard]] bool Walk();

 private:
  struct Parent {
    std::optional<DcDirRecType> type;  // none: not known
    Text text;
    Identities identities;
    std::vector<LackedKey> lackedKeys;
  };
  struct Links {
    std::uint32_t next = 0;
    std::uint32_t lower = 0;
  };

  [[nodiscard]] bool WalkLevel(std::uint32_t first, const Parent& parent, std::size_t depth);
  // The record that an offset leads to, unless it leads nowhere or where the walk has been.
  std::optional<std::size_t> Follow(std::uint32_t offset, const Text& offsetText);
  [[nodiscard]] bool WalkUnreached();
  [[nodiscard]] bool VisitRecord(std::size_t record, const Parent& parent, Parent& self,
                                 Links& links);
  void Count(DcDirRecType type);
  // What the profile wants of the record; notes what its objects have to be asked for.
  void CheckProfile(const RawElements& elements, DcDirRecType type, std::uint32_t offset,
                    Parent& self);
  [[nodiscard]] bool VisitFile(const RawElements& elements, DcDirRecType type, const Parent& self,
                               std::uint32_t offset);
  // The record that an MRDR offset leads to: its elements name the file.
  std::optional<RawElements> FindMrdr(const RawElements& elements, const Parent& self);

  const DicomDirFile& file_;
  const Profile* profile_;
  std::unordered_set<std::string> patientIds_;  // where a profile is asked for
  Findings& findings_;
  VerifyReport& report_;
  OnFile onFile_;
  std::vector<bool> isReached_;
  bool isUnreachedWalk_ = false;
  // The chain of the root has been followed to its end, which was this record.
  std::optional<std::uint32_t> lastOfRoot_;
};

}  // namespace quillon
