#include "legacy_wrappers.h"

#include "disc/media_burn_util.h"

namespace quillon {
namespace {

// The numbers below belong to the property sets themselves.
constexpr PROPID kFirstNamedId = 2;

// Freed also when memory runs out before it is handed over.
struct ScopedProperty {
  ScopedProperty() { PropVariantInit(&value); }
  ~ScopedProperty() { PropVariantClear(&value); }
  ScopedProperty(const ScopedProperty&) = delete;
  ScopedProperty& operator=(const ScopedProperty&) = delete;

  PROPVARIANT value;
};

}  // namespace

CMediaBurnUtil::CMediaBurnUtil()
    : CLegacyItem(OLESTR("CMediaBurnUtil"), &CLSID_CDBurn, &IID_ICDBurn) {}

bool CMediaBurnUtil::HasRecordableDrive() {
  BOOL has = FALSE;
  return Call(OLESTR("HasRecordableDrive"), &Held::HasRecordableDrive, &has) && has != FALSE;
}

bool CJolietDiscMaster::SetJolietProperty(TextView name, const VARIANT& value) {
  CPropertyStorage properties;
  if (!GetJolietProperties(properties)) return false;
  Text writableName(name);  // the platform's field is not const
  PROPSPEC specification{};
  specification.ulKind = PRSPEC_LPWSTR;
  specification.lpwstr = writableName.data();
  ScopedProperty copy;
  const bool written = properties.CopyValue(copy.value, value) &&
                       properties.WriteMultiple(1, &specification, &copy.value, kFirstNamedId) &&
                       properties.Commit(STGC_DEFAULT);
  return written ? SetJolietProperties(properties) : FailAs(properties);
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

}  // namespace quillon
