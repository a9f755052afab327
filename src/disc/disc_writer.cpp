#include "disc/disc_writer.h"

#include <array>

namespace quillon {
namespace {

// ISO 9660, Joliet and UDF.
constexpr std::int32_t kAllFileSystems =
    FsiFileSystemISO9660 | FsiFileSystemJoliet | FsiFileSystemUDF;

// What messages call each RecorderIdType.
constexpr std::array<UINT, 5> kIdTypeLabels = {kMsgIdTypeLegacyDeviceNumber, kMsgIdTypeManufacturer,
                                               kMsgIdTypeUniqueId, kMsgIdTypeVolumePath,
                                               kMsgIdTypeVolumeName};

}  // namespace

CTarnDiscWriter::CTarnDiscWriter()
    : fileSystemsToCreate_(kAllFileSystems),
      clientName_(kClientName),
      volumeName_(OLESTR("Quillon")),
      staged_(/*allowDuplicates=*/false) {
  SetClassName(OLESTR("CTarnDiscWriter"));
}

CTarnDiscWriter::~CTarnDiscWriter() { ReleaseObjects(); }

bool CTarnDiscWriter::SetVolumeName(TextView name) { return AssignText(volumeName_, name, 0); }

void CTarnDiscWriter::SetStageFiles(bool stage, TextView workingDirectory) {
  stageFiles_ = stage;
  workingDirectory_.assign(workingDirectory);
}

bool CTarnDiscWriter::SetRecorderUniqueId(TextView uniqueId) {
  if (uniqueId.empty()) return Fail(kMsgGivenUniqueIdInvalid);
  SetRecorderIdentifier(uniqueId, static_cast<std::int32_t>(RecorderIdType::UniqueId));
  return true;
}

void CTarnDiscWriter::SetRecorderIdentifier(TextView identifier, std::int32_t type) {
  recorderIdentifier_.assign(identifier);
  recorderIdentifierType_ = type;
}

bool CTarnDiscWriter::AddDirectory(TextView path, bool includeBaseDirectory, bool excluded) {
  CImapi2DirItem item(includeBaseDirectory, excluded);
  if (!item.SetPath(path)) return FailAs(item);
  return staged_.Stage(item) || FailAs(staged_);
}

bool CTarnDiscWriter::GetRecorder(CDiscUnitInfo& recorder, std::int32_t index, bool recordersOnly,
                                  bool queryMedia, bool forceAccess) {
  ClearError();
  ReleaseObjects();
  chosenRecorder_.Reset();
  recorder.Reset();
  if (index < 0) return Fail(kMsgRecorderIndexInvalid);
  CDiscUnitInfoList drives;
  if (!drives.QueryAll(recordersOnly, queryMedia, forceAccess)) {
    return FailAs(drives, kMsgCannotQueryRecorders);
  }
  if (drives.GetCount() == 0) return Fail(kMsgNoRecordableDrive);
  const CDiscUnitInfo* const drive = drives.At(static_cast<std::size_t>(index));
  if (drive == nullptr) return Fail(kMsgRecorderIndexTooLarge);
  recorder = *drive;
  return true;
}

bool CTarnDiscWriter::Write() {
  CImapiImageStream image;
  return PrepareRecorder(/*queryMedia=*/true) && EraseIfNeeded() && SetupDataFormat() &&
         BuildImage(image) && WriteImageStream(image, forceExclusiveAccess_);
}

bool CTarnDiscWriter::PrepareRecorder(bool queryMedia) {
  ClearError();
  chosenRecorder_.Reset();
  if (recorderIdentifierType_ < 0 ||
      static_cast<std::size_t>(recorderIdentifierType_) >= kIdTypeLabels.size()) {
    return Fail(kMsgRecorderIdTypeInvalid);
  }
  Text identifier;
  if (!CopyText(identifier, recorderIdentifier_, kMsgCannotGetRecorderId)) return false;
  if (identifier.empty()) return Fail(kMsgRecorderIdInvalid);
  return RunStep(kMsgCannotPrepareRecorder,
                 [&] { return FindRecorder(queryMedia, identifier) && InitializeRecorder(); });
}

bool CTarnDiscWriter::FindRecorder(bool queryMedia, const Text& identifier) {
  CDiscMaster2Iterator drives(queryMedia, /*forceAccess=*/true);
  if (!discMaster_.GetDiscDevices(drives)) return FailAs(discMaster_);
  if (!chosenRecorder_.Find(drives, static_cast<RecorderIdType>(recorderIdentifierType_),
                            identifier)) {
    if (!chosenRecorder_.ErrorMessage().empty()) return FailAs(chosenRecorder_);
    const UINT label = kIdTypeLabels[static_cast<std::size_t>(recorderIdentifierType_)];
    return Fail(kMsgCannotFindRecorder, {LoadMessage(label), identifier});
  }
  return chosenRecorder_.IsDataFormatSupported() || FailForDevice(kMsgNotADiscRecorder);
}

bool CTarnDiscWriter::InitializeRecorder() {
  Text uniqueId;
  if (!chosenRecorder_.GetUniqueId(uniqueId)) return FailForDevice(kMsgCannotGetUniqueId);
  if (uniqueId.empty()) return FailForDevice(kMsgRecorderUniqueIdInvalid);
  const auto initialize = [&] { return recorder_.InitializeDiscRecorder(uniqueId); };
  return CallUntilReady(recorder_, initialize) || FailAs(recorder_);
}

bool CTarnDiscWriter::CopyText(Text& out, const Text& text, UINT failure) {
  return AssignText(out, text, 0) || Fail(failure);
}

bool CTarnDiscWriter::FailForDevice(UINT id) { return Fail(id, {chosenRecorder_.DisplayName()}); }

void CTarnDiscWriter::ReleaseObjects() {
  resultImage_.Release();
  image_.Release();
  dataFormat_.Release();
  eraseFormat_.Release();
  recorder_.Release();
  discMaster_.Release();
}

void CTarnDiscWriter::ReleaseAll() {
  ReleaseObjects();
  staged_.RemoveAll();
  chosenRecorder_.Reset();
}

}  // namespace quillon
