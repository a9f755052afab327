// XML documents from servers of the test's own, and over a library that fails on demand.
#include "dicomobjects/xml_document.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>
#include <vector>

#include "platform/com/com_object.h"
#include "support/com_class.h"
#include "support/http_server.h"
#include "xml/document_base.h"

namespace quillon {
namespace {

std::string errorOf(const CXmlDocument& document) {
  return NarrowText(document.ErrorMessage(), CP_UTF8);
}

TEST(XmlDocumentSources, AreLoadedFromServers) {
  test::HttpServer server({{200, {}, "<sheet/>", test::HttpAnswer::Ending::Whole}});
  CXmlDocument document;
  EXPECT_TRUE(document.SetCurrentXMLDocumentFromLocation(
      WidenText(server.url("/sheet.xsl"), CP_UTF8), false))
      << errorOf(document);
}

TEST(XmlDocumentSources, TakeFourSpellingsOfAPrefixForAUrl) {
  const std::string port = [] {
    const std::string url = test::urlThatRefuses();  // "http://127.0.0.1:port/"
    return url.substr(std::string("http").size());
  }();
  for (const char* scheme : {"http", "HTTP", "https", "HTTPS"}) {
    SCOPED_TRACE(scheme);
    CXmlDocument document;
    EXPECT_FALSE(
        document.SetCurrentXMLDocumentFromLocation(WidenText(scheme + port, CP_UTF8), false));
    EXPECT_EQ(errorOf(document), "Cannot send a request to the URL \"" + (scheme + port) + ".\"");
  }
  for (const char* scheme : {"Http", "Https", "hTTP", "ftp"}) {
    SCOPED_TRACE(scheme);
    CXmlDocument document;
    EXPECT_FALSE(
        document.SetCurrentXMLDocumentFromLocation(WidenText(scheme + port, CP_UTF8), false));
    EXPECT_FALSE(document.ErrorMessage().empty());
    EXPECT_EQ(errorOf(document).find("Cannot send"), std::string::npos);
  }
}

enum class Call { PutAsync, LoadXml, Load, Transform, ParseError, Code, Reason };

// What a fake document does at one of its calls; at the others it succeeds.
struct Behaviour {
  Call call = Call::PutAsync;
  std::function<HRESULT()> act = [] { return S_OK; };
  LONG code = 0;
  std::u16string reason;
  std::vector<bool> asyncValues;

  HRESULT at(Call now) const { return now == call ? act() : S_OK; }
};

class FakeParseError final : public DispatchObject<IXMLDOMParseError, IID_IXMLDOMParseError> {
 public:
  explicit FakeParseError(Behaviour& behaviour) : behaviour_(behaviour) {}

