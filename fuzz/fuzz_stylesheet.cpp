// The header of a hostile object in a user's stylesheet, or hostile XML in the place of the header:
// the first byte chooses which, and the stylesheet. The same input gives the same text, and a
// failure a sentence.
#include <array>
#include <cstdlib>

#include "dicomobjects/dicom_util.h"
#include "dicomobjects/xml_document.h"
#include "foundation/text.h"
#include "input_parts.h"
#include "quiet.h"
#include "scratch_file.h"

namespace quillon {
namespace {

using fuzz::require;

// What users do with values: they become names of sort keys, attributes, comments, instructions,
// numbers, parts of texts, text that is not escaped.
constexpr std::string_view kHead =
    "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>";
constexpr std::string_view kTail = "</xsl:stylesheet>";
constexpr std::array<std::string_view, 7> kSheets{
    "<xsl:output method='html'/><xsl:template match='/'><table><xsl:for-each select='//*'>"
    "<xsl:sort select='.'/><tr title='{.}'><td><xsl:value-of select='.'/></td></tr>"
    "</xsl:for-each></table></xsl:template>",
    "<xsl:output method='xml' indent='yes'/><xsl:template match='@*|node()'><xsl:copy>"
    "<xsl:apply-templates select='@*|node()'/></xsl:copy></xsl:template>",
    "<xsl:output method='text'/><xsl:template match='/'><xsl:for-each select='//*[text()]'>"
    "<xsl:value-of select=\"concat(name(),'=',normalize-space(.),'|',substring-before(.,'^'),'|',"
    "translate(.,'^',' '),'|',string-length(.),'|',substring(.,number(.),2))\"/>"
    "</xsl:for-each></xsl:template>",
    "<xsl:output method='xml' cdata-section-elements='v'/><xsl:template match='/'><r>"
    "<xsl:for-each select='//*[not(*)]'><v><xsl:value-of select='.'/></v><xsl:comment>"
    "<xsl:value-of select='.'/></xsl:comment><xsl:processing-instruction name='p'>"
    "<xsl:value-of select='.'/></xsl:processing-instruction></xsl:for-each></r></xsl:template>",
    "<xsl:output method='text'/><xsl:key name='k' match='*' use='.'/><xsl:template match='/'>"
    "<xsl:for-each select='//*[not(*)]'><xsl:value-of select=\"count(key('k',.))\"/>"
    "<xsl:value-of select=\"format-number(.,'#,##0.00')\"/><xsl:number value='string-length(.)' "
    "format='i'/></xsl:for-each><xsl:value-of select='sum(//*[not(*)])'/></xsl:template>",
    "<xsl:output method='html'/><xsl:template match='/'><p><xsl:value-of select='.' "
    "disable-output-escaping='yes'/></p></xsl:template>",
    "<xsl:output method='xml'/><xsl:template match='/'><r><xsl:for-each select='//*[not(*)]'>"
    "<xsl:element name='{.}'/><xsl:element name='x'><xsl:attribute name='{.}'>1</xsl:attribute>"
    "</xsl:element></xsl:for-each></r></xsl:template>",
};

CXmlDocument& sheet(std::size_t number) {
  static std::array<CXmlDocument, kSheets.size() + 1> sheets;
  CXmlDocument& one = sheets[number];
  static std::array<bool, kSheets.size() + 1> isLoaded{};
  if (std::exchange(isLoaded[number], true)) return one;
  require(one.Create());
  if (number == kSheets.size()) {
    require(
        one.SetCurrentXMLDocumentFromLocation(OLESTR("") QUILLON_STYLESHEETS "/html.xsl", false));
    return one;
  }
  std::string text(kHead);
  text.append(kSheets[number]).append(kTail);
  require(one.SetCurrentXMLDocument(Text(text.begin(), text.end()), false));
  return one;
}

void transform(const Text& xml, std::size_t number, bool mustLoad) {
  CXmlDocument document;
  require(document.Create());
  if (!document.SetCurrentXMLDocument(xml, false)) {
    require(!mustLoad && !document.ErrorMessage().empty());
    return;
  }
  Text out;
  Text again;
  const bool isDone = document.TransformXMLDocument(sheet(number), out, false);
  require(isDone || (out.empty() && !document.ErrorMessage().empty()));
  require(document.TransformXMLDocument(sheet(number), again, false) == isDone && again == out);
}

}  // namespace
}  // namespace quillon

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  static const bool silenced = fuzz::quiet();
  (void)silenced;
  fuzz::InputParts parts(data, size);
  const unsigned choice = parts.byte();
  const std::size_t number = choice / 4 % (kSheets.size() + 1);
  if ((choice & 1U) != 0) {
    transform(WidenText(parts.rest(), CP_UTF8), number, /*mustLoad=*/false);
    return 0;
  }
  const fuzz::ScratchFile scratch(reinterpret_cast<const std::uint8_t*>(parts.rest().data()),
                                  parts.rest().size());
  const std::string path = scratch.path();
  CDicomUtil file;
  if (!file.ReadFile(Text(path.begin(), path.end()), /*deferPixelData=*/true)) return 0;
  Text xml;
  const HeaderOptions options{(choice & 2U) != 0, {}};
  if (!file.GetHeaderXml(xml, 100, /*includePixelData=*/false, options)) return 0;
  transform(xml, number, /*mustLoad=*/true);
  return 0;
}
