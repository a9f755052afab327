// Base of every class that wraps one platform COM interface: holds a COM library initialisation
// for its life and turns HRESULTs and caught COM exceptions into sentences.
#pragma once

#include "foundation/base_item.h"
#include "platform/com.h"

namespace quillon {

class CComBase : public CBaseItem {
 public:
  CComBase();
  ~CComBase() override;
  CComBase(const CComBase&) = delete;
  CComBase& operator=(const CComBase&) = delete;

  bool EnsureComInitialized();
  // True for a success code; else composes "<class>::<method> failed ..." and the reason.
  bool CheckResult(HRESULT hr, UINT id, TextView className, TextView methodName);
  // Always false.
  bool ReportFailure(HRESULT hr, UINT id, TextView className, TextView methodName);
  using CBaseItem::SetErrorMessage;
  bool SetErrorMessage(HRESULT hr, const _bstr_t& pMsg);
  bool ProcessError(const _com_error& error, const _bstr_t& pMsg);
  bool ProcessError(const _com_error& error, UINT id, TextView className, TextView methodName);
  [[nodiscard]] HRESULT GetLastResult() const { return lastResult_; }

 protected:
  // Makes one call of the wrapped interface: its HRESULT becomes the last result and is checked
  // with failedId; a COM exception that the call throws is reported with threwId. Methods check
  // their own arguments first.
  template <typename Call>
  bool CallPlatform(UINT failedId, UINT threwId, TextView methodName, const Call& call) {
    try {
      lastResult_ = call();
      return CheckResult(lastResult_, failedId, ClassName(), methodName);
    } catch (const _com_error& error) {
      return ProcessError(error, threwId, ClassName(), methodName);
    }
  }

  HRESULT lastResult_ = S_OK;
  bool comInitialized_ = false;
  bool createdHere_ = false;
};

// For the handler that ends an operation, within its catch block: leaves the text of a thrown COM
// exception in item, or the message when what was thrown has no text or only that of a success.
// Always false.
bool FailAsThrown(CBaseItem& item, UINT fallbackId);

}  // namespace quillon
