#include "foundation/file_util.h"
#include "foundation_test_support.h"

namespace quillon {
namespace {

using test::ErrorOf;
using test::Plain;

TEST(PathInfo, SplitsAtTheLastSeparatorAndTheLastDot) {
  struct Case {
    Text path;
    std::string expected;  // drive|directory|file name|extension
  };
  const Case cases[] = {
      {u"C:\\a\\b.c\\name.tar.gz", "C:|\\a\\b.c\\|name.tar|.gz"},
      {u"/srv/in.d/IM0001", "|/srv/in.d/|IM0001|"},
      {u"C:name", "C:||name|"},
      {u"C:", "C:|||"},
      {u"\\\\server\\share\\x.dcm", "|\\\\server\\share\\|x|.dcm"},
      {u"a/b\\c.d", "|a/b\\|c|.d"},
      {u".profile", "|||.profile"},
      {u"name.", "||name|."},
      {u"..", "||.|."},
      {u"dir\\", "|dir\\||"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Plain(c.path));
    CPathInfo info;
    EXPECT_TRUE(info.Split(c.path));
    EXPECT_EQ(Plain(info.Drive() + u"|" + info.Directory() + u"|" + info.FileName() + u"|" +
                    info.Extension()),
              c.expected);
  }
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
  const Text native261 = u"/" + Text(260, u'n');
  const Text drive261 = u"C:\\" + Text(258, u'n');
  const Text share261 = u"\\\\server\\share\\" + Text(246, u'n');
  const struct {
    const char* what;
    Text path;
    std::string verdict;
  } cases[] = {
      {"drive, directory, name, extension", u"C:\\dir\\name.dcm", ""},
      {"small drive letter, slashes", u"c:/dir/name", ""},
      {"drive alone", u"C:", ""},
      {"root of a drive", u"C:\\", ""},
      {"relative to a drive", u"C:dir\\name", ""},
      {"drive that is a digit", u"1:\\a", "The drive name 1: is invalid."},
      {"drive that is no ASCII letter", u"\u00c4:a", "The drive name \u00c4: is invalid."},
      {"colon behind two letters", u"CD:\\a", badDirectory("CD:\\")},
      {"colon in a later directory", u"C:\\a:b\\c", badDirectory("\\a:b\\")},
      {"colon in a name", u"abc:d", badName("abc:d")},

      {"native", u"/srv/in.d/IM0001", ""},
      {"root", u"/", ""},
      {"root of the current drive", u"\\", ""},
      {"name", u"name", ""},
      {"dots", u"..\\.", ""},
      {"hidden", u".hidden", ""},
      {"two extensions", u"a.b.c", ""},
      {"trailing separator", u"dir/sub/", ""},
      {"empty", u"", "The path name is invalid."},

      {"both separators, apart", u"C:\\a\\b/name", ""},
      {"backslash, slash", u"C:\\a\\/b\\c", badDirectory("\\/b\\")},
      {"slash, backslash", u"C:\\a/\\b\\c", badDirectory("/\\b\\")},
      {"mixed at the start", u"\\/server/x", badDirectory("\\/server/")},
      {"doubled backslash", u"C:\\a\\\\b", badDirectory("\\\\")},
      {"doubled backslash without a drive", u"a\\\\b\\c", badDirectory("\\\\b\\")},
      {"doubled slash", u"/a//b/c", badDirectory("//b/")},

      {"share", u"\\\\server\\share\\", ""},
      {"share with slashes", u"//server/share/x", ""},
      {"server alone", u"\\\\server", ""},
      {"doubled further on in a share", u"\\\\server\\a\\\\b", ""},
      {"share behind a drive", u"C:\\\\server\\b", badDirectory("\\\\server\\")},
      {"slashed share behind a drive", u"C://a/b", badDirectory("//a/")},
      {"three backslashes", u"\\\\\\server\\x", badDirectory("\\\\\\server\\")},
      {"three slashes", u"///server/x", badDirectory("///server/")},
      {"three further on in a share", u"\\\\server\\\\\\share\\x", badDirectory("\\\\\\share\\")},

      {"spaces", u" a b\\c d\\e f .x y", ""},
      {"not ASCII", u"/tmp/\u0141\u65e5/\u00e9.dcm", ""},
      {"outside the basic plane", u"/a/b c/\U0001d11e.dcm", ""},
      {"a byte that is no UTF-8", u"/a/M\xDCFCller", ""},

      {"question mark", u"dir\\what?", badName("what?")},
      {"search pattern", u"*.*", badName("*")},
      {"bar in an extension", u"C:\\a.b|c",
       "The extension .b|c cannot contain these characters: " + nameSet},
      {"angle in a directory", u"a<b/c", badDirectory("a<b/")},

      {"259 characters", u"/" + Text(258, u'n'), ""},
      {"260 characters", u"/" + Text(259, u'n'), ""},
      {"261 characters", native261, tooLong(native261)},
      {"260 characters with a drive", u"C:\\" + Text(257, u'n'), ""},
      {"261 characters with a drive", drive261, tooLong(drive261)},
      {"260 characters of a share", share261.substr(0, 260), ""},
      {"261 characters of a share", share261, tooLong(share261)},
      {"units count, not characters: 260", u"/" + Text(259, u'\u00e9'), ""},
      {"length before all else", u"1:" + Text(259, u'?'), tooLong(u"1:" + Text(259, u'?'))},
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
  EXPECT_TRUE(files.HasDrive(u"C:\\a"));
  EXPECT_TRUE(files.HasDrive(u"d:"));
  EXPECT_FALSE(files.HasDrive(u"\\a\\b:"));
  EXPECT_FALSE(files.HasDrive(u""));
  EXPECT_FALSE(files.HasDrive(u"C:" + Text(259, u'n')));
  EXPECT_EQ(ErrorOf(files), "");
}

}  // namespace
}  // namespace quillon
