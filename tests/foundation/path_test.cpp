#include "foundation/file_util.h"
#include "foundation_test_support.h"

namespace quillon {
namespace {

using test::ErrorOf;
using test::Plain;

TEST(PathInfo, SplitsAtTheLastSeparatorAndTheLastDot) {
  const struct {
    Text path;
    std::string expected;  // drive|directory|file name|extension
  } cases[] = {
      {OLESTR("C:\\a\\b.c\\name.tar.gz"), "C:|\\a\\b.c\\|name.tar|.gz"},
      {OLESTR("/srv/in.d/IM0001"), "|/srv/in.d/|IM0001|"},
      {OLESTR("C:name"), "C:||name|"},
      {OLESTR("C:"), "C:|||"},
      {OLESTR("\\\\server\\share\\x.dcm"), "|\\\\server\\share\\|x|.dcm"},
      {OLESTR("a/b\\c.d"), "|a/b\\|c|.d"},
      {OLESTR(".profile"), "|||.profile"},
      {OLESTR("name."), "||name|."},
      {OLESTR(".."), "||.|."},
      {OLESTR("dir\\"), "|dir\\||"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(Plain(c.path));
    CPathInfo info;
    EXPECT_TRUE(info.Split(c.path));
    EXPECT_EQ(Plain(info.Drive() + OLESTR("|") + info.Directory() + OLESTR("|") + info.FileName() +
                    OLESTR("|") + info.Extension()),
              c.expected);
  }
}

TEST(FileUtilSplit, RefusesWhatIsNoPath) {
  CFileUtil files;
  CPathInfo parts;
  EXPECT_TRUE(files.Split(OLESTR("C:\\a\\b.c"), parts));
  EXPECT_EQ(parts.FileName() + parts.Extension(), OLESTR("b.c"));
  EXPECT_FALSE(files.Split({}, parts));
  EXPECT_EQ(ErrorOf(files), "The path name is invalid.");
  const Text at261 = Text(261, OLESTR('n'));
  EXPECT_FALSE(files.Split(at261, parts));
  EXPECT_EQ(ErrorOf(files), "The path name " + Plain(at261) + " is longer than 260 characters.");
}

// One row for each kind of path that a host may give, with its verdict: empty when it is accepted.
TEST(ValidatePath, GivesEveryPathItsVerdict) {
  const std::string nameSet = "\\/:*?\"<>|";
  const std::string directorySet = ":*?\"<>|";
  const auto badDirectory = [&](const std::string& shown) {
    return "The directory name " + shown + " cannot contain these characters: " + directorySet;
  };
  const auto badName = [&](const std::string& shown) {
    return "The filename " + shown + " cannot contain these characters: " + nameSet;
  };
  const auto tooLong = [](const Text& path) {
    return "The path name " + Plain(path) + " is longer than 260 characters.";
  };
  const Text native261 = OLESTR("/") + Text(260, OLESTR('n'));
  const Text drive261 = OLESTR("C:\\") + Text(258, OLESTR('n'));
  const Text share261 = OLESTR("\\\\server\\share\\") + Text(246, OLESTR('n'));
  const struct {
    const char* what;
    Text path;
    std::string verdict;
  } cases[] = {
      {"drive, directory, name, extension", OLESTR("C:\\dir\\name.dcm"), ""},
      {"small drive letter, slashes", OLESTR("c:/dir/name"), ""},
      {"drive alone", OLESTR("C:"), ""},
      {"root of a drive", OLESTR("C:\\"), ""},
      {"relative to a drive", OLESTR("C:dir\\name"), ""},
      {"drive that is a digit", OLESTR("1:\\a"), "The drive name 1: is invalid."},
      {"drive that is no ASCII letter", OLESTR("\u00c4:a"), "The drive name \u00c4: is invalid."},
      {"colon behind two letters", OLESTR("CD:\\a"), badDirectory("CD:\\")},
      {"colon in a later directory", OLESTR("C:\\a:b\\c"), badDirectory("\\a:b\\")},
      {"colon in a name", OLESTR("abc:d"), badName("abc:d")},

      {"native", OLESTR("/srv/in.d/IM0001"), ""},
      {"root", OLESTR("/"), ""},
      {"root of the current drive", OLESTR("\\"), ""},
      {"name", OLESTR("name"), ""},
      {"dots", OLESTR("..\\."), ""},
      {"hidden", OLESTR(".hidden"), ""},
      {"two extensions", OLESTR("a.b.c"), ""},
      {"trailing separator", OLESTR("dir/sub/"), ""},
      {"empty", OLESTR(""), "The path name is invalid."},

      {"both separators, apart", OLESTR("C:\\a\\b/name"), ""},
      {"backslash, slash", OLESTR("C:\\a\\/b\\c"), badDirectory("\\/b\\")},
      {"slash, backslash", OLESTR("C:\\a/\\b\\c"), badDirectory("/\\b\\")},
      {"mixed at the start", OLESTR("\\/server/x"), badDirectory("\\/server/")},
      {"doubled backslash", OLESTR("C:\\a\\\\b"), badDirectory("\\\\")},
      {"doubled backslash without a drive", OLESTR("a\\\\b\\c"), badDirectory("\\\\b\\")},
      {"doubled slash", OLESTR("/a//b/c"), badDirectory("//b/")},

      {"share", OLESTR("\\\\server\\share\\"), ""},
      {"share with slashes", OLESTR("//server/share/x"), ""},
      {"server alone", OLESTR("\\\\server"), ""},
      {"doubled further on in a share", OLESTR("\\\\server\\a\\\\b"), ""},
      {"share behind a drive", OLESTR("C:\\\\server\\b"), badDirectory("\\\\server\\")},
      {"slashed share behind a drive", OLESTR("C://a/b"), badDirectory("//a/")},
      {"three backslashes", OLESTR("\\\\\\server\\x"), badDirectory("\\\\\\server\\")},
      {"three slashes", OLESTR("///server/x"), badDirectory("///server/")},
      {"three further on in a share", OLESTR("\\\\server\\\\\\share\\x"),
       badDirectory("\\\\\\share\\")},

      {"spaces", OLESTR(" a b\\c d\\e f .x y"), ""},
      {"not ASCII", OLESTR("/tmp/\u0141\u65e5/\u00e9.dcm"), ""},
      {"outside the basic plane", OLESTR("/a/b c/\U0001d11e.dcm"), ""},
      {"a byte that is no UTF-8", OLESTR("/a/M\xDCFCller"), ""},

      {"question mark", OLESTR("dir\\what?"), badName("what?")},
      {"search pattern", OLESTR("*.*"), badName("*")},
      {"bar in an extension", OLESTR("C:\\a.b|c"),
       "The extension .b|c cannot contain these characters: " + nameSet},
      {"angle in a directory", OLESTR("a<b/c"), badDirectory("a<b/")},

      {"259 characters", OLESTR("/") + Text(258, OLESTR('n')), ""},
      {"260 characters", OLESTR("/") + Text(259, OLESTR('n')), ""},
      {"261 characters", native261, tooLong(native261)},
      {"260 characters with a drive", OLESTR("C:\\") + Text(257, OLESTR('n')), ""},
      {"261 characters with a drive", drive261, tooLong(drive261)},
      {"260 characters of a share", share261.substr(0, 260), ""},
      {"261 characters of a share", share261, tooLong(share261)},
      {"units count, not characters: 260", OLESTR("/") + Text(259, OLESTR('\u00e9')), ""},
      {"length before all else", OLESTR("1:") + Text(259, OLESTR('?')),
       tooLong(OLESTR("1:") + Text(259, OLESTR('?')))},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    CFileUtil files;
    EXPECT_EQ(files.ValidatePath(c.path), c.verdict.empty());
    EXPECT_EQ(ErrorOf(files), c.verdict);
  }
}

TEST(HasDrive, AsksWithoutLeavingASentence) {
  CFileUtil files;
  EXPECT_TRUE(files.HasDrive(OLESTR("C:\\a")));
  EXPECT_TRUE(files.HasDrive(OLESTR("d:")));
  EXPECT_FALSE(files.HasDrive(OLESTR("\\a\\b:")));
  EXPECT_FALSE(files.HasDrive(OLESTR("")));
  EXPECT_FALSE(files.HasDrive(OLESTR("C:") + Text(259, OLESTR('n'))));
  EXPECT_EQ(ErrorOf(files), "");
}

}  // namespace
}  // namespace quillon
