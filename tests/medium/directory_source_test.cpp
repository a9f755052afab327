#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "medium/medium_source.h"
#include "platform/services.h"
#include "support/temp_dir.h"

#include <sys/stat.h>

namespace quillon {
namespace {

namespace fs = std::filesystem;

Text wide(const fs::path& path) { return WidenText(path.string(), FileSystemCodePage()); }

// "F DICOMDIR 3", a line each.
std::string listed(MediumSource& medium) {
  std::vector<MediumEntry> entries;
  EXPECT_TRUE(medium.List(entries));
  std::string lines;
  for (const MediumEntry& entry : entries) {
    lines += "FDLO"[static_cast<int>(entry.kind)];
    lines += " " + NarrowText(entry.path, FileSystemCodePage());
    if (entry.kind == MediumEntry::Kind::File) lines += " " + std::to_string(entry.sizeBytes);
    lines += "\n";
  }
  return lines;
}

TEST(DirectorySource, ListsWhatIsThereAndFollowsNoLink) {
  const test::TempDir dir;
  const test::TempDir outside;
  test::writeText(outside / "SECRET", "secret");
  fs::create_directories(dir / "A/B");
  test::writeText(dir / "A/B/IM1", "12345");
  test::writeText(dir / "DICOMDIR", "123");
  fs::create_symlink(outside.path(), dir / "A/OUT");
  fs::create_symlink(".", dir / "LOOP");
  fs::create_symlink(outside / "SECRET", dir / "IM2");
  ASSERT_EQ(mkfifo((dir / "PIPE").c_str(), 0600), 0);
  CBaseItem errors;
  const auto medium = OpenMedium(wide(dir.path()), errors);
  ASSERT_NE(medium, nullptr);
  EXPECT_EQ(listed(*medium),
            "D A\nF DICOMDIR 3\nL IM2\nL LOOP\nO PIPE\nD A\\B\nL A\\OUT\nF A\\B\\IM1 5\n");
}

TEST(DirectorySource, OpensFilesOfTheMediumAlone) {
  const test::TempDir dir;
  const test::TempDir outside;
  test::writeText(outside / "SECRET", "secret");
  fs::create_directories(dir / "A");
  test::writeText(dir / "A/IM1", "12345");
  fs::create_symlink(outside.path(), dir / "OUT");
  fs::create_symlink("A/IM1", dir / "IM2");
  ASSERT_EQ(mkfifo((dir / "PIPE").c_str(), 0600), 0);
  CBaseItem errors;
  const auto medium = OpenMedium(wide(dir.path()), errors);
  ASSERT_NE(medium, nullptr);
  const auto file = medium->Open(OLESTR("A\\IM1"));
  ASSERT_NE(file, nullptr);
  char bytes[3] = {};
  EXPECT_EQ(file->SizeBytes(), 5U);
  EXPECT_TRUE(file->ReadAt(2, bytes, 3));
  EXPECT_EQ(std::string(bytes, 3), "345");
  EXPECT_TRUE(file->ReadAt(0, bytes, 2));
  EXPECT_EQ(std::string(bytes, 2), "12");
  EXPECT_FALSE(file->ReadAt(3, bytes, 3));
  EXPECT_FALSE(file->ReadAt(~std::uint64_t{0}, bytes, 3));

  const Text climbing = Text(OLESTR("..\\")) + wide(outside.path().filename()) + OLESTR("\\SECRET");
  const TextView refused[] = {
      OLESTR("OUT\\SECRET"), OLESTR("IM2"),   OLESTR("PIPE"),     OLESTR("A"),    OLESTR(""),
      OLESTR("A\\.\\IM1"),   OLESTR("A/IM1"), OLESTR("\\A\\IM1"), OLESTR("NONE"), climbing};
  for (const TextView path : refused) {
    SCOPED_TRACE(NarrowText(path, FileSystemCodePage()));
    EXPECT_EQ(medium->Open(path), nullptr);
    EXPECT_NE(medium->ErrorMessage().find(OLESTR("Cannot open the file ")), Text::npos);
  }
}

TEST(OpenMedium, SaysThatThereIsNone) {
  const test::TempDir dir;
  CBaseItem errors;
  EXPECT_EQ(OpenMedium(wide(dir / "NONE"), errors), nullptr);
  EXPECT_EQ(errors.ErrorMessage(),
            OLESTR("Cannot open the file ") + wide(dir / "NONE") + OLESTR("."));
}

}  // namespace
}  // namespace quillon
