// The wrappers of the current disc-mastering service: one class for each platform interface. An
// operation answers true on success; false leaves the composed text (imapi_item.h) and the
// platform's HRESULT as the last result. A positive HRESULT is success. What comes out is untouched
// on failure. Speeds are sectors per second, a sector has 2048 bytes.
#pragma once

#include <vector>

#include "disc/imapi_item.h"

namespace quillon {

class CDiscMaster2Iterator;

class CDiscMaster2 : public CImapiWrapper<IDiscMaster2> {
 public:
  CDiscMaster2();
  [[nodiscard]] bool GetIsSupportedEnvironment(bool& supported);
  // "The current iterator is already valid." when it holds an enumerator, which stays.
  [[nodiscard]] bool GetDiscDevices(CDiscMaster2Iterator& drives);
};

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

// Forms with BSTR& hand out a text that the caller frees.
class CDiscRecorder2 : public CImapiWrapper<IDiscRecorder2> {
 public:
  CDiscRecorder2();
  [[nodiscard]] bool InitializeDiscRecorder(BSTR uniqueId);
  [[nodiscard]] bool InitializeDiscRecorder(const Text& uniqueId);
  [[nodiscard]] bool AcquireExclusiveAccess(bool force, BSTR clientName);
  [[nodiscard]] bool AcquireExclusiveAccess(bool force, const Text& clientName);
  [[nodiscard]] bool ReleaseExclusiveAccess();
  [[nodiscard]] bool EjectMedia();
  [[nodiscard]] bool GetActiveDiscRecorder(BSTR& uniqueId);
  [[nodiscard]] bool GetActiveDiscRecorder(Text& uniqueId);
  [[nodiscard]] bool GetVendorId(BSTR& vendor);
  [[nodiscard]] bool GetVendorId(Text& vendor);
  [[nodiscard]] bool GetProductId(BSTR& product);
  [[nodiscard]] bool GetProductId(Text& product);
  [[nodiscard]] bool GetProductRevision(BSTR& revision);
  [[nodiscard]] bool GetProductRevision(Text& revision);
  [[nodiscard]] bool GetVolumeName(BSTR& name);
  [[nodiscard]] bool GetVolumeName(Text& name);
  [[nodiscard]] bool GetVolumePathNames(std::vector<Text>& paths);
  [[nodiscard]] bool GetSupportedProfiles(std::vector<LONG>& profiles);
  [[nodiscard]] bool GetCurrentProfiles(std::vector<LONG>& profiles);
  [[nodiscard]] bool GetSupportedFeaturePages(std::vector<LONG>& pages);
  [[nodiscard]] bool GetCurrentFeaturePages(std::vector<LONG>& pages);
  [[nodiscard]] bool GetSupportedModePages(std::vector<LONG>& pages);
  [[nodiscard]] bool GetDeviceCanLoadMedia(bool& canLoad);
  [[nodiscard]] bool GetLegacyDeviceNumber(LONG& number);
};

// What the data format and the erase format share.
template <typename Format>
class CDiscFormat2 : public CImapiWrapper<Format> {
 public:
  [[nodiscard]] bool IsRecorderSupported(const CDiscRecorder2& recorder, bool& supported);
  [[nodiscard]] bool IsCurrentMediaSupported(const CDiscRecorder2& recorder, bool& supported);
  [[nodiscard]] bool GetMediaPhysicallyBlank(bool& blank);
  [[nodiscard]] bool GetMediaHeuristicallyBlank(bool& blank);
  // Physically blank or, when not, heuristically.
  [[nodiscard]] bool GetMediaBlank(bool& blank);
  bool SetRecorder(const CDiscRecorder2& recorder);
  bool SetClientName(BSTR name);
  bool SetClientName(const Text& name);

 protected:
  using CImapiWrapper<Format>::CImapiWrapper;
};

extern template class CDiscFormat2<IDiscFormat2Data>;
extern template class CDiscFormat2<IDiscFormat2Erase>;

class CDiscFormat2Data : public CDiscFormat2<IDiscFormat2Data> {
 public:
  CDiscFormat2Data();
  [[nodiscard]] bool GetSupportedMediaTypes(std::vector<LONG>& types);
  [[nodiscard]] bool GetCurrentMediaStatus(IMAPI_FORMAT2_DATA_MEDIA_STATE& state);
  [[nodiscard]] bool GetWriteProtectStatus(IMAPI_MEDIA_WRITE_PROTECT_STATE& state);
  [[nodiscard]] bool GetCurrentPhysicalMediaType(IMAPI_MEDIA_PHYSICAL_TYPE& type);
  [[nodiscard]] bool GetFreeSectorsOnMedia(LONG& sectors);
  [[nodiscard]] bool GetTotalSectorsOnMedia(LONG& sectors);
  // A failure after a call that succeeded (see the last result) means that the platform's array is
  // not a one-dimensional array of 32-bit integers.
  [[nodiscard]] bool GetSupportedWriteSpeeds(std::vector<LONG>& speeds);
  [[nodiscard]] bool GetRequestedWriteSpeed(LONG& speed);
  [[nodiscard]] bool GetCurrentWriteSpeed(LONG& speed);
  bool SetWriteSpeed(LONG speed, bool pureCav);
  // Returns when the whole stream is on the disc.
  [[nodiscard]] bool Write(const CImapiWrapper<IStream>& stream);
};

class CDiscFormat2Erase : public CDiscFormat2<IDiscFormat2Erase> {
 public:
  CDiscFormat2Erase();
  bool SetFullErase(bool full);
  [[nodiscard]] bool EraseMedia();  // returns when done
};

// Obtained only from CFileSystemImageResult::GetImageStream.
class CImapiImageStream : public CImapiWrapper<IStream> {
 public:
  CImapiImageStream();
  // statistics must not be null; its name, when flags ask for it, is freed with CoTaskMemFree.
  [[nodiscard]] bool Stat(STATSTG* statistics, DWORD flags);
};

class CFileSystemImageResult : public CImapiWrapper<IFileSystemImageResult> {
 public:
  CFileSystemImageResult();
  [[nodiscard]] bool GetImageStream(CImapiImageStream& stream);
};

class CFsiDirectoryItem : public CImapiWrapper<IFsiDirectoryItem> {
 public:
  CFsiDirectoryItem();
  [[nodiscard]] bool AddTree(BSTR directory, bool includeBaseDirectory);
  [[nodiscard]] bool AddTree(const Text& directory, bool includeBaseDirectory);
};

class CFileSystemImage : public CImapiWrapper<IFileSystemImage> {
 public:
  CFileSystemImage();
  [[nodiscard]] bool GetRoot(CFsiDirectoryItem& root);
  bool SetMaxMediaBlocksFromDevice(const CDiscRecorder2& recorder);
  [[nodiscard]] bool ChooseImageDefaults(const CDiscRecorder2& recorder);
  bool SetVolumeName(BSTR name);
  bool SetVolumeName(const Text& name);
  bool SetWorkingDirectory(BSTR directory);
  bool SetWorkingDirectory(const Text& directory);
  bool SetStrictFileSystemCompliance(bool strict);
  bool SetFileSystemsToCreate(LONG fileSystems);  // a mask of FsiFileSystems
  bool SetStageFiles(bool stage);
  [[nodiscard]] bool CreateResultImage(CFileSystemImageResult& result);
};

}  // namespace quillon