  HRESULT STDMETHODCALLTYPE get_errorCode(LONG* code) override {
    *code = behaviour_.code;
    return behaviour_.at(Call::Code);
  }
  HRESULT STDMETHODCALLTYPE get_reason(BSTR* reason) override {
    *reason = SysAllocString(behaviour_.reason.c_str());
    return behaviour_.at(Call::Reason);
  }
  HRESULT STDMETHODCALLTYPE get_url(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_srcText(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_line(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_linepos(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_filepos(LONG*) override { return E_NOTIMPL; }

 private:
  Behaviour& behaviour_;
};

// Loads are told as failed when the behaviour has a code.
class FakeDocument final : public platform::DocumentBase {
 public:
  explicit FakeDocument(Behaviour& behaviour) : behaviour_(behaviour) {}

  HRESULT STDMETHODCALLTYPE get_nodeName(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_nodeType(DOMNodeType*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_nodeTypeString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE hasChildNodes(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_readyState(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_url(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_xml(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_async(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_async(VARIANT_BOOL isAsync) override {
    behaviour_.asyncValues.push_back(isAsync == VARIANT_TRUE);
    return behaviour_.at(Call::PutAsync);
  }
  HRESULT STDMETHODCALLTYPE loadXML(BSTR, VARIANT_BOOL* isSuccessful) override {
    *isSuccessful = behaviour_.code == 0 ? VARIANT_TRUE : VARIANT_FALSE;
    return behaviour_.at(Call::LoadXml);
  }
  HRESULT STDMETHODCALLTYPE load(VARIANT source, VARIANT_BOOL* isSuccessful) override {
    EXPECT_EQ(source.vt, VT_BSTR);
    *isSuccessful = behaviour_.code == 0 ? VARIANT_TRUE : VARIANT_FALSE;
    return behaviour_.at(Call::Load);
  }
  HRESULT STDMETHODCALLTYPE transformNode(IXMLDOMNode*, BSTR* text) override {
    *text = SysAllocString(u"result");
    return behaviour_.at(Call::Transform);
  }
  HRESULT STDMETHODCALLTYPE get_parseError(IXMLDOMParseError** error) override {
    *error = new FakeParseError(behaviour_);
    return behaviour_.at(Call::ParseError);
  }

 private:
  Behaviour& behaviour_;
};

// While it lives, documents are fakes that share one behaviour.
class FakeLibrary {
 public:
  FakeLibrary()
      : cookie_(test::registerClass(kClsidDomDocument, [this](REFIID riid, void** object) {
          ComPtr<IUnknown> made;
          made.Attach(new FakeDocument(behaviour));
          return made->QueryInterface(riid, object);
        })) {}
  ~FakeLibrary() { CoRevokeClassObject(cookie_); }
  FakeLibrary(const FakeLibrary&) = delete;
  FakeLibrary& operator=(const FakeLibrary&) = delete;

  Behaviour behaviour;

 private:
  const CComBase apartment_;  // classes are registered in one
  DWORD cookie_;
};

using Operation = std::function<bool(CXmlDocument&)>;

bool loadText(CXmlDocument& document) { return document.SetCurrentXMLDocument(u"<a/>", false); }
bool loadFile(CXmlDocument& document) {
  return document.SetCurrentXMLDocumentFromLocation(u"dir/a.xml", false);
}
bool transform(CXmlDocument& document) {
  Text out = u"before";
  const bool isDone = document.TransformXMLDocument(document, out, false);
  EXPECT_EQ(out, isDone ? Text(u"result") : Text());
  return isDone;
}
bool readCode(CXmlDocument& document) {
  LONG code = 77;
  const bool isRead = document.GetParseErrorCode(code);
  EXPECT_EQ(code, isRead ? 0 : -1);
  return isRead;
}
bool readText(CXmlDocument& document) {
  Text reason = u"before";
  const bool isRead = document.GetParseErrorText(reason);
  EXPECT_EQ(reason, u"");
  return isRead;
}
bool setAsync(CXmlDocument& document) { return document.SetAsynchronous(true); }

// A COM exception gives the first sentence of a pair with its own text, any other the second alone.
TEST(XmlDocumentMessages, TellTheTwoKindsOfExceptionsApart) {
  struct {
    const char* what;
    Call call;
    Operation operation;
    std::string first;
    std::string second;
  } const cases[] = {
      {"loadXML", Call::LoadXml, loadText,
       "CXmlDocument::SetCurrentXMLDocument - Cannot set the current XML document for this "
       "reason:   ",
       "Cannot set the current XML document."},
      {"load", Call::Load, loadFile,
       "CXmlDocument::SetCurrentXMLDocumentFromLocation - Cannot load the current XML document for "
       "this reason:   ",
       "Cannot load the current XML document from \"dir/a.xml.\""},
      {"transformNode", Call::Transform, transform,
       "CXmlDocument::TransformXMLDocument - Cannot transform the current XML document for this "
       "reason:   ",
       "Cannot transform the current XML document."},
      {"get_parseError", Call::ParseError, readCode,
       "CXmlDocument::GetParseErrorCode - Cannot retrieve the parse error code for this reason:   ",
       "Cannot retrieve the parse error code."},
      {"get_errorCode", Call::Code, readCode,
       "CXmlDocument::GetParseErrorCode - Cannot retrieve the parse error code for this reason:   ",
       "Cannot retrieve the parse error code."},
      {"get_reason", Call::Reason, readText,
       "CXmlDocument::GetParseErrorText - Cannot retrieve the parse error text for this reason:   ",
       "Cannot retrieve the parse error text."},
      {"code behind a transform", Call::Code, transform,
       "CXmlDocument::GetParseErrorCode - Cannot retrieve the parse error code for this reason:   ",
       "Cannot retrieve the parse error code."},
      {"put_async", Call::PutAsync, setAsync,
       "CXmlDocument::SetAsynchronous - Cannot set the asynchronous operation state for this "
       "reason:",
       "Cannot set the asynchronous operation state."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    FakeLibrary library;
    CXmlDocument document;
    EXPECT_TRUE(c.operation(document)) << "with nothing failing";
    library.behaviour.call = c.call;
    library.behaviour.act = []() -> HRESULT { throw _com_error(E_ACCESSDENIED); };
    CXmlDocument thrown;
    EXPECT_FALSE(c.operation(thrown));
    Text system = ResultText(E_ACCESSDENIED);
    EXPECT_EQ(errorOf(thrown), c.first + NarrowText(system, CP_UTF8));
    library.behaviour.act = []() -> HRESULT { throw std::bad_alloc(); };
    CXmlDocument other;
    EXPECT_FALSE(c.operation(other));
    EXPECT_EQ(errorOf(other), c.second);
    // A failing call never passes for success.
    library.behaviour.act = [] { return E_ACCESSDENIED; };
    CXmlDocument failed;
    EXPECT_FALSE(c.operation(failed));
    EXPECT_FALSE(failed.ErrorMessage().empty());
  }
}

TEST(XmlDocumentMessages, PreferTheParsersReason) {
  for (const Operation& operation :
       {Operation(loadText), Operation(loadFile), Operation(transform)}) {
    FakeLibrary library;
    library.behaviour.code = 5;
    library.behaviour.reason = u"Line 3 is not XML.";
    CXmlDocument document;
    EXPECT_FALSE(operation(document));
    EXPECT_EQ(errorOf(document), "Line 3 is not XML.");
  }
  FakeLibrary library;
  library.behaviour.code = 5;
  CXmlDocument document;
  EXPECT_FALSE(loadText(document));
  EXPECT_EQ(errorOf(document), "Cannot set the current XML document.");
  EXPECT_FALSE(loadFile(document));
  EXPECT_EQ(errorOf(document), "Cannot load the current XML document from \"dir/a.xml.\"");
  EXPECT_FALSE(transform(document));
  EXPECT_EQ(errorOf(document), "Cannot transform the current XML document.");
}

TEST(AsynchronousLoading, IsSetOnlyWhenItChanges) {
  FakeLibrary library;
  CXmlDocument document;
  EXPECT_TRUE(document.SetAsynchronous(false));
  EXPECT_TRUE(library.behaviour.asyncValues.empty());
  EXPECT_TRUE(document.SetAsynchronous(true));
  EXPECT_TRUE(document.SetAsynchronous(true));
  EXPECT_TRUE(document.SetCurrentXMLDocument(u"<a/>", false));
  EXPECT_EQ(library.behaviour.asyncValues, (std::vector<bool>{true, false}));

  // A value that was not taken is tried again.
  library.behaviour.call = Call::PutAsync;
  library.behaviour.act = [] { return E_FAIL; };
  EXPECT_FALSE(document.SetAsynchronous(true));
  EXPECT_EQ(errorOf(document), "Cannot set the asynchronous operation state.");
  EXPECT_FALSE(document.SetAsynchronous(true));
  EXPECT_EQ(library.behaviour.asyncValues.size(), 4U);
}

TEST(XmlDocumentSources, ThatCannotBeCreatedFailWithASentence) {
  const CComBase apartment;
  const test::HiddenClass hidden(kClsidDomDocument);
  SetLastError(0);
  CXmlDocument document;
  EXPECT_EQ(errorOf(document), "The operation failed.The operation failed.");
  EXPECT_FALSE(document.Create());
  EXPECT_FALSE(loadText(document));
  EXPECT_EQ(errorOf(document),
            "CXmlDocument::SetCurrentXMLDocument - Cannot set the current XML document for this "
            "reason:   " +
                NarrowText(ResultText(E_POINTER), CP_UTF8));
}

}  // namespace
}  // namespace quillon
