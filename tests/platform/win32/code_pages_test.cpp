// Conversions between 8-bit and wide text.
#include <cstring>
#include <fstream>
#include <functional>

#include "layer_fixture.h"
#include "platform/services.h"
#include "platform/testing.h"

namespace quillon::test {
namespace {

std::u16string toWide(UINT page, std::string_view bytes) {
  const int length = static_cast<int>(bytes.size());
  std::u16string wide(
      static_cast<std::size_t>(MultiByteToWideChar(page, 0, bytes.data(), length, nullptr, 0)),
      u'\0');
  MultiByteToWideChar(page, 0, bytes.data(), length, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

std::string toBytes(UINT page, std::u16string_view wide) {
  const int length = static_cast<int>(wide.size());
  std::string bytes(static_cast<std::size_t>(WideCharToMultiByte(page, 0, wide.data(), length,
                                                                 nullptr, 0, nullptr, nullptr)),
                    '\0');
  WideCharToMultiByte(page, 0, wide.data(), length, bytes.data(), static_cast<int>(bytes.size()),
                      nullptr, nullptr);
  return bytes;
}

class CodePages : public LayerTest {
 protected:
  CodePages() { platform::testing::RereadCodePage(); }
  ~CodePages() override { platform::testing::RereadCodePage(); }

  void configure(const std::string& codePage) {
    std::ofstream(dir_ / "registry.reg")
        << "Windows Registry Editor Version 5.00\n\n"
           "[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Nls\\CodePage]\n"
           "\"ACP\"=\""
        << codePage << "\"\n";
    platform::testing::RereadCodePage();
  }
};

std::string everyByte() {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes.push_back(static_cast<char>(i));
  return bytes;
}

TEST_F(CodePages, EveryByteSurvivesTheAnsiCodePage) {
  EXPECT_EQ(GetACP(), 1252U);
  const std::u16string wide = toWide(CP_ACP, everyByte());
  ASSERT_EQ(wide.size(), 256U);
  EXPECT_EQ(wide[0x80], 0x20AC);
  EXPECT_EQ(wide[0x81], 0x0081);
  EXPECT_EQ(wide[0x9F], 0x0178);
  EXPECT_EQ(wide[0xE9], 0x00E9);
  EXPECT_EQ(toBytes(CP_ACP, wide), everyByte());
}

TEST_F(CodePages, WhatTheCodePageLacksBecomesTheDefaultCharacter) {
  EXPECT_EQ(toBytes(CP_ACP, u"a\u4E2D\U0001F600z"), "a??z");
  EXPECT_EQ(toBytes(CP_ACP, u"\u0080"), "?") << "the byte 0x80 is the euro sign";
  char out[4] = {};
  BOOL used = 7;
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, u"\u4E2Dx", 2, out, 4, "_", &used), 2);
  EXPECT_STREQ(out, "_x");
  EXPECT_TRUE(used);
  WideCharToMultiByte(CP_ACP, 0, u"xy", 2, out, 4, nullptr, &used);
  EXPECT_FALSE(used);
}

TEST_F(CodePages, Utf8CarriesWhatIsNotUtf8) {
  EXPECT_EQ(FileSystemCodePage(), CP_UTF8);
  struct Case {
    const char* what;
    std::string bytes;
    std::u16string wide;
  };
  const Case cases[] = {
      {"two bytes", "\xC3\xA9", u"\u00E9"},
      {"three bytes", "\xE4\xB8\xAD", u"\u4E2D"},
      {"four bytes", "\xF0\x9F\x98\x80", u"\U0001F600"},
      {"last code point", "\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
      {"a lone continuation", "a\x80z", u"a\xDC80z"},
      {"a cut character", "\xE4\xB8", u"\xDCE4\xDCB8"},
      {"a cut character before text", "\xE4\xB8x", u"\xDCE4\xDCB8x"},
      {"overlong", "\xC0\xAF", u"\xDCC0\xDCAF"},
      {"overlong, three bytes", "\xE0\x80\xAF", u"\xDCE0\xDC80\xDCAF"},
      {"an encoded surrogate", "\xED\xB2\x80", u"\xDCED\xDCB2\xDC80"},
      {"beyond the last code point", "\xF4\x90\x80\x80", u"\xDCF4\xDC90\xDC80\xDC80"},
      {"bytes that never occur", "\xFE\xFF", u"\xDCFE\xDCFF"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(toWide(CP_UTF8, c.bytes), c.wide);
    EXPECT_EQ(toBytes(CP_UTF8, c.wide), c.bytes);
  }
  EXPECT_EQ(toBytes(CP_UTF8, toWide(CP_UTF8, everyByte())), everyByte());
  // Surrogates that stand for no byte cannot be written.
  EXPECT_EQ(toBytes(CP_UTF8, u"\xD800x"), "\xEF\xBF\xBDx");
  EXPECT_EQ(toBytes(CP_UTF8, u"\xDC41"), "\xEF\xBF\xBD");
}

TEST_F(CodePages, LengthsAndTerminators) {
  char16_t wide[4] = {u'#', u'#', u'#', u'#'};
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", -1, nullptr, 0), 4);
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", -1, wide, 4), 4);
  EXPECT_EQ(wide[3], u'\0');
  wide[2] = u'#';
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "xyz", 2, wide, 4), 2);
  EXPECT_EQ(wide[2], u'#') << "a given length adds no terminator";
  SetLastError(0);
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", -1, wide, 3), 0);
  EXPECT_EQ(GetLastError(), 122U);
  EXPECT_EQ(std::u16string(wide, 4), (std::u16string{u'a', u'b', u'c', u'\0'}))
      << "cut, and nothing says where it ends";
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", 0, wide, 3), 0);
  EXPECT_EQ(GetLastError(), 87U);
  char out[4];
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, u"\u4E2D", -1, nullptr, 0, nullptr, nullptr), 4);
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, u"\u4E2D", 1, out, 2, nullptr, nullptr), 0);
  EXPECT_EQ(GetLastError(), 122U);
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, u"x", 1, out, 4, "?", nullptr), 0);
  EXPECT_EQ(GetLastError(), 87U) << "UTF-8 has no default character";
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, "\x80", 1, wide, 4), 0);
  EXPECT_EQ(GetLastError(), 1113U);
  char16_t both[2] = {u'x', 0};
  const struct {
    const char* what;
    std::function<int()> call;
    DWORD code;
  } refused[] = {
      {"flags of UTF-8",
       [&] { return MultiByteToWideChar(CP_UTF8, MB_PRECOMPOSED, "a", 1, wide, 4); }, 1004},
      {"flags of GB 18030",
       [&] { return MultiByteToWideChar(54936, MB_ERR_INVALID_CHARS, "a", 1, wide, 4); }, 1004},
      {"unknown flags", [&] { return MultiByteToWideChar(CP_ACP, 0x10, "a", 1, wide, 4); }, 1004},
      {"flags to UTF-8",
       [&] {
         return WideCharToMultiByte(CP_UTF8, WC_NO_BEST_FIT_CHARS, u"a", 1, out, 4, nullptr,
                                    nullptr);
       },
       1004},
      {"those of UTF-8 for another one",
       [&] {
         return WideCharToMultiByte(CP_ACP, WC_ERR_INVALID_CHARS, u"a", 1, out, 4, nullptr,
                                    nullptr);
       },
       1004},
      {"one buffer",
       [&] {
         return WideCharToMultiByte(CP_ACP, 0, both, 1, reinterpret_cast<char*>(both), 4, nullptr,
                                    nullptr);
       },
       87},
  };
  for (const auto& c : refused) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(c.call(), 0);
    EXPECT_EQ(GetLastError(), c.code);
  }
  EXPECT_EQ(MultiByteToWideChar(64999, 0, "a", 1, wide, 4), 0);
  EXPECT_EQ(GetLastError(), 87U);
}

