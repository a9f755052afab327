#include "foundation/text.h"

#include "foundation_test_support.h"

namespace quillon {
namespace {

using test::Plain;

TEST(AssignText, RefusesEmptyAndOverlongTextsAndKeepsTheOldOne) {
  const struct {
    const char* what;
    std::size_t length;
    bool allowEmpty;
    std::size_t maxLen;
    bool expected;
  } cases[] = {
      {"at the limit", 64, true, 64, true},       {"over the limit", 65, true, 64, false},
      {"no limit", 5000, true, 0, true},          {"empty and allowed", 0, true, 64, true},
      {"empty and refused", 0, false, 64, false}, {"empty, refused, no limit", 0, false, 0, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const Text src(c.length, OLESTR('x'));
    Text dst = OLESTR("old");
    EXPECT_EQ(AssignText(dst, src, c.allowEmpty, c.maxLen), c.expected);
    EXPECT_EQ(Plain(dst), c.expected ? Plain(src) : "old");
  }
  Text dst = OLESTR("old");
  EXPECT_TRUE(AssignText(dst, Text(), 3));
  EXPECT_TRUE(dst.empty());
}

TEST(TrimText, TakesWhiteSpaceFromBothEndsOnly) {
  const struct {
    Text input;
    Text expected;
  } cases[] = {
      {OLESTR(""), OLESTR("")},
      {OLESTR(" \t\n\v\f\r"), OLESTR("")},
      {OLESTR("\r\n The text\tof a  line \v\f"), OLESTR("The text\tof a  line")},
      {OLESTR("x"), OLESTR("x")},
      {OLESTR("\u00a0x\u00a0"), OLESTR("\u00a0x\u00a0")},  // not white space in this sense
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(Plain(c.input));
    Text text = c.input;
    EXPECT_TRUE(TrimText(text));
    EXPECT_EQ(text, c.expected);
  }
}

TEST(TextEquals, KeepsAbsentAndEmptyApart) {
  EXPECT_TRUE(TextEquals(nullptr, nullptr));
  EXPECT_FALSE(TextEquals(nullptr, OLESTR("")));
  EXPECT_FALSE(TextEquals(OLESTR(""), nullptr));
  EXPECT_TRUE(TextEquals(OLESTR(""), OLESTR("")));
  EXPECT_TRUE(TextEquals(OLESTR("1.2.3"), OLESTR("1.2.3")));
  EXPECT_FALSE(TextEquals(OLESTR("1.2.3"), OLESTR("1.2.34")));
  EXPECT_FALSE(TextEquals(OLESTR("Case"), OLESTR("case")));
  EXPECT_FALSE(TextEquals(OLESTR("\u00e9"), OLESTR("e\u0301")));
  EXPECT_EQ(TextLength(nullptr), 0u);
  EXPECT_EQ(TextLength(OLESTR("abc")), 3u);
}

TEST(WideToNarrow, NeverWritesMoreThanThereIsRoomFor) {
  char out[8];
  std::fill(std::begin(out), std::end(out), '#');
  EXPECT_EQ(WideToNarrow(out, OLESTR("M\u00fcll\u20ac"), 6, CP_ACP), out);
  EXPECT_EQ(std::string(out), "M\xfcll\x80");
  EXPECT_EQ(out[6], '#');

  EXPECT_EQ(WideToNarrow(out, OLESTR("M\u00fcll\u20ac"), 5, CP_ACP), nullptr);
  EXPECT_EQ(std::string(out), "");
  EXPECT_EQ(WideToNarrow(out, OLESTR("x"), 0, CP_ACP), nullptr);
  EXPECT_EQ(WideToNarrow(out, nullptr, 6, CP_ACP), nullptr);
  EXPECT_EQ(WideToNarrow(nullptr, OLESTR("x"), 6, CP_ACP), nullptr);
}

TEST(CodePages, CarryEveryByteOfAValueAndOfAFileNameThereAndBack) {
  std::string everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte.push_back(static_cast<char>(byte));
  EXPECT_EQ(NarrowText(WidenText(everyByte, CP_ACP), CP_ACP), everyByte);
#ifndef _WIN32
  // A file name of Linux may be any bytes; one of Windows is Unicode.
  EXPECT_EQ(NarrowText(WidenText(everyByte, CP_UTF8), CP_UTF8), everyByte);
#endif
  EXPECT_EQ(WidenText("\xe2\x82\xac", CP_UTF8), OLESTR("\u20ac"));
  EXPECT_EQ(NarrowText(OLESTR("\U0001d11e"), CP_UTF8), "\xf0\x9d\x84\x9e");
  EXPECT_EQ(NarrowText(OLESTR("\u65e5"), CP_ACP), "?");
  EXPECT_EQ(NarrowText(Text(), CP_ACP), "");
}

}  // namespace
}  // namespace quillon
