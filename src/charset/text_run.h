// Text as it is decoded. Characters of one code page that stand together are converted together.
#pragma once

#include <string>
#include <string_view>

#include "foundation/text.h"

namespace quillon {

inline constexpr OLECHAR kUnreadable = 0xFFFD;
inline constexpr UINT kGbkPage = 936;
inline constexpr UINT kGb18030Page = 54936;

class TextRun {
 public:
  void PutAscii(char c);
  // A whole character in the code page's bytes, the first beyond ASCII; U+FFFD when the code page
  // has none there.
  void PutCharacter(UINT codePage, std::string_view bytes);
  void PutUnit(OLECHAR unit);
  void PutUnreadable() { PutUnit(kUnreadable); }
  // The text; nothing is put any more.
  [[nodiscard]] Text Take();

 private:
  void Convert();

  Text text_;
  // Not converted yet; ASCII means the same in each of the code pages.
  std::string pending_;
  UINT codePage_ = 0;
};

}  // namespace quillon
