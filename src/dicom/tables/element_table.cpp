// Made by scripts/make_dictionary.py from data_elements.tsv: change that file instead.
#include "element_table.h"

namespace quillon {
namespace {

constexpr std::uint8_t vr(DcVr value) { return static_cast<std::uint8_t>(value); }
constexpr std::uint8_t AE = vr(DcVr::AE);
constexpr std::uint8_t AS = vr(DcVr::AS);
constexpr std::uint8_t AT = vr(DcVr::AT);
constexpr std::uint8_t CS = vr(DcVr::CS);
constexpr std::uint8_t DA = vr(DcVr::DA);
constexpr std::uint8_t DS = vr(DcVr::DS);
constexpr std::uint8_t DT = vr(DcVr::DT);
constexpr std::uint8_t FD = vr(DcVr::FD);
constexpr std::uint8_t FL = vr(DcVr::FL);
constexpr std::uint8_t IS = vr(DcVr::IS);
constexpr std::uint8_t LO = vr(DcVr::LO);
constexpr std::uint8_t LT = vr(DcVr::LT);
constexpr std::uint8_t OB = vr(DcVr::OB);
constexpr std::uint8_t OF = vr(DcVr::OF);
constexpr std::uint8_t OW = vr(DcVr::OW);
constexpr std::uint8_t OX = vr(DcVr::OX);
constexpr std::uint8_t PN = vr(DcVr::PN);
constexpr std::uint8_t SH = vr(DcVr::SH);
constexpr std::uint8_t SI = vr(DcVr::SI);
constexpr std::uint8_t SL = vr(DcVr::SL);
constexpr std::uint8_t SQ = vr(DcVr::SQ);
constexpr std::uint8_t SS = vr(DcVr::SS);
constexpr std::uint8_t ST = vr(DcVr::ST);
constexpr std::uint8_t TM = vr(DcVr::TM);
constexpr std::uint8_t UI = vr(DcVr::UI);
constexpr std::uint8_t UL = vr(DcVr::UL);
constexpr std::uint8_t US = vr(DcVr::US);
constexpr std::uint8_t UT = vr(DcVr::UT);
constexpr std::uint8_t XS = vr(DcVr::XS);

}  // namespace

// clang-format off
constexpr std::array<ElementRow, kElementCount> kElementTable{{
    {0x00000000, UL, 1, "commandGroupLength"},
    {0x00000001, UL, 1, "commandLengthToEnd"},
    {0x00000002, UI, 1, "affectedSopClassUid"},
    {0x00000003, UI, 1, "requestedSopClassUid"},
    {0x00000010, CS, 1, "commandRecognitionCode"},
    {0x00000100, US, 1, "commandField"},
    {0x00000110, US, 1, "messageId"},
    {0x00000120, US, 1, "messageIdBeingRespondedTo"},
    {0x00000600, AE, 1, "moveDestination"},
    {0x00000700, US, 1, "priority"},
    {0x00000800, US, 1, "commandDataSetType"},
    {0x00000900, US, 1, "status"},
    {0x00000901, AT, 0, "offendingElement"},
    {0x00000902, LO, 1, "errorComment"},
    {0x00000903, US, 1, "errorId"},
    {0x00001000, UI, 1, "affectedSopInstanceUid"},
    {0x00001001, UI, 1, "requestedSopInstanceUid"},
    {0x00001002, US, 1, "eventTypeId"},
    {0x00001005, AT, 0, "attributeIdentifierList"},
    {0x00001008, US, 1, "actionTypeId"},
    {0x00001020, US, 1, "numberOfRemainingSubOperations"},
    {0x00001021, US, 1, "numberOfCompletedSubOperations"},
    {0x00001022, US, 1, "numberOfFailedSubOperations"},
    {0x00001023, US, 1, "numberOfWarningSubOperations"},
    {0x00001030, AE, 1, "moveOriginatorApplicationEntityTitle"},
    {0x00001031, US, 1, "moveOriginatorMessageId"},
    {0x00020001, OB, 1, "fileMetaInformationVersion"},
    {0x00020002, UI, 1, "mediaStorageSopClassUid"},
    {0x00020003, UI, 1, "mediaStorageSopInstanceUid"},
    {0x00020010, UI, 1, "transferSyntaxUid"},
    {0x00020012, UI, 1, "implementationClassUid"},
    {0x00020013, SH, 1, "implementationVersionName"},
    {0x00020016, AE, 1, "sourceApplicationEntityTitle"},
    {0x00020100, UI, 1, "privateInformationCreatorUid"},
    {0x00020102, OB, 1, "privateInformation"},
    {0x00041130, CS, 1, "fileSetId"},
    {0x00041141, CS, -8, "fileSetDescriptorFileId"},
    {0x00041142, CS, 1, "specificCharacterSetOfFileSetDescriptorFile"},
    {0x00041200, UL, 1, "firstRootEntityRecordOffset"},
    {0x00041202, UL, 1, "offsetOfTheLastDirectoryRecordOfTheRootDirectoryEnt"},
    {0x00041212, US, 1, "fileSetConsistencyFlag"},
    {0x00041220, SQ, 1, "directoryRecordSequence"},
    {0x00041400, UL, 1, "offsetOfTheNextDirectoryRecord"},
    {0x00041410, US, 1, "recordInUseFlag"},
    {0x00041420, UL, 1, "offsetOfReferencedLowerLevelDirectoryEntity"},
    {0x00041430, CS, 1, "recordType"},
    {0x00041432, UI, 1, "privateRecordUid"},
    {0x00041500, CS, -8, "referencedFileId"},
    {0x00041504, UL, 1, "mrdrDirectoryRecordOffset"},
    {0x00041510, UI, 1, "referencedFileClassUid"},
    {0x00041511, UI, 1, "referencedFileInstanceUid"},
    {0x00041512, UI, 1, "referencedFileXferSynUid"},
    {0x0004151A, UI, 0, "referencedRelatedGeneralSopClassUidInFile"},
    {0x00041600, UL, 1, "numberOfReferences"},
    {0x00080001, UL, 1, "lengthToEnd"},
    {0x00080005, CS, 0, "specificCharacterSet"},
    {0x00080008, CS, 0, "imageType"},
    {0x00080010, CS, 1, "recognitionCode"},
    {0x00080012, DA, 1, "instanceCreationDate"},
    {0x00080013, TM, 1, "instanceCreationTime"},
    {0x00080014, UI, 1, "instanceCreatorUid"},
    {0x00080016, UI, 1, "sopClassUid"},
    {0x00080018, UI, 1, "sopInstanceUid"},
    {0x0008001A, UI, 0, "relatedGeneralSopClassUid"},
    {0x0008001B, UI, 1, "originalSpecializedSopClassUid"},
    {0x00080020, DA, 1, "studyDate"},
    {0x00080021, DA, 1, "seriesDate"},
    {0x00080022, DA, 1, "acquisitionDate"},
    {0x00080023, DA, 1, "contentDate"},
    {0x00080024, DA, 1, "overlayDate"},
    {0x00080025, DA, 1, "curveDate"},
    {0x0008002A, DT, 1, "acquisitionDatetime"},
    {0x00080030, TM, 1, "studyTime"},
    {0x00080031, TM, 1, "seriesTime"},
    {0x00080032, TM, 1, "acquisitionTime"},
    {0x00080033, TM, 1, "contentTime"},
    {0x00080034, TM, 1, "overlayTime"},
    {0x00080035, TM, 1, "curveTime"},
    {0x00080040, US, 1, "dataSetType"},
    {0x00080041, LO, 1, "dataSetSubtype"},
    {0x00080042, CS, 1, "nuclearMedicineSeriesType"},
    {0x00080050, SH, 1, "accessionNumber"},
    {0x00080052, CS, 1, "queryRetrieveLevel"},
    {0x00080054, AE, 0, "retrieveAeTitle"},
    {0x00080056, CS, 1, "instanceAvailability"},
    {0x00080058, UI, 0, "failedSopInstanceUidList"},
    {0x00080060, CS, 1, "modality"},
    {0x00080061, CS, 0, "modalitiesInStudy"},
    {0x00080062, UI, 0, "sopClassesInStudy"},
    {0x00080064, CS, 1, "conversionType"},
    {0x00080068, CS, 1, "presentationIntentType"},
    {0x00080070, LO, 1, "manufacturer"},
    {0x00080080, LO, 1, "institutionName"},
    {0x00080081, ST, 1, "institutionAddress"},
    {0x00080082, SQ, 1, "institutionCodeSequence"},
    {0x00080090, PN, 1, "referringPhysiciansName"},
    {0x00080092, ST, 1, "referringPhysiciansAddress"},
    {0x00080094, SH, 0, "referringPhysiciansTelephoneNumbers"},
    {0x00080096, SQ, 1, "referringPhysicianIdentificationSequence"},
    {0x00080100, SH, 1, "codeValue"},
    {0x00080102, SH, 1, "codingSchemeDesignator"},
    {0x00080103, SH, 1, "codingSchemeVersion"},
    {0x00080104, LO, 1, "codeMeaning"},
    {0x00080105, CS, 1, "mappingResource"},
    {0x00080106, DT, 1, "contextGroupVersion"},
    {0x00080107, DT, 1, "contextGroupLocalVersion"},
    {0x0008010B, CS, 1, "contextGroupExtensionFlag"},
    {0x0008010C, UI, 1, "codingSchemeUid"},
    {0x0008010D, UI, 1, "contextGroupExtensionCreatorUid"},
    {0x0008010F, CS, 1, "contextIdentifier"},
    {0x00080110, SQ, 1, "codingSchemeIdentificationSequence"},
    {0x00080112, LO, 1, "codingSchemeRegistry"},
    {0x00080114, ST, 1, "codingSchemeExternalId"},
    {0x00080115, ST, 1, "codingSchemeName"},
    {0x00080116, ST, 1, "codingSchemeResponsibleOrganization"},
    {0x00080201, SH, 1, "timezoneOffsetFromUtc"},
    {0x00081000, AE, 1, "networkId"},
    {0x00081010, SH, 1, "stationName"},
    {0x00081030, LO, 1, "studyDescription"},
    {0x00081032, SQ, 1, "procedureCodeSequence"},
    {0x0008103E, LO, 1, "seriesDescription"},
    {0x00081040, LO, 1, "institutionalDepartmentName"},
    {0x00081048, PN, 0, "physiciansOfRecord"},
    {0x00081049, SQ, 1, "physiciansOfRecordIdentificationSequence"},
    {0x00081050, PN, 0, "performingPhysiciansName"},
    {0x00081052, SQ, 1, "performingPhysicianIdentificationSequence"},
    {0x00081060, PN, 0, "nameOfPhysiciansReadingStudy"},
    {0x00081062, SQ, 1, "physiciansReadingStudyIdentificationSequence"},
    {0x00081070, PN, 0, "operatorsName"},
    {0x00081072, SQ, 1, "operatorIdentificationSequence"},
    {0x00081080, LO, 0, "admittingDiagnosesDescription"},
    {0x00081084, SQ, 1, "admittingDiagnosesCodeSequence"},
    {0x00081090, LO, 1, "manufacturersModelName"},
    {0x00081100, SQ, 1, "referencedResultsSequence"},
    {0x00081110, SQ, 1, "referencedStudySequence"},
    {0x00081111, SQ, 1, "referencedPerformedProcedureStepSequence"},
    {0x00081115, SQ, 1, "referencedSeriesSequence"},
    {0x00081120, SQ, 1, "referencedPatientSequence"},
    {0x00081125, SQ, 1, "referencedVisitSequence"},
    {0x00081130, SQ, 1, "referencedOverlaySequence"},
    {0x0008113A, SQ, 1, "referencedWaveformSequence"},
    {0x00081140, SQ, 1, "referencedImageSequence"},
    {0x00081145, SQ, 1, "referencedCurveSequence"},
    {0x0008114A, SQ, 1, "referencedInstanceSequence"},
    {0x0008114B, SQ, 1, "referencedRealWorldValueMappingInstanceSequence"},
    {0x00081150, UI, 1, "referencedSopClassUid"},
    {0x00081155, UI, 1, "referencedSopInstanceUid"},
    {0x0008115A, UI, 0, "sopClassesSupported"},
    {0x00081160, IS, 0, "referencedFrameNumber"},
    {0x00081195, UI, 1, "transactionUid"},
    {0x00081197, US, 1, "failureReason"},
    {0x00081198, SQ, 1, "failedSopSequence"},
    {0x00081199, SQ, 1, "referencedSopSequence"},
    {0x00081200, SQ, 1, "studiesContainingOtherReferencedInstancesSequence"},
    {0x00081250, SQ, 1, "relatedSeriesSequence"},
    {0x00082110, CS, 1, "lossyImageCompression"},
    {0x00082111, ST, 1, "derivationDescription"},
    {0x00082112, SQ, 1, "sourceImageSequence"},
    {0x00082120, SH, 1, "stageName"},
    {0x00082122, IS, 1, "stageNumber"},
    {0x00082124, IS, 1, "numberOfStages"},
    {0x00082127, SH, 1, "viewName"},
    {0x00082128, IS, 1, "viewNumber"},
    {0x00082129, IS, 1, "numberOfEventTimers"},
    {0x0008212A, IS, 1, "numberOfViewsInStage"},
    {0x00082130, DS, 0, "eventElapsedTimes"},
    {0x00082132, LO, 0, "eventTimerNames"},
    {0x00082142, IS, 1, "startTrim"},
    {0x00082143, IS, 1, "stopTrim"},
    {0x00082144, IS, 1, "recommendedDisplayFrameRate"},
    {0x00082200, CS, 1, "transducerPosition"},
    {0x00082204, CS, 1, "transducerOrientation"},
    {0x00082208, CS, 1, "anatomicStructure"},
    {0x00082218, SQ, 1, "anatomicRegionSequence"},
    {0x00082220, SQ, 1, "anatomicRegionModifierSequence"},
    {0x00082228, SQ, 1, "primaryAnatomicStructureSequence"},
    {0x00082229, SQ, 1, "anatomicStructureSpaceOrRegionSequence"},
    {0x00082230, SQ, 1, "primaryAnatomicStructureModifierSequence"},
    {0x00082240, SQ, 1, "transducerPositionSequence"},
    {0x00082242, SQ, 1, "transducerPositionModifierSequence"},
    {0x00082244, SQ, 1, "transducerOrientationSequence"},
    {0x00082246, SQ, 1, "transducerOrientationModifierSequence"},
    {0x00082251, SQ, 1, "anatomicStructureSpaceOrRegionCodeSequenceTrial"},
    {0x00082253, SQ, 1, "anatomicPortalOfEntranceCodeSequenceTrial"},
    {0x00082255, SQ, 1, "anatomicApproachDirectionCodeSequenceTrial"},
    {0x00082256, ST, 1, "anatomicPerspectiveDescriptionTrial"},
    {0x00082257, SQ, 1, "anatomicPerspectiveCodeSequenceTrial"},
    {0x00082258, ST, 1, "anatomicLocationOfExaminingInstrumentDescriptionTri"},
    {0x00082259, SQ, 1, "anatomicLocationOfExaminingInstrumentCodeSequenceTr"},
    {0x0008225A, SQ, 1, "anatomicStructureSpaceOrRegionModifierCodeSequenceT"},
    {0x0008225C, SQ, 1, "onaxisBackgroundAnatomicStructureCodeSequenceTrial"},
    {0x00083001, SQ, 1, "alternateRepresentationSequence"},
    {0x00083010, UI, 1, "irradiationEventUid"},
    {0x00084000, LT, 1, "identifyingComments"},
    {0x00089007, CS, 4, "frameType"},
    {0x00089092, SQ, 1, "referencedImageEvidenceSequence"},
    {0x00089121, SQ, 1, "referencedRawDataSequence"},
    {0x00089123, UI, 1, "creatorVersionUid"},
    {0x00089124, SQ, 1, "derivationImageSequence"},
    {0x00089154, SQ, 1, "sourceImageEvidenceSequence"},
    {0x00089205, CS, 1, "pixelPresentation"},
    {0x00089206, CS, 1, "volumetricProperties"},
    {0x00089207, CS, 1, "volumeBasedCalculationTechnique"},
    {0x00089208, CS, 1, "complexImageComponent"},
    {0x00089209, CS, 1, "acquisitionContrast"},
    {0x00089215, SQ, 1, "derivationCodeSequence"},
    {0x00089237, SQ, 1, "referencedGrayscalePresentationStateSequence"},
    {0x00089410, SQ, 1, "referencedOtherPlaneSequence"},
    {0x00089458, SQ, 1, "frameDisplaySequence"},
    {0x00089459, FL, 1, "recommendedDisplayFrameRateInFloat"},
    {0x00089460, CS, 1, "skipFrameRangeFlag"},
    {0x00100010, PN, 1, "patientsName"},
    {0x00100020, LO, 1, "patientId"},
    {0x00100021, LO, 1, "issuerOfPatientId"},
    {0x00100022, CS, 1, "typeOfPatientId"},
    {0x00100030, DA, 1, "patientsBirthDate"},
    {0x00100032, TM, 1, "patientsBirthTime"},
    {0x00100040, CS, 1, "patientsSex"},
    {0x00100050, SQ, 1, "patientsInsurancePlanCodeSequence"},
    {0x00100101, SQ, 1, "patientsPrimaryLanguageCodeSequence"},
    {0x00100102, SQ, 1, "patientsPrimaryLanguageCodeModifierSequence"},
    {0x00101000, LO, 0, "otherPatientIds"},
    {0x00101001, PN, 0, "otherPatientNames"},
    {0x00101002, SQ, 1, "otherPatientIdsSequence"},
    {0x00101005, PN, 1, "patientsBirthName"},
    {0x00101010, AS, 1, "patientsAge"},
    {0x00101020, DS, 1, "patientsSize"},
    {0x00101030, DS, 1, "patientsWeight"},
    {0x00101040, LO, 1, "patientsAddress"},
    {0x00101050, LO, 0, "insurancePlanIdentification"},
    {0x00101060, PN, 1, "patientsMothersBirthName"},
    {0x00101080, LO, 1, "militaryRank"},
    {0x00101081, LO, 1, "branchOfService"},
    {0x00101090, LO, 1, "medicalRecordLocator"},
    {0x00102000, LO, 0, "medicalAlerts"},
    {0x00102110, LO, 0, "allergies"},
    {0x00102150, LO, 1, "countryOfResidence"},
    {0x00102152, LO, 1, "regionOfResidence"},
    {0x00102154, SH, 0, "patientsTelephoneNumbers"},
    {0x00102160, SH, 1, "ethnicGroup"},
    {0x00102180, SH, 1, "occupation"},
    {0x001021A0, CS, 1, "smokingStatus"},
    {0x001021B0, LT, 1, "additionalPatientHistory"},
    {0x001021C0, US, 1, "pregnancyStatus"},
    {0x001021D0, DA, 1, "lastMenstrualDate"},
    {0x001021F0, LO, 1, "patientsReligiousPreference"},
    {0x00102201, LO, 1, "patientSpeciesDescription"},
    {0x00102202, SQ, 1, "patientSpeciesCodeSequence"},
    {0x00102203, CS, 1, "patientsSexNeutered"},
    {0x00102292, LO, 1, "patientBreedDescription"},
    {0x00102293, SQ, 1, "patientBreedCodeSequence"},
    {0x00102294, SQ, 1, "breedRegistrationSequence"},
    {0x00102295, LO, 1, "breedRegistrationNumber"},
    {0x00102296, SQ, 1, "breedRegistryCodeSequence"},
    {0x00102297, PN, 1, "responsiblePerson"},
    {0x00102298, CS, 1, "responsiblePersonRole"},
    {0x00102299, LO, 1, "responsibleOrganization"},
    {0x00104000, LT, 1, "patientComments"},
    {0x00109431, FL, 1, "examinedBodyThickness"},
    {0x00120010, LO, 1, "clinicalTrialSponsorName"},
    {0x00120020, LO, 1, "clinicalTrialProtocolId"},
    {0x00120021, LO, 1, "clinicalTrialProtocolName"},
    {0x00120030, LO, 1, "clinicalTrialSiteId"},
    {0x00120031, LO, 1, "clinicalTrialSiteName"},
    {0x00120040, LO, 1, "clinicalTrialSubjectId"},
    {0x00120042, LO, 1, "clinicalTrialSubjectReadingId"},
    {0x00120050, LO, 1, "clinicalTrialTimePointId"},
    {0x00120051, ST, 1, "clinicalTrialTimePointDescription"},
    {0x00120060, LO, 1, "clinicalTrialCoordinatingCenterName"},
    {0x00120062, CS, 1, "patientIdentityRemoved"},
    {0x00120063, LO, 0, "deIdentificationMethod"},
    {0x00120064, SQ, 1, "deIdentificationMethodCodeSequence"},
    {0x00120071, LO, 1, "clinicalTrialSeriesId"},
    {0x00120072, LO, 1, "clinicalTrialSeriesDescription"},
    {0x00180010, LO, 1, "contrastBolusAgent"},
    {0x00180012, SQ, 1, "contrastBolusAgentSequence"},
    {0x00180014, SQ, 1, "contrastBolusAdministrationRouteSequence"},
    {0x00180015, CS, 1, "bodyPartExamined"},
    {0x00180020, CS, 0, "scanningSequence"},
    {0x00180021, CS, 0, "sequenceVariant"},
    {0x00180022, CS, 0, "scanOptions"},
    {0x00180023, CS, 1, "mrAcquisitionType"},
    {0x00180024, SH, 1, "sequenceName"},
    {0x00180025, CS, 1, "angioFlag"},
    {0x00180026, SQ, 1, "interventionDrugInformationSequence"},
    {0x00180027, TM, 1, "interventionDrugStopTime"},
    {0x00180028, DS, 1, "interventionDrugDose"},
    {0x00180029, SQ, 1, "interventionDrugSequence"},
    {0x0018002A, SQ, 1, "additionalDrugSequence"},
    {0x00180030, LO, 0, "radionuclide"},
    {0x00180031, LO, 1, "radiopharmaceutical"},
    {0x00180032, DS, 1, "energyWindowCenterline"},
    {0x00180033, DS, 0, "energyWindowTotalWidth"},
    {0x00180034, LO, 1, "interventionDrugName"},
    {0x00180035, TM, 1, "interventionDrugStartTime"},
    {0x00180036, SQ, 1, "interventionSequence"},
    {0x00180037, CS, 1, "therapyType"},
    {0x00180038, CS, 1, "interventionStatus"},
    {0x00180039, CS, 1, "therapyDescription"},
    {0x0018003A, ST, 1, "interventionDescription"},
    {0x00180040, IS, 1, "cineRate"},
    {0x00180050, DS, 1, "sliceThickness"},
    {0x00180060, DS, 1, "kvp"},
    {0x00180070, IS, 1, "countsAccumulated"},
    {0x00180071, CS, 1, "acquisitionTerminationCondition"},
    {0x00180072, DS, 1, "effectiveDuration"},
    {0x00180073, CS, 1, "acquisitionStartCondition"},
    {0x00180074, IS, 1, "acquisitionStartConditionData"},
    {0x00180075, IS, 1, "acquisitionTerminationConditionData"},
    {0x00180080, DS, 1, "repetitionTime"},
    {0x00180081, DS, 1, "echoTime"},
    {0x00180082, DS, 1, "inversionTime"},
    {0x00180083, DS, 1, "numberOfAverages"},
    {0x00180084, DS, 1, "imagingFrequency"},
    {0x00180085, SH, 1, "imagedNucleus"},
    {0x00180086, IS, 0, "echoNumbers"},
    {0x00180087, DS, 1, "magneticFieldStrength"},
    {0x00180088, DS, 1, "spacingBetweenSlices"},
    {0x00180089, IS, 1, "numberOfPhaseEncodingSteps"},
    {0x00180090, DS, 1, "dataCollectionDiameter"},
    {0x00180091, IS, 1, "echoTrainLength"},
    {0x00180093, DS, 1, "percentSampling"},
    {0x00180094, DS, 1, "percentPhaseFieldOfView"},
    {0x00180095, DS, 1, "pixelBandwidth"},
    {0x00181000, LO, 1, "deviceSerialNumber"},
    {0x00181002, UI, 1, "deviceUid"},
    {0x00181003, LO, 1, "deviceId"},
    {0x00181004, LO, 1, "plateId"},
    {0x00181005, LO, 1, "generatorId"},
    {0x00181006, LO, 1, "gridId"},
    {0x00181007, LO, 1, "cassetteId"},
    {0x00181008, LO, 1, "gantryId"},
    {0x00181010, LO, 1, "secondaryCaptureDeviceId"},
    {0x00181011, LO, 1, "hardcopyCreationDeviceId"},
    {0x00181012, DA, 1, "dateOfSecondaryCapture"},
    {0x00181014, TM, 1, "timeOfSecondaryCapture"},
    {0x00181016, LO, 1, "secondaryCaptureDeviceManufacturers"},
    {0x00181017, LO, 1, "hardcopyDeviceManufacturer"},
    {0x00181018, LO, 1, "secondaryCaptureDeviceManufacturersModelName"},
    {0x00181019, LO, 0, "secondaryCaptureDeviceSoftwareVersions"},
    {0x0018101A, LO, 0, "hardcopyDeviceSoftwareVersion"},
    {0x0018101B, LO, 1, "hardcopyDeviceManufacturersModelName"},
    {0x00181020, LO, 0, "softwareVersions"},
    {0x00181022, SH, 1, "videoImageFormatAcquired"},
    {0x00181023, LO, 1, "digitalImageFormatAcquired"},
    {0x00181030, LO, 1, "protocolName"},
    {0x00181040, LO, 1, "contrastBolusRoute"},
    {0x00181041, DS, 1, "contrastBolusVolume"},
    {0x00181042, TM, 1, "contrastBolusStartTime"},
    {0x00181043, TM, 1, "contrastBolusStopTime"},
    {0x00181044, DS, 1, "contrastBolusTotalDose"},
    {0x00181045, IS, 1, "syringeCounts"},
    {0x00181046, DS, 0, "contrastFlowRate"},
    {0x00181047, DS, 0, "contrastFlowDuration"},
    {0x00181048, CS, 1, "contrastBolusIngredient"},
    {0x00181049, DS, 1, "contrastBolusIngredientConcentration"},
    {0x00181050, DS, 1, "spatialResolution"},
    {0x00181060, DS, 1, "triggerTime"},
    {0x00181061, LO, 1, "triggerSourceOrType"},
    {0x00181062, IS, 1, "nominalInterval"},
    {0x00181063, DS, 1, "frameTime"},
    {0x00181064, LO, 1, "cardiacFramingType"},
    {0x00181065, DS, 0, "frameTimeVector"},
    {0x00181066, DS, 1, "frameDelay"},
    {0x00181067, DS, 1, "imageTriggerDelay"},
    {0x00181068, DS, 1, "multiplexGroupTimeOffset"},
    {0x00181069, DS, 1, "triggerTimeOffset"},
    {0x0018106A, CS, 1, "synchronizationTrigger"},
    {0x0018106C, US, 2, "synchronizationChannel"},
    {0x0018106E, UL, 1, "triggerSamplePosition"},
    {0x00181070, LO, 1, "radiopharmaceuticalRoute"},
    {0x00181071, DS, 1, "radiopharmaceuticalVolume"},
    {0x00181072, TM, 1, "radiopharmaceuticalStartTime"},
    {0x00181073, TM, 1, "radiopharmaceuticalStopTime"},
    {0x00181074, DS, 1, "radionuclideTotalDose"},
    {0x00181075, DS, 1, "radionuclideHalfLife"},
    {0x00181076, DS, 1, "radionuclidePositronFraction"},
    {0x00181077, DS, 1, "radiopharmaceuticalSpecificActivity"},
    {0x00181078, DT, 1, "radiopharmaceuticalStartDatetime"},
    {0x00181079, DT, 1, "radiopharmaceuticalStopDatetime"},
    {0x00181080, CS, 1, "beatRejectionFlag"},
    {0x00181081, IS, 1, "lowRRValue"},
    {0x00181082, IS, 1, "highRRValue"},
    {0x00181083, IS, 1, "intervalsAcquired"},
    {0x00181084, IS, 1, "intervalsRejected"},
    {0x00181085, LO, 1, "pvcRejection"},
    {0x00181086, IS, 1, "skipBeats"},
    {0x00181088, IS, 1, "heartRate"},
    {0x00181090, IS, 1, "cardiacNumberOfImages"},
    {0x00181094, IS, 1, "triggerWindow"},
    {0x00181100, DS, 1, "reconstructionDiameter"},
    {0x00181110, DS, 1, "distanceSourceToDetector"},
    {0x00181111, DS, 1, "distanceSourceToPatient"},
    {0x00181114, DS, 1, "estimatedRadiographicMagnificationFactor"},
    {0x00181120, DS, 1, "gantryDetectorTilt"},
    {0x00181121, DS, 1, "gantryDetectorSlew"},
    {0x00181130, DS, 1, "tableHeight"},
    {0x00181131, DS, 1, "tableTraverse"},
    {0x00181134, CS, 1, "tableMotion"},
    {0x00181135, DS, 0, "tableVerticalIncrement"},
    {0x00181136, DS, 0, "tableLateralIncrement"},
    {0x00181137, DS, 0, "tableLongitudinalIncrement"},
    {0x00181138, DS, 1, "tableAngle"},
    {0x0018113A, CS, 1, "tableType"},
    {0x00181140, CS, 1, "rotationDirection"},
    {0x00181141, DS, 1, "angularPosition"},
    {0x00181142, DS, 0, "radialPosition"},
    {0x00181143, DS, 1, "scanArc"},
    {0x00181144, DS, 1, "angularStep"},
    {0x00181145, DS, 1, "centerOfRotationOffset"},
    {0x00181146, DS, 0, "rotationOffset"},
    {0x00181147, CS, 1, "fieldOfViewShape"},
    {0x00181149, IS, -2, "fieldOfViewDimensions"},
    {0x00181150, IS, 1, "exposureTime"},
    {0x00181151, IS, 1, "xRayTubeCurrent"},
    {0x00181152, IS, 1, "exposure"},
    {0x00181153, IS, 1, "exposureInAs"},
    {0x00181154, DS, 1, "averagePulseWidth"},
    {0x00181155, CS, 1, "radiationSetting"},
    {0x00181156, CS, 1, "rectificationType"},
    {0x0018115A, CS, 1, "radiationMode"},
    {0x0018115E, DS, 1, "imageAndFluoroscopyAreaDoseProduct"},
    {0x00181160, SH, 1, "filterType"},
    {0x00181161, LO, 0, "typeOfFilters"},
    {0x00181162, DS, 1, "intensifierSize"},
    {0x00181164, DS, 2, "imagerPixelSpacing"},
    {0x00181166, CS, 0, "grid"},
    {0x00181170, IS, 1, "generatorPower"},
    {0x00181180, SH, 1, "collimatorGridName"},
    {0x00181181, CS, 1, "collimatorType"},
    {0x00181182, IS, -2, "focalDistance"},
    {0x00181183, DS, -2, "xFocusCenter"},
    {0x00181184, DS, -2, "yFocusCenter"},
    {0x00181190, DS, 0, "focalSpots"},
    {0x00181191, CS, 1, "anodeTargetMaterial"},
    {0x001811A0, DS, 1, "bodyPartThickness"},
    {0x001811A2, DS, 1, "compressionForce"},
    {0x00181200, DA, 0, "dateOfLastCalibration"},
    {0x00181201, TM, 0, "timeOfLastCalibration"},
    {0x00181210, SH, 0, "convolutionKernel"},
    {0x00181240, IS, 0, "upperLowerPixelValues"},
    {0x00181242, IS, 1, "actualFrameDuration"},
    {0x00181243, IS, 1, "countRate"},
    {0x00181244, US, 1, "preferredPlaybackSequencing"},
    {0x00181250, SH, 1, "receiveCoilName"},
    {0x00181251, SH, 1, "transmitCoilName"},
    {0x00181260, SH, 1, "plateType"},
    {0x00181261, LO, 1, "phosphorType"},
    {0x00181300, DS, 1, "scanVelocity"},
    {0x00181301, CS, 0, "wholeBodyTechnique"},
    {0x00181302, IS, 1, "scanLength"},
    {0x00181310, US, 4, "acquisitionMatrix"},
    {0x00181312, CS, 1, "inPlanePhaseEncodingDirection"},
    {0x00181314, DS, 1, "flipAngle"},
    {0x00181315, CS, 1, "variableFlipAngleFlag"},
    {0x00181316, DS, 1, "sar"},
    {0x00181318, DS, 1, "dbDt"},
    {0x00181400, LO, 1, "acquisitionDeviceProcessingDescription"},
    {0x00181401, LO, 1, "acquisitionDeviceProcessingCode"},
    {0x00181402, CS, 1, "cassetteOrientation"},
    {0x00181403, CS, 1, "cassetteSize"},
    {0x00181404, US, 1, "exposuresOnPlate"},
    {0x00181405, IS, 1, "relativeXRayExposure"},
    {0x00181450, DS, 1, "columnAngulation"},
    {0x00181460, DS, 1, "tomoLayerHeight"},
    {0x00181470, DS, 1, "tomoAngle"},
    {0x00181480, DS, 1, "tomoTime"},
    {0x00181490, CS, 1, "tomoType"},
    {0x00181491, CS, 1, "tomoClass"},
    {0x00181495, IS, 1, "numberOfTomosynthesisSourceImages"},
    {0x00181500, CS, 1, "positionerMotion"},
    {0x00181508, CS, 1, "positionerType"},
    {0x00181510, DS, 1, "positionerPrimaryAngle"},
    {0x00181511, DS, 1, "positionerSecondaryAngle"},
    {0x00181520, DS, 0, "positionerPrimaryAngleIncrement"},
    {0x00181521, DS, 0, "positionerSecondaryAngleIncrement"},
    {0x00181530, DS, 1, "detectorPrimaryAngle"},
    {0x00181531, DS, 1, "detectorSecondaryAngle"},
    {0x00181600, CS, -3, "shutterShape"},
    {0x00181602, IS, 1, "shutterLeftVerticalEdge"},
    {0x00181604, IS, 1, "shutterRightVerticalEdge"},
    {0x00181606, IS, 1, "shutterUpperHorizontalEdge"},
    {0x00181608, IS, 1, "shutterLowerHorizontalEdge"},
    {0x00181610, IS, 2, "centerOfCircularShutter"},
    {0x00181612, IS, 1, "radiusOfCircularShutter"},
    {0x00181620, IS, 0, "verticesOfThePolygonalShutter"},
    {0x00181622, US, 1, "shutterPresentationValue"},
    {0x00181623, US, 1, "shutterOverlayGroup"},
    {0x00181624, US, 3, "shutterPresentationColorCielabValue"},
    {0x00181700, CS, -3, "collimatorShape"},
    {0x00181702, IS, 1, "collimatorLeftVerticalEdge"},
    {0x00181704, IS, 1, "collimatorRightVerticalEdge"},
    {0x00181706, IS, 1, "collimatorUpperHorizontalEdge"},
    {0x00181708, IS, 1, "collimatorLowerHorizontalEdge"},
    {0x00181710, IS, 2, "centerOfCircularCollimator"},
    {0x00181712, IS, 1, "radiusOfCircularCollimator"},
    {0x00181720, IS, 0, "verticesOfThePolygonalCollimator"},
    {0x00181800, CS, 1, "acquisitionTimeSynchronized"},
    {0x00181801, SH, 1, "timeSource"},
    {0x00181802, CS, 1, "timeDistributionProtocol"},
    {0x00181803, LO, 1, "ntpSourceAddress"},
    {0x00182001, IS, 0, "pageNumberVector"},
    {0x00182002, SH, 0, "frameLabelVector"},
    {0x00182003, DS, 0, "framePrimaryAngleVector"},
    {0x00182004, DS, 0, "frameSecondaryAngleVector"},
    {0x00182005, DS, 0, "sliceLocationVector"},
    {0x00182006, SH, 0, "displayWindowLabelVector"},
    {0x00182010, DS, 2, "nominalScannedPixelSpacing"},
    {0x00182020, CS, 1, "digitizingDeviceTransportDirection"},
    {0x00182030, DS, 1, "rotationOfScannedFilm"},
    {0x00183100, CS, 1, "ivusAcquisition"},
    {0x00183101, DS, 1, "ivusPullbackRate"},
    {0x00183102, DS, 1, "ivusGatedRate"},
    {0x00183103, IS, 1, "ivusPullbackStartFrameNumber"},
    {0x00183104, IS, 1, "ivusPullbackStopFrameNumber"},
    {0x00183105, IS, 0, "lesionNumber"},
    {0x00184000, LT, 1, "acquisitionComments"},
    {0x00185000, SH, 0, "outputPower"},
    {0x00185010, LO, 3, "transducerData"},
    {0x00185012, DS, 1, "focusDepth"},
    {0x00185020, LO, 1, "processingFunction"},
    {0x00185021, LO, 1, "postprocessingFunction"},
    {0x00185022, DS, 1, "mechanicalIndex"},
    {0x00185024, DS, 1, "boneThermalIndex"},
    {0x00185026, DS, 1, "cranialThermalIndex"},
    {0x00185027, DS, 1, "softTissueThermalIndex"},
    {0x00185028, DS, 1, "softTissueFocusThermalIndex"},
    {0x00185029, DS, 1, "softTissueSurfaceThermalIndex"},
    {0x00185030, DS, 1, "dynamicRange"},
    {0x00185040, DS, 1, "totalGain"},
    {0x00185050, IS, 1, "depthOfScanField"},
    {0x00185100, CS, 1, "patientPosition"},
    {0x00185101, CS, 1, "viewPosition"},
    {0x00185104, SQ, 1, "projectionEponymousNameCodeSequence"},
    {0x00185210, DS, 6, "imageTransformationMatrix"},
    {0x00185212, DS, 3, "imageTranslationVector"},
    {0x00186000, DS, 1, "sensitivity"},
    {0x00186011, SQ, 1, "sequenceOfUltrasoundRegions"},
    {0x00186012, US, 1, "regionSpatialFormat"},
    {0x00186014, US, 1, "regionDataType"},
    {0x00186016, UL, 1, "regionFlags"},
    {0x00186018, UL, 1, "regionLocationMinX0"},
    {0x0018601A, UL, 1, "regionLocationMinY0"},
    {0x0018601C, UL, 1, "regionLocationMaxX1"},
    {0x0018601E, UL, 1, "regionLocationMaxY1"},
    {0x00186020, SL, 1, "referencePixelX0"},
    {0x00186022, SL, 1, "referencePixelY0"},
    {0x00186024, US, 1, "physicalUnitsXDirection"},
    {0x00186026, US, 1, "physicalUnitsYDirection"},
    {0x00186028, FD, 1, "referencePixelPhysicalValueX"},
    {0x0018602A, FD, 1, "referencePixelPhysicalValueY"},
    {0x0018602C, FD, 1, "physicalDeltaX"},
    {0x0018602E, FD, 1, "physicalDeltaY"},
    {0x00186030, UL, 1, "transducerFrequency"},
    {0x00186031, CS, 1, "transducerType"},
    {0x00186032, UL, 1, "pulseRepetitionFrequency"},
    {0x00186034, FD, 1, "dopplerCorrectionAngle"},
    {0x00186036, FD, 1, "steeringAngle"},
    {0x00186038, UL, 1, "dopplerSampleVolumeXPosition"},
    {0x00186039, SL, 1, "dopplerSampleVolumeXPosition"},
    {0x0018603A, UL, 1, "dopplerSampleVolumeYPosition"},
    {0x0018603B, SL, 1, "dopplerSampleVolumeYPosition"},
    {0x0018603C, UL, 1, "tmLinePositionX0"},
    {0x0018603D, SL, 1, "tmLinePositionX0"},
    {0x0018603E, UL, 1, "tmLinePositionY0"},
    {0x0018603F, SL, 1, "tmLinePositionY0"},
    {0x00186040, UL, 1, "tmLinePositionX1"},
    {0x00186041, SL, 1, "tmLinePositionX1"},
    {0x00186042, UL, 1, "tmLinePositionY1"},
    {0x00186043, SL, 1, "tmLinePositionY1"},
    {0x00186044, US, 1, "pixelComponentOrganization"},
    {0x00186046, UL, 1, "pixelComponentMask"},
    {0x00186048, UL, 1, "pixelComponentRangeStart"},
    {0x0018604A, UL, 1, "pixelComponentRangeStop"},
    {0x0018604C, US, 1, "pixelComponentPhysicalUnits"},
    {0x0018604E, US, 1, "pixelComponentDataType"},
    {0x00186050, UL, 1, "numberOfTableBreakPoints"},
    {0x00186052, UL, 0, "tableOfXBreakPoints"},
    {0x00186054, FD, 0, "tableOfYBreakPoints"},
    {0x00186056, UL, 1, "numberOfTableEntries"},
    {0x00186058, UL, 0, "tableOfPixelValues"},
    {0x0018605A, FL, 0, "tableOfParameterValues"},
    {0x00186060, FL, 0, "rWaveTimeVector"},
    {0x00187000, CS, 1, "detectorConditionsNominalFlag"},
    {0x00187001, DS, 1, "detectorTemperature"},
    {0x00187004, CS, 1, "detectorType"},
    {0x00187005, CS, 1, "detectorConfiguration"},
    {0x00187006, LT, 1, "detectorDescription"},
    {0x00187008, LT, 1, "detectorMode"},
    {0x0018700A, SH, 1, "detectorId"},
    {0x0018700C, DA, 1, "dateOfLastDetectorCalibration"},
    {0x0018700E, TM, 1, "timeOfLastDetectorCalibration"},
    {0x00187010, IS, 1, "exposuresOnDetectorSinceLastCalibration"},
    {0x00187011, IS, 1, "exposuresOnDetectorSinceManufactured"},
    {0x00187012, DS, 1, "detectorTimeSinceLastExposure"},
    {0x00187014, DS, 1, "detectorActiveTime"},
    {0x00187016, DS, 1, "detectorActivationOffsetFromExposure"},
    {0x0018701A, DS, 2, "detectorBinning"},
    {0x00187020, DS, 2, "detectorElementPhysicalSize"},
    {0x00187022, DS, 2, "detectorElementSpacing"},
    {0x00187024, CS, 1, "detectorActiveShape"},
    {0x00187026, DS, -2, "detectorActiveDimensions"},
    {0x00187028, DS, 2, "detectorActiveOrigin"},
    {0x0018702A, LO, 1, "detectorManufacturerName"},
    {0x0018702B, LO, 1, "detectorManufacturersModelName"},
    {0x00187030, DS, 2, "fieldOfViewOrigin"},
    {0x00187032, DS, 1, "fieldOfViewRotation"},
    {0x00187034, CS, 1, "fieldOfViewHorizontalFlip"},
    {0x00187040, LT, 1, "gridAbsorbingMaterial"},
    {0x00187041, LT, 1, "gridSpacingMaterial"},
    {0x00187042, DS, 1, "gridThickness"},
    {0x00187044, DS, 1, "gridPitch"},
    {0x00187046, IS, 2, "gridAspectRatio"},
    {0x00187048, DS, 1, "gridPeriod"},
    {0x0018704C, DS, 1, "gridFocalDistance"},
    {0x00187050, CS, 0, "filterMaterial"},
    {0x00187052, DS, 0, "filterThicknessMinimum"},
    {0x00187054, DS, 0, "filterThicknessMaximum"},
    {0x00187060, CS, 1, "exposureControlMode"},
    {0x00187062, LT, 1, "exposureControlModeDescription"},
    {0x00187064, CS, 1, "exposureStatus"},
    {0x00187065, DS, 1, "phototimerSetting"},
    {0x00188150, DS, 1, "exposureTimeInS"},
    {0x00188151, DS, 1, "xRayTubeCurrentInA"},
    {0x00189004, CS, 1, "contentQualification"},
    {0x00189005, SH, 1, "pulseSequenceName"},
    {0x00189006, SQ, 1, "mrImagingModifierSequence"},
    {0x00189008, CS, 1, "echoPulseSequence"},
    {0x00189009, CS, 1, "inversionRecovery"},
    {0x00189010, CS, 1, "flowCompensation"},
    {0x00189011, CS, 1, "multipleSpinEcho"},
    {0x00189012, CS, 1, "multiPlanarExcitation"},
    {0x00189014, CS, 1, "phaseContrast"},
    {0x00189015, CS, 1, "timeOfFlightContrast"},
    {0x00189016, CS, 1, "spoiling"},
    {0x00189017, CS, 1, "steadyStatePulseSequence"},
    {0x00189018, CS, 1, "echoPlanarPulseSequence"},
    {0x00189019, FD, 1, "tagAngleFirstAxis"},
    {0x00189020, CS, 1, "magnetizationTransfer"},
    {0x00189021, CS, 1, "t2Preparation"},
    {0x00189022, CS, 1, "bloodSignalNulling"},
    {0x00189024, CS, 1, "saturationRecovery"},
    {0x00189025, CS, 1, "spectrallySelectedSuppression"},
    {0x00189026, CS, 1, "spectrallySelectedExcitation"},
    {0x00189027, CS, 1, "spatialPreSaturation"},
    {0x00189028, CS, 1, "tagging"},
    {0x00189029, CS, 1, "oversamplingPhase"},
    {0x00189030, FD, 1, "tagSpacingFirstDimension"},
    {0x00189032, CS, 1, "geometryOfKSpaceTraversal"},
    {0x00189033, CS, 1, "segmentedKSpaceTraversal"},
    {0x00189034, CS, 1, "rectilinearPhaseEncodeReordering"},
    {0x00189035, FD, 1, "tagThickness"},
    {0x00189036, CS, 1, "partialFourierDirection"},
    {0x00189037, CS, 1, "cardiacSynchronizationTechnique"},
    {0x00189041, LO, 1, "receiveCoilManufacturerName"},
    {0x00189042, SQ, 1, "mrReceiveCoilSequence"},
    {0x00189043, CS, 1, "receiveCoilType"},
    {0x00189044, CS, 1, "quadratureReceiveCoil"},
    {0x00189045, SQ, 1, "multiCoilDefinitionSequence"},
    {0x00189046, LO, 1, "multiCoilConfiguration"},
    {0x00189047, SH, 1, "multiCoilElementName"},
    {0x00189048, CS, 1, "multiCoilElementUsed"},
    {0x00189049, SQ, 1, "mrTransmitCoilSequence"},
    {0x00189050, LO, 1, "transmitCoilManufacturerName"},
    {0x00189051, CS, 1, "transmitCoilType"},
    {0x00189052, FD, -2, "spectralWidth"},
    {0x00189053, FD, -2, "chemicalShiftReference"},
    {0x00189054, CS, 1, "volumeLocalizationTechnique"},
    {0x00189058, US, 1, "mrAcquisitionFrequencyEncodingSteps"},
    {0x00189059, CS, 1, "deCoupling"},
    {0x00189060, CS, -2, "deCoupledNucleus"},
    {0x00189061, FD, -2, "deCouplingFrequency"},
    {0x00189062, CS, 1, "deCouplingMethod"},
    {0x00189063, FD, -2, "deCouplingChemicalShiftReference"},
    {0x00189064, CS, 1, "kSpaceFiltering"},
    {0x00189065, CS, -2, "timeDomainFiltering"},
    {0x00189066, US, -2, "numberOfZeroFills"},
    {0x00189067, CS, 1, "baselineCorrection"},
    {0x00189069, FD, 1, "parallelReductionFactorInPlane"},
    {0x00189070, FD, 1, "cardiacRRIntervalSpecified"},
    {0x00189073, FD, 1, "acquisitionDuration"},
    {0x00189074, DT, 1, "frameAcquisitionDatetime"},
    {0x00189075, CS, 1, "diffusionDirectionality"},
    {0x00189076, SQ, 1, "diffusionGradientDirectionSequence"},
    {0x00189077, CS, 1, "parallelAcquisition"},
    {0x00189078, CS, 1, "parallelAcquisitionTechnique"},
    {0x00189079, FD, 0, "inversionTimes"},
    {0x00189080, ST, 1, "metaboliteMapDescription"},
    {0x00189081, CS, 1, "partialFourier"},
    {0x00189082, FD, 1, "effectiveEchoTime"},
    {0x00189083, SQ, 1, "metaboliteMapCodeSequence"},
    {0x00189084, SQ, 1, "chemicalShiftSequence"},
    {0x00189085, CS, 1, "cardiacSignalSource"},
    {0x00189087, FD, 1, "diffusionBValue"},
    {0x00189089, FD, 3, "diffusionGradientOrientation"},
    {0x00189090, FD, 3, "velocityEncodingDirection"},
    {0x00189091, FD, 1, "velocityEncodingMinimumValue"},
    {0x00189093, US, 1, "numberOfKSpaceTrajectories"},
    {0x00189094, CS, 1, "coverageOfKSpace"},
    {0x00189095, UL, 1, "spectroscopyAcquisitionPhaseRows"},
    {0x00189096, FD, 1, "parallelReductionFactorInPlane"},
    {0x00189098, FD, -2, "transmitterFrequency"},
    {0x00189100, CS, -2, "resonantNucleus"},
    {0x00189101, CS, 1, "frequencyCorrection"},
    {0x00189103, SQ, 1, "mrSpectroscopyFovGeometrySequence"},
    {0x00189104, FD, 1, "slabThickness"},
    {0x00189105, FD, 3, "slabOrientation"},
    {0x00189106, FD, 3, "midSlabPosition"},
    {0x00189107, SQ, 1, "mrSpatialSaturationSequence"},
    {0x00189112, SQ, 1, "mrTimingAndRelatedParametersSequence"},
    {0x00189114, SQ, 1, "mrEchoSequence"},
    {0x00189115, SQ, 1, "mrModifierSequence"},
    {0x00189117, SQ, 1, "mrDiffusionSequence"},
    {0x00189118, SQ, 1, "cardiacSynchronizationSequence"},
    {0x00189119, SQ, 1, "mrAveragesSequence"},
    {0x00189125, SQ, 1, "mrFovGeometrySequence"},
    {0x00189126, SQ, 1, "volumeLocalizationSequence"},
    {0x00189127, UL, 1, "spectroscopyAcquisitionDataColumns"},
    {0x00189147, CS, 1, "diffusionAnisotropyType"},
    {0x00189151, DT, 1, "frameReferenceDatetime"},
    {0x00189152, SQ, 1, "mrMetaboliteMapSequence"},
    {0x00189155, FD, 1, "parallelReductionFactorOutOfPlane"},
    {0x00189159, UL, 1, "spectroscopyAcquisitionOutOfPlanePhaseSteps"},
    {0x00189166, CS, 1, "bulkMotionStatus"},
    {0x00189168, FD, 1, "parallelReductionFactorSecondInPlane"},
    {0x00189169, CS, 1, "cardiacBeatRejectionTechnique"},
    {0x00189170, CS, 1, "respiratoryMotionCompensationTechnique"},
    {0x00189171, CS, 1, "respiratorySignalSource"},
    {0x00189172, CS, 1, "bulkMotionCompensationTechnique"},
    {0x00189173, CS, 1, "bulkMotionSignalSource"},
    {0x00189174, CS, 1, "applicableSafetyStandardAgency"},
    {0x00189175, LO, 1, "applicableSafetyStandardDescription"},
    {0x00189176, SQ, 1, "operatingModeSequence"},
    {0x00189177, CS, 1, "operatingModeType"},
    {0x00189178, CS, 1, "operatingMode"},
    {0x00189179, CS, 1, "specificAbsorptionRateDefinition"},
    {0x00189180, CS, 1, "gradientOutputType"},
    {0x00189181, FD, 1, "specificAbsorptionRateValue"},
    {0x00189182, FD, 1, "gradientOutput"},
    {0x00189183, CS, 1, "flowCompensationDirection"},
    {0x00189184, FD, 1, "taggingDelay"},
    {0x00189185, ST, 1, "respiratoryMotionCompensationTechniqueDescription"},
    {0x00189186, SH, 1, "respiratorySignalSourceId"},
    {0x00189195, FD, 1, "chemicalShiftsMinimumIntegrationLimitInHz"},
    {0x00189196, FD, 1, "chemicalShiftsMaximumIntegrationLimitInHz"},
    {0x00189197, SQ, 1, "mrVelocityEncodingSequence"},
    {0x00189198, CS, 1, "firstOrderPhaseCorrection"},
    {0x00189199, CS, 1, "waterReferencedPhaseCorrection"},
    {0x00189200, CS, 1, "mrSpectroscopyAcquisitionType"},
    {0x00189214, CS, 1, "respiratoryCyclePosition"},
    {0x00189217, FD, 1, "velocityEncodingMaximumValue"},
    {0x00189218, FD, 1, "tagSpacingSecondDimension"},
    {0x00189219, SS, 1, "tagAngleSecondAxis"},
    {0x00189220, FD, 1, "frameAcquisitionDuration"},
    {0x00189226, SQ, 1, "mrImageFrameTypeSequence"},
    {0x00189227, SQ, 1, "mrSpectroscopyFrameTypeSequence"},
    {0x00189231, US, 1, "mrAcquisitionPhaseEncodingStepsInPlane"},
    {0x00189232, US, 1, "mrAcquisitionPhaseEncodingStepsOutOfPlane"},
    {0x00189234, UL, 1, "spectroscopyAcquisitionPhaseColumns"},
    {0x00189236, CS, 1, "cardiacCyclePosition"},
    {0x00189239, SQ, 1, "specificAbsorptionRateSequence"},
    {0x00189240, US, 1, "rfEchoTrainLength"},
    {0x00189241, US, 1, "gradientEchoTrainLength"},
    {0x00189295, FD, 1, "chemicalShiftsMinimumIntegrationLimitInPpm"},
    {0x00189296, FD, 1, "chemicalShiftsMaximumIntegrationLimitInPpm"},
    {0x00189301, SQ, 1, "ctAcquisitionTypeSequence"},
    {0x00189302, CS, 1, "acquisitionType"},
    {0x00189303, FD, 1, "tubeAngle"},
    {0x00189304, SQ, 1, "ctAcquisitionDetailsSequence"},
    {0x00189305, FD, 1, "revolutionTime"},
    {0x00189306, FD, 1, "singleCollimationWidth"},
    {0x00189307, FD, 1, "totalCollimationWidth"},
    {0x00189308, SQ, 1, "ctTableDynamicsSequence"},
    {0x00189309, FD, 1, "tableSpeed"},
    {0x00189310, FD, 1, "tableFeedPerRotation"},
    {0x00189311, FD, 1, "spiralPitchFactor"},
    {0x00189312, SQ, 1, "ctGeometrySequence"},
    {0x00189313, FD, 3, "dataCollectionCenterPatient"},
    {0x00189314, SQ, 1, "ctReconstructionSequence"},
    {0x00189315, CS, 1, "reconstructionAlgorithm"},
    {0x00189316, CS, 1, "convolutionKernelGroup"},
    {0x00189317, FD, 2, "reconstructionFieldOfView"},
    {0x00189318, FD, 3, "reconstructionTargetCenterPatient"},
    {0x00189319, FD, 1, "reconstructionAngle"},
    {0x00189320, SH, 1, "imageFilter"},
    {0x00189321, SQ, 1, "ctExposureSequence"},
    {0x00189322, FD, 2, "reconstructionPixelSpacing"},
    {0x00189323, CS, 1, "exposureModulationType"},
    {0x00189324, FD, 1, "estimatedDoseSaving"},
    {0x00189325, SQ, 1, "ctXRayDetailsSequence"},
    {0x00189326, SQ, 1, "ctPositionSequence"},
    {0x00189327, FD, 1, "tablePosition"},
    {0x00189328, FD, 1, "exposureTimeInMs"},
    {0x00189329, SQ, 1, "ctImageFrameTypeSequence"},
    {0x00189330, FD, 1, "xRayTubeCurrentInMa"},
    {0x00189332, FD, 1, "exposureInMas"},
    {0x00189333, CS, 1, "constantVolumeFlag"},
    {0x00189334, CS, 1, "fluoroscopyFlag"},
    {0x00189335, FD, 1, "distanceSourceToDataCollectionCenter"},
    {0x00189337, US, 1, "contrastBolusAgentNumber"},
    {0x00189338, SQ, 1, "contrastBolusIngredientCodeSequence"},
    {0x00189340, SQ, 1, "contrastAdministrationProfileSequence"},
    {0x00189341, SQ, 1, "contrastBolusUsageSequence"},
    {0x00189342, CS, 1, "contrastBolusAgentAdministered"},
    {0x00189343, CS, 1, "contrastBolusAgentDetected"},
    {0x00189344, CS, 1, "contrastBolusAgentPhase"},
    {0x00189345, FD, 1, "ctdivol"},
    {0x00189346, SQ, 1, "ctdiPhantomTypeCodeSequence"},
    {0x00189351, FL, 1, "calciumScoringMassFactorPatient"},
    {0x00189352, FL, 3, "calciumScoringMassFactorDevice"},
    {0x00189360, SQ, 1, "ctAdditionalXRaySourceSequence"},
    {0x00189401, SQ, 1, "projectionPixelCalibrationSequence"},
    {0x00189402, FL, 1, "distanceSourceToIsocenter"},
    {0x00189403, FL, 1, "distanceObjectToTableTop"},
    {0x00189404, FL, 2, "objectPixelSpacingInCenterOfBeam"},
    {0x00189405, SQ, 1, "positionerPositionSequence"},
    {0x00189406, SQ, 1, "tablePositionSequence"},
    {0x00189407, SQ, 1, "collimatorShapeSequence"},
    {0x00189412, SQ, 1, "xaXrfFrameCharacteristicsSequence"},
    {0x00189417, SQ, 1, "frameAcquisitionSequence"},
    {0x00189420, CS, 1, "xRayReceptorType"},
    {0x00189423, LO, 1, "acquisitionProtocolName"},
    {0x00189424, LT, 1, "acquisitionProtocolDescription"},
    {0x00189425, CS, 1, "contrastBolusIngredientOpaque"},
    {0x00189426, FL, 1, "distanceReceptorPlaneToDetectorHousing"},
    {0x00189427, CS, 1, "intensifierActiveShape"},
    {0x00189428, FL, -2, "intensifierActiveDimensions"},
    {0x00189429, FL, 2, "physicalDetectorSize"},
    {0x00189430, US, 2, "positionOfIsocenterProjection"},
    {0x00189432, SQ, 1, "fieldOfViewSequence"},
    {0x00189433, LO, 1, "fieldOfViewDescription"},
    {0x00189434, SQ, 1, "exposureControlSensingRegionsSequence"},
    {0x00189435, CS, 1, "exposureControlSensingRegionShape"},
    {0x00189436, SS, 1, "exposureControlSensingRegionLeftVerticalEdge"},
    {0x00189437, SS, 1, "exposureControlSensingRegionRightVerticalEdge"},
    {0x00189438, SS, 1, "exposureControlSensingRegionUpperHorizontalEdge"},
    {0x00189439, SS, 1, "exposureControlSensingRegionLowerHorizontalEdge"},
    {0x00189440, SS, 2, "centerOfCircularExposureControlSensingRegion"},
    {0x00189441, US, 1, "radiusOfCircularExposureControlSensingRegion"},
    {0x00189442, SS, 0, "verticesOfThePolygonalExposureControlSensingRegion"},
    {0x00189447, FL, 1, "columnAngulationPatient"},
    {0x00189449, FL, 1, "beamAngle"},
    {0x00189451, SQ, 1, "frameDetectorParametersSequence"},
    {0x00189452, FL, 1, "calculatedAnatomyThickness"},
    {0x00189455, SQ, 1, "calibrationSequence"},
    {0x00189456, SQ, 1, "objectThicknessSequence"},
    {0x00189457, CS, 1, "planeIdentification"},
    {0x00189461, FL, -2, "fieldOfViewDimensionsInFloat"},
    {0x00189462, SQ, 1, "isocenterReferenceSystemSequence"},
    {0x00189463, FL, 1, "positionerIsocenterPrimaryAngle"},
    {0x00189464, FL, 1, "positionerIsocenterSecondaryAngle"},
    {0x00189465, FL, 1, "positionerIsocenterDetectorRotationAngle"},
    {0x00189466, FL, 1, "tableXPositionToIsocenter"},
    {0x00189467, FL, 1, "tableYPositionToIsocenter"},
    {0x00189468, FL, 1, "tableZPositionToIsocenter"},
    {0x00189469, FL, 1, "tableHorizontalRotationAngle"},
    {0x00189470, FL, 1, "tableHeadTiltAngle"},
    {0x00189471, FL, 1, "tableCradleTiltAngle"},
    {0x00189472, SQ, 1, "frameDisplayShutterSequence"},
    {0x00189473, FL, 1, "acquiredImageAreaDoseProduct"},
    {0x00189474, CS, 1, "cArmPositionerTabletopRelationship"},
    {0x00189476, SQ, 1, "xRayGeometrySequence"},
    {0x00189477, SQ, 1, "irradiationEventIdentificationSequence"},
    {0x00189504, SQ, 1, "xRay3dFrameTypeSequence"},
    {0x00189506, SQ, 1, "contributingSourcesSequence"},
    {0x00189507, SQ, 1, "xRay3dAcquisitionSequence"},
    {0x00189508, FL, 1, "primaryPositionerScanArc"},
    {0x00189509, FL, 1, "secondaryPositionerScanArc"},
    {0x00189510, FL, 1, "primaryPositionerScanStartAngle"},
    {0x00189511, FL, 1, "secondaryPositionerScanStartAngle"},
    {0x00189514, FL, 1, "primaryPositionerIncrement"},
    {0x00189515, FL, 1, "secondaryPositionerIncrement"},
    {0x00189516, DT, 1, "startAcquisitionDatetime"},
    {0x00189517, DT, 1, "endAcquisitionDatetime"},
    {0x00189524, LO, 1, "applicationName"},
    {0x00189525, LO, 1, "applicationVersion"},
    {0x00189526, LO, 1, "applicationManufacturer"},
    {0x00189527, CS, 1, "algorithmType"},
    {0x00189528, LO, 1, "algorithmDescription"},
    {0x00189530, SQ, 1, "xRay3dReconstructionSequence"},
    {0x00189531, LO, 1, "reconstructionDescription"},
    {0x00189538, SQ, 1, "perProjectionAcquisitionSequence"},
    {0x00189601, SQ, 1, "diffusionBMatrixSequence"},
    {0x00189602, FD, 1, "diffusionBValueXx"},
    {0x00189603, FD, 1, "diffusionBValueXy"},
    {0x00189604, FD, 1, "diffusionBValueXz"},
    {0x00189605, FD, 1, "diffusionBValueYy"},
    {0x00189606, FD, 1, "diffusionBValueYz"},
    {0x00189607, FD, 1, "diffusionBValueZz"},
    {0x0018A001, SQ, 1, "contributingEquipmentSequence"},
    {0x0018A002, DT, 1, "contributionDateTime"},
    {0x0018A003, ST, 1, "contributionDescription"},
    {0x0020000D, UI, 1, "studyInstanceUid"},
    {0x0020000E, UI, 1, "seriesInstanceUid"},
    {0x00200010, SH, 1, "studyId"},
    {0x00200011, IS, 1, "seriesNumber"},
    {0x00200012, IS, 1, "acquisitionNumber"},
    {0x00200013, IS, 1, "instanceNumber"},
    {0x00200014, IS, 1, "isotopeNumber"},
    {0x00200015, IS, 1, "phaseNumber"},
    {0x00200016, IS, 1, "intervalNumber"},
    {0x00200017, IS, 1, "timeSlotNumber"},
    {0x00200018, IS, 1, "angleNumber"},
    {0x00200019, IS, 1, "itemNumber"},
    {0x00200020, CS, 2, "patientOrientation"},
    {0x00200022, IS, 1, "overlayNumber"},
    {0x00200024, IS, 1, "curveNumber"},
    {0x00200026, IS, 1, "lookupTableNumber"},
    {0x00200030, DS, 3, "imagePosition"},
    {0x00200032, DS, 3, "imagePositionPatient"},
    {0x00200035, DS, 6, "imageOrientation"},
    {0x00200037, DS, 6, "imageOrientationPatient"},
    {0x00200050, DS, 1, "location"},
    {0x00200052, UI, 1, "frameOfReferenceUid"},
    {0x00200060, CS, 1, "laterality"},
    {0x00200062, CS, 1, "imageLaterality"},
    {0x00200070, LO, 1, "imageGeometryType"},
    {0x00200080, CS, 0, "maskingImage"},
    {0x00200100, IS, 1, "temporalPositionIdentifier"},
    {0x00200105, IS, 1, "numberOfTemporalPositions"},
    {0x00200110, DS, 1, "temporalResolution"},
    {0x00200200, UI, 1, "synchronizationFrameOfReferenceUid"},
    {0x00201000, IS, 1, "seriesInStudy"},
    {0x00201001, IS, 1, "acquisitionsInSeries"},
    {0x00201002, IS, 1, "imagesInAcquisition"},
    {0x00201003, IS, 1, "imagesInSeries"},
    {0x00201004, IS, 1, "acquisitionsInStudy"},
    {0x00201005, IS, 1, "imagesInStudy"},
    {0x00201020, CS, 0, "reference"},
    {0x00201040, LO, 1, "positionReferenceIndicator"},
    {0x00201041, DS, 1, "sliceLocation"},
    {0x00201070, IS, 0, "otherStudyNumbers"},
    {0x00201200, IS, 1, "numberOfPatientRelatedStudies"},
    {0x00201202, IS, 1, "numberOfPatientRelatedSeries"},
    {0x00201204, IS, 1, "numberOfPatientRelatedInstances"},
    {0x00201206, IS, 1, "numberOfStudyRelatedSeries"},
    {0x00201208, IS, 1, "numberOfStudyRelatedInstances"},
    {0x00201209, IS, 1, "numberOfSeriesRelatedInstances"},
    {0x00203401, CS, 1, "modifyingDeviceId"},
    {0x00203402, CS, 1, "modifiedImageId"},
    {0x00203403, DA, 1, "modifiedImageDate"},
    {0x00203404, LO, 1, "modifyingDeviceManufacturer"},
    {0x00203405, TM, 1, "modifiedImageTime"},
    {0x00203406, LO, 1, "modifiedImageDescription"},
    {0x00204000, LT, 1, "imageComments"},
    {0x00205000, AT, 0, "originalImageIdentification"},
    {0x00205002, CS, 0, "originalImageIdentificationNomenclature"},
    {0x00209056, SH, 1, "stackId"},
    {0x00209057, UL, 1, "inStackPositionNumber"},
    {0x00209071, SQ, 1, "frameAnatomySequence"},
    {0x00209072, CS, 1, "frameLaterality"},
    {0x00209111, SQ, 1, "frameContentSequence"},
    {0x00209113, SQ, 1, "planePositionSequence"},
    {0x00209116, SQ, 1, "planeOrientationSequence"},
    {0x00209128, UL, 1, "temporalPositionIndex"},
    {0x00209153, FD, 1, "nominalCardiacTriggerDelayTime"},
    {0x00209156, US, 1, "frameAcquisitionNumber"},
    {0x00209157, UL, 0, "dimensionIndexValues"},
    {0x00209158, LT, 1, "frameComments"},
    {0x00209161, UI, 1, "concatenationUid"},
    {0x00209162, US, 1, "inConcatenationNumber"},
    {0x00209163, US, 1, "inConcatenationTotalNumber"},
    {0x00209164, UI, 1, "dimensionOrganizationUid"},
    {0x00209165, AT, 1, "dimensionIndexPointer"},
    {0x00209167, AT, 1, "functionalGroupPointer"},
    {0x00209213, LO, 1, "dimensionIndexPrivateCreator"},
    {0x00209221, SQ, 1, "dimensionOrganizationSequence"},
    {0x00209222, SQ, 1, "dimensionIndexSequence"},
    {0x00209228, UL, 1, "concatenationFrameOffsetNumber"},
    {0x00209238, LO, 1, "functionalGroupPrivateCreator"},
    {0x00209241, FL, 1, "nominalPercentageOfCardiacPhase"},
    {0x00209245, FL, 1, "nominalPercentageOfRespiratoryPhase"},
    {0x00209246, FL, 1, "startingRespiratoryAmplitude"},
    {0x00209247, CS, 1, "startingRespiratoryPhase"},
    {0x00209248, FL, 1, "endingRespiratoryAmplitude"},
    {0x00209249, CS, 1, "endingRespiratoryPhase"},
    {0x00209250, CS, 1, "respiratoryTriggerType"},
    {0x00209251, FD, 1, "rRIntervalTimeNominal"},
    {0x00209252, FD, 1, "actualCardiacTriggerDelayTime"},
    {0x00209253, SQ, 1, "respiratorySynchronizationSequence"},
    {0x00209254, FD, 1, "respiratoryIntervalTime"},
    {0x00209255, FD, 1, "nominalRespiratoryTriggerDelayTime"},
    {0x00209256, FD, 1, "respiratoryTriggerDelayThreshold"},
    {0x00209257, FD, 1, "actualRespiratoryTriggerDelayTime"},
    {0x00209421, LO, 1, "dimensionDescriptionLabel"},
    {0x00209450, SQ, 1, "patientOrientationInFrameSequence"},
    {0x00209453, LO, 1, "frameLabel"},
    {0x00209518, US, 0, "acquisitionIndex"},
    {0x00209529, SQ, 1, "contributingSopInstancesReferenceSequence"},
    {0x00209536, US, 1, "reconstructionIndex"},
    {0x00220001, US, 1, "lightPathFilterPassThroughWavelength"},
    {0x00220002, US, 2, "lightPathFilterPassBand"},
    {0x00220003, US, 1, "imagePathFilterPassThroughWavelength"},
    {0x00220004, US, 2, "imagePathFilterPassBand"},
    {0x00220005, CS, 1, "patientEyeMovementCommanded"},
    {0x00220006, SQ, 1, "patientEyeMovementCommandCodeSequence"},
    {0x00220007, FL, 1, "sphericalLensPower"},
    {0x00220008, FL, 1, "cylinderLensPower"},
    {0x00220009, FL, 1, "cylinderAxis"},
    {0x0022000A, FL, 1, "emmetropicMagnification"},
    {0x0022000B, FL, 1, "intraOcularPressure"},
    {0x0022000C, FL, 1, "horizontalFieldOfView"},
    {0x0022000D, CS, 1, "pupilDilated"},
    {0x0022000E, FL, 1, "degreeOfDilation"},
    {0x00220010, FL, 1, "stereoBaselineAngle"},
    {0x00220011, FL, 1, "stereoBaselineDisplacement"},
    {0x00220012, FL, 1, "stereoHorizontalPixelOffset"},
    {0x00220013, FL, 1, "stereoVerticalPixelOffset"},
    {0x00220014, FL, 1, "stereoRotation"},
    {0x00220015, SQ, 1, "acquisitionDeviceTypeCodeSequence"},
    {0x00220016, SQ, 1, "illuminationTypeCodeSequence"},
    {0x00220017, SQ, 1, "lightPathFilterTypeStackCodeSequence"},
    {0x00220018, SQ, 1, "imagePathFilterTypeStackCodeSequence"},
    {0x00220019, SQ, 1, "lensesCodeSequence"},
    {0x0022001A, SQ, 1, "channelDescriptionCodeSequence"},
    {0x0022001B, SQ, 1, "refractiveStateSequence"},
    {0x0022001C, SQ, 1, "mydriaticAgentCodeSequence"},
    {0x0022001D, SQ, 1, "relativeImagePositionCodeSequence"},
    {0x00220020, SQ, 1, "stereoPairsSequence"},
    {0x00220021, SQ, 1, "leftImageSequence"},
    {0x00220022, SQ, 1, "rightImageSequence"},
    {0x00220030, FL, 1, "axialLengthOfTheEye"},
    {0x00220031, SQ, 1, "ophthalmicFrameLocationSequence"},
    {0x00220032, FL, 0, "referenceCoordinates"},
    {0x00220035, FL, 1, "depthSpatialResolution"},
    {0x00220036, FL, 1, "maximumDepthDistortion"},
    {0x00220037, FL, 1, "alongScanSpatialResolution"},
    {0x00220038, FL, 1, "maximumAlongScanDistortion"},
    {0x00220039, CS, 1, "ophthalmicImageOrientation"},
    {0x00220041, FL, 1, "depthOfTransverseImage"},
    {0x00220042, SQ, 1, "mydriaticAgentConcentrationUnitsSequence"},
    {0x00220048, FL, 1, "acrossScanSpatialResolution"},
    {0x00220049, FL, 1, "maximumAcrossScanDistortion"},
    {0x0022004E, DS, 1, "mydriaticAgentConcentration"},
    {0x00220055, FL, 1, "illuminationWaveLength"},
    {0x00220056, FL, 1, "illuminationPower"},
    {0x00220057, FL, 1, "illuminationBandwidth"},
    {0x00220058, SQ, 1, "mydriaticAgentSequence"},
    {0x00280002, US, 1, "samplesPerPixel"},
    {0x00280003, US, 1, "samplesPerPixelUsed"},
    {0x00280004, CS, 1, "photometricInterpretation"},
    {0x00280005, US, 1, "imageDimensions"},
    {0x00280006, US, 1, "planarConfiguration"},
    {0x00280008, IS, 1, "numberOfFrames"},
    {0x00280009, AT, 0, "frameIncrementPointer"},
    {0x0028000A, AT, 0, "frameDimensionPointer"},
    {0x00280010, US, 1, "rows"},
    {0x00280011, US, 1, "columns"},
    {0x00280012, US, 1, "planes"},
    {0x00280014, US, 1, "ultrasoundColorDataPresent"},
    {0x00280030, DS, 2, "pixelSpacing"},
    {0x00280031, DS, 2, "zoomFactor"},
    {0x00280032, DS, 2, "zoomCenter"},
    {0x00280034, IS, 2, "pixelAspectRatio"},
    {0x00280040, CS, 1, "imageFormat"},
    {0x00280050, LO, 0, "manipulatedImage"},
    {0x00280051, CS, 0, "correctedImage"},
    {0x00280060, CS, 1, "compressionCode"},
    {0x00280100, US, 1, "bitsAllocated"},
    {0x00280101, US, 1, "bitsStored"},
    {0x00280102, US, 1, "highBit"},
    {0x00280103, US, 1, "pixelRepresentation"},
    {0x00280104, XS, 1, "smallestValidPixelValue"},
    {0x00280105, XS, 1, "largestValidPixelValue"},
    {0x00280106, XS, 1, "smallestImagePixelValue"},
    {0x00280107, XS, 1, "largestImagePixelValue"},
    {0x00280108, XS, 1, "smallestPixelValueInSeries"},
    {0x00280109, XS, 1, "largestPixelValueInSeries"},
    {0x00280110, XS, 1, "smallestImagePixelValueInPlane"},
    {0x00280111, XS, 1, "largestImagePixelValueInPlane"},
    {0x00280120, XS, 1, "pixelPaddingValue"},
    {0x00280121, XS, 1, "pixelPaddingRangeLimit"},
    {0x00280200, US, 1, "imageLocation"},
    {0x00280300, CS, 1, "qualityControlImage"},
    {0x00280301, CS, 1, "burnedInAnnotation"},
    {0x00280402, US, 1, "numberOfTransformSteps"},
    {0x00280404, AT, 0, "detailsOfCoefficients"},
    {0x00280A02, CS, 1, "pixelSpacingCalibrationType"},
    {0x00280A04, LO, 1, "pixelSpacingCalibrationDescription"},
    {0x00281040, CS, 1, "pixelIntensityRelationship"},
    {0x00281041, SS, 1, "pixelIntensityRelationshipSign"},
    {0x00281050, DS, 0, "windowCenter"},
    {0x00281051, DS, 0, "windowWidth"},
    {0x00281052, DS, 1, "rescaleIntercept"},
    {0x00281053, DS, 1, "rescaleSlope"},
    {0x00281054, LO, 1, "rescaleType"},
    {0x00281055, LO, 0, "windowCenterAmpWidthExplanation"},
    {0x00281056, CS, 1, "voiLutFunction"},
    {0x00281080, CS, 1, "grayScale"},
    {0x00281090, CS, 1, "recommendedViewingMode"},
    {0x00281100, XS, 3, "grayLookupTableDescriptor"},
    {0x00281101, XS, 3, "redPaletteColorLookupTableDescriptor"},
    {0x00281102, XS, 3, "greenPaletteColorLookupTableDescriptor"},
    {0x00281103, XS, 3, "bluePaletteColorLookupTableDescriptor"},
    {0x00281199, UI, 1, "paletteColorLookupTableUid"},
    {0x00281200, US, 0, "grayLookupTableData"},
    {0x00281201, OW, 1, "redPaletteColorLookupTableData"},
    {0x00281202, OW, 1, "greenPaletteColorLookupTableData"},
    {0x00281203, OW, 1, "bluePaletteColorLookupTableData"},
    {0x00281221, OW, 1, "segmentedRedPaletteColorLookupTableData"},
    {0x00281222, OW, 1, "segmentedGreenPaletteColorLookupTableData"},
    {0x00281223, OW, 1, "segmentedBluePaletteColorLookupTableData"},
    {0x00281300, CS, 1, "implantPresent"},
    {0x00281350, CS, 1, "partialView"},
    {0x00281351, ST, 1, "partialViewDescription"},
    {0x00281352, SQ, 1, "partialViewCodeSequence"},
    {0x0028135A, CS, 1, "spatialLocationsPreserved"},
    {0x00282000, OB, 1, "iccProfile"},
    {0x00282110, CS, 1, "lossyImageCompression"},
    {0x00282112, DS, 0, "lossyImageCompressionRatio"},
    {0x00282114, CS, 0, "lossyImageCompressionMethod"},
    {0x00283000, SQ, 1, "modalityLutSequence"},
    {0x00283002, XS, 3, "lutDescriptor"},
    {0x00283003, LO, 1, "lutExplanation"},
    {0x00283004, LO, 1, "modalityLutType"},
    {0x00283006, US, 0, "lutData"},
    {0x00283010, SQ, 1, "voiLutSequence"},
    {0x00283110, SQ, 1, "softcopyVoiLutSequence"},
    {0x00284000, LT, 1, "imagePresentationComments"},
    {0x00285000, SQ, 1, "biPlaneAcquisitionSequence"},
    {0x00286010, US, 1, "representativeFrameNumber"},
    {0x00286020, US, 0, "frameNumbersOfInterestFoi"},
    {0x00286022, LO, 0, "framesOfInterestDescription"},
    {0x00286023, CS, 0, "frameOfInterestType"},
    {0x00286030, US, 0, "maskPointers"},
    {0x00286040, US, 0, "rWavePointer"},
    {0x00286100, SQ, 1, "maskSubtractionSequence"},
    {0x00286101, CS, 1, "maskOperation"},
    {0x00286102, US, 0, "applicableFrameRange"},
    {0x00286110, US, 0, "maskFrameNumbers"},
    {0x00286112, US, 1, "contrastFrameAveraging"},
    {0x00286114, FL, 2, "maskSubPixelShift"},
    {0x00286120, SS, 1, "tidOffset"},
    {0x00286190, ST, 1, "maskOperationExplanation"},
    {0x00287FE0, UT, 1, "pixelDataProviderUrl"},
    {0x00289001, UL, 1, "dataPointRows"},
    {0x00289002, UL, 1, "dataPointColumns"},
    {0x00289003, CS, 1, "signalDomainColumns"},
    {0x00289099, US, 1, "largestMonochromePixelValue"},
    {0x00289108, CS, 1, "dataRepresentation"},
    {0x00289110, SQ, 1, "pixelMeasuresSequence"},
    {0x00289132, SQ, 1, "frameVoiLutSequence"},
    {0x00289145, SQ, 1, "pixelValueTransformationSequence"},
    {0x00289235, CS, 1, "signalDomainRows"},
    {0x00289411, FL, 1, "displayFilterPercentage"},
    {0x00289415, SQ, 1, "framePixelShiftSequence"},
    {0x00289416, US, 1, "subtractionItemId"},
    {0x00289422, SQ, 1, "pixelIntensityRelationshipLutSequence"},
    {0x00289443, SQ, 1, "framePixelDataPropertiesSequence"},
    {0x00289444, CS, 1, "geometricalProperties"},
    {0x00289445, FL, 1, "geometricMaximumDistortion"},
    {0x00289446, CS, 0, "imageProcessingApplied"},
    {0x00289454, CS, 1, "maskSelectionMode"},
    {0x00289474, CS, 1, "lutFunction"},
    {0x00289520, DS, 16, "imageToEquipmentMappingMatrix"},
    {0x00289537, CS, 1, "equipmentCoordinateSystemIdentification"},
    {0x0032000A, CS, 1, "studyStatusId"},
    {0x0032000C, CS, 1, "studyPriorityId"},
    {0x00320012, LO, 1, "studyIdIssuer"},
    {0x00320032, DA, 1, "studyVerifiedDate"},
    {0x00320033, TM, 1, "studyVerifiedTime"},
    {0x00320034, DA, 1, "studyReadDate"},
    {0x00320035, TM, 1, "studyReadTime"},
    {0x00321000, DA, 1, "scheduledStudyStartDate"},
    {0x00321001, TM, 1, "scheduledStudyStartTime"},
    {0x00321010, DA, 1, "scheduledStudyStopDate"},
    {0x00321011, TM, 1, "scheduledStudyStopTime"},
    {0x00321020, LO, 1, "scheduledStudyLocation"},
    {0x00321021, AE, 0, "scheduledStudyLocationAeTitle"},
    {0x00321030, LO, 1, "reasonForStudy"},
    {0x00321031, SQ, 1, "requestingPhysicianIdentificationSequence"},
    {0x00321032, PN, 1, "requestingPhysician"},
    {0x00321033, LO, 1, "requestingService"},
    {0x00321040, DA, 1, "studyArrivalDate"},
    {0x00321041, TM, 1, "studyArrivalTime"},
    {0x00321050, DA, 1, "studyCompletionDate"},
    {0x00321051, TM, 1, "studyCompletionTime"},
    {0x00321055, CS, 1, "studyComponentStatusId"},
    {0x00321060, LO, 1, "requestedProcedureDescription"},
    {0x00321064, SQ, 1, "requestedProcedureCodeSequence"},
    {0x00321070, LO, 1, "requestedContrastAgent"},
    {0x00324000, LT, 1, "studyComments"},
    {0x00380004, SQ, 1, "referencedPatientAliasSequence"},
    {0x00380008, CS, 1, "visitStatusId"},
    {0x00380010, LO, 1, "admissionId"},
    {0x00380011, LO, 1, "issuerOfAdmissionId"},
    {0x00380016, LO, 1, "routeOfAdmissions"},
    {0x0038001A, DA, 1, "scheduledAdmissionDate"},
    {0x0038001B, TM, 1, "scheduledAdmissionTime"},
    {0x0038001C, DA, 1, "scheduledDischargeDate"},
    {0x0038001D, TM, 1, "scheduledDischargeTime"},
    {0x0038001E, LO, 1, "scheduledPatientInstitutionResidence"},
    {0x00380020, DA, 1, "admittingDate"},
    {0x00380021, TM, 1, "admittingTime"},
    {0x00380030, DA, 1, "dischargeDate"},
    {0x00380032, TM, 1, "dischargeTime"},
    {0x00380040, LO, 1, "dischargeDiagnosisDescription"},
    {0x00380044, SQ, 1, "dischargeDiagnosisCodeSequence"},
    {0x00380050, LO, 1, "specialNeeds"},
    {0x00380060, LO, 1, "serviceEpisodeId"},
    {0x00380061, LO, 1, "issuerOfServiceEpisodeId"},
    {0x00380062, LO, 1, "serviceEpisodeDescription"},
    {0x00380100, SQ, 1, "pertinentDocumentsSequence"},
    {0x00380300, LO, 1, "currentPatientLocation"},
    {0x00380400, LO, 1, "patientsInstitutionResidence"},
    {0x00380500, LO, 1, "patientState"},
    {0x00380502, SQ, 1, "patientClinicalTrialParticipationSequence"},
    {0x00384000, LT, 1, "visitComments"},
    {0x003A0004, CS, 1, "waveformOriginality"},
    {0x003A0005, US, 1, "numberOfWaveformChannels"},
    {0x003A0010, UL, 1, "numberOfWaveformSamples"},
    {0x003A001A, DS, 1, "samplingFrequency"},
    {0x003A0020, SH, 1, "multiplexGroupLabel"},
    {0x003A0200, SQ, 1, "channelDefinitionSequence"},
    {0x003A0202, IS, 1, "waveformChannelNumber"},
    {0x003A0203, SH, 1, "channelLabel"},
    {0x003A0205, CS, 0, "channelStatus"},
    {0x003A0208, SQ, 1, "channelSourceSequence"},
    {0x003A0209, SQ, 1, "channelSourceModifiersSequence"},
    {0x003A020A, SQ, 1, "sourceWaveformSequence"},
    {0x003A020C, LO, 1, "channelDerivationDescription"},
    {0x003A0210, DS, 1, "channelSensitivity"},
    {0x003A0211, SQ, 1, "channelSensitivityUnitsSequence"},
    {0x003A0212, DS, 1, "channelSensitivityCorrectionFactor"},
    {0x003A0213, DS, 1, "channelBaseline"},
    {0x003A0214, DS, 1, "channelTimeSkew"},
    {0x003A0215, DS, 1, "channelSampleSkew"},
    {0x003A0218, DS, 1, "channelOffset"},
    {0x003A021A, US, 1, "waveformBitsStored"},
    {0x003A0220, DS, 1, "filterLowFrequency"},
    {0x003A0221, DS, 1, "filterHighFrequency"},
    {0x003A0222, DS, 1, "notchFilterFrequency"},
    {0x003A0223, DS, 1, "notchFilterBandwidth"},
    {0x003A0230, FL, 1, "waveformDataDisplayScale"},
    {0x003A0231, US, 3, "waveformDisplayBackgroundCielabValue"},
    {0x003A0240, SQ, 1, "waveformPresentationGroupSequence"},
    {0x003A0241, US, 1, "presentationGroupNumber"},
    {0x003A0242, SQ, 1, "channelDisplaySequence"},
    {0x003A0244, US, 3, "channelRecommendedDisplayCielabValue"},
    {0x003A0245, FL, 1, "channelPosition"},
    {0x003A0246, CS, 1, "displayShadingFlag"},
    {0x003A0247, FL, 1, "fractionalChannelDisplayScale"},
    {0x003A0248, FL, 1, "absoluteChannelDisplayScale"},
    {0x003A0300, SQ, 1, "multiplexedAudioChannelsDescriptionCodeSequence"},
    {0x003A0301, IS, 1, "channelIdentificationCode"},
    {0x003A0302, CS, 1, "channelMode"},
    {0x00400001, AE, 0, "scheduledStationAeTitle"},
    {0x00400002, DA, 1, "scheduledProcedureStepStartDate"},
    {0x00400003, TM, 1, "scheduledProcedureStepStartTime"},
    {0x00400004, DA, 1, "scheduledProcedureStepEndDate"},
    {0x00400005, TM, 1, "scheduledProcedureStepEndTime"},
    {0x00400006, PN, 1, "scheduledPerformingPhysiciansName"},
    {0x00400007, LO, 1, "scheduledProcedureStepDescription"},
    {0x00400008, SQ, 1, "scheduledProtocolCodeSequence"},
    {0x00400009, SH, 1, "scheduledProcedureStepId"},
    {0x0040000A, SQ, 1, "stageCodeSequence"},
    {0x0040000B, SQ, 1, "scheduledPerformingPhysicianIdentificationSequence"},
    {0x00400010, SH, 0, "scheduledStationName"},
    {0x00400011, SH, 1, "scheduledProcedureStepLocation"},
    {0x00400012, LO, 1, "preMedication"},
    {0x00400020, CS, 1, "scheduledProcedureStepStatus"},
    {0x00400100, SQ, 1, "scheduledProcedureStepSequence"},
    {0x00400220, SQ, 1, "referencedNonImageCompositeSopInstanceSequence"},
    {0x00400241, AE, 1, "performedStationAeTitle"},
    {0x00400242, SH, 1, "performedStationName"},
    {0x00400243, SH, 1, "performedLocation"},
    {0x00400244, DA, 1, "performedProcedureStepStartDate"},
    {0x00400245, TM, 1, "performedProcedureStepStartTime"},
    {0x00400250, DA, 1, "performedProcedureStepEndDate"},
    {0x00400251, TM, 1, "performedProcedureStepEndTime"},
    {0x00400252, CS, 1, "performedProcedureStepStatus"},
    {0x00400253, SH, 1, "performedProcedureStepId"},
    {0x00400254, LO, 1, "performedProcedureStepDescription"},
    {0x00400255, LO, 1, "performedProcedureTypeDescription"},
    {0x00400260, SQ, 1, "performedProtocolCodeSequence"},
    {0x00400270, SQ, 1, "scheduledStepAttributesSequence"},
    {0x00400275, SQ, 1, "requestAttributesSequence"},
    {0x00400280, ST, 1, "commentsOnThePerformedProcedureStep"},
    {0x00400281, SQ, 1, "performedProcedureStepDiscontinuationReasonCodeSequ"},
    {0x00400293, SQ, 1, "quantitySequence"},
    {0x00400294, DS, 1, "quantity"},
    {0x00400295, SQ, 1, "measuringUnitsSequence"},
    {0x00400296, SQ, 1, "billingItemSequence"},
    {0x00400300, US, 1, "totalTimeOfFluoroscopy"},
    {0x00400301, US, 1, "totalNumberOfExposures"},
    {0x00400302, US, 1, "entranceDose"},
    {0x00400303, US, -2, "exposedArea"},
    {0x00400306, DS, 1, "distanceSourceToEntrance"},
    {0x00400307, DS, 1, "distanceSourceToSupport"},
    {0x0040030E, SQ, 1, "exposureDoseSequence"},
    {0x00400310, ST, 1, "commentsOnRadiationDose"},
    {0x00400312, DS, 1, "xRayOutput"},
    {0x00400314, DS, 1, "halfValueLayer"},
    {0x00400316, DS, 1, "organDose"},
    {0x00400318, CS, 1, "organExposed"},
    {0x00400320, SQ, 1, "billingProcedureStepSequence"},
    {0x00400321, SQ, 1, "filmConsumptionSequence"},
    {0x00400324, SQ, 1, "billingSuppliesAndDevicesSequence"},
    {0x00400330, SQ, 1, "referencedProcedureStepSequence"},
    {0x00400340, SQ, 1, "performedSeriesSequence"},
    {0x00400400, LT, 1, "commentsOnTheScheduledProcedureStep"},
    {0x00400440, SQ, 1, "protocolContextSequence"},
    {0x00400441, SQ, 1, "contentItemModifierSequence"},
    {0x0040050A, LO, 1, "specimenAccessionNumber"},
    {0x00400550, SQ, 1, "specimenSequence"},
    {0x00400551, LO, 1, "specimenIdentifier"},
    {0x00400555, SQ, 1, "acquisitionContextSequence"},
    {0x00400556, ST, 1, "acquisitionContextDescription"},
    {0x0040059A, SQ, 1, "specimenTypeCodeSequence"},
    {0x004006FA, LO, 1, "slideIdentifier"},
    {0x0040071A, SQ, 1, "imageCenterPointCoordinatesSequence"},
    {0x0040072A, DS, 1, "xOffsetInSlideCoordinateSystem"},
    {0x0040073A, DS, 1, "yOffsetInSlideCoordinateSystem"},
    {0x0040074A, DS, 1, "zOffsetInSlideCoordinateSystem"},
    {0x004008D8, SQ, 1, "pixelSpacingSequence"},
    {0x004008DA, SQ, 1, "coordinateSystemAxisCodeSequence"},
    {0x004008EA, SQ, 1, "measurementUnitsCodeSequence"},
    {0x00401001, SH, 1, "requestedProcedureId"},
    {0x00401002, LO, 1, "reasonForTheRequestedProcedure"},
    {0x00401003, SH, 1, "requestedProcedurePriority"},
    {0x00401004, LO, 1, "patientTransportArrangements"},
    {0x00401005, LO, 1, "requestedProcedureLocation"},
    {0x00401006, SH, 1, "placerOrderNumberProcedure"},
    {0x00401007, SH, 1, "fillerOrderNumberProcedure"},
    {0x00401008, LO, 1, "confidentialityCode"},
    {0x00401009, SH, 1, "reportingPriority"},
    {0x0040100A, SQ, 1, "reasonForRequestedProcedureCodeSequence"},
    {0x00401010, PN, 0, "namesOfIntendedRecipientsOfResults"},
    {0x00401011, SQ, 1, "intendedRecipientsOfResultsIdentificationSequence"},
    {0x00401101, SQ, 1, "personIdentificationCodeSequence"},
    {0x00401102, ST, 1, "personsAddress"},
    {0x00401103, LO, 0, "personsTelephoneNumbers"},
    {0x00401400, LT, 1, "requestedProcedureComments"},
    {0x00402001, LO, 1, "reasonForTheImagingServiceRequest"},
    {0x00402004, DA, 1, "issueDateOfImagingServiceRequest"},
    {0x00402005, TM, 1, "issueTimeOfImagingServiceRequest"},
    {0x00402006, SH, 1, "placerOrderNumberImagingServiceRequest"},
    {0x00402007, SH, 1, "fillerOrderNumberImagingServiceRequest"},
    {0x00402008, PN, 1, "orderEnteredBy"},
    {0x00402009, SH, 1, "orderEnterersLocation"},
    {0x00402010, SH, 1, "orderCallbackPhoneNumber"},
    {0x00402016, LO, 1, "placerOrderNumberImagingServiceRequest"},
    {0x00402017, LO, 1, "fillerOrderNumberImagingServiceRequest"},
    {0x00402400, LT, 1, "imagingServiceRequestComments"},
    {0x00403001, LO, 1, "confidentialityConstraintOnPatientDataDescription"},
    {0x00404001, CS, 1, "generalPurposeScheduledProcedureStepStatus"},
    {0x00404002, CS, 1, "generalPurposePerformedProcedureStepStatus"},
    {0x00404003, CS, 1, "generalPurposeScheduledProcedureStepPriority"},
    {0x00404004, SQ, 1, "scheduledProcessingApplicationsCodeSequence"},
    {0x00404005, DT, 1, "scheduledProcedureStepStartDateAndTime"},
    {0x00404006, CS, 1, "multipleCopiesFlag"},
    {0x00404007, SQ, 1, "performedProcessingApplicationsCodeSequence"},
    {0x00404009, SQ, 1, "humanPerformerCodeSequence"},
    {0x00404010, DT, 1, "scheduledProcedureStepModificationDateAndTime"},
    {0x00404011, DT, 1, "expectedCompletionDateAndTime"},
    {0x00404015, SQ, 1, "resultingGeneralPurposePerformedProcedureStepsSeque"},
    {0x00404016, SQ, 1, "referencedGeneralPurposeScheduledProcedureStepSeque"},
    {0x00404018, SQ, 1, "scheduledWorkitemCodeSequence"},
    {0x00404019, SQ, 1, "performedWorkitemCodeSequence"},
    {0x00404020, CS, 1, "inputAvailabilityFlag"},
    {0x00404021, SQ, 1, "inputInformationSequence"},
    {0x00404022, SQ, 1, "relevantInformationSequence"},
    {0x00404023, UI, 1, "referencedGeneralPurposeScheduledProcedureStepTrans"},
    {0x00404025, SQ, 1, "scheduledStationNameCodeSequence"},
    {0x00404026, SQ, 1, "scheduledStationClassCodeSequence"},
    {0x00404027, SQ, 1, "scheduledStationGeographicLocationCodeSequence"},
    {0x00404028, SQ, 1, "performedStationNameCodeSequence"},
    {0x00404029, SQ, 1, "performedStationClassCodeSequence"},
    {0x00404030, SQ, 1, "performedStationGeographicLocationCodeSequence"},
    {0x00404031, SQ, 1, "requestedSubsequentWorkitemCodeSequence"},
    {0x00404032, SQ, 1, "nonDicomOutputCodeSequence"},
    {0x00404033, SQ, 1, "outputInformationSequence"},
    {0x00404034, SQ, 1, "scheduledHumanPerformersSequence"},
    {0x00404035, SQ, 1, "actualHumanPerformersSequence"},
    {0x00404036, LO, 1, "humanPerformersOrganization"},
    {0x00404037, PN, 1, "humanPerformersName"},
    {0x00408302, DS, 1, "entranceDoseInMgy"},
    {0x00409094, SQ, 1, "referencedImageRealWorldValueMappingSequence"},
    {0x00409096, SQ, 1, "realWorldValueMappingSequence"},
    {0x00409098, SQ, 1, "pixelValueMappingCodeSequence"},
    {0x00409210, SH, 1, "lutLabel"},
    {0x00409211, XS, 1, "realWorldValueLastValueMapped"},
    {0x00409212, FD, 0, "realWorldValueLutData"},
    {0x00409216, XS, 1, "realWorldValueFirstValueMapped"},
    {0x00409224, FD, 1, "realWorldValueIntercept"},
    {0x00409225, FD, 1, "realWorldValueSlope"},
    {0x0040A010, CS, 1, "relationshipType"},
    {0x0040A027, LO, 1, "verifyingOrganization"},
    {0x0040A030, DT, 1, "verificationDateTime"},
    {0x0040A032, DT, 1, "observationDateTime"},
    {0x0040A040, CS, 1, "valueType"},
    {0x0040A043, SQ, 1, "conceptNameCodeSequence"},
    {0x0040A050, CS, 1, "continuityOfContent"},
    {0x0040A073, SQ, 1, "verifyingObserverSequence"},
    {0x0040A075, PN, 1, "verifyingObserverName"},
    {0x0040A078, SQ, 1, "authorObserverSequence"},
    {0x0040A07A, SQ, 1, "participantSequence"},
    {0x0040A07C, SQ, 1, "custodialOrganizationSequence"},
    {0x0040A080, CS, 1, "participationType"},
    {0x0040A082, DT, 1, "participationDatetime"},
    {0x0040A084, CS, 1, "observerType"},
    {0x0040A088, SQ, 1, "verifyingObserverIdentificationCodeSequence"},
    {0x0040A090, SQ, 1, "equivalentCdaDocumentSequence"},
    {0x0040A0B0, US, 0, "referencedWaveformChannels"},
    {0x0040A120, DT, 1, "datetime"},
    {0x0040A121, DA, 1, "date"},
    {0x0040A122, TM, 1, "time"},
    {0x0040A123, PN, 1, "personName"},
    {0x0040A124, UI, 1, "uid"},
    {0x0040A130, CS, 1, "temporalRangeType"},
    {0x0040A132, UL, 0, "referencedSamplePositions"},
    {0x0040A136, US, 0, "referencedFrameNumbers"},
    {0x0040A138, DS, 0, "referencedTimeOffsets"},
    {0x0040A13A, DT, 0, "referencedDatetime"},
    {0x0040A160, UT, 1, "textValue"},
    {0x0040A168, SQ, 1, "conceptCodeSequence"},
    {0x0040A170, SQ, 1, "purposeOfReferenceCodeSequence"},
    {0x0040A180, US, 1, "annotationGroupNumber"},
    {0x0040A195, SQ, 1, "modifierCodeSequence"},
    {0x0040A300, SQ, 1, "measuredValueSequence"},
    {0x0040A301, SQ, 1, "numericValueQualifierCodeSequence"},
    {0x0040A30A, DS, 0, "numericValue"},
    {0x0040A360, SQ, 1, "predecessorDocumentsSequence"},
    {0x0040A370, SQ, 1, "referencedRequestSequence"},
    {0x0040A372, SQ, 1, "performedProcedureCodeSequence"},
    {0x0040A375, SQ, 1, "currentRequestedProcedureEvidenceSequence"},
    {0x0040A385, SQ, 1, "pertinentOtherEvidenceSequence"},
    {0x0040A390, SQ, 1, "hl7StructuredDocumentReferenceSequence"},
    {0x0040A491, CS, 1, "completionFlag"},
    {0x0040A492, LO, 1, "completionFlagDescription"},
    {0x0040A493, CS, 1, "verificationFlag"},
    {0x0040A494, CS, 1, "archiveRequested"},
    {0x0040A504, SQ, 1, "contentTemplateSequence"},
    {0x0040A525, SQ, 1, "identicalDocumentsSequence"},
    {0x0040A730, SQ, 1, "contentSequence"},
    {0x0040B020, SQ, 1, "annotationSequence"},
    {0x0040DB00, CS, 1, "templateIdentifier"},
    {0x0040DB06, DT, 1, "templateVersion"},
    {0x0040DB07, DT, 1, "templateLocalVersion"},
    {0x0040DB0B, CS, 1, "templateExtensionFlag"},
    {0x0040DB0C, UI, 1, "templateExtensionOrganizationUid"},
    {0x0040DB0D, UI, 1, "templateExtensionCreatorUid"},
    {0x0040DB73, UL, 0, "referencedContentItemIdentifier"},
    {0x0040E001, ST, 1, "hl7InstanceIdentifier"},
    {0x0040E004, DT, 1, "hl7DocumentEffectiveTime"},
    {0x0040E006, SQ, 1, "hl7DocumentTypeCodeSequence"},
    {0x0040E010, UT, 1, "retrieveUri"},
    {0x00420010, ST, 1, "documentTitle"},
    {0x00420011, OB, 1, "encapsulatedDocument"},
    {0x00420012, LO, 1, "mimeTypeOfEncapsulatedDocument"},
    {0x00420013, SQ, 1, "sourceInstanceSequence"},
    {0x00420014, LO, 0, "listOfMimeTypes"},
    {0x00440001, ST, 1, "productPackageIdentifier"},
    {0x00440002, CS, 1, "substanceAdministrationApproval"},
    {0x00440003, LT, 1, "approvalStatusFurtherDescription"},
    {0x00440004, DT, 1, "approvalStatusDatetime"},
    {0x00440007, SQ, 1, "productTypeCodeSequence"},
    {0x00440008, LO, 0, "productName"},
    {0x00440009, LT, 1, "productDescription"},
    {0x0044000A, LO, 1, "productLotIdentifier"},
    {0x0044000B, DT, 1, "productExpirationDatetime"},
    {0x00440010, DT, 1, "substanceAdministrationDatetime"},
    {0x00440011, LO, 1, "substanceAdministrationNotes"},
    {0x00440012, LO, 1, "substanceAdministrationDeviceId"},
    {0x00440013, SQ, 1, "productParameterSequence"},
    {0x00440019, SQ, 1, "substanceAdministrationParameterSequence"},
    {0x00500004, CS, 1, "calibrationImage"},
    {0x00500010, SQ, 1, "deviceSequence"},
    {0x00500014, DS, 1, "deviceLength"},
    {0x00500016, DS, 1, "deviceDiameter"},
    {0x00500017, CS, 1, "deviceDiameterUnits"},
    {0x00500018, DS, 1, "deviceVolume"},
    {0x00500019, DS, 1, "intermarkerDistance"},
    {0x00500020, LO, 1, "deviceDescription"},
    {0x00540010, US, 0, "energyWindowVector"},
    {0x00540011, US, 1, "numberOfEnergyWindows"},
    {0x00540012, SQ, 1, "energyWindowInformationSequence"},
    {0x00540013, SQ, 1, "energyWindowRangeSequence"},
    {0x00540014, DS, 1, "energyWindowLowerLimit"},
    {0x00540015, DS, 1, "energyWindowUpperLimit"},
    {0x00540016, SQ, 1, "radiopharmaceuticalInformationSequence"},
    {0x00540017, IS, 1, "residualSyringeCounts"},
    {0x00540018, SH, 1, "energyWindowName"},
    {0x00540020, US, 0, "detectorVector"},
    {0x00540021, US, 1, "numberOfDetectors"},
    {0x00540022, SQ, 1, "detectorInformationSequence"},
    {0x00540030, US, 0, "phaseVector"},
    {0x00540031, US, 1, "numberOfPhases"},
    {0x00540032, SQ, 1, "phaseInformationSequence"},
    {0x00540033, US, 1, "numberOfFramesInPhase"},
    {0x00540036, IS, 1, "phaseDelay"},
    {0x00540038, IS, 1, "pauseBetweenFrames"},
    {0x00540039, CS, 1, "phaseDescription"},
    {0x00540050, US, 0, "rotationVector"},
    {0x00540051, US, 1, "numberOfRotations"},
    {0x00540052, SQ, 1, "rotationInformationSequence"},
    {0x00540053, US, 1, "numberOfFramesInRotation"},
    {0x00540060, US, 0, "rRIntervalVector"},
    {0x00540061, US, 1, "numberOfRRIntervals"},
    {0x00540062, SQ, 1, "gatedInformationSequence"},
    {0x00540063, SQ, 1, "dataInformationSequence"},
    {0x00540070, US, 0, "timeSlotVector"},
    {0x00540071, US, 1, "numberOfTimeSlots"},
    {0x00540072, SQ, 1, "timeSlotInformationSequence"},
    {0x00540073, DS, 1, "timeSlotTime"},
    {0x00540080, US, 0, "sliceVector"},
    {0x00540081, US, 1, "numberOfSlices"},
    {0x00540090, US, 0, "angularViewVector"},
    {0x00540100, US, 0, "timeSliceVector"},
    {0x00540101, US, 1, "numberOfTimeSlices"},
    {0x00540200, DS, 1, "startAngle"},
    {0x00540202, CS, 1, "typeOfDetectorMotion"},
    {0x00540210, IS, 0, "triggerVector"},
    {0x00540211, US, 1, "numberOfTriggersInPhase"},
    {0x00540220, SQ, 1, "viewCodeSequence"},
    {0x00540222, SQ, 1, "viewModifierCodeSequence"},
    {0x00540300, SQ, 1, "radionuclideCodeSequence"},
    {0x00540302, SQ, 1, "administrationRouteCodeSequence"},
    {0x00540304, SQ, 1, "radiopharmaceuticalCodeSequence"},
    {0x00540306, SQ, 1, "calibrationDataSequence"},
    {0x00540308, US, 1, "energyWindowNumber"},
    {0x00540400, SH, 1, "imageId"},
    {0x00540410, SQ, 1, "patientOrientationCodeSequence"},
    {0x00540412, SQ, 1, "patientOrientationModifierCodeSequence"},
    {0x00540414, SQ, 1, "patientGantryRelationshipCodeSequence"},
    {0x00540500, CS, 1, "sliceProgressionDirection"},
    {0x00541000, CS, 2, "seriesType"},
    {0x00541001, CS, 1, "units"},
    {0x00541002, CS, 1, "countsSource"},
    {0x00541004, CS, 1, "reprojectionMethod"},
    {0x00541100, CS, 1, "randomsCorrectionMethod"},
    {0x00541101, LO, 1, "attenuationCorrectionMethod"},
    {0x00541102, CS, 1, "decayCorrection"},
    {0x00541103, LO, 1, "reconstructionMethod"},
    {0x00541104, LO, 1, "detectorLinesOfResponseUsed"},
    {0x00541105, LO, 1, "scatterCorrectionMethod"},
    {0x00541200, DS, 1, "axialAcceptance"},
    {0x00541201, IS, 2, "axialMash"},
    {0x00541202, IS, 1, "transverseMash"},
    {0x00541203, DS, 2, "detectorElementSize"},
    {0x00541210, DS, 1, "coincidenceWindowWidth"},
    {0x00541220, CS, 0, "secondaryCountsType"},
    {0x00541300, DS, 1, "frameReferenceTime"},
    {0x00541310, IS, 1, "primaryPromptsCountsAccumulated"},
    {0x00541311, IS, 0, "secondaryCountsAccumulated"},
    {0x00541320, DS, 1, "sliceSensitivityFactor"},
    {0x00541321, DS, 1, "decayFactor"},
    {0x00541322, DS, 1, "doseCalibrationFactor"},
    {0x00541323, DS, 1, "scatterFractionFactor"},
    {0x00541324, DS, 1, "deadTimeFactor"},
    {0x00541330, US, 1, "imageIndex"},
    {0x00541400, CS, 0, "countsIncluded"},
    {0x00541401, CS, 1, "deadTimeCorrectionFlag"},
    {0x00603000, SQ, 1, "histogramSequence"},
    {0x00603002, US, 1, "histogramNumberOfBins"},
    {0x00603004, XS, 1, "histogramFirstBinValue"},
    {0x00603006, XS, 1, "histogramLastBinValue"},
    {0x00603008, US, 1, "histogramBinWidth"},
    {0x00603010, LO, 1, "histogramExplanation"},
    {0x00603020, UL, 0, "histogramData"},
    {0x00620001, CS, 1, "segmentationType"},
    {0x00620002, SQ, 1, "segmentSequence"},
    {0x00620003, SQ, 1, "segmentedPropertyCategoryCodeSequence"},
    {0x00620004, US, 1, "segmentNumber"},
    {0x00620005, LO, 1, "segmentLabel"},
    {0x00620006, ST, 1, "segmentDescription"},
    {0x00620008, CS, 1, "segmentAlgorithmType"},
    {0x00620009, LO, 1, "segmentAlgorithmName"},
    {0x0062000A, SQ, 1, "segmentIdentificationSequence"},
    {0x0062000B, US, 0, "referencedSegmentNumber"},
    {0x0062000C, US, 1, "recommendedDisplayGrayscaleValue"},
    {0x0062000D, US, 3, "recommendedDisplayCielabValue"},
    {0x0062000E, US, 1, "maximumFractionalValue"},
    {0x0062000F, SQ, 1, "segmentedPropertyTypeCodeSequence"},
    {0x00620010, CS, 1, "segmentationFractionalType"},
    {0x00640002, SQ, 1, "deformableRegistrationSequence"},
    {0x00640003, UI, 1, "sourceFrameOfReferenceUid"},
    {0x00640005, SQ, 1, "deformableRegistrationGridSequence"},
    {0x00640007, UL, 3, "gridDimensions"},
    {0x00640008, FD, 3, "gridResolution"},
    {0x00640009, OF, 1, "vectorGridData"},
    {0x0064000F, SQ, 1, "preDeformationMatrixRegistrationSequence"},
    {0x00640010, SQ, 1, "postDeformationMatrixRegistrationSequence"},
    {0x00700001, SQ, 1, "graphicAnnotationSequence"},
    {0x00700002, CS, 1, "graphicLayer"},
    {0x00700003, CS, 1, "boundingBoxAnnotationUnits"},
    {0x00700004, CS, 1, "anchorPointAnnotationUnits"},
    {0x00700005, CS, 1, "graphicAnnotationUnits"},
    {0x00700006, ST, 1, "unformattedTextValue"},
    {0x00700008, SQ, 1, "textObjectSequence"},
    {0x00700009, SQ, 1, "graphicObjectSequence"},
    {0x00700010, FL, 2, "boundingBoxTopLeftHandCorner"},
    {0x00700011, FL, 2, "boundingBoxBottomRightHandCorner"},
    {0x00700012, CS, 1, "boundingBoxTextHorizontalJustification"},
    {0x00700014, FL, 2, "anchorPoint"},
    {0x00700015, CS, 1, "anchorPointVisibility"},
    {0x00700020, US, 1, "graphicDimensions"},
    {0x00700021, US, 1, "numberOfGraphicPoints"},
    {0x00700022, FL, 0, "graphicData"},
    {0x00700023, CS, 1, "graphicType"},
    {0x00700024, CS, 1, "graphicFilled"},
    {0x00700040, IS, 1, "imageRotation"},
    {0x00700041, CS, 1, "imageHorizontalFlip"},
    {0x00700042, US, 1, "imageRotation"},
    {0x00700052, SL, 2, "displayedAreaTopLeftHandCorner"},
    {0x00700053, SL, 2, "displayedAreaBottomRightHandCorner"},
    {0x0070005A, SQ, 1, "displayedAreaSelectionSequence"},
    {0x00700060, SQ, 1, "graphicLayerSequence"},
    {0x00700062, IS, 1, "graphicLayerOrder"},
    {0x00700066, US, 1, "graphicLayerRecommendedDisplayGrayscaleValue"},
    {0x00700067, US, 3, "graphicLayerRecommendedDisplayRgbValue"},
    {0x00700068, LO, 1, "graphicLayerDescription"},
    {0x00700080, CS, 1, "contentLabel"},
    {0x00700081, LO, 1, "contentDescription"},
    {0x00700082, DA, 1, "presentationCreationDate"},
    {0x00700083, TM, 1, "presentationCreationTime"},
    {0x00700084, PN, 1, "contentCreatorsName"},
    {0x00700086, SQ, 1, "contentCreatorsIdentificationCodeSequence"},
    {0x00700100, CS, 1, "presentationSizeMode"},
    {0x00700101, DS, 2, "presentationPixelSpacing"},
    {0x00700102, IS, 2, "presentationPixelAspectRatio"},
    {0x00700103, FL, 1, "presentationPixelMagnificationRatio"},
    {0x00700306, CS, 1, "shapeType"},
    {0x00700308, SQ, 1, "registrationSequence"},
    {0x00700309, SQ, 1, "matrixRegistrationSequence"},
    {0x0070030A, SQ, 1, "matrixSequence"},
    {0x0070030C, CS, 1, "frameOfReferenceTransformationMatrixType"},
    {0x0070030D, SQ, 1, "registrationTypeCodeSequence"},
    {0x0070030F, ST, 1, "fiducialDescription"},
    {0x00700310, SH, 1, "fiducialIdentifier"},
    {0x00700311, SQ, 1, "fiducialIdentifierCodeSequence"},
    {0x00700312, FD, 1, "contourUncertaintyRadius"},
    {0x00700314, SQ, 1, "usedFiducialsSequence"},
    {0x00700318, SQ, 1, "graphicCoordinatesDataSequence"},
    {0x0070031A, UI, 1, "fiducialUid"},
    {0x0070031C, SQ, 1, "fiducialSetSequence"},
    {0x0070031E, SQ, 1, "fiducialSequence"},
    {0x00700401, US, 3, "graphicLayerRecommendedDisplayCielabValue"},
    {0x00700402, SQ, 1, "blendingSequence"},
    {0x00700403, FL, 1, "relativeOpacity"},
    {0x00700404, SQ, 1, "referencedSpatialRegistrationSequence"},
    {0x00700405, CS, 1, "blendingPosition"},
    {0x00720002, SH, 1, "hangingProtocolName"},
    {0x00720004, LO, 1, "hangingProtocolDescription"},
    {0x00720006, CS, 1, "hangingProtocolLevel"},
    {0x00720008, LO, 1, "hangingProtocolCreator"},
    {0x0072000A, DT, 1, "hangingProtocolCreationDatetime"},
    {0x0072000C, SQ, 1, "hangingProtocolDefinitionSequence"},
    {0x0072000E, SQ, 1, "hangingProtocolUserIdentificationCodeSequence"},
    {0x00720010, LO, 1, "hangingProtocolUserGroupName"},
    {0x00720012, SQ, 1, "sourceHangingProtocolSequence"},
    {0x00720014, US, 1, "numberOfPriorsReferenced"},
    {0x00720020, SQ, 1, "imageSetsSequence"},
    {0x00720022, SQ, 1, "imageSetSelectorSequence"},
    {0x00720024, CS, 1, "imageSetSelectorUsageFlag"},
    {0x00720026, AT, 1, "selectorAttribute"},
    {0x00720028, US, 1, "selectorValueNumber"},
    {0x00720030, SQ, 1, "timeBasedImageSetsSequence"},
    {0x00720032, US, 1, "imageSetNumber"},
    {0x00720034, CS, 1, "imageSetSelectorCategory"},
    {0x00720038, US, 2, "relativeTime"},
    {0x0072003A, CS, 1, "relativeTimeUnits"},
    {0x0072003C, SS, 2, "abstractPriorValue"},
    {0x0072003E, SQ, 1, "abstractPriorCodeSequence"},
    {0x00720040, LO, 1, "imageSetLabel"},
    {0x00720050, CS, 1, "selectorAttributeVr"},
    {0x00720052, AT, 1, "selectorSequencePointer"},
    {0x00720054, LO, 1, "selectorSequencePointerPrivateCreator"},
    {0x00720056, LO, 1, "selectorAttributePrivateCreator"},
    {0x00720060, AT, 0, "selectorAtValue"},
    {0x00720062, CS, 0, "selectorCsValue"},
    {0x00720064, IS, 0, "selectorIsValue"},
    {0x00720066, LO, 0, "selectorLoValue"},
    {0x00720068, LT, 1, "selectorLtValue"},
    {0x0072006A, PN, 0, "selectorPnValue"},
    {0x0072006C, SH, 0, "selectorShValue"},
    {0x0072006E, ST, 1, "selectorStValue"},
    {0x00720070, UT, 1, "selectorUtValue"},
    {0x00720072, DS, 0, "selectorDsValue"},
    {0x00720074, FD, 0, "selectorFdValue"},
    {0x00720076, FL, 0, "selectorFlValue"},
    {0x00720078, UL, 0, "selectorUlValue"},
    {0x0072007A, US, 0, "selectorUsValue"},
    {0x0072007C, SL, 0, "selectorSlValue"},
    {0x0072007E, SS, 0, "selectorSsValue"},
    {0x00720080, SQ, 1, "selectorCodeSequenceValue"},
    {0x00720100, US, 1, "numberOfScreens"},
    {0x00720102, SQ, 1, "nominalScreenDefinitionSequence"},
    {0x00720104, US, 1, "numberOfVerticalPixels"},
    {0x00720106, US, 1, "numberOfHorizontalPixels"},
    {0x00720108, FD, 4, "displayEnvironmentSpatialPosition"},
    {0x0072010A, US, 1, "screenMinimumGrayscaleBitDepth"},
    {0x0072010C, US, 1, "screenMinimumColorBitDepth"},
    {0x0072010E, US, 1, "applicationMaximumRepaintTime"},
    {0x00720200, SQ, 1, "displaySetsSequence"},
    {0x00720202, US, 1, "displaySetNumber"},
    {0x00720203, LO, 1, "displaySetLabel"},
    {0x00720204, US, 1, "displaySetPresentationGroup"},
    {0x00720206, LO, 1, "displaySetPresentationGroupDescription"},
    {0x00720208, CS, 1, "partialDataDisplayHandling"},
    {0x00720210, SQ, 1, "synchronizedScrollingSequence"},
    {0x00720212, US, 0, "displaySetScrollingGroup"},
    {0x00720214, SQ, 1, "navigationIndicatorSequence"},
    {0x00720216, US, 1, "navigationDisplaySet"},
    {0x00720218, US, 0, "referenceDisplaySets"},
    {0x00720300, SQ, 1, "imageBoxesSequence"},
    {0x00720302, US, 1, "imageBoxNumber"},
    {0x00720304, CS, 1, "imageBoxLayoutType"},
    {0x00720306, US, 1, "imageBoxTileHorizontalDimension"},
    {0x00720308, US, 1, "imageBoxTileVerticalDimension"},
    {0x00720310, CS, 1, "imageBoxScrollDirection"},
    {0x00720312, CS, 1, "imageBoxSmallScrollType"},
    {0x00720314, US, 1, "imageBoxSmallScrollAmount"},
    {0x00720316, CS, 1, "imageBoxLargeScrollType"},
    {0x00720318, US, 1, "imageBoxLargeScrollAmount"},
    {0x00720320, US, 1, "imageBoxOverlapPriority"},
    {0x00720330, FD, 1, "cineRelativeToRealTime"},
    {0x00720400, SQ, 1, "filterOperationsSequence"},
    {0x00720402, CS, 1, "filterByCategory"},
    {0x00720404, CS, 1, "filterByAttributePresence"},
    {0x00720406, CS, 1, "filterByOperator"},
    {0x00720500, CS, 1, "blendingOperationType"},
    {0x00720510, CS, 1, "reformattingOperationType"},
    {0x00720512, FD, 1, "reformattingThickness"},
    {0x00720514, FD, 1, "reformattingInterval"},
    {0x00720516, CS, 1, "reformattingOperationInitialViewDirection"},
    {0x00720520, CS, 0, "3dRenderingType"},
    {0x00720600, SQ, 1, "sortingOperationsSequence"},
    {0x00720602, CS, 1, "sortByCategory"},
    {0x00720604, CS, 1, "sortingDirection"},
    {0x00720700, CS, 2, "displaySetPatientOrientation"},
    {0x00720702, CS, 1, "voiType"},
    {0x00720704, CS, 1, "pseudoColorType"},
    {0x00720706, CS, 1, "showGrayscaleInverted"},
    {0x00720710, CS, 1, "showImageTrueSizeFlag"},
    {0x00720712, CS, 1, "showGraphicAnnotationFlag"},
    {0x00720714, CS, 1, "showPatientDemographicsFlag"},
    {0x00720716, CS, 1, "showAcquisitionTechniquesFlag"},
    {0x00720717, CS, 1, "displaySetHorizontalJustification"},
    {0x00720718, CS, 1, "displaySetVerticalJustification"},
    {0x00741000, CS, 1, "unifiedProcedureStepState"},
    {0x00741002, SQ, 1, "upsProgressInformationSequence"},
    {0x00741004, DS, 1, "unifiedProcedureStepProgress"},
    {0x00741006, ST, 1, "unifiedProcedureStepProgressDescription"},
    {0x00741008, SQ, 1, "unifiedProcedureStepCommunicationsUriSequence"},
    {0x0074100A, ST, 1, "contactUri"},
    {0x0074100C, LO, 1, "contactDisplayName"},
    {0x0074100E, SQ, 1, "unifiedProcedureStepDiscontinuationReasonCodeSequen"},
    {0x00741020, SQ, 1, "beamTaskSequence"},
    {0x00741022, CS, 1, "beamTaskType"},
    {0x00741024, IS, 1, "beamOrderIndex"},
    {0x00741030, SQ, 1, "deliveryVerificationImageSequence"},
    {0x00741032, CS, 1, "verificationImageTiming"},
    {0x00741034, CS, 1, "doubleExposureFlag"},
    {0x00741036, CS, 1, "doubleExposureOrdering"},
    {0x00741038, DS, 1, "doubleExposureMeterset"},
    {0x0074103A, DS, 4, "doubleExposureFieldDelta"},
    {0x00741040, SQ, 1, "relatedReferenceRtImageSequence"},
    {0x00741042, SQ, 1, "generalMachineVerificationSequence"},
    {0x00741044, SQ, 1, "conventionalMachineVerificationSequence"},
    {0x00741046, SQ, 1, "ionMachineVerificationSequence"},
    {0x00741048, SQ, 0, "failedAttributesSequence"},
    {0x0074104A, SQ, 0, "overriddenAttributesSequence"},
    {0x0074104C, SQ, 1, "conventionalControlPointVerificationSequence"},
    {0x0074104E, SQ, 1, "ionControlPointVerificationSequence"},
    {0x00741050, SQ, 0, "attributeOccurrenceSequence"},
    {0x00741052, AT, 1, "attributeOccurrencePointer"},
    {0x00741054, UL, 1, "attributeItemSelector"},
    {0x00741056, LO, 1, "attributeOccurrencePrivateCreator"},
    {0x00741200, CS, 1, "scheduledProcedureStepPriority"},
    {0x00741202, LO, 1, "worklistLabel"},
    {0x00741204, LO, 1, "procedureStepLabel"},
    {0x00741210, SQ, 1, "scheduledProcessingParametersSequence"},
    {0x00741212, SQ, 1, "performedProcessingParametersSequence"},
    {0x00741216, SQ, 1, "upsPerformedProcedureSequence"},
    {0x00741220, SQ, 1, "relatedProcedureStepSequence"},
    {0x00741222, LO, 1, "procedureStepRelationshipType"},
    {0x00741230, LO, 1, "deletionLock"},
    {0x00741234, AE, 1, "receivingAe"},
    {0x00741236, AE, 1, "requestingAe"},
    {0x00741238, LT, 1, "reasonForCancellation"},
    {0x00741242, CS, 1, "scpStatus"},
    {0x00741244, CS, 1, "subscriptionListStatus"},
    {0x00741246, CS, 1, "upsListStatus"},
    {0x00880130, SH, 1, "storageMediaFileSetId"},
    {0x00880140, UI, 1, "storageMediaFileSetUid"},
    {0x00880200, SQ, 1, "iconImageSequence"},
    {0x00880904, LO, 1, "topicTitle"},
    {0x00880906, ST, 1, "topicSubject"},
    {0x00880910, LO, 1, "topicAuthor"},
    {0x00880912, LO, -32, "topicKeywords"},
    {0x01000410, CS, 1, "sopInstanceStatus"},
    {0x01000420, DT, 1, "sopAuthorizationDateAndTime"},
    {0x01000424, LT, 1, "sopAuthorizationComment"},
    {0x01000426, LO, 1, "authorizationEquipmentCertificationNumber"},
    {0x04000005, US, 1, "macIdNumber"},
    {0x04000010, UI, 1, "macCalculationTransferSyntaxUid"},
    {0x04000015, CS, 1, "macAlgorithm"},
    {0x04000020, AT, 0, "dataElementsSigned"},
    {0x04000100, UI, 1, "digitalSignatureUid"},
    {0x04000105, DT, 1, "digitalSignatureDatetime"},
    {0x04000110, CS, 1, "certificateType"},
    {0x04000115, OB, 1, "certificateOfSigner"},
    {0x04000120, OB, 1, "signature"},
    {0x04000305, CS, 1, "certifiedTimestampType"},
    {0x04000310, OB, 1, "certifiedTimestamp"},
    {0x04000401, SQ, 1, "digitalSignaturePurposeCodeSequence"},
    {0x04000402, SQ, 1, "referencedDigitalSignatureSequence"},
    {0x04000403, SQ, 1, "referencedSopInstanceMacSequence"},
    {0x04000404, OB, 1, "mac"},
    {0x04000500, SQ, 1, "encryptedAttributesSequence"},
    {0x04000510, UI, 1, "encryptedContentTransferSyntaxUid"},
    {0x04000520, OB, 1, "encryptedContent"},
    {0x04000550, SQ, 1, "modifiedAttributesSequence"},
    {0x04000561, SQ, 1, "originalAttributesSequence"},
    {0x04000562, DT, 1, "attributeModificationDatetime"},
    {0x04000563, LO, 1, "modifyingSystem"},
    {0x04000564, LO, 1, "sourceOfPreviousValues"},
    {0x04000565, CS, 1, "reasonForTheAttributeModification"},
    {0x20000010, IS, 1, "numberOfCopies"},
    {0x2000001E, SQ, 1, "printerConfigurationSequence"},
    {0x20000020, CS, 1, "printPriority"},
    {0x20000030, CS, 1, "mediumType"},
    {0x20000040, CS, 1, "filmDestination"},
    {0x20000050, LO, 1, "filmSessionLabel"},
    {0x20000060, IS, 1, "memoryAllocation"},
    {0x20000061, IS, 1, "maximumMemoryAllocation"},
    {0x20000062, CS, 1, "colorImagePrintingFlag"},
    {0x20000063, CS, 1, "collationFlag"},
    {0x20000065, CS, 1, "annotationFlag"},
    {0x20000067, CS, 1, "imageOverlayFlag"},
    {0x20000069, CS, 1, "presentationLutFlag"},
    {0x2000006A, CS, 1, "imageBoxPresentationLutFlag"},
    {0x200000A0, US, 1, "memoryBitDepth"},
    {0x200000A1, US, 1, "printingBitDepth"},
    {0x200000A2, SQ, 1, "mediaInstalledSequence"},
    {0x200000A4, SQ, 1, "otherMediaAvailableSequence"},
    {0x200000A8, SQ, 1, "supportedImageDisplayFormatsSequence"},
    {0x20000500, SQ, 1, "referencedFilmBoxSequence"},
    {0x20000510, SQ, 1, "referencedStoredPrintSequence"},
    {0x20100010, ST, 1, "imageDisplayFormat"},
    {0x20100030, CS, 1, "annotationDisplayFormatId"},
    {0x20100040, CS, 1, "filmOrientation"},
    {0x20100050, CS, 1, "filmSizeId"},
    {0x20100052, CS, 1, "printerResolutionId"},
    {0x20100054, CS, 1, "defaultPrinterResolutionId"},
    {0x20100060, CS, 1, "magnificationType"},
    {0x20100080, CS, 1, "smoothingType"},
    {0x201000A6, CS, 1, "defaultMagnificationType"},
    {0x201000A7, CS, 0, "otherMagnificationTypesAvailable"},
    {0x201000A8, CS, 1, "defaultSmoothingType"},
    {0x201000A9, CS, 0, "otherSmoothingTypesAvailable"},
    {0x20100100, CS, 1, "borderDensity"},
    {0x20100110, CS, 1, "emptyImageDensity"},
    {0x20100120, US, 1, "minDensity"},
    {0x20100130, US, 1, "maxDensity"},
    {0x20100140, CS, 1, "trim"},
    {0x20100150, ST, 1, "configurationInformation"},
    {0x20100152, LT, 1, "configurationInformationDescription"},
    {0x20100154, IS, 1, "maximumCollatedFilms"},
    {0x2010015E, US, 1, "illumination"},
    {0x20100160, US, 1, "reflectedAmbientLight"},
    {0x20100376, DS, 2, "printerPixelSpacing"},
    {0x20100500, SQ, 1, "referencedFilmSessionSequence"},
    {0x20100510, SQ, 1, "referencedImageBoxSequence"},
    {0x20100520, SQ, 1, "referencedBasicAnnotationBoxSequence"},
    {0x20200010, US, 1, "imageBoxPosition"},
    {0x20200020, CS, 1, "polarity"},
    {0x20200030, DS, 1, "requestedImageSize"},
    {0x20200040, CS, 1, "requestedDecimateCropBehavior"},
    {0x20200050, CS, 1, "requestedResolutionId"},
    {0x202000A0, CS, 1, "requestedImageSizeFlag"},
    {0x202000A2, CS, 1, "decimateCropResult"},
    {0x20200110, SQ, 1, "basicGrayscaleImageSequence"},
    {0x20200111, SQ, 1, "basicColorImageSequence"},
    {0x20200130, SQ, 1, "referencedImageOverlayBoxSequence"},
    {0x20200140, SQ, 1, "referencedVoiLutBoxSequence"},
    {0x20300010, US, 1, "annotationPosition"},
    {0x20300020, LO, 1, "textString"},
    {0x20400010, SQ, 1, "referencedOverlayPlaneSequence"},
    {0x20400011, US, -99, "referencedOverlayPlaneGroups"},
    {0x20400020, SQ, 1, "overlayPixelDataSequence"},
    {0x20400060, CS, 1, "overlayMagnificationType"},
    {0x20400070, CS, 1, "overlaySmoothingType"},
    {0x20400072, CS, 1, "overlayOrImageMagnification"},
    {0x20400074, US, 1, "magnifyToNumberOfColumns"},
    {0x20400080, CS, 1, "overlayForegroundDensity"},
    {0x20400082, CS, 1, "overlayBackgroundDensity"},
    {0x20400090, CS, 1, "overlayMode"},
    {0x20400100, CS, 1, "thresholdDensity"},
    {0x20400500, SQ, 1, "referencedImageBoxSequence"},
    {0x20500010, SQ, 1, "presentationLutSequence"},
    {0x20500020, CS, 1, "presentationLutShape"},
    {0x20500500, SQ, 1, "referencedPresentationLutSequence"},
    {0x21000010, SH, 1, "printJobId"},
    {0x21000020, CS, 1, "executionStatus"},
    {0x21000030, CS, 1, "executionStatusInfo"},
    {0x21000040, DA, 1, "creationDate"},
    {0x21000050, TM, 1, "creationTime"},
    {0x21000070, AE, 1, "originator"},
    {0x21000140, AE, 1, "destinationAe"},
    {0x21000160, SH, 1, "ownerId"},
    {0x21000170, IS, 1, "numberOfFilms"},
    {0x21000500, SQ, 1, "referencedPrintJobSequencePullStoredPrint"},
    {0x21100010, CS, 1, "printerStatus"},
    {0x21100020, CS, 1, "printerStatusInfo"},
    {0x21100030, LO, 1, "printerName"},
    {0x21100099, SH, 1, "printQueueId"},
    {0x21200010, CS, 1, "queueStatus"},
    {0x21200050, SQ, 1, "printJobDescriptionSequence"},
    {0x21200070, SQ, 1, "referencedPrintJobSequence"},
    {0x21300010, SQ, 1, "printManagementCapabilitiesSequence"},
    {0x21300015, SQ, 1, "printerCharacteristicsSequence"},
    {0x21300030, SQ, 1, "filmBoxContentSequence"},
    {0x21300040, SQ, 1, "imageBoxContentSequence"},
    {0x21300050, SQ, 1, "annotationContentSequence"},
    {0x21300060, SQ, 1, "imageOverlayBoxContentSequence"},
    {0x21300080, SQ, 1, "presentationLutContentSequence"},
    {0x213000A0, SQ, 1, "proposedStudySequence"},
    {0x213000C0, SQ, 1, "originalImageSequence"},
    {0x22000001, CS, 1, "labelUsingInformationExtractedFromInstances"},
    {0x22000002, UT, 1, "labelText"},
    {0x22000003, CS, 1, "labelStyleSelection"},
    {0x22000004, LT, 1, "mediaDisposition"},
    {0x22000005, LT, 1, "barcodeValue"},
    {0x22000006, CS, 1, "barcodeSymbology"},
    {0x22000007, CS, 1, "allowMediaSplitting"},
    {0x22000008, CS, 1, "includeNonDicomObjects"},
    {0x22000009, CS, 1, "includeDisplayApplication"},
    {0x2200000A, CS, 1, "preserveCompositeInstancesAfterMediaCreation"},
    {0x2200000B, US, 1, "totalNumberOfPiecesOfMediaCreated"},
    {0x2200000C, LO, 1, "requestedMediaApplicationProfile"},
    {0x2200000D, SQ, 1, "referencedStorageMediaSequence"},
    {0x2200000E, AT, 0, "failureAttributes"},
    {0x2200000F, CS, 1, "allowLossyCompression"},
    {0x22000020, CS, 1, "requestPriority"},
    {0x30020002, SH, 1, "rtImageLabel"},
    {0x30020003, LO, 1, "rtImageName"},
    {0x30020004, ST, 1, "rtImageDescription"},
    {0x3002000A, CS, 1, "reportedValuesOrigin"},
    {0x3002000C, CS, 1, "rtImagePlane"},
    {0x3002000D, DS, 3, "xRayImageReceptorTranslation"},
    {0x3002000E, DS, 1, "xRayImageReceptorAngle"},
    {0x30020010, DS, 6, "rtImageOrientation"},
    {0x30020011, DS, 2, "imagePlanePixelSpacing"},
    {0x30020012, DS, 2, "rtImagePosition"},
    {0x30020020, SH, 1, "radiationMachineName"},
    {0x30020022, DS, 1, "radiationMachineSad"},
    {0x30020024, DS, 1, "radiationMachineSsd"},
    {0x30020026, DS, 1, "rtImageSid"},
    {0x30020028, DS, 1, "sourceToReferenceObjectDistance"},
    {0x30020029, IS, 1, "fractionNumber"},
    {0x30020030, SQ, 1, "exposureSequence"},
    {0x30020032, DS, 1, "metersetExposure"},
    {0x30020034, DS, 4, "diaphragmPosition"},
    {0x30020040, SQ, 1, "fluenceMapSequence"},
    {0x30020041, CS, 1, "fluenceDataSource"},
    {0x30020042, DS, 1, "fluenceDataScale"},
    {0x30040001, CS, 1, "dvhType"},
    {0x30040002, CS, 1, "doseUnits"},
    {0x30040004, CS, 1, "doseType"},
    {0x30040006, LO, 1, "doseComment"},
    {0x30040008, DS, 3, "normalizationPoint"},
    {0x3004000A, CS, 1, "doseSummationType"},
    {0x3004000C, DS, 0, "gridFrameOffsetVector"},
    {0x3004000E, DS, 1, "doseGridScaling"},
    {0x30040010, SQ, 1, "rtDoseRoiSequence"},
    {0x30040012, DS, 1, "doseValue"},
    {0x30040014, CS, -3, "tissueHeterogeneityCorrection"},
    {0x30040040, DS, 3, "dvhNormalizationPoint"},
    {0x30040042, DS, 1, "dvhNormalizationDoseValue"},
    {0x30040050, SQ, 1, "dvhSequence"},
    {0x30040052, DS, 1, "dvhDoseScaling"},
    {0x30040054, CS, 1, "dvhVolumeUnits"},
    {0x30040056, IS, 1, "dvhNumberOfBins"},
    {0x30040058, DS, 0, "dvhData"},
    {0x30040060, SQ, 1, "dvhReferencedRoiSequence"},
    {0x30040062, CS, 1, "dvhRoiContributionType"},
    {0x30040070, DS, 1, "dvhMinimumDose"},
    {0x30040072, DS, 1, "dvhMaximumDose"},
    {0x30040074, DS, 1, "dvhMeanDose"},
    {0x30060002, SH, 1, "structureSetLabel"},
    {0x30060004, LO, 1, "structureSetName"},
    {0x30060006, ST, 1, "structureSetDescription"},
    {0x30060008, DA, 1, "structureSetDate"},
    {0x30060009, TM, 1, "structureSetTime"},
    {0x30060010, SQ, 1, "referencedFrameOfReferenceSequence"},
    {0x30060012, SQ, 1, "rtReferencedStudySequence"},
    {0x30060014, SQ, 1, "rtReferencedSeriesSequence"},
    {0x30060016, SQ, 1, "contourImageSequence"},
    {0x30060020, SQ, 1, "structureSetRoiSequence"},
    {0x30060022, IS, 1, "roiNumber"},
    {0x30060024, UI, 1, "referencedFrameOfReferenceUid"},
    {0x30060026, LO, 1, "roiName"},
    {0x30060028, ST, 1, "roiDescription"},
    {0x3006002A, IS, 3, "roiDisplayColor"},
    {0x3006002C, DS, 1, "roiVolume"},
    {0x30060030, SQ, 1, "rtRelatedRoiSequence"},
    {0x30060033, CS, 1, "rtRoiRelationship"},
    {0x30060036, CS, 1, "roiGenerationAlgorithm"},
    {0x30060038, LO, 1, "roiGenerationDescription"},
    {0x30060039, SQ, 1, "roiContourSequence"},
    {0x30060040, SQ, 1, "contourSequence"},
    {0x30060042, CS, 1, "contourGeometricType"},
    {0x30060044, DS, 1, "contourSlabThickness"},
    {0x30060045, DS, 3, "contourOffsetVector"},
    {0x30060046, IS, 1, "numberOfContourPoints"},
    {0x30060048, IS, 1, "contourNumber"},
    {0x30060049, IS, 0, "attachedContours"},
    {0x30060050, DS, 0, "contourData"},
    {0x30060080, SQ, 1, "rtRoiObservationsSequence"},
    {0x30060082, IS, 1, "observationNumber"},
    {0x30060084, IS, 1, "referencedRoiNumber"},
    {0x30060085, SH, 1, "roiObservationLabel"},
    {0x30060086, SQ, 1, "rtRoiIdentificationCodeSequence"},
    {0x30060088, ST, 1, "roiObservationDescription"},
    {0x300600A0, SQ, 1, "relatedRtRoiObservationsSequence"},
    {0x300600A4, CS, 1, "rtRoiInterpretedType"},
    {0x300600A6, PN, 1, "roiInterpreter"},
    {0x300600B0, SQ, 1, "roiPhysicalPropertiesSequence"},
    {0x300600B2, CS, 1, "roiPhysicalProperty"},
    {0x300600B4, DS, 1, "roiPhysicalPropertyValue"},
    {0x300600B6, SQ, 1, "roiElementalCompositionSequence"},
    {0x300600B7, US, 1, "roiElementalCompositionAtomicNumber"},
    {0x300600B8, FL, 1, "roiElementalCompositionAtomicMassFraction"},
    {0x300600C0, SQ, 1, "frameOfReferenceRelationshipSequence"},
    {0x300600C2, UI, 1, "relatedFrameOfReferenceUid"},
    {0x300600C4, CS, 1, "frameOfReferenceTransformationType"},
    {0x300600C6, DS, 16, "frameOfReferenceTransformationMatrix"},
    {0x300600C8, LO, 1, "frameOfReferenceTransformationComment"},
    {0x30080010, SQ, 1, "measuredDoseReferenceSequence"},
    {0x30080012, ST, 1, "measuredDoseDescription"},
    {0x30080014, CS, 1, "measuredDoseType"},
    {0x30080016, DS, 1, "measuredDoseValue"},
    {0x30080020, SQ, 1, "treatmentSessionBeamSequence"},
    {0x30080021, SQ, 1, "treatmentSessionIonBeamSequence"},
    {0x30080022, IS, 1, "currentFractionNumber"},
    {0x30080024, DA, 1, "treatmentControlPointDate"},
    {0x30080025, TM, 1, "treatmentControlPointTime"},
    {0x3008002A, CS, 1, "treatmentTerminationStatus"},
    {0x3008002B, SH, 1, "treatmentTerminationCode"},
    {0x3008002C, CS, 1, "treatmentVerificationStatus"},
    {0x30080030, SQ, 1, "referencedTreatmentRecordSequence"},
    {0x30080032, DS, 1, "specifiedPrimaryMeterset"},
    {0x30080033, DS, 1, "specifiedSecondaryMeterset"},
    {0x30080036, DS, 1, "deliveredPrimaryMeterset"},
    {0x30080037, DS, 1, "deliveredSecondaryMeterset"},
    {0x3008003A, DS, 1, "specifiedTreatmentTime"},
    {0x3008003B, DS, 1, "deliveredTreatmentTime"},
    {0x30080040, SQ, 1, "controlPointDeliverySequence"},
    {0x30080041, SQ, 1, "ionControlPointDeliverySequence"},
    {0x30080042, DS, 1, "specifiedMeterset"},
    {0x30080044, DS, 1, "deliveredMeterset"},
    {0x30080045, FL, 1, "metersetRateSet"},
    {0x30080046, FL, 1, "metersetRateDelivered"},
    {0x30080047, FL, 0, "scanSpotMetersetsDelivered"},
    {0x30080048, DS, 1, "doseRateDelivered"},
    {0x30080050, SQ, 1, "treatmentSummaryCalculatedDoseReferenceSequence"},
    {0x30080052, DS, 1, "cumulativeDoseToDoseReference"},
    {0x30080054, DA, 1, "firstTreatmentDate"},
    {0x30080056, DA, 1, "mostRecentTreatmentDate"},
    {0x3008005A, IS, 1, "numberOfFractionsDelivered"},
    {0x30080060, SQ, 1, "overrideSequence"},
    {0x30080061, AT, 1, "parameterSequencePointer"},
    {0x30080062, AT, 1, "overrideParameterPointer"},
    {0x30080063, IS, 1, "parameterItemIndex"},
    {0x30080064, IS, 1, "measuredDoseReferenceNumber"},
    {0x30080065, AT, 1, "parameterPointer"},
    {0x30080066, ST, 1, "overrideReason"},
    {0x30080068, SQ, 1, "correctedParameterSequence"},
    {0x3008006A, FL, 1, "correctionValue"},
    {0x30080070, SQ, 1, "calculatedDoseReferenceSequence"},
    {0x30080072, IS, 1, "calculatedDoseReferenceNumber"},
    {0x30080074, ST, 1, "calculatedDoseReferenceDescription"},
    {0x30080076, DS, 1, "calculatedDoseReferenceDoseValue"},
    {0x30080078, DS, 1, "startMeterset"},
    {0x3008007A, DS, 1, "endMeterset"},
    {0x30080080, SQ, 1, "referencedMeasuredDoseReferenceSequence"},
    {0x30080082, IS, 1, "referencedMeasuredDoseReferenceNumber"},
    {0x30080090, SQ, 1, "referencedCalculatedDoseReferenceSequence"},
    {0x30080092, IS, 1, "referencedCalculatedDoseReferenceNumber"},
    {0x300800A0, SQ, 1, "beamLimitingDeviceLeafPairsSequence"},
    {0x300800B0, SQ, 1, "recordedWedgeSequence"},
    {0x300800C0, SQ, 1, "recordedCompensatorSequence"},
    {0x300800D0, SQ, 1, "recordedBlockSequence"},
    {0x300800E0, SQ, 1, "treatmentSummaryMeasuredDoseReferenceSequence"},
    {0x300800F0, SQ, 1, "recordedSnoutSequence"},
    {0x300800F2, SQ, 1, "recordedRangeShifterSequence"},
    {0x300800F4, SQ, 1, "recordedLateralSpreadingDeviceSequence"},
    {0x300800F6, SQ, 1, "recordedRangeModulatorSequence"},
    {0x30080100, SQ, 1, "recordedSourceSequence"},
    {0x30080105, LO, 1, "sourceSerialNumber"},
    {0x30080110, SQ, 1, "treatmentSessionApplicationSetupSequence"},
    {0x30080116, CS, 1, "applicationSetupCheck"},
    {0x30080120, SQ, 1, "recordedBrachyAccessoryDeviceSequence"},
    {0x30080122, IS, 1, "referencedBrachyAccessoryDeviceNumber"},
    {0x30080130, SQ, 1, "recordedChannelSequence"},
    {0x30080132, DS, 1, "specifiedChannelTotalTime"},
    {0x30080134, DS, 1, "deliveredChannelTotalTime"},
    {0x30080136, IS, 1, "specifiedNumberOfPulses"},
    {0x30080138, IS, 1, "deliveredNumberOfPulses"},
    {0x3008013A, DS, 1, "specifiedPulseRepetitionInterval"},
    {0x3008013C, DS, 1, "deliveredPulseRepetitionInterval"},
    {0x30080140, SQ, 1, "recordedSourceApplicatorSequence"},
    {0x30080142, IS, 1, "referencedSourceApplicatorNumber"},
    {0x30080150, SQ, 1, "recordedChannelShieldSequence"},
    {0x30080152, IS, 1, "referencedChannelShieldNumber"},
    {0x30080160, SQ, 1, "brachyControlPointDeliveredSequence"},
    {0x30080162, DA, 1, "safePositionExitDate"},
    {0x30080164, TM, 1, "safePositionExitTime"},
    {0x30080166, DA, 1, "safePositionReturnDate"},
    {0x30080168, TM, 1, "safePositionReturnTime"},
    {0x30080200, CS, 1, "currentTreatmentStatus"},
    {0x30080202, ST, 1, "treatmentStatusComment"},
    {0x30080220, SQ, 1, "fractionGroupSummarySequence"},
    {0x30080223, IS, 1, "referencedFractionNumber"},
    {0x30080224, CS, 1, "fractionGroupType"},
    {0x30080230, CS, 1, "beamStopperPosition"},
    {0x30080240, SQ, 1, "fractionStatusSummarySequence"},
    {0x30080250, DA, 1, "treatmentDate"},
    {0x30080251, TM, 1, "treatmentTime"},
    {0x300A0002, SH, 1, "rtPlanLabel"},
    {0x300A0003, LO, 1, "rtPlanName"},
    {0x300A0004, ST, 1, "rtPlanDescription"},
    {0x300A0006, DA, 1, "rtPlanDate"},
    {0x300A0007, TM, 1, "rtPlanTime"},
    {0x300A0009, LO, 0, "treatmentProtocols"},
    {0x300A000A, CS, 1, "planIntent"},
    {0x300A000B, LO, 0, "treatmentSites"},
    {0x300A000C, CS, 1, "rtPlanGeometry"},
    {0x300A000E, ST, 1, "prescriptionDescription"},
    {0x300A0010, SQ, 1, "doseReferenceSequence"},
    {0x300A0012, IS, 1, "doseReferenceNumber"},
    {0x300A0013, UI, 1, "doseReferenceUid"},
    {0x300A0014, CS, 1, "doseReferenceStructureType"},
    {0x300A0015, CS, 1, "nominalBeamEnergyUnit"},
    {0x300A0016, LO, 1, "doseReferenceDescription"},
    {0x300A0018, DS, 3, "doseReferencePointCoordinates"},
    {0x300A001A, DS, 1, "nominalPriorDose"},
    {0x300A0020, CS, 1, "doseReferenceType"},
    {0x300A0021, DS, 1, "constraintWeight"},
    {0x300A0022, DS, 1, "deliveryWarningDose"},
    {0x300A0023, DS, 1, "deliveryMaximumDose"},
    {0x300A0025, DS, 1, "targetMinimumDose"},
    {0x300A0026, DS, 1, "targetPrescriptionDose"},
    {0x300A0027, DS, 1, "targetMaximumDose"},
    {0x300A0028, DS, 1, "targetUnderdoseVolumeFraction"},
    {0x300A002A, DS, 1, "organAtRiskFullVolumeDose"},
    {0x300A002B, DS, 1, "organAtRiskLimitDose"},
    {0x300A002C, DS, 1, "organAtRiskMaximumDose"},
    {0x300A002D, DS, 1, "organAtRiskOverdoseVolumeFraction"},
    {0x300A0040, SQ, 1, "toleranceTableSequence"},
    {0x300A0042, IS, 1, "toleranceTableNumber"},
    {0x300A0043, SH, 1, "toleranceTableLabel"},
    {0x300A0044, DS, 1, "gantryAngleTolerance"},
    {0x300A0046, DS, 1, "beamLimitingDeviceAngleTolerance"},
    {0x300A0048, SQ, 1, "beamLimitingDeviceToleranceSequence"},
    {0x300A004A, DS, 1, "beamLimitingDevicePositionTolerance"},
    {0x300A004B, FL, 1, "snoutPositionTolerance"},
    {0x300A004C, DS, 1, "patientSupportAngleTolerance"},
    {0x300A004E, DS, 1, "tableTopEccentricAngleTolerance"},
    {0x300A004F, FL, 1, "tableTopPitchAngleTolerance"},
    {0x300A0050, FL, 1, "tableTopRollAngleTolerance"},
    {0x300A0051, DS, 1, "tableTopVerticalPositionTolerance"},
    {0x300A0052, DS, 1, "tableTopLongitudinalPositionTolerance"},
    {0x300A0053, DS, 1, "tableTopLateralPositionTolerance"},
    {0x300A0055, CS, 1, "rtPlanRelationship"},
    {0x300A0070, SQ, 1, "fractionGroupSequence"},
    {0x300A0071, IS, 1, "fractionGroupNumber"},
    {0x300A0072, LO, 1, "fractionGroupDescription"},
    {0x300A0078, IS, 1, "numberOfFractionsPlanned"},
    {0x300A0079, IS, 1, "numberOfFractionPatternDigitsPerDay"},
    {0x300A007A, IS, 1, "repeatFractionCycleLength"},
    {0x300A007B, LT, 1, "fractionPattern"},
    {0x300A0080, IS, 1, "numberOfBeams"},
    {0x300A0082, DS, 3, "beamDoseSpecificationPoint"},
    {0x300A0084, DS, 1, "beamDose"},
    {0x300A0086, DS, 1, "beamMeterset"},
    {0x300A0088, FL, 1, "beamDosePointDepth"},
    {0x300A0089, FL, 1, "beamDosePointEquivalentDepth"},
    {0x300A008A, FL, 1, "beamDosePointSsd"},
    {0x300A00A0, IS, 1, "numberOfBrachyApplicationSetups"},
    {0x300A00A2, DS, 3, "brachyApplicationSetupDoseSpecificationPoint"},
    {0x300A00A4, DS, 1, "brachyApplicationSetupDose"},
    {0x300A00B0, SQ, 1, "beamSequence"},
    {0x300A00B2, SH, 1, "treatmentMachineName"},
    {0x300A00B3, CS, 1, "primaryDosimeterUnit"},
    {0x300A00B4, DS, 1, "sourceAxisDistance"},
    {0x300A00B6, SQ, 1, "beamLimitingDeviceSequence"},
    {0x300A00B8, CS, 1, "rtBeamLimitingDeviceType"},
    {0x300A00BA, DS, 1, "sourceToBeamLimitingDeviceDistance"},
    {0x300A00BB, FL, 1, "isocenterToBeamLimitingDeviceDistance"},
    {0x300A00BC, IS, 1, "numberOfLeafJawPairs"},
    {0x300A00BE, DS, 0, "leafPositionBoundaries"},
    {0x300A00C0, IS, 1, "beamNumber"},
    {0x300A00C2, LO, 1, "beamName"},
    {0x300A00C3, ST, 1, "beamDescription"},
    {0x300A00C4, CS, 1, "beamType"},
    {0x300A00C6, CS, 1, "radiationType"},
    {0x300A00C7, CS, 1, "highDoseTechniqueType"},
    {0x300A00C8, IS, 1, "referenceImageNumber"},
    {0x300A00CA, SQ, 1, "plannedVerificationImageSequence"},
    {0x300A00CC, LO, 0, "imagingDeviceSpecificAcquisitionParameters"},
    {0x300A00CE, CS, 1, "treatmentDeliveryType"},
    {0x300A00D0, IS, 1, "numberOfWedges"},
    {0x300A00D1, SQ, 1, "wedgeSequence"},
    {0x300A00D2, IS, 1, "wedgeNumber"},
    {0x300A00D3, CS, 1, "wedgeType"},
    {0x300A00D4, SH, 1, "wedgeId"},
    {0x300A00D5, IS, 1, "wedgeAngle"},
    {0x300A00D6, DS, 1, "wedgeFactor"},
    {0x300A00D7, FL, 1, "totalWedgeTrayWaterEquivalentThickness"},
    {0x300A00D8, DS, 1, "wedgeOrientation"},
    {0x300A00D9, FL, 1, "isocenterToWedgeTrayDistance"},
    {0x300A00DA, DS, 1, "sourceToWedgeTrayDistance"},
    {0x300A00DB, FL, 1, "wedgeThinEdgePosition"},
    {0x300A00DC, SH, 1, "bolusId"},
    {0x300A00DD, ST, 1, "bolusDescription"},
    {0x300A00E0, IS, 1, "numberOfCompensators"},
    {0x300A00E1, SH, 1, "materialId"},
    {0x300A00E2, DS, 1, "totalCompensatorTrayFactor"},
    {0x300A00E3, SQ, 1, "compensatorSequence"},
    {0x300A00E4, IS, 1, "compensatorNumber"},
    {0x300A00E5, SH, 1, "compensatorId"},
    {0x300A00E6, DS, 1, "sourceToCompensatorTrayDistance"},
    {0x300A00E7, IS, 1, "compensatorRows"},
    {0x300A00E8, IS, 1, "compensatorColumns"},
    {0x300A00E9, DS, 2, "compensatorPixelSpacing"},
    {0x300A00EA, DS, 2, "compensatorPosition"},
    {0x300A00EB, DS, 0, "compensatorTransmissionData"},
    {0x300A00EC, DS, 0, "compensatorThicknessData"},
    {0x300A00ED, IS, 1, "numberOfBoli"},
    {0x300A00EE, CS, 1, "compensatorType"},
    {0x300A00F0, IS, 1, "numberOfBlocks"},
    {0x300A00F2, DS, 1, "totalBlockTrayFactor"},
    {0x300A00F3, FL, 1, "totalBlockTrayWaterEquivalentThickness"},
    {0x300A00F4, SQ, 1, "blockSequence"},
    {0x300A00F5, SH, 1, "blockTrayId"},
    {0x300A00F6, DS, 1, "sourceToBlockTrayDistance"},
    {0x300A00F7, FL, 1, "isocenterToBlockTrayDistance"},
    {0x300A00F8, CS, 1, "blockType"},
    {0x300A00F9, LO, 1, "accessoryCode"},
    {0x300A00FA, CS, 1, "blockDivergence"},
    {0x300A00FB, CS, 1, "blockMountingPosition"},
    {0x300A00FC, IS, 1, "blockNumber"},
    {0x300A00FE, LO, 1, "blockName"},
    {0x300A0100, DS, 1, "blockThickness"},
    {0x300A0102, DS, 1, "blockTransmission"},
    {0x300A0104, IS, 1, "blockNumberOfPoints"},
    {0x300A0106, DS, 0, "blockData"},
    {0x300A0107, SQ, 1, "applicatorSequence"},
    {0x300A0108, SH, 1, "applicatorId"},
    {0x300A0109, CS, 1, "applicatorType"},
    {0x300A010A, LO, 1, "applicatorDescription"},
    {0x300A010C, DS, 1, "cumulativeDoseReferenceCoefficient"},
    {0x300A010E, DS, 1, "finalCumulativeMetersetWeight"},
    {0x300A0110, IS, 1, "numberOfControlPoints"},
    {0x300A0111, SQ, 1, "controlPointSequence"},
    {0x300A0112, IS, 1, "controlPointIndex"},
    {0x300A0114, DS, 1, "nominalBeamEnergy"},
    {0x300A0115, DS, 1, "doseRateSet"},
    {0x300A0116, SQ, 1, "wedgePositionSequence"},
    {0x300A0118, CS, 1, "wedgePosition"},
    {0x300A011A, SQ, 1, "beamLimitingDevicePositionSequence"},
    {0x300A011C, DS, 0, "leafJawPositions"},
    {0x300A011E, DS, 1, "gantryAngle"},
    {0x300A011F, CS, 1, "gantryRotationDirection"},
    {0x300A0120, DS, 1, "beamLimitingDeviceAngle"},
    {0x300A0121, CS, 1, "beamLimitingDeviceRotationDirection"},
    {0x300A0122, DS, 1, "patientSupportAngle"},
    {0x300A0123, CS, 1, "patientSupportRotationDirection"},
    {0x300A0124, DS, 1, "tableTopEccentricAxisDistance"},
    {0x300A0125, DS, 1, "tableTopEccentricAngle"},
    {0x300A0126, CS, 1, "tableTopEccentricRotationDirection"},
    {0x300A0128, DS, 1, "tableTopVerticalPosition"},
    {0x300A0129, DS, 1, "tableTopLongitudinalPosition"},
    {0x300A012A, DS, 1, "tableTopLateralPosition"},
    {0x300A012C, DS, 3, "isocenterPosition"},
    {0x300A012E, DS, 3, "surfaceEntryPoint"},
    {0x300A0130, DS, 1, "sourceToSurfaceDistance"},
    {0x300A0134, DS, 1, "cumulativeMetersetWeight"},
    {0x300A0140, FL, 1, "tableTopPitchAngle"},
    {0x300A0142, CS, 1, "tableTopPitchRotationDirection"},
    {0x300A0144, FL, 1, "tableTopRollAngle"},
    {0x300A0146, CS, 1, "tableTopRollRotationDirection"},
    {0x300A0148, FL, 1, "headFixationAngle"},
    {0x300A014A, FL, 1, "gantryPitchAngle"},
    {0x300A014C, CS, 1, "gantryPitchRotationDirection"},
    {0x300A014E, FL, 1, "gantryPitchAngleTolerance"},
    {0x300A0180, SQ, 1, "patientSetupSequence"},
    {0x300A0182, IS, 1, "patientSetupNumber"},
    {0x300A0183, LO, 1, "patientSetupLabel"},
    {0x300A0184, LO, 1, "patientAdditionalPosition"},
    {0x300A0190, SQ, 1, "fixationDeviceSequence"},
    {0x300A0192, CS, 1, "fixationDeviceType"},
    {0x300A0194, SH, 1, "fixationDeviceLabel"},
    {0x300A0196, ST, 1, "fixationDeviceDescription"},
    {0x300A0198, SH, 1, "fixationDevicePosition"},
    {0x300A0199, FL, 1, "fixationDevicePitchAngle"},
    {0x300A019A, FL, 1, "fixationDeviceRollAngle"},
    {0x300A01A0, SQ, 1, "shieldingDeviceSequence"},
    {0x300A01A2, CS, 1, "shieldingDeviceType"},
    {0x300A01A4, SH, 1, "shieldingDeviceLabel"},
    {0x300A01A6, ST, 1, "shieldingDeviceDescription"},
    {0x300A01A8, SH, 1, "shieldingDevicePosition"},
    {0x300A01B0, CS, 1, "setupTechnique"},
    {0x300A01B2, ST, 1, "setupTechniqueDescription"},
    {0x300A01B4, SQ, 1, "setupDeviceSequence"},
    {0x300A01B6, CS, 1, "setupDeviceType"},
    {0x300A01B8, SH, 1, "setupDeviceLabel"},
    {0x300A01BA, ST, 1, "setupDeviceDescription"},
    {0x300A01BC, DS, 1, "setupDeviceParameter"},
    {0x300A01D0, ST, 1, "setupReferenceDescription"},
    {0x300A01D2, DS, 1, "tableTopVerticalSetupDisplacement"},
    {0x300A01D4, DS, 1, "tableTopLongitudinalSetupDisplacement"},
    {0x300A01D6, DS, 1, "tableTopLateralSetupDisplacement"},
    {0x300A0200, CS, 1, "brachyTreatmentTechnique"},
    {0x300A0202, CS, 1, "brachyTreatmentType"},
    {0x300A0206, SQ, 1, "treatmentMachineSequence"},
    {0x300A0210, SQ, 1, "sourceSequence"},
    {0x300A0212, IS, 1, "sourceNumber"},
    {0x300A0214, CS, 1, "sourceType"},
    {0x300A0216, LO, 1, "sourceManufacturer"},
    {0x300A0218, DS, 1, "activeSourceDiameter"},
    {0x300A021A, DS, 1, "activeSourceLength"},
    {0x300A0222, DS, 1, "sourceEncapsulationNominalThickness"},
    {0x300A0224, DS, 1, "sourceEncapsulationNominalTransmission"},
    {0x300A0226, LO, 1, "sourceIsotopeName"},
    {0x300A0228, DS, 1, "sourceIsotopeHalfLife"},
    {0x300A0229, CS, 1, "sourceStrengthUnits"},
    {0x300A022A, DS, 1, "referenceAirKermaRate"},
    {0x300A022B, DS, 1, "sourceStrength"},
    {0x300A022C, DA, 1, "sourceStrengthReferenceDate"},
    {0x300A022E, TM, 1, "sourceStrengthReferenceTime"},
    {0x300A0230, SQ, 1, "applicationSetupSequence"},
    {0x300A0232, CS, 1, "applicationSetupType"},
    {0x300A0234, IS, 1, "applicationSetupNumber"},
    {0x300A0236, LO, 1, "applicationSetupName"},
    {0x300A0238, LO, 1, "applicationSetupManufacturer"},
    {0x300A0240, IS, 1, "templateNumber"},
    {0x300A0242, SH, 1, "templateType"},
    {0x300A0244, LO, 1, "templateName"},
    {0x300A0250, DS, 1, "totalReferenceAirKerma"},
    {0x300A0260, SQ, 1, "brachyAccessoryDeviceSequence"},
    {0x300A0262, IS, 1, "brachyAccessoryDeviceNumber"},
    {0x300A0263, SH, 1, "brachyAccessoryDeviceId"},
    {0x300A0264, CS, 1, "brachyAccessoryDeviceType"},
    {0x300A0266, LO, 1, "brachyAccessoryDeviceName"},
    {0x300A026A, DS, 1, "brachyAccessoryDeviceNominalThickness"},
    {0x300A026C, DS, 1, "brachyAccessoryDeviceNominalTransmission"},
    {0x300A0280, SQ, 1, "channelSequence"},
    {0x300A0282, IS, 1, "channelNumber"},
    {0x300A0284, DS, 1, "channelLength"},
    {0x300A0286, DS, 1, "channelTotalTime"},
    {0x300A0288, CS, 1, "sourceMovementType"},
    {0x300A028A, IS, 1, "numberOfPulses"},
    {0x300A028C, DS, 1, "pulseRepetitionInterval"},
    {0x300A0290, IS, 1, "sourceApplicatorNumber"},
    {0x300A0291, SH, 1, "sourceApplicatorId"},
    {0x300A0292, CS, 1, "sourceApplicatorType"},
    {0x300A0294, LO, 1, "sourceApplicatorName"},
    {0x300A0296, DS, 1, "sourceApplicatorLength"},
    {0x300A0298, LO, 1, "sourceApplicatorManufacturer"},
    {0x300A029C, DS, 1, "sourceApplicatorWallNominalThickness"},
    {0x300A029E, DS, 1, "sourceApplicatorWallNominalTransmission"},
    {0x300A02A0, DS, 1, "sourceApplicatorStepSize"},
    {0x300A02A2, IS, 1, "transferTubeNumber"},
    {0x300A02A4, DS, 1, "transferTubeLength"},
    {0x300A02B0, SQ, 1, "channelShieldSequence"},
    {0x300A02B2, IS, 1, "channelShieldNumber"},
    {0x300A02B3, SH, 1, "channelShieldId"},
    {0x300A02B4, LO, 1, "channelShieldName"},
    {0x300A02B8, DS, 1, "channelShieldNominalThickness"},
    {0x300A02BA, DS, 1, "channelShieldNominalTransmission"},
    {0x300A02C8, DS, 1, "finalCumulativeTimeWeight"},
    {0x300A02D0, SQ, 1, "brachyControlPointSequence"},
    {0x300A02D2, DS, 1, "controlPointRelativePosition"},
    {0x300A02D4, DS, 3, "controlPoint3dPosition"},
    {0x300A02D6, DS, 1, "cumulativeTimeWeight"},
    {0x300A02E0, CS, 1, "compensatorDivergence"},
    {0x300A02E1, CS, 1, "compensatorMountingPosition"},
    {0x300A02E2, DS, 0, "sourceToCompensatorDistance"},
    {0x300A02E3, FL, 1, "totalCompensatorTrayWaterEquivalentThickness"},
    {0x300A02E4, FL, 1, "isocenterToCompensatorTrayDistance"},
    {0x300A02E5, FL, 1, "compensatorColumnOffset"},
    {0x300A02E6, FL, 0, "isocenterToCompensatorDistances"},
    {0x300A02E7, FL, 1, "compensatorRelativeStoppingPowerRatio"},
    {0x300A02E8, FL, 1, "compensatorMillingToolDiameter"},
    {0x300A02EA, SQ, 1, "ionRangeCompensatorSequence"},
    {0x300A02EB, LT, 1, "compensatorDescription"},
    {0x300A0302, IS, 1, "radiationMassNumber"},
    {0x300A0304, IS, 1, "radiationAtomicNumber"},
    {0x300A0306, SS, 1, "radiationChargeState"},
    {0x300A0308, CS, 1, "scanMode"},
    {0x300A030A, FL, 2, "virtualSourceAxisDistances"},
    {0x300A030C, SQ, 1, "snoutSequence"},
    {0x300A030D, FL, 1, "snoutPosition"},
    {0x300A030F, SH, 1, "snoutId"},
    {0x300A0312, IS, 1, "numberOfRangeShifters"},
    {0x300A0314, SQ, 1, "rangeShifterSequence"},
    {0x300A0316, IS, 1, "rangeShifterNumber"},
    {0x300A0318, SH, 1, "rangeShifterId"},
    {0x300A0320, CS, 1, "rangeShifterType"},
    {0x300A0322, LO, 1, "rangeShifterDescription"},
    {0x300A0330, IS, 1, "numberOfLateralSpreadingDevices"},
    {0x300A0332, SQ, 1, "lateralSpreadingDeviceSequence"},
    {0x300A0334, IS, 1, "lateralSpreadingDeviceNumber"},
    {0x300A0336, SH, 1, "lateralSpreadingDeviceId"},
    {0x300A0338, CS, 1, "lateralSpreadingDeviceType"},
    {0x300A033A, LO, 1, "lateralSpreadingDeviceDescription"},
    {0x300A033C, FL, 1, "lateralSpreadingDeviceWaterEquivalentThickness"},
    {0x300A0340, IS, 1, "numberOfRangeModulators"},
    {0x300A0342, SQ, 1, "rangeModulatorSequence"},
    {0x300A0344, IS, 1, "rangeModulatorNumber"},
    {0x300A0346, SH, 1, "rangeModulatorId"},
    {0x300A0348, CS, 1, "rangeModulatorType"},
    {0x300A034A, LO, 1, "rangeModulatorDescription"},
    {0x300A034C, SH, 1, "beamCurrentModulationId"},
    {0x300A0350, CS, 1, "patientSupportType"},
    {0x300A0352, SH, 1, "patientSupportId"},
    {0x300A0354, LO, 1, "patientSupportAccessoryCode"},
    {0x300A0356, FL, 1, "fixationLightAzimuthalAngle"},
    {0x300A0358, FL, 1, "fixationLightPolarAngle"},
    {0x300A035A, FL, 1, "metersetRate"},
    {0x300A0360, SQ, 1, "rangeShifterSettingsSequence"},
    {0x300A0362, LO, 1, "rangeShifterSetting"},
    {0x300A0364, FL, 1, "isocenterToRangeShifterDistance"},
    {0x300A0366, FL, 1, "rangeShifterWaterEquivalentThickness"},
    {0x300A0370, SQ, 1, "lateralSpreadingDeviceSettingsSequence"},
    {0x300A0372, LO, 1, "lateralSpreadingDeviceSetting"},
    {0x300A0374, FL, 1, "isocenterToLateralSpreadingDeviceDistance"},
    {0x300A0380, SQ, 1, "rangeModulatorSettingsSequence"},
    {0x300A0382, FL, 1, "rangeModulatorGatingStartValue"},
    {0x300A0384, FL, 1, "rangeModulatorGatingStopValue"},
    {0x300A0386, FL, 1, "rangeModulatorGatingStartWaterEquivalentThickness"},
    {0x300A0388, FL, 1, "rangeModulatorGatingStopWaterEquivalentThickness"},
    {0x300A038A, FL, 1, "isocenterToRangeModulatorDistance"},
    {0x300A0390, SH, 1, "scanSpotTuneId"},
    {0x300A0392, IS, 1, "numberOfScanSpotPositions"},
    {0x300A0394, FL, 0, "scanSpotPositionMap"},
    {0x300A0396, FL, 0, "scanSpotMetersetWeights"},
    {0x300A0398, FL, 2, "scanningSpotSize"},
    {0x300A039A, IS, 1, "numberOfPaintings"},
    {0x300A03A0, SQ, 1, "ionToleranceTableSequence"},
    {0x300A03A2, SQ, 1, "ionBeamSequence"},
    {0x300A03A4, SQ, 1, "ionBeamLimitingDeviceSequence"},
    {0x300A03A6, SQ, 1, "ionBlockSequence"},
    {0x300A03A8, SQ, 1, "ionControlPointSequence"},
    {0x300A03AA, SQ, 1, "ionWedgeSequence"},
    {0x300A03AC, SQ, 1, "ionWedgePositionSequence"},
    {0x300A0401, SQ, 1, "referencedSetupImageSequence"},
    {0x300A0402, ST, 1, "setupImageComment"},
    {0x300A0410, SQ, 1, "motionSynchronizationSequence"},
    {0x300A0412, FL, 3, "controlPointOrientation"},
    {0x300A0420, SQ, 1, "generalAccessorySequence"},
    {0x300A0421, CS, 1, "generalAccessoryId"},
    {0x300A0422, ST, 1, "generalAccessoryDescription"},
    {0x300A0423, SH, 1, "generalAccessoryType"},
    {0x300A0424, IS, 1, "generalAccessoryNumber"},
    {0x300C0002, SQ, 1, "referencedRtPlanSequence"},
    {0x300C0004, SQ, 1, "referencedBeamSequence"},
    {0x300C0006, IS, 1, "referencedBeamNumber"},
    {0x300C0007, IS, 1, "referencedReferenceImageNumber"},
    {0x300C0008, DS, 1, "startCumulativeMetersetWeight"},
    {0x300C0009, DS, 1, "endCumulativeMetersetWeight"},
    {0x300C000A, SQ, 1, "referencedBrachyApplicationSetupSequence"},
    {0x300C000C, IS, 1, "referencedBrachyApplicationSetupNumber"},
    {0x300C000E, IS, 1, "referencedSourceNumber"},
    {0x300C0020, SQ, 1, "referencedFractionGroupSequence"},
    {0x300C0022, IS, 1, "referencedFractionGroupNumber"},
    {0x300C0040, SQ, 1, "referencedVerificationImageSequence"},
    {0x300C0042, SQ, 1, "referencedReferenceImageSequence"},
    {0x300C0050, SQ, 1, "referencedDoseReferenceSequence"},
    {0x300C0051, IS, 1, "referencedDoseReferenceNumber"},
    {0x300C0055, SQ, 1, "brachyReferencedDoseReferenceSequence"},
    {0x300C0060, SQ, 1, "referencedStructureSetSequence"},
    {0x300C006A, IS, 1, "referencedPatientSetupNumber"},
    {0x300C0080, SQ, 1, "referencedDoseSequence"},
    {0x300C00A0, IS, 1, "referencedToleranceTableNumber"},
    {0x300C00B0, SQ, 1, "referencedBolusSequence"},
    {0x300C00C0, IS, 1, "referencedWedgeNumber"},
    {0x300C00D0, IS, 1, "referencedCompensatorNumber"},
    {0x300C00E0, IS, 1, "referencedBlockNumber"},
    {0x300C00F0, IS, 1, "referencedControlPointIndex"},
    {0x300C00F2, SQ, 1, "referencedControlPointSequence"},
    {0x300C00F4, IS, 1, "referencedStartControlPointIndex"},
    {0x300C00F6, IS, 1, "referencedStopControlPointIndex"},
    {0x300C0100, IS, 1, "referencedRangeShifterNumber"},
    {0x300C0102, IS, 1, "referencedLateralSpreadingDeviceNumber"},
    {0x300C0104, IS, 1, "referencedRangeModulatorNumber"},
    {0x300E0002, CS, 1, "approvalStatus"},
    {0x300E0004, DA, 1, "reviewDate"},
    {0x300E0005, TM, 1, "reviewTime"},
    {0x300E0008, PN, 1, "reviewerName"},
    {0x40000010, LT, 1, "arbitrary"},
    {0x40004000, LT, 1, "textComments"},
    {0x40080040, SH, 1, "resultsId"},
    {0x40080042, LO, 1, "resultsIdIssuer"},
    {0x40080050, SQ, 1, "referencedInterpretationSequence"},
    {0x40080100, DA, 1, "interpretationRecordedDate"},
    {0x40080101, TM, 1, "interpretationRecordedTime"},
    {0x40080102, PN, 1, "interpretationRecorder"},
    {0x40080103, LO, 1, "referenceToRecordedSound"},
    {0x40080108, DA, 1, "interpretationTranscriptionDate"},
    {0x40080109, TM, 1, "interpretationTranscriptionTime"},
    {0x4008010A, PN, 1, "interpretationTranscriber"},
    {0x4008010B, ST, 1, "interpretationText"},
    {0x4008010C, PN, 1, "interpretationAuthor"},
    {0x40080111, SQ, 1, "interpretationApproverSequence"},
    {0x40080112, DA, 1, "interpretationApprovalDate"},
    {0x40080113, TM, 1, "interpretationApprovalTime"},
    {0x40080114, PN, 1, "physicianApprovingInterpretation"},
    {0x40080115, LT, 1, "interpretationDiagnosisDescription"},
    {0x40080117, SQ, 1, "interpretationDiagnosisCodeSequence"},
    {0x40080118, SQ, 1, "resultsDistributionListSequence"},
    {0x40080119, PN, 1, "distributionName"},
    {0x4008011A, LO, 1, "distributionAddress"},
    {0x40080200, SH, 1, "interpretationId"},
    {0x40080202, LO, 1, "interpretationIdIssuer"},
    {0x40080210, CS, 1, "interpretationTypeId"},
    {0x40080212, CS, 1, "interpretationStatusId"},
    {0x40080300, ST, 1, "impressions"},
    {0x40084000, ST, 1, "resultsComments"},
    {0x4FFE0001, SQ, 1, "macParametersSequence"},
    {0x50FF0005, US, 1, "curveDimensions"},
    {0x50FF0010, US, 1, "numberOfPoints"},
    {0x50FF0020, CS, 1, "typeOfData"},
    {0x50FF0022, LO, 1, "curveDescription"},
    {0x50FF0030, SH, 0, "axisUnits"},
    {0x50FF0040, SH, 0, "axisLabels"},
    {0x50FF0103, US, 1, "dataValueRepresentation"},
    {0x50FF0104, US, 0, "minimumCoordinateValue"},
    {0x50FF0105, US, 0, "maximumCoordinateValue"},
    {0x50FF0106, SH, 0, "curveRange"},
    {0x50FF0110, US, 0, "curveDataDescriptor"},
    {0x50FF0112, US, 0, "coordinateStartValue"},
    {0x50FF0114, US, 0, "coordinateStepValue"},
    {0x50FF1001, CS, 1, "curveActivationLayer"},
    {0x50FF2000, US, 1, "audioType"},
    {0x50FF2002, US, 1, "audioSampleFormat"},
    {0x50FF2004, US, 1, "numberOfChannels"},
    {0x50FF2006, UL, 1, "numberOfSamples"},
    {0x50FF2008, UL, 1, "sampleRate"},
    {0x50FF200A, UL, 1, "totalTime"},
    {0x50FF200C, OW, 1, "audioSampleData"},
    {0x50FF200E, LT, 1, "audioComments"},
    {0x50FF2500, LO, 1, "curveLabel"},
    {0x50FF2600, SQ, 1, "curveReferencedOverlaySequence"},
    {0x50FF2610, US, 1, "curveReferencedOverlayGroup"},
    {0x50FF3000, OW, 1, "curveData"},
    {0x52009229, SQ, 1, "sharedFunctionalGroupsSequence"},
    {0x52009230, SQ, 1, "perFrameFunctionalGroupsSequence"},
    {0x54000100, SQ, 1, "waveformSequence"},
    {0x54000110, OX, 1, "channelMinimumValue"},
    {0x54000112, OX, 1, "channelMaximumValue"},
    {0x54001004, US, 1, "waveformBitsAllocated"},
    {0x54001006, CS, 1, "waveformSampleInterpretation"},
    {0x5400100A, OX, 1, "waveformPaddingValue"},
    {0x54001010, OX, 1, "waveformData"},
    {0x56000010, OF, 1, "firstOrderPhaseCorrectionAngle"},
    {0x56000020, OF, 1, "spectroscopyData"},
    {0x60FF0010, US, 1, "overlayRows"},
    {0x60FF0011, US, 1, "overlayColumns"},
    {0x60FF0012, US, 1, "overlayPlanes"},
    {0x60FF0015, IS, 1, "numberOfFramesInOverlay"},
    {0x60FF0022, LO, 1, "overlayDescription"},
    {0x60FF0040, CS, 1, "overlayType"},
    {0x60FF0045, LO, 1, "overlaySubtype"},
    {0x60FF0050, SS, 2, "overlayOrigin"},
    {0x60FF0051, US, 1, "imageFrameOrigin"},
    {0x60FF0052, US, 1, "overlayPlaneOrigin"},
    {0x60FF0060, CS, 1, "overlayCompressionCode"},
    {0x60FF0061, SH, 1, "overlayCompressionOriginator"},
    {0x60FF0062, SH, 1, "overlayCompressionLabel"},
    {0x60FF0063, CS, 1, "overlayCompressionDescription"},
    {0x60FF0066, AT, 0, "overlayCompressionStepPointers"},
    {0x60FF0068, US, 1, "overlayRepeatInterval"},
    {0x60FF0069, US, 1, "overlayBitsGrouped"},
    {0x60FF0100, US, 1, "overlayBitsAllocated"},
    {0x60FF0102, US, 1, "overlayBitPosition"},
    {0x60FF0110, CS, 1, "overlayFormat"},
    {0x60FF0200, US, 1, "overlayLocation"},
    {0x60FF0800, CS, 0, "overlayCodeLabel"},
    {0x60FF0802, US, 1, "overlayNumberOfTables"},
    {0x60FF0803, AT, 0, "overlayCodeTableLocation"},
    {0x60FF0804, US, 1, "overlayBitsForCodeWord"},
    {0x60FF1001, CS, 1, "overlayActivationLayer"},
    {0x60FF1100, US, 1, "overlayDescriptorGray"},
    {0x60FF1101, US, 1, "overlayDescriptorRed"},
    {0x60FF1102, US, 1, "overlayDescriptorGreen"},
    {0x60FF1103, US, 1, "overlayDescriptorBlue"},
    {0x60FF1200, US, 0, "overlaysGray"},
    {0x60FF1201, US, 0, "overlaysRed"},
    {0x60FF1202, US, 0, "overlaysGreen"},
    {0x60FF1203, US, 0, "overlaysBlue"},
    {0x60FF1301, IS, 1, "roiArea"},
    {0x60FF1302, DS, 1, "roiMean"},
    {0x60FF1303, DS, 1, "roiStandardDeviation"},
    {0x60FF1500, LO, 1, "overlayLabel"},
    {0x60FF3000, OW, 1, "overlayData"},
    {0x60FF4000, LT, 1, "overlayComments"},
    {0x7FE00010, OX, 1, "pixelData"},
    {0xFFFAFFFA, SQ, 1, "digitalSignaturesSequence"},
    {0xFFFCFFFC, OB, 1, "dataSetTrailingPadding"},
    {0xFFFEE000, SI, 1, "item"},
    {0xFFFEE00D, SI, 1, "itemDelimitationItem"},
    {0xFFFEE0DD, SI, 1, "sequenceDelimitationItem"},
}};

constexpr char kElementNames[] =
    "Command Group Length"
    "Command Length to End"
    "Affected SOP Class UID"
    "Requested SOP Class UID"
    "Command Recognition Code"
    "Command Field"
    "Message ID"
    "Message ID Being Responded To"
    "Move Destination"
    "Priority"
    "Command Data Set Type"
    "Status"
    "Offending Element"
    "Error Comment"
    "Error ID"
    "Affected SOP Instance UID"
    "Requested SOP Instance UID"
    "Event Type ID"
    "Attribute Identifier List"
    "Action Type ID"
    "Number of Remaining Sub-operations"
    "Number of Completed Sub-operations"
    "Number of Failed Sub-operations"
    "Number of Warning Sub-operations"
    "Move Originator Application Entity Title"
    "Move Originator Message ID"
    "File Meta Information Version"
    "Media Storage SOP Class UID"
    "Media Storage SOP Instance UID"
    "Transfer Syntax UID"
    "Implementation Class UID"
    "Implementation Version Name"
    "Source Application Entity Title"
    "Private Information Creator UID"
    "Private Information"
    "File-set ID"
    "File-set Descriptor File ID"
    "Specific Character Set of File-set Descriptor File"
    "Offset of the First Directory Record of the Root Directory Entity"
    "Offset of the Last Directory Record of the Root Directory Entity"
    "File-set Consistency Flag"
    "Directory Record Sequence"
    "Offset of the Next Directory Record"
    "Record In-use Flag"
    "Offset of Referenced Lower-Level Directory Entity"
    "Directory Record Type"
    "Private Record UID"
    "Referenced File ID"
    "MRDR Directory Record Offset"
    "Referenced SOP Class UID in File"
    "Referenced SOP Instance UID in File"
    "Referenced Transfer Syntax UID in File"
    "Referenced Related General SOP Class UID in File"
    "Number of References"
    "Length to End"
    "Specific Character Set"
    "Image Type"
    "Recognition Code"
    "Instance Creation Date"
    "Instance Creation Time"
    "Instance Creator UID"
    "SOP Class UID"
    "SOP Instance UID"
    "Related General SOP Class UID"
    "Original Specialized SOP Class UID"
    "Study Date"
    "Series Date"
    "Acquisition Date"
    "Content Date"
    "Overlay Date"
    "Curve Date"
    "Acquisition DateTime"
    "Study Time"
    "Series Time"
    "Acquisition Time"
    "Content Time"
    "Overlay Time"
    "Curve Time"
    "Data Set Type"
    "Data Set Subtype"
    "Nuclear Medicine Series Type"
    "Accession Number"
    "Query/Retrieve Level"
    "Retrieve AE Title"
    "Instance Availability"
    "Failed SOP Instance UID List"
    "Modality"
    "Modalities in Study"
    "SOP Classes in Study"
    "Conversion Type"
    "Presentation Intent Type"
    "Manufacturer"
    "Institution Name"
    "Institution Address"
    "Institution Code Sequence"
    "Referring Physician's Name"
    "Referring Physician's Address"
    "Referring Physician's Telephone Numbers"
    "Referring Physician Identification Sequence"
    "Code Value"
    "Coding Scheme Designator"
    "Coding Scheme Version"
    "Code Meaning"
    "Mapping Resource"
    "Context Group Version"
    "Context Group Local Version"
    "Context Group Extension Flag"
    "Coding Scheme UID"
    "Context Group Extension Creator UID"
    "Context Identifier"
    "Coding Scheme Identification Sequence"
    "Coding Scheme Registry"
    "Coding Scheme External ID"
    "Coding Scheme Name"
    "Coding Scheme Responsible Organization"
    "Timezone Offset From UTC"
    "Network ID"
    "Station Name"
    "Study Description"
    "Procedure Code Sequence"
    "Series Description"
    "Institutional Department Name"
    "Physician(s) of Record"
    "Physician(s) of Record Identification Sequence"
    "Performing Physician's Name"
    "Performing Physician Identification Sequence"
    "Name of Physician(s) Reading Study"
    "Physician(s) Reading Study Identification Sequence"
    "Operators' Name"
    "Operator Identification Sequence"
    "Admitting Diagnoses Description"
    "Admitting Diagnoses Code Sequence"
    "Manufacturer's Model Name"
    "Referenced Results Sequence"
    "Referenced Study Sequence"
    "Referenced Performed Procedure Step Sequence"
    "Referenced Series Sequence"
    "Referenced Patient Sequence"
    "Referenced Visit Sequence"
    "Referenced Overlay Sequence"
    "Referenced Waveform Sequence"
    "Referenced Image Sequence"
    "Referenced Curve Sequence"
    "Referenced Instance Sequence"
    "Referenced Real World Value Mapping Instance Sequence"
    "Referenced SOP Class UID"
    "Referenced SOP Instance UID"
    "SOP Classes Supported"
    "Referenced Frame Number"
    "Transaction UID"
    "Failure Reason"
    "Failed SOP Sequence"
    "Referenced SOP Sequence"
    "Studies Containing Other Referenced Instances Sequence"
    "Related Series Sequence"
    "Lossy Image Compression (Retired)"
    "Derivation Description"
    "Source Image Sequence"
    "Stage Name"
    "Stage Number"
    "Number of Stages"
    "View Name"
    "View Number"
    "Number of Event Timers"
    "Number of Views in Stage"
    "Event Elapsed Time(s)"
    "Event Timer Name(s)"
    "Start Trim"
    "Stop Trim"
    "Recommended Display Frame Rate"
    "Transducer Position"
    "Transducer Orientation"
    "Anatomic Structure"
    "Anatomic Region Sequence"
    "Anatomic Region Modifier Sequence"
    "Primary Anatomic Structure Sequence"
    "Anatomic Structure, Space or Region Sequence"
    "Primary Anatomic Structure Modifier Sequence"
    "Transducer Position Sequence"
    "Transducer Position Modifier Sequence"
    "Transducer Orientation Sequence"
    "Transducer Orientation Modifier Sequence"
    "Anatomic Structure Space Or Region Code Sequence (Trial)"
    "Anatomic Portal Of Entrance Code Sequence (Trial)"
    "Anatomic Approach Direction Code Sequence (Trial)"
    "Anatomic Perspective Description (Trial)"
    "Anatomic Perspective Code Sequence (Trial)"
    "Anatomic Location Of Examining Instrument Description (Trial)"
    "Anatomic Location Of Examining Instrument Code Sequence (Trial)"
    "Anatomic Structure Space Or Region Modifier Code Sequence (Trial)"
    "OnAxis Background Anatomic Structure Code Sequence (Trial)"
    "Alternate Representation Sequence"
    "Irradiation Event UID"
    "Identifying Comments"
    "Frame Type"
    "Referenced Image Evidence Sequence"
    "Referenced Raw Data Sequence"
    "Creator-Version UID"
    "Derivation Image Sequence"
    "Source Image Evidence Sequence"
    "Pixel Presentation"
    "Volumetric Properties"
    "Volume Based Calculation Technique"
    "Complex Image Component"
    "Acquisition Contrast"
    "Derivation Code Sequence"
    "Referenced Grayscale Presentation State Sequence"
    "Referenced Other Plane Sequence"
    "Frame Display Sequence"
    "Recommended Display Frame Rate in Float"
    "Skip Frame Range Flag"
    "Patient's Name"
    "Patient ID"
    "Issuer of Patient ID"
    "Type of Patient ID"
    "Patient's Birth Date"
    "Patient's Birth Time"
    "Patient's Sex"
    "Patient's Insurance Plan Code Sequence"
    "Patient's Primary Language Code Sequence"
    "Patient's Primary Language Code Modifier Sequence"
    "Other Patient IDs"
    "Other Patient Names"
    "Other Patient IDs Sequence"
    "Patient's Birth Name"
    "Patient's Age"
    "Patient's Size"
    "Patient's Weight"
    "Patient's Address"
    "Insurance Plan Identification"
    "Patient's Mother's Birth Name"
    "Military Rank"
    "Branch of Service"
    "Medical Record Locator"
    "Medical Alerts"
    "Allergies"
    "Country of Residence"
    "Region of Residence"
    "Patient's Telephone Numbers"
    "Ethnic Group"
    "Occupation"
    "Smoking Status"
    "Additional Patient History"
    "Pregnancy Status"
    "Last Menstrual Date"
    "Patient's Religious Preference"
    "Patient Species Description"
    "Patient Species Code Sequence"
    "Patient's Sex Neutered"
    "Patient Breed Description"
    "Patient Breed Code Sequence"
    "Breed Registration Sequence"
    "Breed Registration Number"
    "Breed Registry Code Sequence"
    "Responsible Person"
    "Responsible Person Role"
    "Responsible Organization"
    "Patient Comments"
    "Examined Body Thickness"
    "Clinical Trial Sponsor Name"
    "Clinical Trial Protocol ID"
    "Clinical Trial Protocol Name"
    "Clinical Trial Site ID"
    "Clinical Trial Site Name"
    "Clinical Trial Subject ID"
    "Clinical Trial Subject Reading ID"
    "Clinical Trial Time Point ID"
    "Clinical Trial Time Point Description"
    "Clinical Trial Coordinating Center Name"
    "Patient Identity Removed"
    "De-identification Method"
    "De-identification Method Code Sequence"
    "Clinical Trial Series ID"
    "Clinical Trial Series Description"
    "Contrast/Bolus Agent"
    "Contrast/Bolus Agent Sequence"
    "Contrast/Bolus Administration Route Sequence"
    "Body Part Examined"
    "Scanning Sequence"
    "Sequence Variant"
    "Scan Options"
    "MR Acquisition Type"
    "Sequence Name"
    "Angio Flag"
    "Intervention Drug Information Sequence"
    "Intervention Drug Stop Time"
    "Intervention Drug Dose"
    "Intervention Drug Sequence"
    "Additional Drug Sequence"
    "Radionuclide"
    "Radiopharmaceutical"
    "Energy Window Centerline"
    "Energy Window Total Width"
    "Intervention Drug Name"
    "Intervention Drug Start Time"
    "Intervention Sequence"
    "Therapy Type"
    "Intervention Status"
    "Therapy Description"
    "Intervention Description"
    "Cine Rate"
    "Slice Thickness"
    "KVP"
    "Counts Accumulated"
    "Acquisition Termination Condition"
    "Effective Duration"
    "Acquisition Start Condition"
    "Acquisition Start Condition Data"
    "Acquisition Termination Condition Data"
    "Repetition Time"
    "Echo Time"
    "Inversion Time"
    "Number of Averages"
    "Imaging Frequency"
    "Imaged Nucleus"
    "Echo Number(s)"
    "Magnetic Field Strength"
    "Spacing Between Slices"
    "Number of Phase Encoding Steps"
    "Data Collection Diameter"
    "Echo Train Length"
    "Percent Sampling"
    "Percent Phase Field of View"
    "Pixel Bandwidth"
    "Device Serial Number"
    "Device UID"
    "Device ID"
    "Plate ID"
    "Generator ID"
    "Grid ID"
    "Cassette ID"
    "Gantry ID"
    "Secondary Capture Device ID"
    "Hardcopy Creation Device ID"
    "Date of Secondary Capture"
    "Time of Secondary Capture"
    "Secondary Capture Device Manufacturers"
    "Hardcopy Device Manufacturer"
    "Secondary Capture Device Manufacturer's Model Name"
    "Secondary Capture Device Software Version(s)"
    "Hardcopy Device Software Version"
    "Hardcopy Device Manufacturer's Model Name"
    "Software Version(s)"
    "Video Image Format Acquired"
    "Digital Image Format Acquired"
    "Protocol Name"
    "Contrast/Bolus Route"
    "Contrast/Bolus Volume"
    "Contrast/Bolus Start Time"
    "Contrast/Bolus Stop Time"
    "Contrast/Bolus Total Dose"
    "Syringe Counts"
    "Contrast Flow Rate"
    "Contrast Flow Duration"
    "Contrast/Bolus Ingredient"
    "Contrast/Bolus Ingredient Concentration"
    "Spatial Resolution"
    "Trigger Time"
    "Trigger Source or Type"
    "Nominal Interval"
    "Frame Time"
    "Cardiac Framing Type"
    "Frame Time Vector"
    "Frame Delay"
    "Image Trigger Delay"
    "Multiplex Group Time Offset"
    "Trigger Time Offset"
    "Synchronization Trigger"
    "Synchronization Channel"
    "Trigger Sample Position"
    "Radiopharmaceutical Route"
    "Radiopharmaceutical Volume"
    "Radiopharmaceutical Start Time"
    "Radiopharmaceutical Stop Time"
    "Radionuclide Total Dose"
    "Radionuclide Half Life"
    "Radionuclide Positron Fraction"
    "Radiopharmaceutical Specific Activity"
    "Radiopharmaceutical Start DateTime"
    "Radiopharmaceutical Stop DateTime"
    "Beat Rejection Flag"
    "Low R-R Value"
    "High R-R Value"
    "Intervals Acquired"
    "Intervals Rejected"
    "PVC Rejection"
    "Skip Beats"
    "Heart Rate"
    "Cardiac Number of Images"
    "Trigger Window"
    "Reconstruction Diameter"
    "Distance Source to Detector"
    "Distance Source to Patient"
    "Estimated Radiographic Magnification Factor"
    "Gantry/Detector Tilt"
    "Gantry/Detector Slew"
    "Table Height"
    "Table Traverse"
    "Table Motion"
    "Table Vertical Increment"
    "Table Lateral Increment"
    "Table Longitudinal Increment"
    "Table Angle"
    "Table Type"
    "Rotation Direction"
    "Angular Position"
    "Radial Position"
    "Scan Arc"
    "Angular Step"
    "Center of Rotation Offset"
    "Rotation Offset"
    "Field of View Shape"
    "Field of View Dimension(s)"
    "Exposure Time"
    "X-Ray Tube Current"
    "Exposure"
    "Exposure in µAs"
    "Average Pulse Width"
    "Radiation Setting"
    "Rectification Type"
    "Radiation Mode"
    "Image and Fluoroscopy Area Dose Product"
    "Filter Type"
    "Type of Filters"
    "Intensifier Size"
    "Imager Pixel Spacing"
    "Grid"
    "Generator Power"
    "Collimator/grid Name"
    "Collimator Type"
    "Focal Distance"
    "X Focus Center"
    "Y Focus Center"
    "Focal Spot(s)"
    "Anode Target Material"
    "Body Part Thickness"
    "Compression Force"
    "Date of Last Calibration"
    "Time of Last Calibration"
    "Convolution Kernel"
    "Upper/Lower Pixel Values"
    "Actual Frame Duration"
    "Count Rate"
    "Preferred Playback Sequencing"
    "Receive Coil Name"
    "Transmit Coil Name"
    "Plate Type"
    "Phosphor Type"
    "Scan Velocity"
    "Whole Body Technique"
    "Scan Length"
    "Acquisition Matrix"
    "In-plane Phase Encoding Direction"
    "Flip Angle"
    "Variable Flip Angle Flag"
    "SAR"
    "dB/dt"
    "Acquisition Device Processing Description"
    "Acquisition Device Processing Code"
    "Cassette Orientation"
    "Cassette Size"
    "Exposures on Plate"
    "Relative X-Ray Exposure"
    "Column Angulation"
    "Tomo Layer Height"
    "Tomo Angle"
    "Tomo Time"
    "Tomo Type"
    "Tomo Class"
    "Number of Tomosynthesis Source Images"
    "Positioner Motion"
    "Positioner Type"
    "Positioner Primary Angle"
    "Positioner Secondary Angle"
    "Positioner Primary Angle Increment"
    "Positioner Secondary Angle Increment"
    "Detector Primary Angle"
    "Detector Secondary Angle"
    "Shutter Shape"
    "Shutter Left Vertical Edge"
    "Shutter Right Vertical Edge"
    "Shutter Upper Horizontal Edge"
    "Shutter Lower Horizontal Edge"
    "Center of Circular Shutter"
    "Radius of Circular Shutter"
    "Vertices of the Polygonal Shutter"
    "Shutter Presentation Value"
    "Shutter Overlay Group"
    "Shutter Presentation Color CIELab Value"
    "Collimator Shape"
    "Collimator Left Vertical Edge"
    "Collimator Right Vertical Edge"
    "Collimator Upper Horizontal Edge"
    "Collimator Lower Horizontal Edge"
    "Center of Circular Collimator"
    "Radius of Circular Collimator"
    "Vertices of the Polygonal Collimator"
    "Acquisition Time Synchronized"
    "Time Source"
    "Time Distribution Protocol"
    "NTP Source Address"
    "Page Number Vector"
    "Frame Label Vector"
    "Frame Primary Angle Vector"
    "Frame Secondary Angle Vector"
    "Slice Location Vector"
    "Display Window Label Vector"
    "Nominal Scanned Pixel Spacing"
    "Digitizing Device Transport Direction"
    "Rotation of Scanned Film"
    "IVUS Acquisition"
    "IVUS Pullback Rate"
    "IVUS Gated Rate"
    "IVUS Pullback Start Frame Number"
    "IVUS Pullback Stop Frame Number"
    "Lesion Number"
    "Acquisition Comments"
    "Output Power"
    "Transducer Data"
    "Focus Depth"
    "Processing Function"
    "Postprocessing Function"
    "Mechanical Index"
    "Bone Thermal Index"
    "Cranial Thermal Index"
    "Soft Tissue Thermal Index"
    "Soft Tissue-focus Thermal Index"
    "Soft Tissue-surface Thermal Index"
    "Dynamic Range"
    "Total Gain"
    "Depth of Scan Field"
    "Patient Position"
    "View Position"
    "Projection Eponymous Name Code Sequence"
    "Image Transformation Matrix"
    "Image Translation Vector"
    "Sensitivity"
    "Sequence of Ultrasound Regions"
    "Region Spatial Format"
    "Region Data Type"
    "Region Flags"
    "Region Location Min X0"
    "Region Location Min Y0"
    "Region Location Max X1"
    "Region Location Max Y1"
    "Reference Pixel X0"
    "Reference Pixel Y0"
    "Physical Units X Direction"
    "Physical Units Y Direction"
    "Reference Pixel Physical Value X"
    "Reference Pixel Physical Value Y"
    "Physical Delta X"
    "Physical Delta Y"
    "Transducer Frequency"
    "Transducer Type"
    "Pulse Repetition Frequency"
    "Doppler Correction Angle"
    "Steering Angle"
    "Doppler Sample Volume X Position (Retired)"
    "Doppler Sample Volume X Position"
    "Doppler Sample Volume Y Position (Retired)"
    "Doppler Sample Volume Y Position"
    "TM-Line Position X0 (Retired)"
    "TM-Line Position X0"
    "TM-Line Position Y0 (Retired)"
    "TM-Line Position Y0"
    "TM-Line Position X1 (Retired)"
    "TM-Line Position X1"
    "TM-Line Position Y1 (Retired)"
    "TM-Line Position Y1"
    "Pixel Component Organization"
    "Pixel Component Mask"
    "Pixel Component Range Start"
    "Pixel Component Range Stop"
    "Pixel Component Physical Units"
    "Pixel Component Data Type"
    "Number of Table Break Points"
    "Table of X Break Points"
    "Table of Y Break Points"
    "Number of Table Entries"
    "Table of Pixel Values"
    "Table of Parameter Values"
    "R Wave Time Vector"
    "Detector Conditions Nominal Flag"
    "Detector Temperature"
    "Detector Type"
    "Detector Configuration"
    "Detector Description"
    "Detector Mode"
    "Detector ID"
    "Date of Last Detector Calibration"
    "Time of Last Detector Calibration"
    "Exposures on Detector Since Last Calibration"
    "Exposures on Detector Since Manufactured"
    "Detector Time Since Last Exposure"
    "Detector Active Time"
    "Detector Activation Offset From Exposure"
    "Detector Binning"
    "Detector Element Physical Size"
    "Detector Element Spacing"
    "Detector Active Shape"
    "Detector Active Dimension(s)"
    "Detector Active Origin"
    "Detector Manufacturer Name"
    "Detector Manufacturer's Model Name"
    "Field of View Origin"
    "Field of View Rotation"
    "Field of View Horizontal Flip"
    "Grid Absorbing Material"
    "Grid Spacing Material"
    "Grid Thickness"
    "Grid Pitch"
    "Grid Aspect Ratio"
    "Grid Period"
    "Grid Focal Distance"
    "Filter Material"
    "Filter Thickness Minimum"
    "Filter Thickness Maximum"
    "Exposure Control Mode"
    "Exposure Control Mode Description"
    "Exposure Status"
    "Phototimer Setting"
    "Exposure Time in µS"
    "X-Ray Tube Current in µA"
    "Content Qualification"
    "Pulse Sequence Name"
    "MR Imaging Modifier Sequence"
    "Echo Pulse Sequence"
    "Inversion Recovery"
    "Flow Compensation"
    "Multiple Spin Echo"
    "Multi-planar Excitation"
    "Phase Contrast"
    "Time of Flight Contrast"
    "Spoiling"
    "Steady State Pulse Sequence"
    "Echo Planar Pulse Sequence"
    "Tag Angle First Axis"
    "Magnetization Transfer"
    "T2 Preparation"
    "Blood Signal Nulling"
    "Saturation Recovery"
    "Spectrally Selected Suppression"
    "Spectrally Selected Excitation"
    "Spatial Pre-saturation"
    "Tagging"
    "Oversampling Phase"
    "Tag Spacing First Dimension"
    "Geometry of k-Space Traversal"
    "Segmented k-Space Traversal"
    "Rectilinear Phase Encode Reordering"
    "Tag Thickness"
    "Partial Fourier Direction"
    "Cardiac Synchronization Technique"
    "Receive Coil Manufacturer Name"
    "MR Receive Coil Sequence"
    "Receive Coil Type"
    "Quadrature Receive Coil"
    "Multi-Coil Definition Sequence"
    "Multi-Coil Configuration"
    "Multi-Coil Element Name"
    "Multi-Coil Element Used"
    "MR Transmit Coil Sequence"
    "Transmit Coil Manufacturer Name"
    "Transmit Coil Type"
    "Spectral Width"
    "Chemical Shift Reference"
    "Volume Localization Technique"
    "MR Acquisition Frequency Encoding Steps"
    "De-coupling"
    "De-coupled Nucleus"
    "De-coupling Frequency"
    "De-coupling Method"
    "De-coupling Chemical Shift Reference"
    "k-space Filtering"
    "Time Domain Filtering"
    "Number of Zero fills"
    "Baseline Correction"
    "Parallel Reduction Factor In-plane"
    "Cardiac R-R Interval Specified"
    "Acquisition Duration"
    "Frame Acquisition DateTime"
    "Diffusion Directionality"
    "Diffusion Gradient Direction Sequence"
    "Parallel Acquisition"
    "Parallel Acquisition Technique"
    "Inversion Times"
    "Metabolite Map Description"
    "Partial Fourier"
    "Effective Echo Time"
    "Metabolite Map Code Sequence"
    "Chemical Shift Sequence"
    "Cardiac Signal Source"
    "Diffusion b-value"
    "Diffusion Gradient Orientation"
    "Velocity Encoding Direction"
    "Velocity Encoding Minimum Value"
    "Number of k-Space Trajectories"
    "Coverage of k-Space"
    "Spectroscopy Acquisition Phase Rows"
    "Parallel Reduction Factor In-plane (Retired)"
    "Transmitter Frequency"
    "Resonant Nucleus"
    "Frequency Correction"
    "MR Spectroscopy FOV/Geometry Sequence"
    "Slab Thickness"
    "Slab Orientation"
    "Mid Slab Position"
    "MR Spatial Saturation Sequence"
    "MR Timing and Related Parameters Sequence"
    "MR Echo Sequence"
    "MR Modifier Sequence"
    "MR Diffusion Sequence"
    "Cardiac Synchronization Sequence"
    "MR Averages Sequence"
    "MR FOV/Geometry Sequence"
    "Volume Localization Sequence"
    "Spectroscopy Acquisition Data Columns"
    "Diffusion Anisotropy Type"
    "Frame Reference DateTime"
    "MR Metabolite Map Sequence"
    "Parallel Reduction Factor out-of-plane"
    "Spectroscopy Acquisition Out-of-plane Phase Steps"
    "Bulk Motion Status"
    "Parallel Reduction Factor Second In-plane"
    "Cardiac Beat Rejection Technique"
    "Respiratory Motion Compensation Technique"
    "Respiratory Signal Source"
    "Bulk Motion Compensation Technique"
    "Bulk Motion Signal Source"
    "Applicable Safety Standard Agency"
    "Applicable Safety Standard Description"
    "Operating Mode Sequence"
    "Operating Mode Type"
    "Operating Mode"
    "Specific Absorption Rate Definition"
    "Gradient Output Type"
    "Specific Absorption Rate Value"
    "Gradient Output"
    "Flow Compensation Direction"
    "Tagging Delay"
    "Respiratory Motion Compensation Technique Description"
    "Respiratory Signal Source ID"
    "Chemical Shifts Minimum Integration Limit in Hz"
    "Chemical Shifts Maximum Integration Limit in Hz"
    "MR Velocity Encoding Sequence"
    "First Order Phase Correction"
    "Water Referenced Phase Correction"
    "MR Spectroscopy Acquisition Type"
    "Respiratory Cycle Position"
    "Velocity Encoding Maximum Value"
    "Tag Spacing Second Dimension"
    "Tag Angle Second Axis"
    "Frame Acquisition Duration"
    "MR Image Frame Type Sequence"
    "MR Spectroscopy Frame Type Sequence"
    "MR Acquisition Phase Encoding Steps in-plane"
    "MR Acquisition Phase Encoding Steps out-of-plane"
    "Spectroscopy Acquisition Phase Columns"
    "Cardiac Cycle Position"
    "Specific Absorption Rate Sequence"
    "RF Echo Train Length"
    "Gradient Echo Train Length"
    "Chemical Shifts Minimum Integration Limit in ppm"
    "Chemical Shifts Maximum Integration Limit in ppm"
    "CT Acquisition Type Sequence"
    "Acquisition Type"
    "Tube Angle"
    "CT Acquisition Details Sequence"
    "Revolution Time"
    "Single Collimation Width"
    "Total Collimation Width"
    "CT Table Dynamics Sequence"
    "Table Speed"
    "Table Feed per Rotation"
    "Spiral Pitch Factor"
    "CT Geometry Sequence"
    "Data Collection Center (Patient)"
    "CT Reconstruction Sequence"
    "Reconstruction Algorithm"
    "Convolution Kernel Group"
    "Reconstruction Field of View"
    "Reconstruction Target Center (Patient)"
    "Reconstruction Angle"
    "Image Filter"
    "CT Exposure Sequence"
    "Reconstruction Pixel Spacing"
    "Exposure Modulation Type"
    "Estimated Dose Saving"
    "CT X-Ray Details Sequence"
    "CT Position Sequence"
    "Table Position"
    "Exposure Time in ms"
    "CT Image Frame Type Sequence"
    "X-Ray Tube Current in mA"
    "Exposure in mAs"
    "Constant Volume Flag"
    "Fluoroscopy Flag"
    "Distance Source to Data Collection Center"
    "Contrast/Bolus Agent Number"
    "Contrast/Bolus Ingredient Code Sequence"
    "Contrast Administration Profile Sequence"
    "Contrast/Bolus Usage Sequence"
    "Contrast/Bolus Agent Administered"
    "Contrast/Bolus Agent Detected"
    "Contrast/Bolus Agent Phase"
    "CTDIvol"
    "CTDI Phantom Type Code Sequence"
    "Calcium Scoring Mass Factor Patient"
    "Calcium Scoring Mass Factor Device"
    "CT Additional X-Ray Source Sequence"
    "Projection Pixel Calibration Sequence"
    "Distance Source to Isocenter"
    "Distance Object to Table Top"
    "Object Pixel Spacing in Center of Beam"
    "Positioner Position Sequence"
    "Table Position Sequence"
    "Collimator Shape Sequence"
    "XA/XRF Frame Characteristics Sequence"
    "Frame Acquisition Sequence"
    "X-Ray Receptor Type"
    "Acquisition Protocol Name"
    "Acquisition Protocol Description"
    "Contrast/Bolus Ingredient Opaque"
    "Distance Receptor Plane to Detector Housing"
    "Intensifier Active Shape"
    "Intensifier Active Dimension(s)"
    "Physical Detector Size"
    "Position of Isocenter Projection"
    "Field of View Sequence"
    "Field of View Description"
    "Exposure Control Sensing Regions Sequence"
    "Exposure Control Sensing Region Shape"
    "Exposure Control Sensing Region Left Vertical Edge"
    "Exposure Control Sensing Region Right Vertical Edge"
    "Exposure Control Sensing Region Upper Horizontal Edge"
    "Exposure Control Sensing Region Lower Horizontal Edge"
    "Center of Circular Exposure Control Sensing Region"
    "Radius of Circular Exposure Control Sensing Region"
    "Vertices of the Polygonal Exposure Control Sensing Region"
    "Column Angulation (Patient)"
    "Beam Angle"
    "Frame Detector Parameters Sequence"
    "Calculated Anatomy Thickness"
    "Calibration Sequence"
    "Object Thickness Sequence"
    "Plane Identification"
    "Field of View Dimension(s) in Float"
    "Isocenter Reference System Sequence"
    "Positioner Isocenter Primary Angle"
    "Positioner Isocenter Secondary Angle"
    "Positioner Isocenter Detector Rotation Angle"
    "Table X Position to Isocenter"
    "Table Y Position to Isocenter"
    "Table Z Position to Isocenter"
    "Table Horizontal Rotation Angle"
    "Table Head Tilt Angle"
    "Table Cradle Tilt Angle"
    "Frame Display Shutter Sequence"
    "Acquired Image Area Dose Product"
    "C-arm Positioner Tabletop Relationship"
    "X-Ray Geometry Sequence"
    "Irradiation Event Identification Sequence"
    "X-Ray 3D Frame Type Sequence"
    "Contributing Sources Sequence"
    "X-Ray 3D Acquisition Sequence"
    "Primary Positioner Scan Arc"
    "Secondary Positioner Scan Arc"
    "Primary Positioner Scan Start Angle"
    "Secondary Positioner Scan Start Angle"
    "Primary Positioner Increment"
    "Secondary Positioner Increment"
    "Start Acquisition DateTime"
    "End Acquisition DateTime"
    "Application Name"
    "Application Version"
    "Application Manufacturer"
    "Algorithm Type"
    "Algorithm Description"
    "X-Ray 3D Reconstruction Sequence"
    "Reconstruction Description"
    "Per Projection Acquisition Sequence"
    "Diffusion b-matrix Sequence"
    "Diffusion b-value XX"
    "Diffusion b-value XY"
    "Diffusion b-value XZ"
    "Diffusion b-value YY"
    "Diffusion b-value YZ"
    "Diffusion b-value ZZ"
    "Contributing Equipment Sequence"
    "Contribution Date Time"
    "Contribution Description"
    "Study Instance UID"
    "Series Instance UID"
    "Study ID"
    "Series Number"
    "Acquisition Number"
    "Instance Number"
    "Isotope Number"
    "Phase Number"
    "Interval Number"
    "Time Slot Number"
    "Angle Number"
    "Item Number"
    "Patient Orientation"
    "Overlay Number"
    "Curve Number"
    "Lookup Table Number"
    "Image Position"
    "Image Position (Patient)"
    "Image Orientation"
    "Image Orientation (Patient)"
    "Location"
    "Frame of Reference UID"
    "Laterality"
    "Image Laterality"
    "Image Geometry Type"
    "Masking Image"
    "Temporal Position Identifier"
    "Number of Temporal Positions"
    "Temporal Resolution"
    "Synchronization Frame of Reference UID"
    "Series in Study"
    "Acquisitions in Series"
    "Images in Acquisition"
    "Images in Series"
    "Acquisitions in Study"
    "Images in Study"
    "Reference"
    "Position Reference Indicator"
    "Slice Location"
    "Other Study Numbers"
    "Number of Patient Related Studies"
    "Number of Patient Related Series"
    "Number of Patient Related Instances"
    "Number of Study Related Series"
    "Number of Study Related Instances"
    "Number of Series Related Instances"
    "Modifying Device ID"
    "Modified Image ID"
    "Modified Image Date"
    "Modifying Device Manufacturer"
    "Modified Image Time"
    "Modified Image Description"
    "Image Comments"
    "Original Image Identification"
    "Original Image Identification Nomenclature"
    "Stack ID"
    "In-Stack Position Number"
    "Frame Anatomy Sequence"
    "Frame Laterality"
    "Frame Content Sequence"
    "Plane Position Sequence"
    "Plane Orientation Sequence"
    "Temporal Position Index"
    "Nominal Cardiac Trigger Delay Time"
    "Frame Acquisition Number"
    "Dimension Index Values"
    "Frame Comments"
    "Concatenation UID"
    "In-concatenation Number"
    "In-concatenation Total Number"
    "Dimension Organization UID"
    "Dimension Index Pointer"
    "Functional Group Pointer"
    "Dimension Index Private Creator"
    "Dimension Organization Sequence"
    "Dimension Index Sequence"
    "Concatenation Frame Offset Number"
    "Functional Group Private Creator"
    "Nominal Percentage of Cardiac Phase"
    "Nominal Percentage of Respiratory Phase"
    "Starting Respiratory Amplitude"
    "Starting Respiratory Phase"
    "Ending Respiratory Amplitude"
    "Ending Respiratory Phase"
    "Respiratory Trigger Type"
    "R - R Interval Time Nominal"
    "Actual Cardiac Trigger Delay Time"
    "Respiratory Synchronization Sequence"
    "Respiratory Interval Time"
    "Nominal Respiratory Trigger Delay Time"
    "Respiratory Trigger Delay Threshold"
    "Actual Respiratory Trigger Delay Time"
    "Dimension Description Label"
    "Patient Orientation in Frame Sequence"
    "Frame Label"
    "Acquisition Index"
    "Contributing SOP Instances Reference Sequence"
    "Reconstruction Index"
    "Light Path Filter Pass-Through Wavelength"
    "Light Path Filter Pass Band"
    "Image Path Filter Pass-Through Wavelength"
    "Image Path Filter Pass Band"
    "Patient Eye Movement Commanded"
    "Patient Eye Movement Command Code Sequence"
    "Spherical Lens Power"
    "Cylinder Lens Power"
    "Cylinder Axis"
    "Emmetropic Magnification"
    "Intra Ocular Pressure"
    "Horizontal Field of View"
    "Pupil Dilated"
    "Degree of Dilation"
    "Stereo Baseline Angle"
    "Stereo Baseline Displacement"
    "Stereo Horizontal Pixel Offset"
    "Stereo Vertical Pixel Offset"
    "Stereo Rotation"
    "Acquisition Device Type Code Sequence"
    "Illumination Type Code Sequence"
    "Light Path Filter Type Stack Code Sequence"
    "Image Path Filter Type Stack Code Sequence"
    "Lenses Code Sequence"
    "Channel Description Code Sequence"
    "Refractive State Sequence"
    "Mydriatic Agent Code Sequence"
    "Relative Image Position Code Sequence"
    "Stereo Pairs Sequence"
    "Left Image Sequence"
    "Right Image Sequence"
    "Axial Length of the Eye"
    "Ophthalmic Frame Location Sequence"
    "Reference Coordinates"
    "Depth Spatial Resolution"
    "Maximum Depth Distortion"
    "Along-scan Spatial Resolution"
    "Maximum Along-scan Distortion"
    "Ophthalmic Image Orientation"
    "Depth of Transverse Image"
    "Mydriatic Agent Concentration Units Sequence"
    "Across-scan Spatial Resolution"
    "Maximum Across-scan Distortion"
    "Mydriatic Agent Concentration"
    "Illumination Wave Length"
    "Illumination Power"
    "Illumination Bandwidth"
    "Mydriatic Agent Sequence"
    "Samples per Pixel"
    "Samples per Pixel Used"
    "Photometric Interpretation"
    "Image Dimensions"
    "Planar Configuration"
    "Number of Frames"
    "Frame Increment Pointer"
    "Frame Dimension Pointer"
    "Rows"
    "Columns"
    "Planes"
    "Ultrasound Color Data Present"
    "Pixel Spacing"
    "Zoom Factor"
    "Zoom Center"
    "Pixel Aspect Ratio"
    "Image Format"
    "Manipulated Image"
    "Corrected Image"
    "Compression Code"
    "Bits Allocated"
    "Bits Stored"
    "High Bit"
    "Pixel Representation"
    "Smallest Valid Pixel Value"
    "Largest Valid Pixel Value"
    "Smallest Image Pixel Value"
    "Largest Image Pixel Value"
    "Smallest Pixel Value in Series"
    "Largest Pixel Value in Series"
    "Smallest Image Pixel Value in Plane"
    "Largest Image Pixel Value in Plane"
    "Pixel Padding Value"
    "Pixel Padding Range Limit"
    "Image Location"
    "Quality Control Image"
    "Burned In Annotation"
    "Number of Transform Steps"
    "Details of Coefficients"
    "Pixel Spacing Calibration Type"
    "Pixel Spacing Calibration Description"
    "Pixel Intensity Relationship"
    "Pixel Intensity Relationship Sign"
    "Window Center"
    "Window Width"
    "Rescale Intercept"
    "Rescale Slope"
    "Rescale Type"
    "Window Center &amp; Width Explanation"
    "VOI LUT Function"
    "Gray Scale"
    "Recommended Viewing Mode"
    "Gray Lookup Table Descriptor"
    "Red Palette Color Lookup Table Descriptor"
    "Green Palette Color Lookup Table Descriptor"
    "Blue Palette Color Lookup Table Descriptor"
    "Palette Color Lookup Table UID"
    "Gray Lookup Table Data"
    "Red Palette Color Lookup Table Data"
    "Green Palette Color Lookup Table Data"
    "Blue Palette Color Lookup Table Data"
    "Segmented Red Palette Color Lookup Table Data"
    "Segmented Green Palette Color Lookup Table Data"
    "Segmented Blue Palette Color Lookup Table Data"
    "Implant Present"
    "Partial View"
    "Partial View Description"
    "Partial View Code Sequence"
    "Spatial Locations Preserved"
    "ICC Profile"
    "Lossy Image Compression"
    "Lossy Image Compression Ratio"
    "Lossy Image Compression Method"
    "Modality LUT Sequence"
    "LUT Descriptor"
    "LUT Explanation"
    "Modality LUT Type"
    "LUT Data"
    "VOI LUT Sequence"
    "Softcopy VOI LUT Sequence"
    "Image Presentation Comments"
    "Bi-Plane Acquisition Sequence"
    "Representative Frame Number"
    "Frame Numbers of Interest (FOI)"
    "Frame(s) of Interest Description"
    "Frame of Interest Type"
    "Mask Pointer(s)"
    "R Wave Pointer"
    "Mask Subtraction Sequence"
    "Mask Operation"
    "Applicable Frame Range"
    "Mask Frame Numbers"
    "Contrast Frame Averaging"
    "Mask Sub-pixel Shift"
    "TID Offset"
    "Mask Operation Explanation"
    "Pixel Data Provider URL"
    "Data Point Rows"
    "Data Point Columns"
    "Signal Domain Columns"
    "Largest Monochrome Pixel Value"
    "Data Representation"
    "Pixel Measures Sequence"
    "Frame VOI LUT Sequence"
    "Pixel Value Transformation Sequence"
    "Signal Domain Rows"
    "Display Filter Percentage"
    "Frame Pixel Shift Sequence"
    "Subtraction Item ID"
    "Pixel Intensity Relationship LUT Sequence"
    "Frame Pixel Data Properties Sequence"
    "Geometrical Properties"
    "Geometric Maximum Distortion"
    "Image Processing Applied"
    "Mask Selection Mode"
    "LUT Function"
    "Image to Equipment Mapping Matrix"
    "Equipment Coordinate System Identification"
    "Study Status ID"
    "Study Priority ID"
    "Study ID Issuer"
    "Study Verified Date"
    "Study Verified Time"
    "Study Read Date"
    "Study Read Time"
    "Scheduled Study Start Date"
    "Scheduled Study Start Time"
    "Scheduled Study Stop Date"
    "Scheduled Study Stop Time"
    "Scheduled Study Location"
    "Scheduled Study Location AE Title"
    "Reason for Study"
    "Requesting Physician Identification Sequence"
    "Requesting Physician"
    "Requesting Service"
    "Study Arrival Date"
    "Study Arrival Time"
    "Study Completion Date"
    "Study Completion Time"
    "Study Component Status ID"
    "Requested Procedure Description"
    "Requested Procedure Code Sequence"
    "Requested Contrast Agent"
    "Study Comments"
    "Referenced Patient Alias Sequence"
    "Visit Status ID"
    "Admission ID"
    "Issuer of Admission ID"
    "Route of Admissions"
    "Scheduled Admission Date"
    "Scheduled Admission Time"
    "Scheduled Discharge Date"
    "Scheduled Discharge Time"
    "Scheduled Patient Institution Residence"
    "Admitting Date"
    "Admitting Time"
    "Discharge Date"
    "Discharge Time"
    "Discharge Diagnosis Description"
    "Discharge Diagnosis Code Sequence"
    "Special Needs"
    "Service Episode ID"
    "Issuer of Service Episode ID"
    "Service Episode Description"
    "Pertinent Documents Sequence"
    "Current Patient Location"
    "Patient's Institution Residence"
    "Patient State"
    "Patient Clinical Trial Participation Sequence"
    "Visit Comments"
    "Waveform Originality"
    "Number of Waveform Channels"
    "Number of Waveform Samples"
    "Sampling Frequency"
    "Multiplex Group Label"
    "Channel Definition Sequence"
    "Waveform Channel Number"
    "Channel Label"
    "Channel Status"
    "Channel Source Sequence"
    "Channel Source Modifiers Sequence"
    "Source Waveform Sequence"
    "Channel Derivation Description"
    "Channel Sensitivity"
    "Channel Sensitivity Units Sequence"
    "Channel Sensitivity Correction Factor"
    "Channel Baseline"
    "Channel Time Skew"
    "Channel Sample Skew"
    "Channel Offset"
    "Waveform Bits Stored"
    "Filter Low Frequency"
    "Filter High Frequency"
    "Notch Filter Frequency"
    "Notch Filter Bandwidth"
    "Waveform Data Display Scale"
    "Waveform Display Background CIELab Value"
    "Waveform Presentation Group Sequence"
    "Presentation Group Number"
    "Channel Display Sequence"
    "Channel Recommended Display CIELab Value"
    "Channel Position"
    "Display Shading Flag"
    "Fractional Channel Display Scale"
    "Absolute Channel Display Scale"
    "Multiplexed Audio Channels Description Code Sequence"
    "Channel Identification Code"
    "Channel Mode"
    "Scheduled Station AE Title"
    "Scheduled Procedure Step Start Date"
    "Scheduled Procedure Step Start Time"
    "Scheduled Procedure Step End Date"
    "Scheduled Procedure Step End Time"
    "Scheduled Performing Physician's Name"
    "Scheduled Procedure Step Description"
    "Scheduled Protocol Code Sequence"
    "Scheduled Procedure Step ID"
    "Stage Code Sequence"
    "Scheduled Performing Physician Identification Sequence"
    "Scheduled Station Name"
    "Scheduled Procedure Step Location"
    "Pre-Medication"
    "Scheduled Procedure Step Status"
    "Scheduled Procedure Step Sequence"
    "Referenced Non-Image Composite SOP Instance Sequence"
    "Performed Station AE Title"
    "Performed Station Name"
    "Performed Location"
    "Performed Procedure Step Start Date"
    "Performed Procedure Step Start Time"
    "Performed Procedure Step End Date"
    "Performed Procedure Step End Time"
    "Performed Procedure Step Status"
    "Performed Procedure Step ID"
    "Performed Procedure Step Description"
    "Performed Procedure Type Description"
    "Performed Protocol Code Sequence"
    "Scheduled Step Attributes Sequence"
    "Request Attributes Sequence"
    "Comments on the Performed Procedure Step"
    "Performed Procedure Step Discontinuation Reason Code Sequence"
    "Quantity Sequence"
    "Quantity"
    "Measuring Units Sequence"
    "Billing Item Sequence"
    "Total Time of Fluoroscopy"
    "Total Number of Exposures"
    "Entrance Dose"
    "Exposed Area"
    "Distance Source to Entrance"
    "Distance Source to Support"
    "Exposure Dose Sequence"
    "Comments on Radiation Dose"
    "X-Ray Output"
    "Half Value Layer"
    "Organ Dose"
    "Organ Exposed"
    "Billing Procedure Step Sequence"
    "Film Consumption Sequence"
    "Billing Supplies and Devices Sequence"
    "Referenced Procedure Step Sequence"
    "Performed Series Sequence"
    "Comments on the Scheduled Procedure Step"
    "Protocol Context Sequence"
    "Content Item Modifier Sequence"
    "Specimen Accession Number"
    "Specimen Sequence"
    "Specimen Identifier"
    "Acquisition Context Sequence"
    "Acquisition Context Description"
    "Specimen Type Code Sequence"
    "Slide Identifier"
    "Image Center Point Coordinates Sequence"
    "X offset in Slide Coordinate System"
    "Y offset in Slide Coordinate System"
    "Z offset in Slide Coordinate System"
    "Pixel Spacing Sequence"
    "Coordinate System Axis Code Sequence"
    "Measurement Units Code Sequence"
    "Requested Procedure ID"
    "Reason for the Requested Procedure"
    "Requested Procedure Priority"
    "Patient Transport Arrangements"
    "Requested Procedure Location"
    "Placer Order Number / Procedure"
    "Filler Order Number / Procedure"
    "Confidentiality Code"
    "Reporting Priority"
    "Reason for Requested Procedure Code Sequence"
    "Names of Intended Recipients of Results"
    "Intended Recipients of Results Identification Sequence"
    "Person Identification Code Sequence"
    "Person's Address"
    "Person's Telephone Numbers"
    "Requested Procedure Comments"
    "Reason for the Imaging Service Request"
    "Issue Date of Imaging Service Request"
    "Issue Time of Imaging Service Request"
    "Placer Order Number / Imaging Service Request (Retired)"
    "Filler Order Number / Imaging Service Request (Retired)"
    "Order Entered By"
    "Order Enterer's Location"
    "Order Callback Phone Number"
    "Placer Order Number / Imaging Service Request"
    "Filler Order Number / Imaging Service Request"
    "Imaging Service Request Comments"
    "Confidentiality Constraint on Patient Data Description"
    "General Purpose Scheduled Procedure Step Status"
    "General Purpose Performed Procedure Step Status"
    "General Purpose Scheduled Procedure Step Priority"
    "Scheduled Processing Applications Code Sequence"
    "Scheduled Procedure Step Start Date and Time"
    "Multiple Copies Flag"
    "Performed Processing Applications Code Sequence"
    "Human Performer Code Sequence"
    "Scheduled Procedure Step Modification Date and Time"
    "Expected Completion Date and Time"
    "Resulting General Purpose Performed Procedure Steps Sequence"
    "Referenced General Purpose Scheduled Procedure Step Sequence"
    "Scheduled Workitem Code Sequence"
    "Performed Workitem Code Sequence"
    "Input Availability Flag"
    "Input Information Sequence"
    "Relevant Information Sequence"
    "Referenced General Purpose Scheduled Procedure Step Transaction UID"
    "Scheduled Station Name Code Sequence"
    "Scheduled Station Class Code Sequence"
    "Scheduled Station Geographic Location Code Sequence"
    "Performed Station Name Code Sequence"
    "Performed Station Class Code Sequence"
    "Performed Station Geographic Location Code Sequence"
    "Requested Subsequent Workitem Code Sequence"
    "Non-DICOM Output Code Sequence"
    "Output Information Sequence"
    "Scheduled Human Performers Sequence"
    "Actual Human Performers Sequence"
    "Human Performer's Organization"
    "Human Performer's Name"
    "Entrance Dose in mGy"
    "Referenced Image Real World Value Mapping Sequence"
    "Real World Value Mapping Sequence"
    "Pixel Value Mapping Code Sequence"
    "LUT Label"
    "Real World Value Last Value Mapped"
    "Real World Value LUT Data"
    "Real World Value First Value Mapped"
    "Real World Value Intercept"
    "Real World Value Slope"
    "Relationship Type"
    "Verifying Organization"
    "Verification Date Time"
    "Observation Date Time"
    "Value Type"
    "Concept Name Code Sequence"
    "Continuity Of Content"
    "Verifying Observer Sequence"
    "Verifying Observer Name"
    "Author Observer Sequence"
    "Participant Sequence"
    "Custodial Organization Sequence"
    "Participation Type"
    "Participation DateTime"
    "Observer Type"
    "Verifying Observer Identification Code Sequence"
    "Equivalent CDA Document Sequence"
    "Referenced Waveform Channels"
    "DateTime"
    "Date"
    "Time"
    "Person Name"
    "UID"
    "Temporal Range Type"
    "Referenced Sample Positions"
    "Referenced Frame Numbers"
    "Referenced Time Offsets"
    "Referenced DateTime"
    "Text Value"
    "Concept Code Sequence"
    "Purpose of Reference Code Sequence"
    "Annotation Group Number"
    "Modifier Code Sequence"
    "Measured Value Sequence"
    "Numeric Value Qualifier Code Sequence"
    "Numeric Value"
    "Predecessor Documents Sequence"
    "Referenced Request Sequence"
    "Performed Procedure Code Sequence"
    "Current Requested Procedure Evidence Sequence"
    "Pertinent Other Evidence Sequence"
    "HL7 Structured Document Reference Sequence"
    "Completion Flag"
    "Completion Flag Description"
    "Verification Flag"
    "Archive Requested"
    "Content Template Sequence"
    "Identical Documents Sequence"
    "Content Sequence"
    "Annotation Sequence"
    "Template Identifier"
    "Template Version"
    "Template Local Version"
    "Template Extension Flag"
    "Template Extension Organization UID"
    "Template Extension Creator UID"
    "Referenced Content Item Identifier"
    "HL7 Instance Identifier"
    "HL7 Document Effective Time"
    "HL7 Document Type Code Sequence"
    "Retrieve URI"
    "Document Title"
    "Encapsulated Document"
    "MIME Type of Encapsulated Document"
    "Source Instance Sequence"
    "List of MIME Types"
    "Product Package Identifier"
    "Substance Administration Approval"
    "Approval Status Further Description"
    "Approval Status DateTime"
    "Product Type Code Sequence"
    "Product Name"
    "Product Description"
    "Product Lot Identifier"
    "Product Expiration DateTime"
    "Substance Administration DateTime"
    "Substance Administration Notes"
    "Substance Administration Device ID"
    "Product Parameter Sequence"
    "Substance Administration Parameter Sequence"
    "Calibration Image"
    "Device Sequence"
    "Device Length"
    "Device Diameter"
    "Device Diameter Units"
    "Device Volume"
    "Intermarker Distance"
    "Device Description"
    "Energy Window Vector"
    "Number of Energy Windows"
    "Energy Window Information Sequence"
    "Energy Window Range Sequence"
    "Energy Window Lower Limit"
    "Energy Window Upper Limit"
    "Radiopharmaceutical Information Sequence"
    "Residual Syringe Counts"
    "Energy Window Name"
    "Detector Vector"
    "Number of Detectors"
    "Detector Information Sequence"
    "Phase Vector"
    "Number of Phases"
    "Phase Information Sequence"
    "Number of Frames in Phase"
    "Phase Delay"
    "Pause Between Frames"
    "Phase Description"
    "Rotation Vector"
    "Number of Rotations"
    "Rotation Information Sequence"
    "Number of Frames in Rotation"
    "R-R Interval Vector"
    "Number of R-R Intervals"
    "Gated Information Sequence"
    "Data Information Sequence"
    "Time Slot Vector"
    "Number of Time Slots"
    "Time Slot Information Sequence"
    "Time Slot Time"
    "Slice Vector"
    "Number of Slices"
    "Angular View Vector"
    "Time Slice Vector"
    "Number of Time Slices"
    "Start Angle"
    "Type of Detector Motion"
    "Trigger Vector"
    "Number of Triggers in Phase"
    "View Code Sequence"
    "View Modifier Code Sequence"
    "Radionuclide Code Sequence"
    "Administration Route Code Sequence"
    "Radiopharmaceutical Code Sequence"
    "Calibration Data Sequence"
    "Energy Window Number"
    "Image ID"
    "Patient Orientation Code Sequence"
    "Patient Orientation Modifier Code Sequence"
    "Patient Gantry Relationship Code Sequence"
    "Slice Progression Direction"
    "Series Type"
    "Units"
    "Counts Source"
    "Reprojection Method"
    "Randoms Correction Method"
    "Attenuation Correction Method"
    "Decay Correction"
    "Reconstruction Method"
    "Detector Lines of Response Used"
    "Scatter Correction Method"
    "Axial Acceptance"
    "Axial Mash"
    "Transverse Mash"
    "Detector Element Size"
    "Coincidence Window Width"
    "Secondary Counts Type"
    "Frame Reference Time"
    "Primary (Prompts) Counts Accumulated"
    "Secondary Counts Accumulated"
    "Slice Sensitivity Factor"
    "Decay Factor"
    "Dose Calibration Factor"
    "Scatter Fraction Factor"
    "Dead Time Factor"
    "Image Index"
    "Counts Included"
    "Dead Time Correction Flag"
    "Histogram Sequence"
    "Histogram Number of Bins"
    "Histogram First Bin Value"
    "Histogram Last Bin Value"
    "Histogram Bin Width"
    "Histogram Explanation"
    "Histogram Data"
    "Segmentation Type"
    "Segment Sequence"
    "Segmented Property Category Code Sequence"
    "Segment Number"
    "Segment Label"
    "Segment Description"
    "Segment Algorithm Type"
    "Segment Algorithm Name"
    "Segment Identification Sequence"
    "Referenced Segment Number"
    "Recommended Display Grayscale Value"
    "Recommended Display CIELab Value"
    "Maximum Fractional Value"
    "Segmented Property Type Code Sequence"
    "Segmentation Fractional Type"
    "Deformable Registration Sequence"
    "Source Frame of Reference UID"
    "Deformable Registration Grid Sequence"
    "Grid Dimensions"
    "Grid Resolution"
    "Vector Grid Data"
    "Pre Deformation Matrix Registration Sequence"
    "Post Deformation Matrix Registration Sequence"
    "Graphic Annotation Sequence"
    "Graphic Layer"
    "Bounding Box Annotation Units"
    "Anchor Point Annotation Units"
    "Graphic Annotation Units"
    "Unformatted Text Value"
    "Text Object Sequence"
    "Graphic Object Sequence"
    "Bounding Box Top Left Hand Corner"
    "Bounding Box Bottom Right Hand Corner"
    "Bounding Box Text Horizontal Justification"
    "Anchor Point"
    "Anchor Point Visibility"
    "Graphic Dimensions"
    "Number of Graphic Points"
    "Graphic Data"
    "Graphic Type"
    "Graphic Filled"
    "Image Rotation (Retired)"
    "Image Horizontal Flip"
    "Image Rotation"
    "Displayed Area Top Left Hand Corner"
    "Displayed Area Bottom Right Hand Corner"
    "Displayed Area Selection Sequence"
    "Graphic Layer Sequence"
    "Graphic Layer Order"
    "Graphic Layer Recommended Display Grayscale Value"
    "Graphic Layer Recommended Display RGB Value"
    "Graphic Layer Description"
    "Content Label"
    "Content Description"
    "Presentation Creation Date"
    "Presentation Creation Time"
    "Content Creator's Name"
    "Content Creator's Identification Code Sequence"
    "Presentation Size Mode"
    "Presentation Pixel Spacing"
    "Presentation Pixel Aspect Ratio"
    "Presentation Pixel Magnification Ratio"
    "Shape Type"
    "Registration Sequence"
    "Matrix Registration Sequence"
    "Matrix Sequence"
    "Frame of Reference Transformation Matrix Type"
    "Registration Type Code Sequence"
    "Fiducial Description"
    "Fiducial Identifier"
    "Fiducial Identifier Code Sequence"
    "Contour Uncertainty Radius"
    "Used Fiducials Sequence"
    "Graphic Coordinates Data Sequence"
    "Fiducial UID"
    "Fiducial Set Sequence"
    "Fiducial Sequence"
    "Graphic Layer Recommended Display CIELab Value"
    "Blending Sequence"
    "Relative Opacity"
    "Referenced Spatial Registration Sequence"
    "Blending Position"
    "Hanging Protocol Name"
    "Hanging Protocol Description"
    "Hanging Protocol Level"
    "Hanging Protocol Creator"
    "Hanging Protocol Creation DateTime"
    "Hanging Protocol Definition Sequence"
    "Hanging Protocol User Identification Code Sequence"
    "Hanging Protocol User Group Name"
    "Source Hanging Protocol Sequence"
    "Number of Priors Referenced"
    "Image Sets Sequence"
    "Image Set Selector Sequence"
    "Image Set Selector Usage Flag"
    "Selector Attribute"
    "Selector Value Number"
    "Time Based Image Sets Sequence"
    "Image Set Number"
    "Image Set Selector Category"
    "Relative Time"
    "Relative Time Units"
    "Abstract Prior Value"
    "Abstract Prior Code Sequence"
    "Image Set Label"
    "Selector Attribute VR"
    "Selector Sequence Pointer"
    "Selector Sequence Pointer Private Creator"
    "Selector Attribute Private Creator"
    "Selector AT Value"
    "Selector CS Value"
    "Selector IS Value"
    "Selector LO Value"
    "Selector LT Value"
    "Selector PN Value"
    "Selector SH Value"
    "Selector ST Value"
    "Selector UT Value"
    "Selector DS Value"
    "Selector FD Value"
    "Selector FL Value"
    "Selector UL Value"
    "Selector US Value"
    "Selector SL Value"
    "Selector SS Value"
    "Selector Code Sequence Value"
    "Number of Screens"
    "Nominal Screen Definition Sequence"
    "Number of Vertical Pixels"
    "Number of Horizontal Pixels"
    "Display Environment Spatial Position"
    "Screen Minimum Grayscale Bit Depth"
    "Screen Minimum Color Bit Depth"
    "Application Maximum Repaint Time"
    "Display Sets Sequence"
    "Display Set Number"
    "Display Set Label"
    "Display Set Presentation Group"
    "Display Set Presentation Group Description"
    "Partial Data Display Handling"
    "Synchronized Scrolling Sequence"
    "Display Set Scrolling Group"
    "Navigation Indicator Sequence"
    "Navigation Display Set"
    "Reference Display Sets"
    "Image Boxes Sequence"
    "Image Box Number"
    "Image Box Layout Type"
    "Image Box Tile Horizontal Dimension"
    "Image Box Tile Vertical Dimension"
    "Image Box Scroll Direction"
    "Image Box Small Scroll Type"
    "Image Box Small Scroll Amount"
    "Image Box Large Scroll Type"
    "Image Box Large Scroll Amount"
    "Image Box Overlap Priority"
    "Cine Relative to Real-Time"
    "Filter Operations Sequence"
    "Filter-by Category"
    "Filter-by Attribute Presence"
    "Filter-by Operator"
    "Blending Operation Type"
    "Reformatting Operation Type"
    "Reformatting Thickness"
    "Reformatting Interval"
    "Reformatting Operation Initial View Direction"
    "3D Rendering Type"
    "Sorting Operations Sequence"
    "Sort-by Category"
    "Sorting Direction"
    "Display Set Patient Orientation"
    "VOI Type"
    "Pseudo-color Type"
    "Show Grayscale Inverted"
    "Show Image True Size Flag"
    "Show Graphic Annotation Flag"
    "Show Patient Demographics Flag"
    "Show Acquisition Techniques Flag"
    "Display Set Horizontal Justification"
    "Display Set Vertical Justification"
    "Unified Procedure Step State"
    "UPS Progress Information Sequence"
    "Unified Procedure Step Progress"
    "Unified Procedure Step Progress Description"
    "Unified Procedure Step Communications URI Sequence"
    "Contact URI"
    "Contact Display Name"
    "Unified Procedure Step Discontinuation Reason Code Sequence"
    "Beam Task Sequence"
    "Beam Task Type"
    "Beam Order Index"
    "Delivery Verification Image Sequence"
    "Verification Image Timing"
    "Double Exposure Flag"
    "Double Exposure Ordering"
    "Double Exposure Meterset"
    "Double Exposure Field Delta"
    "Related Reference RT Image Sequence"
    "General Machine Verification Sequence"
    "Conventional Machine Verification Sequence"
    "Ion Machine Verification Sequence"
    "Failed Attributes Sequence"
    "Overridden Attributes Sequence"
    "Conventional Control Point Verification Sequence"
    "Ion Control Point Verification Sequence"
    "Attribute Occurrence Sequence"
    "Attribute Occurrence Pointer"
    "Attribute Item Selector"
    "Attribute Occurrence Private Creator"
    "Scheduled Procedure Step Priority"
    "Worklist Label"
    "Procedure Step Label"
    "Scheduled Processing Parameters Sequence"
    "Performed Processing Parameters Sequence"
    "UPS Performed Procedure Sequence"
    "Related Procedure Step Sequence"
    "Procedure Step Relationship Type"
    "Deletion Lock"
    "Receiving AE"
    "Requesting AE"
    "Reason for Cancellation"
    "SCP Status"
    "Subscription List Status"
    "UPS List Status"
    "Storage Media File-set ID"
    "Storage Media File-set UID"
    "Icon Image Sequence"
    "Topic Title"
    "Topic Subject"
    "Topic Author"
    "Topic Keywords"
    "SOP Instance Status"
    "SOP Authorization Date and Time"
    "SOP Authorization Comment"
    "Authorization Equipment Certification Number"
    "MAC ID Number"
    "MAC Calculation Transfer Syntax UID"
    "MAC Algorithm"
    "Data Elements Signed"
    "Digital Signature UID"
    "Digital Signature DateTime"
    "Certificate Type"
    "Certificate of Signer"
    "Signature"
    "Certified Timestamp Type"
    "Certified Timestamp"
    "Digital Signature Purpose Code Sequence"
    "Referenced Digital Signature Sequence"
    "Referenced SOP Instance MAC Sequence"
    "MAC"
    "Encrypted Attributes Sequence"
    "Encrypted Content Transfer Syntax UID"
    "Encrypted Content"
    "Modified Attributes Sequence"
    "Original Attributes Sequence"
    "Attribute Modification DateTime"
    "Modifying System"
    "Source of Previous Values"
    "Reason for the Attribute Modification"
    "Number of Copies"
    "Printer Configuration Sequence"
    "Print Priority"
    "Medium Type"
    "Film Destination"
    "Film Session Label"
    "Memory Allocation"
    "Maximum Memory Allocation"
    "Color Image Printing Flag"
    "Collation Flag"
    "Annotation Flag"
    "Image Overlay Flag"
    "Presentation LUT Flag"
    "Image Box Presentation LUT Flag"
    "Memory Bit Depth"
    "Printing Bit Depth"
    "Media Installed Sequence"
    "Other Media Available Sequence"
    "Supported Image Display Formats Sequence"
    "Referenced Film Box Sequence"
    "Referenced Stored Print Sequence"
    "Image Display Format"
    "Annotation Display Format ID"
    "Film Orientation"
    "Film Size ID"
    "Printer Resolution ID"
    "Default Printer Resolution ID"
    "Magnification Type"
    "Smoothing Type"
    "Default Magnification Type"
    "Other Magnification Types Available"
    "Default Smoothing Type"
    "Other Smoothing Types Available"
    "Border Density"
    "Empty Image Density"
    "Min Density"
    "Max Density"
    "Trim"
    "Configuration Information"
    "Configuration Information Description"
    "Maximum Collated Films"
    "Illumination"
    "Reflected Ambient Light"
    "Printer Pixel Spacing"
    "Referenced Film Session Sequence"
    "Referenced Image Box Sequence"
    "Referenced Basic Annotation Box Sequence"
    "Image Box Position"
    "Polarity"
    "Requested Image Size"
    "Requested Decimate/Crop Behavior"
    "Requested Resolution ID"
    "Requested Image Size Flag"
    "Decimate/Crop Result"
    "Basic Grayscale Image Sequence"
    "Basic Color Image Sequence"
    "Referenced Image Overlay Box Sequence"
    "Referenced VOI LUT Box Sequence"
    "Annotation Position"
    "Text String"
    "Referenced Overlay Plane Sequence"
    "Referenced Overlay Plane Groups"
    "Overlay Pixel Data Sequence"
    "Overlay Magnification Type"
    "Overlay Smoothing Type"
    "Overlay or Image Magnification"
    "Magnify to Number of Columns"
    "Overlay Foreground Density"
    "Overlay Background Density"
    "Overlay Mode"
    "Threshold Density"
    "Referenced Image Box Sequence (Retired)"
    "Presentation LUT Sequence"
    "Presentation LUT Shape"
    "Referenced Presentation LUT Sequence"
    "Print Job ID"
    "Execution Status"
    "Execution Status Info"
    "Creation Date"
    "Creation Time"
    "Originator"
    "Destination AE"
    "Owner ID"
    "Number of Films"
    "Referenced Print Job Sequence (Pull Stored Print)"
    "Printer Status"
    "Printer Status Info"
    "Printer Name"
    "Print Queue ID"
    "Queue Status"
    "Print Job Description Sequence"
    "Referenced Print Job Sequence"
    "Print Management Capabilities Sequence"
    "Printer Characteristics Sequence"
    "Film Box Content Sequence"
    "Image Box Content Sequence"
    "Annotation Content Sequence"
    "Image Overlay Box Content Sequence"
    "Presentation LUT Content Sequence"
    "Proposed Study Sequence"
    "Original Image Sequence"
    "Label Using Information Extracted From Instances"
    "Label Text"
    "Label Style Selection"
    "Media Disposition"
    "Barcode Value"
    "Barcode Symbology"
    "Allow Media Splitting"
    "Include Non-DICOM Objects"
    "Include Display Application"
    "Preserve Composite Instances After Media Creation"
    "Total Number of Pieces of Media Created"
    "Requested Media Application Profile"
    "Referenced Storage Media Sequence"
    "Failure Attributes"
    "Allow Lossy Compression"
    "Request Priority"
    "RT Image Label"
    "RT Image Name"
    "RT Image Description"
    "Reported Values Origin"
    "RT Image Plane"
    "X-Ray Image Receptor Translation"
    "X-Ray Image Receptor Angle"
    "RT Image Orientation"
    "Image Plane Pixel Spacing"
    "RT Image Position"
    "Radiation Machine Name"
    "Radiation Machine SAD"
    "Radiation Machine SSD"
    "RT Image SID"
    "Source to Reference Object Distance"
    "Fraction Number"
    "Exposure Sequence"
    "Meterset Exposure"
    "Diaphragm Position"
    "Fluence Map Sequence"
    "Fluence Data Source"
    "Fluence Data Scale"
    "DVH Type"
    "Dose Units"
    "Dose Type"
    "Dose Comment"
    "Normalization Point"
    "Dose Summation Type"
    "Grid Frame Offset Vector"
    "Dose Grid Scaling"
    "RT Dose ROI Sequence"
    "Dose Value"
    "Tissue Heterogeneity Correction"
    "DVH Normalization Point"
    "DVH Normalization Dose Value"
    "DVH Sequence"
    "DVH Dose Scaling"
    "DVH Volume Units"
    "DVH Number of Bins"
    "DVH Data"
    "DVH Referenced ROI Sequence"
    "DVH ROI Contribution Type"
    "DVH Minimum Dose"
    "DVH Maximum Dose"
    "DVH Mean Dose"
    "Structure Set Label"
    "Structure Set Name"
    "Structure Set Description"
    "Structure Set Date"
    "Structure Set Time"
    "Referenced Frame of Reference Sequence"
    "RT Referenced Study Sequence"
    "RT Referenced Series Sequence"
    "Contour Image Sequence"
    "Structure Set ROI Sequence"
    "ROI Number"
    "Referenced Frame of Reference UID"
    "ROI Name"
    "ROI Description"
    "ROI Display Color"
    "ROI Volume"
    "RT Related ROI Sequence"
    "RT ROI Relationship"
    "ROI Generation Algorithm"
    "ROI Generation Description"
    "ROI Contour Sequence"
    "Contour Sequence"
    "Contour Geometric Type"
    "Contour Slab Thickness"
    "Contour Offset Vector"
    "Number of Contour Points"
    "Contour Number"
    "Attached Contours"
    "Contour Data"
    "RT ROI Observations Sequence"
    "Observation Number"
    "Referenced ROI Number"
    "ROI Observation Label"
    "RT ROI Identification Code Sequence"
    "ROI Observation Description"
    "Related RT ROI Observations Sequence"
    "RT ROI Interpreted Type"
    "ROI Interpreter"
    "ROI Physical Properties Sequence"
    "ROI Physical Property"
    "ROI Physical Property Value"
    "ROI Elemental Composition Sequence"
    "ROI Elemental Composition Atomic Number"
    "ROI Elemental Composition Atomic Mass Fraction"
    "Frame of Reference Relationship Sequence"
    "Related Frame of Reference UID"
    "Frame of Reference Transformation Type"
    "Frame of Reference Transformation Matrix"
    "Frame of Reference Transformation Comment"
    "Measured Dose Reference Sequence"
    "Measured Dose Description"
    "Measured Dose Type"
    "Measured Dose Value"
    "Treatment Session Beam Sequence"
    "Treatment Session Ion Beam Sequence"
    "Current Fraction Number"
    "Treatment Control Point Date"
    "Treatment Control Point Time"
    "Treatment Termination Status"
    "Treatment Termination Code"
    "Treatment Verification Status"
    "Referenced Treatment Record Sequence"
    "Specified Primary Meterset"
    "Specified Secondary Meterset"
    "Delivered Primary Meterset"
    "Delivered Secondary Meterset"
    "Specified Treatment Time"
    "Delivered Treatment Time"
    "Control Point Delivery Sequence"
    "Ion Control Point Delivery Sequence"
    "Specified Meterset"
    "Delivered Meterset"
    "Meterset Rate Set"
    "Meterset Rate Delivered"
    "Scan Spot Metersets Delivered"
    "Dose Rate Delivered"
    "Treatment Summary Calculated Dose Reference Sequence"
    "Cumulative Dose to Dose Reference"
    "First Treatment Date"
    "Most Recent Treatment Date"
    "Number of Fractions Delivered"
    "Override Sequence"
    "Parameter Sequence Pointer"
    "Override Parameter Pointer"
    "Parameter Item Index"
    "Measured Dose Reference Number"
    "Parameter Pointer"
    "Override Reason"
    "Corrected Parameter Sequence"
    "Correction Value"
    "Calculated Dose Reference Sequence"
    "Calculated Dose Reference Number"
    "Calculated Dose Reference Description"
    "Calculated Dose Reference Dose Value"
    "Start Meterset"
    "End Meterset"
    "Referenced Measured Dose Reference Sequence"
    "Referenced Measured Dose Reference Number"
    "Referenced Calculated Dose Reference Sequence"
    "Referenced Calculated Dose Reference Number"
    "Beam Limiting Device Leaf Pairs Sequence"
    "Recorded Wedge Sequence"
    "Recorded Compensator Sequence"
    "Recorded Block Sequence"
    "Treatment Summary Measured Dose Reference Sequence"
    "Recorded Snout Sequence"
    "Recorded Range Shifter Sequence"
    "Recorded Lateral Spreading Device Sequence"
    "Recorded Range Modulator Sequence"
    "Recorded Source Sequence"
    "Source Serial Number"
    "Treatment Session Application Setup Sequence"
    "Application Setup Check"
    "Recorded Brachy Accessory Device Sequence"
    "Referenced Brachy Accessory Device Number"
    "Recorded Channel Sequence"
    "Specified Channel Total Time"
    "Delivered Channel Total Time"
    "Specified Number of Pulses"
    "Delivered Number of Pulses"
    "Specified Pulse Repetition Interval"
    "Delivered Pulse Repetition Interval"
    "Recorded Source Applicator Sequence"
    "Referenced Source Applicator Number"
    "Recorded Channel Shield Sequence"
    "Referenced Channel Shield Number"
    "Brachy Control Point Delivered Sequence"
    "Safe Position Exit Date"
    "Safe Position Exit Time"
    "Safe Position Return Date"
    "Safe Position Return Time"
    "Current Treatment Status"
    "Treatment Status Comment"
    "Fraction Group Summary Sequence"
    "Referenced Fraction Number"
    "Fraction Group Type"
    "Beam Stopper Position"
    "Fraction Status Summary Sequence"
    "Treatment Date"
    "Treatment Time"
    "RT Plan Label"
    "RT Plan Name"
    "RT Plan Description"
    "RT Plan Date"
    "RT Plan Time"
    "Treatment Protocols"
    "Plan Intent"
    "Treatment Sites"
    "RT Plan Geometry"
    "Prescription Description"
    "Dose Reference Sequence"
    "Dose Reference Number"
    "Dose Reference UID"
    "Dose Reference Structure Type"
    "Nominal Beam Energy Unit"
    "Dose Reference Description"
    "Dose Reference Point Coordinates"
    "Nominal Prior Dose"
    "Dose Reference Type"
    "Constraint Weight"
    "Delivery Warning Dose"
    "Delivery Maximum Dose"
    "Target Minimum Dose"
    "Target Prescription Dose"
    "Target Maximum Dose"
    "Target Underdose Volume Fraction"
    "Organ at Risk Full-volume Dose"
    "Organ at Risk Limit Dose"
    "Organ at Risk Maximum Dose"
    "Organ at Risk Overdose Volume Fraction"
    "Tolerance Table Sequence"
    "Tolerance Table Number"
    "Tolerance Table Label"
    "Gantry Angle Tolerance"
    "Beam Limiting Device Angle Tolerance"
    "Beam Limiting Device Tolerance Sequence"
    "Beam Limiting Device Position Tolerance"
    "Snout Position Tolerance"
    "Patient Support Angle Tolerance"
    "Table Top Eccentric Angle Tolerance"
    "Table Top Pitch Angle Tolerance"
    "Table Top Roll Angle Tolerance"
    "Table Top Vertical Position Tolerance"
    "Table Top Longitudinal Position Tolerance"
    "Table Top Lateral Position Tolerance"
    "RT Plan Relationship"
    "Fraction Group Sequence"
    "Fraction Group Number"
    "Fraction Group Description"
    "Number of Fractions Planned"
    "Number of Fraction Pattern Digits Per Day"
    "Repeat Fraction Cycle Length"
    "Fraction Pattern"
    "Number of Beams"
    "Beam Dose Specification Point"
    "Beam Dose"
    "Beam Meterset"
    "Beam Dose Point Depth"
    "Beam Dose Point Equivalent Depth"
    "Beam Dose Point SSD"
    "Number of Brachy Application Setups"
    "Brachy Application Setup Dose Specification Point"
    "Brachy Application Setup Dose"
    "Beam Sequence"
    "Treatment Machine Name"
    "Primary Dosimeter Unit"
    "Source-Axis Distance"
    "Beam Limiting Device Sequence"
    "RT Beam Limiting Device Type"
    "Source to Beam Limiting Device Distance"
    "Isocenter to Beam Limiting Device Distance"
    "Number of Leaf/Jaw Pairs"
    "Leaf Position Boundaries"
    "Beam Number"
    "Beam Name"
    "Beam Description"
    "Beam Type"
    "Radiation Type"
    "High-Dose Technique Type"
    "Reference Image Number"
    "Planned Verification Image Sequence"
    "Imaging Device-Specific Acquisition Parameters"
    "Treatment Delivery Type"
    "Number of Wedges"
    "Wedge Sequence"
    "Wedge Number"
    "Wedge Type"
    "Wedge ID"
    "Wedge Angle"
    "Wedge Factor"
    "Total Wedge Tray Water-Equivalent Thickness"
    "Wedge Orientation"
    "Isocenter to Wedge Tray Distance"
    "Source to Wedge Tray Distance"
    "Wedge Thin Edge Position"
    "Bolus ID"
    "Bolus Description"
    "Number of Compensators"
    "Material ID"
    "Total Compensator Tray Factor"
    "Compensator Sequence"
    "Compensator Number"
    "Compensator ID"
    "Source to Compensator Tray Distance"
    "Compensator Rows"
    "Compensator Columns"
    "Compensator Pixel Spacing"
    "Compensator Position"
    "Compensator Transmission Data"
    "Compensator Thickness Data"
    "Number of Boli"
    "Compensator Type"
    "Number of Blocks"
    "Total Block Tray Factor"
    "Total Block Tray Water-Equivalent Thickness"
    "Block Sequence"
    "Block Tray ID"
    "Source to Block Tray Distance"
    "Isocenter to Block Tray Distance"
    "Block Type"
    "Accessory Code"
    "Block Divergence"
    "Block Mounting Position"
    "Block Number"
    "Block Name"
    "Block Thickness"
    "Block Transmission"
    "Block Number of Points"
    "Block Data"
    "Applicator Sequence"
    "Applicator ID"
    "Applicator Type"
    "Applicator Description"
    "Cumulative Dose Reference Coefficient"
    "Final Cumulative Meterset Weight"
    "Number of Control Points"
    "Control Point Sequence"
    "Control Point Index"
    "Nominal Beam Energy"
    "Dose Rate Set"
    "Wedge Position Sequence"
    "Wedge Position"
    "Beam Limiting Device Position Sequence"
    "Leaf/Jaw Positions"
    "Gantry Angle"
    "Gantry Rotation Direction"
    "Beam Limiting Device Angle"
    "Beam Limiting Device Rotation Direction"
    "Patient Support Angle"
    "Patient Support Rotation Direction"
    "Table Top Eccentric Axis Distance"
    "Table Top Eccentric Angle"
    "Table Top Eccentric Rotation Direction"
    "Table Top Vertical Position"
    "Table Top Longitudinal Position"
    "Table Top Lateral Position"
    "Isocenter Position"
    "Surface Entry Point"
    "Source to Surface Distance"
    "Cumulative Meterset Weight"
    "Table Top Pitch Angle"
    "Table Top Pitch Rotation Direction"
    "Table Top Roll Angle"
    "Table Top Roll Rotation Direction"
    "Head Fixation Angle"
    "Gantry Pitch Angle"
    "Gantry Pitch Rotation Direction"
    "Gantry Pitch Angle Tolerance"
    "Patient Setup Sequence"
    "Patient Setup Number"
    "Patient Setup Label"
    "Patient Additional Position"
    "Fixation Device Sequence"
    "Fixation Device Type"
    "Fixation Device Label"
    "Fixation Device Description"
    "Fixation Device Position"
    "Fixation Device Pitch Angle"
    "Fixation Device Roll Angle"
    "Shielding Device Sequence"
    "Shielding Device Type"
    "Shielding Device Label"
    "Shielding Device Description"
    "Shielding Device Position"
    "Setup Technique"
    "Setup Technique Description"
    "Setup Device Sequence"
    "Setup Device Type"
    "Setup Device Label"
    "Setup Device Description"
    "Setup Device Parameter"
    "Setup Reference Description"
    "Table Top Vertical Setup Displacement"
    "Table Top Longitudinal Setup Displacement"
    "Table Top Lateral Setup Displacement"
    "Brachy Treatment Technique"
    "Brachy Treatment Type"
    "Treatment Machine Sequence"
    "Source Sequence"
    "Source Number"
    "Source Type"
    "Source Manufacturer"
    "Active Source Diameter"
    "Active Source Length"
    "Source Encapsulation Nominal Thickness"
    "Source Encapsulation Nominal Transmission"
    "Source Isotope Name"
    "Source Isotope Half Life"
    "Source Strength Units"
    "Reference Air Kerma Rate"
    "Source Strength"
    "Source Strength Reference Date"
    "Source Strength Reference Time"
    "Application Setup Sequence"
    "Application Setup Type"
    "Application Setup Number"
    "Application Setup Name"
    "Application Setup Manufacturer"
    "Template Number"
    "Template Type"
    "Template Name"
    "Total Reference Air Kerma"
    "Brachy Accessory Device Sequence"
    "Brachy Accessory Device Number"
    "Brachy Accessory Device ID"
    "Brachy Accessory Device Type"
    "Brachy Accessory Device Name"
    "Brachy Accessory Device Nominal Thickness"
    "Brachy Accessory Device Nominal Transmission"
    "Channel Sequence"
    "Channel Number"
    "Channel Length"
    "Channel Total Time"
    "Source Movement Type"
    "Number of Pulses"
    "Pulse Repetition Interval"
    "Source Applicator Number"
    "Source Applicator ID"
    "Source Applicator Type"
    "Source Applicator Name"
    "Source Applicator Length"
    "Source Applicator Manufacturer"
    "Source Applicator Wall Nominal Thickness"
    "Source Applicator Wall Nominal Transmission"
    "Source Applicator Step Size"
    "Transfer Tube Number"
    "Transfer Tube Length"
    "Channel Shield Sequence"
    "Channel Shield Number"
    "Channel Shield ID"
    "Channel Shield Name"
    "Channel Shield Nominal Thickness"
    "Channel Shield Nominal Transmission"
    "Final Cumulative Time Weight"
    "Brachy Control Point Sequence"
    "Control Point Relative Position"
    "Control Point 3D Position"
    "Cumulative Time Weight"
    "Compensator Divergence"
    "Compensator Mounting Position"
    "Source to Compensator Distance"
    "Total Compensator Tray Water-Equivalent Thickness"
    "Isocenter to Compensator Tray Distance"
    "Compensator Column Offset"
    "Isocenter to Compensator Distances"
    "Compensator Relative Stopping Power Ratio"
    "Compensator Milling Tool Diameter"
    "Ion Range Compensator Sequence"
    "Compensator Description"
    "Radiation Mass Number"
    "Radiation Atomic Number"
    "Radiation Charge State"
    "Scan Mode"
    "Virtual Source-Axis Distances"
    "Snout Sequence"
    "Snout Position"
    "Snout ID"
    "Number of Range Shifters"
    "Range Shifter Sequence"
    "Range Shifter Number"
    "Range Shifter ID"
    "Range Shifter Type"
    "Range Shifter Description"
    "Number of Lateral Spreading Devices"
    "Lateral Spreading Device Sequence"
    "Lateral Spreading Device Number"
    "Lateral Spreading Device ID"
    "Lateral Spreading Device Type"
    "Lateral Spreading Device Description"
    "Lateral Spreading Device Water Equivalent Thickness"
    "Number of Range Modulators"
    "Range Modulator Sequence"
    "Range Modulator Number"
    "Range Modulator ID"
    "Range Modulator Type"
    "Range Modulator Description"
    "Beam Current Modulation ID"
    "Patient Support Type"
    "Patient Support ID"
    "Patient Support Accessory Code"
    "Fixation Light Azimuthal Angle"
    "Fixation Light Polar Angle"
    "Meterset Rate"
    "Range Shifter Settings Sequence"
    "Range Shifter Setting"
    "Isocenter to Range Shifter Distance"
    "Range Shifter Water Equivalent Thickness"
    "Lateral Spreading Device Settings Sequence"
    "Lateral Spreading Device Setting"
    "Isocenter to Lateral Spreading Device Distance"
    "Range Modulator Settings Sequence"
    "Range Modulator Gating Start Value"
    "Range Modulator Gating Stop Value"
    "Range Modulator Gating Start Water Equivalent Thickness"
    "Range Modulator Gating Stop Water Equivalent Thickness"
    "Isocenter to Range Modulator Distance"
    "Scan Spot Tune ID"
    "Number of Scan Spot Positions"
    "Scan Spot Position Map"
    "Scan Spot Meterset Weights"
    "Scanning Spot Size"
    "Number of Paintings"
    "Ion Tolerance Table Sequence"
    "Ion Beam Sequence"
    "Ion Beam Limiting Device Sequence"
    "Ion Block Sequence"
    "Ion Control Point Sequence"
    "Ion Wedge Sequence"
    "Ion Wedge Position Sequence"
    "Referenced Setup Image Sequence"
    "Setup Image Comment"
    "Motion Synchronization Sequence"
    "Control Point Orientation"
    "General Accessory Sequence"
    "General Accessory ID"
    "General Accessory Description"
    "General Accessory Type"
    "General Accessory Number"
    "Referenced RT Plan Sequence"
    "Referenced Beam Sequence"
    "Referenced Beam Number"
    "Referenced Reference Image Number"
    "Start Cumulative Meterset Weight"
    "End Cumulative Meterset Weight"
    "Referenced Brachy Application Setup Sequence"
    "Referenced Brachy Application Setup Number"
    "Referenced Source Number"
    "Referenced Fraction Group Sequence"
    "Referenced Fraction Group Number"
    "Referenced Verification Image Sequence"
    "Referenced Reference Image Sequence"
    "Referenced Dose Reference Sequence"
    "Referenced Dose Reference Number"
    "Brachy Referenced Dose Reference Sequence"
    "Referenced Structure Set Sequence"
    "Referenced Patient Setup Number"
    "Referenced Dose Sequence"
    "Referenced Tolerance Table Number"
    "Referenced Bolus Sequence"
    "Referenced Wedge Number"
    "Referenced Compensator Number"
    "Referenced Block Number"
    "Referenced Control Point Index"
    "Referenced Control Point Sequence"
    "Referenced Start Control Point Index"
    "Referenced Stop Control Point Index"
    "Referenced Range Shifter Number"
    "Referenced Lateral Spreading Device Number"
    "Referenced Range Modulator Number"
    "Approval Status"
    "Review Date"
    "Review Time"
    "Reviewer Name"
    "Arbitrary"
    "Text Comments"
    "Results ID"
    "Results ID Issuer"
    "Referenced Interpretation Sequence"
    "Interpretation Recorded Date"
    "Interpretation Recorded Time"
    "Interpretation Recorder"
    "Reference to Recorded Sound"
    "Interpretation Transcription Date"
    "Interpretation Transcription Time"
    "Interpretation Transcriber"
    "Interpretation Text"
    "Interpretation Author"
    "Interpretation Approver Sequence"
    "Interpretation Approval Date"
    "Interpretation Approval Time"
    "Physician Approving Interpretation"
    "Interpretation Diagnosis Description"
    "Interpretation Diagnosis Code Sequence"
    "Results Distribution List Sequence"
    "Distribution Name"
    "Distribution Address"
    "Interpretation ID"
    "Interpretation ID Issuer"
    "Interpretation Type ID"
    "Interpretation Status ID"
    "Impressions"
    "Results Comments"
    "MAC Parameters Sequence"
    "Curve Dimensions"
    "Number of Points"
    "Type of Data"
    "Curve Description"
    "Axis Units"
    "Axis Labels"
    "Data Value Representation"
    "Minimum Coordinate Value"
    "Maximum Coordinate Value"
    "Curve Range"
    "Curve Data Descriptor"
    "Coordinate Start Value"
    "Coordinate Step Value"
    "Curve Activation Layer"
    "Audio Type"
    "Audio Sample Format"
    "Number of Channels"
    "Number of Samples"
    "Sample Rate"
    "Total Time"
    "Audio Sample Data"
    "Audio Comments"
    "Curve Label"
    "Curve Referenced Overlay Sequence"
    "Curve Referenced Overlay Group"
    "Curve Data"
    "Shared Functional Groups Sequence"
    "Per-frame Functional Groups Sequence"
    "Waveform Sequence"
    "Channel Minimum Value"
    "Channel Maximum Value"
    "Waveform Bits Allocated"
    "Waveform Sample Interpretation"
    "Waveform Padding Value"
    "Waveform Data"
    "First Order Phase Correction Angle"
    "Spectroscopy Data"
    "Overlay Rows"
    "Overlay Columns"
    "Overlay Planes"
    "Number of Frames in Overlay"
    "Overlay Description"
    "Overlay Type"
    "Overlay Subtype"
    "Overlay Origin"
    "Image Frame Origin"
    "Overlay Plane Origin"
    "Overlay Compression Code"
    "Overlay Compression Originator"
    "Overlay Compression Label"
    "Overlay Compression Description"
    "Overlay Compression Step Pointers"
    "Overlay Repeat Interval"
    "Overlay Bits Grouped"
    "Overlay Bits Allocated"
    "Overlay Bit Position"
    "Overlay Format"
    "Overlay Location"
    "Overlay Code Label"
    "Overlay Number of Tables"
    "Overlay Code Table Location"
    "Overlay Bits For Code Word"
    "Overlay Activation Layer"
    "Overlay Descriptor - Gray"
    "Overlay Descriptor - Red"
    "Overlay Descriptor - Green"
    "Overlay Descriptor - Blue"
    "Overlays- Gray"
    "Overlays - Red"
    "Overlays - Green"
    "Overlays- Blue"
    "ROI Area"
    "ROI Mean"
    "ROI Standard Deviation"
    "Overlay Label"
    "Overlay Data"
    "Overlay Comments"
    "Pixel Data"
    "Digital Signatures Sequence"
    "Data Set Trailing Padding"
    "Item"
    "Item Delimitation Item"
    "Sequence Delimitation Item";

constexpr std::array<std::uint32_t, kElementCount + 1> kElementNameStarts{{
    0, 20, 41, 63, 86, 110, 123, 133, 162, 178, 186, 207, 213, 230, 243, 251,
    276, 302, 315, 340, 354, 388, 422, 453, 485, 525, 551, 580, 607, 637, 656, 680,
    707, 738, 769, 788, 799, 826, 876, 941, 1005, 1030, 1055, 1090, 1108, 1157, 1178, 1196,
    1214, 1242, 1274, 1309, 1347, 1395, 1415, 1428, 1450, 1460, 1476, 1498, 1520, 1540, 1553, 1569,
    1598, 1632, 1642, 1653, 1669, 1681, 1693, 1703, 1723, 1733, 1744, 1760, 1772, 1784, 1794, 1807,
    1823, 1851, 1867, 1887, 1904, 1925, 1953, 1961, 1980, 2000, 2015, 2039, 2051, 2067, 2086, 2111,
    2137, 2166, 2205, 2248, 2258, 2282, 2303, 2315, 2331, 2352, 2379, 2407, 2424, 2459, 2477, 2514,
    2536, 2561, 2579, 2617, 2641, 2651, 2663, 2680, 2703, 2721, 2750, 2772, 2818, 2845, 2889, 2923,
    2973, 2988, 3020, 3051, 3084, 3109, 3136, 3161, 3205, 3231, 3258, 3283, 3310, 3338, 3363, 3388,
    3416, 3469, 3493, 3520, 3541, 3564, 3579, 3593, 3612, 3635, 3689, 3712, 3745, 3767, 3788, 3798,
    3810, 3826, 3835, 3846, 3868, 3892, 3913, 3932, 3942, 3951, 3981, 4000, 4022, 4040, 4064, 4097,
    4132, 4176, 4220, 4248, 4285, 4316, 4356, 4412, 4461, 4510, 4550, 4592, 4653, 4716, 4781, 4839,
    4872, 4893, 4913, 4923, 4957, 4985, 5004, 5029, 5059, 5077, 5098, 5132, 5155, 5175, 5199, 5247,
    5278, 5300, 5339, 5360, 5374, 5384, 5404, 5422, 5442, 5462, 5475, 5513, 5553, 5602, 5619, 5638,
    5664, 5684, 5697, 5711, 5727, 5744, 5773, 5802, 5815, 5832, 5854, 5868, 5877, 5897, 5916, 5943,
    5955, 5965, 5979, 6005, 6021, 6040, 6070, 6097, 6126, 6148, 6173, 6200, 6227, 6252, 6280, 6298,
    6321, 6345, 6361, 6384, 6411, 6437, 6465, 6487, 6511, 6536, 6569, 6597, 6634, 6673, 6697, 6721,
    6759, 6783, 6816, 6836, 6865, 6909, 6927, 6944, 6960, 6972, 6991, 7004, 7014, 7052, 7079, 7101,
    7127, 7151, 7163, 7182, 7206, 7231, 7253, 7281, 7302, 7314, 7333, 7352, 7376, 7385, 7400, 7403,
    7421, 7454, 7472, 7499, 7531, 7569, 7584, 7593, 7607, 7625, 7642, 7656, 7670, 7693, 7715, 7745,
    7769, 7786, 7802, 7829, 7844, 7864, 7874, 7883, 7891, 7903, 7910, 7921, 7930, 7957, 7984, 8009,
    8034, 8072, 8100, 8150, 8194, 8226, 8267, 8286, 8313, 8342, 8355, 8375, 8396, 8421, 8445, 8470,
    8484, 8502, 8524, 8549, 8588, 8606, 8618, 8640, 8656, 8666, 8686, 8703, 8714, 8733, 8760, 8779,
    8802, 8825, 8848, 8873, 8899, 8929, 8958, 8981, 9003, 9033, 9070, 9104, 9137, 9156, 9169, 9183,
    9201, 9219, 9232, 9242, 9252, 9276, 9290, 9313, 9340, 9366, 9409, 9429, 9449, 9461, 9475, 9487,
    9511, 9534, 9562, 9573, 9583, 9601, 9617, 9632, 9640, 9652, 9677, 9692, 9711, 9737, 9750, 9768,
    9776, 9792, 9811, 9828, 9846, 9860, 9899, 9910, 9925, 9941, 9961, 9965, 9980, 10000, 10015, 10029,
    10043, 10057, 10070, 10091, 10110, 10127, 10151, 10175, 10193, 10217, 10238, 10248, 10277, 10294, 10312, 10322,
    10335, 10348, 10368, 10379, 10397, 10430, 10440, 10464, 10467, 10472, 10513, 10547, 10567, 10580, 10598, 10621,
    10638, 10655, 10665, 10674, 10683, 10693, 10730, 10747, 10762, 10786, 10812, 10846, 10882, 10904, 10928, 10941,
    10967, 10994, 11023, 11052, 11078, 11104, 11137, 11163, 11184, 11223, 11239, 11268, 11298, 11330, 11362, 11391,
    11420, 11456, 11485, 11496, 11522, 11540, 11558, 11576, 11602, 11630, 11651, 11678, 11707, 11744, 11768, 11784,
    11802, 11817, 11849, 11880, 11893, 11913, 11925, 11940, 11951, 11970, 11993, 12009, 12027, 12048, 12073, 12104,
    12137, 12150, 12160, 12179, 12195, 12208, 12247, 12274, 12298, 12309, 12339, 12360, 12376, 12388, 12410, 12432,
    12454, 12476, 12494, 12512, 12538, 12564, 12596, 12628, 12644, 12660, 12680, 12695, 12721, 12745, 12759, 12801,
    12833, 12875, 12907, 12936, 12955, 12984, 13003, 13032, 13051, 13080, 13099, 13127, 13147, 13174, 13200, 13230,
    13255, 13283, 13306, 13329, 13352, 13373, 13398, 13416, 13448, 13468, 13481, 13503, 13523, 13536, 13547, 13580,
    13613, 13657, 13697, 13730, 13750, 13790, 13806, 13836, 13860, 13881, 13909, 13931, 13957, 13991, 14011, 14033,
    14062, 14085, 14106, 14120, 14130, 14147, 14158, 14177, 14192, 14216, 14240, 14261, 14294, 14309, 14327, 14347,
    14372, 14393, 14412, 14440, 14459, 14477, 14494, 14512, 14535, 14549, 14572, 14580, 14607, 14633, 14653, 14675,
    14689, 14709, 14728, 14759, 14789, 14811, 14818, 14836, 14863, 14892, 14919, 14954, 14967, 14992, 15025, 15055,
    15079, 15096, 15119, 15149, 15173, 15196, 15219, 15244, 15275, 15293, 15307, 15331, 15360, 15399, 15410, 15428,
    15449, 15467, 15503, 15520, 15541, 15561, 15580, 15614, 15644, 15664, 15690, 15714, 15751, 15771, 15801, 15816,
    15842, 15857, 15876, 15904, 15927, 15948, 15965, 15995, 16022, 16053, 16083, 16102, 16137, 16181, 16202, 16218,
    16238, 16275, 16289, 16305, 16322, 16352, 16393, 16409, 16429, 16450, 16482, 16502, 16526, 16554, 16591, 16616,
    16640, 16666, 16704, 16753, 16771, 16812, 16844, 16885, 16910, 16944, 16969, 17002, 17040, 17063, 17082, 17096,
    17131, 17151, 17181, 17196, 17223, 17236, 17289, 17317, 17364, 17411, 17440, 17468, 17501, 17533, 17559, 17590,
    17618, 17639, 17665, 17693, 17728, 17772, 17820, 17858, 17880, 17913, 17933, 17959, 18007, 18055, 18083, 18099,
    18109, 18140, 18155, 18179, 18202, 18228, 18239, 18262, 18281, 18301, 18333, 18359, 18383, 18407, 18435, 18473,
    18493, 18505, 18525, 18553, 18577, 18598, 18623, 18643, 18657, 18676, 18704, 18728, 18743, 18763, 18779, 18820,
    18847, 18886, 18926, 18955, 18988, 19017, 19043, 19050, 19081, 19116, 19150, 19185, 19222, 19250, 19278, 19316,
    19344, 19367, 19392, 19429, 19455, 19474, 19499, 19531, 19563, 19606, 19630, 19661, 19683, 19715, 19737, 19762,
    19803, 19840, 19890, 19941, 19994, 20047, 20097, 20147, 20204, 20231, 20241, 20275, 20303, 20323, 20348, 20368,
    20403, 20438, 20472, 20508, 20552, 20581, 20610, 20639, 20670, 20691, 20714, 20744, 20776, 20814, 20837, 20878,
    20906, 20935, 20964, 20991, 21020, 21055, 21092, 21120, 21150, 21176, 21200, 21216, 21235, 21259, 21273, 21294,
    21326, 21352, 21387, 21414, 21434, 21454, 21474, 21494, 21514, 21534, 21565, 21587, 21611, 21629, 21648, 21656,
    21669, 21687, 21702, 21716, 21728, 21743, 21759, 21771, 21782, 21801, 21815, 21827, 21846, 21860, 21884, 21901,
    21928, 21936, 21958, 21968, 21984, 22003, 22016, 22044, 22072, 22091, 22129, 22144, 22166, 22187, 22203, 22224,
    22239, 22248, 22276, 22290, 22309, 22342, 22374, 22409, 22439, 22472, 22506, 22525, 22542, 22561, 22590, 22609,
    22635, 22649, 22678, 22720, 22728, 22752, 22774, 22790, 22812, 22835, 22861, 22884, 22918, 22942, 22964, 22978,
    22995, 23018, 23047, 23073, 23096, 23120, 23151, 23182, 23206, 23239, 23271, 23306, 23345, 23375, 23401, 23429,
    23453, 23477, 23504, 23537, 23573, 23598, 23636, 23671, 23708, 23735, 23772, 23783, 23800, 23845, 23865, 23906,
    23933, 23974, 24001, 24031, 24073, 24093, 24112, 24125, 24149, 24170, 24194, 24207, 24225, 24246, 24274, 24304,
    24332, 24347, 24384, 24415, 24457, 24499, 24519, 24552, 24577, 24606, 24643, 24664, 24683, 24703, 24726, 24760,
    24781, 24805, 24829, 24858, 24887, 24915, 24940, 24984, 25014, 25044, 25073, 25097, 25115, 25137, 25161, 25178,
    25200, 25226, 25242, 25262, 25278, 25301, 25324, 25328, 25335, 25341, 25370, 25383, 25394, 25405, 25423, 25435,
    25452, 25467, 25483, 25497, 25508, 25516, 25536, 25562, 25587, 25613, 25638, 25668, 25697, 25732, 25766, 25785,
    25810, 25824, 25845, 25865, 25890, 25913, 25943, 25980, 26008, 26041, 26054, 26066, 26083, 26096, 26108, 26145,
    26161, 26171, 26195, 26223, 26264, 26307, 26349, 26379, 26401, 26436, 26473, 26509, 26554, 26601, 26647, 26662,
    26674, 26698, 26724, 26751, 26762, 26785, 26814, 26844, 26865, 26879, 26894, 26911, 26919, 26935, 26960, 26987,
    27016, 27043, 27074, 27106, 27128, 27143, 27157, 27182, 27196, 27218, 27236, 27260, 27280, 27290, 27316, 27339,
    27354, 27372, 27393, 27423, 27442, 27465, 27487, 27522, 27540, 27565, 27591, 27610, 27651, 27687, 27709, 27737,
    27761, 27780, 27792, 27825, 27867, 27882, 27899, 27914, 27933, 27952, 27967, 27982, 28008, 28034, 28059, 28084,
    28108, 28141, 28157, 28201, 28221, 28239, 28257, 28275, 28296, 28317, 28342, 28373, 28406, 28430, 28444, 28477,
    28492, 28504, 28526, 28545, 28569, 28593, 28617, 28641, 28680, 28694, 28708, 28722, 28736, 28767, 28800, 28813,
    28831, 28859, 28886, 28914, 28938, 28969, 28982, 29027, 29041, 29061, 29088, 29114, 29132, 29153, 29180, 29203,
    29216, 29230, 29253, 29286, 29310, 29340, 29359, 29393, 29430, 29446, 29463, 29482, 29496, 29516, 29536, 29557,
    29579, 29601, 29628, 29668, 29704, 29729, 29753, 29793, 29809, 29829, 29861, 29891, 29943, 29970, 29982, 30008,
    30043, 30078, 30111, 30144, 30181, 30217, 30249, 30276, 30295, 30349, 30371, 30404, 30418, 30449, 30482, 30534,
    30560, 30582, 30600, 30635, 30670, 30703, 30736, 30767, 30794, 30830, 30866, 30898, 30932, 30959, 30999, 31060,
    31077, 31085, 31109, 31130, 31155, 31180, 31193, 31205, 31232, 31258, 31280, 31306, 31318, 31334, 31344, 31357,
    31388, 31413, 31450, 31484, 31509, 31549, 31574, 31604, 31629, 31646, 31665, 31693, 31724, 31751, 31767, 31806,
    31841, 31876, 31911, 31933, 31969, 32000, 32022, 32056, 32084, 32114, 32142, 32173, 32204, 32224, 32242, 32286,
    32325, 32379, 32414, 32430, 32456, 32484, 32522, 32559, 32596, 32651, 32706, 32722, 32746, 32773, 32818, 32863,
    32895, 32949, 32996, 33043, 33092, 33139, 33183, 33203, 33250, 33279, 33330, 33363, 33423, 33483, 33515, 33547,
    33570, 33596, 33625, 33692, 33728, 33765, 33816, 33852, 33889, 33940, 33983, 34013, 34040, 34075, 34107, 34137,
    34159, 34179, 34229, 34262, 34295, 34304, 34338, 34363, 34398, 34424, 34446, 34463, 34485, 34507, 34528, 34538,
    34564, 34585, 34612, 34635, 34659, 34679, 34710, 34728, 34750, 34763, 34810, 34842, 34870, 34878, 34882, 34886,
    34897, 34900, 34919, 34946, 34970, 34993, 35012, 35022, 35043, 35077, 35100, 35122, 35145, 35182, 35195, 35225,
    35252, 35285, 35330, 35363, 35405, 35420, 35447, 35464, 35481, 35506, 35534, 35550, 35569, 35588, 35604, 35626,
    35649, 35684, 35714, 35748, 35771, 35798, 35829, 35841, 35855, 35876, 35910, 35934, 35952, 35978, 36011, 36046,
    36070, 36096, 36108, 36127, 36149, 36176, 36209, 36239, 36273, 36299, 36342, 36359, 36374, 36387, 36402, 36423,
    36436, 36456, 36474, 36494, 36518, 36552, 36580, 36605, 36630, 36670, 36693, 36711, 36726, 36745, 36774, 36786,
    36802, 36828, 36853, 36864, 36884, 36901, 36916, 36935, 36964, 36992, 37011, 37034, 37060, 37085, 37101, 37121,
    37151, 37165, 37177, 37193, 37212, 37229, 37250, 37261, 37284, 37298, 37325, 37343, 37370, 37396, 37430, 37463,
    37488, 37508, 37516, 37549, 37591, 37632, 37659, 37670, 37675, 37688, 37707, 37732, 37761, 37777, 37798, 37829,
    37854, 37870, 37880, 37895, 37916, 37940, 37961, 37981, 38017, 38045, 38069, 38081, 38104, 38127, 38143, 38154,
    38169, 38194, 38212, 38236, 38261, 38285, 38304, 38325, 38339, 38356, 38372, 38413, 38427, 38440, 38459, 38481,
    38503, 38534, 38559, 38594, 38626, 38650, 38687, 38715, 38747, 38776, 38813, 38828, 38843, 38859, 38903, 38948,
    38975, 38988, 39017, 39046, 39070, 39092, 39112, 39135, 39168, 39205, 39247, 39259, 39282, 39300, 39324, 39336,
    39348, 39362, 39386, 39407, 39421, 39456, 39495, 39528, 39550, 39569, 39618, 39661, 39686, 39699, 39718, 39744,
    39770, 39792, 39838, 39860, 39886, 39917, 39955, 39965, 39986, 40014, 40029, 40074, 40105, 40125, 40144, 40177,
    40203, 40226, 40259, 40271, 40292, 40309, 40355, 40372, 40388, 40428, 40445, 40466, 40494, 40516, 40540, 40574,
    40610, 40660, 40692, 40724, 40751, 40770, 40797, 40826, 40844, 40865, 40895, 40911, 40938, 40951, 40970, 40990,
    41018, 41033, 41054, 41079, 41120, 41154, 41171, 41188, 41205, 41222, 41239, 41256, 41273, 41290, 41307, 41324,
    41341, 41358, 41375, 41392, 41409, 41426, 41454, 41471, 41505, 41530, 41557, 41593, 41627, 41657, 41689, 41710,
    41728, 41745, 41775, 41817, 41846, 41877, 41904, 41933, 41955, 41977, 41997, 42013, 42034, 42069, 42102, 42128,
    42155, 42184, 42211, 42240, 42266, 42292, 42318, 42336, 42364, 42382, 42405, 42432, 42454, 42475, 42520, 42537,
    42564, 42580, 42597, 42628, 42636, 42653, 42676, 42701, 42729, 42759, 42791, 42827, 42861, 42889, 42922, 42953,
    42996, 43046, 43057, 43077, 43136, 43154, 43168, 43184, 43220, 43245, 43265, 43289, 43313, 43340, 43375, 43412,
    43454, 43487, 43513, 43543, 43591, 43630, 43659, 43687, 43710, 43746, 43779, 43793, 43813, 43853, 43893, 43925,
    43956, 43988, 44001, 44013, 44026, 44049, 44059, 44083, 44098, 44123, 44149, 44168, 44179, 44192, 44204, 44218,
    44237, 44268, 44293, 44337, 44350, 44385, 44398, 44418, 44439, 44465, 44481, 44502, 44511, 44535, 44554, 44593,
    44630, 44666, 44669, 44698, 44735, 44752, 44780, 44808, 44839, 44855, 44880, 44917, 44933, 44963, 44977, 44988,
    45004, 45022, 45039, 45064, 45089, 45103, 45118, 45136, 45157, 45188, 45204, 45222, 45246, 45276, 45316, 45344,
    45376, 45396, 45424, 45440, 45452, 45473, 45502, 45520, 45534, 45560, 45595, 45617, 45648, 45662, 45681, 45692,
    45703, 45707, 45732, 45769, 45791, 45803, 45826, 45847, 45879, 45908, 45948, 45966, 45974, 45994, 46026, 46049,
    46074, 46094, 46124, 46150, 46187, 46218, 46237, 46248, 46281, 46312, 46339, 46365, 46387, 46417, 46445, 46471,
    46497, 46509, 46526, 46565, 46590, 46612, 46648, 46660, 46676, 46697, 46710, 46723, 46733, 46747, 46755, 46770,
    46819, 46833, 46852, 46864, 46878, 46890, 46920, 46949, 46987, 47019, 47044, 47070, 47097, 47131, 47164, 47187,
    47210, 47258, 47268, 47289, 47306, 47319, 47336, 47357, 47382, 47409, 47458, 47497, 47532, 47565, 47583, 47606,
    47622, 47636, 47649, 47669, 47691, 47705, 47737, 47763, 47783, 47808, 47825, 47847, 47868, 47889, 47901, 47936,
    47951, 47968, 47985, 48003, 48023, 48042, 48060, 48068, 48078, 48087, 48099, 48118, 48137, 48161, 48178, 48198,
    48208, 48239, 48262, 48290, 48302, 48318, 48334, 48352, 48360, 48387, 48412, 48428, 48444, 48457, 48476, 48494,
    48519, 48537, 48555, 48593, 48621, 48650, 48672, 48698, 48708, 48741, 48749, 48764, 48781, 48791, 48814, 48833,
    48857, 48883, 48903, 48919, 48941, 48963, 48984, 49008, 49022, 49039, 49051, 49079, 49097, 49118, 49139, 49174,
    49201, 49237, 49260, 49275, 49307, 49328, 49355, 49389, 49428, 49474, 49514, 49544, 49582, 49622, 49663, 49695,
    49720, 49738, 49757, 49788, 49823, 49846, 49874, 49902, 49930, 49956, 49985, 50021, 50047, 50075, 50101, 50129,
    50153, 50177, 50208, 50243, 50261, 50279, 50296, 50319, 50348, 50367, 50419, 50452, 50472, 50498, 50527, 50544,
    50570, 50596, 50616, 50646, 50663, 50678, 50706, 50722, 50756, 50788, 50825, 50861, 50875, 50887, 50930, 50971,
    51016, 51059, 51099, 51122, 51151, 51174, 51224, 51247, 51278, 51320, 51353, 51377, 51397, 51441, 51464, 51505,
    51546, 51571, 51599, 51627, 51653, 51679, 51714, 51749, 51784, 51819, 51851, 51883, 51922, 51945, 51968, 51993,
    52018, 52042, 52066, 52097, 52123, 52142, 52163, 52195, 52209, 52223, 52236, 52248, 52267, 52279, 52291, 52310,
    52321, 52336, 52352, 52376, 52399, 52420, 52438, 52467, 52491, 52517, 52549, 52567, 52586, 52603, 52624, 52645,
    52664, 52688, 52707, 52739, 52769, 52793, 52819, 52857, 52881, 52903, 52924, 52946, 52982, 53021, 53060, 53084,
    53115, 53150, 53181, 53211, 53248, 53289, 53325, 53345, 53368, 53389, 53415, 53442, 53483, 53511, 53527, 53542,
    53571, 53580, 53593, 53614, 53646, 53665, 53700, 53749, 53778, 53791, 53813, 53835, 53855, 53884, 53912, 53951,
    53993, 54017, 54041, 54052, 54061, 54077, 54086, 54100, 54124, 54146, 54181, 54227, 54250, 54266, 54280, 54292,
    54302, 54310, 54321, 54333, 54376, 54393, 54425, 54454, 54478, 54486, 54503, 54525, 54536, 54565, 54585, 54603,
    54617, 54652, 54668, 54687, 54712, 54732, 54761, 54787, 54801, 54817, 54833, 54856, 54899, 54913, 54926, 54955,
    54987, 54997, 55011, 55027, 55050, 55062, 55072, 55087, 55105, 55127, 55137, 55156, 55169, 55184, 55206, 55243,
    55275, 55299, 55321, 55340, 55359, 55372, 55395, 55409, 55447, 55465, 55477, 55502, 55528, 55567, 55588, 55622,
    55655, 55680, 55718, 55745, 55776, 55802, 55820, 55839, 55865, 55891, 55912, 55946, 55966, 55999, 56018, 56036,
    56067, 56095, 56117, 56137, 56156, 56183, 56207, 56227, 56248, 56275, 56299, 56326, 56352, 56377, 56398, 56420,
    56448, 56473, 56488, 56515, 56536, 56553, 56571, 56595, 56617, 56644, 56681, 56722, 56758, 56784, 56805, 56831,
    56846, 56859, 56870, 56889, 56911, 56931, 56969, 57010, 57029, 57053, 57074, 57098, 57113, 57143, 57173, 57199,
    57221, 57245, 57267, 57297, 57312, 57325, 57338, 57363, 57395, 57425, 57451, 57479, 57507, 57548, 57592, 57608,
    57622, 57636, 57654, 57674, 57690, 57715, 57739, 57759, 57781, 57803, 57827, 57857, 57897, 57940, 57967, 57987,
    58007, 58030, 58051, 58068, 58087, 58119, 58154, 58182, 58211, 58242, 58267, 58289, 58311, 58340, 58370, 58419,
    58457, 58482, 58516, 58557, 58590, 58620, 58643, 58664, 58687, 58709, 58718, 58747, 58761, 58775, 58783, 58807,
    58829, 58849, 58865, 58883, 58908, 58943, 58976, 59007, 59034, 59063, 59099, 59150, 59176, 59200, 59222, 59240,
    59260, 59287, 59313, 59333, 59351, 59381, 59411, 59437, 59450, 59481, 59502, 59537, 59577, 59619, 59651, 59697,
    59730, 59764, 59797, 59852, 59906, 59943, 59960, 59989, 60011, 60037, 60055, 60074, 60102, 60119, 60152, 60170,
    60196, 60214, 60241, 60272, 60291, 60322, 60347, 60373, 60393, 60422, 60444, 60468, 60495, 60519, 60541, 60574,
    60606, 60636, 60680, 60722, 60746, 60780, 60812, 60850, 60885, 60919, 60951, 60992, 61025, 61056, 61080, 61113,
    61138, 61161, 61190, 61213, 61243, 61276, 61312, 61347, 61378, 61420, 61453, 61468, 61479, 61490, 61503, 61512,
    61525, 61535, 61552, 61586, 61614, 61642, 61665, 61692, 61725, 61758, 61784, 61803, 61824, 61856, 61884, 61912,
    61946, 61982, 62020, 62054, 62071, 62091, 62108, 62132, 62154, 62178, 62189, 62205, 62228, 62244, 62260, 62272,
    62289, 62299, 62310, 62335, 62359, 62383, 62394, 62415, 62437, 62458, 62480, 62490, 62509, 62527, 62544, 62555,
    62565, 62582, 62596, 62607, 62640, 62670, 62680, 62713, 62749, 62766, 62787, 62808, 62831, 62861, 62883, 62896,
    62930, 62947, 62959, 62974, 62988, 63015, 63034, 63046, 63061, 63075, 63093, 63113, 63137, 63167, 63192, 63223,
    63256, 63279, 63299, 63321, 63341, 63355, 63371, 63389, 63413, 63440, 63466, 63490, 63515, 63539, 63565, 63590,
    63604, 63618, 63634, 63648, 63656, 63664, 63686, 63699, 63711, 63727, 63737, 63764, 63789, 63793, 63815, 63841,
}};
// clang-format on

namespace {

constexpr std::array<DcTag, kElementCount> tagsOfRows() {
  std::array<DcTag, kElementCount> tags{};
  for (std::size_t i = 0; i < tags.size(); ++i) tags[i] = kElementTable[i].tag;
  return tags;
}

}  // namespace

constexpr std::array<DcTag, kElementCount> kElementTags = tagsOfRows();

namespace {

constexpr bool tagsAscend() {
  for (std::size_t i = 1; i < kElementTags.size(); ++i) {
    if (kElementTags[i - 1] >= kElementTags[i]) return false;
  }
  return true;
}

static_assert(kElementTable.back().keyword != nullptr, "as many rows as kElementCount says");
static_assert(kElementNameStarts.back() == sizeof kElementNames - 1, "the last name ends with all");
static_assert(tagsAscend(), "rows ascend by tag, without doubles");

}  // namespace
}  // namespace quillon
