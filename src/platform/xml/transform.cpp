#include "transform.h"

#include <libxslt/imports.h>
#include <libxslt/security.h>
#include <libxslt/transform.h>
#include <libxslt/xsltutils.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <string_view>

#include "messages.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

template <auto release>
struct FreeWith {
  template <typename Object>
  void operator()(Object* object) const {
    release(object);
  }
};
using Stylesheet = std::unique_ptr<xsltStylesheet, FreeWith<xsltFreeStylesheet>>;
using Transform = std::unique_ptr<xsltTransformContext, FreeWith<xsltFreeTransformContext>>;
using SecurityRules = std::unique_ptr<xsltSecurityPrefs, FreeWith<xsltFreeSecurityPrefs>>;

void onTransformError(void*, const char* format, ...) {
  std::array<char, 4096> text;
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  if (XmlCall* const call = XmlCall::current()) call->addXsltPiece(text.data());
}

XmlDocument copyOf(const xmlDoc* document) {
  XmlDocument copy(xmlCopyDoc(const_cast<xmlDoc*>(document), 1));  // only read
  if (copy == nullptr) throw std::bad_alloc();
  return copy;
}

// The compiled stylesheet takes the document over and changes it, so it gets a copy.
Stylesheet compile(const xmlDoc* document) {
  XmlDocument copy = copyOf(document);
  Stylesheet compiled(xsltParseStylesheetDoc(copy.get()));
  if (compiled != nullptr) static_cast<void>(copy.release());
  return compiled;
}

SecurityRules nothingIsWritten() {
  SecurityRules rules(xsltNewSecurityPrefs());
  if (rules == nullptr) throw std::bad_alloc();
  for (const xsltSecurityOption option :
       {XSLT_SECPREF_WRITE_FILE, XSLT_SECPREF_CREATE_DIRECTORY, XSLT_SECPREF_WRITE_NETWORK}) {
    xsltSetSecurityPrefs(rules.get(), option, xsltSecurityForbid);
  }
  return rules;
}

// The text leaves here in no encoding, and the program writes it as UTF-8: another encoding that
// the stylesheet asks for must not be declared in it, nor make characters into references.
void declareUtf8(xsltStylesheet& stylesheet) {
  const xmlChar* encoding = nullptr;
  XSLT_GET_IMPORT_PTR(encoding, &stylesheet, encoding)
  const auto* const utf8 = reinterpret_cast<const xmlChar*>("UTF-8");
  if (encoding == nullptr || xmlStrcasecmp(encoding, utf8) == 0) return;
  if (stylesheet.encoding != nullptr) xmlFree(stylesheet.encoding);
  stylesheet.encoding = xmlStrdup(utf8);
}

bool write(xmlDoc* result, xsltStylesheet* stylesheet, std::u16string& text) {
  xmlChar* bytes = nullptr;
  int length = 0;
  const int status = xsltSaveResultToString(&bytes, &length, result, stylesheet);
  const std::unique_ptr<xmlChar, void (*)(xmlChar*)> owner(bytes, [](xmlChar* b) { xmlFree(b); });
  if (status != 0 || length < 0) return false;
  text = bytes == nullptr ? std::u16string()
                          : wideFromNative({reinterpret_cast<const char*>(bytes),
                                            static_cast<std::size_t>(length)});
  return true;
}

std::string reasonOf(const XmlCall& call, std::string_view fallback) {
  if (!call.refusal().empty()) return call.refusal();
  if (call.errors().find("peration limit exceeded") != std::string::npos) {
    return "The transform takes too many steps.";
  }
  if (call.errors().empty() && !call.message().empty()) {
    return sentenceWithPlace(call.message(), {}, 0, 0);
  }
  return sentenceOfXslt(call.errors(), fallback);
}

void setFailure(const XmlCall& call, std::string_view fallback, XmlFailure& failure) {
  failure = {};
  failure.code = E_FAIL;
  failure.reason = wideFromNative(reasonOf(call, fallback));
}

// Within a call.
bool run(XmlCall& call, xmlDoc* source, xsltStylesheet* stylesheet, const TransformLimits& limits,
         std::u16string& text) {
  const SecurityRules rules = nothingIsWritten();
  const Transform context(xsltNewTransformContext(stylesheet, source));
  if (context == nullptr) throw std::bad_alloc();
  xsltSetTransformErrorFunc(context.get(), nullptr, onTransformError);
  if (xsltSetCtxtSecurityPrefs(rules.get(), context.get()) != 0) return false;
  context->opLimit = limits.steps;
  context->xpathCtxt->opLimit = limits.steps;
  call.transforming(context.get());
  const XmlDocument result(
      xsltApplyStylesheetUser(stylesheet, source, nullptr, nullptr, nullptr, context.get()));
  const bool done = result != nullptr && context->state == XSLT_STATE_OK &&
                    call.refusal().empty() && write(result.get(), stylesheet, text);
  call.transforming(nullptr);
  return done && call.refusal().empty();
}

}  // namespace

bool transformDocument(const xmlDoc* source, const xmlDoc* stylesheet,
                       const TransformLimits& limits, std::u16string& text, XmlFailure& failure) {
  XmlCall call;
  call.limit(limits);
  if (stylesheet->URL == nullptr) call.forbidFiles();
  const Stylesheet compiled = compile(stylesheet);
  if (compiled == nullptr || !call.refusal().empty() || compiled->errors != 0 ||
      namesUnknownInstruction(call.errors())) {
    setFailure(call, "The document is not a stylesheet", failure);
    return false;
  }
  declareUtf8(*compiled);
  // Only a stylesheet that strips space changes the source.
  XmlDocument stripped;
  if (compiled->stripSpaces != nullptr || compiled->stripAll != 0 || compiled->imports != nullptr) {
    stripped = copyOf(source);
  }
  xmlDoc* const readable = stripped == nullptr ? const_cast<xmlDoc*>(source) : stripped.get();
  if (run(call, readable, compiled.get(), limits, text)) return true;
  setFailure(call, "The stylesheet failed", failure);
  return false;
}

}  // namespace quillon::platform
