// Real files: what was read is encoded in every syntax, read again, and has to be the same.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "dicom/elem_list.h"
#include "dicom/elem_sq.h"
#include "dicom/read_file.h"
#include "parse_test_tools.h"
#include "support/temp_dir.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> sampleFiles() {
  std::vector<fs::path> files;
  const fs::path samples = pydicomData();
  if (samples.empty()) return files;
  for (const char* folder : {"test_files", "charset_files"}) {
    for (const auto& entry : fs::recursive_directory_iterator(samples / folder)) {
      if (entry.is_regular_file()) files.push_back(entry.path());
    }
  }
  std::ranges::sort(files);
  return files;
}

Bytes encoded(DcElemList& list, DcUid transferSyntax, DcCode& code) {
  Bytes bytes(static_cast<std::size_t>(list.encodedLengthEstimate() + 1));
  std::uint32_t length = 0;
  code = list.frame(bytes.data(), length, transferSyntax);
  EXPECT_LE(length, list.encodedLengthEstimate());
  bytes.resize(length);
  return bytes;
}

bool isCompressed(DcUid syntax) {
  return syntax != DcUid::ImplicitLittleEndian && syntax != DcUid::ExplicitLittleEndian &&
         syntax != DcUid::ExplicitBigEndian;
}

// Where two lists of lines part, instead of hundreds of lines.
testing::AssertionResult areSame(const std::vector<std::string>& left,
                                 const std::vector<std::string>& right) {
  const auto [l, r] = std::ranges::mismatch(left, right);
  if (l == left.end() && r == right.end()) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "'" << (l == left.end() ? "" : *l) << "' is not '"
                                     << (r == right.end() ? "" : *r) << "'";
}

// The texts of values that the explicit form cannot hold are left out.
bool encodesWhole(DcElemList& list, DcUid syntax, Bytes& bytes) {
  DcCode code = kDcOk;
  bytes = encoded(list, syntax, code);
  return code == kDcOk;
}

TEST(RoundTrips, EveryRealFileComesBackFromEverySyntax) {
  const std::vector<fs::path> files = sampleFiles();
  if (files.empty()) GTEST_SKIP() << "python3-pydicom is not installed";
  const QuietLog quiet;
  dcSetValueChecking(false);
  int compared = 0;
  for (const fs::path& file : files) {
    SCOPED_TRACE(file.filename());
    DcFileMetaInfo meta;
    DcElemList original;
    if (dirReadFile(file.string().c_str(), meta, original) != kDcOk) continue;
    if (isCompressed(meta.transferSyntax)) {
      Bytes bytes;
      if (!encodesWhole(original, meta.transferSyntax, bytes)) continue;
      DcCode code = kDcOk;
      EXPECT_TRUE(areSame(parsed(bytes, meta.transferSyntax, code), describe(original)));
      EXPECT_EQ(code, kDcOk);
      ++compared;
      continue;
    }
    // The implicit form is the same for equal data sets whatever VRs they were read with.
    Bytes canonical;
    ASSERT_TRUE(encodesWhole(original, DcUid::ImplicitLittleEndian, canonical));
    for (const Syntax syntax : kSyntaxes) {
      SCOPED_TRACE(nameOf(syntax));
      Bytes bytes;
      if (!encodesWhole(original, uidOf(syntax), bytes)) continue;
      DcElemList again;
      ASSERT_EQ(again.parse(bytes.data(), static_cast<std::uint32_t>(bytes.size()), uidOf(syntax)),
                kDcOk);
      // Only the explicit forms carry the VRs. Group lengths are those of the form just encoded.
      if (syntax != Syntax::ImplicitLittle && meta.transferSyntax != DcUid::ImplicitLittleEndian) {
        EXPECT_TRUE(areSame(describe(again), describe(original)));
      }
      Bytes canonicalAgain;
      ASSERT_TRUE(encodesWhole(again, DcUid::ImplicitLittleEndian, canonicalAgain));
      EXPECT_TRUE(canonicalAgain == canonical);
      ++compared;
    }
  }
  dcSetValueChecking(true);
  EXPECT_GT(compared, 100);
}

TEST(RoundTrips, WhatStandsBehindAnUnknownVrIsRead) {
  const fs::path samples = pydicomData();
  if (samples.empty()) GTEST_SKIP() << "python3-pydicom is not installed";
  DcFileMetaInfo meta;
  DcElemList list;
  const std::string file = (samples / "test_files" / "UN_sequence.dcm").string();
  ASSERT_EQ(dirReadFile(file.c_str(), meta, list), kDcOk);
  ASSERT_GT(list.size(), 0U);
  const DcElem* unknown = nullptr;
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (list.at(i)->vr() == DcVr::UN && !list.at(i)->segments().empty()) unknown = list.at(i);
  }
  ASSERT_NE(unknown, nullptr);
  const DcElemValueBuf& value = unknown->segments()[0];
  ASSERT_GE(value.lengthBytes(), 4U);
  EXPECT_EQ(Bytes(value.data(), value.data() + 4), (Bytes{0xFE, 0xFF, 0x00, 0xE0}));
}

}  // namespace
}  // namespace quillon::test
