#include "xml_fixture.h"

namespace quillon::test {

CallText::CallText(std::string_view utf8) {
  const auto bytes = static_cast<int>(utf8.size());
  const int units =
      bytes == 0 ? 0 : MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
  text_ = SysAllocStringLen(nullptr, static_cast<UINT>(units));
  if (units > 0) MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, text_, units);
}

std::string CallText::utf8() const {
  const auto units = static_cast<int>(SysStringLen(text_));
  if (units == 0) return {};
  const int bytes = WideCharToMultiByte(CP_UTF8, 0, text_, units, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text_, units, text.data(), bytes, nullptr, nullptr);
  return text;
}

ComPtr<IXMLDOMDocument> XmlLayerTest::newDocument() {
  ComPtr<IXMLDOMDocument> document;
  EXPECT_EQ(CoCreateInstance(kClsidDomDocument, nullptr, CLSCTX_ALL, IID_IXMLDOMDocument,
                             document.PutVoid()),
            S_OK);
  EXPECT_EQ(document->put_async(VARIANT_FALSE), S_OK);
  return document;
}

HRESULT XmlLayerTest::loadText(IXMLDOMDocument& document, std::u16string_view text) {
  VARIANT_BOOL isLoaded = 7;
  const HRESULT result = document.loadXML(CallText(text), &isLoaded);
  EXPECT_EQ(isLoaded, result == S_OK ? VARIANT_TRUE : VARIANT_FALSE);
  return result;
}

HRESULT XmlLayerTest::loadText(IXMLDOMDocument& document, std::string_view utf8) {
  const CallText text(utf8);
  return loadText(document, std::u16string_view(text, SysStringLen(text)));
}

HRESULT XmlLayerTest::loadFile(IXMLDOMDocument& document, std::string_view location) {
  const CallText text(location);
  VARIANT source;
  VariantInit(&source);
  source.vt = VT_BSTR;
  source.bstrVal = text;
  VARIANT_BOOL isLoaded = 7;
  const HRESULT result = document.load(source, &isLoaded);
  EXPECT_EQ(isLoaded, result == S_OK ? VARIANT_TRUE : VARIANT_FALSE);
  return result;
}

ComPtr<IXMLDOMDocument> XmlLayerTest::documentOfText(std::string_view utf8) {
  ComPtr<IXMLDOMDocument> document = newDocument();
  EXPECT_EQ(loadText(*document, utf8), S_OK) << parseErrorOf(*document).reason;
  return document;
}

ComPtr<IXMLDOMDocument> XmlLayerTest::documentOfFile(const std::string& location) {
  ComPtr<IXMLDOMDocument> document = newDocument();
  EXPECT_EQ(loadFile(*document, location), S_OK) << parseErrorOf(*document).reason;
  return document;
}

ParseErrorValues XmlLayerTest::parseErrorOf(IXMLDOMDocument& document) {
  ParseErrorValues values;
  ComPtr<IXMLDOMParseError> error;
  EXPECT_EQ(document.get_parseError(error.Put()), S_OK);
  CallText reason;
  CallText sourceLine;
  CallText url;
  EXPECT_EQ(error->get_errorCode(&values.code), S_OK);
  EXPECT_EQ(error->get_line(&values.line), S_OK);
  EXPECT_EQ(error->get_linepos(&values.column), S_OK);
  EXPECT_EQ(error->get_filepos(&values.offset), S_OK);
  EXPECT_EQ(error->get_reason(reason.put()), S_OK);
  EXPECT_EQ(error->get_srcText(sourceLine.put()), S_OK);
  EXPECT_EQ(error->get_url(url.put()), S_OK);
  values.reason = reason.utf8();
  values.sourceLine = sourceLine.utf8();
  values.url = url.utf8();
  return values;
}

std::string XmlLayerTest::xmlOf(IXMLDOMDocument& document) {
  CallText xml;
  EXPECT_EQ(document.get_xml(xml.put()), S_OK);
  return xml.utf8();
}

std::string XmlLayerTest::takeErrorDescription() {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Put()) != S_OK) return {};
  CallText text;
  EXPECT_EQ(info->GetDescription(text.put()), S_OK);
  return text.utf8();
}

TransformOutcome XmlLayerTest::transform(IXMLDOMDocument& document, IXMLDOMDocument& stylesheet) {
  SetErrorInfo(0, nullptr);
  TransformOutcome outcome;
  CallText text;
  outcome.result = document.transformNode(&stylesheet, text.put());
  outcome.text = text.utf8();
  outcome.description = takeErrorDescription();
  outcome.parseError = parseErrorOf(document);
  return outcome;
}

}  // namespace quillon::test
