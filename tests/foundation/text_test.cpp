#include "foundation/text.h"

#include "foundation_test_support.h"

namespace quillon {
namespace {

using test::Plain;

TEST(AssignText, RefusesEmptyAndOverlongTextsAndKeepsTheOldOne) {
  struct Case {
    const char* what;
    std::size_t length;
    bool allowEmpty;
    std::size_t maxLen;
    bool expected;
  };
  const Case cases[] = {
      {"at the limit", 64, true, 64, true},       {"over the limit", 65, true, 64, false},
      {"no limit", 5000, true, 0, true},          {"empty and allowed", 0, true, 64, true},
      {"empty and refused", 0, false, 64, false}, {"empty, refused, no limit", 0, false, 0, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const Text src(c.length, u'x');
    Text dst = u"old";
    EXPECT_EQ(AssignText(dst, src, c.allowEmpty, c.maxLen), c.expected);
    EXPECT_EQ(Plain(dst), c.expected ? Plain(src) : "old");
  }
  Text dst = u"old";
  EXPECT_TRUE(AssignText(dst, Text(), 3));
  EXPECT_TRUE(dst.empty());
}

TEST(TrimText, TakesWhiteSpaceFromBothEndsOnly) {
  struct Case {
    Text input;
    Text expected;
  };
  const Case cases[] = {
      {u"", u""},
      {u" \t\n\v\f\r", u""},
      {u"\r\n The text\tof a  line \v\f", u"The text\tof a  line"},
      {u"x", u"x"},
      {u"\u00a0x\u00a0", u"\u00a0x\u00a0"},  // not white space in this sense
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Plain(c.input));
    Text text = c.input;
    EXPECT_TRUE(TrimText(text));
    EXPECT_EQ(text, c.expected);
  }
}

TEST(TextEquals, KeepsAbsentAndEmptyApart) {
  EXPECT_TRUE(TextEquals(nullptr, nullptr));
  EXPECT_FALSE(TextEquals(nullptr, u""));
  EXPECT_FALSE(TextEquals(u"", nullptr));
  EXPECT_TRUE(TextEquals(u"", u""));
  EXPECT_TRUE(TextEquals(u"1.2.3", u"1.2.3"));
  EXPECT_FALSE(TextEquals(u"1.2.3", u"1.2.34"));
  EXPECT_FALSE(TextEquals(u"Case", u"case"));
  EXPECT_FALSE(TextEquals(u"\u00e9", u"e\u0301"));
  EXPECT_EQ(TextLength(nullptr), 0u);
  EXPECT_EQ(TextLength(u"abc"), 3u);
}

TEST(WideToNarrow, NeverWritesMoreThanThereIsRoomFor) {
  char out[8];
  std::fill(std::begin(out), std::end(out), '#');
  EXPECT_EQ(WideToNarrow(out, u"M\u00fcll\u20ac", 6, CP_ACP), out);
  EXPECT_EQ(std::string(out), "M\xfcll\x80");
  EXPECT_EQ(out[6], '#');

  EXPECT_EQ(WideToNarrow(out, u"M\u00fcll\u20ac", 5, CP_ACP), nullptr);
  EXPECT_EQ(std::string(out), "");
  EXPECT_EQ(WideToNarrow(out, u"x", 0, CP_ACP), nullptr);
  EXPECT_EQ(WideToNarrow(out, nullptr, 6, CP_ACP), nullptr);
  EXPECT_EQ(WideToNarrow(nullptr, u"x", 6, CP_ACP), nullptr);
}

TEST(CodePages, CarryEveryByteOfAValueAndOfAFileNameThereAndBack) {
  std::string everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte.push_back(static_cast<char>(byte));
  for (const UINT codePage : {CP_ACP, CP_UTF8}) {
    SCOPED_TRACE(codePage);
    EXPECT_EQ(NarrowText(WidenText(everyByte, codePage), codePage), everyByte);
  }
  EXPECT_EQ(WidenText("\xe2\x82\xac", CP_UTF8), u"\u20ac");
  EXPECT_EQ(NarrowText(u"\U0001d11e", CP_UTF8), "\xf0\x9d\x84\x9e");
  EXPECT_EQ(NarrowText(u"\u65e5", CP_ACP), "?");
  EXPECT_EQ(NarrowText(Text(), CP_ACP), "");
}

}  // namespace
}  // namespace quillon
