// The wrappers of the current disc-mastering service: one class for each platform interface. An
// operation names itself and the platform's method, and answers true on success; false leaves the
// composed text (imapi_item.h), which tells the operation's line in this file, and the platform's
// HRESULT as the last result. A positive HRESULT is success. What comes out is untouched on
// failure. Speeds are sectors per second, a sector has kSectorBytes.
//
// A text goes in and comes out as the system's own or as a BSTR; one that comes out as a BSTR is
// freed by the caller.
#pragma once

#include <vector>

#include "disc/imapi_item.h"

namespace quillon {

template <typename Type>
concept AnyText = std::same_as<Type, Text> || std::same_as<Type, BSTR>;

using Numbers = std::vector<LONG>;

inline constexpr std::uint64_t kSectorBytes = 2048;

// The name under which drives are locked.
inline constexpr const OLECHAR* kClientName = OLESTR("Quillon");

// The unique identifiers of the drives, in the platform's order, filled by
// CDiscMaster2::GetDiscDevices. The two flags say how a drive that is found here is read.
class CDiscMaster2Iterator : public CImapiWrapper<IEnumVARIANT> {
 public:
  explicit CDiscMaster2Iterator(bool queryMedia = false, bool forceAccess = false);

  [[nodiscard]] bool Reset();
  // Keeps the next item. False at the end, then with a last result that is no failure and without
  // an error text.
  [[nodiscard]] bool Next();
  // Empty when there is no current item or it is not a text.
  void GetCurrentUniqueId(Text& out) const { out = currentId_; }
  [[nodiscard]] bool AtFailure() const { return FAILED(GetLastResult()); }
  [[nodiscard]] bool QueryMedia() const { return queryMedia_; }
  [[nodiscard]] bool ForceAccess() const { return forceAccess_; }

