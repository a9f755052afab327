// Calls of the XML library with UTF-8 in the place of BSTRs.
#pragma once

#include <string>
#include <string_view>

#include "layer_fixture.h"
#include "platform/testing.h"
#include "platform/xml.h"
#include "platform/xml_testing.h"

namespace quillon::test {

// Owns the text of a call; converts lone surrogates and back as the layer's file names do.
class CallText {
 public:
  explicit CallText(std::string_view utf8);
  explicit CallText(std::u16string_view units)
      : text_(SysAllocStringLen(units.data(), static_cast<UINT>(units.size()))) {}
  CallText() = default;
  ~CallText() { SysFreeString(text_); }
  CallText(const CallText&) = delete;
  CallText& operator=(const CallText&) = delete;

  operator BSTR() const { return text_; }
  BSTR* put() { return &text_; }
  [[nodiscard]] std::string utf8() const;

 private:
  BSTR text_ = nullptr;
};

struct ParseErrorValues {
  LONG code = 0;
  LONG line = 0;
  LONG column = 0;
  LONG offset = 0;
  std::string reason;
  std::string sourceLine;
  std::string url;
};

struct TransformOutcome {
  HRESULT result = E_UNEXPECTED;
  std::string text;
  std::string description;  // of the error object
  ParseErrorValues parseError;
};

class XmlLayerTest : public LayerTest {
 protected:
  XmlLayerTest() { CoInitialize(nullptr); }
  ~XmlLayerTest() override { CoUninitialize(); }

  static ComPtr<IXMLDOMDocument> newDocument();
  // Both answer what the call answered; success is S_OK with VARIANT_TRUE.
  static HRESULT loadText(IXMLDOMDocument& document, std::u16string_view text);
  static HRESULT loadText(IXMLDOMDocument& document, std::string_view utf8);
  static HRESULT loadFile(IXMLDOMDocument& document, std::string_view location);

  static ComPtr<IXMLDOMDocument> documentOfText(std::string_view utf8);
  static ComPtr<IXMLDOMDocument> documentOfFile(const std::string& location);

  static ParseErrorValues parseErrorOf(IXMLDOMDocument& document);
  static std::string xmlOf(IXMLDOMDocument& document);
  static TransformOutcome transform(IXMLDOMDocument& document, IXMLDOMDocument& stylesheet);
  static std::string takeErrorDescription();

  platform::testing::Scope substitutes_;
};

}  // namespace quillon::test
