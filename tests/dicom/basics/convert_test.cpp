#include "dicom/convert.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

using Conversion = ToolkitTest;
using std::string_literals::operator""s;

constexpr DcTag kTag = 0x00100030;

// Each converts one text and shows the fields as text.
DcCode asAge(const char* text, std::string& fields) {
  DcElemValueAS value;
  const DcCode code = utilStrgToValue(kTag, text, &value);
  fields = std::to_string(value.number) + value.unit;
  return code;
}

DcCode asTag(const char* text, std::string& fields) {
  DcElemValueAT value;
  const DcCode code = utilStrgToValue(kTag, text, &value);
  fields = std::to_string(value.group) + " " + std::to_string(value.element);
  return code;
}

DcCode asDate(const char* text, std::string& fields) {
  DcElemValueDA value;
  const DcCode code = utilStrgToValue(kTag, text, &value);
  fields = std::to_string(value.number());
  return code;
}

DcCode asTime(const char* text, std::string& fields) {
  DcElemValueTM value;
  const DcCode code = utilStrgToValue(kTag, text, &value);
  std::array<char, 40> printed{};
  std::snprintf(printed.data(), printed.size(), "%d %d %.3f", value.hour, value.minute,
                value.second);
  fields = printed.data();
  return code;
}

DcCode asDateTime(const char* text, std::string& fields) {
  DcElemValueDT value;
  const DcCode code = utilStrgToValue(kTag, text, &value);
  fields = std::to_string(value.date.number()) + " " + std::to_string(value.time.hour) + " " +
           std::to_string(value.offset.hour);
  return code;
}

TEST_F(Conversion, TextBecomesTheFieldsOfItsVr) {
  const struct {
    DcCode (*convert)(const char*, std::string&);
    const char* text;
    const char* fields;
  } cases[] = {
      {asAge, "045Y", "45Y"},
      {asAge, "000D", "0D"},
      {asAge, " 012W ", "12W"},
      {asAge, "999M", "999M"},
      {asTag, "(0010,00fF)", "16 255"},
      {asTag, "(ffff,FFFF)", "65535 65535"},
      {asDate, "20000229", "20000229"},
      {asDate, "2000.02.29", "20000229"},
      {asDate, " 19991231 ", "19991231"},
      {asDate, "00000101", "101"},
      {asDate, "19000229", "19000229"},  // divisible by 4 is all that counts
      {asTime, "12", "12 0 0.000"},
      {asTime, "1200", "12 0 0.000"},
      {asTime, "235959.999", "23 59 59.999"},
      {asTime, "12:00", "12 0 0.000"},
      {asTime, "12:34:56", "12 34 56.000"},
      {asTime, "12:34:56.5", "12 34 56.500"},
      {asTime, " 000000 ", "0 0 0.000"},
      {asDateTime, "20000229", "20000229 0 0"},
      {asDateTime, "20000229 123456", "20000229 12 0"},
      {asDateTime, "20000229123456.000001+0130", "20000229 12 1"},
      {asDateTime, "20000229-0500", "20000229 0 5"},
      {asDateTime, "20000229123456.00000001+0130", "20000229 12 1"},  // 26 characters count
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    std::string fields;
    EXPECT_EQ(c.convert(c.text, fields), kDcOk);
    EXPECT_EQ(fields, c.fields);
    EXPECT_EQ(logged(), "");
  }
}

