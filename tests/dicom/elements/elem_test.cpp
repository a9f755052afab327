#include "dicom/elem.h"

#include "dicom/elem_list.h"
#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

using Element = ToolkitTest;
using std::string_literals::operator""s;

constexpr DcTag kBirthDate = 0x00100030;
constexpr DcTag kModality = 0x00080060;
constexpr DcTag kImageType = 0x00080008;
constexpr DcTag kRows = 0x00280010;

TEST_F(Element, TextIsSplitAndTrimmedByTheRulesOfItsVr) {
  const struct {
    const char* what;
    DcVr vr;
    std::string text;
    std::string stored;
  } cases[] = {
      {"three values", DcVr::CS, "A\\B\\C", "A/B/C"},
      {"trailing separator", DcVr::CS, "A\\", "A"},
      {"two trailing separators", DcVr::CS, "A\\\\", "A/"},
      {"separator before padding", DcVr::CS, "A\\ ", "A"},
      {"empty between", DcVr::CS, "A\\\\C", "A//C"},
      {"leading separator", DcVr::CS, "\\A", "/A"},
      {"separator alone", DcVr::CS, "\\", ""},
      {"pieces are trimmed", DcVr::DS, " 1.5 \\\t-2 ", "1.5/-2"},
      {"two spaces", DcVr::LO, "  ", ""},
      {"nothing", DcVr::LO, "", ""},
      {"text is not split", DcVr::LT, "a\\b", "a\\b"},
      {"short text is not split", DcVr::ST, "a\\b\\", "a\\b\\"},
      {"escape hides a separator", DcVr::LO, "\x1B$B\\x\x1B(B\\y", "\x1B$B\\x\x1B(B/y"},
      {"escape hides it in a name", DcVr::PN, "\x1B$B\\\x1B(B", "\x1B$B\\\x1B(B"},
      {"escape hides nothing elsewhere", DcVr::UI, "1.2\\1.3", "1.2/1.3"},
      {"ends at a zero byte", DcVr::UI, "1.2\0\\1.3"s, "1.2"},
      {"numbers", DcVr::US, "1\\65535", "1/65535"},
      {"tags", DcVr::AT, "(0010,0020)\\(FFFE,e000)", "(0010,0020)/(fffe,e000)"},
      {"control characters", DcVr::LO, "a\nb\x0E"s + "c", "a|b c"},
      {"control characters in a comment", DcVr::LT, "a\r\nb", "a\r\nb"},
      {"control characters beside an escape", DcVr::SH, "a\n\x1B(B", "a\n\x1B(B"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DcElem element(kPrivate, c.vr);
    EXPECT_EQ(element.addText(c.text), kDcOk);
    EXPECT_EQ(valuesOf(element), c.stored);
  }
  // Leading space of a comment is kept until it is read.
  DcElem comment(kPrivate, DcVr::ST);
  EXPECT_EQ(comment.addValue("  a  "), kDcOk);
  EXPECT_EQ(*comment.stringValue(0), "  a");
  EXPECT_EQ(valuesOf(comment), "a");
  // A failing piece ends the value.
  DcElem code(kPrivate, DcVr::CS);
  EXPECT_EQ(code.addValue("A\\b\\C"), 0x160CU);
  EXPECT_EQ(valuesOf(code), "A");
}

TEST_F(Element, CheckedTextKeepsTheRulesOfItsVr) {
  const std::string line64(64, 'x');
  const std::string name324(324, 'n');
  const std::string comment10240(10240, 'c');
  const std::string uid128(128, '1');
  const struct {
    const char* what;
    DcVr vr;
    std::string text;
    std::uint32_t code;
    std::string stored;
    std::string message;  // behind the tag
  } cases[] = {
      {"lower-case code", DcVr::CS, "abc", 0x160C, "-",
       "illegal character 'a' (0x61) in string 'abc'"},
      {"code", DcVr::CS, "A_1 *", 0, "A_1 *", ""},
      {"code of 17 whose 17th is wrong", DcVr::CS, "ABCDEFGHIJKLMNOPq", 0, "ABCDEFGHIJKLMNOP",
       "input string truncated from 17 to 16 chars"},
      {"escape in a code", DcVr::CS, "\x1B"s + "abc", 0, "\x1B"s + "abc", ""},
      {"line of 64", DcVr::LO, line64, 0, line64, ""},
      {"line of 70", DcVr::LO, line64 + "123456", 0, line64,
       "input string truncated from 70 to 64 chars"},
      {"control character in a line", DcVr::LO, "a\x0F"s + "z", 0, "a z",
       "illegal character '\x0F' (0xf) in string 'a\x0F"s + "z'"},
      {"AE of any printable", DcVr::AE, "a~!", 0, "a~!", ""},
      {"AE beyond ASCII", DcVr::AE, "\xE4", 0x160C, "-",
       "illegal character '\xE4' (0xe4) in string '\xE4'"},
      {"decimal", DcVr::DS, "-1.5E+10", 0, "-1.5E+10", ""},
      {"decimal comma", DcVr::DS, "1,5", 0x160C, "-",
       "illegal character ',' (0x2c) in string '1,5'"},
      {"decimal of 17", DcVr::DS, "1.234567890123456", 0, "1.23456789012345",
       "string too long\n"
       "Element (0009,1010) - input string truncated from 17 to 16 chars"},
      {"integer of 12", DcVr::IS, "-12345678901", 0, "-12345678901", ""},
      {"integer of 13", DcVr::IS, "1234567890123", 0x160B, "-", "string too long"},
      {"UID of 128", DcVr::UI, uid128, 0, uid128, ""},
      {"UID of 129", DcVr::UI, uid128 + "1", 0x160B, "-", "string too long"},
      {"UID with a letter", DcVr::UI, "1.2.a", 0x160C, "-",
       "illegal character 'a' (0x61) in string '1.2.a'"},
      {"float text of 17", DcVr::FL, "1.000000000000000", 0x160B, "-", "string too long"},
      {"float text", DcVr::FD, "1e3", 0, "1000", ""},
      {"number with a letter", DcVr::US, "1a", 0x160C, "-",
       "illegal character 'a' (0x61) in string '1a'"},
      {"date", DcVr::DA, "19990229", 0x4402, "-", "invalid day 29 in string '19990229'"},
      {"older date", DcVr::DA, "2000.02.29", 0, "2000.02.29", ""},
      {"time", DcVr::TM, "235960", 0x4402, "-", "invalid second value in string '235960'"},
      {"age", DcVr::AS, "45Y", 0x4402, "-", "'45Y' incorrect AS string length, must be 4 bytes"},
      {"tag", DcVr::AT, "0010,0010", 0x4402, "-",
       "0010,0010 incorrect string length, should be 11 bytes"},
      {"name", DcVr::PN, "a\x01^b", 0, "a\x01^b", ""},
      {"name of 325", DcVr::PN, name324 + "n", 0, name324,
       "input string truncated from 325 to 324 chars"},
      {"comment of 10241", DcVr::LT, comment10240 + "c", 0, comment10240,
       "input string truncated from 10241 to 10240 chars"},
      {"empty code", DcVr::CS, " ", 0, "", ""},
      {"empty UID", DcVr::UI, " ", 0, "", ""},
      {"empty number", DcVr::US, " ", 0, "-", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DcElem element(kPrivate, c.vr);
    EXPECT_EQ(element.addText(c.text), c.code);
    EXPECT_EQ(logged(), c.message.empty() ? "" : "Element (0009,1010) - " + c.message);
    EXPECT_EQ(valuesOf(element), c.stored);
  }
  for (const auto& [vr, code] : {std::pair(DcVr::OB, "OB"), std::pair(DcVr::UT, "UT")}) {
    DcElem bulk(kPrivate, vr);
    EXPECT_EQ(bulk.addText("abc"), 0x1602U);
    EXPECT_EQ(logged(), "Element (0009,1010) VR="s + code + ", does not accept string");
    EXPECT_EQ(bulk.valueCount(), 0);
  }
  EXPECT_EQ(lastFunction(), "DcElem::addValueStrg");
}

TEST_F(Element, WithCheckingOffNothingIsRefusedOrCutInAList) {
  const std::pair<DcVr, std::string> cases[] = {
      {DcVr::LO, std::string(70, 'x')},
      {DcVr::CS, "abc"},
      {DcVr::DA, "19990229"},
      {DcVr::TM, "1:00"},
      {DcVr::AS, "old"},
      {DcVr::UI, std::string(200, '1')},
      {DcVr::IS, "many"},
      {DcVr::DS, "1.23456789012345678"},
      {DcVr::DT, "yesterday"},
  };
  static_cast<void>(dcSetValueChecking(false));
  DcElemList list;
  for (const auto& [vr, text] : cases) {
    SCOPED_TRACE(text);
    DcElem* const element = list.add(elem(kPrivate, vr));
    EXPECT_EQ(element->addValue(text.c_str()), kDcOk);
    EXPECT_EQ(valuesOf(*element), text);
  }
  // Without a list there is no hook, and the conversions do not depend on the switch.
  DcElem date(kBirthDate);
  EXPECT_EQ(date.addValue("19990229"), 0x4402U);
  DcElem line(kPrivate, DcVr::LO);
  EXPECT_EQ(line.addValue(std::string(70, 'x').c_str()), kDcOk);
  EXPECT_EQ(valuesOf(line), std::string(70, 'x'));
  // What cannot be stored in the VR's form stays out.
  DcElem* const tag = list.add(elem(kPrivate, DcVr::AT));
  EXPECT_EQ(tag->addValue("(0010;0010)"), 0x4402U);
  EXPECT_EQ(tag->valueCount(), 0);
}

TEST_F(Element, TheHookIsAskedForTextThatFailedOrIsTooLong) {
  struct Asked {
    std::string line;
    std::uint32_t answer = kDcOk;
    const char* replacement = nullptr;
  } asked;
  const auto answer = [](void* user, DcTag tag, DcVr vr, const char* text, std::string* replacement,
                         bool* hasReplacement) {
    auto& a = *static_cast<Asked*>(user);
    a.line = std::to_string(tag) + " " + std::to_string(static_cast<unsigned>(vr)) + " " + text;
    *hasReplacement = a.replacement != nullptr;
    if (*hasReplacement) *replacement = a.replacement;
    return static_cast<DcCode>(a.answer);
  };
  const struct {
    DcVr vr;
    const char* text;
    int index;
    const char* replacement;
    std::uint32_t answer;
    const char* asked;  // the VR's number and the text
    std::uint32_t code;
    const char* stored;
  } cases[] = {
      {DcVr::CS, "GOOD", -1, nullptr, 0, "", 0, "GOOD"},
      {DcVr::CS, " bad ", -1, nullptr, 0, "4 bad", 0, "GOOD/bad"},
      {DcVr::CS, "worse", 0, "BETTER", 0, "4 worse", 0, "BETTER/bad"},
      {DcVr::CS, "refused", 0, "BEST", 5, "4 refused", 0x1626, "BETTER/bad"},
      // An illegal character is none in SH.
      {DcVr::SH,
       "a\x0F"
       "z",
       -1, nullptr, 0, "", 0, "a z"},
      {DcVr::SH, "12345678901234567", -1, nullptr, 0, "17 12345678901234567", 0,
       "a z/12345678901234567"},
      {DcVr::US, "twelve", -1, "12", 0, "26 twelve", 0, "12"},
      {DcVr::AT, "name", -1, "(0010,0010)", 0, "3 name", 0, "(0010,0010)"},
      {DcVr::AT, "name", -1, "(0010,0010)", 1, "3 name", 0x1626, "(0010,0010)"},
  };
  DcElemList list;
  list.setStringHook({&asked, answer});
  DcElem* element = nullptr;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    if (element == nullptr || element->vr() != c.vr) {
      list.clear();
      element = list.add(elem(kPrivate, c.vr));
    }
    asked = {"", c.answer, c.replacement};
    EXPECT_EQ(element->addValue(c.text, c.index), c.code);
    EXPECT_EQ(asked.line, *c.asked == '\0' ? "" : "593936 "s + c.asked);
    EXPECT_EQ(valuesOf(*element), c.stored);
  }
}

TEST_F(Element, TheIndexAppendsOrReplacesOneValue) {
  DcElem element(kPrivate, DcVr::IS);
  EXPECT_EQ(element.addValue("1", 1), 0x1624U);
  EXPECT_EQ(element.addValue("1", 0), kDcOk);
  EXPECT_EQ(element.addValue("2"), kDcOk);
  EXPECT_EQ(element.addValue("9", 1), kDcOk);
  EXPECT_EQ(element.addValue("3", 2), 0x1624U);
  EXPECT_EQ(element.addValue("3", -2), 0x1624U);
  EXPECT_EQ(logged(), "Invalid index value\nInvalid index value\nInvalid index value");
  EXPECT_EQ(lastFunction(), "DcElem::addValueFmtBuf");
  EXPECT_EQ(valuesOf(element), "1/9");
}

TEST_F(Element, BeyondTheVmTheFirstValueMakesRoomUnlessCheckingIsOff) {
  const struct {
    const char* what;
    DcTag tag;
    DcVr vr;
    const char* text;
    const char* stored;
  } cases[] = {
      {"one value", kModality, DcVr::IM, "A\\B\\C", "C"},
      {"one number", 0x00089459, DcVr::IM, "1.5\\2.5", "2.5"},
      {"1 to 8", 0x00041500, DcVr::IM, "1\\2\\3\\4\\5\\6\\7\\8\\9", "2/3/4/5/6/7/8/9"},
      {"not the dictionary's VR: nothing is known", kModality, DcVr::LO, "A\\B", "A/B"},
      {"group length", 0x00090000, DcVr::IM, "1\\2", "2"},
      {"without bound", kImageType, DcVr::IM, "A\\B\\C\\D", "A/B/C/D"},
  };
  for (const auto& c : cases) {
    DcElem element(c.tag, c.vr);
    EXPECT_EQ(element.addValue(c.text), kDcOk);
    EXPECT_EQ(valuesOf(element), c.stored) << c.what;
  }
  static_cast<void>(dcSetValueChecking(false));
  DcElem unchecked(kModality);
  EXPECT_EQ(unchecked.addValue("A\\B\\C"), kDcOk);
  EXPECT_EQ(valuesOf(unchecked), "A/B/C");
}

TEST_F(Element, VerificationAnswersByTheRuleOfTheVr) {
  const struct {
    const char* what;
    DcCode (DcElem::*verify)(const char*) const;
    std::string text;
    std::uint32_t code;
  } cases[] = {
      {"AE 16th wrong", &DcElem::verifyValueAE, std::string(15, 'A') + "\x7F", 0x160C},
      {"AE 17th wrong", &DcElem::verifyValueAE, std::string(16, 'A') + "\x7F", 0},
      {"AE blank", &DcElem::verifyValueAE, "  ", 0x160A},
      {"CS blank", &DcElem::verifyValueCS, "  ", 0},
      {"CS hyphen", &DcElem::verifyValueCS, "A-B", 0x160C},
      {"DS long but fine", &DcElem::verifyValueDS, std::string(17, '1'), 0},
      {"DS long and its last wrong", &DcElem::verifyValueDS, std::string(17, '1') + "x", 0x160C},
      {"FX 16", &DcElem::verifyValueFX, std::string(16, '1'), 0},
      {"FX 17", &DcElem::verifyValueFX, std::string(17, '1'), 0x160B},
      {"IS point", &DcElem::verifyValueIS, "1.5", 0x160C},
      {"IS padded", &DcElem::verifyValueIS, "  123456789012  ", 0},
      {"LO 64th wrong", &DcElem::verifyValueLO, std::string(63, 'a') + "\\b", 0x160C},
      {"LO 65th wrong", &DcElem::verifyValueLO, std::string(64, 'a') + "\\", 0},
      {"LO any high byte", &DcElem::verifyValueLO, "\x7F\x80\xFF", 0},
      {"LO with an escape", &DcElem::verifyValueLO, "a\\\x1B"s + "z", 0},
      {"SH 16th wrong", &DcElem::verifyValueSH, std::string(15, 'a') + "\\b", 0x160C},
      {"SH 17th wrong", &DcElem::verifyValueSH, std::string(16, 'a') + "\\", 0},
      {"UI 128", &DcElem::verifyValueUI, std::string(128, '1'), 0},
      {"UI 129", &DcElem::verifyValueUI, std::string(129, '1'), 0x160B},
      {"UI hyphen", &DcElem::verifyValueUI, "1-2", 0x160C},
  };
  const DcElem element(kPrivate, DcVr::LO);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    static_cast<void>(dcSetValueChecking(true));
    EXPECT_EQ((element.*c.verify)(c.text.c_str()), c.code);
    EXPECT_EQ((element.*c.verify)(nullptr), 0x1606U);
    static_cast<void>(dcSetValueChecking(false));
    EXPECT_EQ((element.*c.verify)(c.text.c_str()), kDcOk);
    EXPECT_EQ((element.*c.verify)(nullptr), kDcOk);
  }
  logged();
  static_cast<void>(dcSetValueChecking(true));
  EXPECT_EQ(element.verifyValueSH(nullptr), 0x1606U);
  EXPECT_EQ(logged(), "Element (0009,1010) - Null argument passed");
  EXPECT_EQ(lastFunction(), "DcElem::verifyValueSH");
}

