// A DICOMDIR that cannot be written: the one that is there stays, whatever it is.
#include <cerrno>
#include <set>

#include "dir_test_tools.h"
#include "support/failing_calls.h"
#include "support/file_size_limit.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

enum class Old { None, File, SecondName, Link, DeadLink };

// A directory with an old DICOMDIR of some kind.
class OldDicomDir {
 public:
  explicit OldDicomDir(Old kind) {
    fs::create_directory(root());
    const fs::path file = root() / "DICOMDIR";
    if (kind == Old::File) writeText(file, kOldText);
    if (kind == Old::SecondName || kind == Old::Link) writeText(other(), kOldText);
    if (kind == Old::SecondName) fs::create_hard_link(other(), file);
    if (kind == Old::Link || kind == Old::DeadLink) fs::create_symlink(other(), file);
  }
  [[nodiscard]] fs::path root() const { return dir_ / "root"; }
  [[nodiscard]] fs::path other() const { return dir_ / "other"; }
  // Every name with what it is and holds.
  [[nodiscard]] std::set<std::string> entries() const {
    std::set<std::string> all;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(dir_.path())) {
      std::string text = entry.path().filename().string();
      if (entry.is_symlink()) text += " -> " + fs::read_symlink(entry.path()).string();
      if (entry.is_regular_file()) {
        const Bytes bytes = readBytes(entry.path());
        text += "=" + std::string(bytes.begin(), bytes.end());
      }
      all.insert(text);
    }
    return all;
  }

  static constexpr const char* kOldText = "what was there before";

 private:
  TempDir dir_;
};

class DicomDirWritingFaults : public ToolkitTest {
 protected:
  DicomDirWritingFaults() : set_(nullptr) {
    for (int i = 0; i < 20; ++i) addSeries(set_);
    logged();
  }
  DcCode write(const OldDicomDir& old) { return set_.write(old.root().string().c_str()); }
  void expectWritten(const OldDicomDir& old, const std::set<std::string>& before) {
    const fs::path file = old.root() / "DICOMDIR";
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(file)));
    EXPECT_EQ(fs::hard_link_count(file), 1u);
    const RawDicomDir raw(readBytes(file));
    EXPECT_EQ(raw.link(raw.headerOffset(0x00041202), 0x00041400), 0u);
    const bool hadOther = before.contains(std::string("other=") + OldDicomDir::kOldText);
    EXPECT_EQ(old.entries().size(), hadOther ? 3u : 2u);
    EXPECT_EQ(old.entries().contains(std::string("other=") + OldDicomDir::kOldText), hadOther);
  }
  void expectRefused(const OldDicomDir& old, const std::set<std::string>& before, DcCode code) {
    EXPECT_EQ(old.entries(), before);
    const std::string file = old.root().string() + "/DICOMDIR'";
    EXPECT_EQ(logged(), code == 0x5805u ? "Error opening file - '" + file
                                        : "File '" + file + ", rc - 0x5804 ");
    EXPECT_TRUE(code == 0x5805u || code == 0x5804u) << code;
  }

  DcDirDicomDir set_;
};

TEST_F(DicomDirWritingFaults, LeaveTheOldOneWhateverCallFails) {
  for (const Old kind : {Old::None, Old::File, Old::SecondName, Old::Link, Old::DeadLink}) {
    int refused = 0;
    bool happened = true;
    for (int nth = 1; happened; ++nth) {
      SCOPED_TRACE(std::to_string(static_cast<int>(kind)) + ", call " + std::to_string(nth));
      const OldDicomDir old(kind);
      const std::set<std::string> before = old.entries();
      DcCode code = kDcOk;
      {
        const FailingCall failing(Call::Any, nth, EIO);
        code = write(old);
        happened = failing.happened();
      }
      if (code == kDcOk) {
        expectWritten(old, before);
      } else {
        EXPECT_TRUE(happened);
        expectRefused(old, before, code);
        ++refused;
      }
    }
    EXPECT_GE(refused, 5) << "opening, writing, flushing, closing, renaming";
  }
}

TEST_F(DicomDirWritingFaults, LeaveTheOldOneOnAFullDisk) {
  for (const Old kind : {Old::None, Old::File, Old::SecondName, Old::Link}) {
    SCOPED_TRACE(static_cast<int>(kind));
    const OldDicomDir old(kind);
    const std::set<std::string> before = old.entries();
    DcCode code = kDcOk;
    {
      const FileSizeLimit limit(1000);
      code = write(old);
    }
    EXPECT_EQ(code, 0x5804u);
    expectRefused(old, before, code);
  }
}

TEST_F(DicomDirWritingFaults, ComeNotFromWhatAnInterruptedWritingLeft) {
  for (const bool isLink : {false, true}) {
    SCOPED_TRACE(isLink);
    const OldDicomDir old(Old::None);
    const fs::path left = old.root() / "DICOMDIR.NEW";
    const fs::path precious = old.root().parent_path() / "precious";
    writeText(precious, "precious");
    isLink ? fs::create_symlink(precious, left) : fs::create_hard_link(precious, left);
    ASSERT_EQ(write(old), kDcOk);
    EXPECT_EQ(readBytes(precious).size(), 8u);
    EXPECT_FALSE(fs::exists(fs::symlink_status(left)));
  }
}

TEST_F(DicomDirWritingFaults, NeverReplaceADirectoryOrAProtectedFile) {
  for (const bool isDirectory : {true, false}) {
    SCOPED_TRACE(isDirectory);
    const OldDicomDir old(isDirectory ? Old::None : Old::File);
    const fs::path file = old.root() / "DICOMDIR";
    if (isDirectory) fs::create_directory(file);
    if (!isDirectory) fs::permissions(file, fs::perms::owner_read);
    const std::set<std::string> before = old.entries();
    const DcCode code = write(old);
    EXPECT_EQ(code, 0x5805u);
    expectRefused(old, before, code);
  }
}

}  // namespace
}  // namespace quillon::test
