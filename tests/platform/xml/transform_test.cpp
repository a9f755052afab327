#include <sys/stat.h>

#include <array>
#include <cstdio>
#include <memory>

#include "xml_fixture.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

class TransformTest : public XmlLayerTest {};

// A stylesheet with one template for the root, which holds body.
std::string sheetOf(const std::string& body, const std::string& top = "") {
  return "<xsl:stylesheet version=\"1.0\" xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\""
         " xmlns:exsl=\"http://exslt.org/common\" xmlns:msxsl=\"urn:schemas-microsoft-com:xslt\""
         " xmlns:saxon=\"http://icl.com/saxon\" xmlns:xt=\"http://www.jclark.com/xt\""
         " xmlns:redirect=\"org.apache.xalan.xslt.extensions.Redirect\" xmlns:other=\"urn:other\""
         " extension-element-prefixes=\"exsl saxon xt redirect msxsl\""
         " exclude-result-prefixes=\"other\">" +
         top + "<xsl:template match=\"/\">" + body + "</xsl:template></xsl:stylesheet>";
}

// Where an instruction that is not known is no fault by itself.
std::string ofVersion2(const std::string& body) {
  std::string sheet = sheetOf(body);
  return sheet.replace(sheet.find("1.0"), 3, "2.0");
}

std::string outputOf(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
  std::string output;
  std::array<char, 4096> buffer;
  std::size_t got = 0;
  while (pipe != nullptr && (got = std::fread(buffer.data(), 1, buffer.size(), pipe.get())) > 0) {
    output.append(buffer.data(), got);
  }
  return output;
}

TEST_F(TransformTest, TheResultIsThatOfXsltproc) {
  if (std::system("xsltproc --version >/dev/null 2>&1") != 0) {
    GTEST_SKIP() << "xsltproc is not installed";
  }
  const fs::path sheets = fs::path(XML_TEST_STYLESHEETS);
  const std::string header = (sheets / "header.xml").string();
  const ComPtr<IXMLDOMDocument> document = documentOfFile(header);
  for (const char* name : {"keys.xsl", "page.xsl", "functions.xsl"}) {
    SCOPED_TRACE(name);
    const std::string path = (sheets / name).string();
    const std::string expected = outputOf("xsltproc '" + path + "' '" + header + "'");
    ASSERT_FALSE(expected.empty());
    const ComPtr<IXMLDOMDocument> stylesheet = documentOfFile(path);
    // Twice: neither document is changed by it.
    for (int run = 0; run < 2; ++run) {
      const TransformOutcome outcome = transform(*document, *stylesheet);
      EXPECT_EQ(outcome.result, S_OK) << outcome.description;
      EXPECT_EQ(outcome.parseError.code, 0);
      EXPECT_EQ(outcome.text, expected);
    }
  }
}

TEST_F(TransformTest, TheTextIsWhatTheStylesheetAsksFor) {
  struct Case {
    const char* what;
    std::string sheet;
    std::string text;
  };
  const std::string latin = "<xsl:output method=\"xml\" encoding=\"ISO-8859-1\"/>";
  const std::string tree = "<xsl:variable name=\"t\"><p>7</p></xsl:variable>";
  const Case cases[] = {
      {"nothing", sheetOf("", "<xsl:output method=\"text\"/>"), ""},
      {"another encoding, of which the text has none",
       sheetOf("<a>\xC3\xA9\xE2\x82\xAC</a>", latin),
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a>\xC3\xA9\xE2\x82\xAC</a>\n"},
      {"the node-set of Windows",
       sheetOf(tree + "<xsl:value-of select=\"msxsl:node-set($t)/p + 1\"/>",
               "<xsl:output method=\"text\"/>"),
       "8"},
      {"the stylesheet itself as a document",
       sheetOf("<xsl:value-of select=\"count(document('')/*/*)\"/>",
               "<xsl:output method=\"text\"/>"),
       "2"},
      {"a message that ends nothing",
       sheetOf("<xsl:message>hello</xsl:message>x", "<xsl:output method=\"text\"/>"), "x"},
      {"a way round an instruction of a later language",
       ofVersion2("<xsl:foo><xsl:fallback>x</xsl:fallback></xsl:foo>"
                  "<xsl:if test=\"0\"><xsl:foo/></xsl:if>"),
       "<?xml version=\"1.0\"?>\nx\n"},
      {"a character beyond 16 bits", sheetOf("\xF0\x9F\x98\x80", "<xsl:output method=\"text\"/>"),
       "\xF0\x9F\x98\x80"},
  };
  const ComPtr<IXMLDOMDocument> document = documentOfText("<a/>");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const TransformOutcome outcome = transform(*document, *documentOfText(c.sheet));
    EXPECT_EQ(outcome.result, S_OK) << outcome.description;
    EXPECT_EQ(outcome.text, c.text);
  }
}

