// The media processor over the legacy disc-mastering service: the write, the check of the recorder
// before it, and the query behind the two questions.
#include "disc/media_burn_util.h"
#include "disc/media_processor.h"
#include "foundation/com_values.h"
#include "foundation/file_util.h"
#include "legacy_wrappers.h"

namespace quillon {
namespace {

// Closes what was opened, also when an exception passes.
template <typename Opened>
class ClosingScope {
 public:
  explicit ClosingScope(Opened& opened) : opened_(opened) {}
  ~ClosingScope() {
    if (isClosed_) return;
    try {
      static_cast<void>(opened_.Close());
    } catch (...) {  // what passes already tells why
    }
  }
  ClosingScope(const ClosingScope&) = delete;
  ClosingScope& operator=(const ClosingScope&) = delete;

  bool Close() {
    isClosed_ = true;
    return opened_.Close();
  }
  [[nodiscard]] const Opened& Object() const { return opened_; }

 private:
  Opened& opened_;
  bool isClosed_ = false;
};

struct TaskMemory {
  TaskMemory() = default;
  ~TaskMemory() { CoTaskMemFree(items); }
  TaskMemory(const TaskMemory&) = delete;
  TaskMemory& operator=(const TaskMemory&) = delete;

  LPITEMIDLIST items = nullptr;
};

}  // namespace

// The end of a sequence: closing is always tried, and its failure does not hide an earlier one.
template <typename Scope>
bool CQuillonMediaProcessor::EndWith(Scope& scope, bool succeeded) {
  if (scope.Close()) return succeeded;
  if (succeeded || ErrorMessage().empty()) FailAs(scope.Object());
  return false;
}

bool CQuillonMediaProcessor::WriteLegacy() {
  ComLibrary com;
  if (!com.IsInitialized()) {
    ClearWhenAsked();
    return Fail(kMsgCannotInitializeCom);
  }
  CDiscMaster master;
  if (!master.Open()) return FailAs(master);
  ClosingScope scope(master);
  const bool recorded = EndWith(scope, RecordLegacy(master));
  ClearWhenAsked();
  return recorded;
}

bool CQuillonMediaProcessor::TakeFirstRecorder(CDiscMaster& master, CDiscRecorder& recorder) {
  CDiscRecorderIterator recorders(master);
  return recorders.Next(recorder) || FailAs(recorders, kMsgNoRecordableDrive);
}

bool CQuillonMediaProcessor::RecordLegacy(CDiscMaster& master) {
  CDiscRecorder recorder;
  LegacyMedium medium;
  if (!TakeFirstRecorder(master, recorder) ||
      !CheckLegacyRecorder(recorder, medium, /*forWriting=*/true)) {
    return false;
  }
  CJolietDiscMaster joliet;
  if (!master.SetActiveDiscRecorder(recorder) ||
      !master.SetActiveDiscMasterFormat(IID_IJolietDiscMaster, joliet)) {
    return FailAs(master);
  }
  if (!SetLegacyProperties(joliet) || !AddLegacyContent(joliet)) return false;
  return master.RecordDisc(simulate_, ejectAfterWrite_) || FailAs(master);
}

bool CQuillonMediaProcessor::CheckLegacyRecorder(CDiscRecorder& recorder, LegacyMedium& medium,
                                                 bool forWriting) {
  if (!recorder.GetRecorderType(medium.recorderType)) return FailAs(recorder);
  if (medium.recorderType != RECORDER_CDR && medium.recorderType != RECORDER_CDRW) {
    return Fail(kMsgRecorderCannotRecord);
  }
  if (!recorder.GetRecorderState(medium.recorderState)) return FailAs(recorder);
  if (medium.recorderState != RECORDER_DOING_NOTHING && medium.recorderState != RECORDER_OPENED) {
    return Fail(kMsgRecorderBusy);
  }
  if (!recorder.OpenExclusive()) return FailAs(recorder);
  ClosingScope scope(recorder);
  return EndWith(scope, CheckLegacyMedium(recorder, medium) &&
                            (!forWriting || EraseLegacyMedium(recorder, medium)));
}

bool CQuillonMediaProcessor::CheckLegacyMedium(CDiscRecorder& recorder, LegacyMedium& medium) {
  if (!recorder.QueryMediaType(medium.mediumType, medium.mediumFlags)) return FailAs(recorder);
  if (medium.mediumType == 0 && medium.mediumFlags == 0) return Fail(kMsgNoMedium);
  return (medium.mediumFlags & MEDIA_WRITABLE) != 0 || Fail(kMsgMediumNotWritable);
}

bool CQuillonMediaProcessor::EraseLegacyMedium(CDiscRecorder& recorder,
                                               const LegacyMedium& medium) {
  const bool holdsData = (medium.mediumFlags & (MEDIA_RW | MEDIA_BLANK)) == MEDIA_RW;
  if (simulate_ || !holdsData) return true;
  return recorder.Erase(performFullErase_) || FailAs(recorder);
}

bool CQuillonMediaProcessor::SetLegacyProperties(CJolietDiscMaster& joliet) {
  try {
    const ScopedVariant name(volumeName_);
    return joliet.SetJolietProperty(OLESTR("VolumeName"), name.Get()) || FailAs(joliet);
  } catch (...) {
    return FailAsThrown(*this, kMsgSetPropertiesThrew);
  }
}

bool CQuillonMediaProcessor::AddLegacyContent(CJolietDiscMaster& joliet) {
  try {
    CShellFolder desktop;
    if (FAILED(SHGetDesktopFolder(desktop.Put())) || desktop.Get() == nullptr) {
      return Fail(kMsgCannotAccessShell);
    }
    CFileUtil files;
    for (std::size_t i = 0; i < content_.GetCount(); ++i) {
      const Text& path = content_.At(i)->Path();
      if (!files.ValidatePath(path)) return FailAs(files);
      TaskMemory parsed;
      CStorage storage;
      if (!desktop.ParseDisplayName(nullptr, nullptr, path.c_str(), nullptr, &parsed.items,
                                    nullptr) ||
          !desktop.BindToStorage(parsed.items, nullptr, storage)) {
        return FailAs(desktop);
      }
      if (!joliet.AddData(storage, /*overwrite=*/true)) return FailAs(joliet);
    }
    return true;
  } catch (...) {
    return FailAsThrown(*this, kMsgAddContentThrew);
  }
}

bool CQuillonMediaProcessor::QueryLegacyMedium(LegacyMedium& medium) {
  medium = {};
  ComLibrary com;
  if (!com.IsInitialized()) return Fail(kMsgCannotInitializeCom);
  CMediaBurnUtil burner;
  if (!burner.HasRecordableDrive()) return FailAs(burner, kMsgNoRecordableDrive);
  CDiscMaster master;
  if (!master.Open()) return FailAs(master);
  ClosingScope scope(master);
  CDiscRecorder recorder;
  return EndWith(scope, TakeFirstRecorder(master, recorder) &&
                            CheckLegacyRecorder(recorder, medium, /*forWriting=*/false));
}

}  // namespace quillon
