#include <array>

#include "dicom/tags.h"
#include "profile_tables.h"

namespace quillon {

namespace {

using enum ProfileTest;
using enum ProfileNeed;

// Elements

constexpr ProfileElement kSyntax{tags::kTransferSyntaxUid, "Transfer Syntax UID"};
constexpr ProfileElement kModality{tags::kModality, "Modality"};
constexpr ProfileElement kSamples{tags::kSamplesPerPixel, "Samples per Pixel"};
constexpr ProfileElement kPhotometric{tags::kPhotometricInterpretation, "Photometric Interpretation"};
constexpr ProfileElement kFrames{tags::kNumberOfFrames, "Number of Frames"};
constexpr ProfileElement kRows{tags::kRows, "Rows"};
constexpr ProfileElement kColumns{tags::kColumns, "Columns"};
constexpr ProfileElement kAllocated{tags::kBitsAllocated, "Bits Allocated"};
constexpr ProfileElement kStored{tags::kBitsStored, "Bits Stored"};
constexpr ProfileElement kHigh{tags::kHighBit, "High Bit"};
constexpr ProfileElement kSigned{tags::kPixelRepresentation, "Pixel Representation"};
constexpr ProfileElement kOverlay{0x60000010, "Overlay Rows"};
constexpr ProfileElement kRegions{tags::kSequenceOfUltrasoundRegions, "Sequence of Ultrasound Regions"};
constexpr ProfileElement kInstitution{tags::kInstitutionName, "Institution Name"};
constexpr ProfileElement kAddress{tags::kInstitutionAddress, "Institution Address"};
constexpr ProfileElement kPhysicians{tags::kPerformingPhysiciansName, "Performing Physician's Name"};
constexpr ProfileElement kModel{tags::kManufacturersModelName, "Manufacturer's Model Name"};
constexpr ProfileElement kDetectorId{tags::kDetectorId, "Detector ID"};
constexpr ProfileElement kDetectorMaker{tags::kDetectorManufacturerName, "Detector Manufacturer Name"};
constexpr ProfileElement kDetectorModel{tags::kDetectorManufacturersModelName, "Detector Manufacturer's Model Name"};
constexpr ProfileElement kBirthDate{tags::kPatientsBirthDate, "Patient's Birth Date"};
constexpr ProfileElement kSex{tags::kPatientsSex, "Patient's Sex"};
constexpr ProfileElement kImageType{tags::kImageType, "Image Type"};
constexpr ProfileElement kCalibration{tags::kCalibrationImage, "Calibration Image"};
constexpr ProfileElement kReferencedImages{tags::kReferencedImageSequence, "Referenced Image Sequence"};
constexpr ProfileElement kLossyRatio{tags::kLossyImageCompressionRatio, "Lossy Image Compression Ratio"};
constexpr ProfileElement kFrameOfReference{tags::kFrameOfReferenceUid, "Frame of Reference UID"};
constexpr ProfileElement kSynchronization{tags::kSynchronizationFrameOfReferenceUid, "Synchronization Frame of Reference UID"};
constexpr ProfileElement kTimeSynchronized{tags::kAcquisitionTimeSynchronized, "Acquisition Time Synchronized"};
constexpr ProfileElement kAcquired{tags::kAcquisitionDatetime, "Acquisition DateTime"};
constexpr ProfileElement kPosition{tags::kImagePositionPatient, "Image Position (Patient)"};
constexpr ProfileElement kOrientation{tags::kImageOrientationPatient, "Image Orientation (Patient)"};
constexpr ProfileElement kSpacing{tags::kPixelSpacing, "Pixel Spacing"};

// SOP classes

#define QUILLON_CLASS(rest) "1.2.840.10008.5.1.4.1.1." rest
constexpr std::string_view kDx = QUILLON_CLASS("1.1");
constexpr std::string_view kIntraOral = QUILLON_CLASS("1.3");
constexpr std::string_view kCt = QUILLON_CLASS("2");
constexpr std::string_view kUsFrames = QUILLON_CLASS("3.1");
constexpr std::string_view kMr = QUILLON_CLASS("4");
constexpr std::string_view kUs = QUILLON_CLASS("6.1");
constexpr std::string_view kSc = QUILLON_CLASS("7");
constexpr std::string_view kGrayscaleState = QUILLON_CLASS("11.1");
constexpr std::string_view kXa = QUILLON_CLASS("12.1");
constexpr std::string_view kDoseReport = QUILLON_CLASS("88.67");
constexpr std::string_view kStructuredDisplay = QUILLON_CLASS("131");
#undef QUILLON_CLASS

// Transfer syntaxes

#define QUILLON_PLAIN "1.2.840.10008.1.2.1"
#define QUILLON_BASELINE "1.2.840.10008.1.2.4.50"
#define QUILLON_EXTENDED "1.2.840.10008.1.2.4.51"
#define QUILLON_LOSSLESS "1.2.840.10008.1.2.4.70"
#define QUILLON_2000 "1.2.840.10008.1.2.4.90\\1.2.840.10008.1.2.4.91"
#define QUILLON_MPEG2_MAIN "1.2.840.10008.1.2.4.100"
#define QUILLON_MPEG2_HIGH "1.2.840.10008.1.2.4.101"
#define QUILLON_MPEG4 "1.2.840.10008.1.2.4.102"
#define QUILLON_MPEG4_BD "1.2.840.10008.1.2.4.103"
#define QUILLON_RLE "1.2.840.10008.1.2.5"
#define QUILLON_VIDEO QUILLON_MPEG2_MAIN "\\" QUILLON_MPEG2_HIGH "\\" QUILLON_MPEG4 "\\" QUILLON_MPEG4_BD
constexpr std::string_view kPlain = QUILLON_PLAIN;
constexpr std::string_view kLossless = QUILLON_LOSSLESS;
constexpr std::string_view kPlainOrLossless = QUILLON_PLAIN "\\" QUILLON_LOSSLESS;
constexpr std::string_view kAnyJpeg = QUILLON_LOSSLESS "\\" QUILLON_BASELINE "\\" QUILLON_EXTENDED;
constexpr std::string_view kPlainOrJpeg = QUILLON_PLAIN "\\" QUILLON_LOSSLESS "\\" QUILLON_BASELINE "\\" QUILLON_EXTENDED;
constexpr std::string_view kPlainOr2000 = QUILLON_PLAIN "\\" QUILLON_2000;
constexpr std::string_view kPlainOrMpeg2Main = QUILLON_PLAIN "\\" QUILLON_MPEG2_MAIN;
constexpr std::string_view kPlainOrMpeg2High = QUILLON_PLAIN "\\" QUILLON_MPEG2_HIGH;
constexpr std::string_view kPlainOrMpeg4 = QUILLON_PLAIN "\\" QUILLON_MPEG4;
constexpr std::string_view kPlainOrMpeg4Bd = QUILLON_PLAIN "\\" QUILLON_MPEG4_BD;
constexpr std::string_view kUsSyntaxes = QUILLON_PLAIN "\\" QUILLON_RLE "\\" QUILLON_BASELINE;
constexpr std::string_view kPlainOrRle = QUILLON_PLAIN "\\" QUILLON_RLE;
constexpr std::string_view kPlainOrBaseline = QUILLON_PLAIN "\\" QUILLON_BASELINE;

constexpr std::string_view kUsColors = "MONOCHROME2\\RGB\\PALETTE COLOR\\YBR_FULL\\YBR_FULL_422";

// Objects within a class

constexpr ProfileCondition kAlways{};
constexpr ProfileCondition kGrayscale{kPhotometric, "MONOCHROME2"};
constexpr ProfileCondition kPalette{kPhotometric, "PALETTE COLOR"};
constexpr ProfileCondition kUsPlainColors{kPhotometric, "MONOCHROME2\\RGB\\PALETTE COLOR"};
constexpr ProfileCondition kYbrFull{kPhotometric, "YBR_FULL"};
constexpr ProfileCondition kYbrFull422{kPhotometric, "YBR_FULL_422"};
constexpr ProfileCondition kVideo{kSyntax, QUILLON_VIDEO};

// The rules: which objects in which transfer syntaxes, then their values.

// General purpose
constexpr std::array kGeneral{
    ProfileRule{kAnySopClass, kAlways, kSyntax, OneOf, kPlain},
};
constexpr std::array kGeneralJpeg{
    ProfileRule{kAnySopClass, kAlways, kSyntax, OneOf, kPlainOrJpeg},
};
constexpr std::array kGeneral2000{
    ProfileRule{kAnySopClass, kAlways, kSyntax, OneOf, kPlainOr2000},
};
constexpr std::array kGeneralMpeg2Main{
    ProfileRule{kAnySopClass, kAlways, kSyntax, OneOf, kPlainOrMpeg2Main},
    ProfileRule{kAnySopClass, kVideo,  kFrames, There, {}},
};
constexpr std::array kGeneralMpeg2High{
    ProfileRule{kAnySopClass, kAlways, kSyntax, OneOf, kPlainOrMpeg2High},
    ProfileRule{kAnySopClass, kVideo,  kFrames, There, {}},
};
constexpr std::array kGeneralMpeg4{
    ProfileRule{kAnySopClass, kAlways, kSyntax, OneOf, kPlainOrMpeg4},
    ProfileRule{kAnySopClass, kVideo,  kFrames, There, {}},
};
constexpr std::array kGeneralMpeg4Bd{
    ProfileRule{kAnySopClass, kAlways, kSyntax, OneOf, kPlainOrMpeg4Bd},
    ProfileRule{kAnySopClass, kVideo,  kFrames, There, {}},
};
constexpr std::array kAnySyntax{
    ProfileRule{kAnySopClass, kAlways, kSyntax, Anything, {}},
};
constexpr std::array kMpeg2Dvd{
    ProfileRule{kAnySopClass, kAlways, kSyntax, OneOf, QUILLON_MPEG2_MAIN},
    ProfileRule{kAnySopClass, kAlways, kFrames, There, {}},
};

// CT and MR
constexpr std::array kCtMr{
    ProfileRule{kCt,             kAlways,    kSyntax,      OneOf,        kPlainOrLossless},
    ProfileRule{kMr,             kAlways,    kSyntax,      OneOf,        kPlainOrLossless},
    ProfileRule{kSc,             kAlways,    kSyntax,      OneOf,        kPlainOrLossless},
    ProfileRule{kGrayscaleState, kAlways,    kSyntax,      OneOf,        kPlain},
    ProfileRule{kDoseReport,     kAlways,    kSyntax,      OneOf,        kPlain},
    ProfileRule{kCt,             kAlways,    kModality,    OneOf,        "CT"},
    ProfileRule{kCt,             kAlways,    kPhotometric, OneOf,        "MONOCHROME2"},
    ProfileRule{kMr,             kAlways,    kModality,    OneOf,        "MR"},
    ProfileRule{kMr,             kAlways,    kPhotometric, OneOf,        "MONOCHROME2"},
    ProfileRule{kMr,             kAlways,    kStored,      OneOf,        "8\\12\\13\\14\\15\\16"},
    ProfileRule{kMr,             kAlways,    kHigh,        OneLess,      {}},
    ProfileRule{kSc,             kAlways,    kSamples,     OneOf,        "1"},
    ProfileRule{kSc,             kAlways,    kPhotometric, OneOf,        "MONOCHROME2\\PALETTE COLOR"},
    ProfileRule{kSc,             kGrayscale, kAllocated,   OneOf,        "8\\16"},
    ProfileRule{kSc,             kGrayscale, kStored,      AllAllocated, {}},
    ProfileRule{kSc,             kGrayscale, kHigh,        OneLess,      {}},
    ProfileRule{kSc,             kPalette,   kAllocated,   OneOf,        "8"},
    ProfileRule{kSc,             kPalette,   kStored,      OneOf,        "8"},
    ProfileRule{kSc,             kPalette,   kHigh,        OneOf,        "7"},
};

// X-ray angiography
constexpr std::array kXaBasic{
    ProfileRule{kXa, kAlways, kSyntax,    OneOf,  kLossless},
    ProfileRule{kXa, kAlways, kModality,  OneOf,  "XA"},
    ProfileRule{kXa, kAlways, kRows,      AtMost, "512"},
    ProfileRule{kXa, kAlways, kColumns,   AtMost, "512"},
    ProfileRule{kXa, kAlways, kAllocated, OneOf,  "8"},
    ProfileRule{kXa, kAlways, kStored,    OneOf,  "8"},
};
constexpr std::array kXa1024OnCd{
    ProfileRule{kXa,             kAlways, kSyntax,      OneOf,      kLossless},
    ProfileRule{kSc,             kAlways, kSyntax,      OneOf,      kPlain},
    ProfileRule{kGrayscaleState, kAlways, kSyntax,      OneOf,      kPlain},
    ProfileRule{kXa,             kAlways, kModality,    OneOf,      "XA"},
    ProfileRule{kXa,             kAlways, kRows,        AtMost,     "1024"},
    ProfileRule{kXa,             kAlways, kColumns,     AtMost,     "1024"},
    ProfileRule{kXa,             kAlways, kStored,      OneOf,      "8\\10\\12"},
    ProfileRule{kSc,             kAlways, kRows,        AtMost,     "1024"},
    ProfileRule{kSc,             kAlways, kColumns,     AtMost,     "1024"},
    ProfileRule{kSc,             kAlways, kSamples,     OneOf,      "1"},
    ProfileRule{kSc,             kAlways, kPhotometric, OneOf,      "MONOCHROME2"},
    ProfileRule{kSc,             kAlways, kAllocated,   OneOf,      "8"},
    ProfileRule{kSc,             kAlways, kStored,      OneOf,      "8"},
    ProfileRule{kSc,             kAlways, kHigh,        OneOf,      "7"},
    ProfileRule{kSc,             kAlways, kSigned,      OneOf,      "0"},
    ProfileRule{kSc,             kAlways, kOverlay,     NoOverlays, {}},
};
// The same, but for lossy compression.
constexpr auto kXa1024OnDvd = [] {
  auto rules = kXa1024OnCd;
  rules.front().values = kAnyJpeg;
  return rules;
}();

// Ultrasound: single frames, and those with several as well.
constexpr std::array kUsImages{
    ProfileRule{kUs,       kAlways,        kSyntax,      OneOf, kUsSyntaxes},
    ProfileRule{kUs,       kAlways,        kPhotometric, OneOf, kUsColors},
    ProfileRule{kUs,       kUsPlainColors, kSyntax,      OneOf, kPlainOrRle},
    ProfileRule{kUs,       kYbrFull,       kSyntax,      OneOf, QUILLON_RLE},
    ProfileRule{kUs,       kYbrFull422,    kSyntax,      OneOf, kPlainOrBaseline},
    ProfileRule{kUsFrames, kAlways,        kSyntax,      OneOf, kUsSyntaxes},
    ProfileRule{kUsFrames, kAlways,        kPhotometric, OneOf, kUsColors},
    ProfileRule{kUsFrames, kUsPlainColors, kSyntax,      OneOf, kPlainOrRle},
    ProfileRule{kUsFrames, kYbrFull,       kSyntax,      OneOf, QUILLON_RLE},
    ProfileRule{kUsFrames, kYbrFull422,    kSyntax,      OneOf, kPlainOrBaseline},
};
constexpr std::size_t kUsRulesOfClass = kUsImages.size() / 2;
constexpr std::array kUsSpatial{
    ProfileRule{kUs,       kAlways, kRegions, Items, {}},
    ProfileRule{kUsFrames, kAlways, kRegions, Items, {}},
};
constexpr std::array kUsCombined{
    ProfileRule{kUs,       kAlways, kRegions, Components, {}},
    ProfileRule{kUsFrames, kAlways, kRegions, Components, {}},
};
using CalibrationRules = std::array<ProfileRule, 2>;
constexpr auto UsSingle(const CalibrationRules& calibration) {
  std::array<ProfileRule, kUsRulesOfClass + 1> rules{};
  for (std::size_t i = 0; i < kUsRulesOfClass; ++i) rules[i] = kUsImages[i];
  rules.back() = calibration.front();
  return rules;
}
constexpr auto UsMulti(const CalibrationRules& calibration) {
  std::array<ProfileRule, kUsImages.size() + 2> rules{};
  for (std::size_t i = 0; i < kUsImages.size(); ++i) rules[i] = kUsImages[i];
  rules[kUsImages.size()] = calibration.front();
  rules.back() = calibration.back();
  return rules;
}
constexpr std::span<const ProfileRule> kUsDisplaySingle(kUsImages.data(), kUsRulesOfClass);
constexpr auto kUsSpatialSingle = UsSingle(kUsSpatial);
constexpr auto kUsSpatialMulti = UsMulti(kUsSpatial);
constexpr auto kUsCombinedSingle = UsSingle(kUsCombined);
constexpr auto kUsCombinedMulti = UsMulti(kUsCombined);

// Dental radiographs
constexpr std::array kDental{
    ProfileRule{kIntraOral,         kAlways, kSyntax,        OneOf,     kPlain},
    ProfileRule{kDx,                kAlways, kSyntax,        OneOf,     kPlain},
    ProfileRule{kStructuredDisplay, kAlways, kSyntax,        OneOf,     kPlain},
    ProfileRule{kGrayscaleState,    kAlways, kSyntax,        OneOf,     kPlain},
    ProfileRule{kIntraOral,         kAlways, kStored,        OneOf,     "8\\10\\12\\16"},
    ProfileRule{kIntraOral,         kAlways, kAllocated,     Narrowest, {}},
    ProfileRule{kIntraOral,         kAlways, kInstitution,   There,     {}},
    ProfileRule{kIntraOral,         kAlways, kModel,         There,     {}},
    ProfileRule{kIntraOral,         kAlways, kDetectorId,    There,     {}},
    ProfileRule{kIntraOral,         kAlways, kDetectorMaker, There,     {}},
    ProfileRule{kIntraOral,         kAlways, kDetectorModel, There,     {}},
    ProfileRule{kDx,                kAlways, kStored,        OneOf,     "8\\10\\12\\16"},
    ProfileRule{kDx,                kAlways, kAllocated,     Narrowest, {}},
    ProfileRule{kDx,                kAlways, kInstitution,   There,     {}},
    ProfileRule{kDx,                kAlways, kModel,         There,     {}},
    ProfileRule{kDx,                kAlways, kDetectorId,    There,     {}},
    ProfileRule{kDx,                kAlways, kDetectorMaker, There,     {}},
    ProfileRule{kDx,                kAlways, kDetectorModel, There,     {}},
};

// The keys

constexpr std::array kGeneralKeys{
    ProfileKey{DcDirRecType::Image, kImageType,        IfThere},
    ProfileKey{DcDirRecType::Image, kReferencedImages, IfThere},
};
constexpr std::array kCompressedKeys{
    ProfileKey{DcDirRecType::Patient,      kBirthDate,        IfThere},
    ProfileKey{DcDirRecType::Patient,      kSex,              IfThere},
    ProfileKey{DcDirRecType::Series,       kInstitution,      IfThere},
    ProfileKey{DcDirRecType::Series,       kAddress,          IfThere},
    ProfileKey{DcDirRecType::Series,       kPhysicians,       IfThere},
    ProfileKey{DcDirRecType::Image,        kImageType,        IfThere},
    ProfileKey{DcDirRecType::Image,        kCalibration,      IfThere},
    ProfileKey{DcDirRecType::Image,        kReferencedImages, IfShared},
    ProfileKey{DcDirRecType::Image,        kLossyRatio,       IfThere},
    ProfileKey{DcDirRecType::Image,        kRows,             Value},
    ProfileKey{DcDirRecType::Image,        kColumns,          Value},
    ProfileKey{DcDirRecType::Image,        kFrameOfReference, IfThere},
    ProfileKey{DcDirRecType::Image,        kSynchronization,  IfThere},
    ProfileKey{DcDirRecType::Image,        kFrames,           IfThere},
    ProfileKey{DcDirRecType::Image,        kTimeSynchronized, IfThere},
    ProfileKey{DcDirRecType::Image,        kAcquired,         IfThere},
    ProfileKey{DcDirRecType::Image,        kPosition,         IfShared},
    ProfileKey{DcDirRecType::Image,        kOrientation,      IfShared},
    ProfileKey{DcDirRecType::Image,        kSpacing,          IfShared},
    ProfileKey{DcDirRecType::Spectroscopy, kReferencedImages, IfShared},
    ProfileKey{DcDirRecType::Spectroscopy, kRows,             Value},
    ProfileKey{DcDirRecType::Spectroscopy, kColumns,          Value},
    ProfileKey{DcDirRecType::Spectroscopy, kFrameOfReference, IfThere},
    ProfileKey{DcDirRecType::Spectroscopy, kSynchronization,  IfThere},
    ProfileKey{DcDirRecType::Spectroscopy, kFrames,           IfThere},
    ProfileKey{DcDirRecType::Spectroscopy, kTimeSynchronized, IfThere},
    ProfileKey{DcDirRecType::Spectroscopy, kAcquired,         IfThere},
    ProfileKey{DcDirRecType::Spectroscopy, kPosition,         IfShared},
    ProfileKey{DcDirRecType::Spectroscopy, kOrientation,      IfShared},
    ProfileKey{DcDirRecType::Spectroscopy, kSpacing,          IfShared},
};
constexpr std::array kMpeg2DvdKeys{
    ProfileKey{DcDirRecType::Patient, kBirthDate,   IfThere},
    ProfileKey{DcDirRecType::Patient, kSex,         IfThere},
    ProfileKey{DcDirRecType::Series,  kInstitution, IfThere},
    ProfileKey{DcDirRecType::Series,  kAddress,     IfThere},
    ProfileKey{DcDirRecType::Series,  kPhysicians,  IfThere},
    ProfileKey{DcDirRecType::Image,   kImageType,   IfThere},
    ProfileKey{DcDirRecType::Image,   kLossyRatio,  IfThere},
    ProfileKey{DcDirRecType::Image,   kRows,        Value},
    ProfileKey{DcDirRecType::Image,   kColumns,     Value},
};
constexpr std::array kCtMrKeys{
    ProfileKey{DcDirRecType::Image, kReferencedImages, IfThere},
    ProfileKey{DcDirRecType::Image, kPosition,         IfThere},
    ProfileKey{DcDirRecType::Image, kOrientation,      IfThere},
    ProfileKey{DcDirRecType::Image, kFrameOfReference, IfThere},
    ProfileKey{DcDirRecType::Image, kRows,             Value},
    ProfileKey{DcDirRecType::Image, kColumns,          Value},
    ProfileKey{DcDirRecType::Image, kSpacing,          IfThere},
};
constexpr std::array kXaBasicKeys{
    ProfileKey{DcDirRecType::Patient, kBirthDate,        Place},
    ProfileKey{DcDirRecType::Patient, kSex,              Place},
    ProfileKey{DcDirRecType::Series,  kInstitution,      Place},
    ProfileKey{DcDirRecType::Series,  kAddress,          Place},
    ProfileKey{DcDirRecType::Series,  kPhysicians,       Place},
    ProfileKey{DcDirRecType::Image,   kImageType,        Value},
    ProfileKey{DcDirRecType::Image,   kCalibration,      Place},
    ProfileKey{DcDirRecType::Image,   kReferencedImages, IfBiplane},
};
constexpr std::array kXa1024Keys{
    ProfileKey{DcDirRecType::Patient, kBirthDate,        Place},
    ProfileKey{DcDirRecType::Patient, kSex,              Place},
    ProfileKey{DcDirRecType::Series,  kInstitution,      Place},
    ProfileKey{DcDirRecType::Series,  kAddress,          Place},
    ProfileKey{DcDirRecType::Series,  kPhysicians,       Place},
    ProfileKey{DcDirRecType::Image,   kImageType,        Value, kXa},
    ProfileKey{DcDirRecType::Image,   kCalibration,      Place},
    ProfileKey{DcDirRecType::Image,   kReferencedImages, IfBiplane, kXa},
    ProfileKey{DcDirRecType::Image,   kLossyRatio,       IfThere},
};

// Two patients with one ID
constexpr bool kNever = true;
constexpr bool kUnsaid = false;

constexpr std::array kProfiles{
    //      name                          purpose                                                 media    rules              keys             icon same ID
    Profile{"STD-GEN-CD",                 "general purpose, uncompressed",                        kCdR,    kGeneral,          kGeneralKeys,    0,   kNever},
    Profile{"STD-GEN-DVD-RAM",            "general purpose, uncompressed",                        kDvdRam, kGeneral,          kGeneralKeys,    0,   kNever},
    Profile{"STD-GEN-BD",                 "general purpose, uncompressed",                        kBd,     kGeneral,          kGeneralKeys,    0,   kNever},
    Profile{"STD-GEN-DVD-JPEG",           "general purpose, uncompressed or JPEG",                kDvd,    kGeneralJpeg,      kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-DVD-J2K",            "general purpose, uncompressed or JPEG 2000",           kDvd,    kGeneral2000,      kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-BD-JPEG",            "general purpose, uncompressed or JPEG",                kBd,     kGeneralJpeg,      kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-BD-J2K",             "general purpose, uncompressed or JPEG 2000",           kBd,     kGeneral2000,      kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-BD-MPEG2-MPML",      "general purpose, uncompressed or MPEG2",               kBd,     kGeneralMpeg2Main, kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-BD-MPEG2-MPHL",      "general purpose, uncompressed or MPEG2 of high level", kBd,     kGeneralMpeg2High, kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-BD-MPEG4-HPLV41",    "general purpose, uncompressed or MPEG-4",              kBd,     kGeneralMpeg4,     kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-BD-MPEG4-HPLV41BD",  "general purpose, uncompressed or MPEG-4 as BDs have",  kBd,     kGeneralMpeg4Bd,   kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-USB-JPEG",           "general purpose, uncompressed or JPEG",                kUsb,    kGeneralJpeg,      kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-USB-J2K",            "general purpose, uncompressed or JPEG 2000",           kUsb,    kGeneral2000,      kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-MMC-JPEG",           "general purpose, uncompressed or JPEG",                kMmc,    kGeneralJpeg,      kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-MMC-J2K",            "general purpose, uncompressed or JPEG 2000",           kMmc,    kGeneral2000,      kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-CF-JPEG",            "general purpose, uncompressed or JPEG",                kCf,     kGeneralJpeg,      kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-CF-J2K",             "general purpose, uncompressed or JPEG 2000",           kCf,     kGeneral2000,      kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-SD-JPEG",            "general purpose, uncompressed or JPEG",                kSd,     kGeneralJpeg,      kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-SD-J2K",             "general purpose, uncompressed or JPEG 2000",           kSd,     kGeneral2000,      kCompressedKeys, 0,   kNever},
    Profile{"STD-GEN-ZIP-MAIL",           "general purpose, a ZIP file to be mailed",             kZip,    kAnySyntax,        {},              0,   kNever},
    Profile{"STD-GEN-MIME",               "general purpose, parts of a mail",                     kMime,   kAnySyntax,        {},              0,   kNever},
    Profile{"STD-DVD-MPEG2-MPML",         "video in MPEG2",                                       kDvd,    kMpeg2Dvd,         kMpeg2DvdKeys,   0,   kNever},
    Profile{"STD-CTMR-CD",                "CT and MR studies",                                    kCdR,    kCtMr,             kCtMrKeys,       0,   kUnsaid},
    Profile{"STD-CTMR-DVD-RAM",           "CT and MR studies",                                    kDvdRam, kCtMr,             kCtMrKeys,       0,   kUnsaid},
    Profile{"STD-CTMR-DVD",               "CT and MR studies",                                    kDvd,    kCtMr,             kCtMrKeys,       0,   kUnsaid},
    Profile{"STD-CTMR-MOD41",             "CT and MR studies",                                    kMod41,  kCtMr,             kCtMrKeys,       0,   kUnsaid},
    Profile{"STD-XABC-CD",                "basic cardiac X-ray angiography",                      kCdR,    kXaBasic,          kXaBasicKeys,    128, kUnsaid},
    Profile{"STD-XA1K-CD",                "X-ray angiography up to 1024x1024",                    kCdR,    kXa1024OnCd,       kXa1024Keys,     128, kUnsaid},
    Profile{"STD-XA1K-DVD",               "X-ray angiography up to 1024x1024, also lossy",        kDvd,    kXa1024OnDvd,      kXa1024Keys,     128, kUnsaid},
    Profile{"STD-US-ID-SF-CDR",           "ultrasound for display, single frames",                kCdR,    kUsDisplaySingle,  {},              0,   kNever},
    Profile{"STD-US-ID-SF-DVD-RAM",       "ultrasound for display, single frames",                kDvdRam, kUsDisplaySingle,  {},              0,   kNever},
    Profile{"STD-US-ID-SF-DVD",           "ultrasound for display, single frames",                kDvd,    kUsDisplaySingle,  {},              0,   kNever},
    Profile{"STD-US-ID-SF-MOD23-90",      "ultrasound for display, single frames",                kMod23,  kUsDisplaySingle,  {},              0,   kNever},
    Profile{"STD-US-ID-MF-CDR",           "ultrasound for display",                               kCdR,    kUsImages,         {},              0,   kNever},
    Profile{"STD-US-ID-MF-DVD-RAM",       "ultrasound for display",                               kDvdRam, kUsImages,         {},              0,   kNever},
    Profile{"STD-US-ID-MF-DVD",           "ultrasound for display",                               kDvd,    kUsImages,         {},              0,   kNever},
    Profile{"STD-US-ID-MF-MOD23-90",      "ultrasound for display",                               kMod23,  kUsImages,         {},              0,   kNever},
    Profile{"STD-US-SC-SF-CDR",           "ultrasound with spatial calibration, single frames",   kCdR,    kUsSpatialSingle,  {},              0,   kNever},
    Profile{"STD-US-SC-SF-DVD-RAM",       "ultrasound with spatial calibration, single frames",   kDvdRam, kUsSpatialSingle,  {},              0,   kNever},
    Profile{"STD-US-SC-SF-DVD",           "ultrasound with spatial calibration, single frames",   kDvd,    kUsSpatialSingle,  {},              0,   kNever},
    Profile{"STD-US-SC-SF-MOD23-90",      "ultrasound with spatial calibration, single frames",   kMod23,  kUsSpatialSingle,  {},              0,   kNever},
    Profile{"STD-US-SC-MF-CDR",           "ultrasound with spatial calibration",                  kCdR,    kUsSpatialMulti,   {},              0,   kNever},
    Profile{"STD-US-SC-MF-DVD-RAM",       "ultrasound with spatial calibration",                  kDvdRam, kUsSpatialMulti,   {},              0,   kNever},
    Profile{"STD-US-SC-MF-DVD",           "ultrasound with spatial calibration",                  kDvd,    kUsSpatialMulti,   {},              0,   kNever},
    Profile{"STD-US-SC-MF-MOD23-90",      "ultrasound with spatial calibration",                  kMod23,  kUsSpatialMulti,   {},              0,   kNever},
    Profile{"STD-US-CC-SF-CDR",           "ultrasound with combined calibration, single frames",  kCdR,    kUsCombinedSingle, {},              0,   kNever},
    Profile{"STD-US-CC-SF-DVD-RAM",       "ultrasound with combined calibration, single frames",  kDvdRam, kUsCombinedSingle, {},              0,   kNever},
    Profile{"STD-US-CC-SF-DVD",           "ultrasound with combined calibration, single frames",  kDvd,    kUsCombinedSingle, {},              0,   kNever},
    Profile{"STD-US-CC-SF-MOD23-90",      "ultrasound with combined calibration, single frames",  kMod23,  kUsCombinedSingle, {},              0,   kNever},
    Profile{"STD-US-CC-MF-CDR",           "ultrasound with combined calibration",                 kCdR,    kUsCombinedMulti,  {},              0,   kNever},
    Profile{"STD-US-CC-MF-DVD-RAM",       "ultrasound with combined calibration",                 kDvdRam, kUsCombinedMulti,  {},              0,   kNever},
    Profile{"STD-US-CC-MF-DVD",           "ultrasound with combined calibration",                 kDvd,    kUsCombinedMulti,  {},              0,   kNever},
    Profile{"STD-US-CC-MF-MOD23-90",      "ultrasound with combined calibration",                 kMod23,  kUsCombinedMulti,  {},              0,   kNever},
    Profile{"STD-DEN-CD",                 "dental radiographs",                                   kCdR,    kDental,           {},              0,   kNever},
};

constexpr std::array kMediaNames{
    MediumName{kCdR, "CD-R"},
    MediumName{kDvdRam, "DVD-RAM"},
    MediumName{kDvd, "DVD"},
    MediumName{kBd, "BD"},
    MediumName{kMod23, "MOD 2.3 GB"},
    MediumName{kMod41, "MOD 4.1 GB"},
    MediumName{kUsb, "USB"},
    MediumName{kMmc, "MMC"},
    MediumName{kCf, "CompactFlash"},
    MediumName{kSd, "SD"},
    MediumName{kZip, "ZIP file"},
    MediumName{kMime, "mail"},
};

// What there is to write to. A CD-RW is no CD-R, but readers call a closed CD-R a CD-ROM.
constexpr std::array kTargets{
    MediumName{kCdR, "cd-r"},
    MediumName{kCdR, "cd-rom"},
    MediumName{kDvdRam, "dvd-ram"},
    MediumName{kDvd, "dvd-rom"},
    MediumName{kDvd, "dvd-r"},
    MediumName{kDvd, "dvd-rw"},
    MediumName{kDvd, "dvd+r"},
    MediumName{kDvd, "dvd+rw"},
    MediumName{kDvd, "dvd-r-dl"},
    MediumName{kDvd, "dvd+r-dl"},
    MediumName{kDvd, "dvd+rw-dl"},
    MediumName{kBd, "bd-rom"},
    MediumName{kBd, "bd-r"},
    MediumName{kBd, "bd-re"},
    MediumName{kCdR | kDvdRam | kDvd | kBd, "image"},
    MediumName{kUsb | kMmc | kCf | kSd | kMod23 | kMod41, "directory"},
    MediumName{kZip, "zip"},
};

constexpr std::array kSyntaxNames{
    SyntaxName{"1.2.840.10008.1.2", "Implicit VR Little Endian"},
    SyntaxName{QUILLON_PLAIN, "Explicit VR Little Endian"},
    SyntaxName{"1.2.840.10008.1.2.2", "Explicit VR Big Endian"},
    SyntaxName{QUILLON_BASELINE, "JPEG Baseline"},
    SyntaxName{QUILLON_EXTENDED, "JPEG Extended"},
    SyntaxName{"1.2.840.10008.1.2.4.57", "JPEG Lossless of any prediction"},
    SyntaxName{QUILLON_LOSSLESS, "JPEG Lossless"},
    SyntaxName{"1.2.840.10008.1.2.4.80", "JPEG-LS Lossless"},
    SyntaxName{"1.2.840.10008.1.2.4.81", "JPEG-LS"},
    SyntaxName{"1.2.840.10008.1.2.4.90", "JPEG 2000 Lossless"},
    SyntaxName{"1.2.840.10008.1.2.4.91", "JPEG 2000"},
    SyntaxName{QUILLON_MPEG2_MAIN, "MPEG2"},
    SyntaxName{QUILLON_MPEG2_HIGH, "MPEG2 of high level"},
    SyntaxName{QUILLON_MPEG4, "MPEG-4"},
    SyntaxName{QUILLON_MPEG4_BD, "MPEG-4 as BDs have"},
    SyntaxName{QUILLON_RLE, "RLE Lossless"},
};

// Behind the root of the standard's. Objects of the classes below 501 and 601 are those of security
// and of non-destructive testing.
constexpr std::array<std::string_view, 30> kNotOnMedia{
    "1.27", "1.29", "1.30", "4.1.1.3", "4.1.1.5", "4.1.1.6", "4.1.1.8", "4.1.1.9", "4.1.1.9.1",
    "4.1.1.10", "4.1.1.11", "4.1.1.12.3", "4.1.1.77.1", "4.1.1.77.2", "4.1.1.88.1", "4.1.1.88.2",
    "4.1.1.88.3", "4.1.1.88.4", "4.1.1.129", "4.34.1", "4.1.1.501.1", "4.1.1.501.2.1",
    "4.1.1.501.2.2", "4.1.1.501.4", "4.1.1.501.5", "4.1.1.601.1",
    "4.1.1.601.2", "4.1.1.601.3", "4.1.1.601.4", "4.1.1.601.5"};

}  // namespace

std::span<const Profile> AllProfiles() { return kProfiles; }
std::span<const MediumName> MediaNames() { return kMediaNames; }
std::span<const MediumName> Targets() { return kTargets; }
std::span<const SyntaxName> SyntaxNames() { return kSyntaxNames; }
std::span<const std::string_view> ClassesNotOnMedia() { return kNotOnMedia; }

}  // namespace quillon
