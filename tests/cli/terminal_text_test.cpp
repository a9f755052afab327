#include "terminal_text.h"

#include <gtest/gtest.h>

namespace quillon::cli {
namespace {

TEST(TerminalText, HoldsNothingThatATerminalObeys) {
  const std::string bad = "\xEF\xBF\xBD";
  struct Case {
    const char* what;
    std::string text;
    std::string shown;
  };
  const Case cases[] = {
      {"plain", "DOE^JOHN\tCaf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80\n",
       "DOE^JOHN\tCaf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80\n"},
      {"a title and a colour", "\x1B]0;x\x07\x1B[31m",
       "\xE2\x90\x9B]0;x\xE2\x90\x87\xE2\x90\x9B[31m"},
      {"the ends of C0", std::string("\0\r\x1F \x7F~", 6),
       "\xE2\x90\x80\xE2\x90\x8D\xE2\x90\x9F \xE2\x90\xA1~"},
      {"C1 and what follows it", "\xC2\x80\xC2\x9B\xC2\x9F\xC2\xA0", bad + bad + bad + "\xC2\xA0"},
      {"C1 as a byte", "\x9B[2J", bad + "[2J"},
      {"an Arabic mark and its neighbours", "\xD8\x9B\xD8\x9C\xD8\x9D",
       "\xD8\x9B" + bad + "\xD8\x9D"},
      {"marks of direction", "\xE2\x80\x8D\xE2\x80\x8E\xE2\x80\x8F\xE2\x80\x90",
       "\xE2\x80\x8D" + bad + bad + "\xE2\x80\x90"},
      {"embeddings", "\xE2\x80\xA9\xE2\x80\xAA\xE2\x80\xAE\xE2\x80\xAF",
       "\xE2\x80\xA9" + bad + bad + "\xE2\x80\xAF"},
      {"isolates", "\xE2\x81\xA5\xE2\x81\xA6\xE2\x81\xA9\xE2\x81\xAA",
       "\xE2\x81\xA5" + bad + bad + "\xE2\x81\xAA"},
      {"bytes that are no character", "a\xFF\xC3(\xED\xA0\x80\xE2\x82",
       "a\xFF\xC3(\xED\xA0" + bad + "\xE2" + bad},
      {"a control character in a long form", "\xC0\x9B", "\xC0" + bad},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(forTerminal(c.text), c.shown);
  }
}

}  // namespace
}  // namespace quillon::cli
