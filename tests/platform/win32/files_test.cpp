// Reading, writing, attributes and moves.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <iterator>

#include "layer_fixture.h"
#include "platform/testing.h"
#include "support/file_size_limit.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

class Files : public LayerTest {};

std::string contentOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST_F(Files, PositionsAndEndsAreWindows) {
  const HANDLE file =
      CreateFileW(u"f", GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  DWORD done = 0;
  EXPECT_TRUE(WriteFile(file, "0123456789", 10, &done, nullptr));
  EXPECT_EQ(done, 10U);
  LARGE_INTEGER position{};
  const auto move = [&](LONGLONG by, DWORD from) {
    LARGE_INTEGER distance{};
    distance.QuadPart = by;
    return SetFilePointerEx(file, distance, &position, from) != FALSE;
  };
  EXPECT_TRUE(move(-4, FILE_END));
  EXPECT_EQ(position.QuadPart, 6);
  char buffer[16] = {};
  EXPECT_TRUE(ReadFile(file, buffer, 16, &done, nullptr));
  EXPECT_EQ(std::string(buffer, done), "6789");
  EXPECT_TRUE(ReadFile(file, buffer, 16, &done, nullptr));
  EXPECT_EQ(done, 0U) << "at the end a read succeeds with nothing";
  EXPECT_FALSE(move(-1, FILE_BEGIN));
  EXPECT_EQ(GetLastError(), 131U);
  EXPECT_TRUE(move(3, FILE_BEGIN));
  EXPECT_TRUE(move(LONGLONG{1} << 32, FILE_CURRENT));
  EXPECT_EQ(position.QuadPart, (LONGLONG{1} << 32) + 3);
  LARGE_INTEGER size{};
  EXPECT_TRUE(GetFileSizeEx(file, &size));
  EXPECT_EQ(size.QuadPart, 10);
  EXPECT_TRUE(FlushFileBuffers(file));
  EXPECT_TRUE(CloseHandle(file));
  EXPECT_EQ(contentOf("f"), "0123456789");
}

TEST_F(Files, AppendingAccessWritesAtTheEnd) {
  std::ofstream("f") << "old";
  const HANDLE file = CreateFileW(u"f", FILE_APPEND_DATA, 0, nullptr, OPEN_ALWAYS, 0, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  DWORD done = 0;
  EXPECT_TRUE(WriteFile(file, "new", 3, &done, nullptr));
  CloseHandle(file);
  EXPECT_EQ(contentOf("f"), "oldnew");
}

TEST_F(Files, SharingIsWhatBothOpenersAllowUnderWhateverName) {
  constexpr DWORD kRead = GENERIC_READ;
  constexpr DWORD kWrite = GENERIC_WRITE;
  constexpr DWORD kShareRead = FILE_SHARE_READ;
  constexpr DWORD kShareBoth = FILE_SHARE_READ | FILE_SHARE_WRITE;
  std::ofstream("f") << "content";
  fs::create_symlink("f", "link");
  fs::create_hard_link("f", "second");
  const struct {
    const char* what;
    DWORD access, share;
    const char16_t* name;
    DWORD otherAccess, otherShare, disposition;
    bool isShared;
  } cases[] = {
      {"two readers", kRead, kShareRead, u"f", kRead, kShareRead, OPEN_EXISTING, true},
      {"a reader of its own", kRead, 0, u"f", kRead, kShareBoth, OPEN_EXISTING, false},
      {"a second one of its own", kRead, kShareBoth, u"f", kRead, 0, OPEN_EXISTING, false},
      {"writer beside a reader", kRead, kShareBoth, u"f", kWrite, kShareBoth, OPEN_EXISTING, true},
      {"writer that shuts readers out", kRead, kShareBoth, u"f", kWrite, 0, OPEN_EXISTING, false},
      {"writer that empties", kRead, kShareRead, u"f", kWrite, 0, CREATE_ALWAYS, false},
      {"by a link", kRead, 0, u"link", kWrite, 0, CREATE_ALWAYS, false},
      {"by a second name", kRead, 0, u"second", kWrite, 0, TRUNCATE_EXISTING, false},
      {"appending", kRead, kShareRead, u"f", FILE_APPEND_DATA, kShareBoth, OPEN_ALWAYS, false},
      {"only asking", kRead, 0, u"f", 0, 0, OPEN_EXISTING, true},
      {"another file", kRead, 0, u"g", kWrite, 0, CREATE_ALWAYS, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const HANDLE one = CreateFileW(u"f", c.access, c.share, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(one, INVALID_HANDLE_VALUE);
    const HANDLE other =
        CreateFileW(c.name, c.otherAccess, c.otherShare, nullptr, c.disposition, 0, nullptr);
    EXPECT_EQ(other != INVALID_HANDLE_VALUE, c.isShared);
    if (other != INVALID_HANDLE_VALUE) {
      CloseHandle(other);
    } else {
      EXPECT_EQ(GetLastError(), 32U);
    }
    CloseHandle(one);
    EXPECT_EQ(contentOf("f"), "content");
    // A refused or closed handle stands in nobody's way.
    const HANDLE alone = CreateFileW(c.name, kWrite, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(alone, INVALID_HANDLE_VALUE);
    CloseHandle(alone);
  }
}

TEST_F(Files, WhatIsOpenKeepsItsNameAsFarAsItsOpenerSays) {
  constexpr DWORD kRead = GENERIC_READ;
  constexpr DWORD kReplace = MOVEFILE_REPLACE_EXISTING;
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  constexpr DWORD kShareData = FILE_SHARE_READ | FILE_SHARE_WRITE;
  const auto remove = [] { return DeleteFileW(u"f"); };
  const auto removeSecond = [] { return DeleteFileW(u"second"); };
  const auto removeLink = [] { return DeleteFileW(u"link"); };
  const auto rename = [] { return MoveFileExW(u"f", u"new", 0); };
  const auto replace = [] { return MoveFileExW(u"other", u"f", kReplace); };
  const auto openToDelete = [] {
    const HANDLE file = CreateFileW(u"f", DELETE, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr);
    return file == INVALID_HANDLE_VALUE ? FALSE : CloseHandle(file);
  };
  const struct {
    const char* what;
    DWORD access, share;
    std::function<BOOL()> operation;
    DWORD code;  // 0: it is done
  } cases[] = {
      {"delete", kRead, kShareData, remove, 32},
      {"delete what was opened to be written", GENERIC_WRITE, 0, remove, 32},
      {"delete, shared", kRead, kShareAll, remove, 0},
      {"delete while someone asks", 0, 0, remove, 0},
      {"delete another name of it", kRead, kShareData, removeSecond, 32},
      {"delete a link to it", kRead, 0, removeLink, 0},
      {"rename", kRead, kShareData, rename, 32},
      {"rename, shared", kRead, kShareAll, rename, 0},
      {"replace", kRead, kShareData, replace, 5},
      {"replace, shared", kRead, kShareAll, replace, 5},
      {"replace while someone asks", 0, kShareAll, replace, 5},
      {"open to delete", kRead, kShareData, openToDelete, 32},
      {"open to delete, shared", kRead, kShareAll, openToDelete, 0},
      {"delete what someone wants to delete", DELETE, kShareAll, remove, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    for (const char* name : {"f", "new", "second", "link"}) fs::remove(name);
    std::ofstream("f") << "content";
    std::ofstream("other") << "other";
    fs::create_hard_link("f", "second");
    fs::create_symlink("f", "link");
    const HANDLE file = CreateFileW(u"f", c.access, c.share, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    SetLastError(0);
    EXPECT_EQ(c.operation() != FALSE, c.code == 0);
    EXPECT_EQ(GetLastError(), c.code);
    if (c.code != 0) {
      EXPECT_EQ(contentOf("f"), "content");
      EXPECT_EQ(contentOf("second"), "content");
      EXPECT_EQ(contentOf("other"), "other");
    }
    CloseHandle(file);
    EXPECT_TRUE(c.code == 0 || c.operation()) << "once it is closed";
  }
}

TEST_F(Files, ADirectoryKeepsItsNameForWhatIsOpenBelowIt) {
  fs::create_directories("dir/sub/deep");
  fs::create_directories("directory");
  std::ofstream("dir/sub/f") << "x";
  std::ofstream("directory/f") << "x";
  const auto open = [](const char16_t* name, DWORD access, DWORD flags) {
    return CreateFileW(name, access, 7, nullptr, OPEN_EXISTING, flags, nullptr);
  };
  WIN32_FIND_DATAW data;
  const struct {
    const char* what;
    std::function<HANDLE()> open;
    BOOL(WINAPI* close)(HANDLE);
    DWORD code;
  } cases[] = {
      {"a file", [&] { return open(u"dir/sub/f", GENERIC_READ, 0); }, CloseHandle, 5},
      {"a file that is only asked about", [&] { return open(u"dir/sub/f", 0, 0); }, CloseHandle, 5},
      {"a directory", [&] { return open(u"dir/sub", 0, FILE_FLAG_BACKUP_SEMANTICS); }, CloseHandle,
       5},
      {"a listing", [&] { return FindFirstFileW(u"dir/sub/*", &data); }, FindClose, 5},
      {"a listing of itself", [&] { return FindFirstFileW(u"dir/*", &data); }, FindClose, 0},
      {"a name that begins alike", [&] { return open(u"directory/f", GENERIC_READ, 0); },
       CloseHandle, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const HANDLE handle = c.open();
    ASSERT_NE(handle, INVALID_HANDLE_VALUE);
    SetLastError(0);
    EXPECT_EQ(MoveFileExW(u"dir", u"to", 0) != FALSE, c.code == 0);
    EXPECT_EQ(GetLastError(), c.code);
    EXPECT_TRUE(c.close(handle));
    EXPECT_TRUE(c.code == 0 || MoveFileExW(u"dir", u"to", 0)) << "once it is closed";
    ASSERT_TRUE(MoveFileExW(u"to", u"dir", 0));
  }
  const std::u16string directory = wide("work/dir");
  const std::u16string to = wide("work/to");
  for (const auto& [working, code] : {std::pair{u"dir", 32U}, std::pair{u"sub\\deep", 5U}}) {
    ASSERT_TRUE(SetCurrentDirectoryW(working));
    EXPECT_FALSE(MoveFileExW(directory.c_str(), to.c_str(), 0));
    EXPECT_EQ(GetLastError(), code) << "the working directory is open too";
  }
}

TEST_F(Files, AHandleDoesWhatItWasOpenedFor) {
  std::ofstream("f") << "content";
  const struct {
    DWORD access;
    bool reads, writes;
  } cases[] = {{0, false, false},
               {GENERIC_READ, true, false},
               {GENERIC_WRITE, false, true},
               {FILE_APPEND_DATA, false, true},
               {GENERIC_READ | GENERIC_WRITE, true, true},
               {DELETE, false, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.access);
    const HANDLE file = CreateFileW(u"f", c.access, 7, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    char byte = 'x';
    DWORD done = 77;
    const auto expect = [](bool may, BOOL answer) {
      EXPECT_EQ(answer != FALSE, may);
      EXPECT_TRUE(may || GetLastError() == 5U);
    };
    expect(c.reads, ReadFile(file, &byte, 1, &done, nullptr));
    EXPECT_EQ(done, c.reads ? 1U : 0U);
    expect(c.writes, WriteFile(file, &byte, 1, &done, nullptr));
    EXPECT_EQ(done, c.writes ? 1U : 0U);
    expect(c.writes, FlushFileBuffers(file));
    // Nobody may leave out where the count goes.
    EXPECT_FALSE(ReadFile(file, &byte, 1, nullptr, nullptr));
    EXPECT_EQ(GetLastError(), 87U);
    EXPECT_FALSE(WriteFile(file, &byte, 1, nullptr, nullptr));
    EXPECT_EQ(GetLastError(), 87U);
    LARGE_INTEGER size{};
    EXPECT_TRUE(GetFileSizeEx(file, &size)) << "everybody may ask";
    CloseHandle(file);
    std::ofstream("f") << "content";
  }
}

TEST_F(Files, AReadThatIsMadeToFailAnswersNothingOfWhatItRead) {
  const platform::testing::Scope restored;
  std::ofstream("f") << "0123456789";
  const HANDLE file = CreateFileW(u"f", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  platform::testing::BreakRead("/f", 2, 3, ERROR_IO_DEVICE);
  char buffer[5] = "----";
  DWORD done = 0;
  EXPECT_TRUE(ReadFile(file, buffer, 4, &done, nullptr));
  EXPECT_FALSE(ReadFile(file, buffer, 4, &done, nullptr));
  EXPECT_EQ(GetLastError(), ERROR_IO_DEVICE);
  EXPECT_EQ(done, 0U);
  EXPECT_STREQ(buffer, "4563") << "three bytes of it had come";
  EXPECT_TRUE(ReadFile(file, buffer, 4, &done, nullptr));
  EXPECT_STREQ(buffer, "4567") << "the file stands where it stood";
  CloseHandle(file);
}

TEST_F(Files, AWriteThatEndsHalfwayAnswersNothingOfWhatItWrote) {
  const HANDLE file = CreateFileW(u"f", GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  DWORD done = 77;
  {
    const FileSizeLimit full(5);
    EXPECT_FALSE(WriteFile(file, "0123456789", 10, &done, nullptr));
  }
  EXPECT_EQ(GetLastError(), 223U);
  EXPECT_EQ(done, 0U);
  CloseHandle(file);
}

TEST_F(Files, AHandleOfAnotherKindIsRefused) {
  std::ofstream("f") << "x";
  WIN32_FIND_DATAW data;
  const HANDLE find = FindFirstFileW(u"*", &data);
  ASSERT_NE(find, INVALID_HANDLE_VALUE);
  char byte = 0;
  DWORD done = 0;
  EXPECT_FALSE(ReadFile(find, &byte, 1, &done, nullptr));
  EXPECT_EQ(GetLastError(), 6U);
  EXPECT_FALSE(CloseHandle(find));
  EXPECT_TRUE(FindClose(find));
}

TEST_F(Files, FlushingReachesTheDirectoryAfterTheWorkingDirectoryChanged) {
  fs::create_directory("sub");
  const HANDLE file = CreateFileW(u"sub\\f", GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  ASSERT_TRUE(SetCurrentDirectoryW(u"C:\\"));
  EXPECT_TRUE(FlushFileBuffers(file));
  EXPECT_TRUE(CloseHandle(file));
}

TEST_F(Files, AttributesTellWhatANameIs) {
  fs::create_directory("dir");
  std::ofstream("file") << "12345";
  std::ofstream("readonly") << "1";
  fs::permissions("readonly", fs::perms::owner_read);
  fs::create_symlink("file", "link");
  fs::create_symlink("dir", "dirlink");
  fs::create_symlink("nowhere", "dangling");
  fs::resize_file("file", 0x123456789);  // a hole: no bytes on the disk
  struct Case {
    const char16_t* name;
    DWORD attributes;
    std::uint64_t size;
  };
  const Case cases[] = {
      {u"dir", 0x10, 0},      {u"file", 0x20, 0x123456789},
      {u"readonly", 0x21, 1}, {u"link", 0x420, 0x123456789},
      {u"dirlink", 0x410, 0}, {u"dangling", 0x400, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(narrow(c.name));
    WIN32_FILE_ATTRIBUTE_DATA data{};
    ASSERT_TRUE(GetFileAttributesExW(c.name, GetFileExInfoStandard, &data));
    EXPECT_EQ(data.dwFileAttributes, c.attributes);
    EXPECT_EQ(GetFileAttributesW(c.name), c.attributes);
    EXPECT_EQ(std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow, c.size);
  }
  EXPECT_TRUE(SetFileAttributesW(u"readonly", FILE_ATTRIBUTE_NORMAL));
  EXPECT_EQ(GetFileAttributesW(u"readonly"), FILE_ATTRIBUTE_ARCHIVE);
  EXPECT_TRUE(SetFileAttributesW(u"readonly", FILE_ATTRIBUTE_READONLY));
  EXPECT_EQ(GetFileAttributesW(u"readonly"), FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_READONLY);
}

TEST_F(Files, FileTimesCountFrom1601) {
  std::ofstream("f") << "x";
  const timespec times[2] = {{0, 0}, {1, 500'000'000}};  // 1.5 s after 1970
  ASSERT_EQ(::utimensat(AT_FDCWD, "f", times, 0), 0);
  WIN32_FILE_ATTRIBUTE_DATA data{};
  ASSERT_TRUE(GetFileAttributesExW(u"f", GetFileExInfoStandard, &data));
  EXPECT_EQ(
      std::uint64_t{data.ftLastWriteTime.dwHighDateTime} << 32 | data.ftLastWriteTime.dwLowDateTime,
      116'444'736'000'000'000ULL + 15'000'000);
}

TEST_F(Files, RemovingALinkLeavesWhatItLeadsTo) {
  fs::create_directory("dir");
  std::ofstream("dir/kept") << "x";
  std::ofstream("file") << "x";
  fs::create_symlink("dir", "dirlink");
  fs::create_symlink("file", "link");
  EXPECT_FALSE(DeleteFileW(u"dirlink"));
  EXPECT_EQ(GetLastError(), 5U);
  EXPECT_TRUE(RemoveDirectoryW(u"dirlink"));
  EXPECT_TRUE(DeleteFileW(u"link"));
  EXPECT_TRUE(fs::exists("dir/kept"));
  EXPECT_TRUE(fs::exists("file"));
  EXPECT_FALSE(fs::is_symlink("dirlink"));
}

TEST_F(Files, AMoveReplacesOnlyWhenAsked) {
  std::ofstream("a") << "source";
  std::ofstream("b") << "target";
  EXPECT_FALSE(MoveFileExW(u"a", u"b", 0));
  EXPECT_EQ(GetLastError(), 183U);
  EXPECT_EQ(contentOf("b"), "target");
  EXPECT_TRUE(MoveFileExW(u"a", u"b", MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
  EXPECT_EQ(contentOf("b"), "source");
  EXPECT_FALSE(fs::exists("a"));
  EXPECT_TRUE(MoveFileExA("b", ".\\\xC3\xA4", MOVEFILE_REPLACE_EXISTING));
  EXPECT_EQ(contentOf("\xC3\xA4"), "source");
  EXPECT_FALSE(MoveFileExA(nullptr, "c", 0));
  EXPECT_EQ(GetLastError(), 2U);
}

TEST_F(Files, AReadOnlyFileIsNeitherDeletedNorReplacedNorWrittenTo) {
  const auto opens = [](DWORD access, DWORD disposition) {
    const HANDLE file = CreateFileW(u"kept", access, 0, nullptr, disposition, 0, nullptr);
    return file != INVALID_HANDLE_VALUE && CloseHandle(file);
  };
  const std::pair<const char*, std::function<bool()>> cases[] = {
      {"delete", [] { return DeleteFileW(u"kept") != FALSE; }},
      {"replace",
       [] { return MoveFileExW(u"other", u"kept", MOVEFILE_REPLACE_EXISTING) != FALSE; }},
      {"write", [&] { return opens(GENERIC_WRITE, OPEN_EXISTING); }},
      {"append", [&] { return opens(FILE_APPEND_DATA, OPEN_ALWAYS); }},
      {"empty", [&] { return opens(GENERIC_WRITE, CREATE_ALWAYS); }},
      {"empty unread", [&] { return opens(0, CREATE_ALWAYS); }},
  };
  std::ofstream("kept") << "content";
  std::ofstream("other") << "other";
  ASSERT_TRUE(SetFileAttributesW(u"kept", FILE_ATTRIBUTE_READONLY));
  for (const auto& [what, operation] : cases) {
    SCOPED_TRACE(what);
    EXPECT_FALSE(operation());
    EXPECT_EQ(GetLastError(), 5U);
    EXPECT_EQ(contentOf("kept"), "content");
    EXPECT_EQ(contentOf("other"), "other");
  }
  EXPECT_TRUE(opens(GENERIC_READ, OPEN_EXISTING));
  EXPECT_TRUE(MoveFileExW(u"kept", u"moved", 0)) << "it may be renamed";
  // A file is not kept by one of its names, nor by a link to it.
  fs::create_hard_link("moved", "second");
  fs::create_symlink("moved", "link");
  EXPECT_TRUE(DeleteFileW(u"second"));
  EXPECT_TRUE(DeleteFileW(u"link"));
  EXPECT_FALSE(DeleteFileW(u"moved"));
}

TEST_F(Files, MovingOntoTheSameFileNeverLosesIt) {
  std::ofstream("a") << "content";
  fs::create_directory("sub");
  // The same entry under another spelling: nothing to do, and it must stay.
  EXPECT_TRUE(MoveFileExW(u"a", u"sub\\..\\a", MOVEFILE_REPLACE_EXISTING));
  EXPECT_TRUE(MoveFileExW(u"a", u".\\a", 0));
  EXPECT_EQ(contentOf("a"), "content");
  // Two names of one file: rename(2) would leave both.
  fs::create_hard_link("a", "b");
  EXPECT_TRUE(MoveFileExW(u"a", u"b", MOVEFILE_REPLACE_EXISTING));
  EXPECT_FALSE(fs::exists("a"));
  EXPECT_EQ(contentOf("b"), "content");
}

TEST_F(Files, AMoveBetweenFileSystemsIsLeftToTheCaller) {
  struct stat here {};
  struct stat memory {};
  if (::stat(".", &here) != 0 || ::stat("/dev/shm", &memory) != 0 || here.st_dev == memory.st_dev) {
    GTEST_SKIP() << "/dev/shm is not another file system than the temporary directory";
  }
  const fs::path other = "/dev/shm/quillon-move-" + std::to_string(::getpid());
  std::ofstream("a") << "content";
  EXPECT_FALSE(MoveFileExW(u"a", other.u16string().c_str(), MOVEFILE_REPLACE_EXISTING));
  EXPECT_EQ(GetLastError(), 17U);
  EXPECT_EQ(contentOf("a"), "content");
  EXPECT_FALSE(fs::exists(other));
}

class FindFiles : public LayerTest {
 protected:
  static std::vector<std::string> names(const char16_t* pattern) {
    std::vector<std::string> result;
    WIN32_FIND_DATAW data;
    const HANDLE find = FindFirstFileW(pattern, &data);
    if (find == INVALID_HANDLE_VALUE) return result;
    do {
      result.push_back(narrow(data.cFileName));
    } while (FindNextFileW(find, &data));
    EXPECT_EQ(GetLastError(), 18U);
    FindClose(find);
    return result;
  }
};

TEST_F(FindFiles, PatternsMatchInNameOrder) {
  for (const char* name : {"b.dcm", "a.dcm", "B.dcm", "noext", "a.dcm.bak", "-x", "abc", "abbc"}) {
    std::ofstream(name) << "x";
  }
  fs::create_directory("sub.dcm");
  struct Case {
    const char16_t* pattern;
    std::vector<std::string> expected;
  };
  const std::vector<std::string> all = {".",    "..",  "-x",    "B.dcm", "a.dcm",  "a.dcm.bak",
                                        "abbc", "abc", "b.dcm", "noext", "sub.dcm"};
  const Case cases[] = {
      {u"*.*", all},
      {u"*", all},
      {u"*.dcm", {"B.dcm", "a.dcm", "b.dcm", "sub.dcm"}},
      {u"?.dcm", {"B.dcm", "a.dcm", "b.dcm"}},
      {u"a*c", {"abbc", "abc"}},
      {u"a*b*c", {"abbc", "abc"}},
      {u"a?c", {"abc"}},
      {u"*bb*", {"abbc"}},
      {u"abc*", {"abc"}},
      {u"noext", {"noext"}},
      {u"NOEXT", {}},
      {u"*.DCM", {}},
      {u".\\no*", {"noext"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(narrow(c.pattern));
    EXPECT_EQ(names(c.pattern), c.expected);
  }
}

TEST_F(FindFiles, AnEnumerationSurvivesChangesAroundIt) {
  fs::create_directory("a");
  std::ofstream("b") << "123";
  std::ofstream("c") << "x";
  WIN32_FIND_DATAW data;
  const HANDLE find = FindFirstFileW(u"?", &data);
  ASSERT_NE(find, INVALID_HANDLE_VALUE);
  ASSERT_EQ(narrow(data.cFileName), ".");
  ASSERT_TRUE(FindNextFileW(find, &data));
  EXPECT_EQ(data.dwFileAttributes, FILE_ATTRIBUTE_DIRECTORY);
  // A walk enters what it found, and files go away.
  ASSERT_TRUE(SetCurrentDirectoryW(u"a"));
  fs::remove("../c");
  ASSERT_TRUE(FindNextFileW(find, &data));
  EXPECT_EQ(narrow(data.cFileName), "b");
  EXPECT_EQ(data.nFileSizeLow, 3U);
  EXPECT_FALSE(FindNextFileW(find, &data));
  EXPECT_EQ(GetLastError(), 18U);
  EXPECT_TRUE(FindClose(find));
}

}  // namespace
}  // namespace quillon::test
