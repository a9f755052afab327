#include "legacy_wrappers.h"

#include "disc/media_burn_util.h"

namespace quillon {
namespace {

constexpr DWORD kContexts = CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER;
// The numbers below belong to the property sets themselves.
constexpr PROPID kFirstNamedId = 2;

BYTE Flag(bool value) { return value ? 1 : 0; }

}  // namespace

CMediaBurnUtil::CMediaBurnUtil() : CLegacyItem(OLESTR("CMediaBurnUtil")) {}

bool CMediaBurnUtil::HasRecordableDrive() {
  BOOL has = FALSE;
  const auto create = [](void** object) {
    return CoCreateInstance(CLSID_CDBurn, nullptr, kContexts, IID_ICDBurn, object);
  };
  return CallCreated(OLESTR("HasRecordableDrive"), create,
                     [&](ICDBurn& burner) { return burner.HasRecordableDrive(&has); }) &&
         has != FALSE;
}

CDiscRecorder::CDiscRecorder() : CLegacyItem(OLESTR("CDiscRecorder")) {}

bool CDiscRecorder::GetRecorderType(LONG& type) {
  type = 0;
  return CallHeld(OLESTR("GetRecorderType"),
                  [&](IDiscRecorder& recorder) { return recorder.GetRecorderType(&type); });
}

bool CDiscRecorder::GetRecorderState(ULONG& state) {
  state = 0;
  return CallHeld(OLESTR("GetRecorderState"),
                  [&](IDiscRecorder& recorder) { return recorder.GetRecorderState(&state); });
}

bool CDiscRecorder::OpenExclusive() {
  return CallHeld(OLESTR("OpenExclusive"),
                  [](IDiscRecorder& recorder) { return recorder.OpenExclusive(); });
}

bool CDiscRecorder::QueryMediaType(LONG& type, LONG& flags) {
  type = 0;
  flags = 0;
  return CallHeld(OLESTR("QueryMediaType"),
                  [&](IDiscRecorder& recorder) { return recorder.QueryMediaType(&type, &flags); });
}

bool CDiscRecorder::Erase(bool fullErase) {
  return CallHeld(OLESTR("Erase"),
                  [&](IDiscRecorder& recorder) { return recorder.Erase(Flag(fullErase)); });
}

bool CDiscRecorder::Close() {
  return CallHeld(OLESTR("Close"), [](IDiscRecorder& recorder) { return recorder.Close(); });
}

CJolietDiscMaster::CJolietDiscMaster() : CLegacyItem(OLESTR("CJolietDiscMaster")) {}

bool CJolietDiscMaster::AddData(CStorage& storage, bool overwrite) {
  constexpr TextView kMethod = OLESTR("AddData");
  if (storage.Get() == nullptr) {
    return ReportFailure(E_INVALIDARG, kMsgLegacyMethodFailed, ClassName(), kMethod);
  }
  return CallHeld(kMethod, [&](IJolietDiscMaster& joliet) {
    return joliet.AddData(storage.Get(), overwrite ? 1 : 0);
  });
}

bool CJolietDiscMaster::GetJolietProperties(CPropertyStorage& properties) {
  return CallHeld(OLESTR("GetJolietProperties"), [&](IJolietDiscMaster& joliet) {
    return joliet.GetJolietProperties(properties.Put());
  });
}

bool CJolietDiscMaster::SetJolietProperties(CPropertyStorage& properties) {
  constexpr TextView kMethod = OLESTR("SetJolietProperties");
  if (properties.Get() == nullptr) {
    return ReportFailure(E_INVALIDARG, kMsgLegacyMethodFailed, ClassName(), kMethod);
  }
  return CallHeld(kMethod, [&](IJolietDiscMaster& joliet) {
    return joliet.SetJolietProperties(properties.Get());
  });
}

namespace {

// Freed also when memory runs out before it is handed over.
struct OwnedProperty {
  OwnedProperty() { PropVariantInit(&value); }
  ~OwnedProperty() { PropVariantClear(&value); }
  OwnedProperty(const OwnedProperty&) = delete;
  OwnedProperty& operator=(const OwnedProperty&) = delete;

  PROPVARIANT value;
};

}  // namespace

bool CJolietDiscMaster::SetJolietProperty(TextView name, const VARIANT& value) {
  CPropertyStorage properties;
  if (!GetJolietProperties(properties)) return false;
  Text writableName(name);  // the platform's field is not const
  PROPSPEC specification{};
  specification.ulKind = PRSPEC_LPWSTR;
  specification.lpwstr = writableName.data();
  OwnedProperty copy;
  const bool written = properties.CopyValue(copy.value, value) &&
                       properties.WriteMultiple(1, &specification, &copy.value, kFirstNamedId) &&
                       properties.Commit(STGC_DEFAULT);
  return written ? SetJolietProperties(properties) : FailAs(properties);
}

CDiscMaster::CDiscMaster() : CLegacyItem(OLESTR("CDiscMaster")) {}

template <typename Call>
bool CDiscMaster::CallMaster(TextView methodName, const Call& call) {
  const auto create = [](void** object) {
    return CoCreateInstance(CLSID_MSDiscMasterObj, nullptr, kContexts, IID_IDiscMaster, object);
  };
  return CallCreated(methodName, create, call);
}

bool CDiscMaster::Open() {
  return CallMaster(OLESTR("Open"), [](IDiscMaster& master) { return master.Open(); });
}

bool CDiscMaster::SetActiveDiscRecorder(CDiscRecorder& recorder) {
  constexpr TextView kMethod = OLESTR("SetActiveDiscRecorder");
  if (recorder.Get() == nullptr) {
    return ReportFailure(E_INVALIDARG, kMsgLegacyMethodFailed, ClassName(), kMethod);
  }
  return CallMaster(
      kMethod, [&](IDiscMaster& master) { return master.SetActiveDiscRecorder(recorder.Get()); });
}

bool CDiscMaster::SetActiveDiscMasterFormat(REFIID format, CJolietDiscMaster& joliet) {
  return CallMaster(OLESTR("SetActiveDiscMasterFormat"), [&](IDiscMaster& master) {
    return master.SetActiveDiscMasterFormat(format, reinterpret_cast<void**>(joliet.Put()));
  });
}

bool CDiscMaster::RecordDisc(bool simulate, bool ejectAfterBurn) {
  return CallMaster(OLESTR("RecordDisc"), [&](IDiscMaster& master) {
    return master.RecordDisc(Flag(simulate), Flag(ejectAfterBurn));
  });
}

bool CDiscMaster::Close() {
  return CallMaster(OLESTR("Close"), [](IDiscMaster& master) { return master.Close(); });
}

CDiscRecorderIterator::CDiscRecorderIterator(CDiscMaster& master)
    : CLegacyItem(OLESTR("CDiscRecorderIterator")) {
  if (master.Get() == nullptr) return;
  try {
    lastResult_ = master.Get()->EnumDiscRecorders(Put());
  } catch (const _com_error& error) {
    lastResult_ = error.Error();
  }
}

bool CDiscRecorderIterator::Next(CDiscRecorder& recorder) {
  ULONG fetched = 0;
  return CallHeld(OLESTR("Next"),
                  [&](IEnumDiscRecorders& recorders) {
                    return recorders.Next(1, recorder.Put(), &fetched);
                  }) &&
         fetched == 1 && recorder.Get() != nullptr;
}

}  // namespace quillon
