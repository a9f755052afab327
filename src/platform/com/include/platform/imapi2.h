// The current disc-mastering service (IMAPI2): recorders, data and erase formats, image builder.
// Neither the layer nor MinGW takes these declarations from elsewhere; the order of the methods is
// that of the real vtables, and the numbers are the platform's own.
//
// Texts that come out are freed with SysFreeString, arrays with SafeArrayDestroy, objects with
// Release. Arrays are one-dimensional arrays of VARIANT with lower bound 0.
#pragma once

#include "platform/com.h"

struct IBootOptions;
struct IEnumFsiItems;
struct IFsiFileItem;
struct IProgressItems;

inline constexpr CLSID CLSID_MsftDiscMaster2 = {
    0x2735412E, 0x7F64, 0x5B0F, {0x8F, 0x00, 0x5D, 0x77, 0xAF, 0xBE, 0x26, 0x1E}};
inline constexpr CLSID CLSID_MsftDiscRecorder2 = {
    0x2735412D, 0x7F64, 0x5B0F, {0x8F, 0x00, 0x5D, 0x77, 0xAF, 0xBE, 0x26, 0x1E}};
inline constexpr CLSID CLSID_MsftDiscFormat2Data = {
    0x2735412A, 0x7F64, 0x5B0F, {0x8F, 0x00, 0x5D, 0x77, 0xAF, 0xBE, 0x26, 0x1E}};
inline constexpr CLSID CLSID_MsftDiscFormat2Erase = {
    0x2735412B, 0x7F64, 0x5B0F, {0x8F, 0x00, 0x5D, 0x77, 0xAF, 0xBE, 0x26, 0x1E}};
inline constexpr CLSID CLSID_MsftFileSystemImage = {
    0x2C941FC5, 0x975B, 0x59BE, {0xA9, 0x60, 0x9A, 0x2A, 0x26, 0x28, 0x53, 0xA5}};
// Windows does not let these two be created: they come from CreateResultImage and get_Root.
inline constexpr CLSID CLSID_FileSystemImageResult = {
    0x2C941FCC, 0x975B, 0x59BE, {0xA9, 0x60, 0x9A, 0x2A, 0x26, 0x28, 0x53, 0xA5}};
inline constexpr CLSID CLSID_FsiDirectoryItem = {
    0x2C941FC8, 0x975B, 0x59BE, {0xA9, 0x60, 0x9A, 0x2A, 0x26, 0x28, 0x53, 0xA5}};

enum IMAPI_MEDIA_PHYSICAL_TYPE : INT {
  IMAPI_MEDIA_TYPE_UNKNOWN = 0,
  IMAPI_MEDIA_TYPE_CDROM = 1,
  IMAPI_MEDIA_TYPE_CDR = 2,
  IMAPI_MEDIA_TYPE_CDRW = 3,
  IMAPI_MEDIA_TYPE_DVDROM = 4,
  IMAPI_MEDIA_TYPE_DVDRAM = 5,
  IMAPI_MEDIA_TYPE_DVDPLUSR = 6,
  IMAPI_MEDIA_TYPE_DVDPLUSRW = 7,
  IMAPI_MEDIA_TYPE_DVDPLUSR_DUALLAYER = 8,
  IMAPI_MEDIA_TYPE_DVDDASHR = 9,
  IMAPI_MEDIA_TYPE_DVDDASHRW = 10,
  IMAPI_MEDIA_TYPE_DVDDASHR_DUALLAYER = 11,
  IMAPI_MEDIA_TYPE_DISK = 12,
  IMAPI_MEDIA_TYPE_DVDPLUSRW_DUALLAYER = 13,
  IMAPI_MEDIA_TYPE_HDDVDROM = 14,
  IMAPI_MEDIA_TYPE_HDDVDR = 15,
  IMAPI_MEDIA_TYPE_HDDVDRAM = 16,
  IMAPI_MEDIA_TYPE_BDROM = 17,
  IMAPI_MEDIA_TYPE_BDR = 18,
  IMAPI_MEDIA_TYPE_BDRE = 19,
};

