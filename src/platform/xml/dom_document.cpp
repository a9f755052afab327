#include "classes.h"

#include <optional>
#include <string>
#include <utility>

#include "com/create_object.h"
#include "com/method_results.h"
#include "document_parser.h"
#include "parse_error.h"
#include "transform.h"
#include "win32/utf8.h"
#include "xml/document_base.h"
#include "xml_limits.h"

namespace quillon::platform {
namespace {

constexpr std::u16string_view kSource = u"DOMDocument";

class DomDocument final : public DocumentBase {
 public:
  HRESULT STDMETHODCALLTYPE get_nodeName(BSTR* name) override {
    return answerText(u"#document", name);
  }
  HRESULT STDMETHODCALLTYPE get_nodeType(DOMNodeType* type) override {
    return answerValue(NODE_DOCUMENT, type);
  }
  HRESULT STDMETHODCALLTYPE get_nodeTypeString(BSTR* type) override {
    return answerText(u"document", type);
  }
  HRESULT STDMETHODCALLTYPE hasChildNodes(VARIANT_BOOL* has) override {
    return answerValue(document_ == nullptr ? VARIANT_FALSE : VARIANT_TRUE, has);
  }

  HRESULT STDMETHODCALLTYPE get_async(VARIANT_BOOL* isAsync) override {
    return answerValue(async_, isAsync);
  }
  HRESULT STDMETHODCALLTYPE put_async(VARIANT_BOOL isAsync) override {
    async_ = isAsync == VARIANT_FALSE ? VARIANT_FALSE : VARIANT_TRUE;
    return S_OK;
  }
  // Nothing runs beside the caller here: an asynchronous load goes on when its state is asked for,
  // as elsewhere while its caller waits for messages.
  HRESULT STDMETHODCALLTYPE get_readyState(LONG* state) override {
    return withoutExceptions([&] {
      constexpr LONG kLoading = 1;
      constexpr LONG kComplete = 4;
      if (!pendingLocation_) return answerValue(kComplete, state);
      const std::u16string location = *pendingLocation_;
      pendingLocation_.reset();
      read(location, nullptr);
      return answerValue(kLoading, state);
    });
  }
  HRESULT STDMETHODCALLTYPE abort() override {
    pendingLocation_.reset();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_url(BSTR* url) override { return answerText(url_, url); }

  HRESULT STDMETHODCALLTYPE loadXML(BSTR xml, VARIANT_BOOL* isSuccessful) override {
    return withoutExceptions([&] {
      XmlFailure failure;
      XmlDocument document = parseText(unitsOf(xml), failure);
      return take(std::move(document), failure, {}, isSuccessful);
    });
  }

  // An asynchronous load, which is what a new document does, only begins here.
  HRESULT STDMETHODCALLTYPE load(VARIANT source, VARIANT_BOOL* isSuccessful) override {
    return withoutExceptions([&] {
      if (isSuccessful != nullptr) *isSuccessful = VARIANT_FALSE;
      const bool isReference = source.vt == (VT_BSTR | VT_BYREF);
      if (source.vt != VT_BSTR && !(isReference && source.pbstrVal != nullptr)) return E_INVALIDARG;
      const std::u16string location(unitsOf(isReference ? *source.pbstrVal : source.bstrVal));
      if (async_ == VARIANT_FALSE) return read(location, isSuccessful);
      take(nullptr, {}, {}, nullptr);
      pendingLocation_ = location;
      return isSuccessful == nullptr ? S_OK : answerValue(VARIANT_TRUE, isSuccessful);
    });
  }

  // A failed transform is told here too until the next load or transform: callers look here.
  HRESULT STDMETHODCALLTYPE get_parseError(IXMLDOMParseError** error) override {
    return withoutExceptions([&] {
      return makeParseError(transformFailure_.code != 0 ? transformFailure_ : loadFailure_, error);
    });
  }

  HRESULT STDMETHODCALLTYPE get_xml(BSTR* xml) override {
    return withoutExceptions([&] {
      if (pendingLocation_) return E_PENDING;
      if (document_ == nullptr) return answerText({}, xml);
      XmlCall call;
      xmlChar* bytes = nullptr;
      int length = 0;
      xmlDocDumpMemoryEnc(document_.get(), &bytes, &length, "UTF-8");
      if (bytes == nullptr) return E_OUTOFMEMORY;
      const std::unique_ptr<xmlChar, void (*)(xmlChar*)> owner(bytes,
                                                               [](xmlChar* b) { xmlFree(b); });
      return answerText(
          wideFromNative({reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length)}),
          xml);
    });
  }

  HRESULT STDMETHODCALLTYPE transformNode(IXMLDOMNode* stylesheet, BSTR* text) override {
    return withoutExceptions([&]() -> HRESULT {
      if (stylesheet == nullptr) return E_INVALIDARG;
      if (text == nullptr) return E_POINTER;
      *text = nullptr;
      transformFailure_ = {};
      ComPtr<IXMLDOMDocument> own;
      if (FAILED(stylesheet->QueryInterface(kIidOwnDocument, own.PutVoid()))) {
        return refuse(E_INVALIDARG, u"The stylesheet is not a document of this XML library.");
      }
      const auto& sheet = static_cast<const DomDocument&>(*own);
      if (pendingLocation_ || sheet.pendingLocation_) {
        return refuse(E_PENDING, u"The document is still being loaded.");
      }
      if (document_ == nullptr) return refuse(E_FAIL, u"The document is empty.");
      if (sheet.document_ == nullptr) return refuse(E_FAIL, u"The stylesheet is empty.");
      std::u16string result;
      if (transformDocument(document_.get(), sheet.document_.get(), transformLimits(), result,
                            transformFailure_)) {
        return answerText(result, text);
      }
      transformFailure_.url = sheet.url_;
      return failWithReason(E_FAIL, std::u16string(kSource), transformFailure_.reason);
    });
  }

 private:
  HRESULT read(const std::u16string& location, VARIANT_BOOL* isSuccessful) {
    XmlFailure failure;
    XmlDocument document = parseFile(location, failure);
    return take(std::move(document), failure, location, isSuccessful);
  }

  // What was in the document before is gone, whether or not the new one can be read.
  HRESULT take(XmlDocument document, const XmlFailure& failure, const std::u16string& url,
               VARIANT_BOOL* isSuccessful) {
    pendingLocation_.reset();
    document_ = std::move(document);
    loadFailure_ = failure;
    transformFailure_ = {};
    url_ = document_ == nullptr ? std::u16string() : url;
    const bool isLoaded = document_ != nullptr;
    if (isSuccessful != nullptr) *isSuccessful = isLoaded ? VARIANT_TRUE : VARIANT_FALSE;
    return isLoaded ? S_OK : S_FALSE;
  }

  HRESULT refuse(HRESULT result, const std::u16string& reason) {
    transformFailure_.code = result;
    transformFailure_.reason = reason;
    return failWithReason(result, std::u16string(kSource), reason);
  }

  XmlDocument document_;
  XmlFailure loadFailure_;
  XmlFailure transformFailure_;
  std::u16string url_;
  std::optional<std::u16string> pendingLocation_;  // of a load that was only begun
  VARIANT_BOOL async_ = VARIANT_TRUE;
};

}  // namespace

HRESULT createDomDocument(REFIID riid, void** object) {
  return createObject<DomDocument>(riid, object);
}

}  // namespace quillon::platform
