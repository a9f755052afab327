// One XML document of the platform's XML library: loaded from text, a path or an http(s) URL, and
// transformed with a stylesheet that is such a document too.
//
// Operations answer false with one sentence: the parser's own reason where it has one. A document
// that could not be created makes every later operation fail.
#pragma once

#include "foundation/com_base.h"
#include "platform/xml.h"

namespace quillon {

class CXmlDocument : public CComBase {
 public:
  CXmlDocument();
  ~CXmlDocument() override;

  // True when the document exists, also from an earlier call.
  [[nodiscard]] bool Create();
  // Makes no call for the value that was set last (false for a new document).
  [[nodiscard]] bool SetAsynchronous(bool flag);
  [[nodiscard]] bool SetCurrentXMLDocument(TextView xmlText, bool async);
  // A location that starts with "http://", "HTTP://", "https://" or "HTTPS://" is fetched, any
  // other is left to the XML library (a path, a UNC name, ...).
  [[nodiscard]] bool SetCurrentXMLDocumentFromLocation(TextView location, bool async);
  [[nodiscard]] bool SetCurrentXMLDocumentViaHTTP(TextView url, bool async);
  // The result as text, which can be empty. On failure out is empty.
  [[nodiscard]] bool TransformXMLDocument(const CXmlDocument& stylesheet, Text& out, bool async);
  [[nodiscard]] bool GetParseErrorCode(LONG& code);  // -1 when it cannot be read
  [[nodiscard]] bool GetParseErrorText(Text& out);

 private:
  template <typename Call>
  [[nodiscard]] bool Guarded(UINT threwId, UINT failedId, TextView argument, TextView methodName,
                             const Call& call);
  [[nodiscard]] IXMLDOMDocument& Document() const;
  [[nodiscard]] ComPtr<IXMLDOMParseError> ParseError();
  // Throws what the call failed with.
  void Require(HRESULT result);
  [[nodiscard]] bool FinishLoad(HRESULT result, VARIANT_BOOL isSuccessful, UINT failedId,
                                TextView argument);
  [[nodiscard]] bool FailWithReason(HRESULT result, UINT failedId, TextView argument);

  ComPtr<IXMLDOMDocument> document_;
  bool asynchronous_ = false;
  bool isAsynchronousKnown_ = false;  // whether the document was ever told
  bool created_ = false;
};

}  // namespace quillon