// %s stands for the text.
TEST_F(Conversion, TextThatIsNoneOfItsVrIsRefusedForWhatItIs) {
  constexpr const char* kValue = "utilStrgToValue";
  constexpr const char* kDate = "utilStrgToYMD";
  constexpr const char* kTime = "utilStrgToHMS";
  constexpr const char* kTagLength = "%s incorrect string length, should be 11 bytes";
  constexpr const char* kTagForm = "invalid string '%s', expecting (gggg,eeee)";
  constexpr const char* kDot = "unexpected occurence of '.' in string '%s'";
  constexpr const char* kColon = "unexpected occurence of ':' in string '%s'";
  constexpr const char* kShort = "short string '%s', should be 8 digits";
  constexpr const char* kTimeForm = "invalid HHMMSS part in string '%s', should be 2, 4 or 6 chars";
  constexpr const char* kNoTime = "invalid HHMMSS part in string '', should be 2, 4 or 6 chars";
  const struct {
    DcCode (*convert)(const char*, std::string&);
    const char* function;
    std::string message;
    std::vector<const char*> texts;
  } cases[] = {
      {asAge, kValue, "'%s' incorrect AS string length, must be 4 bytes", {"45Y", "0045Y"}},
      {asAge, kValue, "invalid string %s", {"045y", "-45Y", "4 5Y", "0454"}},
      {asTag, kValue, kTagLength, {"00100010", " (0010,0010)"}},
      {asTag, kValue, kTagForm, {"(0010 0010)", "(001g,0010)", "[0010,0010]", "(0010,-001)"}},
      {asDate, kDate, "invalid day 29 in string '%s'", {"19990229"}},
      {asDate, kDate, "invalid day 31 in string '%s'", {"19990431"}},
      {asDate, kDate, "invalid day 0 in string '%s'", {"19990100"}},
      {asDate, kDate, "invalid month 13 in string '%s'", {"19991301"}},
      {asDate, kDate, "invalid month 0 in string '%s'", {"19990001"}},
      {asDate, kDate, "invalid year 19999 in string '%s'", {"199990101"}},
      {asDate, kDate, kDot, {"2000.0229", "200.002.29", "2000.02.29."}},
      {asDate, kDate, kShort, {"2000.02.2", "1999010", ""}},
      {asDate, kDate, "non numeric char 'O' in string '%s'", {"1999O101"}},
      {asDate, kDate, "non numeric char '-' in string '%s'", {"19990101-19991231"}},
      {asTime, kTime, kColon, {"1:00", "12:0:00", "12:00:00:"}},
      {asTime, kTime, kTimeForm, {"12345", "", ".5"}},
      {asTime, kTime, "non numeric char 'a' in string '%s'", {"12a0"}},
      {asTime, kTime, "non numeric char '.' in string '%s'", {"120000.1.2"}},
      {asTime, kValue, "invalid hour value in string '%s'", {"240000"}},
      {asTime, kValue, "invalid minute value in string '%s'", {"126000"}},
      {asTime, kValue, "invalid second value in string '%s'", {"235960"}},
      {asDateTime, kDate, "invalid day 29 in string '19990229'", {"19990229120000"}},
      {asDateTime, kDate, kShort, {"2000"}},
      {asDateTime, kValue, "invalid hour value in string '250000'", {"20000229250000"}},
      {asDateTime, kValue, "invalid hour value in string '9900'", {"2000022912+9900"}},
      {asDateTime, kTime, kNoTime, {"2000022912+"}},
  };
  std::string fields;
  for (const auto& c : cases) {
    for (const char* text : c.texts) {
      SCOPED_TRACE(text);
      std::string message = "Element (0010,0030) - " + c.message;
      const std::size_t mark = message.find("%s");
      if (mark != std::string::npos) message.replace(mark, 2, text);
      EXPECT_EQ(c.convert(text, fields), kDcNotConvertible);
      EXPECT_EQ(logged(), message);
      EXPECT_EQ(lastFunction(), c.function);
    }
  }
  EXPECT_EQ(asDateTime("  ", fields), 0x160AU);
}

