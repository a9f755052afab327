// CQuillonMediaProcessor: writes directories to the disc in the first drive and answers two
// questions about that disc, through whichever generation of the disc-mastering service there is.
// One object serves one call. Every operation answers true on success and leaves one sentence on
// failure; all of them block for as long as the drive takes.
#pragma once

#include "disc/imapi_version.h"
#include "fileset/model/media_item_list.h"

namespace quillon {

inline constexpr std::size_t kMaxVolumeNameChars = 32;

class CDiscMaster;
class CDiscRecorder;
class CJolietDiscMaster;
class CTarnDiscWriter;

class CQuillonMediaProcessor : public CBaseItem {
 public:
  CQuillonMediaProcessor();

  // Whether a write leaves the processor without content and with the default volume name, as it
  // does unless told otherwise.
  void SetClearAfterWrite(bool clear) { clearAfterWrite_ = clear; }
  [[nodiscard]] bool ClearAfterWrite() const { return clearAfterWrite_; }
  void SetEjectAfterWrite(bool eject) { ejectAfterWrite_ = eject; }
  // Of a rewritable disc that holds data; quick otherwise.
  void SetPerformFullErase(bool fullErase) { performFullErase_ = fullErase; }
  // A test run without writing; only the legacy generation knows it.
  void SetSimulate(bool simulate) { simulate_ = simulate; }
  // At most kMaxVolumeNameChars; refused without a sentence otherwise.
  [[nodiscard]] bool SetVolumeName(TextView name);
  // A directory whose contents go to the root of the disc. One that is there already changes
  // nothing.
  [[nodiscard]] bool AddContent(TextView path);

  [[nodiscard]] bool WriteToMedia();

  // True with the answer, false when there is none. An answer of no may leave a sentence.
  [[nodiscard]] bool CDRWHasContent(bool& hasContent);
  [[nodiscard]] bool CDIsRecordable(bool& isRecordable);

 private:
  // What the legacy service says of the first recorder and the medium in it; 0 for what was not
  // read.
  struct LegacyMedium {
    LONG recorderType = 0;
    ULONG recorderState = 0;
    LONG mediumType = 0;
    LONG mediumFlags = 0;
  };
  // What the current service says of the medium in the first drive; nothing of one that cannot be
  // used, of which a sentence is left.
  struct CurrentMedium {
    Text deviceName;
    bool isRewritable = false;
    bool isBlank = false;
  };

  [[nodiscard]] bool ChooseGeneration();
  void ResetContent();
  void ClearWhenAsked();

  [[nodiscard]] bool WriteContent();
  [[nodiscard]] bool WriteCurrent();
  [[nodiscard]] bool StageContent(CTarnDiscWriter& writer);
  [[nodiscard]] bool WriteToFirstDrive(CTarnDiscWriter& writer);
  [[nodiscard]] bool QueryCurrentMedium(CurrentMedium& medium);
  bool FailMediumNotUsable(TextView deviceName);

  // The legacy generation; legacy_path.cpp.
  [[nodiscard]] bool WriteLegacy();
  [[nodiscard]] bool RecordLegacy(CDiscMaster& master);
  [[nodiscard]] bool TakeFirstRecorder(CDiscMaster& master, CDiscRecorder& recorder);
  // For writing, also erases a rewritable medium that holds data.
  [[nodiscard]] bool CheckLegacyRecorder(CDiscRecorder& recorder, LegacyMedium& medium,
                                         bool forWriting);
  [[nodiscard]] bool CheckLegacyMedium(CDiscRecorder& recorder, LegacyMedium& medium);
  [[nodiscard]] bool EraseLegacyMedium(CDiscRecorder& recorder, const LegacyMedium& medium);
  [[nodiscard]] bool SetLegacyProperties(CJolietDiscMaster& joliet);
  [[nodiscard]] bool AddLegacyContent(CJolietDiscMaster& joliet);
  [[nodiscard]] bool QueryLegacyMedium(LegacyMedium& medium);
  template <typename Scope>
  [[nodiscard]] bool EndWith(Scope& scope, bool succeeded);

  Text volumeName_;
  CMediaItemList content_;
  bool clearAfterWrite_ = true;
  bool ejectAfterWrite_ = true;
  bool performFullErase_ = false;
  bool simulate_ = false;
  DiscMasteringGeneration generation_ = DiscMasteringGeneration::None;
};

}  // namespace quillon
