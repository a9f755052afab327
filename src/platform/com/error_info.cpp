#include "platform/com/error_info.h"

#include <atomic>
#include <new>
#include <string>

#include "platform/com/com_ptr.h"

namespace {

using quillon::ComPtr;

// One object with two faces: its maker writes it through the one, readers see the other.
class ErrorInfo final : public ICreateErrorInfo, public IErrorInfo {
 public:
  ErrorInfo() = default;
  ErrorInfo(const ErrorInfo&) = delete;
  ErrorInfo& operator=(const ErrorInfo&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    if (object == nullptr) return E_POINTER;
    if (riid == IID_IErrorInfo || riid == IID_IUnknown) {
      *object = static_cast<IErrorInfo*>(this);
    } else if (riid == IID_ICreateErrorInfo) {
      *object = static_cast<ICreateErrorInfo*>(this);
    } else {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE SetGUID(REFGUID guid) override {
    guid_ = guid;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetSource(LPOLESTR source) override { return set(source_, source); }
  HRESULT STDMETHODCALLTYPE SetDescription(LPOLESTR description) override {
    return set(description_, description);
  }
  HRESULT STDMETHODCALLTYPE SetHelpFile(LPOLESTR helpFile) override {
    return set(helpFile_, helpFile);
  }
  HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD helpContext) override {
    helpContext_ = helpContext;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE GetGUID(GUID* guid) override {
    if (guid == nullptr) return E_POINTER;
    *guid = guid_;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetSource(BSTR* source) override { return get(source_, source); }
  HRESULT STDMETHODCALLTYPE GetDescription(BSTR* description) override {
    return get(description_, description);
  }
  HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* helpFile) override {
    return get(helpFile_, helpFile);
  }
  HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* helpContext) override {
    if (helpContext == nullptr) return E_POINTER;
    *helpContext = helpContext_;
    return S_OK;
  }

 private:
  ~ErrorInfo() = default;

  static HRESULT set(std::u16string& field, const OLECHAR* text) {
    field = text == nullptr ? u"" : text;
    return S_OK;
  }
  static HRESULT get(const std::u16string& field, BSTR* text) {
    if (text == nullptr) return E_POINTER;
    *text = field.empty() ? nullptr : SysAllocString(field.c_str());
    return !field.empty() && *text == nullptr ? E_OUTOFMEMORY : S_OK;
  }

  std::atomic<ULONG> references_{1};
  GUID guid_ = GUID_NULL;
  std::u16string source_;
  std::u16string description_;
  std::u16string helpFile_;
  DWORD helpContext_ = 0;
};

thread_local ComPtr<IErrorInfo> threadErrorInfo;

}  // namespace

HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* info) {
  if (reserved != 0) return E_INVALIDARG;
  threadErrorInfo = ComPtr<IErrorInfo>(info);
  return S_OK;
}

HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** info) {
  if (reserved != 0 || info == nullptr) return E_INVALIDARG;
  *info = threadErrorInfo.Detach();
  return *info == nullptr ? S_FALSE : S_OK;
}

HRESULT CreateErrorInfo(ICreateErrorInfo** info) {
  if (info == nullptr) return E_INVALIDARG;
  *info = new (std::nothrow) ErrorInfo;
  return *info == nullptr ? E_OUTOFMEMORY : S_OK;
}
