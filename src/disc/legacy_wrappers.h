// The objects of the legacy disc-mastering service, wrapped. A method has the name of the platform
// call that it makes, answers false with a sentence when that fails, and leaves outputs at 0 then.
#pragma once

#include "disc/legacy_item.h"
#include "foundation/storage_wrappers.h"
#include "platform/imapi.h"

namespace quillon {

// The service's own boolean.
constexpr BYTE ToByteBool(bool value) { return value ? 1 : 0; }

class CDiscRecorder : public CLegacyItem<IDiscRecorder> {
 public:
  CDiscRecorder() : CLegacyItem(OLESTR("CDiscRecorder")) {}

  [[nodiscard]] bool GetRecorderType(LONG& type) {
    type = 0;
    return Call(OLESTR("GetRecorderType"), &Held::GetRecorderType, &type);
  }
  [[nodiscard]] bool GetRecorderState(ULONG& state) {
    state = 0;
    return Call(OLESTR("GetRecorderState"), &Held::GetRecorderState, &state);
  }
  [[nodiscard]] bool OpenExclusive() { return Call(OLESTR("OpenExclusive"), &Held::OpenExclusive); }
  [[nodiscard]] bool QueryMediaType(LONG& type, LONG& flags) {
    type = 0;
    flags = 0;
    return Call(OLESTR("QueryMediaType"), &Held::QueryMediaType, &type, &flags);
  }
  [[nodiscard]] bool Erase(bool fullErase) {
    return Call(OLESTR("Erase"), &Held::Erase, ToByteBool(fullErase));
  }
  [[nodiscard]] bool Close() { return Call(OLESTR("Close"), &Held::Close); }
};

class CJolietDiscMaster : public CLegacyItem<IJolietDiscMaster> {
 public:
  CJolietDiscMaster() : CLegacyItem(OLESTR("CJolietDiscMaster")) {}

  [[nodiscard]] bool AddData(const CStorage& storage, bool overwrite) {
    return CallWith(OLESTR("AddData"), &Held::AddData, storage, LONG{ToByteBool(overwrite)});
  }
  [[nodiscard]] bool GetJolietProperties(CPropertyStorage& properties) {
    return Call(OLESTR("GetJolietProperties"), &Held::GetJolietProperties, properties.Put());
  }
  [[nodiscard]] bool SetJolietProperties(const CPropertyStorage& properties) {
    return CallWith(OLESTR("SetJolietProperties"), &Held::SetJolietProperties, properties);
  }
  // Reads the properties, changes the one of that name and hands them back.
  [[nodiscard]] bool SetJolietProperty(TextView name, const VARIANT& value);
};

class CDiscMaster : public CLegacyItem<IDiscMaster> {
 public:
  CDiscMaster() : CLegacyItem(OLESTR("CDiscMaster"), &CLSID_MSDiscMasterObj, &IID_IDiscMaster) {}

  [[nodiscard]] bool Open() { return Call(OLESTR("Open"), &Held::Open); }
  [[nodiscard]] bool SetActiveDiscRecorder(const CDiscRecorder& recorder) {
    return CallWith(OLESTR("SetActiveDiscRecorder"), &Held::SetActiveDiscRecorder, recorder);
  }
  [[nodiscard]] bool SetActiveDiscMasterFormat(REFIID format, CJolietDiscMaster& joliet) {
    return Call(OLESTR("SetActiveDiscMasterFormat"), &Held::SetActiveDiscMasterFormat, format,
                reinterpret_cast<void**>(joliet.Put()));
  }
  // Returns when the disc has been burnt.
  [[nodiscard]] bool RecordDisc(bool simulate, bool ejectAfterBurn) {
    return Call(OLESTR("RecordDisc"), &Held::RecordDisc, ToByteBool(simulate),
                ToByteBool(ejectAfterBurn));
  }
  [[nodiscard]] bool Close() { return Call(OLESTR("Close"), &Held::Close); }
};

class CDiscRecorderIterator : public CLegacyItem<IEnumDiscRecorders> {
 public:
  // Enumerates the recorders of an open disc master. When it cannot, the first Next fails.
  explicit CDiscRecorderIterator(CDiscMaster& master);

  // False without a sentence when there is none left.
  [[nodiscard]] bool Next(CDiscRecorder& recorder) {
    ULONG fetched = 0;
    return Call(OLESTR("Next"), &Held::Next, ULONG{1}, recorder.Put(), &fetched) && fetched == 1 &&
           recorder.Get() != nullptr;
  }
};

}  // namespace quillon