 private:
  Text currentId_;
  bool queryMedia_;
  bool forceAccess_;
};

class CDiscMaster2 : public CImapiWrapper<IDiscMaster2> {
 public:
  CDiscMaster2()
      : CImapiWrapper(OLESTR("CDiscMaster2"),
                      {&CLSID_MsftDiscMaster2, &IID_IDiscMaster2, kMsgCannotCreateDiscMaster}) {}
  [[nodiscard]] bool GetIsSupportedEnvironment(bool& supported) {
    return Take(OLESTR("GetIsSupportedEnvironment"), &Held::get_IsSupportedEnvironment, supported);
  }
  // "The current iterator is already valid." when it holds an enumerator, which stays.
  [[nodiscard]] bool GetDiscDevices(CDiscMaster2Iterator& drives);
};

class CDiscRecorder2 : public CImapiWrapper<IDiscRecorder2> {
 public:
  CDiscRecorder2()
      : CImapiWrapper(OLESTR("CDiscRecorder2"),
                      {&CLSID_MsftDiscRecorder2, &IID_IDiscRecorder2, kMsgMethodFailed}) {}
  [[nodiscard]] bool InitializeDiscRecorder(const AnyText auto& uniqueId) {
    return PassText(OLESTR("InitializeDiscRecorder"), &Held::InitializeDiscRecorder,
                    kMsgCannotSetRecorderUniqueId, uniqueId);
  }
  [[nodiscard]] bool AcquireExclusiveAccess(bool force, const AnyText auto& clientName) {
    const auto acquire = [force](Held& recorder, BSTR name) {
      return recorder.AcquireExclusiveAccess(ToVariantBool(force), name);
    };
    return PassText(OLESTR("AcquireExclusiveAccess"), acquire, kMsgCannotSetClientName, clientName);
  }
  [[nodiscard]] bool ReleaseExclusiveAccess() {
    return Call(OLESTR("ReleaseExclusiveAccess"), &Held::ReleaseExclusiveAccess);
  }
  [[nodiscard]] bool EjectMedia() { return Call(OLESTR("EjectMedia"), &Held::EjectMedia); }
  [[nodiscard]] bool GetActiveDiscRecorder(AnyText auto& uniqueId) {
    return TakeText(OLESTR("GetActiveDiscRecorder"), &Held::get_ActiveDiscRecorder,
                    kMsgCannotSetRecorderUniqueId, uniqueId);
  }
  [[nodiscard]] bool GetVendorId(AnyText auto& vendor) {
    return TakeText(OLESTR("GetVendorId"), &Held::get_VendorId, kMsgCannotSetRecorderVendorId,
                    vendor);
  }
  [[nodiscard]] bool GetProductId(AnyText auto& product) {
    return TakeText(OLESTR("GetProductId"), &Held::get_ProductId, kMsgCannotSetRecorderProductId,
                    product);
  }
  [[nodiscard]] bool GetProductRevision(AnyText auto& revision) {
    return TakeText(OLESTR("GetProductRevision"), &Held::get_ProductRevision,
                    kMsgCannotSetRecorderProductRevision, revision);
  }
  [[nodiscard]] bool GetVolumeName(AnyText auto& name) {
    return TakeText(OLESTR("GetVolumeName"), &Held::get_VolumeName, kMsgCannotSetRecorderVolumeName,
                    name);
  }
  [[nodiscard]] bool GetVolumePathNames(std::vector<Text>& paths) {
    return Take(OLESTR("GetVolumePathNames"), &Held::get_VolumePathNames, paths);
  }
  [[nodiscard]] bool GetSupportedProfiles(Numbers& profiles) {
    return Take(OLESTR("GetSupportedProfiles"), &Held::get_SupportedProfiles, profiles);
  }
  [[nodiscard]] bool GetCurrentProfiles(Numbers& profiles) {
    return Take(OLESTR("GetCurrentProfiles"), &Held::get_CurrentProfiles, profiles);
  }
  [[nodiscard]] bool GetSupportedFeaturePages(Numbers& pages) {
    return Take(OLESTR("GetSupportedFeaturePages"), &Held::get_SupportedFeaturePages, pages);
  }
  [[nodiscard]] bool GetCurrentFeaturePages(Numbers& pages) {
    return Take(OLESTR("GetCurrentFeaturePages"), &Held::get_CurrentFeaturePages, pages);
  }
  [[nodiscard]] bool GetSupportedModePages(Numbers& pages) {
    return Take(OLESTR("GetSupportedModePages"), &Held::get_SupportedModePages, pages);
  }
  [[nodiscard]] bool GetDeviceCanLoadMedia(bool& canLoad) {
    return Take(OLESTR("GetDeviceCanLoadMedia"), &Held::get_DeviceCanLoadMedia, canLoad);
  }
  [[nodiscard]] bool GetLegacyDeviceNumber(LONG& number) {
    return Take(OLESTR("GetLegacyDeviceNumber"), &Held::get_LegacyDeviceNumber, number);
  }
};

// Locks a drive around some work, which answers false with owner's error text set; it is unlocked
// whatever the outcome is. A drive that cannot be unlocked is a failure too, whose text serves only
// when the work has left none.
template <typename Work>
[[nodiscard]] bool WithExclusiveAccess(CBaseItem& owner, CDiscRecorder2& recorder, bool force,
                                       const Text& clientName, const Work& work) {
  if (!recorder.AcquireExclusiveAccess(force, clientName)) return owner.FailAs(recorder);
  bool done = false;
  try {
    done = work();
  } catch (...) {  // out of memory: the drive would stay locked
    static_cast<void>(recorder.ReleaseExclusiveAccess());
    throw;
  }
  if (recorder.ReleaseExclusiveAccess()) return done;
  return owner.ErrorMessage().empty() ? owner.FailAs(recorder) : false;
}

// What the data format and the erase format share.
template <typename Format>
class CDiscFormat2 : public CImapiWrapper<Format> {
 public:
  [[nodiscard]] bool IsRecorderSupported(const CDiscRecorder2& recorder, bool& supported) {
    return this->Take(OLESTR("IsRecorderSupported"), &Format::IsRecorderSupported, supported,
                      recorder);
  }
  [[nodiscard]] bool IsCurrentMediaSupported(const CDiscRecorder2& recorder, bool& supported) {
    return this->Take(OLESTR("IsCurrentMediaSupported"), &Format::IsCurrentMediaSupported,
                      supported, recorder);
  }
  [[nodiscard]] bool GetMediaPhysicallyBlank(bool& blank) {
    return this->Take(OLESTR("GetMediaPhysicallyBlank"), &Format::get_MediaPhysicallyBlank, blank);
  }
  [[nodiscard]] bool GetMediaHeuristicallyBlank(bool& blank) {
    return this->Take(OLESTR("GetMediaHeuristicallyBlank"), &Format::get_MediaHeuristicallyBlank,
                      blank);
  }
  // Physically blank or, when not, heuristically.
  [[nodiscard]] bool GetMediaBlank(bool& blank) {
    return GetMediaPhysicallyBlank(blank) && (blank || GetMediaHeuristicallyBlank(blank));
  }
  [[nodiscard]] bool SetRecorder(const CDiscRecorder2& recorder) {
    return this->Call(OLESTR("SetRecorder"), &Format::put_Recorder, recorder);
  }
  [[nodiscard]] bool SetClientName(const AnyText auto& name) {
    return this->PassText(OLESTR("SetClientName"), &Format::put_ClientName, kMsgCannotSetClientName,
                          name);
  }

