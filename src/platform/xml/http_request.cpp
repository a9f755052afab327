#include "classes.h"

#include <string>
#include <utility>

#include "charset.h"
#include "com/create_object.h"
#include "com/method_results.h"
#include "http_transfer.h"
#include "platform/com/com_object.h"
#include "platform/xml.h"
#include "win32/utf8.h"
#include "xml_limits.h"

namespace quillon::platform {
namespace {

std::string bytesOf(const VARIANT& argument) {
  return argument.vt == VT_BSTR ? nativeFromWide(unitsOf(argument.bstrVal)) : std::string();
}

// Asynchronous is what one says nothing about. Nothing runs beside the caller here, and an answer
// that were there when send returns would hide from him that elsewhere he has to wait for it.
bool isSynchronous(const VARIANT& async) {
  return async.vt == VT_BOOL && async.boolVal == VARIANT_FALSE;
}

class HttpComponent final : public DispatchObject<IXMLHTTPRequest, kIidXmlHttpRequest> {
 public:
  HRESULT STDMETHODCALLTYPE open(BSTR method, BSTR url, VARIANT async, VARIANT user,
                                 VARIANT password) override {
    return withoutExceptions([&] {
      state_ = kUninitialized;
      if (!isSynchronous(async)) return fail({E_NOTIMPL, "Only synchronous requests are known."});
      if (unitsOf(method) != u"GET") return fail({E_INVALIDARG, "Only the method GET is known."});
      HttpRequest request{nativeFromWide(unitsOf(url)), bytesOf(user), bytesOf(password)};
      const HttpFailure failure = checkUrl(request.url);
      if (FAILED(failure.result)) return fail(failure);
      request_ = std::move(request);
      state_ = kOpen;
      return S_OK;
    });
  }

  HRESULT STDMETHODCALLTYPE send(VARIANT) override {
    return withoutExceptions([&] {
      if (state_ != kOpen) return fail({E_UNEXPECTED, "No request is open."});
      response_ = {};
      const HttpFailure failure = fetch(request_, httpLimits(), response_);
      state_ = FAILED(failure.result) ? kUninitialized : kComplete;
      return FAILED(failure.result) ? fail(failure) : S_OK;
    });
  }

  HRESULT STDMETHODCALLTYPE abort() override {
    state_ = kUninitialized;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE get_status(LONG* status) override {
    return state_ == kComplete ? answerValue(response_.status, status) : E_PENDING;
  }
  HRESULT STDMETHODCALLTYPE get_statusText(BSTR* text) override {
    return withoutExceptions([&] {
      return state_ == kComplete ? answerText(decodeBody(response_.statusText, {}), text)
                                 : E_PENDING;
    });
  }
  HRESULT STDMETHODCALLTYPE get_responseText(BSTR* text) override {
    return withoutExceptions([&] {
      return state_ == kComplete
                 ? answerText(decodeBody(response_.body, response_.contentType), text)
                 : E_PENDING;
    });
  }
  HRESULT STDMETHODCALLTYPE get_readyState(LONG* state) override {
    return answerValue(static_cast<LONG>(state_), state);
  }

  // Not called by the product.
  HRESULT STDMETHODCALLTYPE setRequestHeader(BSTR, BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE getResponseHeader(BSTR, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE getAllResponseHeaders(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_responseXML(IDispatch**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_responseBody(VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_responseStream(VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_onreadystatechange(IDispatch*) override { return E_NOTIMPL; }

 private:
  enum State { kUninitialized = 0, kOpen = 1, kComplete = 4 };

  static HRESULT fail(const HttpFailure& failure) {
    return failWithReason(failure.result, u"XMLHTTP", wideFromNative(failure.reason));
  }

  State state_ = kUninitialized;
  HttpRequest request_;
  HttpResponse response_;
};

}  // namespace

HRESULT createHttpRequest(REFIID riid, void** object) {
  return createObject<HttpComponent>(riid, object);
}

}  // namespace quillon::platform
