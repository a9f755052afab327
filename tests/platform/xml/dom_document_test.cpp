#include <limits>

#include "xml_fixture.h"

namespace quillon::test {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

class DomDocumentTest : public XmlLayerTest {};

std::string repeated(std::string_view piece, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += piece;
  return text;
}

// Ten times ten times ... of the same three letters.
std::string growingEntities(std::string_view root) {
  std::string text = "<!DOCTYPE a [<!ENTITY e0 \"lol\">";
  for (int i = 1; i <= 9; ++i) {
    const std::string previous = "&e" + std::to_string(i - 1) + ";";
    text += "<!ENTITY e" + std::to_string(i) + " \"" + repeated(previous, 10) + "\">";
  }
  return text + "]>" + std::string(root);
}

TEST_F(DomDocumentTest, TextIsReadAsWhatItIs) {
  struct Case {
    const char* what;
    std::u16string text;
    std::string root;
  };
  const Case cases[] = {
      {"no declaration", u"<a>\u00E9</a>", "<a>\u00E9</a>"},
      {"the header's declaration", u"<?xml version=\"1.0\" ?>\n<a>\u20AC</a>", "<a>\u20AC</a>"},
      {"an encoding that was true of the bytes",
       u"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\u00E9\u20AC</a>",
       "<a>\u00E9\u20AC</a>"},
      {"an encoding in 16 bits", u"<?xml version=\"1.0\" encoding=\"UTF-16\"?><a>\u00E9</a>",
       "<a>\u00E9</a>"},
      {"a byte order mark", u"\uFEFF<a/>", "<a/>"},
      {"a surrogate pair", u"<a>\U0001F600</a>", "<a>\U0001F600</a>"},
      {"an entity of its own", u"<!DOCTYPE a [<!ENTITY e \"x&#160;y\">]><a>&e;</a>",
       "<a>x\u00A0y</a>"},
      {"a document type elsewhere, which is not read",
       u"<!DOCTYPE a PUBLIC \"-//X//Y\" \"http://127.0.0.1:1/a.dtd\"><a/>", "<a/>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const ComPtr<IXMLDOMDocument> document = newDocument();
    EXPECT_EQ(loadText(*document, c.text), S_OK);
    EXPECT_EQ(parseErrorOf(*document).code, 0);
    EXPECT_EQ(parseErrorOf(*document).reason, "");
    EXPECT_NE(xmlOf(*document).find(c.root), std::string::npos) << xmlOf(*document);
  }
}

TEST_F(DomDocumentTest, WhatIsNotXmlIsAParseFailure) {
  const std::string secret = (dir_ / "secret.txt").string();
  writeText(secret, "TOPSECRET");
  const std::string tooMuch =
      "The entities of the document refer to themselves or grow too large (line 1, column ";
  struct Case {
    const char* what;
    std::u16string text;
    std::string reason;  // the start of it
  };
  const auto wideOf = [](const std::string& text) {
    return std::u16string(text.begin(), text.end());
  };
  const Case cases[] = {
      {"nothing", u"", "Document is empty"},
      {"no element", u"text", "Start tag expected, '<' not found (line 1, column 1)."},
      {"an open element", u"<a>\n<b></a>",
       "Opening and ending tag mismatch: b line 2 and a (line 2, column 8)."},
      {"a control character", u"<a>\u0001</a>", "PCDATA invalid Char value 1 (line 1, column 4)."},
      {"a zero", u"<a>\n\0</a>"s,
       "The text holds a character that XML does not have, number 0 (line 2, column 1)."},
      {"a lone surrogate", u"<a>" + std::u16string(1, 0xDC81) + u"</a>",
       "The text holds a character that XML does not have, number 56449 (line 1, column 4)."},
      {"a pair the wrong way round", u"<a>" + std::u16string{0xDC00, 0xD800} + u"</a>",
       "The text holds a character that XML does not have, number 56320 (line 1, column 4)."},
      {"growing entities in text", wideOf(growingEntities("<a>&e9;</a>")), tooMuch},
      {"growing entities in an attribute", wideOf(growingEntities("<a b='&e9;'/>")), tooMuch},
      {"a long entity many times",
       wideOf("<!DOCTYPE a [<!ENTITY e '" + std::string(100'000, 'x') + "'>]><a>" +
              repeated("&e;", 20'000) + "</a>"),
       tooMuch},
      {"an entity of itself", u"<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a>&e;</a>",
       tooMuch},
      {"an external entity",
       wideOf("<!DOCTYPE a [<!ENTITY e SYSTEM 'file://" + secret + "'>]><a>&e;</a>"),
       "The external entity \"file://" + secret + "\" is not read."},
      {"an external entity in the document type",
       wideOf("<!DOCTYPE a [<!ENTITY % e SYSTEM 'file://" + secret + "'>%e;]><a/>"),
       "The external entity \"file://" + secret + "\" is not read."},
      {"too deep", wideOf(repeated("<a>", 2049) + repeated("</a>", 2049)),
       "The elements nest deeper than 2048 levels (line 1, column "},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const ComPtr<IXMLDOMDocument> document = documentOfText("<before/>");
    EXPECT_EQ(loadText(*document, c.text), S_FALSE);
    const ParseErrorValues error = parseErrorOf(*document);
    EXPECT_NE(error.code, 0);
    EXPECT_EQ(error.reason.substr(0, c.reason.size()), c.reason);
    EXPECT_EQ(error.reason.find("TOPSECRET"), std::string::npos);
    EXPECT_EQ(error.reason.back(), '.');
    EXPECT_EQ(xmlOf(*document), "") << "nothing of the document before is left";
  }
}

TEST_F(DomDocumentTest, LargeAndDeepDocumentsAreRead) {
  const std::string longText = "<a>" + std::string(12'000'000, 'x') + "</a>";
  EXPECT_EQ(loadText(*newDocument(), longText), S_OK);
  EXPECT_EQ(loadText(*newDocument(), repeated("<a>", 2048) + repeated("</a>", 2048)), S_OK);
}

TEST_F(DomDocumentTest, TheParseErrorSaysWhere) {
  const ComPtr<IXMLDOMDocument> document = newDocument();
  writeText(dir_ / "broken.xml", "<a>\n  <b>&nothing;</b>\r\n</a>");
  const std::string location = (dir_ / "broken.xml").string();
  EXPECT_EQ(loadFile(*document, location), S_FALSE);
  const ParseErrorValues error = parseErrorOf(*document);
  EXPECT_EQ(error.reason, "Entity 'nothing' not defined (line 2, column 15).");
  EXPECT_EQ(error.line, 2);
  EXPECT_EQ(error.column, 15);
  EXPECT_EQ(error.offset, 18);
  EXPECT_EQ(error.sourceLine, "  <b>&nothing;</b>");
  EXPECT_EQ(error.url, location);
}

TEST_F(DomDocumentTest, FilesAreFoundByPathAndByUrl) {
  writeText(dir_ / "drives/c/styles/a.xml", "<drive/>");
  writeText(dir_ / "work/near.xml", "<near/>");
  writeText(dir_ / "work/100% \xC3\xA9.xml", "<odd/>");
  writeText(dir_ / "latin.xml", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xE9</a>");
  writeText(dir_ / "wide.xml", "\xFF\xFE<\0a\0>\0\xE9\0<\0/\0a\0>\0"s);
  const std::string root = dir_.path().string();
  struct Case {
    std::string location;
    std::string found;
  };
  const Case cases[] = {
      {"C:\\styles\\a.xml", "<drive/>"},
      {"c:/styles/a.xml", "<drive/>"},
      {"file:///C:/styles/a.xml", "<drive/>"},
      {"near.xml", "<near/>"},
      {root + "/work/near.xml", "<near/>"},
      {root + "\\work\\near.xml", "<near/>"},
      {"FILE://localhost" + root + "/work/near.xml", "<near/>"},
      {"file://" + root + "/work/100%25%20%C3%A9.xml", "<odd/>"},
      {root + "/work/100% \xC3\xA9.xml", "<odd/>"},
      {root + "/latin.xml", "<a>\xC3\xA9</a>"},
      {root + "/wide.xml", "<a>\xC3\xA9</a>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.location);
    const ComPtr<IXMLDOMDocument> document = documentOfFile(c.location);
    EXPECT_NE(xmlOf(*document).find(c.found), std::string::npos) << xmlOf(*document);
    CallText url;
    EXPECT_EQ(document->get_url(url.put()), S_OK);
    EXPECT_EQ(url.utf8(), c.location);
  }
}

TEST_F(DomDocumentTest, WhatIsNoFileIsNotLoaded) {
  const std::string root = dir_.path().string();
  struct Case {
    std::string location;
    std::string reason;
  };
  const Case cases[] = {
      {root + "/none.xml",
       "The file \"" + root +
           "/none.xml\" cannot be read: The system cannot find the file specified."},
      {root, "The file \"" + root + "\" cannot be read: Access is denied."},
      {"Http://127.0.0.1:1/a.xml",
       "The location \"Http://127.0.0.1:1/a.xml\" is not that of a file."},
      {"ftp://127.0.0.1/a.xml", "The location \"ftp://127.0.0.1/a.xml\" is not that of a file."},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.location);
    const ComPtr<IXMLDOMDocument> document = newDocument();
    EXPECT_EQ(loadFile(*document, c.location), S_FALSE);
    EXPECT_LT(parseErrorOf(*document).code, 0);
    EXPECT_EQ(parseErrorOf(*document).reason, c.reason);
  }
}

// As elsewhere, where a new document loads that way until it is told otherwise.
TEST_F(DomDocumentTest, AnAsynchronousLoadHasOnlyBegunWhenItReturns) {
  writeText("good.xml", "<a/>");
  for (const std::string name : {"good.xml", "missing.xml"}) {
    SCOPED_TRACE(name);
    const bool isGood = name == "good.xml";
    const ComPtr<IXMLDOMDocument> document = newDocument();
    EXPECT_EQ(loadText(*document, "<old/>"), S_OK);
    EXPECT_EQ(document->put_async(VARIANT_TRUE), S_OK);
    EXPECT_EQ(loadFile(*document, name), S_OK) << "of a missing file too";
    EXPECT_EQ(parseErrorOf(*document).code, 0);
    CallText text;
    EXPECT_EQ(document->get_xml(text.put()), E_PENDING);
    const ComPtr<IXMLDOMDocument> other = documentOfText("<b/>");
    EXPECT_EQ(transform(*document, *other).result, E_PENDING);
    EXPECT_EQ(transform(*other, *document).result, E_PENDING);
    LONG state = 0;
    for (const LONG expected : {1, 4, 4}) {
      EXPECT_EQ(document->get_readyState(&state), S_OK);
      EXPECT_EQ(state, expected);
    }
    EXPECT_EQ(parseErrorOf(*document).code == 0, isGood);
    EXPECT_EQ(xmlOf(*document).empty(), !isGood);
  }
}

}  // namespace
}  // namespace quillon::test
