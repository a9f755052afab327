// The platform's codes and the messages that name them, in the order in which the names of a bit
// set are joined.
#include "tables/enumerator_kinds.h"

namespace quillon {
namespace {

// clang-format off
constexpr EnumeratorRow kFileSystemRows[] = {
    {-1, kMsgNameUndefined},
    {0, kMsgFileSystemNone},
    {1, kMsgFileSystemIso9660},
    {2, kMsgFileSystemJoliet},
    {4, kMsgFileSystemUdf},
    {0x40000000, kMsgNameUnknown},
};

constexpr EnumeratorRow kMediaStateRows[] = {
    {-1, kMsgNameUndefined},
    {0, kMsgNameUnknown},
    {0x000F, kMsgMediaStateInformationalMask},
    {0xFC00, kMsgMediaStateUnsupportedMask},
    {0x0001, kMsgMediaStateOverwriteOnly},
    {0x0001, kMsgMediaStateRandomlyWritable},
    {0x0002, kMsgMediaStateBlank},
    {0x0004, kMsgMediaStateAppendable},
    {0x0008, kMsgMediaStateFinalSession},
    {0x0400, kMsgMediaStateDamaged},
    {0x0800, kMsgMediaStateEraseRequired},
    {0x1000, kMsgMediaStateNonEmptySession},
    {0x2000, kMsgMediaStateWriteProtected},
    {0x4000, kMsgMediaStateFinalized},
    {0x8000, kMsgMediaStateUnsupportedMedia},
};

constexpr EnumeratorRow kWriteProtectRows[] = {
    {-1, kMsgNameUndefined},
    {0x0001, kMsgWriteProtectUntilPowerDown},
    {0x0002, kMsgWriteProtectByCartridge},
    {0x0004, kMsgWriteProtectByMediaSpecificReason},
    {0x0008, kMsgWriteProtectBySoftwareWriteProtect},
    {0x0010, kMsgWriteProtectByDiscControlBlock},
    {0x4000, kMsgWriteProtectReadOnlyMedia},
};

constexpr EnumeratorRow kMediaRows[] = {
    {-1, kMsgNameUndefined},
    {0, kMsgNameUnknown},
    {1, kMsgMediaCdRomOrWritable},
    {2, kMsgMediaCdR},
    {3, kMsgMediaCdRw},
    {4, kMsgMediaDvdReadOnly},
    {5, kMsgMediaDvdRAM},
    {6, kMsgMediaDvdPlusR},
    {7, kMsgMediaDvdPlusRW},
    {8, kMsgMediaDvdPlusRDualLayer},
    {9, kMsgMediaDvdR},
    {10, kMsgMediaDvdRw},
    {11, kMsgMediaDvdRDualLayer},
    {12, kMsgMediaSupportsRandomAccessWrites},
    {13, kMsgMediaDvdPlusRWDualLayer},
    {14, kMsgMediaHdDvdROM},
    {15, kMsgMediaHdDvdR},
    {16, kMsgMediaHdDvdRAM},
    {17, kMsgMediaBluRayBdRom},
    {18, kMsgMediaBluRayBdR},
    {19, kMsgMediaBluRayBdRe},
};

constexpr EnumeratorRow kModePageRows[] = {
    {-1, kMsgNameUndefined},
    {0x01, kMsgModePageReadWriteErrorRecovery},
    {0x03, kMsgModePageMrw},
    {0x05, kMsgModePageWriteParameters},
    {0x08, kMsgModePageCaching},
    {0x1C, kMsgModePageInformationalExceptionsSmart},
    {0x1D, kMsgModePageTimeOutAndProtect},
    {0x1A, kMsgModePagePowerCondition},
    {0x2A, kMsgModePageLegacyCapabilities},
};

constexpr EnumeratorRow kProfileRows[] = {
    {-1, kMsgNameUndefined},
    {0, kMsgNameInvalid},
    {0x0001, kMsgProfileNonRemovableHardDisk},
    {0x0002, kMsgProfileRemovableHardDisk},
    {0x0003, kMsgProfileMagnetoOpticalErasable},
    {0x0004, kMsgProfileMagnetoOpticalWriteOnce},
    {0x0005, kMsgProfileAdvanceStorageMagnetoOptical},
    {0x0008, kMsgProfileCdRom},
    {0x0009, kMsgProfileCdR},
    {0x000A, kMsgProfileCdRw},
    {0x0010, kMsgProfileDvdROM},
    {0x0011, kMsgProfileDvdRSequential},
    {0x0012, kMsgProfileDvdRAM},
    {0x0013, kMsgProfileDvdRwRestricted},
    {0x0014, kMsgProfileDvdRwSequential},
    {0x0015, kMsgProfileDvdRDualLayerSequential},
    {0x0016, kMsgProfileDvdRDualLayerJump},
    {0x001A, kMsgProfileDvdPlusRW},
    {0x001B, kMsgProfileDvdPlusR},
    {0x002A, kMsgProfileDvdPlusRWDualLayer},
    {0x002B, kMsgProfileDvdPlusRDualLayer},
    {0x0040, kMsgProfileBluRayBdRom},
    {0x0041, kMsgProfileBluRayBdRSequential},
    {0x0042, kMsgProfileBluRayBdRRandom},
    {0x0043, kMsgProfileBluRayBdRw},
    {0x0050, kMsgProfileHdDvdROM},
    {0x0051, kMsgProfileHdDvdR},
    {0x0052, kMsgProfileHdDvdRAM},
    {0x0020, kMsgProfileDoubleDensityCdRom},
    {0x0021, kMsgProfileDoubleDensityCdR},
    {0x0022, kMsgProfileDoubleDensityCdRw},
    {0xFFFF, kMsgProfileNonStandard},
};

constexpr EnumeratorRow kFeatureRows[] = {
    {-1, kMsgNameUndefined},
    {0x0000, kMsgFeatureProfileList},
    {0x0001, kMsgFeatureCore},
    {0x0002, kMsgFeatureMorphing},
    {0x0003, kMsgFeatureRemovableMedium},
    {0x0004, kMsgFeatureWriteProtect},
    {0x0010, kMsgFeatureRandomlyReadable},
    {0x001D, kMsgFeatureCdMultiRead},
    {0x001E, kMsgFeatureCdRead},
    {0x001F, kMsgFeatureDvdRead},
    {0x0020, kMsgFeatureRandomlyWritable},
    {0x0021, kMsgFeatureIncrementalStreamingWritable},
    {0x0022, kMsgFeatureSectorErasable},
    {0x0023, kMsgFeatureFormattable},
    {0x0024, kMsgFeatureHardwareDefectManagement},
    {0x0025, kMsgFeatureWriteOnce},
    {0x0026, kMsgFeatureRestrictedOverwrite},
    {0x0027, kMsgFeatureCdRwCavWrite},
    {0x0028, kMsgFeatureMrw},
    {0x0029, kMsgFeatureEnhancedDefectReporting},
    {0x002A, kMsgFeatureDvdPlusRW},
    {0x002B, kMsgFeatureDvdPlusR},
    {0x002C, kMsgFeatureRigidRestrictedOverwrite},
    {0x002D, kMsgFeatureCdTrackAtOnce},
    {0x002E, kMsgFeatureCdMastering},
    {0x002F, kMsgFeatureDvdRDvdRwInDiscAtOnce},
    {0x0033, kMsgFeatureLayerJumpRecording},
    {0x0037, kMsgFeatureCdRwMediaWriteSupport},
    {0x0038, kMsgFeatureBluRayPseudoOverwrite},
    {0x003B, kMsgFeatureDvdPlusRDualLayer},
    {0x0040, kMsgFeatureBluRayRead},
    {0x0041, kMsgFeatureBluRayWrite},
    {0x0050, kMsgFeatureHdDvdRead},
    {0x0051, kMsgFeatureHdDvdWrite},
    {0x0100, kMsgFeaturePowerManagement},
    {0x0101, kMsgFeatureSelfMonitoringAnalysisAndReportingTechnologySmart},
    {0x0102, kMsgFeatureEmbeddedChanger},
    {0x0103, kMsgFeatureCdAnalogPlay},
    {0x0104, kMsgFeatureMicrocodeUpdate},
    {0x0105, kMsgFeatureTimeout},
    {0x0106, kMsgFeatureDvdCssCppm},
    {0x0107, kMsgFeatureRealTimeStreaming},
    {0x0108, kMsgFeatureLogicalUnitSerialNumber},
    {0x0109, kMsgFeatureMediaSerialNumber},
    {0x010A, kMsgFeatureDiscControlBlocks},
    {0x010B, kMsgFeatureDvdCprm},
    {0x010C, kMsgFeatureFirmwareInformation},
    {0x010D, kMsgFeatureAacs},
    {0x0110, kMsgFeatureVcps},
};

// clang-format on

}  // namespace

constinit const EnumeratorKind kFsiFileSystemsKind = {OLESTR("CFsiFileSystems"), /*isBitSet=*/true,
                                                      kFileSystemRows};
constinit const EnumeratorKind kMediaStateKind = {OLESTR("CMediaState"), /*isBitSet=*/true,
                                                  kMediaStateRows};
constinit const EnumeratorKind kWriteProtectStateKind = {OLESTR("CWriteProtectState"),
                                                         /*isBitSet=*/true, kWriteProtectRows};
constinit const EnumeratorKind kPhysicalMediaTypeKind = {OLESTR("CPhysicalMediaType"),
                                                         /*isBitSet=*/false, kMediaRows};
constinit const EnumeratorKind kPageTypeKind = {OLESTR("CPageType"), /*isBitSet=*/false,
                                                kModePageRows};
constinit const EnumeratorKind kProfileTypeKind = {OLESTR("CProfileType"), /*isBitSet=*/false,
                                                   kProfileRows};
constinit const EnumeratorKind kFeaturePageTypeKind = {OLESTR("CFeaturePageType"),
                                                       /*isBitSet=*/false, kFeatureRows};

}  // namespace quillon
