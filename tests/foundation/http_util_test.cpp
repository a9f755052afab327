#include "foundation/http_util.h"

#include <functional>
#include <utility>

#include "foundation/com_base.h"
#include "foundation_test_support.h"
#include "platform/com/com_object.h"
#include "platform/xml.h"
#include "support/com_class.h"
#include "support/http_server.h"
#include "support/sleep_record.h"

namespace quillon {
namespace {

using test::ErrorOf;
using test::HttpAnswer;
using test::HttpServer;

HttpAnswer answer(int status, const std::string& body = {}) {
  HttpAnswer one;
  one.status = status;
  one.headers = {{"Content-Type", "text/plain; charset=utf-8"}};
  one.body = body;
  return one;
}

TEST(FetchingAUrl, RetriesWhileTheServerIsBusyAndNeverElse) {
  HttpServer server;
  const std::string url = server.url("/sheet.xsl");
  const std::string timedOut =
      "The HTTP request to the URL \"" + url + "\" has timed out after 10 attempt(s).";
  const std::string notRetrieved = "Cannot retrieve information from the URL \"" + url + ".\"";
  struct {
    const char* what;
    std::vector<HttpAnswer> answers;
    std::size_t requests, waits;
    std::u16string text;
    std::string sentence;
  } const cases[] = {
      {"200", {answer(200, "Caf\xC3\xA9")}, 1, 0, u"Caf\u00E9", ""},
      {"204 has no body", {answer(204)}, 1, 0, u"", ""},
      {"299", {answer(299, "x")}, 1, 0, u"x", ""},
      {"300", {answer(300, "x")}, 1, 0, u"", notRetrieved},
      {"404", {answer(404, "gone")}, 1, 0, u"", notRetrieved},
      {"503 is not waited for", {answer(503), answer(200, "x")}, 1, 0, u"", notRetrieved},
      {"busy twice", {answer(409), answer(409), answer(200, "body")}, 3, 2, u"body", ""},
      {"busy, then gone", {answer(409), answer(404)}, 2, 1, u"", notRetrieved},
      {"busy for ever", {answer(409)}, 10, 10, u"", timedOut},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const test::SleepRecord sleeps;
    server.answerWith(c.answers);
    CHttpUtil http;
    Text text = u"before";
    EXPECT_EQ(http.Fetch(WidenText(url, CP_UTF8), text), c.sentence.empty());
    EXPECT_EQ(text, c.text);
    EXPECT_EQ(ErrorOf(http), c.sentence);
    EXPECT_EQ(sleeps.waitsMs, std::vector<DWORD>(c.waits, 3000));
    ASSERT_EQ(server.requests().size(), c.requests);
    EXPECT_TRUE(server.requests().back().starts_with("GET /sheet.xsl HTTP/1.1\r\n"));
  }
}

TEST(FetchingAUrl, TellsWhatCannotBeReached) {
  CHttpUtil http;
  Text text;
  EXPECT_FALSE(http.Fetch({}, text));
  EXPECT_EQ(ErrorOf(http), "The URL is invalid.");
  const std::string url = test::urlThatRefuses();
  EXPECT_FALSE(http.Fetch(WidenText(url, CP_UTF8), text));
  EXPECT_EQ(ErrorOf(http), "Cannot send a request to the URL \"" + url + ".\"");
}

enum class Step { None, Create, Open, Send, Status, Text };

// A component that fails at one of its calls.
class FakeRequest final : public DispatchObject<IXMLHTTPRequest, kIidXmlHttpRequest> {
 public:
  FakeRequest(Step failing, std::function<HRESULT()> failure)
      : failing_(failing), failure_(std::move(failure)) {}

  HRESULT STDMETHODCALLTYPE open(BSTR method, BSTR, VARIANT async, VARIANT user, VARIANT) override {
    EXPECT_EQ(std::u16string(method), u"GET");
    EXPECT_EQ(async.vt, VT_BOOL);
    EXPECT_EQ(async.boolVal, VARIANT_FALSE);
    EXPECT_EQ(user.vt, VT_ERROR);
    return result(Step::Open);
  }
  HRESULT STDMETHODCALLTYPE send(VARIANT) override { return result(Step::Send); }
  HRESULT STDMETHODCALLTYPE get_status(LONG* status) override {
    *status = 200;
    return result(Step::Status);
  }
  HRESULT STDMETHODCALLTYPE get_responseText(BSTR* body) override {
    *body = nullptr;
    return result(Step::Text);
  }
  HRESULT STDMETHODCALLTYPE setRequestHeader(BSTR, BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE getResponseHeader(BSTR, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE getAllResponseHeaders(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE abort() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_statusText(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_responseXML(IDispatch**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_responseBody(VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_responseStream(VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_readyState(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_onreadystatechange(IDispatch*) override { return E_NOTIMPL; }

 private:
  HRESULT result(Step step) const { return step == failing_ ? failure_() : S_OK; }

  Step failing_;
  std::function<HRESULT()> failure_;
};

TEST(FetchingAUrl, GivesEachFailingCallItsSentence) {
  using Failures = std::vector<std::function<HRESULT()>>;
  const Failures failed = {[] { return E_FAIL; }, []() -> HRESULT { throw _com_error(E_FAIL); }};
  Failures notSent = failed;
  notSent.emplace_back([] { return S_FALSE; });  // to a send, every answer but zero is a failure
  const std::string cannotGet = "Cannot retrieve information from the URL \"http://a/.\"";
  struct {
    const char* what;
    Step failing;
    const Failures& failures;
    std::string sentence;
  } const cases[] = {
      {"create", Step::Create, failed, "Cannot find the HTTP transfer component."},
      {"open", Step::Open, failed, "Cannot access the URL \"http://a/.\""},
      {"send", Step::Send, notSent, "Cannot send a request to the URL \"http://a/.\""},
      {"status", Step::Status, failed, cannotGet},
      {"text", Step::Text, failed, cannotGet},
      {"nothing", Step::None, failed, ""},
  };
  const CComBase apartment;  // classes are registered in one
  for (const auto& c : cases) {
    for (const auto& failure : c.failures) {
      SCOPED_TRACE(c.what);
      const DWORD cookie = test::registerClass(kClsidXmlHttp, [&](REFIID riid, void** object) {
        if (c.failing == Step::Create) return failure();
        ComPtr<IUnknown> made;
        made.Attach(new FakeRequest(c.failing, failure));
        return made->QueryInterface(riid, object);
      });
      CHttpUtil http;
      Text text = u"before";
      EXPECT_EQ(http.Fetch(u"http://a/", text), c.failing == Step::None);
      EXPECT_EQ(ErrorOf(http), c.sentence);
      EXPECT_TRUE(text.empty());
      CoRevokeClassObject(cookie);
    }
  }
}

}  // namespace
}  // namespace quillon
