// The disc services' interfaces with every method refused (com/refusing.h): for fakes and for
// classes of the layer, which override what is called.
#pragma once

#include "platform/com/refusing.h"
#include "platform/imapi.h"
#include "platform/imapi2.h"

namespace quillon {

template <>
class Refusing<IDiscMaster2> : public IDiscMaster2 {
 public:
  HRESULT STDMETHODCALLTYPE get__NewEnum(IEnumVARIANT**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Item(LONG, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Count(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_IsSupportedEnvironment(VARIANT_BOOL*) override { return E_NOTIMPL; }
};

template <>
class Refusing<IDiscRecorder2> : public IDiscRecorder2 {
 public:
  HRESULT STDMETHODCALLTYPE EjectMedia() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CloseTray() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AcquireExclusiveAccess(VARIANT_BOOL, BSTR) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ReleaseExclusiveAccess() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DisableMcn() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnableMcn() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE InitializeDiscRecorder(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ActiveDiscRecorder(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_VendorId(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ProductId(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ProductRevision(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_VolumeName(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_VolumePathNames(SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_DeviceCanLoadMedia(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_LegacyDeviceNumber(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_SupportedFeaturePages(SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_CurrentFeaturePages(SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_SupportedProfiles(SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_CurrentProfiles(SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_SupportedModePages(SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ExclusiveAccessOwner(BSTR*) override { return E_NOTIMPL; }
};

// What the data format and the erase format share.
template <typename Format>
class RefusingFormat : public Format {
 public:
  HRESULT STDMETHODCALLTYPE IsRecorderSupported(IDiscRecorder2*, VARIANT_BOOL*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE IsCurrentMediaSupported(IDiscRecorder2*, VARIANT_BOOL*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_MediaPhysicallyBlank(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_MediaHeuristicallyBlank(VARIANT_BOOL*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_SupportedMediaTypes(SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Recorder(IDiscRecorder2*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Recorder(IDiscRecorder2**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_CurrentPhysicalMediaType(IMAPI_MEDIA_PHYSICAL_TYPE*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE put_ClientName(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ClientName(BSTR*) override { return E_NOTIMPL; }
};

template <>
class Refusing<IDiscFormat2Data> : public RefusingFormat<IDiscFormat2Data> {
 public:
  HRESULT STDMETHODCALLTYPE put_BufferUnderrunFreeDisabled(VARIANT_BOOL) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_BufferUnderrunFreeDisabled(VARIANT_BOOL*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE put_PostgapAlreadyInImage(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_PostgapAlreadyInImage(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_CurrentMediaStatus(IMAPI_FORMAT2_DATA_MEDIA_STATE*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_WriteProtectStatus(IMAPI_MEDIA_WRITE_PROTECT_STATE*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_TotalSectorsOnMedia(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_FreeSectorsOnMedia(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_NextWritableAddress(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_StartAddressOfPreviousSession(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_LastWrittenAddressOfPreviousSession(LONG*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE put_ForceMediaToBeClosed(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ForceMediaToBeClosed(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_DisableConsumerDvdCompatibilityMode(VARIANT_BOOL) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_DisableConsumerDvdCompatibilityMode(VARIANT_BOOL*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_RequestedWriteSpeed(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_RequestedRotationTypeIsPureCAV(VARIANT_BOOL*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_CurrentWriteSpeed(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_CurrentRotationTypeIsPureCAV(VARIANT_BOOL*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_SupportedWriteSpeeds(SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_SupportedWriteSpeedDescriptors(SAFEARRAY**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE put_ForceOverwrite(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ForceOverwrite(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_MultisessionInterfaces(SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Write(IStream*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CancelWrite() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetWriteSpeed(LONG, VARIANT_BOOL) override { return E_NOTIMPL; }
};

template <>
class Refusing<IDiscFormat2Erase> : public RefusingFormat<IDiscFormat2Erase> {
 public:
  HRESULT STDMETHODCALLTYPE put_FullErase(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_FullErase(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EraseMedia() override { return E_NOTIMPL; }
};

template <>
class Refusing<IFsiDirectoryItem> : public IFsiDirectoryItem {
 public:
  HRESULT STDMETHODCALLTYPE get_Name(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_FullPath(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_CreationTime(DATE*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_CreationTime(DATE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_LastAccessedTime(DATE*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_LastAccessedTime(DATE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_LastModifiedTime(DATE*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_LastModifiedTime(DATE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_IsHidden(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_IsHidden(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE FileSystemName(FsiFileSystems, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE FileSystemPath(FsiFileSystems, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get__NewEnum(IEnumVARIANT**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Item(BSTR, IFsiItem**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Count(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_EnumFsiItems(IEnumFsiItems**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AddDirectory(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AddFile(BSTR, IStream*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AddTree(BSTR, VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Add(IFsiItem*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Remove(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE RemoveTree(BSTR) override { return E_NOTIMPL; }
};

template <>
class Refusing<IFileSystemImageResult> : public IFileSystemImageResult {
 public:
  HRESULT STDMETHODCALLTYPE get_ImageStream(IStream**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ProgressItems(IProgressItems**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_TotalBlocks(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_BlockSize(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_DiscId(BSTR*) override { return E_NOTIMPL; }
};

template <>
class Refusing<IFileSystemImage> : public IFileSystemImage {
 public:
  HRESULT STDMETHODCALLTYPE get_Root(IFsiDirectoryItem**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_SessionStartBlock(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_SessionStartBlock(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_FreeMediaBlocks(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_FreeMediaBlocks(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetMaxMediaBlocksFromDevice(IDiscRecorder2*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_UsedBlocks(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_VolumeName(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_VolumeName(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ImportedVolumeName(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_BootImageOptions(IBootOptions**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_BootImageOptions(IBootOptions*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_FileCount(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_DirectoryCount(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_WorkingDirectory(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_WorkingDirectory(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ChangePoint(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_StrictFileSystemCompliance(VARIANT_BOOL*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE put_StrictFileSystemCompliance(VARIANT_BOOL) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_UseRestrictedCharacterSet(VARIANT_BOOL*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE put_UseRestrictedCharacterSet(VARIANT_BOOL) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_FileSystemsToCreate(FsiFileSystems*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_FileSystemsToCreate(FsiFileSystems) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_FileSystemsSupported(FsiFileSystems*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_UDFRevision(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_UDFRevision(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_UDFRevisionsSupported(SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ChooseImageDefaults(IDiscRecorder2*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ChooseImageDefaultsForMediaType(IMAPI_MEDIA_PHYSICAL_TYPE) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE put_ISO9660InterchangeLevel(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ISO9660InterchangeLevel(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ISO9660InterchangeLevelsSupported(SAFEARRAY**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE CreateResultImage(IFileSystemImageResult**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Exists(BSTR, FsiItemType*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CalculateDiscIdentifier(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE IdentifyFileSystemsOnDisc(IDiscRecorder2*, FsiFileSystems*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetDefaultFileSystemForImport(FsiFileSystems,
                                                          FsiFileSystems*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ImportFileSystem(FsiFileSystems*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ImportSpecificFileSystem(FsiFileSystems) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE RollbackToChangePoint(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE LockInChangePoint() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CreateDirectoryItem(BSTR, IFsiDirectoryItem**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE CreateFileItem(BSTR, IFsiFileItem**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_VolumeNameUDF(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_VolumeNameJoliet(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_VolumeNameISO9660(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_StageFiles(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_StageFiles(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_MultisessionInterfaces(SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_MultisessionInterfaces(SAFEARRAY*) override { return E_NOTIMPL; }
};

template <>
class Refusing<IDiscRecorder> : public IDiscRecorder {
 public:
  HRESULT STDMETHODCALLTYPE Init(BYTE*, ULONG, ULONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetRecorderGUID(BYTE*, ULONG, ULONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetRecorderType(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetDisplayNames(BSTR*, BSTR*, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetBasePnPID(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetPath(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetRecorderProperties(IPropertyStorage**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetRecorderProperties(IPropertyStorage*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetRecorderState(ULONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OpenExclusive() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE QueryMediaType(LONG*, LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE QueryMediaInfo(BYTE*, BYTE*, ULONG*, ULONG*, ULONG*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Eject() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Erase(BYTE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Close() override { return E_NOTIMPL; }
};

template <>
class Refusing<IEnumDiscRecorders> : public IEnumDiscRecorders {
 public:
  HRESULT STDMETHODCALLTYPE Next(ULONG, IDiscRecorder**, ULONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clone(IEnumDiscRecorders**) override { return E_NOTIMPL; }
};

template <>
class Refusing<IEnumDiscMasterFormats> : public IEnumDiscMasterFormats {
 public:
  HRESULT STDMETHODCALLTYPE Next(ULONG, LPIID, ULONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clone(IEnumDiscMasterFormats**) override { return E_NOTIMPL; }
};

template <>
class Refusing<IDiscMaster> : public IDiscMaster {
 public:
  HRESULT STDMETHODCALLTYPE Open() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnumDiscMasterFormats(IEnumDiscMasterFormats**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetActiveDiscMasterFormat(LPIID) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetActiveDiscMasterFormat(REFIID, void**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnumDiscRecorders(IEnumDiscRecorders**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetActiveDiscRecorder(IDiscRecorder**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetActiveDiscRecorder(IDiscRecorder*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ClearFormatContent() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ProgressAdvise(IDiscMasterProgressEvents*, UINT_PTR*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ProgressUnadvise(UINT_PTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE RecordDisc(BYTE, BYTE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Close() override { return E_NOTIMPL; }
};

template <>
class Refusing<IJolietDiscMaster> : public IJolietDiscMaster {
 public:
  HRESULT STDMETHODCALLTYPE GetTotalDataBlocks(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetUsedDataBlocks(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetDataBlockSize(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AddData(IStorage*, LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetJolietProperties(IPropertyStorage**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetJolietProperties(IPropertyStorage*) override { return E_NOTIMPL; }
};

template <>
class Refusing<ICDBurn> : public ICDBurn {
 public:
  HRESULT STDMETHODCALLTYPE GetRecorderDriveLetter(LPWSTR, UINT) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Burn(HWND) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE HasRecordableDrive(BOOL*) override { return E_NOTIMPL; }
};

}  // namespace quillon
