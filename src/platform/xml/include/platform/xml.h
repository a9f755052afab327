// The XML library of the platform: DOM document with transform, HTTP request. Windows' own MSXML
// declarations there, the same in the order of their vtables on Linux. A new document loads
// asynchronously there and here: the load has only begun when it returns, and until get_readyState
// has answered 4 the document is E_PENDING. Requests are synchronous here, others E_NOTIMPL.
#pragma once

#include "platform/com.h"

#ifdef _WIN32
#include <msxml2.h>

#include "platform/win32/unclaim_names.h"
#endif

// MinGW's libraries hold an older class under the first name and no value for the others.
namespace quillon {
inline constexpr CLSID kClsidDomDocument = {
    0xF6D90F11, 0x9C73, 0x11D3, {0xB3, 0x2E, 0x00, 0xC0, 0x4F, 0x99, 0x0B, 0xB4}};
inline constexpr CLSID kClsidXmlHttp = {
    0xF6D90F16, 0x9C73, 0x11D3, {0xB3, 0x2E, 0x00, 0xC0, 0x4F, 0x99, 0x0B, 0xB4}};
inline constexpr IID kIidXmlHttpRequest = {
    0xED8C108D, 0x4349, 0x11D2, {0x91, 0xA4, 0x00, 0xC0, 0x4F, 0x79, 0x69, 0xE8}};
}  // namespace quillon

#ifndef _WIN32

enum DOMNodeType : INT {
  NODE_INVALID = 0,
  NODE_ELEMENT = 1,
  NODE_ATTRIBUTE = 2,
  NODE_TEXT = 3,
  NODE_CDATA_SECTION = 4,
  NODE_ENTITY_REFERENCE = 5,
  NODE_ENTITY = 6,
  NODE_PROCESSING_INSTRUCTION = 7,
  NODE_COMMENT = 8,
  NODE_DOCUMENT = 9,
  NODE_DOCUMENT_TYPE = 10,
  NODE_DOCUMENT_FRAGMENT = 11,
  NODE_NOTATION = 12,
};

struct IXMLDOMAttribute;
struct IXMLDOMCDATASection;
struct IXMLDOMComment;
struct IXMLDOMDocument;
struct IXMLDOMDocumentFragment;
struct IXMLDOMDocumentType;
struct IXMLDOMElement;
struct IXMLDOMEntityReference;
struct IXMLDOMImplementation;
struct IXMLDOMNamedNodeMap;
struct IXMLDOMNodeList;
struct IXMLDOMParseError;
struct IXMLDOMProcessingInstruction;
struct IXMLDOMText;

