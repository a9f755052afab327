#include "dicom/convert.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "dir_test_tools.h"

namespace quillon {
namespace {

using test::LoggedLines;
using Lines = std::vector<std::string>;
using std::string_literals::operator""s;

constexpr DcTag kTag = 0x00100030;
constexpr const char* kPrefix = "Element (0010,0030) - ";

// What one text gives: the fields as text, or the message and its function.
struct Case {
  const char* text;
  const char* fields;
  const char* message = nullptr;
  const char* function = nullptr;
};

template <typename Convert>
void expectAll(const std::vector<Case>& cases, Convert convert) {
  LoggedLines log;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    std::string fields;
    EXPECT_EQ(convert(c.text, fields), c.message == nullptr ? 0U : 0x4402U);
    if (c.message == nullptr) {
      EXPECT_EQ(fields, c.fields);
      EXPECT_EQ(log.take(), Lines{});
    } else {
      EXPECT_EQ(log.take(), Lines{kPrefix + std::string(c.message)});
      EXPECT_EQ(log.lastFunction(), c.function);
    }
  }
}

TEST(Conversion, AnAgeIsThreeDigitsAndAUnit) {
  constexpr const char* kFunction = "utilStrgToValue";
  expectAll(
      {
          {"045Y", "45Y"},
          {"000D", "0D"},
          {" 012W ", "12W"},
          {"999M", "999M"},
          {"45Y", nullptr, "'45Y' incorrect AS string length, must be 4 bytes", kFunction},
          {"0045Y", nullptr, "'0045Y' incorrect AS string length, must be 4 bytes", kFunction},
          {"045y", nullptr, "invalid string 045y", kFunction},
          {"-45Y", nullptr, "invalid string -45Y", kFunction},
          {"4 5Y", nullptr, "invalid string 4 5Y", kFunction},
          {"0454", nullptr, "invalid string 0454", kFunction},
      },
      [](const char* text, std::string& fields) {
        DcElemValueAS value;
        const DcCode code = utilStrgToValue(kTag, text, &value);
        fields = std::to_string(value.number) + value.unit;
        return code;
      });
}

TEST(Conversion, ATagIsTwoHexadecimalNumbersInParentheses) {
  constexpr const char* kFunction = "utilStrgToValue";
  expectAll(
      {
          {"(0010,00fF)", "16 255"},
          {"(ffff,FFFF)", "65535 65535"},
          {"00100010", nullptr, "00100010 incorrect string length, should be 11 bytes", kFunction},
          {" (0010,0010)", nullptr, " (0010,0010) incorrect string length, should be 11 bytes",
           kFunction},
          {"(0010 0010)", nullptr, "invalid string '(0010 0010)', expecting (gggg,eeee)",
           kFunction},
          {"(001g,0010)", nullptr, "invalid string '(001g,0010)', expecting (gggg,eeee)",
           kFunction},
          {"[0010,0010]", nullptr, "invalid string '[0010,0010]', expecting (gggg,eeee)",
           kFunction},
          {"(0010,-001)", nullptr, "invalid string '(0010,-001)', expecting (gggg,eeee)",
           kFunction},
      },
      [](const char* text, std::string& fields) {
        DcElemValueAT value;
        const DcCode code = utilStrgToValue(kTag, text, &value);
        fields = std::to_string(value.group) + " " + std::to_string(value.element);
        return code;
      });
}

TEST(Conversion, ADateIsOnTheCalendar) {
  constexpr const char* kFunction = "utilStrgToYMD";
  expectAll(
      {
          {"20000229", "20000229"},
          {"2000.02.29", "20000229"},
          {" 19991231 ", "19991231"},
          {"00000101", "101"},
          {"19000229", "19000229"},  // divisible by 4 is all that counts
          {"19990229", nullptr, "invalid day 29 in string '19990229'", kFunction},
          {"19990431", nullptr, "invalid day 31 in string '19990431'", kFunction},
          {"19990100", nullptr, "invalid day 0 in string '19990100'", kFunction},
          {"19991301", nullptr, "invalid month 13 in string '19991301'", kFunction},
          {"19990001", nullptr, "invalid month 0 in string '19990001'", kFunction},
          {"199990101", nullptr, "invalid year 19999 in string '199990101'", kFunction},
          {"2000.0229", nullptr, "unexpected occurence of '.' in string '2000.0229'", kFunction},
          {"200.002.29", nullptr, "unexpected occurence of '.' in string '200.002.29'", kFunction},
          {"2000.02.29.", nullptr, "unexpected occurence of '.' in string '2000.02.29.'",
           kFunction},
          {"2000.02.2", nullptr, "short string '2000.02.2', should be 8 digits", kFunction},
          {"1999010", nullptr, "short string '1999010', should be 8 digits", kFunction},
          {"", nullptr, "short string '', should be 8 digits", kFunction},
          {"1999O101", nullptr, "non numeric char 'O' in string '1999O101'", kFunction},
          {"19990101-19991231", nullptr, "non numeric char '-' in string '19990101-19991231'",
           kFunction},
      },
      [](const char* text, std::string& fields) {
        DcElemValueDA value;
        const DcCode code = utilStrgToValue(kTag, text, &value);
        fields = std::to_string(value.number());
        return code;
      });
}

TEST(Conversion, AYearOfAnyLengthIsRefusedForWhatItIs) {
  LoggedLines log;
  for (const std::size_t digits : {5U, 9U, 15U, 16U, 17U, 1000U}) {
    SCOPED_TRACE(digits);
    DcElemValueDA value;
    EXPECT_EQ(utilStrgToYMD(kTag, std::string(digits, '9') + "1231", &value), 0x4402U);
    const Lines lines = log.take();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_NE(lines[0].find("invalid year"), std::string::npos) << lines[0];
  }
}

TEST(Conversion, ATimeIsOnTheClock) {
  constexpr const char* kParse = "utilStrgToHMS";
  constexpr const char* kRange = "utilStrgToValue";
  expectAll(
      {
          {"12", "12 0 0.000"},
          {"1200", "12 0 0.000"},
          {"235959.999", "23 59 59.999"},
          {"12:00", "12 0 0.000"},
          {"12:34:56", "12 34 56.000"},
          {"12:34:56.5", "12 34 56.500"},
          {" 000000 ", "0 0 0.000"},
          {"1:00", nullptr, "unexpected occurence of ':' in string '1:00'", kParse},
          {"12:0:00", nullptr, "unexpected occurence of ':' in string '12:0:00'", kParse},
          {"12:00:00:", nullptr, "unexpected occurence of ':' in string '12:00:00:'", kParse},
          {"12345", nullptr, "invalid HHMMSS part in string '12345', should be 2, 4 or 6 chars",
           kParse},
          {"", nullptr, "invalid HHMMSS part in string '', should be 2, 4 or 6 chars", kParse},
          {".5", nullptr, "invalid HHMMSS part in string '.5', should be 2, 4 or 6 chars", kParse},
          {"12a0", nullptr, "non numeric char 'a' in string '12a0'", kParse},
          {"120000.1.2", nullptr, "non numeric char '.' in string '120000.1.2'", kParse},
          {"240000", nullptr, "invalid hour value in string '240000'", kRange},
          {"126000", nullptr, "invalid minute value in string '126000'", kRange},
          {"235960", nullptr, "invalid second value in string '235960'", kRange},
      },
      [](const char* text, std::string& fields) {
        DcElemValueTM value;
        const DcCode code = utilStrgToValue(kTag, text, &value);
        std::array<char, 40> printed{};
        std::snprintf(printed.data(), printed.size(), "%d %d %.3f", value.hour, value.minute,
                      value.second);
        fields = printed.data();
        return code;
      });
}

TEST(Conversion, ADateTimeIsADateATimeAndAnOffset) {
  expectAll(
      {
          {"20000229", "20000229 0 0"},
          {"20000229 123456", "20000229 12 0"},
          {"20000229123456.000001+0130", "20000229 12 1"},
          {"20000229-0500", "20000229 0 5"},
          {"19990229120000", nullptr, "invalid day 29 in string '19990229'", "utilStrgToYMD"},
          {"2000", nullptr, "short string '2000', should be 8 digits", "utilStrgToYMD"},
          {"20000229250000", nullptr, "invalid hour value in string '250000'", "utilStrgToValue"},
          {"2000022912+9900", nullptr, "invalid hour value in string '9900'", "utilStrgToValue"},
          {"2000022912+", nullptr, "invalid HHMMSS part in string '', should be 2, 4 or 6 chars",
           "utilStrgToHMS"},
          {"20000229123456.00000001+0130", "20000229 12 1"},  // 26 characters are looked at
      },
      [](const char* text, std::string& fields) {
        DcElemValueDT value;
        const DcCode code = utilStrgToValue(kTag, text, &value);
        fields = std::to_string(value.date.number()) + " " + std::to_string(value.time.hour) + " " +
                 std::to_string(value.offset.hour);
        return code;
      });
  DcElemValueDT value;
  EXPECT_EQ(utilStrgToValue(kTag, "  ", &value), 0x160AU);
}

TEST(Conversion, ANameIsFiveComponentsUnlessItHasGroups) {
  struct NameCase {
    const char* what;
    std::string text;
    std::vector<std::string> components;
  };
  const std::vector<NameCase> cases{
      {"all", "Doe^John^M^Dr^Jr", {"Doe", "John", "M", "Dr", "Jr"}},
      {"more than all", "a^b^c^d^e^f", {"a", "b", "c", "d", "e"}},
      {"empty ones", "^John^", {"", "John", "", "", ""}},
      {"groups", "Doe^John=D^J", {"Doe^John=D^J", "", "", "", ""}},
      {"long", std::string(70, 'x') + "^y", {std::string(64, 'x'), "y", "", "", ""}},
      {"nothing", "", {"", "", "", "", ""}},
  };
  for (const NameCase& c : cases) {
    SCOPED_TRACE(c.what);
    DcElemValuePN value;
    EXPECT_EQ(utilStrgToValue(kTag, c.text, &value), kDcOk);
    EXPECT_EQ(std::vector<std::string>(value.components.begin(), value.components.end()),
              c.components);
  }
}

TEST(Conversion, NullArgumentsAreRefused) {
  LoggedLines log;
  DcElemValueAS age;
  DcElemValueTM time;
  EXPECT_EQ(utilStrgToValue(kTag, std::string_view(), &age), 0x4405U);
  EXPECT_EQ(utilStrgToHMS(kTag, std::string_view(), &time), 0x4405U);
  EXPECT_EQ(utilStrgToYMD(kTag, "20000101", nullptr), 0x4405U);
  EXPECT_EQ(utilSwab(nullptr, 4, DcSizeClass::Words), 0x4405U);
  EXPECT_EQ(utilStrgTrim(nullptr, kTrimLeading), 0x4405U);
  EXPECT_EQ(log.take(), Lines(5, "Null argument passed"));
}

TEST(Conversion, TrimmingTakesBytesBelowFourteenAndSpaces) {
  const std::string text = "\r\n\0 a\x0E b\x0D\t "s;
  struct TrimCase {
    unsigned mode;
    std::string expected;
  };
  const std::vector<TrimCase> cases{
      {kTrimLeading, "a\x0E b\x0D\t "},
      {kTrimTrailing, "\r\n\0 a\x0E b"s},
      {kTrimLeading | kTrimTrailing, "a\x0E b"},
      {kTrimEverywhere,
       "a\x0E"
       "b"},
      {0, text},
  };
  for (const TrimCase& c : cases) {
    SCOPED_TRACE(c.mode);
    std::string trimmed = text;
    EXPECT_EQ(utilStrgTrim(&trimmed, c.mode), kDcOk);
    EXPECT_EQ(trimmed, c.expected);
  }
  std::string spaces = "  ";
  EXPECT_EQ(utilStrgTrim(&spaces, kTrimLeading), kDcOk);
  EXPECT_EQ(spaces, "");
}

TEST(Conversion, SwappingExchangesTheBytesOfEachUnit) {
  struct SwapCase {
    DcSizeClass unit;
    const char* expected;
  };
  const std::vector<SwapCase> cases{
      {DcSizeClass::Bytes, "abcdefghijk"},    {DcSizeClass::Words, "badcfehgjik"},
      {DcSizeClass::Integers, "dcbahgfeijk"}, {DcSizeClass::Floats, "dcbahgfeijk"},
      {DcSizeClass::Doubles, "hgfedcbaijk"},  {DcSizeClass::NoScalar, "abcdefghijk"},
  };
  for (const SwapCase& c : cases) {
    SCOPED_TRACE(static_cast<unsigned>(c.unit));
    std::string bytes = "abcdefghijk";
    EXPECT_EQ(utilSwab(bytes.data(), bytes.size(), c.unit), kDcOk);
    EXPECT_EQ(bytes, c.expected);
  }
}

}  // namespace
}  // namespace quillon
