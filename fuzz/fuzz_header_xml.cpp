// A whole file on its way to a reader: parsed, written as XML, which must be well formed whatever
// its values hold, and that made into text by the stylesheet that ships.
#include <cstdlib>

#include "dicomobjects/dicom_util.h"
#include "dicomobjects/xml_document.h"
#include "foundation/text.h"
#include "quiet.h"
#include "scratch_file.h"

namespace quillon {
namespace {

CXmlDocument& textStylesheet() {
  static CXmlDocument stylesheet;
  static const bool isLoaded =
      stylesheet.Create() && stylesheet.SetCurrentXMLDocumentFromLocation(
                                 OLESTR("") QUILLON_STYLESHEETS "/text.xsl", false);
  if (!isLoaded) std::abort();
  return stylesheet;
}

void readOut(const std::string& path, std::uint32_t maxValues, bool includePixelData,
             const HeaderOptions& options) {
  CDicomUtil file;
  if (!file.ReadFile(Text(path.begin(), path.end()), !includePixelData)) return;
  Text xml;
  if (!file.GetHeaderXml(xml, maxValues, includePixelData, options)) return;
  CXmlDocument document;
  if (!document.Create() || !document.SetCurrentXMLDocument(xml, false)) std::abort();
  Text text;
  if (!document.TransformXMLDocument(textStylesheet(), text, false)) std::abort();
}

}  // namespace
}  // namespace quillon

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  static const bool silenced = fuzz::quiet();
  (void)silenced;
  const fuzz::ScratchFile file(data, size);
  readOut(file.path(), 100, /*includePixelData=*/false, {});
  readOut(file.path(), 3, /*includePixelData=*/true, {});
  readOut(file.path(), 3, /*includePixelData=*/false, {/*currentPractice=*/true, {}});
  return 0;
}