inline constexpr IID IID_IXMLDOMNode = {
    0x2933BF80, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
struct IXMLDOMNode : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_nodeName(BSTR* name) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_nodeValue(VARIANT* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_nodeValue(VARIANT value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_nodeType(DOMNodeType* type) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_parentNode(IXMLDOMNode** parent) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_childNodes(IXMLDOMNodeList** childList) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_firstChild(IXMLDOMNode** firstChild) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_lastChild(IXMLDOMNode** lastChild) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_previousSibling(IXMLDOMNode** previousSibling) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_nextSibling(IXMLDOMNode** nextSibling) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_attributes(IXMLDOMNamedNodeMap** attributeMap) = 0;
  virtual HRESULT STDMETHODCALLTYPE insertBefore(IXMLDOMNode* newChild, VARIANT refChild,
                                                 IXMLDOMNode** outNewChild) = 0;
  virtual HRESULT STDMETHODCALLTYPE replaceChild(IXMLDOMNode* newChild, IXMLDOMNode* oldChild,
                                                 IXMLDOMNode** outOldChild) = 0;
  virtual HRESULT STDMETHODCALLTYPE removeChild(IXMLDOMNode* childNode, IXMLDOMNode** oldChild) = 0;
  virtual HRESULT STDMETHODCALLTYPE appendChild(IXMLDOMNode* newChild,
                                                IXMLDOMNode** outNewChild) = 0;
  virtual HRESULT STDMETHODCALLTYPE hasChildNodes(VARIANT_BOOL* hasChild) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ownerDocument(IXMLDOMDocument** xMLDOMDocument) = 0;
  virtual HRESULT STDMETHODCALLTYPE cloneNode(VARIANT_BOOL deep, IXMLDOMNode** cloneRoot) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_nodeTypeString(BSTR* nodeType) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_text(BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_text(BSTR text) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_specified(VARIANT_BOOL* isSpecified) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_definition(IXMLDOMNode** definitionNode) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_nodeTypedValue(VARIANT* typedValue) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_nodeTypedValue(VARIANT typedValue) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_dataType(VARIANT* dataTypeName) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_dataType(BSTR dataTypeName) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_xml(BSTR* xmlString) = 0;
  virtual HRESULT STDMETHODCALLTYPE transformNode(IXMLDOMNode* stylesheet, BSTR* xmlString) = 0;
  virtual HRESULT STDMETHODCALLTYPE selectNodes(BSTR queryString, IXMLDOMNodeList** resultList) = 0;
  virtual HRESULT STDMETHODCALLTYPE selectSingleNode(BSTR queryString,
                                                     IXMLDOMNode** resultNode) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_parsed(VARIANT_BOOL* isParsed) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_namespaceURI(BSTR* namespaceURI) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_prefix(BSTR* prefixString) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_baseName(BSTR* nameString) = 0;
  virtual HRESULT STDMETHODCALLTYPE transformNodeToObject(IXMLDOMNode* stylesheet,
                                                          VARIANT outputObject) = 0;
};

inline constexpr IID IID_IXMLDOMDocument = {
    0x2933BF81, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
struct IXMLDOMDocument : public IXMLDOMNode {
  virtual HRESULT STDMETHODCALLTYPE get_doctype(IXMLDOMDocumentType** documentType) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_implementation(IXMLDOMImplementation** impl) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_documentElement(IXMLDOMElement** dOMElement) = 0;
  virtual HRESULT STDMETHODCALLTYPE putref_documentElement(IXMLDOMElement* dOMElement) = 0;
  virtual HRESULT STDMETHODCALLTYPE createElement(BSTR tagName, IXMLDOMElement** element) = 0;
  virtual HRESULT STDMETHODCALLTYPE createDocumentFragment(IXMLDOMDocumentFragment** docFrag) = 0;
  virtual HRESULT STDMETHODCALLTYPE createTextNode(BSTR data, IXMLDOMText** text) = 0;
  virtual HRESULT STDMETHODCALLTYPE createComment(BSTR data, IXMLDOMComment** comment) = 0;
  virtual HRESULT STDMETHODCALLTYPE createCDATASection(BSTR data, IXMLDOMCDATASection** cdata) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  createProcessingInstruction(BSTR target, BSTR data, IXMLDOMProcessingInstruction** pi) = 0;
  virtual HRESULT STDMETHODCALLTYPE createAttribute(BSTR name, IXMLDOMAttribute** attribute) = 0;
  virtual HRESULT STDMETHODCALLTYPE createEntityReference(BSTR name,
                                                          IXMLDOMEntityReference** entityRef) = 0;
  virtual HRESULT STDMETHODCALLTYPE getElementsByTagName(BSTR tagName,
                                                         IXMLDOMNodeList** resultList) = 0;
  virtual HRESULT STDMETHODCALLTYPE createNode(VARIANT type, BSTR name, BSTR namespaceURI,
                                               IXMLDOMNode** node) = 0;
  virtual HRESULT STDMETHODCALLTYPE nodeFromID(BSTR idString, IXMLDOMNode** node) = 0;
  virtual HRESULT STDMETHODCALLTYPE load(VARIANT xmlSource, VARIANT_BOOL* isSuccessful) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_readyState(LONG* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_parseError(IXMLDOMParseError** errorObj) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_url(BSTR* urlString) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_async(VARIANT_BOOL* isAsync) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_async(VARIANT_BOOL isAsync) = 0;
  virtual HRESULT STDMETHODCALLTYPE abort() = 0;
  virtual HRESULT STDMETHODCALLTYPE loadXML(BSTR xML, VARIANT_BOOL* isSuccessful) = 0;
  virtual HRESULT STDMETHODCALLTYPE save(VARIANT destination) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_validateOnParse(VARIANT_BOOL* isValidating) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_validateOnParse(VARIANT_BOOL isValidating) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_resolveExternals(VARIANT_BOOL* isResolving) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_resolveExternals(VARIANT_BOOL isResolving) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_preserveWhiteSpace(VARIANT_BOOL* isPreserving) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_preserveWhiteSpace(VARIANT_BOOL isPreserving) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_onreadystatechange(VARIANT readystatechangeSink) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ondataavailable(VARIANT ondataavailableSink) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ontransformnode(VARIANT ontransformnodeSink) = 0;
};

inline constexpr IID IID_IXMLDOMParseError = {
    0x3EFAA426, 0x272F, 0x11D2, {0x83, 0x6F, 0x00, 0x00, 0xF8, 0x7A, 0x77, 0x82}};
struct IXMLDOMParseError : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_errorCode(LONG* errorCode) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_url(BSTR* urlString) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_reason(BSTR* reasonString) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_srcText(BSTR* sourceString) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_line(LONG* lineNumber) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_linepos(LONG* linePosition) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_filepos(LONG* filePosition) = 0;
};

inline constexpr IID IID_IXMLHTTPRequest = {
    0xED8C108D, 0x4349, 0x11D2, {0x91, 0xA4, 0x00, 0xC0, 0x4F, 0x79, 0x69, 0xE8}};
struct IXMLHTTPRequest : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE open(BSTR method, BSTR url, VARIANT async, VARIANT user,
                                         VARIANT password) = 0;
  virtual HRESULT STDMETHODCALLTYPE setRequestHeader(BSTR header, BSTR value) = 0;
  virtual HRESULT STDMETHODCALLTYPE getResponseHeader(BSTR header, BSTR* pbstrValue) = 0;
  virtual HRESULT STDMETHODCALLTYPE getAllResponseHeaders(BSTR* pbstrHeaders) = 0;
  virtual HRESULT STDMETHODCALLTYPE send(VARIANT body) = 0;
  virtual HRESULT STDMETHODCALLTYPE abort() = 0;
  virtual HRESULT STDMETHODCALLTYPE get_status(LONG* status) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_statusText(BSTR* pbstrStatus) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_responseXML(IDispatch** body) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_responseText(BSTR* pbstrBody) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_responseBody(VARIANT* body) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_responseStream(VARIANT* body) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_readyState(LONG* state) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_onreadystatechange(IDispatch* readyStateSink) = 0;
};
#endif