 protected:
  using CImapiWrapper<Format>::CImapiWrapper;
};

class CDiscFormat2Data : public CDiscFormat2<IDiscFormat2Data> {
 public:
  CDiscFormat2Data()
      : CDiscFormat2(OLESTR("CDiscFormat2Data"), {&CLSID_MsftDiscFormat2Data, &IID_IDiscFormat2Data,
                                                  kMsgCannotCreateDataFormat}) {}
  [[nodiscard]] bool GetSupportedMediaTypes(Numbers& types) {
    return Take(OLESTR("GetSupportedMediaTypes"), &Held::get_SupportedMediaTypes, types);
  }
  [[nodiscard]] bool GetCurrentMediaStatus(IMAPI_FORMAT2_DATA_MEDIA_STATE& state) {
    return Take(OLESTR("GetCurrentMediaStatus"), &Held::get_CurrentMediaStatus, state);
  }
  [[nodiscard]] bool GetWriteProtectStatus(IMAPI_MEDIA_WRITE_PROTECT_STATE& state) {
    return Take(OLESTR("GetWriteProtectStatus"), &Held::get_WriteProtectStatus, state);
  }
  [[nodiscard]] bool GetCurrentPhysicalMediaType(IMAPI_MEDIA_PHYSICAL_TYPE& type) {
    return Take(OLESTR("GetCurrentPhysicalMediaType"), &Held::get_CurrentPhysicalMediaType, type);
  }
  [[nodiscard]] bool GetFreeSectorsOnMedia(LONG& sectors) {
    return Take(OLESTR("GetFreeSectorsOnMedia"), &Held::get_FreeSectorsOnMedia, sectors);
  }
  [[nodiscard]] bool GetTotalSectorsOnMedia(LONG& sectors) {
    return Take(OLESTR("GetTotalSectorsOnMedia"), &Held::get_TotalSectorsOnMedia, sectors);
  }
  // A failure after a call that succeeded (see the last result) means that the platform's array is
  // not a one-dimensional array of 32-bit integers.
  [[nodiscard]] bool GetSupportedWriteSpeeds(Numbers& speeds);
  [[nodiscard]] bool GetRequestedWriteSpeed(LONG& speed) {
    return Take(OLESTR("GetRequestedWriteSpeed"), &Held::get_RequestedWriteSpeed, speed);
  }
  [[nodiscard]] bool GetCurrentWriteSpeed(LONG& speed) {
    return Take(OLESTR("GetCurrentWriteSpeed"), &Held::get_CurrentWriteSpeed, speed);
  }
  [[nodiscard]] bool SetWriteSpeed(LONG speed, bool pureCav) {
    return Call(OLESTR("SetWriteSpeed"), &Held::SetWriteSpeed, speed, pureCav);
  }
  // Returns when the whole stream is on the disc.
  [[nodiscard]] bool Write(const CImapiWrapper<IStream>& stream) {
    return Call(OLESTR("Write"), &Held::Write, stream);
  }
};

class CDiscFormat2Erase : public CDiscFormat2<IDiscFormat2Erase> {
 public:
  CDiscFormat2Erase()
      : CDiscFormat2(
            OLESTR("CDiscFormat2Erase"),
            {&CLSID_MsftDiscFormat2Erase, &IID_IDiscFormat2Erase, kMsgCannotCreateEraseFormat}) {}
  [[nodiscard]] bool SetFullErase(bool full) {
    return Call(OLESTR("SetFullErase"), &Held::put_FullErase, full);
  }
  // Returns when done.
  [[nodiscard]] bool EraseMedia() { return Call(OLESTR("EraseMedia"), &Held::EraseMedia); }
};

// Obtained only from CFileSystemImageResult::GetImageStream.
class CImapiImageStream : public CImapiWrapper<IStream> {
 public:
  CImapiImageStream()
      : CImapiWrapper(OLESTR("CImapiImageStream"),
                      {nullptr, nullptr, kMsgCannotCreateImageStream}) {}
  // statistics must not be null; its name, when flags ask for it, is freed with CoTaskMemFree.
  [[nodiscard]] bool Stat(STATSTG* statistics, DWORD flags);
};

class CFileSystemImageResult : public CImapiWrapper<IFileSystemImageResult> {
 public:
  CFileSystemImageResult()
      : CImapiWrapper(OLESTR("CFileSystemImageResult"),
                      {&CLSID_FileSystemImageResult, &IID_IFileSystemImageResult,
                       kMsgCannotCreateImageResult}) {}
  [[nodiscard]] bool GetImageStream(CImapiImageStream& stream) {
    return Take(OLESTR("GetImageStream"), &Held::get_ImageStream, stream);
  }
};

class CFsiDirectoryItem : public CImapiWrapper<IFsiDirectoryItem> {
 public:
  CFsiDirectoryItem()
      : CImapiWrapper(OLESTR("CFsiDirectoryItem"), {&CLSID_FsiDirectoryItem, &IID_IFsiDirectoryItem,
                                                    kMsgCannotCreateDirectoryItem}) {}
  [[nodiscard]] bool AddTree(const AnyText auto& directory, bool includeBaseDirectory) {
    const auto add = [=](Held& item, BSTR path) {
      return item.AddTree(path, ToVariantBool(includeBaseDirectory));
    };
    return PassText(OLESTR("AddTree"), add, kMsgCannotSetTreeName, directory);
  }
};

class CFileSystemImage : public CImapiWrapper<IFileSystemImage> {
 public:
  CFileSystemImage()
      : CImapiWrapper(OLESTR("CFileSystemImage"),
                      {&CLSID_MsftFileSystemImage, &IID_IFileSystemImage, kMsgCannotCreateImage}) {}
  [[nodiscard]] bool GetRoot(CFsiDirectoryItem& root) {
    return Take(OLESTR("GetRoot"), &Held::get_Root, root);
  }
  [[nodiscard]] bool SetMaxMediaBlocksFromDevice(const CDiscRecorder2& recorder) {
    return Call(OLESTR("SetMaxMediaBlocksFromDevice"), &Held::SetMaxMediaBlocksFromDevice,
                recorder);
  }
  [[nodiscard]] bool ChooseImageDefaults(const CDiscRecorder2& recorder) {
    return Call(OLESTR("ChooseImageDefaults"), &Held::ChooseImageDefaults, recorder);
  }
  [[nodiscard]] bool SetVolumeName(const AnyText auto& name) {
    return PassText(OLESTR("SetVolumeName"), &Held::put_VolumeName, kMsgCannotSetImageVolumeName,
                    name);
  }
  [[nodiscard]] bool SetWorkingDirectory(const AnyText auto& directory) {
    return PassText(OLESTR("SetWorkingDirectory"), &Held::put_WorkingDirectory,
                    kMsgCannotSetImageWorkingDirectory, directory);
  }
  [[nodiscard]] bool SetStrictFileSystemCompliance(bool strict) {
    return Call(OLESTR("SetStrictFileSystemCompliance"), &Held::put_StrictFileSystemCompliance,
                strict);
  }
  // A mask of FsiFileSystems.
  [[nodiscard]] bool SetFileSystemsToCreate(LONG fileSystems) {
    return Call(OLESTR("SetFileSystemsToCreate"), &Held::put_FileSystemsToCreate,
                static_cast<FsiFileSystems>(fileSystems));
  }
  [[nodiscard]] bool SetStageFiles(bool stage) {
    return Call(OLESTR("SetStageFiles"), &Held::put_StageFiles, stage);
  }
  [[nodiscard]] bool CreateResultImage(CFileSystemImageResult& result) {
    return Take(OLESTR("CreateResultImage"), &Held::CreateResultImage, result);
  }
};

}  // namespace quillon
