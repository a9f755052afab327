#include "foundation/text_format.h"

#include "foundation_test_support.h"

namespace quillon {
namespace {

using test::Plain;

TEST(FormatText, FollowsThePrintfForms) {
  struct Case {
    const OLECHAR* format;
    std::initializer_list<TextArg> args;
    std::string expected;
  };
  const std::int32_t accessDenied = static_cast<std::int32_t>(0x80070005);
  const Case cases[] = {
      {OLESTR(""), {}, ""},
      {OLESTR("plain"), {OLESTR("unused")}, "plain"},
      {OLESTR("%s::%s failed"), {OLESTR("CStorage"), OLESTR("Open")}, "CStorage::Open failed"},
      {OLESTR("%S|"), {OLESTR("wide")}, "wide|"},
      {OLESTR("QLN%05s"), {OLESTR("1")}, "QLN00001"},
      {OLESTR("QLN%05s"), {OLESTR("100000")}, "QLN100000"},
      {OLESTR("P%07s"), {OLESTR("12")}, "P0000012"},
      {OLESTR("%5s|%-5s|"), {OLESTR("ab"), OLESTR("ab")}, "   ab|ab   |"},
      {OLESTR("%-05s|"), {OLESTR("ab")}, "ab   |"},
      {OLESTR("%.2s|%.s|%.9s"), {OLESTR("abc"), OLESTR("abc"), OLESTR("abc")}, "ab||abc"},
      {OLESTR("%6.2s|"), {OLESTR("abc")}, "    ab|"},
      {OLESTR("%d %i %u"), {-12, 34, 56}, "-12 34 56"},
      {OLESTR("%05d|%5d|%-5d|%.3d|%05.3d"), {-12, -12, -12, 7, 7}, "-0012|  -12|-12  |007|  007"},
      {OLESTR("%02d:%02d"), {5, 59}, "05:59"},
      {OLESTR("%x %X %#x %#X %#x"), {255, 255, 255, 255, 0}, "ff FF 0xff 0XFF 0"},
      {OLESTR("%#06x"), {255}, "0x00ff"},
      {OLESTR("%08x,SQ"), {0x0040a730}, "0040a730,SQ"},
      {OLESTR("0x%0lX"), {accessDenied}, "0x80070005"},
      {OLESTR("%u"), {accessDenied}, "2147942405"},
      {OLESTR("%ld %hd %I64d"), {1, 2, std::int64_t{5000000000}}, "1 2 5000000000"},
      {OLESTR("%I64x"), {std::int64_t{-1}}, "ffffffffffffffff"},
      {OLESTR("%d"), {std::numeric_limits<std::int64_t>::min()}, "-9223372036854775808"},
      {OLESTR("%c%c|%3c"), {OLESTR("xyz"), 65, OLESTR("z")}, "xA|  z"},
      {OLESTR("100%% of %s%%"), {OLESTR("it")}, "100% of it%"},
      {OLESTR("%s"), {static_cast<const OLECHAR*>(nullptr)}, ""},
      {OLESTR("%s %d"), {7, OLESTR("seven")}, "7 seven"},  // the argument's own type decides
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Plain(c.format));
    EXPECT_EQ(Plain(FormatText(c.format, c.args)), c.expected);
  }
}

TEST(FormatText, ReadsNothingThatWasNotPassed) {
  const struct {
    const OLECHAR* format;
    std::string expected;
  } cases[] = {
      {OLESTR("%s and %s"), "a and "},
      {OLESTR("%s%5s|%d|%x|%c|"), "a     ||||"},
      {OLESTR("%n%s"), "%na"},
      {OLESTR("%p %f %*d"), "%p %f %*d"},
      {OLESTR("%"), "%"},
      {OLESTR("%-0#"), "%-0#"},
      {OLESTR("%s %"), "a %"},
      {OLESTR("%1$s"), "%1$s"},
      {OLESTR("%I32d"), "%I32d"},
      {OLESTR("%lllllllls"), "a"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(Plain(c.format));
    EXPECT_EQ(Plain(FormatText(c.format, {OLESTR("a")})), c.expected);
  }
  // A width is no way to ask for memory.
  EXPECT_LE(FormatText(OLESTR("%99999999999999999999999s"), {OLESTR("a")}).size(), 10000u);
  EXPECT_LE(FormatText(OLESTR("%.4294967296d"), {1}).size(), 10000u);
}

TEST(FormatText, KeepsWhatTheArgumentsHold) {
  EXPECT_EQ(FormatText(OLESTR("<%s>"), {Text(OLESTR("a\0b"), 3)}), Text(OLESTR("<a\0b>"), 5));
  EXPECT_EQ(Plain(FormatText(OLESTR("%s"), {OLESTR("%s%n")})), "%s%n");
}

}  // namespace
}  // namespace quillon
