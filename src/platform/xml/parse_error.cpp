#include "parse_error.h"

#include <utility>

#include "com/method_results.h"
#include "platform/com/com_object.h"

namespace quillon::platform {
namespace {

class ParseError final : public DispatchObject<IXMLDOMParseError, IID_IXMLDOMParseError> {
 public:
  explicit ParseError(XmlFailure failure) : failure_(std::move(failure)) {}

  HRESULT STDMETHODCALLTYPE get_errorCode(LONG* code) override {
    return answerValue(failure_.code, code);
  }
  HRESULT STDMETHODCALLTYPE get_url(BSTR* url) override { return answerText(failure_.url, url); }
  HRESULT STDMETHODCALLTYPE get_reason(BSTR* reason) override {
    return answerText(failure_.reason, reason);
  }
  HRESULT STDMETHODCALLTYPE get_srcText(BSTR* text) override {
    return answerText(failure_.sourceLine, text);
  }
  HRESULT STDMETHODCALLTYPE get_line(LONG* line) override {
    return answerValue(failure_.line, line);
  }
  HRESULT STDMETHODCALLTYPE get_linepos(LONG* column) override {
    return answerValue(failure_.column, column);
  }
  HRESULT STDMETHODCALLTYPE get_filepos(LONG* offset) override {
    return answerValue(failure_.offset, offset);
  }

 private:
  XmlFailure failure_;
};

}  // namespace

HRESULT makeParseError(const XmlFailure& failure, IXMLDOMParseError** error) {
  if (error == nullptr) return E_POINTER;
  *error = new ParseError(failure);
  return S_OK;
}

}  // namespace quillon::platform
