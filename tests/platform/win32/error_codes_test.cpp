// Which code each call leaves, and the texts of the codes.
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <functional>

#include "layer_fixture.h"
#include "win32/last_error.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

class ErrorCodes : public LayerTest {
 protected:
  ErrorCodes() {
    fs::create_directories("full/inside");
    fs::create_directory("empty");
    std::ofstream("file") << "12345";
  }
};

BOOL opened(const char16_t* name, DWORD access, DWORD disposition) {
  const HANDLE file = CreateFileW(name, access, 0, nullptr, disposition, 0, nullptr);
  return file != INVALID_HANDLE_VALUE ? CloseHandle(file) : FALSE;
}

BOOL found(const char16_t* pattern) {
  WIN32_FIND_DATAW data;
  const HANDLE find = FindFirstFileW(pattern, &data);
  return find != INVALID_HANDLE_VALUE ? FindClose(find) : FALSE;
}

BOOL attributes(const char16_t* name) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  return GetFileAttributesExW(name, GetFileExInfoStandard, &data);
}

TEST_F(ErrorCodes, FailingCallsLeaveTheirCode) {
  struct Case {
    const char* what;
    std::function<BOOL()> call;
    DWORD code;
  };
  const Case cases[] = {
      {"open missing", [] { return opened(u"no", GENERIC_READ, OPEN_EXISTING); }, 2},
      {"open below missing", [] { return opened(u"no\\x", GENERIC_READ, OPEN_EXISTING); }, 3},
      {"open below a file", [] { return opened(u"file\\x", GENERIC_READ, OPEN_EXISTING); }, 3},
      {"create below missing", [] { return opened(u"no\\x", GENERIC_WRITE, CREATE_ALWAYS); }, 3},
      {"open an empty name", [] { return opened(u"", GENERIC_READ, OPEN_EXISTING); }, 3},
      {"open a null name", [] { return opened(nullptr, GENERIC_READ, OPEN_EXISTING); }, 3},
      {"read a directory", [] { return opened(u"full", GENERIC_READ, OPEN_EXISTING); }, 5},
      {"write a directory", [] { return opened(u"full", GENERIC_WRITE, CREATE_ALWAYS); }, 5},
      {"empty without writing", [] { return opened(u"file", GENERIC_READ, TRUNCATE_EXISTING); },
       87},
      {"new only, exists", [] { return opened(u"file", GENERIC_WRITE, CREATE_NEW); }, 80},
      {"on a missing drive", [] { return opened(u"Q:\\x", GENERIC_READ, OPEN_EXISTING); }, 3},
      {"name too long",
       [] { return opened(std::u16string(256, u'n').c_str(), GENERIC_WRITE, CREATE_NEW); }, 206},
      {"make existing", [] { return CreateDirectoryW(u"full", nullptr); }, 183},
      {"make over a file", [] { return CreateDirectoryW(u"file", nullptr); }, 183},
      {"make below missing", [] { return CreateDirectoryW(u"no\\x", nullptr); }, 3},
      {"make below a file", [] { return CreateDirectoryW(u"file\\x", nullptr); }, 3},
      {"remove missing", [] { return RemoveDirectoryW(u"no"); }, 2},
      {"remove below missing", [] { return RemoveDirectoryW(u"no\\x"); }, 3},
      {"remove full", [] { return RemoveDirectoryW(u"full"); }, 145},
      {"remove a file", [] { return RemoveDirectoryW(u"file"); }, 267},
      {"remove the working directory", [this] { return RemoveDirectoryW(wide("work").c_str()); },
       32},
      {"enter missing", [] { return SetCurrentDirectoryW(u"no"); }, 2},
      {"enter below missing", [] { return SetCurrentDirectoryW(u"no\\x"); }, 3},
      {"enter below a file", [] { return SetCurrentDirectoryW(u"file\\x"); }, 3},
      {"enter a file", [] { return SetCurrentDirectoryW(u"file"); }, 267},
      {"enter what lies below a file", [] { return SetCurrentDirectoryW(u"file\\sub"); }, 3},
      {"enter a missing drive", [] { return SetCurrentDirectoryW(u"Q:\\"); }, 3},
      {"enter nothing", [] { return SetCurrentDirectoryW(u""); }, 3},
      {"delete missing", [] { return DeleteFileW(u"no"); }, 2},
      {"delete below missing", [] { return DeleteFileW(u"no\\x"); }, 3},
      {"delete a directory", [] { return DeleteFileW(u"empty"); }, 5},
      {"attributes of missing", [] { return attributes(u"no"); }, 2},
      {"attributes below missing", [] { return attributes(u"no\\x"); }, 3},
      {"find no match", [] { return found(u"*.none"); }, 2},
      {"find missing name", [] { return found(u"no"); }, 2},
      {"find below missing", [] { return found(u"no\\*"); }, 3},
      {"find below a file", [] { return found(u"file\\*"); }, 267},
      {"move missing", [] { return MoveFileExW(u"no", u"to", 0); }, 2},
      {"move to below missing", [] { return MoveFileExW(u"file", u"no\\to", 0); }, 3},
      {"move onto existing", [] { return MoveFileExW(u"file", u"full", 0); }, 183},
      {"replace a directory",
       [] { return MoveFileExW(u"file", u"empty", MOVEFILE_REPLACE_EXISTING); }, 5},
      {"move with a copy", [] { return MoveFileExW(u"file", u"to", MOVEFILE_COPY_ALLOWED); }, 50},
      {"close nothing", [] { return CloseHandle(nullptr); }, 6},
      {"close what failed to open", [] { return CloseHandle(INVALID_HANDLE_VALUE); }, 6},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    SetLastError(0);
    EXPECT_FALSE(c.call());
    EXPECT_EQ(GetLastError(), c.code);
  }
  EXPECT_TRUE(fs::is_empty("empty"));
  EXPECT_EQ(fs::file_size("file"), 5U);
}