// A bit set; the first bit has two names.
enum IMAPI_FORMAT2_DATA_MEDIA_STATE : INT {
  IMAPI_FORMAT2_DATA_MEDIA_STATE_UNKNOWN = 0,
  IMAPI_FORMAT2_DATA_MEDIA_STATE_OVERWRITE_ONLY = 0x1,
  IMAPI_FORMAT2_DATA_MEDIA_STATE_RANDOMLY_WRITABLE = 0x1,
  IMAPI_FORMAT2_DATA_MEDIA_STATE_BLANK = 0x2,
  IMAPI_FORMAT2_DATA_MEDIA_STATE_APPENDABLE = 0x4,
  IMAPI_FORMAT2_DATA_MEDIA_STATE_FINAL_SESSION = 0x8,
  IMAPI_FORMAT2_DATA_MEDIA_STATE_INFORMATIONAL_MASK = 0xF,
  IMAPI_FORMAT2_DATA_MEDIA_STATE_DAMAGED = 0x400,
  IMAPI_FORMAT2_DATA_MEDIA_STATE_ERASE_REQUIRED = 0x800,
  IMAPI_FORMAT2_DATA_MEDIA_STATE_NON_EMPTY_SESSION = 0x1000,
  IMAPI_FORMAT2_DATA_MEDIA_STATE_WRITE_PROTECTED = 0x2000,
  IMAPI_FORMAT2_DATA_MEDIA_STATE_FINALIZED = 0x4000,
  IMAPI_FORMAT2_DATA_MEDIA_STATE_UNSUPPORTED_MEDIA = 0x8000,
  IMAPI_FORMAT2_DATA_MEDIA_STATE_UNSUPPORTED_MASK = 0xFC00,
};

// A bit set.
enum IMAPI_MEDIA_WRITE_PROTECT_STATE : INT {
  IMAPI_WRITEPROTECTED_UNTIL_POWERDOWN = 0x1,
  IMAPI_WRITEPROTECTED_BY_CARTRIDGE = 0x2,
  IMAPI_WRITEPROTECTED_BY_MEDIA_SPECIFIC_REASON = 0x4,
  IMAPI_WRITEPROTECTED_BY_SOFTWARE_WRITE_PROTECT = 0x8,
  IMAPI_WRITEPROTECTED_BY_DISC_CONTROL_BLOCK = 0x10,
  IMAPI_WRITEPROTECTED_READ_ONLY_MEDIA = 0x4000,
};

// A bit set.
enum FsiFileSystems : INT {
  FsiFileSystemNone = 0,
  FsiFileSystemISO9660 = 1,
  FsiFileSystemJoliet = 2,
  FsiFileSystemUDF = 4,
  FsiFileSystemUnknown = 0x40000000,
};

enum FsiItemType : INT {
  FsiItemNotFound = 0,
  FsiItemDirectory = 1,
  FsiItemFile = 2,
};

inline constexpr IID IID_IDiscMaster2 = {
    0x27354130, 0x7F64, 0x5B0F, {0x8F, 0x00, 0x5D, 0x77, 0xAF, 0xBE, 0x26, 0x1E}};
