// DICOMDIRs made by others, with dcmdump as the judge of what is in a file.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <set>

#include "dicom/dir_dicom_dir.h"
#include "dir_test_tools.h"

namespace quillon::test {
namespace {

std::vector<std::string> dumpedLines(const std::filesystem::path& file) {
  std::vector<std::string> lines;
  const std::string command = "dcmdump -q +L '" + file.string() + "'";
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return lines;
  std::array<char, 4096> line{};
  while (std::fgets(line.data(), line.size(), pipe) != nullptr) lines.emplace_back(line.data());
  return pclose(pipe) == 0 ? lines : std::vector<std::string>{"dcmdump failed"};
}

std::size_t recordCount(const DcDirRec& parent) {
  std::size_t count = parent.lowerCount();
  for (std::size_t i = 0; i < parent.lowerCount(); ++i) count += recordCount(*parent.lower(i));
  return count;
}

// Lines that hold a record's contents: keys and references, not offsets, lengths or comments.
std::multiset<std::string> contents(const std::vector<std::string>& lines) {
  std::multiset<std::string> kept;
  for (const std::string& line : lines) {
    const std::size_t tag = line.find('(');
    if (tag == std::string::npos || line[0] == '#') continue;
    bool isLayout = false;
    for (const char* prefix : {"(0004,1200)", "(0004,1202)", "(0004,1220)", "(0004,1400)",
                               "(0004,1420)", "(0002,", "(fffe,"}) {
      isLayout = isLayout || line.compare(tag, std::string(prefix).size(), prefix) == 0;
    }
    if (!isLayout) kept.insert(line.substr(tag, line.find(" # ") - tag));
  }
  return kept;
}

class ForeignDicomDirs : public ::testing::Test {
 protected:
  void SetUp() override {
    if (pydicomData().empty()) GTEST_SKIP() << "python3-pydicom's sample files are not installed";
    if (std::system("dcmdump --version >/dev/null 2>&1") != 0) {
      GTEST_SKIP() << "dcmdump is not installed";
    }
    directory_ = pydicomData() / "test_files/dicomdirtests";
    ASSERT_TRUE(std::filesystem::exists(directory_ / "DICOMDIR"));
  }

  LoggedLines log_;
  TempDir temp_;
  std::filesystem::path directory_;
};

TEST_F(ForeignDicomDirs, HaveTheRecordsThatDcmdumpCountsAndKeepTheirKeysWhenWrittenAgain) {
  for (const char* name :
       {"DICOMDIR", "DICOMDIR-reordered", "DICOMDIR-empty.dcm", "TINY_ALPHA/DICOMDIR"}) {
    SCOPED_TRACE(name);
    std::filesystem::copy_file(directory_ / name, temp_ / "DICOMDIR",
                               std::filesystem::copy_options::overwrite_existing);
    const std::vector<std::string> before = dumpedLines(temp_ / "DICOMDIR");
    std::size_t expected = 0;
    for (const std::string& line : before) {
      expected += line.find("(0004,1430)") != std::string::npos ? 1 : 0;
    }
    DcDirDicomDir dir(temp_.path().string().c_str());
    EXPECT_EQ(dir.initialCode(), kDcOk);
    EXPECT_EQ(recordCount(dir), expected);
    ASSERT_EQ(dir.write(), kDcOk);
    EXPECT_EQ(contents(dumpedLines(temp_ / "DICOMDIR")), contents(before));
  }
}

TEST_F(ForeignDicomDirs, BrokenOnesGiveWhatStandsBeforeTheFault) {
  const struct {
    const char* name;
    DcCode code;
    std::size_t records;
  } cases[] = {
      {"DICOMDIR-bigEnd", 0x5801, 0},
      {"DICOMDIR-implicit", 0x5801, 0},
      {"DICOMDIR-nopatient", 0x580A, 0},  // begins with an IMAGE record at the root
      // The last item of 52 declares 248 bytes, of which the file has 224.
      {"DICOMDIR-nooffset", 0x440A, 51},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    std::filesystem::copy_file(directory_ / c.name, temp_ / "DICOMDIR",
                               std::filesystem::copy_options::overwrite_existing);
    DcDirDicomDir dir(temp_.path().string().c_str());
    EXPECT_EQ(dir.initialCode(), c.code);
    EXPECT_EQ(recordCount(dir), c.records);
  }
}

TEST_F(ForeignDicomDirs, TheFilesOfOneCanBeReferredToInOurs) {
  // Records are made anew for the files of the set.
  std::filesystem::copy(directory_, temp_ / "SET", std::filesystem::copy_options::recursive);
  DcDirDicomDir theirs((temp_ / "SET").string().c_str());
  ASSERT_EQ(theirs.initialCode(), kDcOk);
  std::filesystem::remove(temp_ / "SET" / "DICOMDIR");
  DcDirDicomDir ours((temp_ / "SET").string().c_str());
  for (std::size_t p = 0; p < theirs.lowerCount(); ++p) {
    const DcDirRec& theirPatient = *theirs.lower(p);
    DcDirRec* study = addRecord(*addRecord(ours, DcDirRecType::Patient), DcDirRecType::Study);
    DcDirRec* series = addRecord(*study, DcDirRecType::Series);
    for (std::size_t s = 0; s < theirPatient.lowerCount(); ++s) {
      const DcDirRec& theirStudy = *theirPatient.lower(s);
      for (std::size_t e = 0; e < theirStudy.lowerCount(); ++e) {
        for (std::size_t i = 0; i < theirStudy.lower(e)->lowerCount(); ++i) {
          const DcDirRec& theirImage = *theirStudy.lower(e)->lower(i);
          DcDirRec* image = addRecord(*series, DcDirRecType::Image);
          ASSERT_EQ(image->setRefFile(theirImage.fileId().c_str()), kDcOk);
          EXPECT_EQ(image->refSopClassUid(), theirImage.refSopClassUid());
          EXPECT_EQ(image->refSopInstanceUid(), theirImage.refSopInstanceUid());
          EXPECT_EQ(image->refTransferSyntaxUid(), theirImage.refTransferSyntaxUid());
        }
      }
    }
  }
}

}  // namespace
}  // namespace quillon::test
