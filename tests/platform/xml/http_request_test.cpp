#include "support/http_server.h"
#include "xml_fixture.h"

namespace quillon::test {
namespace {

using namespace std::string_literals;

constexpr auto kInvalidUrl = static_cast<HRESULT>(0x800C0002);
constexpr auto kCannotConnect = static_cast<HRESULT>(0x800C0004);
constexpr auto kNotFound = static_cast<HRESULT>(0x800C0005);
constexpr auto kDownloadFailed = static_cast<HRESULT>(0x800C0008);
constexpr auto kTimeout = static_cast<HRESULT>(0x800C000B);
constexpr auto kUnknownProtocol = static_cast<HRESULT>(0x800C000D);

class HttpRequestTest : public XmlLayerTest {
 protected:
  HttpRequestTest() {
    EXPECT_EQ(CoCreateInstance(kClsidXmlHttp, nullptr, CLSCTX_ALL, kIidXmlHttpRequest,
                               request_.PutVoid()),
              S_OK);
  }

  HRESULT open(std::string_view url, std::string_view method = "GET",
               VARIANT_BOOL isAsync = VARIANT_FALSE) {
    VARIANT async;
    VariantInit(&async);
    async.vt = VT_BOOL;
    async.boolVal = isAsync;
    VARIANT omitted;
    VariantInit(&omitted);
    omitted.vt = VT_ERROR;
    omitted.scode = DISP_E_PARAMNOTFOUND;
    return request_->open(CallText(method), CallText(url), async, omitted, omitted);
  }
  HRESULT send() {
    VARIANT empty;
    VariantInit(&empty);
    return request_->send(empty);
  }
  HRESULT get(std::string_view url) {
    const HRESULT opened = open(url);
    return FAILED(opened) ? opened : send();
  }
  LONG status() {
    LONG value = -1;
    EXPECT_EQ(request_->get_status(&value), S_OK);
    return value;
  }
  std::string text() {
    CallText value;
    EXPECT_EQ(request_->get_responseText(value.put()), S_OK);
    return value.utf8();
  }

