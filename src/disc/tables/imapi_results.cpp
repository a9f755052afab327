// The results of the current disc-mastering service that have a sentence of their own: the
// platform's published codes for disc recording and for file system images.
#include "tables/imapi_results.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace quillon {
namespace {

struct ResultRow {
  std::uint32_t result;
  MessageId message;
};

// clang-format off
constexpr std::array kResults{
    ResultRow{0x00AA0004, kMsgImapiSpeedAdjusted},
    ResultRow{0x00AA0005, kMsgImapiRotationAdjusted},
    ResultRow{0x00AA0006, kMsgImapiBothAdjusted},
    ResultRow{0x00AA0200, kMsgImapiCommandHasSenseData},
    ResultRow{0x80AA0900, kMsgImapiEraseRecorderInUse},
    ResultRow{0x80AA0901, kMsgImapiEraseOnlyOneRecorder},
    ResultRow{0x80AA0902, kMsgImapiEraseDiscInformationTooShort},
    ResultRow{0x80AA0903, kMsgImapiEraseModePageTooShort},
    ResultRow{0x80AA0904, kMsgImapiEraseMediaIsNotErasable},
    ResultRow{0x80AA0905, kMsgImapiEraseDriveFailedCommand},
    ResultRow{0x80AA0906, kMsgImapiEraseTookLongerThanOneHour},
    ResultRow{0x80AA0907, kMsgImapiEraseUnexpectedDriveResponse},
    ResultRow{0x80AA0908, kMsgImapiEraseDriveFailedSpinup},
    ResultRow{0xC0AA0002, kMsgImapiRequestCancelled},
    ResultRow{0xC0AA0003, kMsgImapiRecorderRequired},
    ResultRow{0xC0AA0201, kMsgImapiNoSuchModePage},
    ResultRow{0xC0AA0202, kMsgImapiNoMedia},
    ResultRow{0xC0AA0203, kMsgImapiMediaIncompatible},
    ResultRow{0xC0AA0204, kMsgImapiMediaUpsideDown},
    ResultRow{0xC0AA0205, kMsgImapiMediaBecomingReady},
    ResultRow{0xC0AA0206, kMsgImapiMediaFormatInProgress},
    ResultRow{0xC0AA0207, kMsgImapiMediaBusy},
    ResultRow{0xC0AA0208, kMsgImapiInvalidModeParameters},
    ResultRow{0xC0AA0209, kMsgImapiMediaWriteProtected},
    ResultRow{0xC0AA020A, kMsgImapiNoSuchFeature},
    ResultRow{0xC0AA020B, kMsgImapiFeatureIsNotCurrent},
    ResultRow{0xC0AA020C, kMsgImapiGetConfigurationNotSupported},
    ResultRow{0xC0AA020D, kMsgImapiCommandTimeout},
    ResultRow{0xC0AA020E, kMsgImapiDvdStructureNotPresent},
    ResultRow{0xC0AA020F, kMsgImapiMediaSpeedMismatch},
    ResultRow{0xC0AA0210, kMsgImapiRecorderLocked},
    ResultRow{0xC0AA0211, kMsgImapiRecorderClientName},
    ResultRow{0xC0AA02FF, kMsgImapiInvalidResponseFromDevice},
    ResultRow{0xC0AA0300, kMsgImapiLossOfStreaming},
    ResultRow{0xC0AA0301, kMsgImapiUnexpectedResponseFromDevice},
    ResultRow{0xC0AA0400, kMsgImapiDataWriteInProgress},
    ResultRow{0xC0AA0401, kMsgImapiDataWriteNotInProgress},
    ResultRow{0xC0AA0402, kMsgImapiDataInvalidMediaState},
    ResultRow{0xC0AA0403, kMsgImapiDataStreamNotSupported},
    ResultRow{0xC0AA0404, kMsgImapiDataStreamTooLarge},
    ResultRow{0xC0AA0405, kMsgImapiDataMediaNotBlank},
    ResultRow{0xC0AA0406, kMsgImapiDataMediaNotSupported},
    ResultRow{0xC0AA0407, kMsgImapiDataRecorderNotSupported},
    ResultRow{0xC0AA0408, kMsgImapiDataClientName},
    ResultRow{0xC0AA0500, kMsgImapiTaoWriteInProgress},
    ResultRow{0xC0AA0501, kMsgImapiTaoWriteNotInProgress},
    ResultRow{0xC0AA0502, kMsgImapiTaoMediaIsNotPrepared},
    ResultRow{0xC0AA0503, kMsgImapiTaoMediaIsPrepared},
    ResultRow{0xC0AA0504, kMsgImapiTaoPropertyForBlankMediaOnly},
    ResultRow{0xC0AA0505, kMsgImapiTaoTableOfContentsEmptyDisc},
    ResultRow{0xC0AA0506, kMsgImapiTaoMediaIsNotBlank},
    ResultRow{0xC0AA0507, kMsgImapiTaoMediaNotSupported},
    ResultRow{0xC0AA0508, kMsgImapiTaoTrackLimitReached},
    ResultRow{0xC0AA0509, kMsgImapiTaoNotEnoughSpace},
    ResultRow{0xC0AA050A, kMsgImapiTaoNoRecorderSpecified},
    ResultRow{0xC0AA050B, kMsgImapiTaoInvalidIsrc},
    ResultRow{0xC0AA050C, kMsgImapiTaoInvalidCatalogNumber},
    ResultRow{0xC0AA050D, kMsgImapiTaoStreamNotSupported},
    ResultRow{0xC0AA050E, kMsgImapiTaoRecorderNotSupported},
    ResultRow{0xC0AA050F, kMsgImapiTaoClientName},
    ResultRow{0xC0AA0600, kMsgImapiRawWriteInProgress},
    ResultRow{0xC0AA0601, kMsgImapiRawWriteNotInProgress},
    ResultRow{0xC0AA0602, kMsgImapiRawMediaIsNotPrepared},
    ResultRow{0xC0AA0603, kMsgImapiRawMediaIsPrepared},
    ResultRow{0xC0AA0604, kMsgImapiRawClientName},
    ResultRow{0xC0AA0606, kMsgImapiRawMediaIsNotBlank},
    ResultRow{0xC0AA0607, kMsgImapiRawMediaNotSupported},
    ResultRow{0xC0AA0609, kMsgImapiRawNotEnoughSpace},
    ResultRow{0xC0AA060A, kMsgImapiRawNoRecorderSpecified},
    ResultRow{0xC0AA060D, kMsgImapiRawStreamNotSupported},
    ResultRow{0xC0AA060E, kMsgImapiRawDataBlockTypeNotSupported},
    ResultRow{0xC0AA060F, kMsgImapiRawStreamLeadinTooShort},
    ResultRow{0xC0AA0610, kMsgImapiRawRecorderNotSupported},
    ResultRow{0xC0AA0909, kMsgImapiEraseMediaNotSupported},
    ResultRow{0xC0AA090A, kMsgImapiEraseRecorderNotSupported},
    ResultRow{0xC0AA090B, kMsgImapiEraseClientName},
    ResultRow{0xC0AAB100, kMsgImapiFsiInternalError},
    ResultRow{0xC0AAB101, kMsgImapiFsiInvalidParameter},
    ResultRow{0xC0AAB102, kMsgImapiFsiReadOnly},
    ResultRow{0xC0AAB103, kMsgImapiFsiNoOutput},
    ResultRow{0xC0AAB104, kMsgImapiFsiInvalidVolumeName},
    ResultRow{0xC0AAB105, kMsgImapiFsiInvalidDate},
    ResultRow{0xC0AAB106, kMsgImapiFsiFileSystemNotEmpty},
    ResultRow{0xC0AAB108, kMsgImapiFsiNotFile},
    ResultRow{0xC0AAB109, kMsgImapiFsiNotDirectory},
    ResultRow{0xC0AAB10A, kMsgImapiFsiDirectoryNotEmpty},
    ResultRow{0xC0AAB10B, kMsgImapiFsiNotInFileSystem},
    ResultRow{0xC0AAB110, kMsgImapiFsiInvalidPath},
    ResultRow{0xC0AAB111, kMsgImapiFsiRestrictedNameViolation},
    ResultRow{0xC0AAB112, kMsgImapiFsiDuplicateName},
    ResultRow{0xC0AAB113, kMsgImapiFsiNoUniqueName},
    ResultRow{0xC0AAB118, kMsgImapiFsiItemNotFound},
    ResultRow{0xC0AAB119, kMsgImapiFsiFileNotFound},
    ResultRow{0xC0AAB11A, kMsgImapiFsiDirectoryNotFound},
    ResultRow{0xC0AAB120, kMsgImapiFsiImageSizeLimit},
    ResultRow{0xC0AAB121, kMsgImapiFsiImageTooBig},
    ResultRow{0xC0AAB128, kMsgImapiFsiDataStreamInconsistency},
    ResultRow{0xC0AAB129, kMsgImapiFsiDataStreamReadFailure},
    ResultRow{0xC0AAB12A, kMsgImapiFsiDataStreamCreateFailure},
    ResultRow{0xC0AAB130, kMsgImapiFsiTooManyDirectories},
    ResultRow{0xC0AAB131, kMsgImapiFsiIso9660Levels},
    ResultRow{0xC0AAB132, kMsgImapiFsiDataTooBig},
    ResultRow{0xC0AAB138, kMsgImapiFsiStashOpenFailure},
    ResultRow{0xC0AAB139, kMsgImapiFsiStashSeekFailure},
    ResultRow{0xC0AAB13A, kMsgImapiFsiStashWriteFailure},
    ResultRow{0xC0AAB13B, kMsgImapiFsiStashReadFailure},
    ResultRow{0xC0AAB140, kMsgImapiFsiInvalidWorkingDirectory},
    ResultRow{0xC0AAB141, kMsgImapiFsiWorkingDirectorySpace},
    ResultRow{0xC0AAB142, kMsgImapiFsiStashMove},
    ResultRow{0xC0AAB148, kMsgImapiFsiBootImageData},
    ResultRow{0xC0AAB149, kMsgImapiFsiBootObjectConflict},
    ResultRow{0xC0AAB14A, kMsgImapiFsiBootEmulationMismatch},
    ResultRow{0xC0AAB150, kMsgImapiFsiEmptyDisc},
    ResultRow{0xC0AAB151, kMsgImapiFsiNoSupportedFileSystem},
    ResultRow{0xC0AAB152, kMsgImapiFsiFileSystemNotFound},
    ResultRow{0xC0AAB153, kMsgImapiFsiReadConsistency},
    ResultRow{0xC0AAB154, kMsgImapiFsiFeatureNotSupported},
    ResultRow{0xC0AAB155, kMsgImapiFsiImportFileIsDirectory},
    ResultRow{0xC0AAB156, kMsgImapiFsiImportSeekFailure},
    ResultRow{0xC0AAB157, kMsgImapiFsiImportReadFailure},
    ResultRow{0xC0AAB158, kMsgImapiFsiDiscMismatch},
    ResultRow{0xC0AAB159, kMsgImapiFsiImportMediaNotAllowed},
    ResultRow{0xC0AAB15A, kMsgImapiFsiUdfNotWriteCompatible},
    ResultRow{0xC0AAB15B, kMsgImapiFsiIncompatibleMultisession},
    ResultRow{0xC0AAB15C, kMsgImapiFsiNoCompatibleMultisession},
    ResultRow{0xC0AAB15D, kMsgImapiFsiMultisessionNotSet},
    ResultRow{0xC0AAB15E, kMsgImapiFsiImportDirectoryIsFile},
};
// clang-format on
static_assert(kResults.size() == 127);
static_assert(std::ranges::adjacent_find(kResults, std::ranges::greater_equal{},
                                         &ResultRow::result) == kResults.end(),
              "rows ascend by result, without doubles");

}  // namespace

std::optional<UINT> MessageOfImapiResult(HRESULT hr) {
  const auto result = static_cast<std::uint32_t>(hr);
  const auto* const row = std::ranges::lower_bound(kResults, result, {}, &ResultRow::result);
  if (row == kResults.end() || row->result != result) return std::nullopt;
  return row->message;
}

}  // namespace quillon
