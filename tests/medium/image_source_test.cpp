// Images that are made to harm: a walk over one ends, leads nowhere else, and reads nothing that is
// not in the image. What is read of good ones, media_of_others_test.py looks at.
#include <gtest/gtest.h>

#include <fstream>
#include <set>

#include "image_fixture.h"
#include "image_patches.h"
#include "image_source.h"
#include "platform/services.h"

namespace quillon::test {
namespace {

using Kind = MediumEntry::Kind;

std::string utf8(TextView text) { return NarrowText(text, FileSystemCodePage()); }

class ImageSourceTest : public ImageTest {
 protected:
  ImageSourceTest() {
    makeFile("tree/DICOMDIR", "the directory");
    makeFile("tree/OBJECTS/ONE", "first");
    makeFile("tree/OBJECTS/TWO", std::string(5000, '2'));
    makeFile("tree/OBJECTS/DEEPER/THREE", "third");
    makeDirectory("tree/VOID");
    setTime("tree", 1'600'000'000);
  }

  // Of the file systems of the mask.
  std::string made(LONG systems) {
    renew();
    EXPECT_EQ(image_->put_FileSystemsToCreate(static_cast<FsiFileSystems>(systems)), S_OK);
    EXPECT_EQ(addTree("tree"), S_OK);
    ComPtr<IStream> stream;
    EXPECT_EQ(create(stream), S_OK);
    std::string bytes;
    EXPECT_EQ(readAll(*stream.Get(), bytes), S_OK);
    return bytes;
  }

  [[nodiscard]] std::unique_ptr<MediumSource> open(const std::string& bytes) {
    writeText(dir_ / "image.iso", bytes);
    errors_.ClearError();
    return OpenImage(wide("image.iso"), errors_);
  }

  // Lists all and reads all; answers the sentence of the list, empty when it is sound.
  static std::string look(MediumSource& source, std::set<std::string>& paths) {
    std::vector<MediumEntry> entries;
    const bool isSound = source.List(entries);
    EXPECT_EQ(isSound, source.ErrorMessage().empty());
    const std::string sentence = isSound ? "" : utf8(source.ErrorMessage());
    for (const MediumEntry& entry : entries) {
      const std::string path = utf8(entry.path);
      EXPECT_TRUE(paths.insert(path).second) << path;
      EXPECT_EQ(path.find("..\\"), std::string::npos) << path;
      EXPECT_EQ(path.find('/'), std::string::npos) << path;
      if (entry.kind != Kind::File) continue;
      const std::unique_ptr<MediumFile> file = source.Open(entry.path);
      if (!file) continue;
      EXPECT_EQ(file->SizeBytes(), entry.sizeBytes);
      char piece[4096];
      const auto most =
          static_cast<std::size_t>(std::min<std::uint64_t>(sizeof piece, file->SizeBytes()));
      EXPECT_TRUE(file->ReadAt(0, piece, most));
      EXPECT_TRUE(file->ReadAt(file->SizeBytes() - most, piece, most));
      EXPECT_FALSE(file->ReadAt(file->SizeBytes(), piece, 1));
      EXPECT_FALSE(file->ReadAt(UINT64_MAX, piece, 2));
    }
    return sentence;
  }

  CBaseItem errors_;
};

// Where the record of a directory's entry begins, by the name in it.
std::size_t recordOf(const std::string& image, std::string_view name) {
  const std::size_t at =
      image.find(std::string(1, static_cast<char>(name.size())) + std::string(name));
  return at == std::string::npos ? at : at - 32;
}

// The tag of the identifier with that name, which stands behind the byte for its width.
std::size_t identifierOf(const std::string& image, std::string_view name) {
  const std::size_t at = image.find("\x08" + std::string(name));
  return at == std::string::npos ? at : at - 38;
}

TEST_F(ImageSourceTest, EveryByteOfTheDescriptorsAndDirectoriesMayBeWrong) {
  for (const LONG systems : {3, 4}) {
    std::string bytes = made(systems);
    const std::filesystem::path path = dir_ / "image.iso";
    writeText(path, bytes);
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    const auto put = [&](std::size_t sector) {
      file.seekp(static_cast<std::streamoff>(sector * kSectorBytes));
      file.write(&bytes[sector * kSectorBytes], kSectorBytes);
      file.flush();
    };
    std::size_t tried = 0;
    for (std::size_t at = 16 * kSectorBytes; at < bytes.size(); ++at) {
      // Of long rows of zeros the last ones will do.
      const std::size_t next = bytes.find_first_not_of('\0', at);
      if (next == std::string::npos) break;
      at = std::max(at, next - 3);
      const std::size_t sector = at / kSectorBytes;
      const std::string before = bytes.substr(sector * kSectorBytes, kSectorBytes);
      // A small change and a large one, in turns.
      const unsigned value = byteAt(bytes, at) ^ (at % 3 == 0 ? 1U : 0xFFU);
      bytes[at] = static_cast<char>(value);
      // Only so do the readers of UDF believe what has changed.
      if ((systems & 4) != 0 && at % kSectorBytes >= 16) mendTag(bytes, sector * kSectorBytes);
      put(sector);
      errors_.ClearError();
      const std::unique_ptr<MediumSource> source = OpenImage(wide("image.iso"), errors_);
      ASSERT_NE(source == nullptr, errors_.ErrorMessage().empty());
      std::set<std::string> paths;
      if (source) static_cast<void>(look(*source, paths));
      ASSERT_LE(paths.size(), 100U) << at;
      if (HasFailure()) FAIL() << "systems " << systems << ", byte " << at << ": " << value;
      bytes.replace(sector * kSectorBytes, kSectorBytes, before);
      put(sector);
      ++tried;
    }
    EXPECT_GT(tried, 1000U);
  }
}

TEST_F(ImageSourceTest, AnImageThatIsCutAnywhereIsRefusedOrTold) {
  const std::string bytes = made(7);
  std::set<std::string> all;
  const auto whole = open(bytes);
  ASSERT_TRUE(whole);
  EXPECT_EQ(look(*whole, all), "");
  for (std::size_t sectors = 0; sectors * kSectorBytes < bytes.size(); ++sectors) {
    const auto source = open(bytes.substr(0, sectors * kSectorBytes + 1000));
    ASSERT_NE(source == nullptr, errors_.ErrorMessage().empty()) << sectors;
    std::set<std::string> paths;
    if (source) static_cast<void>(look(*source, paths));
  }
}

struct Harm {
  const char* what;
  LONG systems;
  void (*change)(std::string& image);
  const char* sentence;
};

TEST_F(ImageSourceTest, HarmIsToldAndNotFollowed) {
  const Harm harms[] = {
      {"a directory that is the one above it", 1,
       [](std::string& image) {
         const std::size_t root = 16 * kSectorBytes + 156;
         image.replace(recordOf(image, "DEEPER") + 2, 16, image, root + 2, 16);
       },
       "The directory OBJECTS\\DEEPER of the medium stands there twice, or leads back to one above "
       "it."},
      {"the same in UDF", 4,
       [](std::string& image) {
         const std::size_t deeper = identifierOf(image, "DEEPER");
         image.replace(deeper + 20, 16, image, identifierOf(image, "OBJECTS") + 20, 16);
         mendTag(image, deeper);
       },
       "The directory OBJECTS\\DEEPER of the medium stands there twice, or leads back to one above "
       "it."},
      {"a name with a separator", 1,
       [](std::string& image) { image[recordOf(image, "ONE.;1") + 34] = '/'; },
       "The medium holds a name that leads elsewhere or is too long: OBJECTS\\O/E."},
      {"a name that leads up, in UDF", 4,
       [](std::string& image) {
         const std::size_t one = identifierOf(image, "ONE");
         image.replace(one + 39, 2, "..");
         image[one + 19] = 3;
         mendTag(image, one);
       },
       "The medium holds a name that leads elsewhere or is too long: OBJECTS\\..."},
      {"a name that stands there twice", 1,
       [](std::string& image) { image.replace(recordOf(image, "TWO.;1") + 33, 3, "ONE"); },
       "The medium holds the name OBJECTS\\ONE twice."},
      {"a record without a length of its own", 1,
       [](std::string& image) { image[recordOf(image, "ONE.;1")] = 5; },
       "The directory OBJECTS of the medium is damaged."},
      {"a directory behind the end of the image", 1,
       [](std::string& image) { putLittle(image, recordOf(image, "DEEPER") + 2, 0xFFFFFFF0, 4); },
       "The directory OBJECTS\\DEEPER of the medium is damaged."},
      {"a directory larger than the image", 1,
       [](std::string& image) { putLittle(image, recordOf(image, "DEEPER") + 10, 0xFFFFF800, 4); },
       "The directory OBJECTS\\DEEPER of the medium is damaged."},
  };
  for (const Harm& harm : harms) {
    SCOPED_TRACE(harm.what);
    std::string bytes = made(harm.systems);
    harm.change(bytes);
    const auto source = open(bytes);
    ASSERT_TRUE(source);
    std::set<std::string> paths;
    EXPECT_EQ(look(*source, paths), harm.sentence);
    EXPECT_TRUE(paths.contains("DICOMDIR"));
  }
}

// The bytes of an image of which one sector cannot be read.
class Scratched final : public MediumFile {
 public:
  Scratched(const std::string& bytes, std::size_t sector) : bytes_(bytes), sector_(sector) {}
  [[nodiscard]] std::uint64_t SizeBytes() const override { return bytes_.size(); }
  [[nodiscard]] bool ReadAt(std::uint64_t offset, void* bytes, std::size_t count) override {
    const std::uint64_t scratch = sector_ * kSectorBytes;
    if (offset < scratch + kSectorBytes && offset + count > scratch) return false;
    EXPECT_LE(offset + count, bytes_.size());
    bytes_.copy(static_cast<char*>(bytes), count, static_cast<std::size_t>(offset));
    return true;
  }

