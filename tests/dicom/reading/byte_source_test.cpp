// Files whose bytes lie elsewhere.
#include "dicom/byte_source.h"

#include <cstring>

#include "dicom/read_file.h"
#include "support/object_maker.h"
#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

class Source final : public DcByteSource {
 public:
  explicit Source(Bytes bytes) : bytes_(std::move(bytes)) {}
  int readsUntilFailure = 1000;
  std::uint64_t readBytes = 0;

  [[nodiscard]] std::uint64_t sizeBytes() const override { return bytes_.size(); }
  bool readAt(std::uint64_t offset, void* buffer, std::size_t lengthBytes) override {
    if (--readsUntilFailure < 0) return false;
    // What is asked for lies within the file.
    EXPECT_LE(offset, bytes_.size());
    EXPECT_LE(lengthBytes, bytes_.size() - offset);
    std::memcpy(buffer, bytes_.data() + offset, lengthBytes);
    readBytes += lengthBytes;
    return true;
  }

 private:
  Bytes bytes_;
};

using ByteSources = ToolkitTest;

TEST_F(ByteSources, AreReadAsAFileOfTheSameBytesIs) {
  ObjectDescription large;
  large.rows = large.columns = 1000;
  ObjectDescription longHeader;
  longHeader.extraElements = 5000;
  Bytes cut = makeObject({});
  cut.resize(cut.size() - 1);
  struct Row {
    const char* what;
    Bytes bytes;
  };
  const Row rows[] = {{"small", makeObject({})},
                      {"large", makeObject(large)},
                      {"long header", makeObject(longHeader)},
                      {"cut", cut},
                      {"empty", {}},
                      {"no DICOM", Bytes(300, 'x')}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    writeBytes(dir_ / "file", row.bytes);
    DcFileMetaInfo metas[2];
    DcElemList lists[2];
    std::uint64_t offsets[2] = {};
    std::uint32_t lengths[2] = {};
    DcFileReading readings[2];
    const DcCode code = dirReadFile((dir_ / "file").string().c_str(), metas[0], lists[0],
                                    &offsets[0], &lengths[0], &readings[0]);
    Source source(row.bytes);
    EXPECT_EQ(
        dirReadFile(source, "name", metas[1], lists[1], &offsets[1], &lengths[1], &readings[1]),
        code);
    EXPECT_EQ(lists[1].size(), lists[0].size());
    EXPECT_EQ(metas[1].sopInstanceUid, metas[0].sopInstanceUid);
    EXPECT_EQ(offsets[1], offsets[0]);
    EXPECT_EQ(lengths[1], lengths[0]);
    EXPECT_EQ(readings[1].hasMagic, readings[0].hasMagic);
    EXPECT_EQ(readings[1].isPixelDataCut, readings[0].isPixelDataCut);
    EXPECT_EQ(readings[1].file.sizeBytes, row.bytes.size());
    EXPECT_LE(source.readBytes, 400'000U);  // what stands before the pixel data
  }
}

TEST_F(ByteSources, ThatFailMakeTheReadingFailAndTheLogName) {
  ObjectDescription longHeader;
  longHeader.extraElements = 5000;
  for (int reads = 0; reads < 3; ++reads) {
    SCOPED_TRACE(reads);
    Source source(makeObject(longHeader));
    source.readsUntilFailure = reads;
    DcFileMetaInfo meta;
    DcElemList list;
    EXPECT_EQ(dirReadFile(source, "in an archive", meta, list, nullptr, nullptr), kDcReadFailed);
    EXPECT_NE(logged(), "");
  }
}

}  // namespace
}  // namespace quillon::test
