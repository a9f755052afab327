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

TEST(ValidatePath, AcceptsWhatAPathMayHold) {
  CFileUtil files;
  const Text accepted[] = {
      u"C:\\dir\\name.dcm",
      u"c:/dir/name",
      u"C:",
      u"C:\\",
      u"\\",
      u"/",
      u"..",
      u"..\\a",
      u"name",
      u"a b\\c d.e f",
      u"\\\\server\\share\\",
      u"//server/share/x",
      u"\\\\server",
      u"dir/sub/",
      u".hidden",
      u"/tmp/\u0141\u65e5",
      u"a.b.c",
      u"C:\\a\\b/name",
      u"/a/b c/\U0001d11e.dcm",
      u"\\\\server\\a\\\\b",  // in a network path only three in a row are refused
      u"/" + Text(259, u'n'),
  };
  for (const Text& path : accepted) {
    SCOPED_TRACE(Plain(path));
    EXPECT_TRUE(files.ValidatePath(path));
    EXPECT_EQ(ErrorOf(files), "");
  }
}

TEST(ValidatePath, RefusesWithTheOffendingPart) {
  const std::string nameSet = "\\/:*?\"<>|";
  const std::string directorySet = ":*?\"<>|";
  const auto badDirectory = [&](const std::string& shown) {
    return "The directory name " + shown + " cannot contain these characters: " + directorySet;
  };
  struct Case {
    Text path;
    std::string expected;
  };
  const Text tooLong = u"/" + Text(260, u'n');
  const Case cases[] = {
      {u"", "The path name is invalid."},
      {tooLong, "The path name " + Plain(tooLong) + " is longer than 260 characters."},
      {u"1:\\a", "The drive name 1: is invalid."},
      {u"\u00c4:a", "The drive name \u00c4: is invalid."},
      {u"C:\\a\\\\b", badDirectory("\\\\")},
      {u"C:\\\\server\\b", badDirectory("\\\\server\\")},
      {u"a\\\\b\\c", badDirectory("\\\\b\\")},
      {u"/a//b/c", badDirectory("//b/")},
      {u"C://a/b", badDirectory("//a/")},
      {u"\\\\\\server\\x", badDirectory("\\\\\\server\\")},
      {u"///server/x", badDirectory("///server/")},
      {u"\\\\server\\\\\\share\\x", badDirectory("\\\\\\share\\")},
      {u"C:\\a\\/b\\c", badDirectory("\\/b\\")},
      {u"C:\\a/\\b\\c", badDirectory("/\\b\\")},
      {u"C:\\a:b\\c", badDirectory("\\a:b\\")},
      {u"a<b/c", badDirectory("a<b/")},
      {u"dir\\what?", "The filename what? cannot contain these characters: " + nameSet},
      {u"abc:d", "The filename abc:d cannot contain these characters: " + nameSet},
      {u"C:\\a.b|c", "The extension .b|c cannot contain these characters: " + nameSet},
      {u"*.*", "The filename * cannot contain these characters: " + nameSet},
  };
  CFileUtil files;
  for (const Case& c : cases) {
    SCOPED_TRACE(Plain(c.path));
    EXPECT_FALSE(files.ValidatePath(c.path));
    EXPECT_EQ(ErrorOf(files), c.expected);
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