 private:
  const std::string& bytes_;
  std::size_t sector_;
};

// Small files share the blocks that directories are read in.
TEST_F(ImageSourceTest, ASectorThatCannotBeReadCostsWhatLiesInIt) {
  for (const LONG systems : {3, 4}) {
    const std::string bytes = made(systems);
    const std::size_t sector = bytes.find("first") / kSectorBytes;
    ASSERT_GT(sector, 16U);
    errors_.ClearError();
    const auto source =
        OpenImage(std::make_unique<Scratched>(bytes, sector), wide("of a disc"), errors_);
    ASSERT_NE(source, nullptr) << utf8(errors_.ErrorMessage());
    std::vector<MediumEntry> entries;
    EXPECT_TRUE(source->List(entries));
    std::size_t files = 0;
    for (const MediumEntry& entry : entries) {
      if (entry.kind != Kind::File) continue;
      ++files;
      const auto file = source->Open(entry.path);
      ASSERT_NE(file, nullptr);
      std::string content(static_cast<std::size_t>(entry.sizeBytes), '\0');
      EXPECT_EQ(file->ReadAt(0, content.data(), content.size()), utf8(entry.path) != "OBJECTS\\ONE")
          << utf8(entry.path);
    }
    EXPECT_EQ(files, 4U);
  }
}

TEST_F(ImageSourceTest, AFileThatLiesOutsideIsToldWhenItIsOpened) {
  std::string bytes = made(1);
  putLittle(bytes, recordOf(bytes, "ONE.;1") + 10, 0xFFFFFFFF, 4);
  const auto source = open(bytes);
  ASSERT_TRUE(source);
  EXPECT_FALSE(source->Open(OLESTR("OBJECTS\\ONE")));
  EXPECT_EQ(utf8(source->ErrorMessage()), "The file OBJECTS\\ONE of the medium is not whole.");
  EXPECT_TRUE(source->Open(OLESTR("OBJECTS\\TWO")));
  for (const OLECHAR* other : {OLESTR("OBJECTS"), OLESTR("OBJECTS\\NONE"), OLESTR("")}) {
    EXPECT_FALSE(source->Open(other));
  }
}

// What a reader of one file system cannot read, it may find in the next.
TEST_F(ImageSourceTest, AFileSystemThatCannotBeReadLeavesItToTheNext) {
  makeFile("tree/small letters", "x");
  std::string bytes = made(7);
  const auto hasSmallLetters = [&] {
    const auto source = open(bytes);
    std::set<std::string> paths;
    if (source) static_cast<void>(look(*source, paths));
    return paths.contains("small letters") ? 1 : paths.empty() ? 0 : 2;
  };
  EXPECT_EQ(hasSmallLetters(), 1);
  for (std::size_t sector : {std::size_t{256}, bytes.size() / kSectorBytes - 1}) {
    bytes[sector * kSectorBytes] = 0;  // the anchors of UDF
  }
  EXPECT_EQ(hasSmallLetters(), 1);
  bytes[17 * kSectorBytes + 88] = 0;  // the escape sequence of Joliet
  EXPECT_EQ(hasSmallLetters(), 2);
  bytes[16 * kSectorBytes] = 9;
  EXPECT_EQ(hasSmallLetters(), 0);
}

}  // namespace
}  // namespace quillon::test
