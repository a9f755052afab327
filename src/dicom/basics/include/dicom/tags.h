// The data elements that the code names, by their keywords in the dictionary.
// Made by scripts/make_dictionary.py from data_elements.tsv: change that file instead.
#pragma once

#include "dicom/types.h"

namespace quillon::tags {

inline constexpr DcTag kFileMetaInformationVersion = 0x00020001;
inline constexpr DcTag kMediaStorageSopClassUid = 0x00020002;
inline constexpr DcTag kMediaStorageSopInstanceUid = 0x00020003;
inline constexpr DcTag kTransferSyntaxUid = 0x00020010;
inline constexpr DcTag kImplementationClassUid = 0x00020012;
inline constexpr DcTag kImplementationVersionName = 0x00020013;
inline constexpr DcTag kSourceApplicationEntityTitle = 0x00020016;
inline constexpr DcTag kPrivateInformationCreatorUid = 0x00020100;
inline constexpr DcTag kPrivateInformation = 0x00020102;
inline constexpr DcTag kFileSetId = 0x00041130;
inline constexpr DcTag kFileSetDescriptorFileId = 0x00041141;
inline constexpr DcTag kSpecificCharacterSetOfFileSetDescriptorFile = 0x00041142;
inline constexpr DcTag kFirstRootEntityRecordOffset = 0x00041200;
inline constexpr DcTag kOffsetOfTheLastDirectoryRecordOfTheRootDirectoryEnt = 0x00041202;
inline constexpr DcTag kFileSetConsistencyFlag = 0x00041212;
inline constexpr DcTag kDirectoryRecordSequence = 0x00041220;
inline constexpr DcTag kOffsetOfTheNextDirectoryRecord = 0x00041400;
inline constexpr DcTag kRecordInUseFlag = 0x00041410;
inline constexpr DcTag kOffsetOfReferencedLowerLevelDirectoryEntity = 0x00041420;
inline constexpr DcTag kRecordType = 0x00041430;
inline constexpr DcTag kPrivateRecordUid = 0x00041432;
inline constexpr DcTag kReferencedFileId = 0x00041500;
inline constexpr DcTag kMrdrDirectoryRecordOffset = 0x00041504;
inline constexpr DcTag kReferencedFileClassUid = 0x00041510;
inline constexpr DcTag kReferencedFileInstanceUid = 0x00041511;
inline constexpr DcTag kReferencedFileXferSynUid = 0x00041512;
inline constexpr DcTag kNumberOfReferences = 0x00041600;
inline constexpr DcTag kSpecificCharacterSet = 0x00080005;
inline constexpr DcTag kSopClassUid = 0x00080016;
inline constexpr DcTag kSopInstanceUid = 0x00080018;
inline constexpr DcTag kStudyDate = 0x00080020;
inline constexpr DcTag kSeriesDate = 0x00080021;
inline constexpr DcTag kContentDate = 0x00080023;
inline constexpr DcTag kStudyTime = 0x00080030;
inline constexpr DcTag kContentTime = 0x00080033;
inline constexpr DcTag kAccessionNumber = 0x00080050;
inline constexpr DcTag kModality = 0x00080060;
inline constexpr DcTag kCodeValue = 0x00080100;
inline constexpr DcTag kCodingSchemeDesignator = 0x00080102;
inline constexpr DcTag kCodeMeaning = 0x00080104;
inline constexpr DcTag kStudyDescription = 0x00081030;
inline constexpr DcTag kReferencedSeriesSequence = 0x00081115;
inline constexpr DcTag kPatientsName = 0x00100010;
inline constexpr DcTag kPatientId = 0x00100020;
inline constexpr DcTag kPatientsBirthDate = 0x00100030;
inline constexpr DcTag kPatientsSex = 0x00100040;
inline constexpr DcTag kPatientsAge = 0x00101010;
inline constexpr DcTag kStudyInstanceUid = 0x0020000D;
inline constexpr DcTag kSeriesInstanceUid = 0x0020000E;
inline constexpr DcTag kStudyId = 0x00200010;
inline constexpr DcTag kSeriesNumber = 0x00200011;
inline constexpr DcTag kInstanceNumber = 0x00200013;
inline constexpr DcTag kSamplesPerPixel = 0x00280002;
inline constexpr DcTag kPhotometricInterpretation = 0x00280004;
inline constexpr DcTag kPlanarConfiguration = 0x00280006;
inline constexpr DcTag kNumberOfFrames = 0x00280008;
inline constexpr DcTag kRows = 0x00280010;
inline constexpr DcTag kColumns = 0x00280011;
inline constexpr DcTag kBitsAllocated = 0x00280100;
inline constexpr DcTag kBitsStored = 0x00280101;
inline constexpr DcTag kPixelRepresentation = 0x00280103;
inline constexpr DcTag kPixelPaddingValue = 0x00280120;
inline constexpr DcTag kRelationshipType = 0x0040A010;
inline constexpr DcTag kVerificationDateTime = 0x0040A030;
inline constexpr DcTag kConceptNameCodeSequence = 0x0040A043;
inline constexpr DcTag kVerifyingObserverSequence = 0x0040A073;
inline constexpr DcTag kCompletionFlag = 0x0040A491;
inline constexpr DcTag kVerificationFlag = 0x0040A493;
inline constexpr DcTag kContentSequence = 0x0040A730;
inline constexpr DcTag kContentLabel = 0x00700080;
inline constexpr DcTag kContentDescription = 0x00700081;
inline constexpr DcTag kPresentationCreationDate = 0x00700082;
inline constexpr DcTag kPresentationCreationTime = 0x00700083;
inline constexpr DcTag kContentCreatorsName = 0x00700084;
inline constexpr DcTag kIconImageSequence = 0x00880200;
inline constexpr DcTag kChannelMinimumValue = 0x54000110;
inline constexpr DcTag kChannelMaximumValue = 0x54000112;
inline constexpr DcTag kWaveformBitsAllocated = 0x54001004;
inline constexpr DcTag kWaveformPaddingValue = 0x5400100A;
inline constexpr DcTag kWaveformData = 0x54001010;
inline constexpr DcTag kOverlayBitPosition = 0x60FF0102;
inline constexpr DcTag kPixelData = 0x7FE00010;
inline constexpr DcTag kItem = 0xFFFEE000;
inline constexpr DcTag kItemDelimitationItem = 0xFFFEE00D;
inline constexpr DcTag kSequenceDelimitationItem = 0xFFFEE0DD;

}  // namespace quillon::tags
