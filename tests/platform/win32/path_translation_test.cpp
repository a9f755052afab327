// Drives, separators and the working directory.
#include <fstream>

#include "layer_fixture.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

class PathTranslation : public LayerTest {};

bool makeFile(const std::u16string& name) {
  const HANDLE file = CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
  return file != INVALID_HANDLE_VALUE && CloseHandle(file) != FALSE;
}

TEST_F(PathTranslation, PathsNameTheirPlaceOnTheDisk) {
  fs::create_directories(dir_ / "drives/d/sub");
  fs::create_directories(dir_ / "work/inner");
  struct Case {
    const char* what;
    std::u16string path;
    const char* place;  // below the temporary directory
  };
  const Case cases[] = {
      {"drive C is made on first use", u"C:\\one.txt", "drives/c/one.txt"},
      {"a small letter is the same drive", u"c:/two.txt", "drives/c/two.txt"},
      {"another drive exists when its directory does", u"D:\\sub\\three.txt",
       "drives/d/sub/three.txt"},
      {"a drive without a separator starts at its root from elsewhere", u"D:four.txt",
       "drives/d/four.txt"},
      {"both separators in a relative path", u"inner\\five.txt", "work/inner/five.txt"},
      {"a leading backslash outside of drives is the native root",
       u"\\" + wide("work/six.txt").substr(1), "work/six.txt"},
      {"two leading slashes are an absolute path", u"\\\\" + wide("work/seven.txt").substr(1),
       "work/seven.txt"},
      {"a native path with backslashes inside", wide("work") + u"\\inner\\eight.txt",
       "work/inner/eight.txt"},
      {"a name with characters that Windows refuses", u"b?<c>|\".txt", "work/b?<c>|\".txt"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_TRUE(makeFile(c.path)) << GetLastError();
    EXPECT_TRUE(fs::exists(dir_ / c.place));
  }
}

TEST_F(PathTranslation, ADriveWithoutASeparatorIsNotTheOneThatOneIsOn) {
  fs::create_directories(dir_ / "drives/d");
  fs::create_directories(dir_ / "drives/c/sub");
  ASSERT_TRUE(SetCurrentDirectoryW(u"C:\\sub"));
  EXPECT_TRUE(makeFile(u"D:name"));
  EXPECT_TRUE(makeFile(u"C:name"));
  EXPECT_TRUE(fs::exists(dir_ / "drives/d/name"));
  EXPECT_TRUE(fs::exists(dir_ / "drives/c/sub/name"));
}

TEST_F(PathTranslation, TheEightBitCallsUseTheSameDrives) {
  const HANDLE file =
      CreateFileA("C:\\narrow.txt", GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  CloseHandle(file);
  EXPECT_TRUE(fs::exists(dir_ / "drives/c/narrow.txt"));
  WIN32_FILE_ATTRIBUTE_DATA data{};
  EXPECT_TRUE(GetFileAttributesExA("c:/narrow.txt", GetFileExInfoStandard, &data));
}

TEST_F(PathTranslation, ADriveMayBeALink) {
  fs::create_directories(dir_ / "elsewhere");
  fs::create_directories(dir_ / "drives");
  fs::create_directory_symlink(dir_ / "elsewhere", dir_ / "drives/e");
  EXPECT_TRUE(makeFile(u"E:\\there.txt"));
  EXPECT_TRUE(fs::exists(dir_ / "elsewhere/there.txt"));
}

TEST_F(PathTranslation, WithoutAVariableDrivesAreInTheUsersDataDirectory) {
  const ScopedEnvironment data("XDG_DATA_HOME", (dir_ / "data").string());
  ::unsetenv("QUILLON_DRIVES");
  EXPECT_TRUE(makeFile(u"C:\\here.txt"));
  EXPECT_TRUE(fs::exists(dir_ / "data/quillon/drives/c/here.txt"));
}

TEST_F(PathTranslation, TheWorkingDirectoryIsNamedAsItWasEntered) {
  fs::create_directories(dir_ / "drives/d/sub/deep");
  struct Step {
    std::u16string enter;
    std::u16string expected;
  };
  const std::u16string work = wide("work");
  const Step steps[] = {
      {u"C:\\", u"C:\\"},
      {u"D:\\sub", u"D:\\sub"},
      {u"deep", u"D:\\sub\\deep"},
      {u"..", u"D:\\sub"},
      {u"D:", u"D:\\sub"},            // the drive that one is on: nowhere else
      {u"D:deep", u"D:\\sub\\deep"},  // relative to it
      {u"\\", u"D:\\"},               // the root of the current drive
      {u"\\sub\\deep\\", u"D:\\sub\\deep"},
      {u"..\\..", u"D:\\"},
      {u"..", u"D:\\"},  // a drive has nothing above it
      {work, work},
      {u".", work},
  };
  for (const Step& step : steps) {
    SCOPED_TRACE(narrow(step.enter));
    EXPECT_TRUE(SetCurrentDirectoryW(step.enter.c_str())) << GetLastError();
    EXPECT_EQ(narrow(currentDirectory()), narrow(step.expected));
  }
}

TEST_F(PathTranslation, LeavingALinkLeadsBackToWhereItWasEntered) {
  fs::create_directories(dir_ / "outside/target");
  fs::create_directory_symlink(dir_ / "outside/target", dir_ / "work/link");
  ASSERT_TRUE(SetCurrentDirectoryW(u"link"));
  EXPECT_EQ(fs::current_path(), fs::canonical(dir_ / "outside/target"));
  ASSERT_TRUE(SetCurrentDirectoryW(u".."));
  EXPECT_EQ(fs::current_path(), fs::canonical(dir_ / "work"));
}

TEST_F(PathTranslation, AChangeByAnyoneElseIsNoticed) {
  ASSERT_TRUE(SetCurrentDirectoryW(u"C:\\"));
  fs::current_path(dir_ / "work");
  EXPECT_EQ(narrow(currentDirectory()), fs::canonical(dir_ / "work").string());
  EXPECT_TRUE(makeFile(u"\\" + wide("work/native.txt").substr(1)));
}

TEST_F(PathTranslation, LengthsFollowTheBuffer) {
  ASSERT_TRUE(SetCurrentDirectoryW(u"C:\\"));
  char16_t room[4] = {u'x', u'x', u'x', u'x'};
  EXPECT_EQ(GetCurrentDirectoryW(0, nullptr), 4U);
  EXPECT_EQ(GetCurrentDirectoryW(3, room), 4U);
  EXPECT_EQ(room[0], u'x');
  EXPECT_EQ(GetCurrentDirectoryW(4, room), 3U);
  const ScopedEnvironment temporary("TMPDIR", "/a/b");
  char16_t path[8] = {};
  EXPECT_EQ(GetTempPathW(8, path), 5U);
  EXPECT_EQ(narrow(path), "/a/b/");
  EXPECT_EQ(GetTempPathW(5, path), 6U);
}

TEST_F(PathTranslation, APathThatCannotBeAnsweredIsAFailureWithItsCode) {
  for (const auto& [units, answered] : {std::pair{260U, 260U}, std::pair{261U, 0U}}) {
    SCOPED_TRACE(units);
    const ScopedEnvironment temporary("TMPDIR", "/" + std::string(units - 2, 't') + "/");
    char16_t path[300] = u"before";
    SetLastError(77);
    EXPECT_EQ(GetTempPathW(300, path), answered);
    EXPECT_EQ(GetLastError(), answered == 0 ? 206U : 77U);
    EXPECT_EQ(path[0], answered == 0 ? u'b' : u'/');
  }
  fs::create_directory("gone");
  fs::current_path("gone");
  fs::remove(dir_ / "work/gone");
  char16_t path[300];
  EXPECT_EQ(GetFullPathNameW(u"name", 300, path, nullptr), 0U);
  EXPECT_EQ(GetLastError(), 3U);
}

// What lies there are patients' files.
TEST_F(PathTranslation, WithoutTmpdirTemporaryFilesLieWhereNobodyElseSeesThem) {
  const ScopedEnvironment temporary("TMPDIR", "");
  const ScopedEnvironment cache("XDG_CACHE_HOME", (dir_ / "home/cache").string());
  const ScopedEnvironment runtime("XDG_RUNTIME_DIR", (dir_ / "run").string());
  fs::create_directory(dir_ / "run");
  fs::permissions(dir_ / "run", fs::perms{0700});
  const auto answer = [] {
    char16_t path[260] = {};
    return std::u16string(path, GetTempPathW(260, path));
  };
  EXPECT_EQ(answer(), wide("home/cache/quillon/"));
  EXPECT_EQ(fs::status(dir_ / "home/cache/quillon").permissions(), fs::perms{0700});
  fs::permissions(dir_ / "home/cache/quillon", fs::perms{0755});
  EXPECT_EQ(answer(), wide("home/cache/quillon/"));
  EXPECT_EQ(fs::status(dir_ / "home/cache/quillon").permissions(), fs::perms{0700});

  // Nothing can be made there, and then nothing is open to this user alone.
  fs::remove_all(dir_ / "home");
  std::ofstream(dir_ / "home") << "a file";
  EXPECT_EQ(answer(), wide("run/"));
  fs::permissions(dir_ / "run", fs::perms{0755});
  SetLastError(0);
  EXPECT_EQ(answer(), u"");
  EXPECT_EQ(GetLastError(), 3U);
  EXPECT_EQ(fs::status(dir_ / "run").permissions(), fs::perms{0755});
}

TEST_F(PathTranslation, FullNamesHaveNoDots) {
  struct Case {
    std::u16string path;
    std::u16string expected;
    std::u16string file;
  };
  const Case cases[] = {
      {u"C:\\a\\.\\b\\..\\c.txt", u"C:\\a\\c.txt", u"c.txt"},
      {u"C:\\..\\a", u"C:\\a", u"a"},
      {u"x\\y", wide("work/x/y"), u"y"},
      {u"..", wide(""), u""},
      {u"/..", u"/", u""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(narrow(c.path));
    char16_t text[300];
    char16_t* file = nullptr;
    const DWORD length = GetFullPathNameW(c.path.c_str(), 300, text, &file);
    std::string expected = narrow(c.expected);
    if (expected.size() > 1 && expected.back() == '/') expected.pop_back();
    EXPECT_EQ(narrow(std::u16string_view(text, length)), expected);
    if (!c.file.empty()) {
      ASSERT_NE(file, nullptr);
      EXPECT_EQ(narrow(file), narrow(c.file));
    }
  }
}

TEST_F(PathTranslation, NamesOfAnyBytesSurvive) {
  // Latin-1 text and a cut UTF-8 character: valid names on the disk, but not UTF-8.
  const std::string bytes = "M\xFCller \xE2\x82.dcm";
  std::ofstream(dir_ / "work" / bytes) << "x";
  WIN32_FIND_DATAW found{};
  const HANDLE find = FindFirstFileW(u"M*", &found);
  ASSERT_NE(find, INVALID_HANDLE_VALUE);
  FindClose(find);
  EXPECT_EQ(std::u16string(found.cFileName), u"M\xDCFCller \xDCE2\xDC82.dcm");
  ASSERT_TRUE(MoveFileExW(found.cFileName, (std::u16string(found.cFileName) + u"2").c_str(), 0));
  EXPECT_TRUE(fs::exists(dir_ / "work" / (bytes + "2")));
}

}  // namespace
}  // namespace quillon::test