// Everything that the call could write is as before, also where it would be empty.
template <typename Output>
void expectUntouched(const char* what, const std::function<bool(Output*)>& fails) {
  SCOPED_TRACE(what);
  Output output;
  std::memset(static_cast<void*>(&output), 0xA5, sizeof output);
  const Output before = output;
  EXPECT_TRUE(fails(&output));
  EXPECT_EQ(std::memcmp(&output, &before, sizeof output), 0);
}

TEST_F(ErrorCodes, FailingCallsLeaveWhatTheyWereGiven) {
  expectUntouched<WIN32_FILE_ATTRIBUTE_DATA>("attributes", [](auto* data) {
    return GetFileAttributesExW(u"no", GetFileExInfoStandard, data) == FALSE;
  });
  expectUntouched<WIN32_FIND_DATAW>("first of none", [](auto* data) {
    return FindFirstFileW(u"*.none", data) == INVALID_HANDLE_VALUE;
  });
  expectUntouched<WIN32_FIND_DATAW>("next of none", [](auto* data) {
    WIN32_FIND_DATAW first;
    const HANDLE find = FindFirstFileW(u"file", &first);
    const bool fails = FindNextFileW(find, data) == FALSE && GetLastError() == 18;
    FindClose(find);
    return fails;
  });
  expectUntouched<WIN32_FIND_DATAW>("next of one that is gone", [](auto* data) {
    WIN32_FIND_DATAW first;
    const HANDLE find = FindFirstFileW(u"f*", &first);  // "file" comes before "full"
    fs::remove_all("full");
    const bool fails = FindNextFileW(find, data) == FALSE && GetLastError() == 18;
    FindClose(find);
    return fails;
  });
  expectUntouched<ULARGE_INTEGER>("free space", [](auto* bytes) {
    return GetDiskFreeSpaceExW(u"no", bytes, bytes, bytes) == FALSE;
  });
  expectUntouched<HKEY>("open a key", [](auto* key) {
    return RegOpenKeyExW(HKEY_CURRENT_USER, u"no", 0, KEY_READ, key) == 2;
  });
  expectUntouched<DWORD>("query a value", [](auto* number) {
    return RegQueryValueExW(HKEY_CURRENT_USER, u"no", nullptr, number, nullptr, number) == 2;
  });
  expectUntouched<std::array<char16_t, 8>>(
      "load a text", [](auto* text) { return LoadStringW(nullptr, 4711, text->data(), 8) == 0; });
}

TEST_F(ErrorCodes, AnEnumerationWritesNoMoreThanTheEntry) {
  WIN32_FIND_DATAW data;
  std::memset(&data, 0xA5, sizeof data);
  const HANDLE find = FindFirstFileW(u"file", &data);
  ASSERT_NE(find, INVALID_HANDLE_VALUE);
  FindClose(find);
  EXPECT_EQ(std::u16string(data.cFileName), u"file");
  EXPECT_EQ(data.cFileName[5], 0xA5A5) << "behind the name";
  EXPECT_EQ(data.dwReserved0, 0xA5A5A5A5U);
  EXPECT_EQ(data.cAlternateFileName[0], u'\0');
}

