#include "foundation/com_base.h"

namespace quillon {
namespace {

TextView ViewOf(const _bstr_t& text) {
  const OLECHAR* units = text;
  return units == nullptr ? TextView() : TextView(units, text.length());
}

// "<class>::<method> failed for this reason:  ", or what stands in for it.
Text ComposePrefix(const CBaseItem& item, UINT id, TextView className, TextView methodName,
                   DWORD lastError) {
  Text prefix;
  item.FormatClassMessage(prefix, id, className, methodName);
  if (CBaseItem::IsUninformativeText(prefix)) item.AppendSystemText(prefix, lastError, {});
  if (CBaseItem::IsUninformativeText(prefix)) prefix = item.LoadMessage(kMsgOperationFailed);
  return prefix;
}

Text JoinHresult(const CBaseItem& item, HRESULT hr, TextView prefix, DWORD lastError) {
  Text reason = ResultText(hr);
  if (CBaseItem::IsUninformativeText(reason)) {
    reason = lastError == ERROR_SUCCESS ? Text() : SystemText(lastError);
    if (reason.empty()) reason = item.LoadMessage(kMsgOperationFailed);
  }
  return Text(prefix) + reason;
}

Text ExceptionText(const _com_error& error, DWORD lastError) {
  Text reason = ResultText(error.Error());
  if (lastError == ERROR_SUCCESS || !CBaseItem::IsUninformativeText(reason)) return reason;
  return SystemText(lastError);
}

Text JoinException(const CBaseItem& item, const _com_error& error, TextView prefix,
                   DWORD lastError) {
  Text message = Text(prefix) + ExceptionText(error, lastError);
  return message.empty() ? item.LoadMessage(kMsgOperationFailed) : message;
}

}  // namespace

CComBase::CComBase() { lastResult_ = com_.Result(); }

bool CComBase::EnsureComInitialized() {
  if (com_.IsInitialized()) return true;
  com_.Retry();
  lastResult_ = com_.Result();
  return com_.IsInitialized();
}

bool CComBase::CheckResult(HRESULT hr, UINT id, TextView className, TextView methodName) {
  if (SUCCEEDED(hr)) return true;
  const DWORD lastError = GetLastError();
  Text message;
  FormatClassMessage(message, id, className, methodName);
  // The table is numbered with 16 bits; the legacy disc-mastering codes find their texts this way.
  Text reason = LoadMessage(static_cast<UINT>(hr) & 0xFFFF);
  if (IsUninformativeText(reason)) AppendSystemText(reason, lastError, {});
  if (IsUninformativeText(reason)) reason = LoadMessage(kMsgOperationFailed);
  message += reason;
  CBaseItem::SetErrorMessage(message);
  return false;
}

bool CComBase::ReportFailure(HRESULT hr, UINT id, TextView className, TextView methodName) {
  const DWORD lastError = GetLastError();
  const Text prefix = ComposePrefix(*this, id, className, methodName, lastError);
  CBaseItem::SetErrorMessage(JoinHresult(*this, hr, prefix, lastError));
  return false;
}

bool CComBase::SetErrorMessage(HRESULT hr, const _bstr_t& pMsg) {
  const DWORD lastError = GetLastError();
  return CBaseItem::SetErrorMessage(JoinHresult(*this, hr, ViewOf(pMsg), lastError));
}

bool CComBase::ProcessError(const _com_error& error, const _bstr_t& pMsg) {
  const DWORD lastError = GetLastError();
  CBaseItem::SetErrorMessage(JoinException(*this, error, ViewOf(pMsg), lastError));
  return false;
}

bool CComBase::ProcessError(const _com_error& error, UINT id, TextView className,
                            TextView methodName) {
  const DWORD lastError = GetLastError();
  const Text prefix = ComposePrefix(*this, id, className, methodName, lastError);
  CBaseItem::SetErrorMessage(JoinException(*this, error, prefix, lastError));
  return false;
}

bool FailAsThrown(CBaseItem& item, UINT fallbackId) {
  const DWORD lastError = GetLastError();
  Text reason;
  try {
    throw;
  } catch (const _com_error& error) {
    reason = ExceptionText(error, lastError);
  } catch (...) {  // has no text of the platform
  }
  if (CBaseItem::IsSuccessText(reason)) return item.Fail(fallbackId);
  item.SetErrorMessage(reason);
  return false;
}

}  // namespace quillon
