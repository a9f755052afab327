#include "document_parser.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <optional>

#include "file_location.h"
#include "messages.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

// A text of an element may be longer than the parser's usual ten million characters, and sequences
// may nest deeper than its usual 256 levels.
constexpr int kOptions =
    XML_PARSE_NOENT | XML_PARSE_NOCDATA | XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_BIG_LINES;

struct FreeParser {
  void operator()(xmlParserCtxt* parser) const { xmlFreeParserCtxt(parser); }
};

struct Source {
  std::string_view bytes;
  std::string url;      // the base of what the document refers to; empty for none
  bool isText = false;  // the bytes are UTF-8, whatever the declaration says
  xmlDict* dictionary = nullptr;
};

struct FirstError {
  int code = 0;
  int level = XML_ERR_NONE;
  std::string message;
  int line = 0;
  int column = 0;
};

#if LIBXML_VERSION >= 21200
using ErrorPointer = const xmlError*;
#else
using ErrorPointer = xmlError*;
#endif

// The parser speaks of a loop also where entities only grow too large.
std::string messageOf(const xmlError& error) {
  if (error.code == XML_ERR_ENTITY_LOOP) {
    return "The entities of the document refer to themselves or grow too large";
  }
  return error.message == nullptr ? "" : error.message;
}

// A fatal error is what ended the reading; an earlier one that did not is of less interest.
void onError(void* context, ErrorPointer error) {
  auto* const first = static_cast<FirstError*>(static_cast<xmlParserCtxt*>(context)->_private);
  if (error->level <= XML_ERR_WARNING || error->level <= first->level) return;
  *first = {error->code, error->level, messageOf(*error), error->line, error->int2};
}

// The bound on the growth of entities holds only where the parser's other bounds do.
void onDocumentType(void* context, const xmlChar* name, const xmlChar* externalId,
                    const xmlChar* systemId) {
  static_cast<xmlParserCtxt*>(context)->options &= ~XML_PARSE_HUGE;
  xmlSAX2InternalSubset(context, name, externalId, systemId);
}

// Copying a document takes stack for every level.
void onStartElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                    int namespaceCount, const xmlChar** namespaces, int attributeCount,
                    int defaultedCount, const xmlChar** attributes) {
  constexpr int kDeepest = 2048;
  auto* const parser = static_cast<xmlParserCtxt*>(context);
  if (parser->nodeNr < kDeepest) {
    xmlSAX2StartElementNs(context, name, prefix, uri, namespaceCount, namespaces, attributeCount,
                          defaultedCount, attributes);
    return;
  }
  *static_cast<FirstError*>(parser->_private) = {
      XML_ERR_INTERNAL_ERROR, XML_ERR_FATAL,
      "The elements nest deeper than " + std::to_string(kDeepest) + " levels", parser->input->line,
      parser->input->col};
  parser->wellFormed = 0;
  xmlStopParser(parser);
}

void setPlace(XmlFailure& failure, std::string_view bytes, int line, int column) {
  failure.line = line;
  failure.column = column;
  std::size_t start = 0;
  for (int i = 1; i < line && start != std::string_view::npos; ++i) {
    start = bytes.find('\n', start);
    if (start != std::string_view::npos) ++start;
  }
  if (line <= 0 || start == std::string_view::npos) return;
  constexpr std::size_t kLongestSourceLine = 1000;
  const std::string_view rest = bytes.substr(start);
  failure.offset = static_cast<LONG>(start) + std::max(column - 1, 0);
  failure.sourceLine =
      wideFromNative(rest.substr(0, std::min(rest.find_first_of("\r\n"), kLongestSourceLine)));
}

void setFailure(XmlFailure& failure, const Source& source, const FirstError& error,
                const std::string& refusal) {
  failure.code = error.code != 0 ? error.code : XML_ERR_INTERNAL_ERROR;
  if (!refusal.empty()) {
    failure.reason = wideFromNative(refusal);
    return;
  }
  failure.reason = wideFromNative(sentenceWithPlace(error.message, {}, error.line, error.column));
  setPlace(failure, source.bytes, error.line, error.column);
}

