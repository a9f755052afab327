// The operations that are more than one call; the line of a failing one shows in the message.
#include "disc/tarnimapiutil.h"

namespace quillon {

bool CDiscMaster2::GetDiscDevices(CDiscMaster2Iterator& drives) {
  if (!EnsureObject()) return false;
  if (!drives.IsEmpty()) return Fail(kMsgIteratorAlreadyValid);
  return Take(OLESTR("GetDiscDevices"), &Held::get__NewEnum, drives);
}

CDiscMaster2Iterator::CDiscMaster2Iterator(bool queryMedia, bool forceAccess)
    : CImapiWrapper(OLESTR("CDiscMaster2Iterator"),
                    {nullptr, nullptr, kMsgCannotCreateDriveIterator}),
      queryMedia_(queryMedia),
      forceAccess_(forceAccess) {}

bool CDiscMaster2Iterator::Reset() {
  currentId_.clear();
  return Call(OLESTR("Reset"), &Held::Reset);
}

bool CDiscMaster2Iterator::Next() {
  const OperationName name(OLESTR("Next"));
  ClearError();
  currentId_.clear();
  ULONG fetched = 0;
  ScopedVariant item;
  const bool hasItem = Call(name, &Held::Next, ULONG{1}, item.Put(), &fetched) &&
                       GetLastResult() == S_OK && fetched == 1;
  if (!hasItem || item.Type() != VT_BSTR ||
      AssignText(currentId_, ViewOf(V_BSTR(&item.Get())), 0)) {
    return hasItem;
  }
  // Without a failing result this would be the end, and the drive would not be there.
  lastResult_ = E_OUTOFMEMORY;
  return FailCall(name, lastResult_);
}

bool CDiscFormat2Data::GetSupportedWriteSpeeds(Numbers& speeds) {
  const OperationName name(OLESTR("GetSupportedWriteSpeeds"));
  bool isArray = false;
  const auto read = [&isArray](Held& format, SAFEARRAY** array) {
    const HRESULT hr = format.get_SupportedWriteSpeeds(array);
    isArray = *array != nullptr;
    return hr;
  };
  return Take(name, read, speeds) && (isArray || FailCall(name, DISP_E_TYPEMISMATCH));
}

bool CImapiImageStream::Stat(STATSTG* statistics, DWORD flags) {
  if (!EnsureObject()) return false;
  if (statistics == nullptr) return Fail(kMsgStreamStatisticsInvalid);
  return Call(OLESTR("Stat"), &Held::Stat, statistics, flags);
}

}  // namespace quillon
