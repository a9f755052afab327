// A text that does not change and that many have alike: those that share it hold it once.
#pragma once

#include <memory>
#include <new>

#include "foundation/text.h"

namespace quillon {

class SharedText {
 public:
  [[nodiscard]] const Text& Get() const {
    static const Text none;
    return text_ == nullptr ? none : *text_;
  }
  void Clear() { text_.reset(); }
  // As AssignText. like, which may be null, often has the same text, and then shares it.
  [[nodiscard]] bool Assign(TextView text, bool allowEmpty, std::size_t maxLen,
                            const SharedText* like) {
    if ((text.empty() && !allowEmpty) || (maxLen != 0 && text.size() > maxLen)) return false;
    if (like != nullptr && like->Get() == text) {
      text_ = like->text_;
      return true;
    }
    try {
      text_ = text.empty() ? nullptr : std::make_shared<const Text>(text);
    } catch (const std::bad_alloc&) {
      return false;
    }
    return true;
  }

 private:
  std::shared_ptr<const Text> text_;
};

// For tables that are searched by text.
struct SharedTextHash {
  using is_transparent = void;
  std::size_t operator()(TextView text) const { return std::hash<TextView>{}(text); }
  std::size_t operator()(const SharedText& text) const { return (*this)(text.Get()); }
};
struct SharedTextEqual {
  using is_transparent = void;
  bool operator()(const SharedText& a, const SharedText& b) const { return a.Get() == b.Get(); }
  bool operator()(TextView a, const SharedText& b) const { return a == b.Get(); }
  bool operator()(const SharedText& a, TextView b) const { return a.Get() == b; }
};

}  // namespace quillon
