#include "foundation/text_format.h"

#include "foundation_test_support.h"

namespace quillon {
namespace {

using test::Plain;

TEST(FormatText, FollowsThePrintfForms) {
  struct Case {
    const char16_t* format;
    std::initializer_list<TextArg> args;
    std::string expected;
  };
  const std::int32_t accessDenied = static_cast<std::int32_t>(0x80070005);
  const Case cases[] = {
      {u"", {}, ""},
      {u"plain", {u"unused"}, "plain"},
      {u"%s::%s failed", {u"CStorage", u"Open"}, "CStorage::Open failed"},
      {u"%S|", {u"wide"}, "wide|"},
      {u"QLN%05s", {u"1"}, "QLN00001"},
      {u"QLN%05s", {u"100000"}, "QLN100000"},
      {u"P%07s", {u"12"}, "P0000012"},
      {u"%5s|%-5s|", {u"ab", u"ab"}, "   ab|ab   |"},
      {u"%-05s|", {u"ab"}, "ab   |"},
      {u"%.2s|%.s|%.9s", {u"abc", u"abc", u"abc"}, "ab||abc"},
      {u"%6.2s|", {u"abc"}, "    ab|"},
      {u"%d %i %u", {-12, 34, 56}, "-12 34 56"},
      {u"%05d|%5d|%-5d|%.3d|%05.3d", {-12, -12, -12, 7, 7}, "-0012|  -12|-12  |007|  007"},
      {u"%02d:%02d", {5, 59}, "05:59"},
      {u"%x %X %#x %#X %#x", {255, 255, 255, 255, 0}, "ff FF 0xff 0XFF 0"},
      {u"%#06x", {255}, "0x00ff"},
      {u"%08x,SQ", {0x0040a730}, "0040a730,SQ"},
      {u"0x%0lX", {accessDenied}, "0x80070005"},
      {u"%u", {accessDenied}, "2147942405"},
      {u"%ld %hd %I64d", {1, 2, std::int64_t{5000000000}}, "1 2 5000000000"},
      {u"%I64x", {std::int64_t{-1}}, "ffffffffffffffff"},
      {u"%d", {std::numeric_limits<std::int64_t>::min()}, "-9223372036854775808"},
      {u"%c%c|%3c", {u"xyz", 65, u"z"}, "xA|  z"},
      {u"100%% of %s%%", {u"it"}, "100% of it%"},
      {u"%s", {static_cast<const OLECHAR*>(nullptr)}, ""},
      {u"%s %d", {7, u"seven"}, "7 seven"},  // the argument's own type decides
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Plain(c.format));
    EXPECT_EQ(Plain(FormatText(c.format, c.args)), c.expected);
  }
}

TEST(FormatText, ReadsNothingThatWasNotPassed) {
  struct Case {
    const char16_t* format;
    std::string expected;
  };
  const Case cases[] = {
      {u"%s and %s", "a and "},
      {u"%s%5s|%d|%x|%c|", "a     ||||"},
      {u"%n%s", "%na"},
      {u"%p %f %*d", "%p %f %*d"},
      {u"%", "%"},
      {u"%-0#", "%-0#"},
      {u"%s %", "a %"},
      {u"%1$s", "%1$s"},
      {u"%I32d", "%I32d"},
      {u"%lllllllls", "a"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Plain(c.format));
    EXPECT_EQ(Plain(FormatText(c.format, {u"a"})), c.expected);
  }
  // A width is no way to ask for memory.
  EXPECT_LE(FormatText(u"%99999999999999999999999s", {u"a"}).size(), 10000u);
  EXPECT_LE(FormatText(u"%.4294967296d", {1}).size(), 10000u);
}

TEST(FormatText, KeepsWhatTheArgumentsHold) {
  EXPECT_EQ(FormatText(u"<%s>", {Text(u"a\0b", 3)}), Text(u"<a\0b>", 5));
  EXPECT_EQ(Plain(FormatText(u"%s", {u"%s%n"})), "%s%n");
}

}  // namespace
}  // namespace quillon
