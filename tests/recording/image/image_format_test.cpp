// The bytes that readers rarely look at: what is there twice agrees, checksums and places are
// right.
#include <map>

#include "image_fixture.h"

namespace quillon::test {
namespace {

constexpr std::size_t kSector = 2'048;
constexpr std::size_t kPartition = 257;

class ImageFormatTest : public ImageTest {
 protected:
  // Directories whose records need several sectors, at several levels.
  void makeImage() {
    for (int number = 0; number < 120; ++number) {
      makeFile("tree/B/file number " + std::to_string(number) + ".text", "x");
      makeDirectory("tree/A/directory" + std::to_string(number) + "/C");
    }
    makeFile("tree/DICOMDIR", "first");
    ASSERT_EQ(addTree("tree"), S_OK);
    ComPtr<IStream> stream;
    ASSERT_EQ(create(stream), S_OK);
    ASSERT_EQ(readAll(*stream.Get(), bytes_), S_OK);
  }

  [[nodiscard]] unsigned byte(std::size_t at) const {
    return static_cast<unsigned char>(bytes_.at(at));
  }
  [[nodiscard]] unsigned little(std::size_t at, std::size_t count) const {
    unsigned value = 0;
    for (std::size_t i = count; i-- > 0;) value = value << 8 | byte(at + i);
    return value;
  }
  [[nodiscard]] unsigned big(std::size_t at, std::size_t count) const {
    unsigned value = 0;
    for (std::size_t i = 0; i < count; ++i) value = value << 8 | byte(at + i);
    return value;
  }

  struct Record {
    std::size_t sector;
    std::size_t length;
    bool isDirectory;
    std::string name;
  };
  // The records of an ISO 9660 directory; fails where the two byte orders differ.
  std::vector<Record> recordsAt(std::size_t sector, std::size_t length) {
    std::vector<Record> records;
    for (std::size_t at = sector * kSector; at < sector * kSector + length;) {
      if (byte(at) == 0) {
        at = (at / kSector + 1) * kSector;
        continue;
      }
      EXPECT_EQ(little(at + 2, 4), big(at + 6, 4));
      EXPECT_EQ(little(at + 10, 4), big(at + 14, 4));
      EXPECT_LE(at % kSector + byte(at), kSector) << "crosses the end of a sector";
      records.push_back({little(at + 2, 4), little(at + 10, 4), (byte(at + 25) & 2) != 0,
                         bytes_.substr(at + 33, byte(at + 32))});
      at += byte(at);
    }
    return records;
  }