TEST_F(Element, ConstructionTakesTheSyntaxOfItsGroupAndRefusesPlainSequences) {
  const std::pair<DcTag, DcUid> cases[] = {
      {0x00000002, kImplicit}, {0x00020010, kExplicit}, {0x00041430, kExplicit}, {kRows, kBig}};
  for (const auto& [tag, expected] : cases) {
    const DcElem element(tag, nullptr, 0, kBig);
    EXPECT_EQ(element.transferSyntax(), expected) << std::hex << tag;
  }
  EXPECT_EQ(logged(), "");
  const DcElem sequence(0x00081140);
  EXPECT_EQ(logged(), "SQ Element (0008,1140) must be constructed with DcElemSq");
  EXPECT_EQ(lastFunction(), "DcElem::initialize");
  const DcElem retired(kPrivate, DcVr::RT);
  EXPECT_EQ(logged(), "Retired Data Element");
  DcElem element(kRows);
  const char* const noText = nullptr;
  EXPECT_EQ(element.addValue(noText), 0x1606U);
  EXPECT_EQ(logged(), "Null argument passed");
  EXPECT_EQ(lastFunction(), "DcElem::addValue");
}

TEST_F(Element, ALookupTagStandsInForTheElementsOwn) {
  DcElem element(kPrivate);
  EXPECT_EQ(element.resolvedVr(), DcVr::UN);
  element.setLookupTag(kRows);
  EXPECT_EQ(element.resolvedVr(), DcVr::US);
  EXPECT_EQ(element.addValue("512"), kDcOk);
  EXPECT_EQ(valuesOf(element), "512");
  EXPECT_EQ(element.tag(), kPrivate);
}

}  // namespace
}  // namespace quillon::test
