#include "pages/page_stylesheets.h"

#include "dicomobjects/dicom_util.h"
#include "foundation/file_util.h"
#include "shipped_stylesheets.h"

namespace quillon {

namespace {

Text Below(const Text& directory, const OLECHAR* name) {
  Text path = directory;
  if (!path.ends_with(OLESTR('\\')) && !path.ends_with(OLESTR('/'))) path += OLESTR('\\');
  return path += name;
}

}  // namespace

PageStylesheets::PageStylesheets() { SetClassName(OLESTR("CDicomDirProcessor")); }

bool PageStylesheets::FailAt(const Text& location, TextView reason) {
  return Fail(kMsgPageStylesheetUnusable, {location, reason});
}

bool PageStylesheets::Load(const Text& directory) {
  bool isFound = directory.empty();
  if (!LoadOne(directory, kPageStylesheetName, kShippedPagesXsl, pages_, isFound) ||
      !LoadOne(directory, kHeaderStylesheetName, kShippedHtmlXsl, header_, isFound) ||
      !LoadStyle(directory, isFound)) {
    return false;
  }
  return isFound || Fail(kMsgPageStylesheetsMissing, {directory});
}

bool PageStylesheets::LoadOne(const Text& directory, const OLECHAR* name, const char* shipped,
                              Stylesheet& stylesheet, bool& isFound) {
  CFileUtil files;
  const Text path = directory.empty() ? Text() : Below(directory, name);
  if (path.empty() || !files.PathExists(path)) {
    return stylesheet.document.SetCurrentXMLDocument(WidenText(shipped, CP_UTF8),
                                                     /*async=*/false) ||
           FailAs(stylesheet.document);
  }
  isFound = true;
  stylesheet.location = path;
  return stylesheet.document.SetCurrentXMLDocumentFromLocation(path, /*async=*/false) ||
         FailAt(path, stylesheet.document.ErrorMessage());
}

bool PageStylesheets::LoadStyle(const Text& directory, bool& isFound) {
  CFileUtil files;
  const Text path = directory.empty() ? Text() : Below(directory, kPageStyleSourceName);
  if (path.empty() || !files.PathExists(path)) {
    style_ = kShippedPagesCss;
    return true;
  }
  isFound = true;
  CBuffer bytes;
  std::uint64_t sizeBytes = 0;
  if (!files.GetFileSize64(path, sizeBytes)) return FailAs(files);
  if (!CDicomUtil::ReadUNCToBuffer(path, 0, 0, bytes)) return Fail(kMsgCannotOpenFile, {path});
  style_.assign(reinterpret_cast<const char*>(bytes.GetData()), bytes.GetSize());
  return true;
}

bool PageStylesheets::RenderPage(const Text& xml, std::string& page) {
  return Render(pages_, xml, page);
}

bool PageStylesheets::RenderHeader(const Text& xml, std::string& page) {
  return Render(header_, xml, page);
}

bool PageStylesheets::Render(const Stylesheet& stylesheet, const Text& xml, std::string& page) {
  page.clear();
  CXmlDocument document;
  Text result;
  if (!document.SetCurrentXMLDocument(xml, /*async=*/false) ||
      !document.TransformXMLDocument(stylesheet.document, result, /*async=*/false)) {
    return stylesheet.location.empty() ? FailAs(document, kMsgOperationFailed)
                                       : FailAt(stylesheet.location, document.ErrorMessage());
  }
  page = NarrowText(result, CP_UTF8);
  page.shrink_to_fit();  // pages wait to be written
  return !page.empty() || FailAt(stylesheet.location, OLESTR("It makes an empty page."));
}

}  // namespace quillon
