// Objects far larger than their headers: what is read of them, and what is not.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "builder_job.h"

namespace quillon::test {
namespace {

constexpr std::uint32_t kPixelBytes = 300U << 20;

// Everything that this process has asked the kernel to read so far, cached or not; -1 where the
// kernel does not count it.
std::int64_t bytesReadSoFar() {
  std::ifstream counters("/proc/self/io");
  std::string name;
  std::int64_t value = 0;
  while (counters >> name >> value) {
    if (name == "rchar:") return value;
  }
  return -1;
}

// A CT object up to its pixel data, then a hole of 300 MB for that.
void makeLargeObject(const fs::path& file, bool encapsulated) {
  ObjectDescription description;
  description.instance = encapsulated ? 2 : 1;
  Bytes bytes = makeObject(description);
  const Bytes pixelData = {0xE0, 0x7F, 0x10, 0x00, 'O', 'W', 0, 0};
  const auto at = std::search(bytes.begin(), bytes.end(), pixelData.begin(), pixelData.end());
  ASSERT_NE(at, bytes.end());
  bytes.erase(at, bytes.end());
  DataSetBytes rest;
  if (encapsulated) {
    // An empty offset table and one fragment, which the end of the file ends.
    rest.header(0x7FE00010, "OB", 0xFFFFFFFF).header(0xFFFEE000, "", 0);
    rest.header(0xFFFEE000, "", kPixelBytes);
  } else {
    rest.header(0x7FE00010, "OW", kPixelBytes);
  }
  bytes.insert(bytes.end(), rest.bytes().begin(), rest.bytes().end());
  writeBytes(file, bytes);
  fs::resize_file(file, fs::file_size(file) + kPixelBytes);
}

TEST(LargeObjects, AreIndexedWithoutReadingTheirPixelData) {
  if (bytesReadSoFar() < 0) GTEST_SKIP() << "this kernel does not count what is read";
  for (const bool encapsulated : {false, true}) {
    SCOPED_TRACE(encapsulated ? "encapsulated" : "native");
    BuilderJob job;
    const fs::path file = job.in / "large";
    ASSERT_NO_FATAL_FAILURE(makeLargeObject(file, encapsulated));
    const std::int64_t before = bytesReadSoFar();
    EXPECT_TRUE(job.builder.AddFile(WideOf(file))) << job.sentence();
    EXPECT_TRUE(job.create()) << job.sentence();
    EXPECT_LT(bytesReadSoFar() - before, 1 << 20);
    EXPECT_EQ(filesBelow(job.root).size(), 3U);  // the object, DICOMDIR and the label
    EXPECT_FALSE(fs::exists(file));
  }
}

}  // namespace
}  // namespace quillon::test
