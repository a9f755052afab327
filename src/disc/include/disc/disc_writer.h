// Writes staged directories to the disc in a drive, as one data disc with ISO 9660, Joliet and UDF.
// A rewritable disc that holds data is erased first. One writer serves one job, on the caller's
// thread; Write returns when the disc is written. Every operation answers true, or false with a
// sentence in the writer's error text.
#pragma once

#include "disc/dir_item.h"
#include "disc/disc_unit_info.h"

namespace quillon {

class CTarnDiscWriter : public CBaseItem {
 public:
  CTarnDiscWriter();
  ~CTarnDiscWriter() override;  // releases every disc-mastering object
  CTarnDiscWriter(const CTarnDiscWriter&) = delete;
  CTarnDiscWriter& operator=(const CTarnDiscWriter&) = delete;

  void SetEjectAfterWrite(bool eject) { ejectAfterWrite_ = eject; }      // default true
  void SetPerformFullErase(bool full) { performFullErase_ = full; }      // default true
  void SetStrictCompliance(bool strict) { strictCompliance_ = strict; }  // default true
  [[nodiscard]] bool SetVolumeName(TextView name);                       // default "Quillon"
  // Copies the files into workingDirectory (the platform's choice when empty) before writing.
  void SetStageFiles(bool stage, TextView workingDirectory);
  // Sectors per second; -1, the default, is the fastest.
  void SetRequestedWriteSpeed(LONG speed) { requestedWriteSpeed_ = speed; }

  // Chooses the drive of the next Write. An empty identifier is refused.
  [[nodiscard]] bool SetRecorderUniqueId(TextView uniqueId);
  // By any of the types of RecorderIdType; both are checked by Write.
  void SetRecorderIdentifier(TextView identifier, std::int32_t type);

  // Stages a directory; one that is staged already is not added again. includeBaseDirectory: the
  // directory itself lies at the disc's root, else its content. excluded: nothing of it is written.
  [[nodiscard]] bool AddDirectory(TextView path, bool includeBaseDirectory, bool excluded);
  [[nodiscard]] std::size_t StagedCount() const { return staged_.GetCount(); }

  // The drive at index in the platform's order. recordersOnly: only drives that the data format
  // supports count; queryMedia: with the medium, locked by force if forceAccess is set. Releases
  // what an earlier Write has left; the staged directories stay.
  [[nodiscard]] bool GetRecorder(CDiscUnitInfo& recorder, std::int32_t index, bool recordersOnly,
                                 bool queryMedia, bool forceAccess);

  // After most failures nothing is staged any more and all platform objects are released.
  [[nodiscard]] bool Write();

 private:
  [[nodiscard]] bool PrepareRecorder(bool queryMedia);
  [[nodiscard]] bool FindRecorder(bool queryMedia, const Text& identifier);
  [[nodiscard]] bool InitializeRecorder();
  [[nodiscard]] bool EraseIfNeeded();
  [[nodiscard]] bool EraseCurrentMedia(bool fullErase, bool force);
  [[nodiscard]] bool EraseLocked(bool fullErase);
  [[nodiscard]] bool SetupDataFormat();
  [[nodiscard]] bool SetupFormat(const Text& clientName);
  [[nodiscard]] bool SetupImage(const Text& volumeName);
  [[nodiscard]] bool BuildImage(CImapiImageStream& image);
  [[nodiscard]] bool GetRootAndStaging(CFsiDirectoryItem& root);
  [[nodiscard]] bool AddStagedTrees(CFsiDirectoryItem& root, std::size_t& addedCount);
  [[nodiscard]] bool CreateStream(CImapiImageStream& image);
  [[nodiscard]] bool WriteImageStream(CImapiImageStream& image, bool force);
  [[nodiscard]] bool CheckImageFits(CImapiImageStream& image, bool force);
  [[nodiscard]] bool CheckCapacity(std::uint64_t sizeBytes);
  [[nodiscard]] bool BurnAndEject(const CImapiImageStream& image);

  // How every step ends: it answers false with the writer's error text set, or without one: then
  // the summary message, with the device's name, stands for it. A failed step leaves nothing staged
  // and no object held.
  template <typename Step>
  [[nodiscard]] bool RunStep(UINT summary, const Step& step) {
    ClearError();
    if (step()) return true;
    if (ErrorMessage().empty()) FailForDevice(summary);
    ReleaseAll();
    return false;
  }
  [[nodiscard]] bool CopyText(Text& out, const Text& text, UINT failure);
  bool FailForDevice(UINT id);
  void ReleaseObjects();
  void ReleaseAll();

  CDiscFormat2Data dataFormat_;
  CDiscFormat2Erase eraseFormat_;
  CDiscMaster2 discMaster_;
  CDiscRecorder2 recorder_;
  CFileSystemImage image_;
  CFileSystemImageResult resultImage_;
  CFsiFileSystems fileSystemsToCreate_;
  LONG requestedWriteSpeed_ = -1;
  Text clientName_;
  Text recorderIdentifier_;
  Text volumeName_;
  Text workingDirectory_;
  CImapi2DirItemList staged_;
  bool forceExclusiveAccess_ = true;
  bool ejectAfterWrite_ = true;
  bool strictCompliance_ = true;
  bool performFullErase_ = true;
  bool stageFiles_ = false;
  std::int32_t recorderIdentifierType_ = static_cast<std::int32_t>(RecorderIdType::Manufacturer);
  CDiscUnitInfo chosenRecorder_;
};

}  // namespace quillon
