#include "charset/character_set.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/text.h"

namespace quillon {
namespace {

using namespace std::string_literals;
using test::Plain;

constexpr ValueForm kNames = ValueForm::PersonNames;
constexpr ValueForm kValues = ValueForm::Values;
constexpr ValueForm kParagraphs = ValueForm::Paragraphs;
constexpr ValueForm kForms[] = {kNames, kValues, kParagraphs};

struct Case {
  const char* what;
  const char* declared;
  ValueForm form;
  std::string bytes;
  std::vector<std::string> values;
};

// An installation of Windows, and Wine, may be without its code page.
bool hasGb18030() { return MultiByteToWideChar(54936, 0, "A", 1, nullptr, 0) > 0; }

void expectDecoded(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const CharacterSet set(c.declared);
    std::vector<std::string> values;
    std::string joined;
    for (const Text& value : set.Decode(c.bytes, c.form)) {
      if (!values.empty()) joined += '\\';
      values.push_back(Plain(value));
      joined += values.back();
    }
    EXPECT_EQ(values, c.values);
    EXPECT_EQ(Plain(set.DecodeJoined(c.bytes, c.form)), joined);
  }
}

const std::string kJapaneseName =
    "Yamada^Tarou=\x1B$B;3ED\x1B(B^\x1B$BB@O:\x1B(B=\x1B$B$d$^$@\x1B(B^\x1B$B$?$m$&\x1B(B";
const std::string kKatakanaName =
    "\xD4\xCF\xC0\xDE^\xC0\xDB\xB3=\x1B$B;3ED\x1B(J^\x1B$BB@O:\x1B(J=\x1B$B$d$^$@\x1B(J^"
    "\x1B$B$?$m$&\x1B(J";
const std::string kKoreanName =
    "Hong^Gildong=\x1B$)C\xFB\xF3^\x1B$)C\xD1\xCE\xD4\xD7=\x1B$)C\xC8\xAB^\x1B$)C\xB1\xE6\xB5\xBF";
const std::string kChineseName = "Zhang^XiaoDong=\x1B$)A\xD5\xC5^\x1B$)A\xD0\xA1\xB6\xAB=";

TEST(CharacterSets, EachTermHasItsCharacters) {
  expectDecoded({
      {"Latin 1", "ISO_IR 100", kNames, "Buc^J\xE9r\xF4me", {"Buc^Jérôme"}},
      {"Latin 2", "ISO_IR 101", kNames, "W\xB1\xB3\xEAsa", {"Wąłęsa"}},
      {"Latin 3", "ISO_IR 109", kNames, "\xC6i\xFDman\xB1o", {"Ĉiŭmanħo"}},
      {"Latin 4", "ISO_IR 110", kNames, "J\xE0nis B\xEArzi\xF2\xB9", {"Jānis Bęrziōš"}},
      {"Cyrillic", "ISO_IR 144", kNames, "\xBB\xEEk\xE1", {"Люkс"}},
      {"Arabic",
       "ISO_IR 127",
       kNames,
       "\xE2\xC8\xC7\xE6\xEA^\xE4\xE6\xD2\xC7\xD1",
       {"قباني^لنزار"}},
      {"Greek", "ISO_IR 126", kNames, "\xC4\xE9\xEF\xED\xF5\xF3\xE9\xEF\xF2", {"Διονυσιος"}},
      {"Hebrew", "ISO_IR 138", kNames, "\xF9\xF8\xE5\xEF^\xE3\xE1\xE5\xF8\xE4", {"שרון^דבורה"}},
      {"Latin 5",
       "ISO_IR 148",
       kNames,
       "\xC7"
       "avu\xFEo\xF0lu",
       {"Çavuşoğlu"}},
      {"Latin 9",
       "ISO_IR 203",
       kNames,
       "\xBC"
       "dipe \xA4",
       {"Œdipe €"}},
      {"Thai", "ISO_IR 166", kNames, "\xB9\xD2\xC1\xCA\xA1\xD8\xC5", {"นามสกุล"}},
      {"katakana", "ISO_IR 13", kNames, "\xD4\xCF\xC0\xDE^\xC0\xDB\xB3", {"ﾔﾏﾀﾞ^ﾀﾛｳ"}},
      {"Unicode",
       "ISO_IR 192",
       kNames,
       "Wang^XiaoDong=\xE7\x8E\x8B^\xE5\xB0\x8F\xE6\x9D\xB1=",
       {"Wang^XiaoDong=王^小東="}},
      {"Unicode beyond the first plane", "ISO_IR 192", kValues, "\xF0\xA0\xAE\xB7", {"𠮷"}},
      {"GB18030",
       "GB18030",
       kNames,
       "Wang^XiaoDong=\xCD\xF5^\xD0\xA1\xB6\xAB=",
       {"Wang^XiaoDong=王^小东="}},
      {"GB18030, four bytes",
       "GB18030",
       kValues,
       "\x81\x39\xEF\x30\x95\x32\x82\x36",
       {hasGb18030() ? "㐁𠀀" : "\uFFFD𠀀"}},
      {"GBK",
       "GBK",
       kNames,
       "Wang^XiaoDong=\xCD\xF5^\xD0\xA1\xB6\xAB=",
       {"Wang^XiaoDong=王^小东="}},
      {"JIS X 0208",
       "\\ISO 2022 IR 87",
       kNames,
       kJapaneseName,
       {"Yamada^Tarou=山田^太郎=やまだ^たろう"}},
      {"JIS X 0208 after katakana",
       "ISO 2022 IR 13\\ISO 2022 IR 87",
       kNames,
       kKatakanaName,
       {"ﾔﾏﾀﾞ^ﾀﾛｳ=山田^太郎=やまだ^たろう"}},
      {"JIS X 0212",
       "\\ISO 2022 IR 87\\ISO 2022 IR 159",
       kValues,
       "A\x1B$(D0!m?\x1B$B;3\x1B(B",
       {"A丂齁山"}},
      {"KS X 1001", "\\ISO 2022 IR 149", kNames, kKoreanName, {"Hong^Gildong=洪^吉洞=홍^길동"}},
      {"GB 2312", "\\ISO 2022 IR 58", kNames, kChineseName, {"Zhang^XiaoDong=张^小东="}},
      {"Latin and Greek and Cyrillic",
       "ISO 2022 IR 100\\ISO 2022 IR 126\\ISO 2022 IR 144",
       kValues,
       "Andr\xE9 \x1B-F\xC4\xE9 \x1B-L\xBB \x1B-A\xE9",
       {"André Δι Л é"}},
      {"every set by its escape",
       "ISO 2022 IR 6",
       kValues,
       "\x1B-B\xB3\x1B-C\xB1\x1B-D\xBF\x1B-G\xC7\x1B-H\xE0\x1B-M\xF0\x1B-b\xA4\x1B-T\xA1\x1B)I\xB1"
       "\x1B$@;3\x1B(B.",
       {"łħŋاאğ€กｱ山."}},
      {"none", "", kValues, "Buc^J\xE9r\xF4me \x80", {"Buc^Jérôme €"}},
      {"none, with escapes",
       "",
       kNames,
       "\xE9" + kJapaneseName,
       {"éYamada^Tarou=山田^太郎=やまだ^たろう"}},
  });
}

TEST(CharacterSets, TermsAreKnownInOtherSpellings) {
  const struct {
    const char* declared;
    const char* terms;
    bool isKnown;
    const char* shown;  // what the two bytes of "é" in UTF-8 are in it
  } cases[] = {
      {"ISO_IR 192", "ISO_IR 192", true, "é"},
      {"ISO IR 192 ", "ISO IR 192", true, "é"},
      {"ISO-IR 192", "ISO-IR 192", true, "é"},
      {" iso_ir 192", "iso_ir 192", true, "é"},
      {"ISO2022 IR 192", "ISO2022 IR 192", true, "é"},
      {"ISO_IR192\\ISO 2022 IR 87", "ISO_IR192\\ISO 2022 IR 87", true, "é"},
      {"ISO_IR 100", "ISO_IR 100", true, "Ã©"},
      {"ISO 2022 IR100", "ISO 2022 IR100", true, "Ã©"},
      {"ISO2022IR 100 \\ ISO 2022 IR 87", "ISO2022IR 100\\ISO 2022 IR 87", true, "Ã©"},
      {"ISO_IR 6", "ISO_IR 6", true, "\uFFFD\uFFFD"},
      {"\\ISO 2022 IR 87", "\\ISO 2022 IR 87", true, "\uFFFD\uFFFD"},
      {"ISO 2022 IR 87", "ISO 2022 IR 87", true, "\uFFFD\uFFFD"},
      // GB 2312 in the first value, where it must not be, means what it can mean only.
      {"ISO 2022 58", "ISO 2022 58", true, "茅"},
      {"GBK\\ISO_IR 100", "GBK\\ISO_IR 100", true, "茅"},
      {"gb 18030", "gb 18030", true, "茅"},
      // As if nothing were declared.
      {"", "", false, "Ã©"},
      {"  ", "", false, "Ã©"},
      {"\\", "", false, "Ã©"},
      {"LATIN1\\ISO_IR 192", "LATIN1\\ISO_IR 192", false, "Ã©"},
      {"ISO_IR 1000", "ISO_IR 1000", false, "Ã©"},
      {"ISO_IR 4294967488", "ISO_IR 4294967488", false, "Ã©"},
      {"ISO_IR 0", "ISO_IR 0", false, "Ã©"},
      {"ISO_IR", "ISO_IR", false, "Ã©"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.declared);
    const CharacterSet set(c.declared);
    EXPECT_EQ(set.IsKnown(), c.isKnown);
    EXPECT_EQ(set.Terms(), c.terms);
    EXPECT_EQ(Plain(set.DecodeJoined("\xC3\xA9", kValues)), c.shown);
  }
}

TEST(CharacterSets, AValueBeginsWithTheFirstSetAgain) {
  const char* const kJapanese = "\\ISO 2022 IR 87";
  const char* const kGreek = "ISO 2022 IR 100\\ISO 2022 IR 126";
  expectDecoded({
      {"at a backslash", kGreek, kValues, "\x1B-F\xE1\\\xE1", {"α", "á"}},
      {"not at the backslash of a text", kGreek, kParagraphs, "\x1B-F\xE1\\\xE1", {"α\\α"}},
      {"at a component", kGreek, kNames, "\x1B-F\xE1^\xE1=\xE1", {"α^á=á"}},
      {"not where there are no components", kGreek, kValues, "\x1B-F\xE1^\xE1=\xE1", {"α^α=α"}},
      {"at line ends",
       kGreek,
       kParagraphs,
       "\x1B-F\xE1\n\xE1\x1B-F\xE1\r\xE1\x1B-F\xE1\t\xE1",
       {"α\náα\ráα\tá"}},
      {"at a form feed, not at other control characters",
       kGreek,
       kParagraphs,
       "\x1B-F\xE1\v\xE1\f\xE1",
       {"α\vα\fá"}},
      {"a line without the escape that it needs",
       "\\ISO 2022 IR 149",
       kParagraphs,
       "\x1B$)C\xC8\xAB\r\n\xC8\xAB",
       {"홍\r\n\uFFFD\uFFFD"}},
      // Each of these is the second half of a character, or its first.
      {"no delimiter within a character", kJapanese, kNames, "\x1B$B$^\\>=j\x1B(B^x", {"ま楙所^x"}},
      {"no value within a character",
       kJapanese,
       kValues,
       "\x1B$B;\\\x1B(B\\\x1B$B\\;\x1B(B",
       {"施", "椹"}},
      {"a delimiter in a set that was not left",
       kJapanese,
       kNames,
       "\x1B$B;3^\x1B$BB@\x1B(B",
       {"山^太"}},
      {"line ends in a set that was not left",
       kJapanese,
       kParagraphs,
       "\x1B$B;3\r\nab",
       {"山\r\nab"}},
      {"a space in a set of two bytes", kJapanese, kValues, "\x1B$B;3 ;3\x1B(B ", {"山 山"}},
      {"backslash and tilde of JIS X 0201", "ISO_IR 13", kParagraphs, "\\~", {"¥‾"}},
      {"the backslash of JIS X 0201 divides", "ISO_IR 13", kValues, "a~\\b", {"a‾", "b"}},
  });
}

TEST(CharacterSets, ABackslashInACharacterDividesNothing) {
  expectDecoded({
      {"GBK", "GBK", kNames, "\xD5\x5C\\\xD5\x5C", {"誠", "誠"}},
      {"GBK, at the end", "GBK", kValues, "A\xD5\x5C", {"A誠"}},
      {"GB18030", "GB18030", kValues, "\xD5\x5C^\\B", {"誠^", "B"}},
      {"a backslash of its own in a text",
       "GB18030",
       kParagraphs,
       "\xD5\x5C\\\xD5\x5C",
       {"誠\\誠"}},
      {"half a character before a backslash", "GB18030", kValues, "\x81\\\\x81", {"乗", "x81"}},
  });
}

TEST(CharacterSets, PaddingIsLeftOut) {
  expectDecoded({
      {"values", "ISO_IR 100", kValues, "  \xE9 \\ b  \\\\  "s, {"é", "b", "", ""}},
      {"names", "ISO_IR 192", kNames, " A^B \\ C"s, {"A^B", "C"}},
      {"zero bytes", "ISO_IR 100", kValues, "\xE9 \0\0"s, {"é"}},
      {"a text keeps its beginning", "ISO_IR 192", kParagraphs, "  a\n b \n  "s, {"  a\n b \n"}},
      {"nothing", "ISO_IR 192", kValues, "", {""}},
  });
}

TEST(CharacterSets, WhatTheSetDoesNotHoldShows) {
  const std::string no = "\uFFFD";
  expectDecoded({
      {"beyond ASCII", "ISO_IR 6", kValues, "a\xE9\x80z", {"a" + no + no + "z"}},
      {"undefined in Hebrew", "ISO_IR 138", kValues, "\xE0\xBF\xE1", {"א" + no + "ב"}},
      {"undefined in Thai", "ISO_IR 166", kValues, "\xA1\xDB\xFC.", {"ก" + no + no + "."}},
      {"outside katakana", "ISO_IR 13", kValues, "\xA0\xB1\xE0", {no + "ｱ" + no}},
      {"no UTF-8", "ISO_IR 192", kValues, "a\xE9z\xC3", {"a" + no + "z" + no}},
      {"UTF-8 with a cut, a long and a surrogate form",
       "ISO_IR 192",
       kValues,
       "\xE4\xB8|\xC0\xAF|\xED\xA0\x80|\xF4\x90\x80\x80",
       {no + no + "|" + no + no + "|" + no + no + no + "|" + no + no + no + no}},
      {"half a pair in G0", "\\ISO 2022 IR 87", kValues, "\x1B$B;3E", {"山" + no}},
      {"a pair without a character in G0",
       "\\ISO 2022 IR 87",
       kValues,
       "\x1B$B;3~~;3\x1B(B",
       {"山" + no + "山"}},
      {"a high byte with a set in G0 only",
       "\\ISO 2022 IR 87",
       kValues,
       "\x1B$B;3\x1B(B\xE9",
       {"山" + no}},
      {"half a pair in G1",
       "\\ISO 2022 IR 149",
       kValues,
       "\x1B$)C\xC8\xAB\xC8x\xC8",
       {"홍" + no + "x" + no}},
      {"a pair without a character in G1",
       "\\ISO 2022 IR 58",
       kValues,
       "\x1B$)A\xD5\xC5\xFE\xFE.",
       {"张" + no + "."}},
      {"an escape that is none",
       "ISO 2022 IR 100",
       kValues,
       "a\x1B[1m\xE9\x1B",
       {"a" + no + "[1mé" + no}},
      {"a cut escape", "\\ISO 2022 IR 149", kValues, "a\x1B$)", {"a" + no + "$)"}},
      {"half characters of GB18030",
       "GB18030",
       kValues,
       "\xCD\xF5\x81\x30\x81 \xFF\xCD",
       {"王" + no + "0" + no + " " + no + no}},
      {"four bytes beyond the last of GB18030",
       "GB18030",
       kValues,
       "\xE3\x32\x9A\x36.",
       {no + "2" + no + "6."}},
      {"four bytes in GBK", "GBK", kValues, "\x81\x39\xEF\x30", {no + "9" + no + "0"}},
  });
}

// A text may end anywhere; what stands before stays what it was, and each byte has its say.
TEST(CharacterSets, ACutTextKeepsWhatStandsBeforeTheCut) {
  const struct {
    const char* declared;
    std::string bytes;
  } cases[] = {
      {"\\ISO 2022 IR 87", kJapaneseName},
      {"ISO 2022 IR 13\\ISO 2022 IR 87", kKatakanaName},
      {"\\ISO 2022 IR 149", kKoreanName},
      {"\\ISO 2022 IR 58", kChineseName},
      {"", kJapaneseName},
      {"GB18030", (hasGb18030() ? "\x81\x39\xEF\x30" : "") + "\xD5\x5C\x95\x32\x82\x36"s},
      {"ISO_IR 192", "\xE7\x8E\x8B^\xF0\xA0\xAE\xB7"},
  };
  for (const auto& c : cases) {
    for (const ValueForm form : kForms) {
      const CharacterSet set(c.declared);
      const Text whole = set.DecodeJoined(c.bytes, form);
      for (std::size_t kept = 0; kept < c.bytes.size(); ++kept) {
        SCOPED_TRACE(c.declared + ": "s + std::to_string(kept));
        const Text cut = set.DecodeJoined(std::string_view(c.bytes).substr(0, kept), form);
        const auto differs = std::ranges::mismatch(cut, whole).in1;
        // What is left of an escape or a character is at most its first bytes.
        EXPECT_LE(cut.end() - differs, 3);
        if (differs != cut.end()) {
          EXPECT_EQ(*differs, 0xFFFD);
        }
      }
    }
  }
}

TEST(CharacterSets, NoBytesAreLostOrRefused) {
  const char* const declared[] = {"",           "ISO_IR 6",          "ISO_IR 13",
                                  "ISO_IR 100", "ISO_IR 166",        "GB18030",
                                  "GBK",        "\\ISO 2022 IR 149", "ISO_IR 192"};
  for (const char* terms : declared) {
    const CharacterSet set(terms);
    for (int first = 0; first < 256; ++first) {
      for (int second = 0; second < 256; ++second) {
        const std::string bytes{'x', static_cast<char>(first), static_cast<char>(second), 'y', 'z'};
        for (const ValueForm form : kForms) {
          const Text text = set.DecodeJoined(bytes, form);
          ASSERT_GE(text.size(), 3U) << terms << ": " << first << ' ' << second;
          ASSERT_EQ(text.front(), OLESTR('x'));
          ASSERT_EQ(text.back(), OLESTR('z'));
        }
      }
    }
  }
}

TEST(CharacterSets, LongTextIsConvertedWhole) {
  std::string bytes;
  std::string expected;
  for (int i = 0; i < 100'000; ++i) {
    bytes += "\xD5\xC5";
    expected += "张";
  }
  EXPECT_EQ(Plain(CharacterSet("GB18030").DecodeJoined(bytes + "\x81", kParagraphs)),
            expected + "\uFFFD");
}

TEST(CharacterSets, TheDefaultRepertoireIsAsciiWithoutEscapes) {
  EXPECT_TRUE(IsDefaultRepertoire("Doe^Jane\\\r\n~"));
  EXPECT_TRUE(IsDefaultRepertoire(""));
  EXPECT_FALSE(IsDefaultRepertoire("Jos\xE9"));
  EXPECT_FALSE(IsDefaultRepertoire("\x1B(B"));
}

}  // namespace
}  // namespace quillon
