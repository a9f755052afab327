// The library takes names for what the locale of the thread says. Programs that set none would get
// nothing but ASCII.
#pragma once

#include <clocale>

namespace quillon::platform {

class Utf8Scope {
 public:
  Utf8Scope() {
    if (utf8() != locale_t{}) before_ = ::uselocale(utf8());
  }
  ~Utf8Scope() {
    if (before_ != locale_t{}) ::uselocale(before_);
  }
  Utf8Scope(const Utf8Scope&) = delete;
  Utf8Scope& operator=(const Utf8Scope&) = delete;

 private:
  static locale_t utf8() {
    static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{});
    return locale;
  }
  locale_t before_{};
};

}  // namespace quillon::platform