TEST_F(TransformTest, AFailureSaysWhyInBothPlaces) {
  writeText(dir_ / "work/broken.xml", "<a>");
  const std::string here = (dir_ / "work").string();
  struct Case {
    const char* what;
    std::string sheet;
    std::string reason;
  };
  const std::string place = " (" + here + "/sheet.xsl, line 1).";
  const Case cases[] = {
      {"no stylesheet", "<a/>", "document is not a stylesheet" + place},
      {"an unknown function", sheetOf("<xsl:value-of select=\"other:f()\"/>"),
       "function f not found" + place},
      {"a broken expression", sheetOf("<xsl:value-of select=\"]\"/>"),
       "Invalid expression" + place},
      {"a broken pattern", sheetOf("", "<xsl:template match=\"//[\"/>"), "Name expected" + place},
      {"attributes that use themselves",
       sheetOf("<b xsl:use-attribute-sets=\"s\"/>",
               "<xsl:attribute-set name=\"s\" use-attribute-sets=\"s\"/>"),
       "xsl:attribute-set : use-attribute-sets recursion detected on s."},
      {"an unknown instruction", sheetOf("<b/><xsl:valueof select=\".\"/>"),
       "unknown xsl:valueof" + place},
      {"one that is never reached", sheetOf("<xsl:if test=\"0\"><xsl:foo/></xsl:if>x"),
       "unknown xsl:foo" + place},
      {"one of a later language", ofVersion2("<b/><xsl:for-each-group select=\".\"/>"),
       "unknown xsl:for-each-group" + place},
      {"a missing template", sheetOf("<xsl:call-template name=\"none\"/>"),
       "The called template 'none' was not found" + place},
      {"its own word", sheetOf("<xsl:message terminate=\"yes\">No patient\nhere</xsl:message>"),
       "No patient here."},
      {"an error after its own word",
       sheetOf("<xsl:message>hello</xsl:message><xsl:value-of select=\"other:f()\"/>"),
       "function f not found" + place},
      {"a document that is not there", sheetOf("<xsl:value-of select=\"document('none.xml')\"/>"),
       "The file \"" + here +
           "/none.xml\" cannot be read: The system cannot find the file specified."},
      {"a document that is not XML", sheetOf("<xsl:value-of select=\"document('broken.xml')\"/>"),
       "The file \"" + here +
           "/broken.xml\" cannot be read as XML: Premature end of data in tag a line 1 (line 1, "
           "column 4)."},
      {"an import that is not there", sheetOf("", "<xsl:import href=\"none.xsl\"/>"),
       "The file \"" + here +
           "/none.xsl\" cannot be read: The system cannot find the file specified."},
      {"an include that is not XML", sheetOf("", "<xsl:include href=\"broken.xml\"/>"),
       "The file \"" + here +
           "/broken.xml\" cannot be read as XML: Premature end of data in tag a line 1 (line 1, "
           "column 4)."},
      {"a document of the network",
       sheetOf("<xsl:value-of select=\"document('http://127.0.0.1:1/x')\"/>"),
       "The location \"http://127.0.0.1:1/x\" is not that of a file."},
  };
  const ComPtr<IXMLDOMDocument> document = documentOfText("<a/>");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    writeText("sheet.xsl", c.sheet);
    const TransformOutcome outcome = transform(*document, *documentOfFile("sheet.xsl"));
    EXPECT_EQ(outcome.result, E_FAIL);
    EXPECT_EQ(outcome.text, "");
    EXPECT_EQ(outcome.description, c.reason);
    EXPECT_EQ(outcome.parseError.reason, c.reason);
    EXPECT_NE(outcome.parseError.code, 0);
    EXPECT_EQ(outcome.parseError.url, "sheet.xsl");
  }
  const ComPtr<IXMLDOMDocument> good = documentOfText(sheetOf("x"));
  EXPECT_EQ(transform(*document, *good).parseError.code, 0) << "the failure is forgotten";
}

