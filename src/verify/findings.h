// What can be found, and the sentences that tell it.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>

#include "dicom/types.h"
#include "verify/verify_medium.h"

namespace quillon {

// In the order of the table of sentences.
enum class Fault : std::uint8_t {
  ListingIncomplete,
  Unfinished,
  LabelUnreadable,
  LinkOnMedium,

  DicomDirMissing,
  DicomDirName,
  DicomDirTooLarge,
  DicomDirUnreadable,
  DicomDirNoMagic,
  MetaDamaged,
  MetaMissing,
  MetaGroupLength,
  MetaSopClass,
  MetaTransferSyntax,
  HeaderDamaged,
  HeaderMissing,
  NoRecords,
  Inconsistent,
  FileSetId,
  Cut,
  LastOffset,

  RecordDamaged,
  RecordsGivenUp,
  OffsetInvalid,
  ReachedTwice,
  TooDeep,
  Unreached,
  NotInUse,
  InUseFlag,
  RecordType,
  Level,
  KeyMissing,
  KeyEmpty,
  IdentityMissing,
  CharacterSetUnknown,
  NoCharacterSet,
  UidForm,
  MrdrOffset,

  FileIdMissing,
  FileIdForm,
  FileIdOutside,
  ReferenceMissing,

  FileMissing,
  FileNameCase,
  FileNotRegular,
  FileUnreadable,
  FileEmpty,
  FileNotDicom,
  FileMetaMissing,
  FileMetaDiffers,
  FileDamaged,
  FileCut,
  FileDeflated,
  FileNamedTwice,
  FileUnreferenced,
  SopClassDiffers,
  SopInstanceDiffers,
  TransferSyntaxDiffers,
  PatientIdDiffers,
  PatientNameDiffers,
  StudyUidDiffers,
  SeriesUidDiffers,
  ModalityDiffers,
  InstanceNumberDiffers,
  ValueMadeUp,

  SumsUnreadable,
  SumsLine,
  SumsOutside,
  SumFileMissing,
  SumDiffers,
  SumMissing,
  SumImpossible,

  ProfileMediumDiffers,
  ProfileObjectDiffers,
  ProfileKeyMissing,
  ProfileIconDiffers,
  ProfilePatientIdRepeated,
};
inline constexpr std::size_t kFaults =
    static_cast<std::size_t>(Fault::ProfilePatientIdRepeated) + 1;

// Where a fault lies.
struct FaultPlace {
  Text file;
  Text record;
};

class Findings {
 public:
  explicit Findings(VerifyReport& report) : report_(report) {}
  // The arguments are those of the fault's sentence.
  void Add(Fault fault, FaultPlace place, std::initializer_list<TextArg> args = {});

 private:
  VerifyReport& report_;
  std::array<std::uint64_t, kFaults> ofKind_{};
};

// "Study Instance UID (0020,000D)".
Text KeyName(DcTag tag);
// A path of the medium as it is told: "/" between its parts.
Text ShownPath(TextView path);
// ASCII, and other bytes as the ANSI code page has them.
Text WideBytes(std::string_view bytes);
// The same for a sentence: trimmed, and the beginning alone of a long one.
Text ShownValue(std::string_view bytes);
Text ShownValue(TextView text);
// Without the padding at its ends: spaces and zero bytes.
std::string_view TrimmedBytes(std::string_view bytes);
// "0x2f0"
Text HexText(std::uint64_t number);

}  // namespace quillon
