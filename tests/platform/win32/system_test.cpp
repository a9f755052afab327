// Dates, waiting, the version and the module's texts.
#include "layer_fixture.h"
#include "platform/testing.h"
#include "platform/win32/string_table.h"

namespace quillon::test {
namespace {

std::string formatted(WORD year, WORD month, WORD day, const char16_t* format) {
  SYSTEMTIME date{};
  date.wYear = year;
  date.wMonth = month;
  date.wDay = day;
  date.wDayOfWeek = 0;  // not looked at
  char16_t text[100];
  const int length = GetDateFormatW(LOCALE_SYSTEM_DEFAULT, 0, &date, format, text, 100);
  if (length == 0) return "error " + std::to_string(GetLastError());
  EXPECT_EQ(text[length - 1], u'\0');
  EXPECT_EQ(GetDateFormatW(LOCALE_SYSTEM_DEFAULT, 0, &date, format, nullptr, 0), length);
  return narrow(std::u16string_view(text, static_cast<std::size_t>(length - 1)));
}

TEST(DateFormat, PicturesAreReplaced) {
  struct Case {
    WORD year, month, day;
    const char16_t* format;
    const char* expected;
  };
  const Case cases[] = {
      {2009, 3, 5, u"dd MMM yyyy", "05 Mar 2009"},
      {2009, 3, 5, u"d.M.yy", "5.3.09"},
      {2009, 3, 5, u"d.M.y", "5.3.9"},
      {2009, 12, 31, u"dddd, d MMMM yyyy", "Thursday, 31 December 2009"},
      {2000, 2, 29, u"ddd dd/MM/yyyy", "Tue 29/02/2000"},
      {2024, 2, 29, u"ddd", "Thu"},
      {1900, 1, 1, u"ddd", "Mon"},
      {1601, 1, 1, u"ddd", "Mon"},
      {2009, 3, 5, u"'day' d 'of' MMMM", "day 5 of March"},
      {2009, 3, 5, u"d'''th'", "5'th"},
      {2009, 3, 5, u"yyyyy", "2009"},
      {2009, 3, 5, u"'open d", "open d"},
      {2009, 3, 5, nullptr, "3/5/2009"},
      {2009, 2, 29, u"d", "error 87"},
      {1900, 2, 29, u"d", "error 87"},
      {2009, 13, 1, u"d", "error 87"},
      {2009, 0, 1, u"d", "error 87"},
      {2009, 4, 31, u"d", "error 87"},
      {2009, 4, 0, u"d", "error 87"},
      {1600, 12, 31, u"d", "error 87"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.expected);
    EXPECT_EQ(formatted(c.year, c.month, c.day, c.format), c.expected);
  }
  SYSTEMTIME date{};
  date.wYear = 2009;
  date.wMonth = 3;
  date.wDay = 5;
  EXPECT_EQ(GetDateFormatW(LOCALE_SYSTEM_DEFAULT, 1, &date, u"d", nullptr, 0), 0);
  EXPECT_EQ(GetLastError(), 1004U) << "a format of its own and one of the locale";
  char16_t small[11];
  EXPECT_EQ(GetDateFormatW(LOCALE_SYSTEM_DEFAULT, 0, &date, u"dd MMM yyyy", small, 11), 0);
  EXPECT_EQ(GetLastError(), 122U);
}

TEST(Substitutes, StandInForTheClockAndTheSleeper) {
  const platform::testing::Scope scope;
  platform::testing::SubstituteClock([] {
    SYSTEMTIME time{};
    time.wYear = 2011;
    time.wMonth = 7;
    time.wDay = 9;
    return time;
  });
  DWORD slept = 0;
  platform::testing::SubstituteSleeper([&slept](DWORD milliseconds) { slept += milliseconds; });
  Sleep(5000);
  EXPECT_EQ(slept, 5000U);
  char16_t text[20];
  ASSERT_EQ(GetDateFormatW(LOCALE_SYSTEM_DEFAULT, 0, nullptr, u"yyyy-MM-dd", text, 20), 11);
  EXPECT_EQ(narrow(text), "2011-07-09");
}

BOOL isAtLeast(DWORD major, DWORD minor, WORD servicePack) {
  OSVERSIONINFOEXW version{};
  version.dwOSVersionInfoSize = sizeof version;
  version.dwMajorVersion = major;
  version.dwMinorVersion = minor;
  version.wServicePackMajor = servicePack;
  ULONGLONG conditions = 0;
  VER_SET_CONDITION(conditions, VER_MAJORVERSION, VER_GREATER_EQUAL);
  VER_SET_CONDITION(conditions, VER_MINORVERSION, VER_GREATER_EQUAL);
  VER_SET_CONDITION(conditions, VER_SERVICEPACKMAJOR, VER_GREATER_EQUAL);
  return VerifyVersionInfoW(&version, VER_MAJORVERSION | VER_MINORVERSION | VER_SERVICEPACKMAJOR,
                            conditions);
}

TEST(Version, LowerPartsCountOnlyWhereUpperOnesAreEqual) {
  const platform::testing::Scope scope;
  EXPECT_TRUE(isAtLeast(5, 1, 2)) << "Windows 10 without a service pack is newer than 5.1 with two";
  EXPECT_TRUE(isAtLeast(10, 0, 0));
  platform::testing::SubstituteVersion(5, 1, 2600, 2);
  EXPECT_TRUE(isAtLeast(5, 1, 2));
  EXPECT_TRUE(isAtLeast(5, 0, 4));
  EXPECT_FALSE(isAtLeast(5, 1, 3));
  EXPECT_EQ(GetLastError(), 1150U);
  EXPECT_FALSE(isAtLeast(6, 0, 0));
}

TEST(Version, BadQuestionsAreRefused) {
  OSVERSIONINFOEXW version{};
  EXPECT_FALSE(VerifyVersionInfoW(&version, 0, 0));
  EXPECT_EQ(GetLastError(), 87U);
  EXPECT_FALSE(VerifyVersionInfoW(&version, VER_MAJORVERSION, 0)) << "a type without a condition";
  EXPECT_EQ(GetLastError(), 87U);
  EXPECT_FALSE(VerifyVersionInfoW(nullptr, VER_MAJORVERSION, 3));
}

TEST(StringTable, TextsAreFoundByTheirNumber) {
  static const platform::StringTableRow kRows[] = {
      {55000, u"The source filename is invalid."}, {100, u"first"}, {801, u"%s::%s"}};
  platform::SetModuleStringTable(kRows, 3);
  char16_t text[64];
  const HINSTANCE module = GetModuleHandleW(nullptr);
  EXPECT_EQ(LoadStringW(module, 55000, text, 64), 31);
  EXPECT_EQ(narrow(text), "The source filename is invalid.");
  EXPECT_EQ(LoadStringW(module, 100, text, 4), 3) << "cut to the buffer";
  EXPECT_EQ(narrow(text), "fir");
  const char16_t* own = nullptr;
  EXPECT_EQ(LoadStringW(module, 801, reinterpret_cast<LPWSTR>(&own), 0), 6);
  EXPECT_EQ(own, kRows[2].text);
  EXPECT_EQ(LoadStringW(module, 0x10000 + 100, text, 64), 5) << "numbers have 16 bits";
  SetLastError(77);
  EXPECT_EQ(LoadStringW(module, 101, text, 64), 0);
  EXPECT_EQ(GetLastError(), 77U) << "an empty text of a block that exists";
  EXPECT_EQ(text[0], u'\0');
  text[0] = u'x';
  EXPECT_EQ(LoadStringW(module, 112, text, 64), 0);
  EXPECT_EQ(GetLastError(), 1814U);
  EXPECT_EQ(text[0], u'x');
  platform::SetModuleStringTable(nullptr, 0);
  EXPECT_EQ(LoadStringW(module, 100, text, 64), 0);
  EXPECT_EQ(GetLastError(), 1812U);
}

TEST(Module, AnAddressLeadsToItsFile) {
  char16_t byAddress[4096];
  HMODULE module = nullptr;
  ASSERT_TRUE(GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                                 reinterpret_cast<LPCWSTR>(&isAtLeast), &module));
  ASSERT_GT(GetModuleFileNameW(module, byAddress, 4096), 0U);
  char16_t ofProgram[4096];
  const DWORD length = GetModuleFileNameW(nullptr, ofProgram, 4096);
  ASSERT_GT(length, 0U);
  EXPECT_TRUE(std::filesystem::equivalent(byAddress, ofProgram));
  EXPECT_EQ(GetModuleFileNameW(nullptr, ofProgram, 5), 5U);
  EXPECT_EQ(GetLastError(), 122U);
  EXPECT_EQ(ofProgram[4], u'\0');
  EXPECT_EQ(GetModuleHandleW(u"other.dll"), nullptr);
  EXPECT_EQ(GetLastError(), 126U);
}

}  // namespace
}  // namespace quillon::test
