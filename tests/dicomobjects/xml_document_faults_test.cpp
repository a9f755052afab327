// XML documents from servers of the test's own, and over a library that fails on demand.
#include "dicomobjects/xml_document.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/com/com_object.h"
#include "support/com_class.h"
#include "support/failing_new.h"
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

TEST(XmlDocumentSources, FailWithASentenceWhenMemoryRunsOut) {
  const std::string url = test::urlThatRefuses();
  const Text location = WidenText(url, CP_UTF8);
  // What is made once only.
  EXPECT_FALSE(CXmlDocument().SetCurrentXMLDocumentFromLocation(location, false));
  const auto outcomes = test::withEachAllocationFailing([&](long n, bool& happened) {
    CXmlDocument document;
    {
      const test::FailingNew failing(n);
      EXPECT_FALSE(document.SetCurrentXMLDocumentFromLocation(location, false));
      happened = failing.happened();
    }
    return errorOf(document);
  });
  EXPECT_TRUE(outcomes.contains("Cannot load the current XML document from \"" + url + ".\""));
  EXPECT_FALSE(outcomes.contains(""));
}

TEST(XmlDocumentSources, TakeFourSpellingsOfAPrefixForAUrl) {
  const std::string port = [] {
    const std::string url = test::urlThatRefuses();  // "http://127.0.0.1:port/"
    return url.substr(std::string("http").size());
  }();
  for (const char* scheme : {"http", "HTTP", "https", "HTTPS", "Http", "Https", "hTTP", "ftp"}) {
    SCOPED_TRACE(scheme);
    const std::set<std::string> taken = {"http", "HTTP", "https", "HTTPS"};
    CXmlDocument document;
    EXPECT_FALSE(
        document.SetCurrentXMLDocumentFromLocation(WidenText(scheme + port, CP_UTF8), false));
    const std::string notSent = "Cannot send a request to the URL \"" + (scheme + port) + ".\"";
    EXPECT_EQ(errorOf(document) == notSent, taken.contains(scheme)) << errorOf(document);
    EXPECT_NE(errorOf(document), "");
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

  // It is not the layer's own, whatever it shares with it.
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    if (!IsEqualIID(riid, platform::kIidOwnDocument)) {
      return DocumentBase::QueryInterface(riid, object);
    }
    *object = nullptr;
    return E_NOINTERFACE;
  }
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

// A COM exception gives the sentence of the method with the exception's own text, any other the
// operation's sentence alone.
TEST(XmlDocumentMessages, TellTheTwoKindsOfExceptionsApart) {
  const auto threw = [](const std::string& method, const std::string& what) {
    return "CXmlDocument::" + method + " - Cannot " + what + " for this reason:   ";
  };
  const std::string readingCode = threw("GetParseErrorCode", "retrieve the parse error code");
  const std::string noCode = "Cannot retrieve the parse error code.";
  struct {
    const char* what;
    Call call;
    Operation operation;
    std::string first;
    std::string second;
  } const cases[] = {
      {"loadXML", Call::LoadXml, loadText,
       threw("SetCurrentXMLDocument", "set the current XML document"),
       "Cannot set the current XML document."},
      {"load", Call::Load, loadFile,
       threw("SetCurrentXMLDocumentFromLocation", "load the current XML document"),
       "Cannot load the current XML document from \"dir/a.xml.\""},
      {"transformNode", Call::Transform, transform,
       threw("TransformXMLDocument", "transform the current XML document"),
       "Cannot transform the current XML document."},
      {"get_parseError", Call::ParseError, readCode, readingCode, noCode},
      {"get_errorCode", Call::Code, readCode, readingCode, noCode},
      {"get_reason", Call::Reason, readText,
       threw("GetParseErrorText", "retrieve the parse error text"),
       "Cannot retrieve the parse error text."},
      {"code behind a transform", Call::Code, transform, readingCode, noCode},
      {"put_async", Call::PutAsync, setAsync,
       "CXmlDocument::SetAsynchronous - Cannot set the asynchronous operation state for this "
       "reason:",
       "Cannot set the asynchronous operation state."},
  };
  FakeLibrary library;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    library.behaviour = {};
    CXmlDocument document;
    EXPECT_TRUE(c.operation(document)) << "with nothing failing";
    library.behaviour.call = c.call;
    library.behaviour.act = []() -> HRESULT { throw _com_error(E_ACCESSDENIED); };
    CXmlDocument thrown;
    EXPECT_FALSE(c.operation(thrown));
    EXPECT_EQ(errorOf(thrown), c.first + NarrowText(ResultText(E_ACCESSDENIED), CP_UTF8));
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
  const std::pair<Operation, std::string> cases[] = {
      {loadText, "Cannot set the current XML document."},
      {loadFile, "Cannot load the current XML document from \"dir/a.xml.\""},
      {transform, "Cannot transform the current XML document."}};
  for (const auto& [operation, withoutReason] : cases) {
    for (const std::u16string reason : {u"Line 3 is not XML.", u""}) {
      FakeLibrary library;
      library.behaviour.code = 5;
      library.behaviour.reason = reason;
      CXmlDocument document;
      EXPECT_FALSE(operation(document));
      EXPECT_EQ(errorOf(document), reason.empty() ? withoutReason : "Line 3 is not XML.");
    }
  }
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

TEST(XmlDocumentMessages, RefuseAStylesheetOfAnotherLibrary) {
  CXmlDocument document;
  ASSERT_TRUE(document.SetCurrentXMLDocument(u"<a/>", false));
  const FakeLibrary another;
  const CXmlDocument sheet;
  Text out = u"before";
  EXPECT_FALSE(document.TransformXMLDocument(sheet, out, false));
  EXPECT_EQ(errorOf(document), "The stylesheet is not a document of this XML library.");
  EXPECT_EQ(out, u"");
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
