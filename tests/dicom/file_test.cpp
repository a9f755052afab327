#include "dicom/file.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace quillon {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(ToolkitFile, AppendingKeepsAndCreatingReplacesWhatIsThere) {
  const test::TempDir dir;
  const std::string name = (dir / "file").string();
  struct Step {
    DcFile::Mode mode;
    Bytes expected;
  };
  for (const Step& step :
       {Step{DcFile::Mode::Append, {1, 2}}, Step{DcFile::Mode::Append, {1, 2, 1, 2}},
        Step{DcFile::Mode::CreateOrTruncate, {1, 2}}}) {
    DcFile file;
    ASSERT_TRUE(file.open(name.c_str(), step.mode));
    EXPECT_TRUE(file.write("\x01\x02", 2));
    EXPECT_TRUE(file.flush());
    EXPECT_TRUE(file.close());
    EXPECT_EQ(test::readBytes(name), step.expected);
  }
}

TEST(ToolkitFile, ReadingEndsWithTheFileAndSeeksBeyondFourGigabytes) {
  const test::TempDir dir;
  const std::string name = (dir / "file").string();
  test::writeBytes(name, {1, 2, 3, 4, 5});
  constexpr std::uint64_t kLarge = 5'000'000'000;
  std::filesystem::resize_file(name, kLarge);  // sparse

  DcFile file;
  ASSERT_TRUE(file.open(name.c_str(), DcFile::Mode::Read));
  std::uint64_t size = 0;
  EXPECT_TRUE(file.size(size));
  EXPECT_EQ(size, kLarge);
  std::array<char, 4> buffer{};
  std::size_t got = 0;
  EXPECT_TRUE(file.seek(kLarge - 3));
  EXPECT_TRUE(file.read(buffer.data(), buffer.size(), got));
  EXPECT_EQ(got, 3U);
  EXPECT_TRUE(file.read(buffer.data(), buffer.size(), got));
  EXPECT_EQ(got, 0U);
  EXPECT_TRUE(file.seek(1));
  EXPECT_TRUE(file.read(buffer.data(), buffer.size(), got));
  EXPECT_EQ(got, 4U);
  EXPECT_EQ(buffer[0], 2);
  EXPECT_FALSE(file.write("x", 1)) << "opened for reading only";
}

TEST(ToolkitFile, OnlyARegularFileHasAStatus) {
  const test::TempDir dir;
  const std::string name = (dir / "file").string();
  test::writeBytes(name, {1, 2, 3});
  std::uint64_t size = 99;
  EXPECT_TRUE(DcFile::status(name.c_str(), size));
  EXPECT_EQ(size, 3U);
  EXPECT_FALSE(DcFile::status(dir.path().string().c_str(), size));
  EXPECT_FALSE(DcFile::status((name + "2").c_str(), size));
  EXPECT_FALSE(DcFile().isOpen());
  DcFile file;
  EXPECT_FALSE(file.open((name + "2").c_str(), DcFile::Mode::Read));
  EXPECT_FALSE(file.isOpen());
}

}  // namespace
}  // namespace quillon
