// A text that does not change and that many have alike: those that share it hold it once, and each
// of them no more than a pointer.
#pragma once

#include <atomic>
#include <new>
#include <string>
#include <utility>

#include "foundation/text.h"

namespace quillon {

template <typename String>
class SharedString {
 public:
  using View = std::basic_string_view<typename String::value_type>;

  SharedString() = default;
  SharedString(const SharedString& other) noexcept : held_(other.held_) {
    if (held_ != nullptr) held_->owners.fetch_add(1, std::memory_order_relaxed);
  }
  SharedString(SharedString&& other) noexcept : held_(std::exchange(other.held_, nullptr)) {}
  SharedString& operator=(SharedString other) noexcept {
    std::swap(held_, other.held_);
    return *this;
  }
  ~SharedString() {
    if (held_ != nullptr && held_->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) {
      delete held_;
    }
  }

  [[nodiscard]] const String& Get() const {
    static const String none;
    return held_ == nullptr ? none : held_->text;
  }
  void Clear() { *this = SharedString(); }
  // like, which may be null, often has the same text, and then shares it. Without memory it throws.
  void Set(View text, const SharedString* like = nullptr) {
    if (like != nullptr && like->Get() == text) {
      *this = *like;
    } else {
      SharedString fresh;
      if (!text.empty()) fresh.held_ = new Held(text);
      *this = std::move(fresh);
    }
  }
  // As AssignText.
  [[nodiscard]] bool Assign(View text, bool allowEmpty, std::size_t maxLen,
                            const SharedString* like) {
    if ((text.empty() && !allowEmpty) || (maxLen != 0 && text.size() > maxLen)) return false;
    try {
      Set(text, like);
    } catch (const std::bad_alloc&) {
      return false;
    }
    return true;
  }

 private:
  struct Held {
    explicit Held(View of) : text(of) {}
    std::atomic<std::size_t> owners = 1;
    const String text;
  };

  Held* held_ = nullptr;
};

using SharedText = SharedString<Text>;

}  // namespace quillon
