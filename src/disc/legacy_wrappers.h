// The objects of the legacy disc-mastering service, wrapped. A method has the name of the platform
// call that it makes, answers false with a sentence when that fails, and leaves outputs at 0 then.
#pragma once

#include "disc/legacy_item.h"
#include "foundation/storage_wrappers.h"
#include "platform/imapi.h"

namespace quillon {

class CDiscRecorder : public CLegacyItem<IDiscRecorder> {
 public:
  CDiscRecorder();

  [[nodiscard]] bool GetRecorderType(LONG& type);
  [[nodiscard]] bool GetRecorderState(ULONG& state);
  [[nodiscard]] bool OpenExclusive();
  [[nodiscard]] bool QueryMediaType(LONG& type, LONG& flags);
  [[nodiscard]] bool Erase(bool fullErase);
  [[nodiscard]] bool Close();
};

class CJolietDiscMaster : public CLegacyItem<IJolietDiscMaster> {
 public:
  CJolietDiscMaster();

  [[nodiscard]] bool AddData(CStorage& storage, bool overwrite);
  [[nodiscard]] bool GetJolietProperties(CPropertyStorage& properties);
  bool SetJolietProperties(CPropertyStorage& properties);
  // Reads the properties, changes the one of that name and hands them back.
  bool SetJolietProperty(TextView name, const VARIANT& value);
};

class CDiscMaster : public CLegacyItem<IDiscMaster> {
 public:
  CDiscMaster();

  [[nodiscard]] bool Open();
  bool SetActiveDiscRecorder(CDiscRecorder& recorder);
  bool SetActiveDiscMasterFormat(REFIID format, CJolietDiscMaster& joliet);
  // Returns when the disc has been burnt.
  [[nodiscard]] bool RecordDisc(bool simulate, bool ejectAfterBurn);
  [[nodiscard]] bool Close();

 private:
  template <typename Call>
  [[nodiscard]] bool CallMaster(TextView methodName, const Call& call);
};

class CDiscRecorderIterator : public CLegacyItem<IEnumDiscRecorders> {
 public:
  // Enumerates the recorders of an open disc master. When it cannot, the first Next fails.
  explicit CDiscRecorderIterator(CDiscMaster& master);

  // False without a sentence when there is none left.
  [[nodiscard]] bool Next(CDiscRecorder& recorder);
};

}  // namespace quillon
