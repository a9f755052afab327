#include "dicom/elem.h"

#include <functional>
#include <string>
#include <vector>

#include "dicom/dict.h"
#include "dicom/elem_list.h"
#include "elem_test_tools.h"

namespace quillon {
namespace {

using test::Element;
using test::kPrivate;
using test::Lines;
using test::Values;
using test::valuesOf;
using std::string_literals::operator""s;

constexpr DcTag kBirthDate = 0x00100030;
constexpr DcTag kModality = 0x00080060;
constexpr DcTag kImageType = 0x00080008;
constexpr DcTag kRows = 0x00280010;

TEST_F(Element, TextIsSplitAndTrimmedByTheRulesOfItsVr) {
  struct Case {
    const char* what;
    DcVr vr;
    std::string text;
    Values stored;
  };
  const std::vector<Case> cases{
      {"three values", DcVr::CS, "A\\B\\C", {"A", "B", "C"}},
      {"trailing separator", DcVr::CS, "A\\", {"A"}},
      {"two trailing separators", DcVr::CS, "A\\\\", {"A", ""}},
      {"separator before padding", DcVr::CS, "A\\ ", {"A"}},
      {"empty between", DcVr::CS, "A\\\\C", {"A", "", "C"}},
      {"leading separator", DcVr::CS, "\\A", {"", "A"}},
      {"separator alone", DcVr::CS, "\\", {""}},
      {"pieces are trimmed", DcVr::DS, " 1.5 \\\t-2 ", {"1.5", "-2"}},
      {"two spaces", DcVr::LO, "  ", {""}},
      {"nothing", DcVr::LO, "", {""}},
      {"text is not split", DcVr::LT, "a\\b", {"a\\b"}},
      {"short text is not split", DcVr::ST, "a\\b\\", {"a\\b\\"}},
      {"escape hides a separator", DcVr::LO, "\x1B$B\\x\x1B(B\\y", {"\x1B$B\\x\x1B(B", "y"}},
      {"escape hides it in a name", DcVr::PN, "\x1B$B\\\x1B(B", {"\x1B$B\\\x1B(B"}},
      {"escape hides nothing elsewhere", DcVr::UI, "1.2\\1.3", {"1.2", "1.3"}},
      {"ends at a zero byte", DcVr::UI, "1.2\0\\1.3"s, {"1.2"}},
      {"numbers", DcVr::US, "1\\65535", {"1", "65535"}},
      {"tags", DcVr::AT, "(0010,0020)\\(FFFE,e000)", {"(0010,0020)", "(fffe,e000)"}},
      {"control characters", DcVr::LO, "a\nb\x0E"s + "c", {"a|b c"}},
      {"control characters in a comment", DcVr::LT, "a\r\nb", {"a\r\nb"}},
      {"control characters beside an escape", DcVr::SH, "a\n\x1B(B", {"a\n\x1B(B"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    DcElem element(kPrivate, c.vr);
    EXPECT_EQ(element.addText(c.text), kDcOk);
    EXPECT_EQ(valuesOf(element), c.stored);
  }
}

TEST_F(Element, LeadingSpaceOfACommentIsKeptUntilItIsRead) {
  DcElem element(kPrivate, DcVr::ST);
  EXPECT_EQ(element.addValue("  a  "), kDcOk);
  ASSERT_NE(element.stringValue(0), nullptr);
  EXPECT_EQ(*element.stringValue(0), "  a");
  EXPECT_EQ(valuesOf(element), Values{"a"});
}

TEST_F(Element, AFailingPieceEndsTheValue) {
  DcElem element(kPrivate, DcVr::CS);
  EXPECT_EQ(element.addValue("A\\b\\C"), 0x160CU);
  EXPECT_EQ(valuesOf(element), Values{"A"});
}

TEST_F(Element, CheckedTextKeepsTheRulesOfItsVr) {
  struct Case {
    const char* what;
    DcVr vr;
    std::string text;
    DcCode code;
    Values stored;
    Lines lines;
  };
  const std::string prefix = "Element (0009,1010) - ";
  const std::string l64(64, 'x');
  const std::vector<Case> cases{
      {"lower-case code",
       DcVr::CS,
       "abc",
       0x160C,
       {},
       {prefix + "illegal character 'a' (0x61) in string 'abc'"}},
      {"code", DcVr::CS, "A_1 *", 0, {"A_1 *"}, {}},
      {"code of 17 whose 17th is wrong",
       DcVr::CS,
       "ABCDEFGHIJKLMNOPq",
       0,
       {"ABCDEFGHIJKLMNOP"},
       {prefix.substr(0, 20) + "- input string truncated from 17 to 16 chars"}},
      {"escape in a code",
       DcVr::CS,
       "\x1B"
       "abc",
       0,
       {"\x1B"
        "abc"},
       {}},
      {"line of 64", DcVr::LO, l64, 0, {l64}, {}},
      {"line of 70",
       DcVr::LO,
       l64 + "123456",
       0,
       {l64},
       {prefix.substr(0, 20) + "- input string truncated from 70 to 64 chars"}},
      {"control character in a line",
       DcVr::LO,
       "a\x0F"
       "b",
       0,
       {"a b"},
       {prefix + "illegal character '\x0F' (0xf) in string 'a\x0F"
                 "b'"}},
      {"AE of any printable", DcVr::AE, "a~!", 0, {"a~!"}, {}},
      {"AE beyond ASCII",
       DcVr::AE,
       "\xE4",
       0x160C,
       {},
       {prefix + "illegal character '\xE4' (0xe4) in string '\xE4'"}},
      {"decimal", DcVr::DS, "-1.5E+10", 0, {"-1.5E+10"}, {}},
      {"decimal comma",
       DcVr::DS,
       "1,5",
       0x160C,
       {},
       {prefix + "illegal character ',' (0x2c) in string '1,5'"}},
      {"decimal of 17",
       DcVr::DS,
       "1.234567890123456",
       0,
       {"1.23456789012345"},
       {prefix + "string too long",
        prefix.substr(0, 20) + "- input string truncated from 17 to 16 chars"}},
      {"integer of 12", DcVr::IS, "-12345678901", 0, {"-12345678901"}, {}},
      {"integer of 13", DcVr::IS, "1234567890123", 0x160B, {}, {prefix + "string too long"}},
      {"UID of 128", DcVr::UI, std::string(128, '1'), 0, {std::string(128, '1')}, {}},
      {"UID of 129", DcVr::UI, std::string(129, '1'), 0x160B, {}, {prefix + "string too long"}},
      {"UID with a letter",
       DcVr::UI,
       "1.2.a",
       0x160C,
       {},
       {prefix + "illegal character 'a' (0x61) in string '1.2.a'"}},
      {"float text of 17", DcVr::FL, "1.000000000000000", 0x160B, {}, {prefix + "string too long"}},
      {"float text", DcVr::FD, "1e3", 0, {"1000"}, {}},
      {"number with a letter",
       DcVr::US,
       "1a",
       0x160C,
       {},
       {prefix + "illegal character 'a' (0x61) in string '1a'"}},
      {"date", DcVr::DA, "19990229", 0x4402, {}, {prefix + "invalid day 29 in string '19990229'"}},
      {"older date", DcVr::DA, "2000.02.29", 0, {"2000.02.29"}, {}},
      {"time",
       DcVr::TM,
       "235960",
       0x4402,
       {},
       {prefix + "invalid second value in string '235960'"}},
      {"age",
       DcVr::AS,
       "45Y",
       0x4402,
       {},
       {prefix + "'45Y' incorrect AS string length, must be 4 bytes"}},
      {"tag",
       DcVr::AT,
       "0010,0010",
       0x4402,
       {},
       {prefix + "0010,0010 incorrect string length, should be 11 bytes"}},
      {"name", DcVr::PN, "a\x01^b", 0, {"a\x01^b"}, {}},
      {"name of 325",
       DcVr::PN,
       std::string(325, 'n'),
       0,
       {std::string(324, 'n')},
       {prefix.substr(0, 20) + "- input string truncated from 325 to 324 chars"}},
      {"comment of 10241",
       DcVr::LT,
       std::string(10241, 'c'),
       0,
       {std::string(10240, 'c')},
       {prefix.substr(0, 20) + "- input string truncated from 10241 to 10240 chars"}},
      {"empty code", DcVr::CS, " ", 0, {""}, {}},
      {"empty UID", DcVr::UI, " ", 0, {""}, {}},
      {"empty number", DcVr::US, " ", 0, {}, {}},
      {"bulk", DcVr::OB, "abc", 0x1602, {}, {"Element (0009,1010) VR=OB, does not accept string"}},
      {"unlimited text is bulk too",
       DcVr::UT,
       "abc",
       0x1602,
       {},
       {"Element (0009,1010) VR=UT, does not accept string"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    DcElem element(kPrivate, c.vr);
    EXPECT_EQ(element.addText(c.text), c.code);
    EXPECT_EQ(log_.take(), c.lines);
    EXPECT_EQ(valuesOf(element), c.stored);
  }
  EXPECT_EQ(log_.lastFunction(), "DcElem::addValueStrg");
}

TEST_F(Element, WithCheckingOffNothingIsRefusedOrCutInAList) {
  struct Case {
    DcVr vr;
    std::string text;
  };
  const std::vector<Case> cases{
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
  dcSetValueChecking(false);
  DcElemList list;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    DcElem* const element = list.add(std::make_unique<DcElem>(kPrivate, c.vr));
    EXPECT_EQ(element->addValue(c.text.c_str()), kDcOk);
    EXPECT_EQ(valuesOf(*element), Values{c.text});
  }
  // Without a list there is no hook, and the conversions do not depend on the switch.
  DcElem date(kBirthDate);
  EXPECT_EQ(date.addValue("19990229"), 0x4402U);
  DcElem line(kPrivate, DcVr::LO);
  EXPECT_EQ(line.addValue(std::string(70, 'x').c_str()), kDcOk);
  EXPECT_EQ(valuesOf(line), Values{std::string(70, 'x')});
  // What cannot be stored in the VR's form stays out.
  DcElem* const tag = list.add(std::make_unique<DcElem>(kPrivate, DcVr::AT));
  EXPECT_EQ(tag->addValue("(0010;0010)"), 0x4402U);
  EXPECT_EQ(tag->valueCount(), 0);
}

TEST_F(Element, TheHookIsAskedForTextThatFailedOrIsTooLong) {
  struct Asked {
    std::string line;
    DcCode answer = kDcOk;
    const char* replacement = nullptr;
  } asked;
  const DcStringHook hook{&asked,
                          [](void* user, DcTag tag, DcVr vr, const char* text,
                             std::string* replacement, bool* hasReplacement) -> DcCode {
                            auto& a = *static_cast<Asked*>(user);
                            a.line = std::to_string(tag) + " " +
                                     std::to_string(static_cast<unsigned>(vr)) + " " + text;
                            if (a.replacement != nullptr) {
                              *replacement = a.replacement;
                              *hasReplacement = true;
                            }
                            return a.answer;
                          }};
  DcElemList list;
  list.setStringHook(hook);
  const auto add = [&list](DcVr vr) {
    list.clear();
    return list.add(std::make_unique<DcElem>(kPrivate, vr));
  };

  DcElem* element = add(DcVr::CS);
  EXPECT_EQ(element->addValue("GOOD"), kDcOk);
  EXPECT_EQ(asked.line, "");
  EXPECT_EQ(element->addValue(" bad "), kDcOk);
  EXPECT_EQ(asked.line, "593936 4 bad");
  EXPECT_EQ(valuesOf(*element), (Values{"GOOD", "bad"}));
  asked.replacement = "BETTER";
  EXPECT_EQ(element->addValue("worse", 0), kDcOk);
  EXPECT_EQ(valuesOf(*element), (Values{"BETTER", "bad"}));
  asked.answer = 5;
  EXPECT_EQ(element->addValue("refused", 0), 0x1626U);
  EXPECT_EQ(valuesOf(*element), (Values{"BETTER", "bad"}));

  asked = {};
  element = add(DcVr::SH);
  EXPECT_EQ(element->addValue("a\x0F"
                              "b"),
            kDcOk);  // an illegal character is none in SH
  EXPECT_EQ(asked.line, "");
  EXPECT_EQ(element->addValue("12345678901234567"), kDcOk);
  EXPECT_EQ(asked.line, "593936 17 12345678901234567");
  EXPECT_EQ(valuesOf(*element), (Values{"a b", "12345678901234567"}));

  asked = {};
  asked.replacement = "12";
  element = add(DcVr::US);
  EXPECT_EQ(element->addValue("twelve"), kDcOk);
  EXPECT_EQ(valuesOf(*element), Values{"12"});
  asked.replacement = "(0010,0010)";
  element = add(DcVr::AT);
  EXPECT_EQ(element->addValue("name"), kDcOk);
  EXPECT_EQ(valuesOf(*element), Values{"(0010,0010)"});
  asked.answer = 1;
  EXPECT_EQ(element->addValue("name"), 0x1626U);
}

TEST_F(Element, TheIndexAppendsOrReplacesOneValue) {
  DcElem element(kPrivate, DcVr::IS);
  EXPECT_EQ(element.addValue("1", 1), 0x1624U);
  EXPECT_EQ(element.addValue("1", 0), kDcOk);
  EXPECT_EQ(element.addValue("2"), kDcOk);
  EXPECT_EQ(element.addValue("9", 1), kDcOk);
  EXPECT_EQ(element.addValue("3", 2), 0x1624U);
  EXPECT_EQ(element.addValue("3", -2), 0x1624U);
  EXPECT_EQ(log_.take(), Lines(3, "Invalid index value"));
  EXPECT_EQ(log_.lastFunction(), "DcElem::addValueFmtBuf");
  EXPECT_EQ(valuesOf(element), (Values{"1", "9"}));
}

TEST_F(Element, BeyondTheVmTheFirstValueMakesRoomUnlessCheckingIsOff) {
  DcElem modality(kModality);  // VM 1
  EXPECT_EQ(modality.addValue("A\\B\\C"), kDcOk);
  EXPECT_EQ(valuesOf(modality), Values{"C"});
  DcElem fileId(0x00041500);  // VM 1 to 8
  EXPECT_EQ(fileId.addValue("1\\2\\3\\4\\5\\6\\7\\8\\9"), kDcOk);
  EXPECT_EQ(valuesOf(fileId), (Values{"2", "3", "4", "5", "6", "7", "8", "9"}));
  DcElem otherVr(kModality, DcVr::LO);  // not the dictionary's VR: nothing is known
  EXPECT_EQ(otherVr.addValue("A\\B"), kDcOk);
  EXPECT_EQ(valuesOf(otherVr), (Values{"A", "B"}));
  DcElem groupLength(0x00090000);
  EXPECT_EQ(groupLength.addValue("1\\2"), kDcOk);
  EXPECT_EQ(valuesOf(groupLength), Values{"2"});
  DcElem imageType(kImageType);  // VM without bound
  EXPECT_EQ(imageType.addValue("A\\B\\C\\D"), kDcOk);
  EXPECT_EQ(imageType.valueCount(), 4);

  dcSetValueChecking(false);
  DcElem unchecked(kModality);
  EXPECT_EQ(unchecked.addValue("A\\B\\C"), kDcOk);
  EXPECT_EQ(valuesOf(unchecked), (Values{"A", "B", "C"}));
}

// Which VRs take a number, and what they store of it.
TEST_F(Element, VerificationAnswersByTheRuleOfTheVr) {
  struct Case {
    const char* what;
    DcCode (DcElem::*verify)(const char*) const;
    std::string text;
    DcCode code;
  };
  const std::vector<Case> cases{
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
      {"LO with an escape", &DcElem::verifyValueLO,
       "a\\\x1B"
       "b",
       0},
      {"SH 16th wrong", &DcElem::verifyValueSH, std::string(15, 'a') + "\\b", 0x160C},
      {"SH 17th wrong", &DcElem::verifyValueSH, std::string(16, 'a') + "\\", 0},
      {"UI 128", &DcElem::verifyValueUI, std::string(128, '1'), 0},
      {"UI 129", &DcElem::verifyValueUI, std::string(129, '1'), 0x160B},
      {"UI hyphen", &DcElem::verifyValueUI, "1-2", 0x160C},
  };
  const DcElem element(kPrivate, DcVr::LO);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    dcSetValueChecking(true);
    EXPECT_EQ((element.*c.verify)(c.text.c_str()), c.code);
    EXPECT_EQ((element.*c.verify)(nullptr), 0x1606U);
    dcSetValueChecking(false);
    EXPECT_EQ((element.*c.verify)(c.text.c_str()), kDcOk);
    EXPECT_EQ((element.*c.verify)(nullptr), kDcOk);
  }
  log_.take();
  dcSetValueChecking(true);
  EXPECT_EQ(element.verifyValueSH(nullptr), 0x1606U);
  EXPECT_EQ(log_.take(), Lines{"Element (0009,1010) - Null argument passed"});
  EXPECT_EQ(log_.lastFunction(), "DcElem::verifyValueSH");
}

TEST_F(Element, ConstructionTakesTheSyntaxOfItsGroupAndRefusesPlainSequences) {
  struct Case {
    DcTag tag;
    DcUid expected;
  };
  for (const Case& c : {Case{0x00000002, DcUid::ImplicitLittleEndian},
                        Case{0x00020010, DcUid::ExplicitLittleEndian},
                        Case{0x00041430, DcUid::ExplicitLittleEndian},
                        Case{0x00100010, DcUid::ExplicitBigEndian}}) {
    const DcElem element(c.tag, nullptr, 0, DcUid::ExplicitBigEndian);
    EXPECT_EQ(element.transferSyntax(), c.expected) << std::hex << c.tag;
  }
  EXPECT_EQ(log_.take(), Lines{});
  const DcElem sequence(0x00081140);
  EXPECT_EQ(log_.take(), Lines{"SQ Element (0008,1140) must be constructed with DcElemSq"});
  EXPECT_EQ(log_.lastFunction(), "DcElem::initialize");
  const DcElem retired(kPrivate, DcVr::RT);
  EXPECT_EQ(log_.take(), Lines{"Retired Data Element"});
}

TEST_F(Element, NullTextIsRefused) {
  DcElem element(kRows);
  const char* const noText = nullptr;
  EXPECT_EQ(element.addValue(noText), 0x1606U);
  EXPECT_EQ(log_.take(), Lines{"Null argument passed"});
  EXPECT_EQ(log_.lastFunction(), "DcElem::addValue");
}

TEST_F(Element, ALookupTagStandsInForTheElementsOwn) {
  DcElem element(kPrivate);
  EXPECT_EQ(element.resolvedVr(), DcVr::UN);
  element.setLookupTag(kRows);
  EXPECT_EQ(element.resolvedVr(), DcVr::US);
  EXPECT_EQ(element.addValue("512"), kDcOk);
  EXPECT_EQ(valuesOf(element), Values{"512"});
  EXPECT_EQ(element.tag(), kPrivate);
}

}  // namespace
}  // namespace quillon
