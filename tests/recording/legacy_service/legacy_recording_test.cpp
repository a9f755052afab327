// What is recorded through the legacy service, and what becomes of the disc.
#include <sys/resource.h>

#include <cstdlib>
#include <map>

#include "legacy_fixture.h"
#include "platform/testing.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;
using Tree = std::map<std::string, std::vector<std::uint8_t>>;

Tree filesBelow(const fs::path& directory) {
  Tree files;
  for (const auto& entry : fs::recursive_directory_iterator(directory)) {
    if (entry.is_regular_file()) {
      files[entry.path().lexically_relative(directory).string()] = readBytes(entry.path());
    }
  }
  return files;
}

void setVolumeName(IJolietDiscMaster& joliet, std::u16string_view text, HRESULT expected) {
  ComPtr<IPropertyStorage> properties;
  ASSERT_EQ(joliet.GetJolietProperties(properties.Put()), S_OK);
  std::u16string property = u"VolumeName";
  PROPSPEC spec{};
  spec.ulKind = PRSPEC_LPWSTR;
  spec.lpwstr = property.data();
  const Bstr name(text);
  PROPVARIANT value;
  PropVariantInit(&value);
  value.vt = VT_BSTR;
  value.bstrVal = name;
  ASSERT_EQ(properties->WriteMultiple(1, &spec, &value, 2), S_OK);
  ASSERT_EQ(properties->Commit(0), S_OK);
  EXPECT_EQ(joliet.SetJolietProperties(properties.Get()), expected);
}

class LegacyRecording : public LegacyTest {
 protected:
  void writeTree() const {
    fs::create_directories(dir_ / "tree/DICOMOBJ/P0000001");
    fs::create_directories(dir_ / "tree/empty directory");
    writeText(dir_ / "tree/DICOMDIR", "directory");
    writeText(dir_ / "tree/empty", "");
    writeText(dir_ / ("tree/" + std::string(64, 'n')), "the longest name");
    writeText(dir_ /
                  "tree/gr\xC3\xB6\xC3\x9F"
                  "e.txt",
              "not ASCII");
    writeBytes(dir_ / "tree/DICOMOBJ/P0000001/LARGE", patternBytes(1500, 3));
    for (int i = 0; i < 200; ++i) {
      writeText(dir_ / ("tree/DICOMOBJ/QLN" + std::to_string(i)), "object " + std::to_string(i));
    }
  }
};

// Far fewer files may be open than there are on the disc.
class FewDescriptors {
 public:
  FewDescriptors() {
    ::getrlimit(RLIMIT_NOFILE, &before_);
    rlimit few = before_;
    few.rlim_cur = 64;
    ::setrlimit(RLIMIT_NOFILE, &few);
  }
  ~FewDescriptors() { ::setrlimit(RLIMIT_NOFILE, &before_); }
  FewDescriptors(const FewDescriptors&) = delete;
  FewDescriptors& operator=(const FewDescriptors&) = delete;

 private:
  rlimit before_{};
};

TEST_F(LegacyRecording, AnIndependentReaderFindsTheTreeOnTheDisc) {
  if (std::system("command -v isoinfo xorriso > /dev/null") != 0) {
    GTEST_SKIP() << "isoinfo and xorriso are not installed";
  }
  writeTree();
  prepare();
  setVolumeName(*joliet_, u"Holiday 2026", S_OK);
  {
    const FewDescriptors few;
    ASSERT_EQ(add("tree"), S_OK);
    ASSERT_EQ(master_->RecordDisc(0, 0), S_OK);
  }
  EXPECT_EQ(master_->Close(), S_OK);
  EXPECT_EQ(discStatus().state, "finalised");
  const std::string image = file("disc.iso").string();
  // The names do not fit into ISO 9660: they are those of Joliet.
  const std::string command = "LC_ALL=C.UTF-8 xorriso -osirrox on -indev '" + image +
                              "' -extract / '" + (dir_ / "read").string() +
                              "' > read.txt 2>&1 && isoinfo -d -i '" + image + "' > volume.txt";
  ASSERT_EQ(std::system(command.c_str()), 0);
  EXPECT_TRUE(filesBelow(dir_ / "read") == filesBelow(dir_ / "tree"));
  const std::vector<std::uint8_t> volume = readBytes(dir_ / "work/volume.txt");
  EXPECT_NE(std::string(volume.begin(), volume.end()).find("Volume id: HOLIDAY_2026\n"),
            std::string::npos);
}

TEST_F(LegacyRecording, VolumeNamesThatNoDiscCanShowAreRefused) {
  prepare();
  setVolumeName(*joliet_, std::u16string(32, u'v'), S_OK);
  setVolumeName(*joliet_, std::u16string(33, u'v'), E_INVALIDARG);
  setVolumeName(*joliet_, u"line\nfeed", E_INVALIDARG);
}

TEST_F(LegacyRecording, FilesOfOneNameAreReplacedOnlyOnRequest) {
  for (const char* directory : {"tree/sub", "more/sub", "clash"}) {
    fs::create_directories(dir_ / directory);
  }
  writeText(dir_ / "tree/sub/SAME", "short");
  writeBytes(dir_ / "more/sub/SAME", patternBytes(40, 1));
  writeText(dir_ / "more/sub/OTHER", "other");
  writeText(dir_ / "clash/sub", "a file where a directory is");
  prepare();
  // What is on the disc when it has been written.
  const auto recorded = [this] {
    EXPECT_EQ(master_->RecordDisc(0, 0), S_OK);
    std::vector<std::uint8_t> image = readBytes(file("disc.iso"));
    insertBlank("cd-r", 20000);
    return image;
  };
  ASSERT_EQ(add("tree"), S_OK);
  const std::vector<std::uint8_t> before = recorded();
  EXPECT_EQ(add("more", 0), IMAPI_E_FILEEXISTS);
  EXPECT_EQ(add("clash"), IMAPI_E_FILEEXISTS);
  EXPECT_EQ(recorded().size(), before.size());
  EXPECT_EQ(add("more"), S_OK);
  const std::vector<std::uint8_t> after = recorded();
  const std::vector<std::uint8_t> content = patternBytes(40, 1);
  EXPECT_NE(std::search(after.begin(), after.end(), content.begin(), content.end()), after.end());
  chooseFormat();
  ASSERT_EQ(add("more"), S_OK);
  EXPECT_EQ(recorded().size(), after.size()) << "the short one is not there any more";
  chooseFormat();
  EXPECT_EQ(master_->RecordDisc(0, 0), IMAPI_E_INVALIDIMAGE);
}