  std::string bytes_;
};

TEST_F(ImageFormatTest, PathTablesAndRecordsOfIsoAndJolietAgree) {
  makeImage();
  for (const std::size_t descriptor : {16 * kSector, 17 * kSector}) {
    SCOPED_TRACE(descriptor / kSector);
    EXPECT_EQ(little(descriptor + 80, 4) * kSector, bytes_.size());
    const std::size_t end = little(descriptor + 132, 4);
    std::size_t l = little(descriptor + 140, 4) * kSector;
    std::size_t m = big(descriptor + 148, 4) * kSector;
    struct Directory {
      std::size_t sector;
      std::size_t parent;
      std::string name;
    };
    std::vector<Directory> table;
    for (const std::size_t start = l; l < start + end;) {
      const std::size_t length = byte(l);
      EXPECT_EQ(bytes_.substr(l, 2), bytes_.substr(m, 2));
      EXPECT_EQ(little(l + 2, 4), big(m + 2, 4));
      EXPECT_EQ(little(l + 6, 2), big(m + 6, 2));
      table.push_back({little(l + 2, 4), little(l + 6, 2), bytes_.substr(l + 8, length)});
      EXPECT_EQ(table.back().name, bytes_.substr(m + 8, length));
      l += 8 + length + length % 2;
      m += 8 + length + length % 2;
    }
    ASSERT_EQ(table.size(), 243U);
    EXPECT_EQ(table[0].sector, little(descriptor + 158, 4)) << "the root's record";
    std::size_t listed = 0;
    for (std::size_t number = 0; number < table.size(); ++number) {
      SCOPED_TRACE(number);
      const Directory& directory = table[number];
      if (number > 1) {
        EXPECT_LE(table[number - 1].parent, directory.parent);
        EXPECT_TRUE(table[number - 1].parent < directory.parent ||
                    table[number - 1].name < directory.name);
      }
      const std::size_t length = recordsAt(directory.sector, kSector)[0].length;
      const std::vector<Record> records = recordsAt(directory.sector, length);
      EXPECT_EQ(records[0].sector, directory.sector);
      EXPECT_EQ(records[1].sector, table[directory.parent - 1].sector);
      for (std::size_t i = 2; i < records.size(); ++i) {
        if (i > 2) {
          EXPECT_LT(records[i - 1].name, records[i].name);
        }
        if (!records[i].isDirectory) continue;
        ++listed;
        const auto found = std::find_if(table.begin(), table.end(), [&](const Directory& d) {
          return d.sector == records[i].sector;
        });
        ASSERT_NE(found, table.end());
        EXPECT_EQ(found->name, records[i].name);
        EXPECT_EQ(found->parent, number + 1);
      }
    }
    EXPECT_EQ(listed, 242U);
  }
}

TEST_F(ImageFormatTest, UdfDescriptorsCarryTheirChecksumsAndPlaces) {
  makeImage();
  const std::size_t last = bytes_.size() / kSector - 1;
  std::map<unsigned, int> found;
  std::size_t at = 32 * kSector;
  while (at + 512 <= bytes_.size()) {
    unsigned sum = 0;
    for (std::size_t i = 0; i < 16; ++i) sum += i == 4 ? 0 : byte(at + i);
    const unsigned tag = little(at, 2);
    const bool isTag = tag != 0 && tag <= 261 && little(at + 2, 2) == 2 &&
                       (sum & 0xFF) == byte(at + 4) && byte(at + 5) == 0;
    if (!isTag) {
      at += 4;
      continue;
    }
    SCOPED_TRACE(testing::Message() << "tag " << tag << " at " << at);
    const std::size_t covered = little(at + 10, 2);
    unsigned crc = 0;
    for (std::size_t i = 0; i < covered; ++i) {
      crc ^= byte(at + 16 + i) << 8;
      for (int bit = 0; bit < 8; ++bit) {
        crc = (crc & 0x8000) != 0 ? (crc << 1 ^ 0x1021) & 0xFFFF : crc << 1;
      }
    }
    EXPECT_EQ(crc, little(at + 8, 2));
    const std::size_t sector = at / kSector;
    const bool isInPartition = sector >= kPartition && sector < last;
    EXPECT_EQ(little(at + 12, 4), isInPartition ? sector - kPartition : sector);
    if (tag != 257) {
      EXPECT_EQ(at % kSector, 0U);
    }
    ++found[tag];
    at += (16 + covered + 3) / 4 * 4;
  }
  // 121 files and 243 directories; the volume's descriptors twice, two anchors, and an end to each
  // of the four sequences.
  const std::map<unsigned, int> expected = {{1, 2},   {2, 2},           {4, 2},    {5, 2},
                                            {6, 2},   {7, 2},           {8, 4},    {9, 1},
                                            {256, 1}, {257, 243 + 363}, {261, 364}};
  EXPECT_EQ(found, expected);
  for (std::size_t descriptor = 0; descriptor < 6; ++descriptor) {
    SCOPED_TRACE(descriptor);
    EXPECT_EQ(bytes_.substr((32 + descriptor) * kSector + 16, kSector - 16),
              bytes_.substr((48 + descriptor) * kSector + 16, kSector - 16));
  }
  EXPECT_EQ(bytes_.substr(256 * kSector + 16, kSector - 16),
            bytes_.substr(last * kSector + 16, kSector - 16));
}

}  // namespace
}  // namespace quillon::test