// Within a call. What the document's entities wanted to load is in the call's refusal.
XmlDocument parse(const Source& source, XmlFailure& failure) {
  const std::unique_ptr<xmlParserCtxt, FreeParser> parser(xmlNewParserCtxt());
  if (parser == nullptr) throw std::bad_alloc();
  if (source.dictionary != nullptr) {
    xmlDictFree(parser->dict);
    parser->dict = source.dictionary;
    xmlDictReference(parser->dict);
  }
  FirstError error;
  parser->_private = &error;
  parser->sax->serror = onError;
  parser->sax->internalSubset = onDocumentType;
  parser->sax->startElementNs = onStartElement;
  XmlDocument document;
  if (source.bytes.size() > INT_MAX) {
    error.message = "The document is too large.";
  } else {
    const XmlCall::Parsing stoppable(parser.get());
    document.reset(xmlCtxtReadMemory(
        parser.get(), source.bytes.data(), static_cast<int>(source.bytes.size()),
        source.url.empty() ? nullptr : source.url.c_str(), source.isText ? "UTF-8" : nullptr,
        kOptions | (source.isText ? XML_PARSE_IGNORE_ENC : 0)));
  }
  const std::string refusal = XmlCall::current()->refusal();
  if (document != nullptr && refusal.empty()) return document;
  setFailure(failure, source, error, refusal);
  return nullptr;
}

// The first unit that cannot even be converted; the parser itself sees to all others.
std::optional<std::size_t> findUnconvertible(std::u16string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isHighSurrogate(text[i]) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
      ++i;
    } else if (text[i] == 0 || isHighSurrogate(text[i]) || isLowSurrogate(text[i])) {
      return i;
    }
  }
  return std::nullopt;
}

void refuseUnit(std::u16string_view text, std::size_t at, XmlFailure& failure) {
  const std::u16string_view before = text.substr(0, at);
  const auto line = 1 + std::count(before.begin(), before.end(), u'\n');
  const std::size_t lineStart = before.rfind(u'\n') + 1;  // npos + 1 is 0
  failure.code = XML_ERR_INVALID_CHAR;
  failure.reason = wideFromNative(
      sentenceWithPlace("The text holds a character that XML does not have, number " +
                            std::to_string(static_cast<unsigned>(text[at])),
                        {}, static_cast<int>(line), static_cast<int>(at - lineStart + 1)));
  failure.line = static_cast<LONG>(line);
  failure.column = static_cast<LONG>(at - lineStart + 1);
  failure.offset = static_cast<LONG>(at);
}

// Nothing is ever found by where the program happens to run.
bool mayRefer(const XmlCall& call, std::string_view location, const std::string& path,
              std::string& reason) {
  const std::string named = "\"" + std::string(location) + "\"";
  if (!call.mayReadFiles()) {
    reason = "The stylesheet does not come from a file, so it cannot refer to " + named + ".";
    return false;
  }
  if (path.starts_with('/')) return true;
  reason = "The document that refers to " + named +
           " does not come from a file, so the reference has to be a whole path.";
  return false;
}

}  // namespace

XmlDocument parseText(std::u16string_view text, XmlFailure& failure) {
  constexpr char16_t kByteOrderMark = 0xFEFF;
  if (!text.empty() && text.front() == kByteOrderMark) text.remove_prefix(1);
  if (const auto at = findUnconvertible(text)) {
    refuseUnit(text, *at, failure);
    return nullptr;
  }
  const std::string bytes = nativeFromWide(text);
  XmlCall call;
  return parse({bytes, {}, true, nullptr}, failure);
}

XmlDocument parseFile(std::u16string_view location, XmlFailure& failure) {
  std::string reason;
  std::string bytes;
  const std::optional<std::string> path = pathOfLocation(nativeFromWide(location), reason);
  failure.url = location;
  if (!path || !readWholeFile(*path, bytes, failure.code, reason)) {
    if (failure.code == 0) failure.code = E_INVALIDARG;
    failure.reason = wideFromNative(reason);
    return nullptr;
  }
  XmlCall call;
  return parse({bytes, urlOfPath(*path), false, nullptr}, failure);
}

XmlDocument loadReferencedDocument(const char* uri, xmlDict* dictionary, std::string& reason) {
  XmlCall& call = *XmlCall::current();
  const std::string_view location = uri == nullptr ? "" : uri;
  const std::optional<std::string> path = pathOfLocation(location, reason);
  if (!path || !mayRefer(call, location, *path, reason)) return nullptr;
  std::string bytes;
  const auto mayRead = [&call](std::size_t more) { return call.mayRead(more); };
  if (!readReferencedFile(*path, mayRead, bytes, reason)) return nullptr;
  XmlFailure failure;
  XmlDocument document = parse({bytes, urlOfPath(*path), false, dictionary}, failure);
  call.gaveBack(bytes.size());
  if (document == nullptr) {
    reason = "The file \"" + *path + "\" cannot be read as XML: " + nativeFromWide(failure.reason);
  }
  return document;
}

}  // namespace quillon::platform