  ComPtr<IXMLHTTPRequest> request_;
};

HttpAnswer answerOf(int status, const std::string& body, const std::string& type = "") {
  HttpAnswer answer;
  answer.status = status;
  answer.body = body;
  if (!type.empty()) answer.headers.emplace_back("Content-Type", type);
  return answer;
}

TEST_F(HttpRequestTest, EveryAnswerOfAServerIsOne) {
  HttpServer server;
  struct Case {
    const char* what;
    std::vector<HttpAnswer> answers;
    LONG status;
    std::string text;
    std::size_t requests;
  };
  const Case cases[] = {
      {"found", {answerOf(200, "<a/>")}, 200, "<a/>", 1},
      {"nothing to say", {answerOf(204, "")}, 204, "", 1},
      {"not found", {answerOf(404, "none")}, 404, "none", 1},
      {"busy", {answerOf(409, "later")}, 409, "later", 1},
      {"broken", {answerOf(500, "")}, 500, "", 1},
      {"moved", {redirectTo(server.url("/b")), answerOf(200, "there")}, 200, "there", 2},
      {"moved within", {redirectTo("/b", 308), answerOf(404, "no")}, 404, "no", 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    server.answerWith(c.answers);
    ASSERT_EQ(get(server.url("/a b?c=%20#part")), S_OK) << takeErrorDescription();
    EXPECT_EQ(status(), c.status);
    EXPECT_EQ(text(), c.text);
    ASSERT_EQ(server.requests().size(), c.requests);
    EXPECT_TRUE(server.requests()[0].starts_with("GET /a%20b?c=%20 HTTP/1.1\r\n"))
        << server.requests()[0];
  }
}

TEST_F(HttpRequestTest, ARequestIsSentAgainAfterItIsOpenedAgain) {
  HttpServer server({answerOf(409, "busy"), answerOf(200, "now")});
  EXPECT_EQ(get(server.url()), S_OK);
  EXPECT_EQ(status(), 409);
  EXPECT_EQ(send(), E_UNEXPECTED);
  EXPECT_EQ(get(server.url()), S_OK);
  EXPECT_EQ(text(), "now");
}

TEST_F(HttpRequestTest, TheBodyIsDecodedByItsCharset) {
  HttpServer server;
  const std::string wide = "<\0a\0>\0\xE9\0\xAC\x20<\0/\0a\0>\0"s;
  const std::string wideSwapped = "\0<\0a\0>\0\xE9\x20\xAC\0<\0/\0a\0>"s;
  const std::string expected = "<a>\xC3\xA9\xE2\x82\xAC</a>";
  struct Case {
    const char* what;
    std::string type;
    std::string body;
    std::string text;
  };
  const Case cases[] = {
      {"UTF-8 by default", "", expected, expected},
      {"UTF-8 by name", "text/xml; charset=\"UTF-8\"", expected, expected},
      {"UTF-8 by its mark", "text/xml", "\xEF\xBB\xBF" + expected, expected},
      {"not UTF-8 after all", "text/xml", "<a>\xE9\x80</a>", expected},
      {"Latin-1 by name", "text/xml;charset=iso-8859-1", "<a>\xE9\x80</a>", expected},
      {"another by name", "text/plain; charset=ISO-8859-15 ", "<a>\xE9\xA4</a>", expected},
      {"by declaration", "text/xml", "<?xml version='1.0' encoding='ISO-8859-15' ?><a>\xE9\xA4</a>",
       "<?xml version='1.0' encoding='ISO-8859-15' ?>" + expected},
      {"the header before the declaration", "text/xml; charset=utf-8",
       "<?xml version='1.0' encoding='ISO-8859-1'?>" + expected,
       "<?xml version='1.0' encoding='ISO-8859-1'?>" + expected},
      {"a charset that nobody knows", "text/xml; charset=x-none", expected, expected},
      {"UTF-16 by its mark", "", "\xFF\xFE" + wide, expected},
      {"UTF-16 by its mark, swapped", "", "\xFE\xFF" + wideSwapped, expected},
      {"UTF-16 without a mark", "text/xml", wide, expected},
      {"UTF-16 without a mark, swapped", "text/xml", wideSwapped, expected},
      {"UTF-16 by name", "text/xml; charset=UTF-16", "\xFE\xFF" + wideSwapped, expected},
      {"UTF-16 by name without a mark", "text/xml; charset=UTF-16", wide, expected},
      {"UTF-16 by name and order", "text/xml; charset=utf-16be", wideSwapped, expected},
      {"bytes that the charset does not have", "text/xml; charset=utf-8", "<a>\xE9</a>",
       "<a>\xEF\xBF\xBD</a>"},
      {"half a character", "text/xml; charset=utf-16le", "<\0a"s, "<\xEF\xBF\xBD"},
      {"nothing", "text/xml; charset=utf-16", "", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    server.answerWith({answerOf(200, c.body, c.type)});
    ASSERT_EQ(get(server.url()), S_OK) << takeErrorDescription();
    EXPECT_EQ(text(), c.text);
  }
}

TEST_F(HttpRequestTest, WhatIsNoUrlIsNotOpened) {
  writeText(dir_ / "local.xml", "<a/>");
  const std::string other = "Only what an http or https server offers is fetched, not \"";
  struct Case {
    std::string url;
    HRESULT result;
    std::string reason;  // the start of it
  };
  const Case cases[] = {
      {"", kInvalidUrl, "\"\" is not a URL: "},
      {"http://", kInvalidUrl, "\"http://\" is not a URL: "},
      {"/some/file.xsl", kInvalidUrl, "\"/some/file.xsl\" is not a URL: "},
      {"http://host:99999/", kInvalidUrl, "\"http://host:99999/\" is not a URL: "},
      {"http://ho st/", kInvalidUrl, "\"http://ho st/\" is not a URL: "},
      {"http://host/a\r\nX: y", kInvalidUrl, "\"http://host/a X: y\" is not a URL: "},
      {"ftp://127.0.0.1/a", kUnknownProtocol, other + "ftp://127.0.0.1/a\"."},
      {"file://" + (dir_ / "local.xml").string(), kUnknownProtocol, other + "file://"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.url);
    EXPECT_EQ(open(c.url), c.result);
    const std::string description = takeErrorDescription();
    EXPECT_EQ(description.substr(0, c.reason.size()), c.reason);
    EXPECT_EQ(send(), E_UNEXPECTED);
  }
  EXPECT_EQ(open("http://127.0.0.1/", "DELETE"), E_INVALIDARG);
  EXPECT_EQ(open("http://127.0.0.1/", "GET", VARIANT_TRUE), E_NOTIMPL);
  LONG none = 0;
  EXPECT_EQ(request_->get_status(&none), E_PENDING);
}

TEST_F(HttpRequestTest, AServerThatFailsIsAFailureInBoundedTime) {
  constexpr long kStallSeconds = 1;
  constexpr long kTotalSeconds = 20;
  constexpr std::size_t kBodyBytes = 1000;
  const platform::testing::XmlLimitsScope limits;
  platform::testing::SubstituteHttpLimits(kStallSeconds, kTotalSeconds, kBodyBytes);
  writeText(dir_ / "local.xml", "<secret/>");
  HttpServer server;
  HttpAnswer silent;
  silent.ending = HttpAnswer::Ending::NeverAnswers;
  HttpAnswer stopping = answerOf(200, "<a>");
  stopping.ending = HttpAnswer::Ending::StopsMidway;
  struct Case {
    const char* what;
    HttpAnswer answer;
    HRESULT result;
    std::string reason;  // the start of it
  };
  const Case cases[] = {
      {"never answers", silent, kTimeout, "Operation too slow."},
      {"stops midway", stopping, kTimeout, "Operation too slow."},
      {"redirects for ever", redirectTo(server.url("/again")), kDownloadFailed,
       "Maximum (10) redirects followed."},
      {"redirects to a file", redirectTo("file://" + (dir_ / "local.xml").string()),
       kUnknownProtocol, "Protocol \"file\" "},
      {"redirects to another protocol", redirectTo("ftp://127.0.0.1/"), kUnknownProtocol,
       "Protocol \"ftp\" "},
      {"sends too much", answerOf(200, std::string(kBodyBytes + 1, 'x')), kDownloadFailed,
       "The answer is larger than 1000 bytes."},
      {"redirects to nobody", redirectTo(urlThatRefuses()), kCannotConnect,
       "Failed to connect to "},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    server.answerWith({c.answer});
    EXPECT_EQ(get(server.url()), c.result);
    const std::string description = takeErrorDescription();
    EXPECT_EQ(description.substr(0, c.reason.size()), c.reason);
    BSTR body = nullptr;
    EXPECT_EQ(request_->get_responseText(&body), E_PENDING);
  }
  server.answerWith({answerOf(200, std::string(kBodyBytes, 'x'))});
  EXPECT_EQ(get(server.url()), S_OK) << "as much as is allowed";
  EXPECT_EQ(get(urlThatRefuses()), kCannotConnect);
  const std::string noName(70, 'a');  // too long for a part of a name: nobody is asked
  EXPECT_EQ(get("http://" + noName + "/"), kNotFound);
}

TEST_F(HttpRequestTest, OnlyTrustedServersAreAsked) {
  const TlsServer server("<a>\xC3\xA9</a>");
  if (!server.runs()) GTEST_SKIP() << "openssl is not installed";
  EXPECT_EQ(get(server.url()), kDownloadFailed);
  EXPECT_NE(takeErrorDescription().find("SSL certificate problem: self-signed certificate"),
            std::string::npos);
  const ScopedEnvironment trusted("SSL_CERT_FILE", server.certificateFile());
  EXPECT_EQ(get(server.url()), S_OK) << takeErrorDescription();
  EXPECT_EQ(text(), "<a>\xC3\xA9</a>");
}

}  // namespace
}  // namespace quillon::test
