#include "dicom/file.h"

#include <filesystem>
#include <utility>

#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

using ToolkitFile = ToolkitTest;

TEST_F(ToolkitFile, AppendingKeepsAndCreatingReplacesWhatIsThere) {
  const std::string name = (dir_ / "file").string();
  const std::pair<DcFile::Mode, Bytes> steps[] = {{DcFile::Mode::Append, {1, 2}},
                                                  {DcFile::Mode::Append, {1, 2, 1, 2}},
                                                  {DcFile::Mode::CreateOrTruncate, {1, 2}}};
  for (const auto& [mode, expected] : steps) {
    DcFile file;
    ASSERT_TRUE(file.open(name.c_str(), mode));
    EXPECT_TRUE(file.write("\x01\x02", 2));
    EXPECT_TRUE(file.flush());
    EXPECT_TRUE(file.close());
    EXPECT_EQ(readBytes(name), expected);
  }
}

TEST_F(ToolkitFile, ReadingEndsWithTheFileAndSeeksBeyondFourGigabytes) {
  const std::string name = (dir_ / "file").string();
  writeBytes(name, {1, 2, 3, 4, 5});
  constexpr std::uint64_t kLarge = 5'000'000'000;
  std::filesystem::resize_file(name, kLarge);  // sparse

  DcFile file;
  ASSERT_TRUE(file.open(name.c_str(), DcFile::Mode::Read));
  std::uint64_t size = 0;
  EXPECT_TRUE(file.size(size));
  EXPECT_EQ(size, kLarge);
  struct Read {
    std::uint64_t at;
    Bytes expected;
  };
  for (const Read& c : {Read{kLarge - 3, {0, 0, 0}}, Read{kLarge, {}}, Read{1, {2, 3, 4, 5}}}) {
    Bytes buffer(4);
    std::size_t got = 9;
    EXPECT_TRUE(file.seek(c.at));
    EXPECT_TRUE(file.read(buffer.data(), buffer.size(), got));
    EXPECT_EQ(firstOf(buffer, got), c.expected);
  }
  EXPECT_FALSE(file.write("x", 1)) << "opened for reading only";
}

TEST_F(ToolkitFile, OnlyARegularFileHasAStatus) {
  const std::string name = (dir_ / "file").string();
  writeBytes(name, {1, 2, 3});
  std::uint64_t size = 99;
  EXPECT_TRUE(DcFile::status(name.c_str(), size));
  EXPECT_EQ(size, 3U);
  EXPECT_FALSE(DcFile::status(dir_.path().string().c_str(), size));
  EXPECT_FALSE(DcFile::status((name + "2").c_str(), size));
  EXPECT_FALSE(DcFile().isOpen());
  DcFile file;
  EXPECT_FALSE(file.open((name + "2").c_str(), DcFile::Mode::Read));
  EXPECT_FALSE(file.isOpen());
}

}  // namespace
}  // namespace quillon::test
