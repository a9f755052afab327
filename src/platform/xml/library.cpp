#include "library.h"

#include <libexslt/exslt.h>
#include <libxml/parser.h>
#include <libxml/xmlmemory.h>
#include <libxslt/documents.h>
#include <libxslt/extensions.h>
#include <libxslt/xslt.h>
#include <libxslt/xsltutils.h>
#include <malloc.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include "document_parser.h"
#include "file_location.h"
#include "messages.h"

namespace quillon::platform {
namespace {

thread_local XmlCall* runningCall = nullptr;

constexpr std::size_t kLongestMessages = 16384;

xmlGenericErrorFunc earlierXsltHandler = nullptr;
void* earlierXsltContext = nullptr;
xsltDocLoaderFunc earlierLoader = nullptr;
xmlExternalEntityLoader earlierEntityLoader = nullptr;

// What comes before a transform has a handler of its own.
void onXsltMessage(void*, const char* format, ...) {
  std::array<char, 4096> text;
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  if (runningCall != nullptr) {
    runningCall->addXsltPiece(text.data());
  } else if (earlierXsltHandler != nullptr) {
    earlierXsltHandler(earlierXsltContext, "%s", text.data());
  }
}

// The few errors of libxml2 that have no structure.
void onPlainXmlError(void*, const char* format, ...) {
  std::array<char, 4096> text;
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  if (runningCall != nullptr) runningCall->addError(text.data());
}

#if LIBXML_VERSION >= 21200
using ErrorPointer = const xmlError*;
#else
using ErrorPointer = xmlError*;
#endif

void onXmlError(void*, ErrorPointer error) {
  if (runningCall != nullptr && error != nullptr && error->message != nullptr &&
      error->level >= XML_ERR_ERROR) {
    runningCall->addError(error->message);
  }
}

xmlParserInput* onExternalEntity(const char* url, const char* id, xmlParserCtxt* context) {
  if (runningCall == nullptr) return earlierEntityLoader(url, id, context);
  runningCall->refuse(std::string("The external entity \"") + (url == nullptr ? "" : url) +
                      "\" is not read.");
  return nullptr;
}

xmlDoc* onLoad(const xmlChar* uri, xmlDict* dictionary, int options, void* context,
               xsltLoadType type) {
  if (runningCall == nullptr) return earlierLoader(uri, dictionary, options, context, type);
  std::string reason;
  XmlDocument document =
      loadReferencedDocument(reinterpret_cast<const char*>(uri), dictionary, reason);
  if (document == nullptr) runningCall->refuse(reason);
  return document.release();
}

// The allocator is the C library's own; only sizes are counted, and only within a call.
void* countedMalloc(std::size_t bytes) {
  XmlCall* const call = runningCall;
  if (call == nullptr) return std::malloc(bytes);
  if (!call->mayTake(bytes)) return nullptr;
  void* const block = std::malloc(bytes);
  if (block != nullptr) call->took(::malloc_usable_size(block));
  return block;
}

void* countedRealloc(void* block, std::size_t bytes) {
  XmlCall* const call = runningCall;
  if (call == nullptr) return std::realloc(block, bytes);
  if (!call->mayTake(bytes)) return nullptr;
  const std::size_t before = block == nullptr ? 0 : ::malloc_usable_size(block);
  void* const moved = std::realloc(block, bytes);
  if (moved != nullptr) {
    call->gaveBack(before);
    call->took(::malloc_usable_size(moved));
  }
  return moved;
}

void countedFree(void* block) {
  if (runningCall != nullptr && block != nullptr)
    runningCall->gaveBack(::malloc_usable_size(block));
  std::free(block);
}

char* countedStrdup(const char* text) {
  const std::size_t bytes = std::strlen(text) + 1;
  void* const copy = countedMalloc(bytes);
  if (copy != nullptr) std::memcpy(copy, text, bytes);
  return static_cast<char*>(copy);
}

// A host that has given the library an allocator of its own keeps it; transforms are then bounded
// by time and steps alone.
void countMemory() {
  xmlFreeFunc freeFunction = nullptr;
  xmlMallocFunc mallocFunction = nullptr;
  xmlReallocFunc reallocFunction = nullptr;
  xmlStrdupFunc strdupFunction = nullptr;
  xmlMemGet(&freeFunction, &mallocFunction, &reallocFunction, &strdupFunction);
  if (mallocFunction == static_cast<xmlMallocFunc>(std::malloc)) {
    xmlMemSetup(countedFree, countedMalloc, countedRealloc, countedStrdup);
  }
}

// Stylesheets written for Windows name the function that turns a tree into nodes by the namespace
// of that system's processor.
void registerNodeSet() {
  const auto* const name = reinterpret_cast<const xmlChar*>("node-set");
  const xmlXPathFunction function = xsltExtModuleFunctionLookup(
      name, reinterpret_cast<const xmlChar*>("http://exslt.org/common"));
  if (function != nullptr) {
    xsltRegisterExtModuleFunction(
        name, reinterpret_cast<const xmlChar*>("urn:schemas-microsoft-com:xslt"), function);
  }
}

void prepareLibraries() {
  static std::once_flag prepared;
  std::call_once(prepared, [] {
    countMemory();
    xmlInitParser();
    xsltInit();
    exsltRegisterAll();
    registerNodeSet();
    earlierXsltHandler = xsltGenericError;
    earlierXsltContext = xsltGenericErrorContext;
    xsltSetGenericErrorFunc(nullptr, onXsltMessage);
    earlierLoader = xsltDocDefaultLoader;
    xsltSetLoaderFunc(onLoad);
    earlierEntityLoader = xmlGetExternalEntityLoader();
    xmlSetExternalEntityLoader(onExternalEntity);
  });
}

std::string sentenceAboutInstruction(const std::string& message, xmlNode* instruction) {
  if (instruction == nullptr) return sentenceWithPlace(message, {}, 0, 0);
  const xmlDoc* const document = instruction->doc;
  const bool hasFile = document != nullptr && document->URL != nullptr;
  std::string ignored;
  const std::string file =
      hasFile ? pathOfLocation(reinterpret_cast<const char*>(document->URL), ignored).value_or("")
              : std::string();
  return sentenceWithPlace(message, file, static_cast<int>(xmlGetLineNo(instruction)), 0);
}

void appendWithin(std::string& text, const std::string& more) {
  if (text.size() < kLongestMessages) text += more;
}

}  // namespace

XmlCall::XmlCall() {
  prepareLibraries();
  earlierHandler_ = xmlStructuredError;
  earlierContext_ = xmlStructuredErrorContext;
  earlierPlainHandler_ = xmlGenericError;
  earlierPlainContext_ = xmlGenericErrorContext;
  xmlSetStructuredErrorFunc(nullptr, onXmlError);
  xmlSetGenericErrorFunc(nullptr, onPlainXmlError);
  runningCall = this;
}

XmlCall::~XmlCall() {
  runningCall = nullptr;
  xmlSetStructuredErrorFunc(earlierContext_, earlierHandler_);
  xmlSetGenericErrorFunc(earlierPlainContext_, earlierPlainHandler_);
  xmlResetLastError();
}

XmlCall* XmlCall::current() { return runningCall; }

void XmlCall::limit(const TransformLimits& limits) {
  isLimited_ = true;
  inUse_ = 0;
  memoryLimit_ = limits.memoryBytes;
  deadline_ = std::chrono::steady_clock::now() + std::chrono::milliseconds(limits.milliseconds);
}

void XmlCall::refuse(const std::string& reason) {
  if (refusal_.empty()) stop(reason);
}

void XmlCall::addError(const std::string& text) { appendWithin(errors_, text); }

void XmlCall::addXsltPiece(const std::string& text) {
  // The library says so beside the error that it would be, leaves the instruction out and goes on.
  if (context_ != nullptr) {
    if (const std::string_view name = instructionNotCompiled(text); !name.empty()) {
      return refuse(sentenceAboutInstruction("unknown xsl:" + std::string(name), context_->inst));
    }
  }
  const bool isMessageOfError = isAfterPlace_ || context_ == nullptr;
  isAfterPlace_ = !isAfterPlace_ && isPlaceOfError(text);
  if (isMessageOfError || isAfterPlace_) {
    addError(text);
  } else if (text != "\n") {
    message_ = text;
  }
}

void XmlCall::stop(const std::string& reason) {
  refusal_ = reason;
  // Called by the allocator, so the parser cannot be ended here: it reads on and keeps nothing.
  if (parser_ != nullptr) parser_->disableSAX = 1;
  if (context_ == nullptr) return;
  context_->state = XSLT_STATE_STOPPED;
  // The next step of an expression that runs fails.
  context_->xpathCtxt->opCount = context_->xpathCtxt->opLimit;
}

void XmlCall::checkClock() {
  if (std::chrono::steady_clock::now() > deadline_) stop("The transform takes too long.");
}

bool XmlCall::mayRead(std::size_t bytes) {
  if (!isLimited_) return true;
  if (refusal_.empty()) checkClock();
  if (!mayTake(bytes) || !refusal_.empty()) return false;
  took(bytes);
  return true;
}

// Over the limit the transform is only told to stop, because the libraries do not take every
// refusal of memory well; large pieces, which they do check for, are refused.
bool XmlCall::mayTakeAfterLook(std::size_t bytes) {
  constexpr unsigned kPiecesBetweenClocks = 1024;
  const bool isLarge = bytes >= kLargePiece;
  if (refusal_.empty() && (isLarge || untilClock_ == 0)) {
    untilClock_ = kPiecesBetweenClocks;
    checkClock();
  }
  const bool fits = static_cast<std::int64_t>(bytes) <= memoryLimit_ - inUse_;
  if (!fits && refusal_.empty()) stop("The transform needs too much memory.");
  return fits || !isLarge;
}

}  // namespace quillon::platform