TEST_F(TransformTest, OnlyRegularFilesAreReferredTo) {
  const std::string here = (dir_ / "work").string();
  ASSERT_EQ(::mkfifo((here + "/pipe").c_str(), 0600), 0);
  const ComPtr<IXMLDOMDocument> document = documentOfText("<a/>");
  for (const std::string& name : {here + "/pipe", here, std::string("/dev/zero")}) {
    const std::string reason =
        "The file \"" + name + "\" cannot be read: it is not a regular file.";
    for (const std::string& sheet : {sheetOf("<xsl:value-of select=\"document('" + name + "')\"/>"),
                                     sheetOf("", "<xsl:import href=\"" + name + "\"/>"),
                                     sheetOf("", "<xsl:include href=\"" + name + "\"/>")}) {
      SCOPED_TRACE(sheet);
      writeText("sheet.xsl", sheet);
      EXPECT_EQ(transform(*document, *documentOfFile("sheet.xsl")).description, reason);
    }
  }
}

TEST_F(TransformTest, WhatAStylesheetReadsCountsAsItsMemory) {
  constexpr std::int64_t kMemory = std::int64_t{32} << 20;
  const platform::testing::XmlLimitsScope limits;
  platform::testing::SubstituteTransformLimits(kMemory, 600'000, 1UL << 40);
  struct Case {
    const char* what;
    std::string piece;
    std::size_t bytes;
  };
  // The others fit as text, but not as a tree.
  const Case cases[] = {{"a long text", "xxxxxxxx", std::size_t{33} << 20},
                        {"many comments", "<!---->", std::size_t{12} << 20},
                        {"many elements", "<b/>", std::size_t{12} << 20}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    std::string xml = "<a>";
    while (xml.size() < c.bytes) xml += c.piece;
    writeText(dir_ / "work/big.xml", xml + "</a>");
    writeText("sheet.xsl", sheetOf("<xsl:value-of select=\"count(document('big.xml'))\"/>"));
    EXPECT_EQ(transform(*documentOfText("<a/>"), *documentOfFile("sheet.xsl")).description,
              "The transform needs too much memory.");
  }
}

// What comes from a server comes as text.
TEST_F(TransformTest, AStylesheetThatIsNoFileReadsNone) {
  writeText("near.xml", "<a>SECRET</a>");
  writeText("near.xsl", sheetOf("SECRET"));
  const std::string here = (dir_ / "work").string();
  const std::string remote = "The stylesheet does not come from a file, so it cannot refer to \"";
  const ComPtr<IXMLDOMDocument> document = documentOfText("<a/>");
  for (const std::string& at : {std::string(), here + "/", "file://" + here + "/"}) {
    for (const std::string& form :
         {sheetOf("<xsl:value-of select=\"document('" + at + "near.xml')\"/>"),
          sheetOf("<xsl:value-of select=\"document('" + at + "near.xml', /)\"/>"),
          sheetOf("", "<xsl:import href=\"" + at + "near.xsl\"/>"),
          sheetOf("", "<xsl:include href=\"" + at + "near.xsl\"/>")}) {
      SCOPED_TRACE(form);
      const TransformOutcome outcome = transform(*document, *documentOfText(form));
      EXPECT_EQ(outcome.text, "");
      EXPECT_EQ(outcome.description.substr(0, remote.size() + at.size()), remote + at);
    }
  }
  // Relative to the transformed document, which has no place either.
  writeText("sheet.xsl", sheetOf("<xsl:value-of select=\"document('near.xml', /)\"/>"));
  EXPECT_EQ(transform(*document, *documentOfFile("sheet.xsl")).description,
            "The document that refers to \"near.xml\" does not come from a file, so the reference "
            "has to be a whole path.");
  writeText("sheet.xsl", sheetOf("<xsl:value-of select=\"document('near.xml')\"/>"));
  EXPECT_NE(transform(*document, *documentOfFile("sheet.xsl")).text.find("SECRET"),
            std::string::npos);
}

TEST_F(TransformTest, DocumentsThatHoldNothingAreNotTransformed) {
  const ComPtr<IXMLDOMDocument> full = documentOfText(sheetOf("x"));
  EXPECT_EQ(transform(*newDocument(), *full).description, "The document is empty.");
  EXPECT_EQ(transform(*full, *newDocument()).description, "The stylesheet is empty.");
  BSTR text = nullptr;
  EXPECT_EQ(full->transformNode(nullptr, &text), E_INVALIDARG);
}

TEST_F(TransformTest, NothingIsWritten) {
  const std::string at = (dir_ / "work/OUT").string();
  const std::string targets[] = {
      "OUT", at, "file://" + at, "new/OUT", "http://127.0.0.1:1/OUT", "ftp://127.0.0.1:1/OUT"};
  const std::array<const char*, 2> forms[] = {
      {"<exsl:document href=\"", "</exsl:document>"},
      {"<xsl:document href=\"", "</xsl:document>"},
      {"<saxon:output href=\"", "</saxon:output>"},
      {"<saxon:output file=\"", "</saxon:output>"},
      {"<redirect:write file=\"", "</redirect:write>"},
      {"<xt:document href=\"", "</xt:document>"},
  };
  const ComPtr<IXMLDOMDocument> document = documentOfText("<a/>");
  for (const std::string& target : targets) {
    for (const auto& [open, close] : forms) {
      SCOPED_TRACE(open + target);
      const std::string sheet = sheetOf(open + target + "\" method=\"text\">x" + close);
      const TransformOutcome outcome = transform(*document, *documentOfText(sheet));
      EXPECT_EQ(outcome.result, E_FAIL);
      EXPECT_NE(outcome.description.find(" refused (in element "), std::string::npos)
          << outcome.description;
      EXPECT_TRUE(fs::is_empty(dir_ / "work"));
    }
  }
  const ComPtr<IXMLDOMDocument> unknown =
      documentOfText(sheetOf("<xsl:result-document href=\"OUT\">x</xsl:result-document>"));
  transform(*document, *unknown);
  EXPECT_TRUE(fs::is_empty(dir_ / "work"));
}

TEST_F(TransformTest, ExternalEntitiesOfAStylesheetAreNotRead) {
  writeText("secret.txt", "TOPSECRET");
  writeText("inner.xsl", "<!DOCTYPE x [<!ENTITY e SYSTEM 'secret.txt'>]>" + sheetOf("&e;"));
  writeText("outer.xsl", sheetOf("", "<xsl:import href=\"inner.xsl\"/>"));
  const TransformOutcome outcome = transform(*documentOfText("<a/>"), *documentOfFile("outer.xsl"));
  EXPECT_EQ(outcome.result, E_FAIL);
  EXPECT_EQ(outcome.text, "");
  EXPECT_NE(outcome.description.find("secret.txt\" is not read."), std::string::npos)
      << outcome.description;
}

// Each of these would need far more than the machine has, or would never end.
TEST_F(TransformTest, AStylesheetWithoutEndIsStopped) {
  const std::string endless =
      "<xsl:template name=\"r\"><xsl:param name=\"d\" select=\"'abcd'\"/>"
      "<xsl:call-template name=\"r\"><xsl:with-param name=\"d\" select=\"";
  const std::string end = "\"/></xsl:call-template></xsl:template>";
  const std::string call = "<xsl:call-template name=\"r\"/>";
  const std::string twice =
      "<xsl:template name=\"r\"><xsl:param name=\"d\" select=\"0\"/><xsl:if test=\"$d &lt; 900\">"
      "<xsl:call-template name=\"r\"><xsl:with-param name=\"d\" select=\"$d + 1\"/>"
      "</xsl:call-template>"
      "<xsl:call-template name=\"r\"><xsl:with-param name=\"d\" select=\"$d + 1\"/>"
      "</xsl:call-template></xsl:if></xsl:template>";
  const std::string trees =
      "<xsl:template name=\"r\"><xsl:param name=\"d\" select=\"/\"/>"
      "<xsl:variable name=\"t\"><xsl:copy-of select=\"$d\"/><xsl:copy-of select=\"$d\"/>"
      "</xsl:variable><xsl:call-template name=\"r\"><xsl:with-param name=\"d\""
      " select=\"exsl:node-set($t)\"/></xsl:call-template></xsl:template>";
  constexpr std::int64_t kMemory = std::int64_t{64} << 20;
  constexpr long kLongMilliseconds = 600'000;
  constexpr unsigned long kManySteps = 1UL << 40;
  struct Case {
    const char* what;
    std::string sheet;
    long milliseconds;
    unsigned long steps;
    std::string reason;
  };
  const Case cases[] = {
      {"recursion", sheetOf(call, endless + "$d" + end), kLongMilliseconds, kManySteps,
       "A potential infinite template recursion was detected (in element call-template)."},
      {"recursion through matching",
       sheetOf("<xsl:apply-templates select=\"/\" mode=\"m\"/>",
               "<xsl:template match=\"/\" mode=\"m\"><xsl:apply-templates select=\"/\""
               " mode=\"m\"/></xsl:template>"),
       kLongMilliseconds, kManySteps,
       "A potential infinite template recursion was detected (in element apply-templates)."},
      {"a text that doubles", sheetOf(call, endless + "concat($d, $d)" + end), kLongMilliseconds,
       kManySteps, "The transform needs too much memory."},
      {"a tree that doubles", sheetOf(call, trees), kLongMilliseconds, kManySteps,
       "The transform needs too much memory."},
      {"two to the power of 900 calls, by the clock", sheetOf(call, twice), 300, kManySteps,
       "The transform takes too long."},
      {"two to the power of 900 calls, by their number", sheetOf(call, twice), kLongMilliseconds,
       100'000, "The transform takes too many steps."},
      {"an expression over everything for everything",
       sheetOf("<xsl:value-of select=\"count(//*[//*[//*[//*[//*[//*]]]]])\"/>"), kLongMilliseconds,
       100'000, "The transform takes too many steps."},
  };
  std::string many = "<a>";
  for (int i = 0; i < 1000; ++i) many += "<b/>";
  const ComPtr<IXMLDOMDocument> document = documentOfText(many + "</a>");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const platform::testing::XmlLimitsScope limits;
    platform::testing::SubstituteTransformLimits(kMemory, c.milliseconds, c.steps);
    const TransformOutcome outcome = transform(*document, *documentOfText(c.sheet));
    EXPECT_EQ(outcome.result, E_FAIL);
    EXPECT_EQ(outcome.text, "");
    EXPECT_EQ(outcome.description, c.reason);
  }
}

}  // namespace
}  // namespace quillon::test
