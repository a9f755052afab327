// What libxml2 and libxslt keep once for the whole process, tied to the calls that this layer makes
// on a thread: their messages, the loading of further documents, and the memory that a call takes.
// While no call of the layer runs on a thread, everything goes to what was installed before, so a
// host that uses the same libraries notices nothing.
#pragma once

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxslt/xsltInternals.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "xml_limits.h"

namespace quillon::platform {

struct FreeXmlDocument {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using XmlDocument = std::unique_ptr<xmlDoc, FreeXmlDocument>;

// One call into the libraries on this thread, from its making to its end. Calls do not nest.
class XmlCall {
 public:
  XmlCall();
  ~XmlCall();
  XmlCall(const XmlCall&) = delete;
  XmlCall& operator=(const XmlCall&) = delete;

  // The running call of this thread, or null.
  static XmlCall* current();

  // What is parsed while it exists: nothing more is made of it once the call is stopped.
  class Parsing {
   public:
    explicit Parsing(xmlParserCtxt* parser) { current()->parser_ = parser; }
    ~Parsing() { current()->parser_ = nullptr; }
    Parsing(const Parsing&) = delete;
    Parsing& operator=(const Parsing&) = delete;
  };

  // From now on the call is held to the limits: over one of them the transform is stopped.
  void limit(const TransformLimits& limits);
  void forbidFiles() { mayReadFiles_ = false; }
  [[nodiscard]] bool mayReadFiles() const { return mayReadFiles_; }
  // The transform to stop; null for none. What was said before it, while compiling, were warnings.
  void transforming(xsltTransformContext* context) {
    context_ = context;
    if (context != nullptr) errors_.clear();
  }

  // Keeps the first reason why something was not loaded, and stops the transform.
  void refuse(const std::string& reason);
  void addError(const std::string& text);
  // A piece of what libxslt gives out: the place of an error, then its message. What comes without
  // a place in front is a text of the stylesheet itself.
  void addXsltPiece(const std::string& text);

  // Why the call was stopped or something refused; empty when nothing was.
  [[nodiscard]] const std::string& refusal() const { return refusal_; }
  // What the libraries said of errors, as it came: several lines.
  [[nodiscard]] const std::string& errors() const { return errors_; }
  // The last text that the stylesheet itself gave out.
  [[nodiscard]] const std::string& message() const { return message_; }

  // Asked by the allocator before it takes more; false refuses a large piece. Nearly every piece is
  // small, fits, and is not the one at which to look at the clock.
  bool mayTake(std::size_t bytes) {
    if (!isLimited_) return true;
    if (bytes >= kLargePiece || untilClock_ == 0 ||
        static_cast<std::int64_t>(bytes) > memoryLimit_ - inUse_) {
      return mayTakeAfterLook(bytes);
    }
    --untilClock_;
    return true;
  }
  // Asked before a piece of a file is kept, which counts as memory until gaveBack; false when the
  // call is stopped.
  bool mayRead(std::size_t bytes);
  void took(std::size_t bytes) { inUse_ += static_cast<std::int64_t>(bytes); }
  void gaveBack(std::size_t bytes) { inUse_ -= static_cast<std::int64_t>(bytes); }

 private:
  static constexpr std::size_t kLargePiece = std::size_t{1} << 20;

  bool mayTakeAfterLook(std::size_t bytes);
  void stop(const std::string& reason);
  void checkClock();

  xmlStructuredErrorFunc earlierHandler_;
  void* earlierContext_;
  xmlGenericErrorFunc earlierPlainHandler_;
  void* earlierPlainContext_;
  xsltTransformContext* context_ = nullptr;
  xmlParserCtxt* parser_ = nullptr;
  bool mayReadFiles_ = true;
  bool isLimited_ = false;
  std::int64_t memoryLimit_ = 0;
  std::int64_t inUse_ = 0;
  std::chrono::steady_clock::time_point deadline_;
  unsigned untilClock_ = 0;
  std::string refusal_;
  std::string errors_;
  std::string message_;
  bool isAfterPlace_ = false;
};

}  // namespace quillon::platform
