#include "foundation/http_util.h"

#include "foundation/com_base.h"
#include "foundation/com_values.h"
#include "platform/xml.h"

namespace quillon {

namespace {

constexpr int kMaxAttempts = 10;
constexpr DWORD kWaitMilliseconds = 3000;
constexpr LONG kStatusBusy = 409;
constexpr LONG kFirstSuccess = 200;
constexpr LONG kLastSuccess = 299;

// What the component throws is a failure like any other.
template <typename Call>
HRESULT ResultOf(const Call& call) {
  try {
    return call();
  } catch (const _com_error& error) {
    return FAILED(error.Error()) ? error.Error() : E_FAIL;
  }
}

VARIANT Omitted() {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_ERROR;
  value.scode = DISP_E_PARAMNOTFOUND;
  return value;
}

VARIANT Synchronous() {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BOOL;
  value.boolVal = VARIANT_FALSE;
  return value;
}

ComPtr<IXMLHTTPRequest> CreateRequest() {
  ComPtr<IXMLHTTPRequest> request;
  const HRESULT result = ResultOf([&request] {
    return CoCreateInstance(kClsidXmlHttp, nullptr, CLSCTX_SERVER, kIidXmlHttpRequest,
                            request.PutVoid());
  });
  return SUCCEEDED(result) ? request : nullptr;
}

}  // namespace

CHttpUtil::CHttpUtil() { SetClassName(OLESTR("CHttpUtil")); }

bool CHttpUtil::Fetch(TextView url, Text& out) {
  out.clear();
  if (url.empty()) return Fail(kMsgUrlInvalid);
  const CComBase apartment;
  const ComPtr<IXMLHTTPRequest> request = CreateRequest();
  if (!request) return Fail(kMsgNoHttpComponent);

  const ScopedBstr method(OLESTR("GET"));
  const ScopedBstr location(url);
  LONG status = kStatusBusy;
  for (int attempt = 0; attempt < kMaxAttempts && status == kStatusBusy; ++attempt) {
    if (FAILED(ResultOf([&] {
          return request->open(method.Get(), location.Get(), Synchronous(), Omitted(), Omitted());
        }))) {
      return Fail(kMsgCannotAccessUrl, {url});
    }
    if (ResultOf([&] { return request->send(Omitted()); }) != S_OK) {
      return Fail(kMsgCannotSendToUrl, {url});
    }
    if (FAILED(ResultOf([&] { return request->get_status(&status); }))) {
      return Fail(kMsgCannotGetFromUrl, {url});
    }
    if (status == kStatusBusy) Sleep(kWaitMilliseconds);
  }
  if (status == kStatusBusy) return Fail(kMsgHttpTimedOut, {url, NumberText(kMaxAttempts)});

  ScopedBstr body;
  if (status < kFirstSuccess || status > kLastSuccess ||
      FAILED(ResultOf([&] { return request->get_responseText(body.Put()); }))) {
    return Fail(kMsgCannotGetFromUrl, {url});
  }
  out = body.View();
  return true;
}

}  // namespace quillon
