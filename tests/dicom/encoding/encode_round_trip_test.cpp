// Real files: what was read is encoded in every syntax, read again, and has to be the same.
#include <algorithm>
#include <filesystem>

#include "dicom/read_file.h"
#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;
using RoundTrips = ToolkitTest;

std::vector<fs::path> sampleFiles() {
  std::vector<fs::path> files;
  if (pydicomData().empty()) return files;
  for (const char* folder : {"test_files", "charset_files"}) {
    for (const auto& entry : fs::recursive_directory_iterator(pydicomData() / folder)) {
      if (entry.is_regular_file()) files.push_back(entry.path());
    }
  }
  std::ranges::sort(files);
  return files;
}

// False for texts that the explicit form cannot hold.
bool encodesWhole(DcElemList& list, DcUid syntax, Bytes& bytes) {
  bytes.assign(static_cast<std::size_t>(list.encodedLengthEstimate() + 1), 0);
  std::uint32_t length = 0;
  const DcCode code = list.frame(bytes.data(), length, syntax);
  EXPECT_LE(length, list.encodedLengthEstimate());
  bytes.resize(length);
  return code == kDcOk;
}

TEST_F(RoundTrips, EveryRealFileComesBackFromEverySyntax) {
  const std::vector<fs::path> files = sampleFiles();
  if (files.empty()) GTEST_SKIP() << "python3-pydicom is not installed";
  const QuietLog quiet;
  static_cast<void>(dcSetValueChecking(false));
  int compared = 0;
  for (const fs::path& file : files) {
    SCOPED_TRACE(file.filename());
    DcFileMetaInfo meta;
    DcElemList original;
    if (dirReadFile(file.string().c_str(), meta, original) != kDcOk) continue;
    const bool isCompressed = std::ranges::none_of(
        kSyntaxes, [&](const NamedSyntax& s) { return s.id == meta.transferSyntax; });
    if (isCompressed) {
      Bytes bytes;
      if (!encodesWhole(original, meta.transferSyntax, bytes)) continue;
      EXPECT_EQ(parsed(bytes, meta.transferSyntax), describe(original));
      ++compared;
      continue;
    }
    // The implicit form is the same for equal data sets whatever VRs they were read with.
    Bytes canonical;
    ASSERT_TRUE(encodesWhole(original, kImplicit, canonical));
    for (const NamedSyntax& s : kSyntaxes) {
      SCOPED_TRACE(s.name);
      Bytes bytes;
      if (!encodesWhole(original, s.id, bytes)) continue;
      DcElemList again;
      ASSERT_EQ(parseInto(again, bytes, s.id), kDcOk);
      // Only the explicit forms carry the VRs. Group lengths are those of the form just encoded.
      if (s.id != kImplicit && meta.transferSyntax != kImplicit) {
        EXPECT_EQ(describe(again), describe(original));
      }
      Bytes canonicalAgain;
      ASSERT_TRUE(encodesWhole(again, kImplicit, canonicalAgain));
      EXPECT_TRUE(canonicalAgain == canonical);
      ++compared;
    }
  }
  EXPECT_GT(compared, 100);
}

}  // namespace
}  // namespace quillon::test