// The files are read when the disc is written.
TEST_F(LegacyRecording, AFileThatChangedSinceItWasAddedIsNotRecorded) {
  const std::pair<const char*, std::function<void(const fs::path&)>> cases[] = {
      {"gone", [](const fs::path& path) { fs::remove(path); }},
      {"shorter", [](const fs::path& path) { fs::resize_file(path, 3); }},
      {"longer", [](const fs::path& path) { writeText(path, "more than there was"); }},
      {"touched",
       [](const fs::path& path) {
         fs::last_write_time(path, fs::last_write_time(path) + std::chrono::seconds(5));
       }},
  };
  prepare();
  for (const auto& [what, change] : cases) {
    SCOPED_TRACE(what);
    writeText(dir_ / "tree/FILE", "content");
    chooseFormat();
    ASSERT_EQ(add("tree"), S_OK);
    change(dir_ / "tree/FILE");
    EXPECT_EQ(master_->RecordDisc(0, 0), IMAPI_E_FILEACCESS);
    EXPECT_EQ(discStatus().state, "blank");
  }
}

TEST_F(LegacyRecording, ATestRunReadsAllAndLeavesTheDiscAsItIs) {
  prepareWithContent();
  EXPECT_EQ(master_->RecordDisc(1, 0), S_OK);
  EXPECT_EQ(discStatus().state, "blank");
  insertBlank("cd-rw", 20000);
  ASSERT_EQ(master_->RecordDisc(0, 0), S_OK);
  const std::vector<std::uint8_t> before = readBytes(file("disc.iso"));
  EXPECT_EQ(master_->RecordDisc(0, 0), IMAPI_E_CANNOT_WRITE_TO_MEDIA);
  // It would be erased first.
  EXPECT_EQ(master_->RecordDisc(1, 0), S_OK);
  EXPECT_TRUE(readBytes(file("disc.iso")) == before);
  writeText(dir_ / "tree/FILE", "changed content");
  EXPECT_EQ(master_->RecordDisc(1, 0), IMAPI_E_FILEACCESS);
}

TEST_F(LegacyRecording, TheDiscComesOutAfterwardsOnRequest) {
  prepareWithContent();
  EXPECT_EQ(master_->RecordDisc(0, 1), S_OK);
  EXPECT_FALSE(discStatus().hasDisc);
}

TEST_F(LegacyRecording, RewritableDiscsAreErased) {
  insertBlank("cd-rw", 20000);
  prepareWithContent();
  for (const BYTE isFull : {BYTE{0}, BYTE{1}}) {
    SCOPED_TRACE(int{isFull});
    ASSERT_EQ(master_->RecordDisc(0, 0), S_OK);
    EXPECT_EQ(medium(*recorder_), "1/6");
    EXPECT_EQ(recorder_->Erase(isFull), IMAPI_E_NOTINITIALIZED);
    ASSERT_EQ(recorder_->OpenExclusive(), S_OK);
    EXPECT_EQ(recorder_->Erase(isFull), S_OK);
    ASSERT_EQ(recorder_->Close(), S_OK);
    EXPECT_EQ(discStatus().state, isFull != 0 ? "blank" : "erased");
    EXPECT_EQ(medium(*recorder_), "5/7");
  }
}

TEST_F(LegacyRecording, ADriveThatMisbehavesIsReportedInTheServicesOwnCodes) {
  const struct {
    const char* plan;
    HRESULT expected;
    const char* state;
  } cases[] = {
      {"answer RecordDisc 0x8004021C\n", IMAPI_E_DISCFULL, "blank"},
      {"write-fails-at 300\n", IMAPI_E_GENERIC, "damaged"},
      {"write-fails-at 300 0xC0AA0300\n", IMAPI_E_LOSS_OF_STREAMING, "damaged"},
      {"write-fails-at 300 0x80070070\n", IMAPI_E_NOTENOUGHDISKFORSTASH, "damaged"},
      {"ready-after 100\n", IMAPI_E_DISCINFO, "blank"},
      {"ready-after 10\n", S_OK, "finalised"},
  };
  const platform::testing::Scope scope;
  DWORD slept = 0;
  platform::testing::SubstituteSleeper([&](DWORD milliseconds) { slept += milliseconds; });
  writeBytes(dir_ / "tree/LARGE", patternBytes(1000, 1));
  for (const auto& c : cases) {
    SCOPED_TRACE(c.plan);
    insertBlank("cd-r", 20000);
    plan(c.plan);
    prepareWithContent();
    EXPECT_EQ(master_->RecordDisc(0, 0), c.expected);
    EXPECT_EQ(errorDescription(), "");
    EXPECT_EQ(master_->Close(), S_OK);
    plan("");
    EXPECT_EQ(discStatus().state, c.state);
  }
  // The disc is asked when content is added, and again when it is recorded.
  EXPECT_EQ(slept, (29U + 29U + 10U) * 1000U);
}

}  // namespace
}  // namespace quillon::test
