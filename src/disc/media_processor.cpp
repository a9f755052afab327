#include "disc/media_processor.h"

#include "disc/disc_writer.h"
#include "foundation/com_base.h"
#include "foundation/com_values.h"
#include "foundation/file_util.h"
#include "platform/imapi.h"

namespace quillon {
namespace {

constexpr const OLECHAR* kDefaultVolumeName = OLESTR("Quillon");

// The first drive that records, with its medium, taken from other programs if need be.
bool GetFirstRecorder(CTarnDiscWriter& writer, CDiscUnitInfo& drive) {
  return writer.GetRecorder(drive, /*index=*/0, /*recordersOnly=*/true, /*queryMedia=*/true,
                            /*forceAccess=*/true);
}

}  // namespace

CQuillonMediaProcessor::CQuillonMediaProcessor() : volumeName_(kDefaultVolumeName) {
  SetClassName(OLESTR("CQuillonMediaProcessor"));
}

bool CQuillonMediaProcessor::SetVolumeName(TextView name) {
  return AssignText(volumeName_, name, kMaxVolumeNameChars);
}

bool CQuillonMediaProcessor::AddContent(TextView path) {
  if (path.empty()) return Fail(kMsgPathInvalid);
  if (content_.Contains(path)) return true;
  CMediaItem item;
  item.SetPath(path);
  return content_.AddItem(item) || FailAs(content_);
}

void CQuillonMediaProcessor::ResetContent() {
  content_.RemoveAll();
  volumeName_ = kDefaultVolumeName;
}

void CQuillonMediaProcessor::ClearWhenAsked() {
  if (clearAfterWrite_) ResetContent();
}

bool CQuillonMediaProcessor::ChooseGeneration() {
  const ComLibrary
      com;  // on Linux a host has initialised COM in its own copy of it, not in this one
  return CTarnImapiVersion::Instance().Detect(generation_) || Fail(kMsgImapiVersionUnknown);
}

bool CQuillonMediaProcessor::WriteToMedia() {
  try {
    return WriteContent();
  } catch (...) {
    const bool failed = FailAsThrown(*this, kMsgWriteToMediaThrew);
    ResetContent();
    return failed;
  }
}

bool CQuillonMediaProcessor::WriteContent() {
  if (content_.GetCount() == 0) {
    ClearWhenAsked();
    return Fail(kMsgNoContentToRecord);
  }
  if (!ChooseGeneration()) {
    ClearWhenAsked();
    return false;
  }
  if (generation_ == DiscMasteringGeneration::Legacy) return WriteLegacy();
  const bool written = WriteCurrent();
  ClearWhenAsked();
  return written;
}

bool CQuillonMediaProcessor::WriteCurrent() {
  ComLibrary com;  // outlives the writer
  CTarnDiscWriter writer;
  if (!writer.SetVolumeName(volumeName_)) return Fail(kMsgCannotSetVolumeName);
  writer.SetEjectAfterWrite(ejectAfterWrite_);
  writer.SetPerformFullErase(performFullErase_);
  if (!StageContent(writer)) return false;
  if (!com.IsInitialized()) return Fail(kMsgCannotInitializeCom);
  return WriteToFirstDrive(writer);
}

bool CQuillonMediaProcessor::StageContent(CTarnDiscWriter& writer) {
  CFileUtil files;
  for (std::size_t i = 0; i < content_.GetCount(); ++i) {
    const Text& path = content_.At(i)->Path();
    if (!files.ValidatePath(path)) return FailAs(files);
    if (!writer.AddDirectory(path, /*includeBaseDirectory=*/false, /*excluded=*/false)) {
      return FailAs(writer);
    }
  }
  return true;
}

bool CQuillonMediaProcessor::WriteToFirstDrive(CTarnDiscWriter& writer) {
  CDiscUnitInfo drive;
  if (!GetFirstRecorder(writer, drive)) return FailAs(writer);
  Text uniqueId;
  if (!drive.GetUniqueId(uniqueId) || !writer.SetRecorderUniqueId(uniqueId)) {
    return Fail(kMsgCannotGetUniqueId, {drive.DisplayName()});
  }
  CCurrentDiscMedia medium;
  if (!drive.GetCurrentMedia(medium)) return FailAs(drive);
  if (!medium.IsSupported()) return FailMediumNotUsable(drive.DisplayName());
  return writer.Write() || FailAs(writer);
}

bool CQuillonMediaProcessor::FailMediumNotUsable(TextView deviceName) {
  if (LoadMessage(kMsgMediumNotUsable).empty()) return Fail(kMsgMediumNotWritable);
  return Fail(kMsgMediumNotUsable, {LoadMessage(kMsgCurrentMedia), deviceName});
}

bool CQuillonMediaProcessor::QueryCurrentMedium(CurrentMedium& answer) {
  CTarnDiscWriter writer;
  CDiscUnitInfo drive;
  if (!GetFirstRecorder(writer, drive)) return FailAs(writer);
  CCurrentDiscMedia medium;
  if (!drive.GetCurrentMedia(medium)) return FailAs(drive);
  answer.deviceName = drive.DisplayName();
  if (!medium.IsSupported()) {
    FailMediumNotUsable(answer.deviceName);
    return true;
  }
  answer.isRewritable = medium.IsRewritable();
  answer.isBlank = medium.IsBlank();
  return true;
}

bool CQuillonMediaProcessor::CDRWHasContent(bool& hasContent) {
  hasContent = false;
  if (!ChooseGeneration()) return false;
  if (generation_ == DiscMasteringGeneration::Legacy) {
    LegacyMedium medium;
    if (!QueryLegacyMedium(medium)) return false;
    hasContent = (medium.mediumFlags & (MEDIA_RW | MEDIA_BLANK)) == MEDIA_RW;
    return true;
  }
  CurrentMedium medium;
  if (!QueryCurrentMedium(medium)) return false;
  hasContent = medium.isRewritable && !medium.isBlank;
  return true;
}

bool CQuillonMediaProcessor::CDIsRecordable(bool& isRecordable) {
  isRecordable = false;
  if (!ChooseGeneration()) return false;
  if (generation_ == DiscMasteringGeneration::Legacy) {
    LegacyMedium medium;
    if (!QueryLegacyMedium(medium)) return false;
    const bool isDataDisc =
        medium.mediumType == MEDIA_CDDA_CDROM || medium.mediumType == MEDIA_CD_ROM_XA;
    isRecordable = !isDataDisc || (medium.mediumFlags & (MEDIA_RW | MEDIA_BLANK)) != 0;
    if (!isRecordable) Fail(kMsgMediumNotWritable);
    return true;
  }
  CurrentMedium medium;
  if (!QueryCurrentMedium(medium)) return false;
  isRecordable = medium.isRewritable || medium.isBlank;
  if (!isRecordable) FailMediumNotUsable(medium.deviceName);
  return true;
}

}  // namespace quillon
