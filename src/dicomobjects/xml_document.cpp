#include "dicomobjects/xml_document.h"

#include <algorithm>
#include <array>

#include "foundation/com_values.h"
#include "foundation/http_util.h"

namespace quillon {

namespace {

constexpr UINT kNoMessage = 0;
constexpr std::array<TextView, 4> kUrlPrefixes{OLESTR("http://"), OLESTR("HTTP://"),
                                               OLESTR("https://"), OLESTR("HTTPS://")};

bool IsUrl(TextView location) {
  return std::ranges::any_of(kUrlPrefixes,
                             [&](TextView prefix) { return location.starts_with(prefix); });
}

}  // namespace

// Runs the platform calls of one method. A COM exception is reported with threwId, any other with
// failedId alone, of which argument fills the place.
template <typename Call>
bool CXmlDocument::Guarded(UINT threwId, UINT failedId, TextView argument, TextView methodName,
                           const Call& call) {
  try {
    return call();
  } catch (const _com_error& error) {
    return ProcessError(error, threwId, ClassName(), methodName);
  } catch (...) {
    return Fail(failedId, {argument});
  }
}

CXmlDocument::CXmlDocument() {
  static_cast<void>(Create());  // without a component every operation says so
}

CXmlDocument::~CXmlDocument() = default;

bool CXmlDocument::Create() {
  if (created_) return true;
  asynchronous_ = false;
  SetClassName(OLESTR("CXmlDocument"));
  static_cast<void>(EnsureComInitialized());  // creating the document fails without it
  try {
    lastResult_ = CoCreateInstance(kClsidDomDocument, nullptr, CLSCTX_SERVER, IID_IXMLDOMDocument,
                                   document_.PutVoid());
  } catch (const _com_error& error) {
    lastResult_ = error.Error();
  }
  created_ = CheckResult(lastResult_, kNoMessage, ClassName(), OLESTR("Create"));
  return created_;
}

// A document that does not exist fails as a smart pointer would.
IXMLDOMDocument& CXmlDocument::Document() const {
  if (document_ == nullptr) throw _com_error(E_POINTER);
  return *document_;
}

void CXmlDocument::Require(HRESULT result) {
  lastResult_ = result;
  if (FAILED(result)) throw _com_error(result);
}

bool CXmlDocument::SetAsynchronous(bool flag) {
  if (flag == asynchronous_) return true;
  return Guarded(kMsgSetAsynchronousThrew, kMsgCannotSetAsynchronous, {}, OLESTR("SetAsynchronous"),
                 [&] {
                   lastResult_ = Document().put_async(ToVariantBool(flag));
                   if (FAILED(lastResult_)) return Fail(kMsgCannotSetAsynchronous);
                   asynchronous_ = flag;
                   isAsynchronousKnown_ = true;
                   return true;
                 });
}

ComPtr<IXMLDOMParseError> CXmlDocument::ParseError() {
  ComPtr<IXMLDOMParseError> error;
  Require(Document().get_parseError(error.Put()));
  if (error == nullptr) throw _com_error(E_POINTER);
  return error;
}

bool CXmlDocument::GetParseErrorCode(LONG& code) {
  code = -1;
  return Guarded(kMsgParseErrorCodeThrew, kMsgCannotGetParseErrorCode, {},
                 OLESTR("GetParseErrorCode"), [&] {
                   LONG read = -1;
                   Require(ParseError()->get_errorCode(&read));
                   code = read;
                   return true;
                 });
}

bool CXmlDocument::GetParseErrorText(Text& out) {
  out.clear();
  return Guarded(kMsgParseErrorTextThrew, kMsgCannotGetParseErrorText, {},
                 OLESTR("GetParseErrorText"), [&] {
                   ScopedBstr reason;
                   Require(ParseError()->get_reason(reason.Put()));
                   out = reason.View();
                   return true;
                 });
}

// Always false: with the parser's reason, else as if the call had thrown what it answered, else
// with failedId. A reason that cannot be read has left its own sentence.
bool CXmlDocument::FailWithReason(HRESULT result, UINT failedId, TextView argument) {
  ClearError();
  Text reason;
  if (GetParseErrorText(reason)) SetErrorMessage(reason);
  if (!ErrorMessage().empty()) return false;
  Require(result);
  return Fail(failedId, {argument});
}

bool CXmlDocument::FinishLoad(HRESULT result, VARIANT_BOOL isSuccessful, UINT failedId,
                              TextView argument) {
  lastResult_ = result;
  if (SUCCEEDED(result) && isSuccessful == VARIANT_TRUE) return true;
  return FailWithReason(result, failedId, argument);
}

bool CXmlDocument::SetCurrentXMLDocument(TextView xmlText, bool async) {
  if (xmlText.empty()) return Fail(kMsgXmlDocumentInvalid);
  if (!SetAsynchronous(async)) return false;
  return Guarded(kMsgSetXmlDocumentThrew, kMsgCannotSetXmlDocument, {},
                 OLESTR("SetCurrentXMLDocument"), [&] {
                   const ScopedBstr text(xmlText);
                   VARIANT_BOOL isSuccessful = VARIANT_FALSE;
                   const HRESULT result = Document().loadXML(text.Get(), &isSuccessful);
                   return FinishLoad(result, isSuccessful, kMsgCannotSetXmlDocument, {});
                 });
}

bool CXmlDocument::SetCurrentXMLDocumentFromLocation(TextView location, bool async) {
  if (location.empty()) return Fail(kMsgXmlLocationInvalid);
  if (IsUrl(location)) {
    return Guarded(kMsgLoadXmlDocumentThrew, kMsgCannotLoadXmlDocument, location,
                   OLESTR("SetCurrentXMLDocumentFromLocation"),
                   [&] { return SetCurrentXMLDocumentViaHTTP(location, /*async=*/false); });
  }
  if (!SetAsynchronous(async)) return false;
  return Guarded(kMsgLoadXmlDocumentThrew, kMsgCannotLoadXmlDocument, location,
                 OLESTR("SetCurrentXMLDocumentFromLocation"), [&] {
                   // A new document of some libraries loads files asynchronously until it is told.
                   if (!isAsynchronousKnown_) {
                     isAsynchronousKnown_ =
                         SUCCEEDED(Document().put_async(ToVariantBool(asynchronous_)));
                   }
                   const ScopedBstr text(location);
                   VARIANT source;
                   VariantInit(&source);
                   source.vt = VT_BSTR;
                   source.bstrVal = text.Get();
                   VARIANT_BOOL isSuccessful = VARIANT_FALSE;
                   const HRESULT result = Document().load(source, &isSuccessful);
                   return FinishLoad(result, isSuccessful, kMsgCannotLoadXmlDocument, location);
                 });
}

bool CXmlDocument::SetCurrentXMLDocumentViaHTTP(TextView url, bool async) {
  if (url.empty()) return Fail(kMsgXmlUrlInvalid);
  CHttpUtil http;
  Text text;
  if (!http.Fetch(url, text)) return FailAs(http);
  return SetCurrentXMLDocument(text, async);
}

bool CXmlDocument::TransformXMLDocument(const CXmlDocument& stylesheet, Text& out, bool async) {
  out.clear();
  if (!SetAsynchronous(async)) return false;
  return Guarded(kMsgTransformXmlDocumentThrew, kMsgCannotTransformXmlDocument, {},
                 OLESTR("TransformXMLDocument"), [&] {
                   ScopedBstr text;
                   const HRESULT result =
                       Document().transformNode(stylesheet.document_.Get(), text.Put());
                   LONG code = -1;
                   if (!GetParseErrorCode(code)) return false;
                   if (code != 0) {
                     return FailWithReason(result, kMsgCannotTransformXmlDocument, {});
                   }
                   // Not every failure of a transform is told as a parse error.
                   Require(result);
                   out = text.View();
                   return true;
                 });
}

}  // namespace quillon
