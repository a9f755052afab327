// The steps of CTarnDiscWriter::Write once the drive is known: erasing, setting up the formats,
// building the image, writing it.
#include "disc/disc_writer.h"

namespace quillon {

bool CTarnDiscWriter::EraseIfNeeded() {
  CCurrentDiscMedia media;
  if (!chosenRecorder_.GetCurrentMedia(media)) return FailForDevice(kMsgCannotGetMediaInformation);
  return !media.IsRewritable() || media.IsBlank() ||
         EraseCurrentMedia(performFullErase_, forceExclusiveAccess_);
}

bool CTarnDiscWriter::EraseCurrentMedia(bool fullErase, bool force) {
  return RunStep(kMsgCannotEraseMedia, [&] {
    bool isSupported = false;
    const auto askSupport = [&] {
      return eraseFormat_.IsRecorderSupported(recorder_, isSupported);
    };
    if (!CallUntilReady(eraseFormat_, askSupport)) return FailAs(eraseFormat_);
    if (!isSupported) return FailForDevice(kMsgEraseNotSupported);
    Text clientName;
    if (!CopyText(clientName, clientName_, kMsgCannotGetClientName)) return false;
    if (!eraseFormat_.SetClientName(clientName)) return FailAs(eraseFormat_);
    return WithExclusiveAccess(*this, recorder_, force, clientName,
                               [&] { return EraseLocked(fullErase); });
  });
}

bool CTarnDiscWriter::EraseLocked(bool fullErase) {
  bool isSupported = false;
  if (!eraseFormat_.SetRecorder(recorder_) ||
      !eraseFormat_.IsCurrentMediaSupported(recorder_, isSupported)) {
    return FailAs(eraseFormat_);
  }
  if (!isSupported) return FailForDevice(kMsgMediaNotEraseable);
  bool isBlank = false;
  if (!eraseFormat_.GetMediaBlank(isBlank)) return FailAs(eraseFormat_);
  return isBlank || (eraseFormat_.SetFullErase(fullErase) && eraseFormat_.EraseMedia()) ||
         FailAs(eraseFormat_);
}

bool CTarnDiscWriter::SetupDataFormat() {
  return RunStep(kMsgCannotSetDiscFormat, [&] {
    Text clientName;
    Text volumeName;
    if (!CopyText(clientName, clientName_, kMsgCannotGetClientName) ||
        !CopyText(volumeName, volumeName_, kMsgCannotGetImageVolumeName)) {
      return false;
    }
    if (fileSystemsToCreate_.Value() == CImapi2Enumerator::kUndefined) {
      return Fail(kMsgCannotGetFileSystems);
    }
    return SetupFormat(clientName) && SetupImage(volumeName);
  });
}

bool CTarnDiscWriter::SetupFormat(const Text& clientName) {
  bool isSupported = false;
  const auto askSupport = [&] { return dataFormat_.IsRecorderSupported(recorder_, isSupported); };
  if (!CallUntilReady(dataFormat_, askSupport)) return FailAs(dataFormat_);
  if (!isSupported) return FailForDevice(kMsgNotADiscRecorder);
  if (!dataFormat_.IsCurrentMediaSupported(recorder_, isSupported)) return FailAs(dataFormat_);
  if (!isSupported) return FailForDevice(kMsgMediaNotWriteable);
  return (dataFormat_.SetRecorder(recorder_) && dataFormat_.SetClientName(clientName)) ||
         FailAs(dataFormat_);
}

bool CTarnDiscWriter::SetupImage(const Text& volumeName) {
  return (image_.SetMaxMediaBlocksFromDevice(recorder_) &&
          image_.SetStrictFileSystemCompliance(strictCompliance_) &&
          image_.SetFileSystemsToCreate(fileSystemsToCreate_.Value()) &&
          image_.ChooseImageDefaults(recorder_) && image_.SetVolumeName(volumeName)) ||
         FailAs(image_);
}

bool CTarnDiscWriter::BuildImage(CImapiImageStream& image) {
  return RunStep(kMsgCannotBuildImage, [&] {
    if (staged_.GetCount() == 0) return Fail(kMsgNothingToRecord);
    CFsiDirectoryItem root;
    std::size_t addedCount = 0;
    if (!GetRootAndStaging(root) || !AddStagedTrees(root, addedCount)) return false;
    const std::uint64_t totalBytes = staged_.MeasureBytes();
    if (totalBytes == 0) return Fail(kMsgNothingToRecord);
    if (!CheckCapacity(totalBytes)) return false;
    if (addedCount == 0) return Fail(kMsgNothingToRecord);
    return CreateStream(image);
  });
}

bool CTarnDiscWriter::GetRootAndStaging(CFsiDirectoryItem& root) {
  if (!CallUntilReady(image_, [&] { return image_.GetRoot(root); })) return FailAs(image_);
  // An image builder that never stages files has nothing to be told.
  if (!image_.SetStageFiles(stageFiles_) && image_.GetLastResult() != E_NOTIMPL) {
    return FailAs(image_);
  }
  if (!stageFiles_) return true;
  Text directory;
  if (!CopyText(directory, workingDirectory_, kMsgCannotGetStagingDirectory)) return false;
  return directory.empty() || image_.SetWorkingDirectory(directory) || FailAs(image_);
}

bool CTarnDiscWriter::AddStagedTrees(CFsiDirectoryItem& root, std::size_t& addedCount) {
  for (std::size_t i = 0; i < staged_.GetCount(); ++i) {
    const CImapi2DirItem& item = *staged_.At(i);
    if (item.IsExcluded()) continue;
    Text path;
    if (!CopyText(path, item.Path(), kMsgStagedNameInvalid)) return false;
    if (path.empty()) return Fail(kMsgStagedNameInvalid);
    if (!root.AddTree(path, item.IncludeBaseDirectory())) return FailAs(root);
    ++addedCount;
  }
  return true;
}

bool CTarnDiscWriter::CreateStream(CImapiImageStream& image) {
  if (!image_.CreateResultImage(resultImage_)) return FailAs(image_);
  return resultImage_.GetImageStream(image) || FailAs(resultImage_);
}

bool CTarnDiscWriter::WriteImageStream(CImapiImageStream& image, bool force) {
  return RunStep(kMsgCannotRecord, [&] {
    Text clientName;
    if (!CopyText(clientName, clientName_, kMsgCannotGetClientName)) return false;
    const auto setSpeed = [this] {
      return dataFormat_.SetWriteSpeed(requestedWriteSpeed_, /*pureCav=*/false);
    };
    if (!CallUntilReady(dataFormat_, setSpeed) || !dataFormat_.SetClientName(clientName)) {
      return FailAs(dataFormat_);
    }
    return CheckImageFits(image, force) && WithExclusiveAccess(*this, recorder_, force, clientName,
                                                               [&] { return BurnAndEject(image); });
  });
}

bool CTarnDiscWriter::CheckImageFits(CImapiImageStream& image, bool force) {
  STATSTG statistics{};
  if (!image.Stat(&statistics, STATFLAG_NONAME)) return FailAs(image);
  const std::uint64_t sizeBytes = statistics.cbSize.QuadPart;
  if (sizeBytes == 0) return Fail(kMsgImageStreamEmpty);
  CCurrentDiscMedia media;
  if (!media.Query(recorder_, dataFormat_, force)) return FailAs(media);
  if (!CheckCapacity(sizeBytes)) return false;
  std::uint64_t seconds = 0;
  if (!media.EstimateRecordingTime(sizeBytes, seconds)) return FailAs(media);
  return seconds != 0 || FailForDevice(kMsgCannotCalculateRecordingTime);
}

bool CTarnDiscWriter::CheckCapacity(std::uint64_t sizeBytes) {
  LONG freeSectors = 0;
  if (!dataFormat_.GetFreeSectorsOnMedia(freeSectors)) return FailAs(dataFormat_);
  if (freeSectors == 0) return FailForDevice(kMsgNoFreeSpaceOnMedia);
  const std::int64_t freeBytes = std::int64_t{freeSectors} * std::int64_t{kSectorBytes};
  return freeBytes >= static_cast<std::int64_t>(sizeBytes) || FailForDevice(kMsgImageExceedsMedia);
}

bool CTarnDiscWriter::BurnAndEject(const CImapiImageStream& image) {
  if (!dataFormat_.Write(image)) return FailAs(dataFormat_);
  return !ejectAfterWrite_ || recorder_.EjectMedia() || FailAs(recorder_);
}

}  // namespace quillon
