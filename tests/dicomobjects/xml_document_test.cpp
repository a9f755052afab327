#include "dicomobjects/xml_document.h"

#include <gtest/gtest.h>

#include <string>

#include "support/system_sentence.h"
#include "support/temp_dir.h"
#include "support/text.h"

namespace quillon {
namespace {

constexpr const OLECHAR* kSheet =
    OLESTR("<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>")
        OLESTR("<xsl:output method='text'/><xsl:template match='/'><xsl:value-of select='a'/>")
            OLESTR("</xsl:template></xsl:stylesheet>");

std::string errorOf(const CXmlDocument& document) {
  return NarrowText(document.ErrorMessage(), CP_UTF8);
}

TEST(XmlDocuments, AreLoadedFromTextsAndFilesAndTransformed) {
  const test::TempDir dir;
  test::writeText(dir / "sheet.xsl", NarrowText(kSheet, CP_UTF8));
  CXmlDocument document;
  ASSERT_TRUE(document.SetCurrentXMLDocument(OLESTR("<a>Caf\u00E9 &amp; more</a>"), false));
  CXmlDocument sheet;
  ASSERT_TRUE(sheet.SetCurrentXMLDocumentFromLocation(test::WideOf(dir / "sheet.xsl"), false));
  Text out;
  EXPECT_TRUE(document.TransformXMLDocument(sheet, out, false)) << errorOf(document);
  EXPECT_EQ(out, OLESTR("Caf\u00E9 & more"));
  ASSERT_TRUE(document.SetCurrentXMLDocument(OLESTR("<b/>"), false));
  ASSERT_TRUE(sheet.SetCurrentXMLDocument(kSheet, false));
  EXPECT_TRUE(document.TransformXMLDocument(sheet, out, false));
  EXPECT_TRUE(out.empty());
}

TEST(XmlDocuments, GiveTheParsersReasonForWhatTheyCannotRead) {
  CXmlDocument document;
  ASSERT_FALSE(document.SetCurrentXMLDocument(OLESTR("<a><b></a>"), false));
  Text reason;
  ASSERT_TRUE(document.GetParseErrorText(reason));
  EXPECT_FALSE(reason.empty());
  EXPECT_EQ(document.ErrorMessage(), reason);
  LONG code = 0;
  EXPECT_TRUE(document.GetParseErrorCode(code));
  EXPECT_NE(code, 0);
}

TEST(XmlDocuments, SayWhyTheyCannotBeTransformed) {
  if (test::runsUnderWine())
    GTEST_SKIP() << "Wine's parser takes a broken stylesheet for a good one";
  CXmlDocument good;
  CXmlDocument noSheet;
  ASSERT_TRUE(good.SetCurrentXMLDocument(OLESTR("<a/>"), false));
  ASSERT_TRUE(noSheet.SetCurrentXMLDocument(
      OLESTR("<x:stylesheet version='1.0' "
             "xmlns:x='http://www.w3.org/1999/XSL/Transform'><x:nonsense/>")
          OLESTR("<x:template match='['/></x:stylesheet>"),
      false));
  Text out = OLESTR("before");
  EXPECT_FALSE(good.TransformXMLDocument(noSheet, out, false));
  EXPECT_TRUE(out.empty());
  EXPECT_FALSE(good.ErrorMessage().empty());
}

TEST(XmlDocuments, RefuseEmptyArguments) {
  CXmlDocument document;
  EXPECT_FALSE(document.SetCurrentXMLDocument({}, false));
  EXPECT_EQ(errorOf(document), "The given XML document is invalid.");
  EXPECT_FALSE(document.SetCurrentXMLDocumentFromLocation({}, false));
  EXPECT_EQ(errorOf(document), "The given XML document location is invalid.");
  EXPECT_FALSE(document.SetCurrentXMLDocumentViaHTTP({}, false));
  EXPECT_EQ(errorOf(document), "The given XML URL is invalid.");
}

}  // namespace
}  // namespace quillon
