// Base of every class that wraps one platform COM interface: holds a COM library initialisation
// for its life and turns HRESULTs and caught COM exceptions into sentences.
#pragma once

#include "foundation/base_item.h"
#include "foundation/com_values.h"

namespace quillon {

class CComBase : public CBaseItem {
 public:
  CComBase();
  CComBase(const CComBase&) = delete;
  CComBase& operator=(const CComBase&) = delete;

  // Tries the initialisation again when that of the constructor failed. Whether there is one now.
  [[nodiscard]] bool EnsureComInitialized();
  // True, and no sentence, for a success code. Else the sentence is the message of that id (with
  // the two names) followed by the reason: the table's text for the low 16 bits of hr, else the
  // platform's text for the thread's last error, else "The operation failed.".
  [[nodiscard]] bool CheckResult(HRESULT hr, UINT id, TextView className, TextView methodName);
  // For an argument refused before any call: the same message followed by the platform's text of hr
  // itself (or, when that says nothing, of the last error). Always false.
  bool ReportFailure(HRESULT hr, UINT id, TextView className, TextView methodName);
  using CBaseItem::SetErrorMessage;
  // pMsg followed by the platform's text of hr, as in ReportFailure. Always true.
  bool SetErrorMessage(HRESULT hr, const _bstr_t& pMsg);
  // For a caught exception: the given text, or the message of that id, followed by the platform's
  // text of the exception's code, else of the last error. Always false.
  bool ProcessError(const _com_error& error, const _bstr_t& pMsg);
  bool ProcessError(const _com_error& error, UINT id, TextView className, TextView methodName);
  // Of the last platform call made through this object; the initialisation counts as the first.
  [[nodiscard]] HRESULT GetLastResult() const { return lastResult_; }

 protected:
  // Makes one call of the wrapped interface: its HRESULT becomes the last result and is checked
  // with failedId; a COM exception that the call throws is reported with threwId. Methods check
  // their own arguments first.
  template <typename Call>
  [[nodiscard]] bool CallPlatform(UINT failedId, UINT threwId, TextView methodName,
                                  const Call& call) {
    try {
      lastResult_ = call();
      return CheckResult(lastResult_, failedId, ClassName(), methodName);
    } catch (const _com_error& error) {
      return ProcessError(error, threwId, ClassName(), methodName);
    }
  }

  HRESULT lastResult_ = S_OK;
  bool createdHere_ = false;
  ComLibrary com_;
};

// For the handler that ends an operation, within its catch block: leaves the text of a thrown COM
// exception in item, or the message when what was thrown has no text or only that of a success.
// Always false.
bool FailAsThrown(CBaseItem& item, UINT fallbackId);

}  // namespace quillon
