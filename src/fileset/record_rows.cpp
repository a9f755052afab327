#include "fileset/record_rows.h"

#include <algorithm>
#include <array>

#include "dicom/tags.h"

namespace quillon {

namespace {

using enum DcDirRecType;
using enum KeyNeed;

// Elements that the dictionary does not know.
constexpr DcTag kInventoryPurpose = 0x00080401;
constexpr DcTag kInventoryLevel = 0x00080403;
constexpr DcTag kScopeOfInventorySequence = 0x00080400;
constexpr DcTag kInventoryCompletionStatus = 0x00080426;
constexpr DcTag kTotalNumberOfStudyRecords = 0x00080428;
constexpr DcTag kLutNumber = 0x00200026;
constexpr DcTag kImplantName = 0x00221095;
constexpr DcTag kImplantPartNumber = 0x00221097;
constexpr DcTag kImplantSize = 0x00686210;
constexpr DcTag kImplantAssemblyTemplateName = 0x00760001;
constexpr DcTag kProcedureTypeCodeSequence = 0x00760020;
constexpr DcTag kImplantTemplateGroupName = 0x00780001;
constexpr DcTag kImplantTemplateGroupIssuer = 0x00780020;
constexpr DcTag kUserContentLabel = 0x30100033;
constexpr DcTag kUserContentLongLabel = 0x30100034;

// clang-format off

// The levels above the objects: the keys that the tree of older media has too.
constexpr std::array kPatientKeys{
    RecordKey{tags::kPatientsName, Place},
    RecordKey{tags::kPatientId, Value},
    RecordKey{tags::kPatientsSex, Place},
    RecordKey{tags::kPatientsAge, Place},
    RecordKey{tags::kPatientsBirthDate, Place},
};
constexpr std::array kStudyKeys{
    RecordKey{tags::kAccessionNumber, Place},
    RecordKey{tags::kStudyId, Value},
    RecordKey{tags::kStudyDate, Value},
    RecordKey{tags::kStudyDescription, Place},
    RecordKey{tags::kStudyTime, Value},
    RecordKey{tags::kStudyInstanceUid, Value},
};
constexpr std::array kSeriesKeys{
    RecordKey{tags::kSeriesNumber, Value},
    RecordKey{tags::kSeriesDate, Place},
    RecordKey{tags::kModality, Value},
    RecordKey{tags::kSeriesInstanceUid, Value},
};

// The objects.
constexpr std::array kImageKeys{
    RecordKey{tags::kInstanceNumber, Value},
};
constexpr std::array kRtDoseKeys{
    RecordKey{tags::kInstanceNumber, Value},
    RecordKey{tags::kDoseSummationType, Value},
};
constexpr std::array kRtStructureSetKeys{
    RecordKey{tags::kInstanceNumber, Value},
    RecordKey{tags::kStructureSetLabel, Value},
    RecordKey{tags::kStructureSetDate, Place},
    RecordKey{tags::kStructureSetTime, Place},
};
constexpr std::array kRtPlanKeys{
    RecordKey{tags::kInstanceNumber, Value},
    RecordKey{tags::kRtPlanLabel, Value},
    RecordKey{tags::kRtPlanDate, Place},
    RecordKey{tags::kRtPlanTime, Place},
};
constexpr std::array kRtTreatRecordKeys{
    RecordKey{tags::kInstanceNumber, Value},
    RecordKey{tags::kTreatmentDate, Place},
    RecordKey{tags::kTreatmentTime, Place},
};
constexpr std::array kPresentationKeys{
    RecordKey{tags::kInstanceNumber, Value},
    RecordKey{tags::kContentLabel, Value},
    RecordKey{tags::kContentDescription, Place},
    RecordKey{tags::kContentCreatorsName, Place},
    RecordKey{tags::kPresentationCreationDate, Value},
    RecordKey{tags::kPresentationCreationTime, Value},
    RecordKey{tags::kReferencedSeriesSequence, IfThere},
    RecordKey{tags::kBlendingSequence, IfThere},
};
constexpr std::array kWaveformKeys{
    RecordKey{tags::kInstanceNumber, Value},
    RecordKey{tags::kContentDate, Value},
    RecordKey{tags::kContentTime, Value},
};
constexpr std::array kSrDocumentKeys{
    RecordKey{tags::kInstanceNumber, Value},
    RecordKey{tags::kCompletionFlag, Value},
    RecordKey{tags::kVerificationFlag, Value},
    RecordKey{tags::kContentDate, Value},
    RecordKey{tags::kContentTime, Value},
    RecordKey{tags::kVerificationDateTime, IfThere},
    RecordKey{tags::kConceptNameCodeSequence, Value},
    RecordKey{tags::kContentSequence, IfThere},
};
constexpr std::array kKeyObjectDocKeys{
    RecordKey{tags::kInstanceNumber, Value},
    RecordKey{tags::kContentDate, Value},
    RecordKey{tags::kContentTime, Value},
    RecordKey{tags::kConceptNameCodeSequence, Value},
    RecordKey{tags::kContentSequence, IfThere},
};
constexpr std::array kSpectroscopyKeys{
    RecordKey{tags::kInstanceNumber, Value},
    RecordKey{tags::kImageType, Value},
    RecordKey{tags::kContentDate, Value},
    RecordKey{tags::kContentTime, Value},
    RecordKey{tags::kReferencedImageEvidenceSequence, IfThere},
    RecordKey{tags::kNumberOfFrames, Value},
    RecordKey{tags::kRows, Value},
    RecordKey{tags::kColumns, Value},
    RecordKey{tags::kDataPointRows, Value},
    RecordKey{tags::kDataPointColumns, Value},
};
constexpr std::array kRawDataKeys{
    RecordKey{tags::kContentDate, Value},
    RecordKey{tags::kContentTime, Value},
    RecordKey{tags::kInstanceNumber, Place},
};
constexpr std::array kContentKeys{
    RecordKey{tags::kContentDate, Value},
    RecordKey{tags::kContentTime, Value},
    RecordKey{tags::kInstanceNumber, Value},
    RecordKey{tags::kContentLabel, Value},
    RecordKey{tags::kContentDescription, Place},
    RecordKey{tags::kContentCreatorsName, Place},
};
constexpr std::array kHangingProtocolKeys{
    RecordKey{tags::kHangingProtocolName, Value},
    RecordKey{tags::kHangingProtocolDescription, Value},
    RecordKey{tags::kHangingProtocolLevel, Value},
    RecordKey{tags::kHangingProtocolCreator, Value},
    RecordKey{tags::kHangingProtocolCreationDatetime, Value},
    RecordKey{tags::kHangingProtocolDefinitionSequence, Value},
    RecordKey{tags::kNumberOfPriorsReferenced, Value},
    RecordKey{tags::kHangingProtocolUserIdentificationCodeSequence, Place},
};
constexpr std::array kEncapsulatedDocumentKeys{
    RecordKey{tags::kContentDate, Place},
    RecordKey{tags::kContentTime, Place},
    RecordKey{tags::kInstanceNumber, Value},
    RecordKey{tags::kDocumentTitle, Place},
    RecordKey{tags::kHl7InstanceIdentifier, IfThere},
    RecordKey{tags::kConceptNameCodeSequence, Place},
    RecordKey{tags::kMimeTypeOfEncapsulatedDocument, Value},
};
constexpr std::array kPaletteKeys{
    RecordKey{tags::kContentLabel, Value},
    RecordKey{tags::kContentDescription, Place},
};
constexpr std::array kImplantKeys{
    RecordKey{tags::kManufacturer, Value},
    RecordKey{kImplantName, Value, DcVr::LO},
    RecordKey{kImplantSize, IfThere, DcVr::LO},
    RecordKey{kImplantPartNumber, Value, DcVr::LO},
};
constexpr std::array kImplantAssemblyKeys{
    RecordKey{kImplantAssemblyTemplateName, Value, DcVr::LO},
    RecordKey{tags::kManufacturer, Value},
    RecordKey{kProcedureTypeCodeSequence, Value, DcVr::SQ},
};
constexpr std::array kImplantGroupKeys{
    RecordKey{kImplantTemplateGroupName, Value, DcVr::LO},
    RecordKey{kImplantTemplateGroupIssuer, Value, DcVr::LO},
};
constexpr std::array kSurfaceScanKeys{
    RecordKey{tags::kContentDate, Value},
    RecordKey{tags::kContentTime, Value},
};
constexpr std::array kAssessmentKeys{
    RecordKey{tags::kInstanceNumber, Value},
    RecordKey{tags::kInstanceCreationDate, Value},
    RecordKey{tags::kInstanceCreationTime, Place},
};
constexpr std::array kRadiotherapyKeys{
    RecordKey{tags::kInstanceNumber, Value},
    RecordKey{kUserContentLabel, IfThere, DcVr::SH},
    RecordKey{kUserContentLongLabel, IfThere, DcVr::LO},
    RecordKey{tags::kContentDescription, Place},
    RecordKey{tags::kContentCreatorsName, Place},
};
constexpr std::array kInventoryKeys{
    RecordKey{tags::kContentDate, Value},
    RecordKey{tags::kContentTime, Value},
    RecordKey{kInventoryPurpose, Place, DcVr::LO},
    RecordKey{kInventoryLevel, Value, DcVr::CS},
    RecordKey{kScopeOfInventorySequence, Place, DcVr::SQ},
    RecordKey{kInventoryCompletionStatus, Value, DcVr::CS},
    RecordKey{kTotalNumberOfStudyRecords, Value, DcVr::UL},
};
constexpr std::array kOverlayKeys{
    RecordKey{tags::kOverlayNumber, Place},
};
constexpr std::array kCurveKeys{
    RecordKey{tags::kCurveNumber, Place},
};
constexpr std::array kModalityLutKeys{
    RecordKey{kLutNumber, Place, DcVr::IS},
};
constexpr std::array kStoredPrintKeys{
    RecordKey{tags::kInstanceNumber, Place},
};

// The SOP classes behind this root, current and retired. Those of security and of non-destructive
// testing stand at the type that their objects are like.
constexpr std::string_view kRoot = "1.2.840.10008.5.1.";
constexpr const char* kMakersImageClass = "1.2.392.876543.9125.1.1.2";  // has another root

constexpr std::array kImageClasses{
    kMakersImageClass,
    "1.29", "1.30", "4.1.1.1", "4.1.1.1.1", "4.1.1.1.1.1", "4.1.1.1.2", "4.1.1.1.2.1",
    "4.1.1.1.3", "4.1.1.1.3.1", "4.1.1.2", "4.1.1.2.1", "4.1.1.2.2", "4.1.1.3", "4.1.1.3.1",
    "4.1.1.4", "4.1.1.4.1", "4.1.1.4.3", "4.1.1.4.4", "4.1.1.5", "4.1.1.6", "4.1.1.6.1",
    "4.1.1.6.2", "4.1.1.6.3", "4.1.1.7", "4.1.1.7.1", "4.1.1.7.2", "4.1.1.7.3", "4.1.1.7.4",
    "4.1.1.12.1", "4.1.1.12.1.1", "4.1.1.12.2", "4.1.1.12.2.1", "4.1.1.12.3", "4.1.1.13.1.1",
    "4.1.1.13.1.2", "4.1.1.13.1.3", "4.1.1.13.1.4", "4.1.1.13.1.5", "4.1.1.14.1", "4.1.1.14.2",
    "4.1.1.20", "4.1.1.30", "4.1.1.66.4", "4.1.1.66.7", "4.1.1.66.8", "4.1.1.77.1",
    "4.1.1.77.1.1", "4.1.1.77.1.1.1", "4.1.1.77.1.2", "4.1.1.77.1.2.1", "4.1.1.77.1.3",
    "4.1.1.77.1.4", "4.1.1.77.1.4.1", "4.1.1.77.1.5.1", "4.1.1.77.1.5.2", "4.1.1.77.1.5.4",
    "4.1.1.77.1.5.5", "4.1.1.77.1.5.6", "4.1.1.77.1.5.7", "4.1.1.77.1.5.8", "4.1.1.77.1.6",
    "4.1.1.77.1.7", "4.1.1.77.1.8", "4.1.1.77.1.9", "4.1.1.77.2", "4.1.1.81.1", "4.1.1.82.1",
    "4.1.1.128", "4.1.1.128.1", "4.1.1.130", "4.1.1.481.1", "4.1.1.481.23", "4.1.1.481.24",
    "4.1.1.501.1", "4.1.1.501.2.1", "4.1.1.501.2.2", "4.1.1.501.4", "4.1.1.501.5", "4.1.1.601.1",
    "4.1.1.601.2", "4.1.1.601.3", "4.1.1.601.4"};
constexpr std::array kRtDoseClasses{
    "4.1.1.481.2"};
constexpr std::array kRtStructureSetClasses{
    "4.1.1.481.3"};
constexpr std::array kRtPlanClasses{
    "4.1.1.481.5", "4.1.1.481.8"};
constexpr std::array kRtTreatRecordClasses{
    "4.1.1.481.4", "4.1.1.481.6", "4.1.1.481.7", "4.1.1.481.9"};
constexpr std::array kPresentationClasses{
    "4.1.1.11.1", "4.1.1.11.2", "4.1.1.11.3", "4.1.1.11.4",
    "4.1.1.11.5", "4.1.1.11.6", "4.1.1.11.7", "4.1.1.11.8", "4.1.1.11.9", "4.1.1.11.10",
    "4.1.1.11.11", "4.1.1.11.12", "4.1.1.131"};
constexpr std::array kWaveformPresentationClasses{
    "4.1.1.9.100.1", "4.1.1.9.100.2"};

constexpr std::array kWaveformClasses{
    "4.1.1.9.1", "4.1.1.9.1.1", "4.1.1.9.1.2", "4.1.1.9.1.3", "4.1.1.9.1.4", "4.1.1.9.2.1",
    "4.1.1.9.3.1", "4.1.1.9.4.1", "4.1.1.9.4.2", "4.1.1.9.5.1", "4.1.1.9.6.1", "4.1.1.9.6.2",
    "4.1.1.9.7.1", "4.1.1.9.7.2", "4.1.1.9.7.3", "4.1.1.9.7.4", "4.1.1.9.8.1", "4.1.1.601.5"};
constexpr std::array kSrDocumentClasses{
    "4.1.1.78.6", "4.1.1.79.1", "4.1.1.88.1", "4.1.1.88.2", "4.1.1.88.3", "4.1.1.88.4",
    "4.1.1.88.11", "4.1.1.88.22", "4.1.1.88.33", "4.1.1.88.34", "4.1.1.88.35", "4.1.1.88.40",
    "4.1.1.88.50", "4.1.1.88.65", "4.1.1.88.67", "4.1.1.88.68", "4.1.1.88.69", "4.1.1.88.70",
    "4.1.1.88.71", "4.1.1.88.72", "4.1.1.88.73", "4.1.1.88.74", "4.1.1.88.75", "4.1.1.88.76",
    "4.1.1.88.77"};
constexpr std::array kKeyObjectDocClasses{
    "4.1.1.88.59"};
constexpr std::array kSpectroscopyClasses{
    "4.1.1.4.2"};
constexpr std::array kRawDataClasses{
    "4.1.1.66"};
constexpr std::array kRegistrationClasses{
    "4.1.1.66.1", "4.1.1.66.3"};
constexpr std::array kFiducialClasses{
    "4.1.1.66.2"};
constexpr std::array kEncapsulatedDocumentClasses{
    "4.1.1.104.1", "4.1.1.104.2", "4.1.1.104.3", "4.1.1.104.4", "4.1.1.104.5"};
constexpr std::array kValueMapClasses{
    "4.1.1.67"};
constexpr std::array kStereometricClasses{
    "4.1.1.77.1.5.3"};
constexpr std::array kPlanClasses{
    "4.34.1", "4.34.7", "4.34.10"};
constexpr std::array kMeasurementClasses{
    "4.1.1.78.1", "4.1.1.78.2", "4.1.1.78.3", "4.1.1.78.4", "4.1.1.78.5", "4.1.1.78.7",
    "4.1.1.78.8", "4.1.1.80.1"};
constexpr std::array kSurfaceClasses{
    "4.1.1.66.5"};
constexpr std::array kSurfaceScanClasses{
    "4.1.1.68.1", "4.1.1.68.2"};
constexpr std::array kTractClasses{
    "4.1.1.66.6"};
constexpr std::array kAssessmentClasses{
    "4.1.1.90.1"};
constexpr std::array kRadiotherapyClasses{
    "4.1.1.481.10", "4.1.1.481.11", "4.1.1.481.12", "4.1.1.481.13", "4.1.1.481.14",
    "4.1.1.481.15", "4.1.1.481.16", "4.1.1.481.17", "4.1.1.481.18", "4.1.1.481.19",
    "4.1.1.481.20", "4.1.1.481.21", "4.1.1.481.22", "4.1.1.481.25"};
constexpr std::array kAnnotationClasses{
    "4.1.1.91.1"};
constexpr std::array kHangingProtocolClasses{
    "4.38.1"};
constexpr std::array kPaletteClasses{
    "4.39.1"};
constexpr std::array kImplantClasses{
    "4.43.1"};
constexpr std::array kImplantAssemblyClasses{
    "4.44.1"};
constexpr std::array kImplantGroupClasses{
    "4.45.1"};
constexpr std::array kInventoryClasses{
    "4.1.1.201.1"};
constexpr std::array kOverlayClasses{
    "4.1.1.8"};
constexpr std::array kCurveClasses{
    "4.1.1.9", "4.1.1.129"};
constexpr std::array kModalityLutClasses{
    "4.1.1.10"};
constexpr std::array kVoiLutClasses{
    "4.1.1.11"};
constexpr std::array kStoredPrintClasses{
    "1.27"};

constexpr std::array kObjectRows{
    RecordRow{Image,                kImageKeys,                kImageClasses},
    RecordRow{RtDose,               kRtDoseKeys,               kRtDoseClasses},
    RecordRow{RtStructureSet,       kRtStructureSetKeys,       kRtStructureSetClasses},
    RecordRow{RtPlan,               kRtPlanKeys,               kRtPlanClasses},
    RecordRow{RtTreatRecord,        kRtTreatRecordKeys,        kRtTreatRecordClasses},
    RecordRow{Presentation,         kPresentationKeys,         kPresentationClasses},
    RecordRow{WaveformPresentation, kPresentationKeys, kWaveformPresentationClasses},
    RecordRow{Waveform,             kWaveformKeys,             kWaveformClasses},
    RecordRow{SrDocument,           kSrDocumentKeys,           kSrDocumentClasses},
    RecordRow{KeyObjectDoc,         kKeyObjectDocKeys,         kKeyObjectDocClasses},
    RecordRow{Spectroscopy,         kSpectroscopyKeys,         kSpectroscopyClasses},
    RecordRow{RawData,              kRawDataKeys,              kRawDataClasses},
    RecordRow{Registration,         kContentKeys,              kRegistrationClasses},
    RecordRow{Fiducial,             kContentKeys,              kFiducialClasses},
    RecordRow{EncapsulatedDocument, kEncapsulatedDocumentKeys, kEncapsulatedDocumentClasses},
    RecordRow{ValueMap,             kContentKeys,              kValueMapClasses},
    RecordRow{Stereometric,         {},                        kStereometricClasses},
    RecordRow{Plan,                 {},                        kPlanClasses},
    RecordRow{Measurement,          kContentKeys,              kMeasurementClasses},
    RecordRow{Surface,              kContentKeys,              kSurfaceClasses},
    RecordRow{SurfaceScan,          kSurfaceScanKeys,          kSurfaceScanClasses},
    RecordRow{Tract,                kContentKeys,              kTractClasses},
    RecordRow{Assessment,           kAssessmentKeys,           kAssessmentClasses},
    RecordRow{Radiotherapy,         kRadiotherapyKeys,         kRadiotherapyClasses},
    RecordRow{Annotation,           kContentKeys,              kAnnotationClasses},
    RecordRow{HangingProtocol,      kHangingProtocolKeys,      kHangingProtocolClasses},
    RecordRow{Palette,              kPaletteKeys,              kPaletteClasses},
    RecordRow{Implant,              kImplantKeys,              kImplantClasses},
    RecordRow{ImplantAssembly,      kImplantAssemblyKeys,      kImplantAssemblyClasses},
    RecordRow{ImplantGroup,         kImplantGroupKeys,         kImplantGroupClasses},
    RecordRow{Inventory,            kInventoryKeys,            kInventoryClasses},
    RecordRow{Overlay,              kOverlayKeys,              kOverlayClasses},
    RecordRow{Curve,                kCurveKeys,                kCurveClasses},
    RecordRow{ModalityLut,          kModalityLutKeys,          kModalityLutClasses},
    RecordRow{VoiLut,               kModalityLutKeys,          kVoiLutClasses},
    RecordRow{StoredPrint,          kStoredPrintKeys,          kStoredPrintClasses},
};
// clang-format on

constexpr RecordRow kPrivateRow{Private, {}, {}};
constexpr std::array kLevelRows{
    RecordRow{Patient, kPatientKeys, {}},
    RecordRow{Study, kStudyKeys, {}},
    RecordRow{Series, kSeriesKeys, {}},
};

}  // namespace

const RecordRow& RecordRowOf(std::string_view sopClassUid) {
  if (sopClassUid.starts_with(kRoot)) sopClassUid.remove_prefix(kRoot.size());
  for (const RecordRow& row : kObjectRows) {
    for (const std::string_view sopClass : row.sopClasses) {
      if (sopClass == sopClassUid) return row;
    }
  }
  return kPrivateRow;
}

const RecordRow& RecordRowOf(DcDirRecType type) {
  for (const RecordRow& row : kLevelRows) {
    if (row.type == type) return row;
  }
  const auto* const found = std::ranges::find(kObjectRows, type, &RecordRow::type);
  return found == kObjectRows.end() ? kPrivateRow : *found;
}

std::vector<DcTag> AllRecordKeys() {
  std::vector<DcTag> tags;
  const auto add = [&tags](std::span<const RecordRow> rows) {
    for (const RecordRow& row : rows) {
      for (const RecordKey& key : row.keys) tags.push_back(key.tag);
    }
  };
  add(kLevelRows);
  add(kObjectRows);
  return tags;
}

bool IsTopLevel(DcDirRecType type) {
  switch (type) {
    case HangingProtocol:
    case Palette:
    case Implant:
    case ImplantAssembly:
    case ImplantGroup:
    case Inventory:
      return true;
    default:
      return false;
  }
}

}  // namespace quillon
