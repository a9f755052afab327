// The stream of an image: bytes, order, positions, and sources that are not what they were.
#include "image_fixture.h"

namespace quillon::test {
namespace {

LARGE_INTEGER at(LONGLONG position) {
  LARGE_INTEGER value{};
  value.QuadPart = position;
  return value;
}

class ImageStreamTest : public ImageTest {
 protected:
  // Directories that start before and after the files beside them, two sizes around a sector.
  void makeSet() {
    makeFile("tree/DICOMDIR", "directory of the set");
    makeFile("tree/AUTORUN.INF", "first by name");
    makeFile("tree/OBJ/P1/S1/00000001", std::string(2'048, 'a'));
    makeFile("tree/OBJ/P1/S1/00000002", std::string(2'049, 'b'));
    makeFile("tree/OBJ/P1/S2/00000003", std::string(1, 'c'));
    makeFile("tree/OBJ/P2/S1/00000004", std::string(5'000, 'd'));
    makeFile("tree/ZERO", "");
    makeDirectory("tree/EMPTY");
    for (const char* name : {"tree/OBJ/P1/S1", "tree/OBJ/P1/S2", "tree/OBJ/P1", "tree/OBJ/P2/S1",
                             "tree/OBJ/P2", "tree/OBJ", "tree/EMPTY", "tree"}) {
      setTime(name, 1'600'000'000);
    }
  }
};

TEST_F(ImageStreamTest, DataLiesInTheOrderOfReadingBehindAllDirectories) {
  makeSet();
  ASSERT_EQ(addTree("tree"), S_OK);
  ComPtr<IStream> stream;
  ASSERT_EQ(create(stream), S_OK);
  std::string bytes;
  ASSERT_EQ(readAll(*stream.Get(), bytes), S_OK);
  std::size_t before = 0;
  for (const std::string& content :
       {std::string("directory of the set"), std::string("first by name"), std::string(2'048, 'a'),
        std::string(2'049, 'b'), std::string(1, 'c') + '\0', std::string(5'000, 'd')}) {
    SCOPED_TRACE(content.substr(0, 20));
    std::size_t found = bytes.find(content, before);
    while (found != std::string::npos && found % 2'048 != 0) found = bytes.find(content, found + 1);
    ASSERT_NE(found, std::string::npos);
    EXPECT_EQ(bytes.find(content, found + 1), std::string::npos) << "the data is there once";
    before = found + content.size();
  }
  EXPECT_EQ(bytes.rfind("CD001", bytes.find("directory of the set")), 18U * 2'048 + 1)
      << "three descriptors of ISO 9660, all in front";
}

TEST_F(ImageStreamTest, EveryPositionAndPieceGivesTheSameBytes) {
  makeSet();
  ASSERT_EQ(addTree("tree"), S_OK);
  ComPtr<IStream> stream;
  ASSERT_EQ(create(stream), S_OK);
  STATSTG stat{};
  ASSERT_EQ(stream->Stat(&stat, STATFLAG_NONAME), S_OK);
  std::string whole;
  ASSERT_EQ(readAll(*stream.Get(), whole), S_OK);
  ASSERT_EQ(whole.size(), stat.cbSize.QuadPart);
  ASSERT_EQ(whole.size() % (16 * 2'048), 0U);

  ASSERT_EQ(stream->Seek(at(0), STREAM_SEEK_SET, nullptr), S_OK);
  std::string odd;
  ASSERT_EQ(readAll(*stream.Get(), odd, 3'001), S_OK);
  EXPECT_TRUE(odd == whole);

  for (std::size_t end = whole.size(), step = 0; end > 0; end -= std::min<std::size_t>(end, step)) {
    step = 1'777;
    const std::size_t start = end - std::min<std::size_t>(end, step);
    char piece[1'777];
    ULONG got = 0;
    ASSERT_EQ(stream->Seek(at(static_cast<LONGLONG>(start) - static_cast<LONGLONG>(whole.size())),
                           STREAM_SEEK_END, nullptr),
              S_OK);
    ASSERT_EQ(stream->Read(piece, static_cast<ULONG>(end - start), &got), S_OK);
    ASSERT_TRUE(whole.compare(start, got, piece, got) == 0) << start;
  }
  EXPECT_EQ(stream->Seek(at(-1), STREAM_SEEK_SET, nullptr), STG_E_INVALIDFUNCTION);
  ULONG got = 1;
  ASSERT_EQ(stream->Seek(at(5), STREAM_SEEK_END, nullptr), S_OK);
  EXPECT_EQ(stream->Read(odd.data(), 10, &got), S_OK);
  EXPECT_EQ(got, 0U);
}

TEST_F(ImageStreamTest, TheSameTreeAndClockGiveTheSameBytes) {
  makeSet();
  std::string images[3];
  for (int i = 0; i < 3; ++i) {
    // The times of the last reading differ between the runs, and count for nothing.
    if (i == 2) setTime("tree/OBJ/P1", 1'600'000'001);
    renew();
    ASSERT_EQ(addTree("tree"), S_OK);
    ComPtr<IStream> stream;
    ASSERT_EQ(create(stream), S_OK);
    ASSERT_EQ(readAll(*stream.Get(), images[i]), S_OK);
  }
  EXPECT_TRUE(images[0] == images[1]);
  EXPECT_FALSE(images[1] == images[2]);
}

TEST_F(ImageStreamTest, ASourceThatIsNotWhatItWasFailsTheReading) {
  const struct {
    const char* what;
    std::function<void(const std::filesystem::path&)> change;
    HRESULT expected;
  } cases[] = {
      {"longer", [](auto& file) { writeText(file, "ten bytes and more"); }, fsi(0x28)},
      {"shorter", [](auto& file) { std::filesystem::resize_file(file, 9); }, fsi(0x28)},
      {"other bytes of the same length", [](auto& file) { writeText(file, "TEN BYTES!"); },
       fsi(0x28)},
      {"gone", [](auto& file) { std::filesystem::remove(file); }, fsi(0x29)},
      {"a directory now",
       [](auto& file) {
         std::filesystem::remove(file);
         std::filesystem::create_directory(file);
       },
       fsi(0x28)},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    std::filesystem::remove_all(dir_ / "tree");
    makeFile("tree/A", "ten bytes.");
    makeFile("tree/B", std::string(3'000, 'b'));
    renew();
    ASSERT_EQ(addTree("tree"), S_OK);
    ComPtr<IStream> stream;
    ASSERT_EQ(create(stream), S_OK);
    c.change(dir_ / "tree/A");
    std::string bytes;
    EXPECT_EQ(readAll(*stream.Get(), bytes), c.expected);
    ComPtr<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, info.Put()), S_OK);
    BSTR description = nullptr;
    info->GetDescription(&description);
    EXPECT_NE(std::u16string_view(description).find(wide("tree/A")), std::u16string_view::npos);
    SysFreeString(description);
    // What lies elsewhere can still be read.
    ULONG got = 0;
    char last[2'048];
    ASSERT_EQ(stream->Seek(at(-2'048), STREAM_SEEK_END, nullptr), S_OK);
    EXPECT_EQ(stream->Read(last, sizeof(last), &got), S_OK);
    EXPECT_EQ(got, sizeof(last));
  }
}

TEST_F(ImageStreamTest, AFileThatIsWrittenWhileItIsReadFailsTheReading) {
  makeFile("tree/A", std::string(1'000'000, 'a'));
  ASSERT_EQ(addTree("tree"), S_OK);
  ComPtr<IStream> stream;
  ASSERT_EQ(create(stream), S_OK);
  std::string piece(900'000, '\0');
  ULONG got = 0;
  ASSERT_EQ(stream->Read(piece.data(), static_cast<ULONG>(piece.size()), &got), S_OK);
  ASSERT_EQ(piece.substr(800'000), std::string(100'000, 'a')) << "in the middle of the file";
  writeText(dir_ / "tree/A", std::string(1'000'000, 'A'));
  std::string rest;
  EXPECT_EQ(readAll(*stream.Get(), rest), fsi(0x28));
}

TEST_F(ImageStreamTest, FilesAreOpenOnlyWhileTheirDataIsRead) {
  makeFile("tree/A", std::string(100'000, 'a'));
  makeFile("tree/B", std::string(100'000, 'b'));
  ASSERT_EQ(addTree("tree"), S_OK);
  ComPtr<IStream> stream;
  ASSERT_EQ(create(stream), S_OK);
  const auto openFiles = [this] {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
      std::error_code ignored;
      const auto target = std::filesystem::read_symlink(entry, ignored);
      if (target.parent_path() == dir_ / "tree") names.push_back(target.filename());
    }
    return names;
  };
  std::vector<std::vector<std::string>> seen;
  std::string piece(20'000, '\0');
  for (ULONG got = 1; got > 0;) {
    if (seen.empty() || seen.back() != openFiles()) seen.push_back(openFiles());
    ASSERT_EQ(stream->Read(piece.data(), static_cast<ULONG>(piece.size()), &got), S_OK);
  }
  EXPECT_EQ(seen, (std::vector<std::vector<std::string>>{{}, {"A"}, {"B"}, {}}));
}

}  // namespace
}  // namespace quillon::test
