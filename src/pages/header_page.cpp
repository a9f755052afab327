#include "pages/header_page.h"

#include "dicomobjects/dicom_util.h"

namespace quillon {

namespace {

constexpr std::uint32_t kMostValues = 100;
// Some objects have a header of hundreds of megabytes: no browser shows a page of that.
constexpr std::size_t kMostXmlUnits = std::size_t{4} << 20;

}  // namespace

bool MakeHeaderPage(const Text& path, const std::string& characterSet, const Text& above,
                    PageStylesheets& stylesheets, std::string& page) {
  page.clear();
  CDicomUtil util;
  HeaderOptions options;
  options.currentPractice = true;
  options.characterSet = characterSet;
  options.above = above;
  Text xml;
  return util.ReadFile(path, /*deferPixelData=*/true) &&
         util.GetHeaderXml(xml, kMostValues, /*includePixelData=*/false, options) &&
         xml.size() <= kMostXmlUnits && stylesheets.RenderHeader(xml, page);
}

}  // namespace quillon
