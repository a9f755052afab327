// Every operation names itself and the platform's method; the line of a failing call in this file
// shows in the message.
#include "disc/tarnimapiutil.h"

#include "automation.h"

namespace quillon {
namespace {

VARIANT_BOOL VariantBool(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

// As the type that AutomationOut knows.
template <typename Interface>
CImapiWrapper<Interface>& AsOutput(CImapiWrapper<Interface>& wrapper) {
  return wrapper;
}

}  // namespace

CDiscMaster2::CDiscMaster2()
    : CImapiWrapper(OLESTR("CDiscMaster2"),
                    {&CLSID_MsftDiscMaster2, &IID_IDiscMaster2, kMsgCannotCreateDiscMaster}) {}

bool CDiscMaster2::GetIsSupportedEnvironment(bool& supported) {
  return GetProperty(OLESTR("GetIsSupportedEnvironment"), &IDiscMaster2::get_IsSupportedEnvironment,
                     supported);
}

bool CDiscMaster2::GetDiscDevices(CDiscMaster2Iterator& drives) {
  if (!EnsureObject(SourceLine::current())) return false;
  if (!drives.IsEmpty()) return Fail(kMsgIteratorAlreadyValid);
  return GetProperty(OLESTR("GetDiscDevices"), &IDiscMaster2::get__NewEnum, AsOutput(drives));
}

CDiscMaster2Iterator::CDiscMaster2Iterator(bool queryMedia, bool forceAccess)
    : CImapiWrapper(OLESTR("CDiscMaster2Iterator"),
                    {nullptr, nullptr, kMsgCannotCreateDriveIterator}),
      queryMedia_(queryMedia),
      forceAccess_(forceAccess) {}

bool CDiscMaster2Iterator::Reset() {
  currentId_.clear();
  return Invoke(OLESTR("Reset"), [](IEnumVARIANT& drives) { return drives.Reset(); });
}

bool CDiscMaster2Iterator::Next() {
  constexpr TextView kMethod = OLESTR("Next");
  ClearError();
  currentId_.clear();
  ULONG fetched = 0;
  OwnedVariant item;
  const bool hasItem =
      Invoke(kMethod, [&](IEnumVARIANT& drives) { return drives.Next(1, item.Put(), &fetched); }) &&
      GetLastResult() == S_OK && fetched == 1;
  if (!hasItem || item.Type() != VT_BSTR ||
      AssignText(currentId_, ViewOf(V_BSTR(&item.Get())), 0)) {
    return hasItem;
  }
  // Without a failing result this would be the end, and the drive would not be there.
  lastResult_ = E_OUTOFMEMORY;
  return FailCall(kMethod, SourceLine::current(), lastResult_);
}

CDiscRecorder2::CDiscRecorder2()
    : CImapiWrapper(OLESTR("CDiscRecorder2"),
                    {&CLSID_MsftDiscRecorder2, &IID_IDiscRecorder2, kMsgMethodFailed}) {}

bool CDiscRecorder2::InitializeDiscRecorder(BSTR uniqueId) {
  return Invoke(OLESTR("InitializeDiscRecorder"), [&](IDiscRecorder2& recorder) {
    return recorder.InitializeDiscRecorder(uniqueId);
  });
}

bool CDiscRecorder2::InitializeDiscRecorder(const Text& uniqueId) {
  return PassText(*this, uniqueId, kMsgCannotSetRecorderUniqueId,
                  [this](BSTR text) { return InitializeDiscRecorder(text); });
}

bool CDiscRecorder2::AcquireExclusiveAccess(bool force, BSTR clientName) {
  return Invoke(OLESTR("AcquireExclusiveAccess"), [&](IDiscRecorder2& recorder) {
    return recorder.AcquireExclusiveAccess(VariantBool(force), clientName);
  });
}

bool CDiscRecorder2::AcquireExclusiveAccess(bool force, const Text& clientName) {
  return PassText(*this, clientName, kMsgCannotSetClientName,
                  [&](BSTR text) { return AcquireExclusiveAccess(force, text); });
}

bool CDiscRecorder2::ReleaseExclusiveAccess() {
  return Invoke(OLESTR("ReleaseExclusiveAccess"),
                [](IDiscRecorder2& recorder) { return recorder.ReleaseExclusiveAccess(); });
}

bool CDiscRecorder2::EjectMedia() {
  return Invoke(OLESTR("EjectMedia"),
                [](IDiscRecorder2& recorder) { return recorder.EjectMedia(); });
}

bool CDiscRecorder2::GetActiveDiscRecorder(BSTR& uniqueId) {
  return GetProperty(OLESTR("GetActiveDiscRecorder"), &IDiscRecorder2::get_ActiveDiscRecorder,
                     uniqueId);
}

bool CDiscRecorder2::GetActiveDiscRecorder(Text& uniqueId) {
  return TakeText(*this, uniqueId, kMsgCannotSetRecorderUniqueId,
                  [this](BSTR& text) { return GetActiveDiscRecorder(text); });
}

bool CDiscRecorder2::GetVendorId(BSTR& vendor) {
  return GetProperty(OLESTR("GetVendorId"), &IDiscRecorder2::get_VendorId, vendor);
}

bool CDiscRecorder2::GetVendorId(Text& vendor) {
  return TakeText(*this, vendor, kMsgCannotSetRecorderVendorId,
                  [this](BSTR& text) { return GetVendorId(text); });
}

bool CDiscRecorder2::GetProductId(BSTR& product) {
  return GetProperty(OLESTR("GetProductId"), &IDiscRecorder2::get_ProductId, product);
}

bool CDiscRecorder2::GetProductId(Text& product) {
  return TakeText(*this, product, kMsgCannotSetRecorderProductId,
                  [this](BSTR& text) { return GetProductId(text); });
}

bool CDiscRecorder2::GetProductRevision(BSTR& revision) {
  return GetProperty(OLESTR("GetProductRevision"), &IDiscRecorder2::get_ProductRevision, revision);
}

bool CDiscRecorder2::GetProductRevision(Text& revision) {
  return TakeText(*this, revision, kMsgCannotSetRecorderProductRevision,
                  [this](BSTR& text) { return GetProductRevision(text); });
}

bool CDiscRecorder2::GetVolumeName(BSTR& name) {
  return GetProperty(OLESTR("GetVolumeName"), &IDiscRecorder2::get_VolumeName, name);
}

bool CDiscRecorder2::GetVolumeName(Text& name) {
  return TakeText(*this, name, kMsgCannotSetRecorderVolumeName,
                  [this](BSTR& text) { return GetVolumeName(text); });
}

bool CDiscRecorder2::GetVolumePathNames(std::vector<Text>& paths) {
  return GetProperty(OLESTR("GetVolumePathNames"), &IDiscRecorder2::get_VolumePathNames, paths);
}

bool CDiscRecorder2::GetSupportedProfiles(std::vector<LONG>& profiles) {
  return GetProperty(OLESTR("GetSupportedProfiles"), &IDiscRecorder2::get_SupportedProfiles,
                     profiles);
}

bool CDiscRecorder2::GetCurrentProfiles(std::vector<LONG>& profiles) {
  return GetProperty(OLESTR("GetCurrentProfiles"), &IDiscRecorder2::get_CurrentProfiles, profiles);
}

bool CDiscRecorder2::GetSupportedFeaturePages(std::vector<LONG>& pages) {
  return GetProperty(OLESTR("GetSupportedFeaturePages"), &IDiscRecorder2::get_SupportedFeaturePages,
                     pages);
}

bool CDiscRecorder2::GetCurrentFeaturePages(std::vector<LONG>& pages) {
  return GetProperty(OLESTR("GetCurrentFeaturePages"), &IDiscRecorder2::get_CurrentFeaturePages,
                     pages);
}

bool CDiscRecorder2::GetSupportedModePages(std::vector<LONG>& pages) {
  return GetProperty(OLESTR("GetSupportedModePages"), &IDiscRecorder2::get_SupportedModePages,
                     pages);
}

bool CDiscRecorder2::GetDeviceCanLoadMedia(bool& canLoad) {
  return GetProperty(OLESTR("GetDeviceCanLoadMedia"), &IDiscRecorder2::get_DeviceCanLoadMedia,
                     canLoad);
}

bool CDiscRecorder2::GetLegacyDeviceNumber(LONG& number) {
  return GetProperty(OLESTR("GetLegacyDeviceNumber"), &IDiscRecorder2::get_LegacyDeviceNumber,
                     number);
}

template <typename Format>
bool CDiscFormat2<Format>::IsRecorderSupported(const CDiscRecorder2& recorder, bool& supported) {
  return this->GetProperty(
      OLESTR("IsRecorderSupported"),
      [&](Format& format, VARIANT_BOOL* answer) {
        return format.IsRecorderSupported(recorder.Get(), answer);
      },
      supported);
}

template <typename Format>
bool CDiscFormat2<Format>::IsCurrentMediaSupported(const CDiscRecorder2& recorder,
                                                   bool& supported) {
  return this->GetProperty(
      OLESTR("IsCurrentMediaSupported"),
      [&](Format& format, VARIANT_BOOL* answer) {
        return format.IsCurrentMediaSupported(recorder.Get(), answer);
      },
      supported);
}

template <typename Format>
bool CDiscFormat2<Format>::GetMediaPhysicallyBlank(bool& blank) {
  return this->GetProperty(OLESTR("GetMediaPhysicallyBlank"), &Format::get_MediaPhysicallyBlank,
                           blank);
}

template <typename Format>
bool CDiscFormat2<Format>::GetMediaHeuristicallyBlank(bool& blank) {
  return this->GetProperty(OLESTR("GetMediaHeuristicallyBlank"),
                           &Format::get_MediaHeuristicallyBlank, blank);
}

template <typename Format>
bool CDiscFormat2<Format>::GetMediaBlank(bool& blank) {
  return GetMediaPhysicallyBlank(blank) && (blank || GetMediaHeuristicallyBlank(blank));
}

template <typename Format>
bool CDiscFormat2<Format>::SetRecorder(const CDiscRecorder2& recorder) {
  return this->Invoke(OLESTR("SetRecorder"),
                      [&](Format& format) { return format.put_Recorder(recorder.Get()); });
}

template <typename Format>
bool CDiscFormat2<Format>::SetClientName(BSTR name) {
  return this->Invoke(OLESTR("SetClientName"),
                      [&](Format& format) { return format.put_ClientName(name); });
}

template <typename Format>
bool CDiscFormat2<Format>::SetClientName(const Text& name) {
  return PassText(*this, name, kMsgCannotSetClientName,
                  [this](BSTR text) { return SetClientName(text); });
}

template class CDiscFormat2<IDiscFormat2Data>;
template class CDiscFormat2<IDiscFormat2Erase>;

CDiscFormat2Data::CDiscFormat2Data()
    : CDiscFormat2(OLESTR("CDiscFormat2Data"), {&CLSID_MsftDiscFormat2Data, &IID_IDiscFormat2Data,
                                                kMsgCannotCreateDataFormat}) {}

bool CDiscFormat2Data::GetSupportedMediaTypes(std::vector<LONG>& types) {
  return GetProperty(OLESTR("GetSupportedMediaTypes"), &IDiscFormat2Data::get_SupportedMediaTypes,
                     types);
}

bool CDiscFormat2Data::GetCurrentMediaStatus(IMAPI_FORMAT2_DATA_MEDIA_STATE& state) {
  return GetProperty(OLESTR("GetCurrentMediaStatus"), &IDiscFormat2Data::get_CurrentMediaStatus,
                     state);
}

bool CDiscFormat2Data::GetWriteProtectStatus(IMAPI_MEDIA_WRITE_PROTECT_STATE& state) {
  return GetProperty(OLESTR("GetWriteProtectStatus"), &IDiscFormat2Data::get_WriteProtectStatus,
                     state);
}

bool CDiscFormat2Data::GetCurrentPhysicalMediaType(IMAPI_MEDIA_PHYSICAL_TYPE& type) {
  return GetProperty(OLESTR("GetCurrentPhysicalMediaType"),
                     &IDiscFormat2Data::get_CurrentPhysicalMediaType, type);
}

bool CDiscFormat2Data::GetFreeSectorsOnMedia(LONG& sectors) {
  return GetProperty(OLESTR("GetFreeSectorsOnMedia"), &IDiscFormat2Data::get_FreeSectorsOnMedia,
                     sectors);
}

bool CDiscFormat2Data::GetTotalSectorsOnMedia(LONG& sectors) {
  return GetProperty(OLESTR("GetTotalSectorsOnMedia"), &IDiscFormat2Data::get_TotalSectorsOnMedia,
                     sectors);
}

bool CDiscFormat2Data::GetSupportedWriteSpeeds(std::vector<LONG>& speeds) {
  constexpr TextView kMethod = OLESTR("GetSupportedWriteSpeeds");
  bool isArray = false;
  const auto read = [&isArray](IDiscFormat2Data& format, SAFEARRAY** array) {
    const HRESULT hr = format.get_SupportedWriteSpeeds(array);
    isArray = *array != nullptr;
    return hr;
  };
  return GetProperty(kMethod, read, speeds) &&
         (isArray || FailCall(kMethod, SourceLine::current(), DISP_E_TYPEMISMATCH));
}

bool CDiscFormat2Data::GetRequestedWriteSpeed(LONG& speed) {
  return GetProperty(OLESTR("GetRequestedWriteSpeed"), &IDiscFormat2Data::get_RequestedWriteSpeed,
                     speed);
}

bool CDiscFormat2Data::GetCurrentWriteSpeed(LONG& speed) {
  return GetProperty(OLESTR("GetCurrentWriteSpeed"), &IDiscFormat2Data::get_CurrentWriteSpeed,
                     speed);
}

bool CDiscFormat2Data::SetWriteSpeed(LONG speed, bool pureCav) {
  return Invoke(OLESTR("SetWriteSpeed"), [&](IDiscFormat2Data& format) {
    return format.SetWriteSpeed(speed, VariantBool(pureCav));
  });
}

bool CDiscFormat2Data::Write(const CImapiWrapper<IStream>& stream) {
  return Invoke(OLESTR("Write"),
                [&](IDiscFormat2Data& format) { return format.Write(stream.Get()); });
}

CDiscFormat2Erase::CDiscFormat2Erase()
    : CDiscFormat2(
          OLESTR("CDiscFormat2Erase"),
          {&CLSID_MsftDiscFormat2Erase, &IID_IDiscFormat2Erase, kMsgCannotCreateEraseFormat}) {}

bool CDiscFormat2Erase::SetFullErase(bool full) {
  return Invoke(OLESTR("SetFullErase"),
                [&](IDiscFormat2Erase& format) { return format.put_FullErase(VariantBool(full)); });
}

bool CDiscFormat2Erase::EraseMedia() {
  return Invoke(OLESTR("EraseMedia"),
                [](IDiscFormat2Erase& format) { return format.EraseMedia(); });
}

CImapiImageStream::CImapiImageStream()
    : CImapiWrapper(OLESTR("CImapiImageStream"), {nullptr, nullptr, kMsgCannotCreateImageStream}) {}

bool CImapiImageStream::Stat(STATSTG* statistics, DWORD flags) {
  if (!EnsureObject(SourceLine::current())) return false;
  if (statistics == nullptr) return Fail(kMsgStreamStatisticsInvalid);
  return Invoke(OLESTR("Stat"), [&](IStream& stream) { return stream.Stat(statistics, flags); });
}

CFileSystemImageResult::CFileSystemImageResult()
    : CImapiWrapper(OLESTR("CFileSystemImageResult"),
                    {&CLSID_FileSystemImageResult, &IID_IFileSystemImageResult,
                     kMsgCannotCreateImageResult}) {}

bool CFileSystemImageResult::GetImageStream(CImapiImageStream& stream) {
  return GetProperty(OLESTR("GetImageStream"), &IFileSystemImageResult::get_ImageStream,
                     AsOutput(stream));
}

CFsiDirectoryItem::CFsiDirectoryItem()
    : CImapiWrapper(OLESTR("CFsiDirectoryItem"), {&CLSID_FsiDirectoryItem, &IID_IFsiDirectoryItem,
                                                  kMsgCannotCreateDirectoryItem}) {}

bool CFsiDirectoryItem::AddTree(BSTR directory, bool includeBaseDirectory) {
  return Invoke(OLESTR("AddTree"), [&](IFsiDirectoryItem& item) {
    return item.AddTree(directory, VariantBool(includeBaseDirectory));
  });
}

bool CFsiDirectoryItem::AddTree(const Text& directory, bool includeBaseDirectory) {
  return PassText(*this, directory, kMsgCannotSetTreeName,
                  [&](BSTR text) { return AddTree(text, includeBaseDirectory); });
}

CFileSystemImage::CFileSystemImage()
    : CImapiWrapper(OLESTR("CFileSystemImage"),
                    {&CLSID_MsftFileSystemImage, &IID_IFileSystemImage, kMsgCannotCreateImage}) {}

bool CFileSystemImage::GetRoot(CFsiDirectoryItem& root) {
  return GetProperty(OLESTR("GetRoot"), &IFileSystemImage::get_Root, AsOutput(root));
}

bool CFileSystemImage::SetMaxMediaBlocksFromDevice(const CDiscRecorder2& recorder) {
  return Invoke(OLESTR("SetMaxMediaBlocksFromDevice"), [&](IFileSystemImage& image) {
    return image.SetMaxMediaBlocksFromDevice(recorder.Get());
  });
}

bool CFileSystemImage::ChooseImageDefaults(const CDiscRecorder2& recorder) {
  return Invoke(OLESTR("ChooseImageDefaults"),
                [&](IFileSystemImage& image) { return image.ChooseImageDefaults(recorder.Get()); });
}

bool CFileSystemImage::SetVolumeName(BSTR name) {
  return Invoke(OLESTR("SetVolumeName"),
                [&](IFileSystemImage& image) { return image.put_VolumeName(name); });
}

bool CFileSystemImage::SetVolumeName(const Text& name) {
  return PassText(*this, name, kMsgCannotSetImageVolumeName,
                  [this](BSTR text) { return SetVolumeName(text); });
}

bool CFileSystemImage::SetWorkingDirectory(BSTR directory) {
  return Invoke(OLESTR("SetWorkingDirectory"),
                [&](IFileSystemImage& image) { return image.put_WorkingDirectory(directory); });
}

bool CFileSystemImage::SetWorkingDirectory(const Text& directory) {
  return PassText(*this, directory, kMsgCannotSetImageWorkingDirectory,
                  [this](BSTR text) { return SetWorkingDirectory(text); });
}

bool CFileSystemImage::SetStrictFileSystemCompliance(bool strict) {
  return Invoke(OLESTR("SetStrictFileSystemCompliance"), [&](IFileSystemImage& image) {
    return image.put_StrictFileSystemCompliance(VariantBool(strict));
  });
}

bool CFileSystemImage::SetFileSystemsToCreate(LONG fileSystems) {
  return Invoke(OLESTR("SetFileSystemsToCreate"), [&](IFileSystemImage& image) {
    return image.put_FileSystemsToCreate(static_cast<FsiFileSystems>(fileSystems));
  });
}

bool CFileSystemImage::SetStageFiles(bool stage) {
  return Invoke(OLESTR("SetStageFiles"),
                [&](IFileSystemImage& image) { return image.put_StageFiles(VariantBool(stage)); });
}

bool CFileSystemImage::CreateResultImage(CFileSystemImageResult& result) {
  return GetProperty(OLESTR("CreateResultImage"), &IFileSystemImage::CreateResultImage,
                     AsOutput(result));
}

}  // namespace quillon