struct IDiscMaster2 : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get__NewEnum(IEnumVARIANT** ppunk) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Item(LONG index, BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Count(LONG* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsSupportedEnvironment(VARIANT_BOOL* value) = 0;
};

inline constexpr IID IID_IDiscRecorder2 = {
    0x27354133, 0x7F64, 0x5B0F, {0x8F, 0x00, 0x5D, 0x77, 0xAF, 0xBE, 0x26, 0x1E}};
struct IDiscRecorder2 : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE EjectMedia() = 0;
  virtual HRESULT STDMETHODCALLTYPE CloseTray() = 0;
  virtual HRESULT STDMETHODCALLTYPE AcquireExclusiveAccess(VARIANT_BOOL force, BSTR clientName) = 0;
  virtual HRESULT STDMETHODCALLTYPE ReleaseExclusiveAccess() = 0;
  virtual HRESULT STDMETHODCALLTYPE DisableMcn() = 0;
  virtual HRESULT STDMETHODCALLTYPE EnableMcn() = 0;
  virtual HRESULT STDMETHODCALLTYPE InitializeDiscRecorder(BSTR recorderUniqueId) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ActiveDiscRecorder(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_VendorId(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ProductId(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ProductRevision(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_VolumeName(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_VolumePathNames(SAFEARRAY** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DeviceCanLoadMedia(VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_LegacyDeviceNumber(LONG* legacyDeviceNumber) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SupportedFeaturePages(SAFEARRAY** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_CurrentFeaturePages(SAFEARRAY** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SupportedProfiles(SAFEARRAY** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_CurrentProfiles(SAFEARRAY** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SupportedModePages(SAFEARRAY** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ExclusiveAccessOwner(BSTR* value) = 0;
};

inline constexpr IID IID_IDiscFormat2 = {
    0x27354152, 0x8F64, 0x5B0F, {0x8F, 0x00, 0x5D, 0x77, 0xAF, 0xBE, 0x26, 0x1E}};
struct IDiscFormat2 : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE IsRecorderSupported(IDiscRecorder2* recorder,
                                                        VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE IsCurrentMediaSupported(IDiscRecorder2* recorder,
                                                            VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_MediaPhysicallyBlank(VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_MediaHeuristicallyBlank(VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SupportedMediaTypes(SAFEARRAY** value) = 0;
};

inline constexpr IID IID_IDiscFormat2Data = {
    0x27354153, 0x9F64, 0x5B0F, {0x8F, 0x00, 0x5D, 0x77, 0xAF, 0xBE, 0x26, 0x1E}};
struct IDiscFormat2Data : public IDiscFormat2 {
  virtual HRESULT STDMETHODCALLTYPE put_Recorder(IDiscRecorder2* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Recorder(IDiscRecorder2** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_BufferUnderrunFreeDisabled(VARIANT_BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_BufferUnderrunFreeDisabled(VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_PostgapAlreadyInImage(VARIANT_BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_PostgapAlreadyInImage(VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  get_CurrentMediaStatus(IMAPI_FORMAT2_DATA_MEDIA_STATE* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  get_WriteProtectStatus(IMAPI_MEDIA_WRITE_PROTECT_STATE* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_TotalSectorsOnMedia(LONG* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_FreeSectorsOnMedia(LONG* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_NextWritableAddress(LONG* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_StartAddressOfPreviousSession(LONG* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_LastWrittenAddressOfPreviousSession(LONG* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ForceMediaToBeClosed(VARIANT_BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ForceMediaToBeClosed(VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_DisableConsumerDvdCompatibilityMode(VARIANT_BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  get_DisableConsumerDvdCompatibilityMode(VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  get_CurrentPhysicalMediaType(IMAPI_MEDIA_PHYSICAL_TYPE* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ClientName(BSTR value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ClientName(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_RequestedWriteSpeed(LONG* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_RequestedRotationTypeIsPureCAV(VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_CurrentWriteSpeed(LONG* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_CurrentRotationTypeIsPureCAV(VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SupportedWriteSpeeds(SAFEARRAY** supportedSpeeds) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  get_SupportedWriteSpeedDescriptors(SAFEARRAY** supportedSpeedDescriptors) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ForceOverwrite(VARIANT_BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ForceOverwrite(VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_MultisessionInterfaces(SAFEARRAY** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE Write(IStream* data) = 0;
  virtual HRESULT STDMETHODCALLTYPE CancelWrite() = 0;
  virtual HRESULT STDMETHODCALLTYPE SetWriteSpeed(LONG requestedSectorsPerSecond,
                                                  VARIANT_BOOL rotationTypeIsPureCAV) = 0;
};

inline constexpr IID IID_IDiscFormat2Erase = {
    0x27354156, 0x8F64, 0x5B0F, {0x8F, 0x00, 0x5D, 0x77, 0xAF, 0xBE, 0x26, 0x1E}};
struct IDiscFormat2Erase : public IDiscFormat2 {
  virtual HRESULT STDMETHODCALLTYPE put_Recorder(IDiscRecorder2* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Recorder(IDiscRecorder2** value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_FullErase(VARIANT_BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_FullErase(VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  get_CurrentPhysicalMediaType(IMAPI_MEDIA_PHYSICAL_TYPE* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ClientName(BSTR value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ClientName(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE EraseMedia() = 0;
};

inline constexpr IID IID_IFsiItem = {
    0x2C941FD9, 0x975B, 0x59BE, {0xA9, 0x60, 0x9A, 0x2A, 0x26, 0x28, 0x53, 0xA5}};
struct IFsiItem : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Name(BSTR* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_FullPath(BSTR* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_CreationTime(DATE* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_CreationTime(DATE newVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_LastAccessedTime(DATE* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_LastAccessedTime(DATE newVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_LastModifiedTime(DATE* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_LastModifiedTime(DATE newVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsHidden(VARIANT_BOOL* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_IsHidden(VARIANT_BOOL newVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE FileSystemName(FsiFileSystems fileSystem, BSTR* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE FileSystemPath(FsiFileSystems fileSystem, BSTR* val) = 0;
};

inline constexpr IID IID_IFsiDirectoryItem = {
    0x2C941FDC, 0x975B, 0x59BE, {0xA9, 0x60, 0x9A, 0x2A, 0x26, 0x28, 0x53, 0xA5}};
struct IFsiDirectoryItem : public IFsiItem {
  virtual HRESULT STDMETHODCALLTYPE get__NewEnum(IEnumVARIANT** newEnum) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Item(BSTR path, IFsiItem** item) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Count(LONG* count) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_EnumFsiItems(IEnumFsiItems** newEnum) = 0;
  virtual HRESULT STDMETHODCALLTYPE AddDirectory(BSTR path) = 0;
  virtual HRESULT STDMETHODCALLTYPE AddFile(BSTR path, IStream* fileData) = 0;
  virtual HRESULT STDMETHODCALLTYPE AddTree(BSTR sourceDirectory,
                                            VARIANT_BOOL includeBaseDirectory) = 0;
  virtual HRESULT STDMETHODCALLTYPE Add(IFsiItem* item) = 0;
  virtual HRESULT STDMETHODCALLTYPE Remove(BSTR path) = 0;
  virtual HRESULT STDMETHODCALLTYPE RemoveTree(BSTR path) = 0;
};

inline constexpr IID IID_IFileSystemImageResult = {
    0x2C941FD8, 0x975B, 0x59BE, {0xA9, 0x60, 0x9A, 0x2A, 0x26, 0x28, 0x53, 0xA5}};
struct IFileSystemImageResult : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_ImageStream(IStream** val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ProgressItems(IProgressItems** val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_TotalBlocks(LONG* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_BlockSize(LONG* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DiscId(BSTR* val) = 0;
};

inline constexpr IID IID_IFileSystemImage = {
    0x2C941FE1, 0x975B, 0x59BE, {0xA9, 0x60, 0x9A, 0x2A, 0x26, 0x28, 0x53, 0xA5}};
struct IFileSystemImage : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Root(IFsiDirectoryItem** val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SessionStartBlock(LONG* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_SessionStartBlock(LONG newVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_FreeMediaBlocks(LONG* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_FreeMediaBlocks(LONG newVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetMaxMediaBlocksFromDevice(IDiscRecorder2* discRecorder) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_UsedBlocks(LONG* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_VolumeName(BSTR* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_VolumeName(BSTR newVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ImportedVolumeName(BSTR* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_BootImageOptions(IBootOptions** val) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_BootImageOptions(IBootOptions* newVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_FileCount(LONG* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DirectoryCount(LONG* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_WorkingDirectory(BSTR* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_WorkingDirectory(BSTR newVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ChangePoint(LONG* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_StrictFileSystemCompliance(VARIANT_BOOL* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_StrictFileSystemCompliance(VARIANT_BOOL newVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_UseRestrictedCharacterSet(VARIANT_BOOL* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_UseRestrictedCharacterSet(VARIANT_BOOL newVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_FileSystemsToCreate(FsiFileSystems* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_FileSystemsToCreate(FsiFileSystems newVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_FileSystemsSupported(FsiFileSystems* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_UDFRevision(LONG newVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_UDFRevision(LONG* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_UDFRevisionsSupported(SAFEARRAY** val) = 0;
  virtual HRESULT STDMETHODCALLTYPE ChooseImageDefaults(IDiscRecorder2* discRecorder) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  ChooseImageDefaultsForMediaType(IMAPI_MEDIA_PHYSICAL_TYPE value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ISO9660InterchangeLevel(LONG newVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ISO9660InterchangeLevel(LONG* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ISO9660InterchangeLevelsSupported(SAFEARRAY** val) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateResultImage(IFileSystemImageResult** resultStream) = 0;
  virtual HRESULT STDMETHODCALLTYPE Exists(BSTR fullPath, FsiItemType* itemType) = 0;
  virtual HRESULT STDMETHODCALLTYPE CalculateDiscIdentifier(BSTR* discIdentifier) = 0;
  virtual HRESULT STDMETHODCALLTYPE IdentifyFileSystemsOnDisc(IDiscRecorder2* discRecorder,
                                                              FsiFileSystems* fileSystems) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  GetDefaultFileSystemForImport(FsiFileSystems fileSystems, FsiFileSystems* importDefault) = 0;
  virtual HRESULT STDMETHODCALLTYPE ImportFileSystem(FsiFileSystems* importedFileSystem) = 0;
  virtual HRESULT STDMETHODCALLTYPE ImportSpecificFileSystem(FsiFileSystems fileSystemToUse) = 0;
  virtual HRESULT STDMETHODCALLTYPE RollbackToChangePoint(LONG changePoint) = 0;
  virtual HRESULT STDMETHODCALLTYPE LockInChangePoint() = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateDirectoryItem(BSTR name, IFsiDirectoryItem** newItem) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateFileItem(BSTR name, IFsiFileItem** newItem) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_VolumeNameUDF(BSTR* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_VolumeNameJoliet(BSTR* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_VolumeNameISO9660(BSTR* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_StageFiles(VARIANT_BOOL* val) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_StageFiles(VARIANT_BOOL newVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_MultisessionInterfaces(SAFEARRAY** val) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_MultisessionInterfaces(SAFEARRAY* newVal) = 0;
};