TEST_F(CodePages, TheRegistryChoosesTheAnsiCodePage) {
  struct Case {
    const char* codePage;
    UINT expectedPage;
    const char* bytes;
    std::u16string wide;
  };
  const Case cases[] = {
      {"1251", 1251, "\xCF\xE8\xE2\xEE", u"\u041F\u0438\u0432\u043E"},
      {"932", 932, "\x83\x65\x83\x58\x83\x67x", u"\u30C6\u30B9\u30C8x"},
      {"65001", 65001, "\xC3\xA9", u"\u00E9"},
      {"4711", 1252, "\x80", u"\u20AC"},  // unknown
      {"", 1252, "\x80", u"\u20AC"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.codePage);
    configure(c.codePage);
    EXPECT_EQ(GetACP(), c.expectedPage);
    EXPECT_EQ(toWide(CP_ACP, c.bytes), c.wide);
    EXPECT_EQ(toBytes(CP_ACP, c.wide), c.bytes);
  }
  for (const char* page : {"1253", "1255", "874", "936", "20932", "28596", "54936"}) {
    SCOPED_TRACE(page);
    configure(page);
    std::string all = everyByte();
    EXPECT_EQ(toBytes(CP_ACP, toWide(CP_ACP, all)), all);
  }
}

TEST_F(CodePages, OthersByNumber) {
  const struct {
    UINT page;
    const char* bytes;
    std::u16string wide;
    const char* undefined;  // null: every byte has a character
  } cases[] = {
      {874, "\xA1\x80", u"\u0E01\u20AC", "\xDB"},
      {936, "\xD5\x5C\xCD\xF5", u"\u8AA0\u738B", "\xFE\xFE"},
      {949, "\xC8\xAB", u"\uD64D", "\xC9\xFF"},
      {20932, "a\xBB\xB3", u"a\u5C71", "\xFE\xFE"},       // JIS X 0208
      {20932, "\xB0!\xED?z", u"\u4E02\u9F41z", "\xFE~"},  // JIS X 0212
      {20932, "\x8E\xB1", u"\uFF71", "\x8F\xB0\xA1"},     // katakana
      {28591, "\xE9\x80", u"\u00E9\u0080", nullptr},
      {28592, "\xB3", u"\u0142", nullptr},
      {28593, "\xA1", u"\u0126", "\xA5"},
      {28594, "\xBF", u"\u014B", nullptr},
      {28595, "\xBB", u"\u041B", nullptr},
      {28596, "\xC7", u"\u0627", "\xA1"},
      {28597, "\xE1", u"\u03B1", "\xFF"},
      {28598, "\xE0", u"\u05D0", "\xBF"},
      {28599, "\xF0", u"\u011F", nullptr},
      {28605, "\xA4", u"\u20AC", nullptr},
      {54936, "\x81\x39\xEF\x30\x95\x32\x82\x36", u"\u3401\U00020000", nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.page);
    EXPECT_EQ(toWide(c.page, c.bytes), c.wide);
    EXPECT_EQ(toBytes(c.page, c.wide), c.bytes);
    if (c.undefined == nullptr) continue;
    SetLastError(0);
    EXPECT_EQ(MultiByteToWideChar(c.page, MB_ERR_INVALID_CHARS, c.undefined, -1, nullptr, 0), 0);
    EXPECT_EQ(GetLastError(), 1113U);
    EXPECT_EQ(toBytes(c.page, toWide(c.page, c.undefined)), c.undefined) << "no byte is lost";
  }
}

}  // namespace
}  // namespace quillon::test