TEST_F(ErrorCodes, OpeningWhatExistsIsReportedBesideTheSuccess) {
  struct Case {
    const char16_t* name;
    DWORD disposition;
    DWORD code;
    std::uintmax_t sizeAfter;
  };
  const Case cases[] = {
      {u"new1", CREATE_ALWAYS, 0, 0},   {u"new2", OPEN_ALWAYS, 0, 0},
      {u"file", OPEN_ALWAYS, 183, 5},   {u"file", OPEN_EXISTING, 77, 5},
      {u"file", CREATE_ALWAYS, 183, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(narrow(c.name) + " " + std::to_string(c.disposition));
    SetLastError(77);
    EXPECT_TRUE(opened(c.name, GENERIC_WRITE, c.disposition));
    EXPECT_EQ(GetLastError(), c.code);
    EXPECT_EQ(fs::file_size(c.name), c.sizeAfter);
  }
}

TEST_F(ErrorCodes, TheShellsDirectoryCallAnswersItsCode) {
  EXPECT_EQ(SHCreateDirectoryExW(nullptr, u"relative", nullptr), 161);
  EXPECT_EQ(SHCreateDirectoryExW(nullptr, (wide("work/a/b/c") + u"\\").c_str(), nullptr), 0);
  EXPECT_TRUE(fs::is_directory("a/b/c"));
  EXPECT_EQ(SHCreateDirectoryExW(nullptr, wide("work/a/b").c_str(), nullptr), 183);
  EXPECT_EQ(SHCreateDirectoryExW(nullptr, wide("work/file").c_str(), nullptr), 80);
  EXPECT_EQ(SHCreateDirectoryExW(nullptr, u"C:\\x\\y", nullptr), 0);
  EXPECT_TRUE(fs::is_directory(dir_ / "drives/c/x/y"));
}

TEST_F(ErrorCodes, FailuresOfTheDiskItself) {
  struct Case {
    int error;
    DWORD code;
  };
  // What a test cannot bring about with files of its own.
  const Case cases[] = {{ENOSPC, 112}, {EDQUOT, 112},     {EROFS, 19},   {EACCES, 5},  {EIO, 1117},
                        {EMFILE, 4},   {EXDEV, 17},       {ETXTBSY, 32}, {EBUSY, 170}, {EFBIG, 223},
                        {ELOOP, 1921}, {ENOMEDIUM, 1112}, {ENOMEM, 8}};
  for (const Case& c : cases) {
    EXPECT_EQ(platform::codeOfErrno(c.error), c.code) << c.error;
  }
  if (fs::exists("/dev/full")) {
    const HANDLE full =
        CreateFileW(u"/dev/full", GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(full, INVALID_HANDLE_VALUE);
    DWORD written = 99;
    EXPECT_FALSE(WriteFile(full, "x", 1, &written, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_DISK_FULL);
    EXPECT_EQ(written, 0U);
    CloseHandle(full);
  }
}

TEST_F(ErrorCodes, APipeIsRefusedInsteadOfWaitedFor) {
  ASSERT_EQ(::mkfifo("pipe", 0600), 0);
  EXPECT_FALSE(opened(u"pipe", GENERIC_READ, OPEN_EXISTING));
  EXPECT_EQ(GetLastError(), 5U);
  EXPECT_FALSE(opened(u"pipe", GENERIC_WRITE, OPEN_EXISTING));
  EXPECT_EQ(GetLastError(), 5U);
}

constexpr DWORD kSystem = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;

TEST(SystemMessages, CodesHaveTheirText) {
  struct Case {
    DWORD code;
    const char* text;
  };
  const Case cases[] = {
      {0, "The operation completed successfully.\r\n"},
      {3, "The system cannot find the path specified.\r\n"},
      {1921, "The name of the file cannot be resolved by the system.\r\n"},
      {0x80004005, "Unspecified error\r\n"},
      {0x80040154, "Class not registered\r\n"},
      // The Win32 codes inside HRESULTs.
      {0x80070057, "The parameter is incorrect.\r\n"},
      {0x8007000E, "Not enough memory resources are available to complete this operation.\r\n"},
      {0x80030002, "%1 could not be found.\r\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.code);
    char16_t text[200];
    const DWORD length = FormatMessageW(kSystem, nullptr, c.code, 0, text, 200, nullptr);
    EXPECT_EQ(narrow(std::u16string_view(text, length)), c.text);
    char16_t* allocated = nullptr;
    EXPECT_EQ(FormatMessageW(kSystem | FORMAT_MESSAGE_ALLOCATE_BUFFER, nullptr, c.code, 0,
                             reinterpret_cast<LPWSTR>(&allocated), 0, nullptr),
              length);
    ASSERT_NE(allocated, nullptr);
    EXPECT_EQ(narrow(allocated), c.text);
    LocalFree(allocated);
  }
}

TEST(SystemMessages, WithoutATextTheCodeIs317) {
  for (const DWORD code : {DWORD{777777}, DWORD{0xC0AA0202}, DWORD{0x80040200}}) {
    SCOPED_TRACE(code);
    SetLastError(0);
    char16_t* allocated = reinterpret_cast<char16_t*>(1);
    EXPECT_EQ(FormatMessageW(kSystem | FORMAT_MESSAGE_ALLOCATE_BUFFER, nullptr, code, 0,
                             reinterpret_cast<LPWSTR>(&allocated), 0, nullptr),
              0U);
    EXPECT_EQ(GetLastError(), 317U);
    EXPECT_EQ(allocated, nullptr);
  }
  char16_t small[10];
  EXPECT_EQ(FormatMessageW(kSystem, nullptr, 5, 0, small, 10, nullptr), 0U);
  EXPECT_EQ(GetLastError(), 122U);
}

}  // namespace
}  // namespace quillon::test