TEST_F(Conversion, AYearOfAnyLengthIsRefusedForWhatItIs) {
  for (const std::size_t digits : {5U, 9U, 15U, 16U, 17U, 1000U}) {
    SCOPED_TRACE(digits);
    DcElemValueDA value;
    EXPECT_EQ(utilStrgToYMD(kTag, std::string(digits, '9') + "1231", &value), 0x4402U);
    const std::string message = logged();
    EXPECT_EQ(message.rfind("Element (0010,0030) - invalid year ", 0), 0U) << message;
    EXPECT_EQ(message.find('\n'), std::string::npos) << message;
  }
}

TEST_F(Conversion, ANameIsFiveComponentsUnlessItHasGroups) {
  const struct {
    std::string text;
    std::array<std::string, 5> components;
  } cases[] = {
      {"Doe^John^M^Dr^Jr", {"Doe", "John", "M", "Dr", "Jr"}},
      {"a^b^c^d^e^f", {"a", "b", "c", "d", "e"}},
      {"^John^", {"", "John"}},
      {"Doe^John=D^J", {"Doe^John=D^J"}},
      {std::string(70, 'x') + "^y", {std::string(64, 'x'), "y"}},
      {"", {}},
  };
  for (const auto& c : cases) {
    DcElemValuePN value;
    EXPECT_EQ(utilStrgToValue(kTag, c.text, &value), kDcOk);
    EXPECT_TRUE(std::ranges::equal(value.components, c.components)) << c.text;
  }
}

TEST_F(Conversion, NullArgumentsAreRefused) {
  DcElemValueAS age;
  DcElemValueTM time;
  EXPECT_EQ(utilStrgToValue(kTag, std::string_view(), &age), 0x4405U);
  EXPECT_EQ(utilStrgToHMS(kTag, std::string_view(), &time), 0x4405U);
  EXPECT_EQ(utilStrgToYMD(kTag, "20000101", nullptr), 0x4405U);
  EXPECT_EQ(utilSwab(nullptr, 4, DcSizeClass::Words), 0x4405U);
  EXPECT_EQ(utilStrgTrim(nullptr, kTrimLeading), 0x4405U);
  const std::string line = "Null argument passed";
  EXPECT_EQ(logged(), line + "\n" + line + "\n" + line + "\n" + line + "\n" + line);
}

TEST_F(Conversion, TrimmingTakesBytesBelowFourteenAndSpaces) {
  const std::string text = "\r\n\0 a\x0E b\x0D\t "s;
  const std::pair<unsigned, std::string> cases[] = {
      {kTrimLeading, "a\x0E b\x0D\t "},
      {kTrimTrailing, "\r\n\0 a\x0E b"s},
      {kTrimLeading | kTrimTrailing, "a\x0E b"},
      {kTrimEverywhere, "a\x0E"s + "b"},
      {0, text},
  };
  for (const auto& [mode, expected] : cases) {
    std::string trimmed = text;
    EXPECT_EQ(utilStrgTrim(&trimmed, mode), kDcOk);
    EXPECT_EQ(trimmed, expected) << mode;
  }
  std::string spaces = "  ";
  EXPECT_EQ(utilStrgTrim(&spaces, kTrimLeading), kDcOk);
  EXPECT_EQ(spaces, "");
}

TEST_F(Conversion, SwappingExchangesTheBytesOfEachUnit) {
  const std::pair<DcSizeClass, const char*> cases[] = {
      {DcSizeClass::Bytes, "abcdefghijk"},    {DcSizeClass::Words, "badcfehgjik"},
      {DcSizeClass::Integers, "dcbahgfeijk"}, {DcSizeClass::Floats, "dcbahgfeijk"},
      {DcSizeClass::Doubles, "hgfedcbaijk"},  {DcSizeClass::NoScalar, "abcdefghijk"},
  };
  for (const auto& [unit, expected] : cases) {
    std::string bytes = "abcdefghijk";
    EXPECT_EQ(utilSwab(bytes.data(), bytes.size(), unit), kDcOk);
    EXPECT_EQ(bytes, expected) << static_cast<unsigned>(unit);
  }
}

}  // namespace
}  // namespace quillon::test
