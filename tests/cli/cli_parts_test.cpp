#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>

#include "held_directory.h"
#include "json_output.h"
#include "media_job.h"
#include "root_guard.h"
#include "staging.h"
#include "support/temp_dir.h"

namespace quillon::cli {
namespace {

namespace fs = std::filesystem;

TEST(JsonOutput, EveryByteStringBecomesValidJson) {
  struct Case {
    std::string text;
    std::string json;
  };
  const std::string bad = "\xEF\xBF\xBD";
  const Case cases[] = {
      {"", "\"\""},
      {"a\"b\\c/d", R"("a\"b\\c/d")"},
      {"\n\r\t\x01\x1F\x7F", "\"\\n\\r\\t\\u0001\\u001f\\u007f\""},
      {"a\xC2\x9B\xC2\x80z", "\"a\\u009b\\u0080z\""},  // terminals would obey them
      {"\xC2\xA0\xC3\x82", "\"\xC2\xA0\xC3\x82\""},
      {std::string("\0", 1), "\"\\u0000\""},
      {"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80",
       "\"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80\""},
      {"\xFF", "\"" + bad + "\""},
      {"\xC3", "\"" + bad + "\""},                                // cut
      {"\xC3(", "\"" + bad + "(\""},                              // no continuation
      {"\xC0\xAF", "\"" + bad + bad + "\""},                      // overlong
      {"\xE0\x80\xAF", "\"" + bad + bad + bad + "\""},            // overlong
      {"\xED\xA0\x80", "\"" + bad + bad + bad + "\""},            // a surrogate
      {"\xF4\x90\x80\x80", "\"" + bad + bad + bad + bad + "\""},  // above U+10FFFF
      {"\xE2\x82", "\"" + bad + "\""},                            // cut short: one character
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.json);
    EXPECT_EQ(jsonLine(c.text), c.json);
  }
}

TEST(PatientKey, NameAndIdCannotRunIntoEachOther) {
  const auto key = [](const OLECHAR* name, const OLECHAR* id) { return patientKey(name, id); };
  EXPECT_NE(key(OLESTR("DOE"), OLESTR("1")), key(OLESTR("DOE1"), OLESTR("")));
  EXPECT_NE(key(OLESTR("DOE 1"), OLESTR("2")), key(OLESTR("DOE"), OLESTR("1 2")));
  EXPECT_EQ(key(OLESTR("DOE^JOHN"), OLESTR("1")), key(OLESTR("DOE^JOHN^^^"), OLESTR("1")));
  EXPECT_NE(key(OLESTR("DOE^JOHN"), OLESTR("1")), key(OLESTR("DOE^^JOHN"), OLESTR("1")));
  EXPECT_FALSE(key(OLESTR(""), OLESTR("")).empty());
}

// What is taken for abandoned is deleted: a directory that a job still uses must not be.
TEST(HeldDirectory, OnlyWhatNobodyHoldsIsAbandoned) {
  const test::TempDir parent;
  fs::create_directory(parent / ".quillon-1-killed");
  fs::create_directory(parent / ".quillon-new-2-x");
  fs::create_directory(parent / ".quillon-user");
  fs::create_directory(parent / "elsewhere");
  fs::create_directory_symlink(parent / "elsewhere", parent / ".quillon-3-link");
  HeldDirectory held;
  ASSERT_TRUE(held.make(parent.path().string(), ".quillon-"));
  EXPECT_EQ(fs::status(held.path()).permissions(), fs::perms::owner_all);
  std::vector<std::string> found;
  HeldDirectory::forEachAbandoned(parent.path().string(), ".quillon-",
                                  [&](const std::string& path) { found.push_back(path); });
  EXPECT_EQ(found, (std::vector<std::string>{(parent / ".quillon-1-killed").string()}));
}

// Somebody who watches the copy of one large file must see that it goes on.
TEST(Staging, TellsHowFarTheCopyOfAFileIs) {
  const test::TempDir dir;
  constexpr std::uint64_t kBytes = std::uint64_t{40} << 20;
  std::ofstream(dir / "large").put('x');
  fs::resize_file(dir / "large", kBytes);
  Staging staging(dir.path().string(), /*mayLink=*/false);
  std::vector<std::uint64_t> told;
  staging.setProgress([&told](std::uint64_t bytes) { told.push_back(bytes); });
  std::string copy;
  ASSERT_EQ(staging.copyIn((dir / "large").string(), copy).text(), "");
  EXPECT_EQ(fs::file_size(copy), kBytes);
  if (!staging.needsRoom()) GTEST_SKIP() << "the file system shares blocks: there is no copy";
  EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
  ASSERT_GE(told.size(), 4U);
  EXPECT_EQ(told.back(), kBytes);
}

TEST(RootGuard, WhatIsNoMereFileSetIsNotWiped) {
  const test::TempDir directory;
  fs::create_directories(directory / "a/b");
  fs::create_directories(directory / "ab");
  fs::create_directory_symlink(directory / "a", directory / "link");
  fs::create_directory_symlink("/", directory / "slash");
  const auto at = [&directory](const char* name) { return (directory / name).string(); };
  struct Case {
    const char* what;
    std::string root;
    std::vector<std::string> sources;
    bool isWiped;
  };
  const Case cases[] = {
      {"the file system", "/", {}, false},
      {"the file system by another name", "/usr/..", {}, false},
      {"the file system through a link", at("slash"), {}, false},
      {"above the current directory", fs::current_path().parent_path().string(), {}, false},
      {"beside the source", at("a"), {at("ab")}, true},
      {"below the source", at("a/b"), {at("a")}, true},
      {"the source", at("a"), {at("a")}, false},
      {"above the source", at("a"), {at("a/b/file that need not exist")}, false},
      {"above the source, with a separator", at("a/"), {at("a/b")}, false},
      {"a link to what holds the source", at("link"), {at("a/b")}, false},
      {"holds the source, which is named through a link", at("a"), {at("link/b")}, false},
      {"holds a link that is a source", directory.path().string(), {at("link")}, false},
      {"no such directory", at("new"), {at("a")}, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(!mayWipe(c.root, c.sources).failed(), c.isWiped);
  }
}

}  // namespace
}  // namespace quillon::cli
