// Delivering a file set: what reaches its target, what is said when it does not, and what becomes
// of the file set in the root directory.
#include <gtest/gtest.h>

#include "builder_job.h"
#include "platform/imapi2.h"
#include "support/legacy_service.h"

namespace quillon::test {
namespace {

const std::vector<std::string> kTree = {"DICOMDIR", "DICOMOBJ/P1/QLN00001", "DICOMOBJ/P1/QLN00002",
                                        "LABEL.TXT", "QUILLON/a/b/c/d"};

class WriteFlow : public ::testing::Test {
 protected:
  WriteFlow() {
    fillRoot();
    EXPECT_TRUE(job_.builder.SetDirectCopyDirectory(WideOf(target_)));
  }

  void fillRoot() const {
    for (const std::string& name : kTree) {
      fs::create_directories((job_.root / name).parent_path());
      writeText(job_.root / name, "content of " + name);
    }
  }
  void expectTree(const fs::path& directory) const {
    EXPECT_EQ(filesBelow(directory), kTree);
    for (const std::string& name : kTree) {
      const auto bytes = readBytes(directory / name);
      EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "content of " + name);
    }
  }
  bool write(bool clears) { return job_.builder.WriteMedia({}, false, false, false, clears); }
  bool copy(bool clears) {
    job_.builder.performDirectCopy = true;
    return write(clears);
  }

  BuilderJob job_;
  fs::path target_ = job_.dir / "some/levels/down/target";
  fs::path before_ = fs::current_path();
};

TEST_F(WriteFlow, ADirectCopyMakesItsDirectoryAndReplacesFilesOfTheSameName) {
  EXPECT_TRUE(copy(false)) << job_.sentence();
  expectTree(target_);
  expectTree(job_.root);
  writeText(target_ / "DICOMDIR", "something else, and longer than what it is replaced by");
  writeText(target_ / "other", "stays");
  EXPECT_TRUE(copy(true)) << job_.sentence();
  EXPECT_FALSE(fs::exists(job_.root));
  EXPECT_EQ(readBytes(target_ / "other").size(), 5U);
  fs::remove(target_ / "other");
  expectTree(target_);
  EXPECT_EQ(fs::current_path(), before_);
}

TEST_F(WriteFlow, WithCurrentPracticeTheSumsOfTheFilesGoWithThem) {
  writeText(job_.root / "SHA256SUMS", "of an earlier set");
  job_.builder.currentPractice = true;
  ASSERT_TRUE(copy(false)) << job_.sentence();
  const std::string sums =
      "f8945fc443f902fb3c0b3cc95c849b46107f46dd9f97b00d623b815889e7ef1d  DICOMDIR\n"
      "f0ea995aeaa69f4179d7baa6f9757bcab21f36bf7aecb19eac01be6e67528454  DICOMOBJ/P1/QLN00001\n"
      "2ecd7e7924368e04a0bb0d2c7721b53c53a998ff1717175920adcf7b0ce373fa  DICOMOBJ/P1/QLN00002\n"
      "1225b68bb49af90963ac3a212cb1d6e24a8af4ae89293c0fa6243242a64a8f96  LABEL.TXT\n"
      "353b4f4ac3ab77553ea726f1f9e37796a626d017f9f6a211978c4e17a0131d21  QUILLON/a/b/c/d\n";
  for (const fs::path& directory : {job_.root, target_}) {
    const auto bytes = readBytes(directory / "SHA256SUMS");
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), sums) << directory;
    fs::remove(directory / "SHA256SUMS");
  }
  job_.builder.makesSums = false;
  ASSERT_TRUE(copy(false)) << job_.sentence();
  job_.builder.currentPractice = false;
  job_.builder.makesSums = true;
  ASSERT_TRUE(copy(false)) << job_.sentence();
  // What is no file set is delivered as it is.
  fs::remove(job_.root / "DICOMDIR");
  job_.builder.currentPractice = true;
  ASSERT_TRUE(copy(false)) << job_.sentence();
  expectTree(target_);
}

#ifndef _WIN32
// What follows may be a power cut, or the end of the file set that was copied.
TEST_F(WriteFlow, ADirectCopyIsOnTheDiskBeforeItsDicomDirAndThatBeforeItHasSucceeded) {
  const platform::testing::Scope substitutes;
  std::vector<std::string> told;
  int failing = 0;
  platform::testing::SubstituteFileSystemFlush([&]() -> DWORD {
    const std::vector<std::string> names = filesBelow(target_);
    told.push_back(names == kTree ? "all" : std::to_string(names.size()));
    return static_cast<int>(told.size()) == failing ? ERROR_IO_DEVICE : ERROR_SUCCESS;
  });
  EXPECT_TRUE(copy(false)) << job_.sentence();
  EXPECT_EQ(told, (std::vector<std::string>{std::to_string(kTree.size() - 1), "all"}));
  for (failing = 1; failing <= 2; ++failing) {
    SCOPED_TRACE(failing);
    told.clear();
    fs::remove_all(target_);
    EXPECT_FALSE(copy(false));
    EXPECT_EQ(job_.sentence(), "Cannot flush the destination stream.");
    EXPECT_EQ(fs::exists(target_ / "DICOMDIR"), failing == 2);
    Text path;
    Text reason;
    EXPECT_TRUE(job_.builder.GetFailedFile(path, reason));
    EXPECT_EQ(Plain(path), target_.string());
    expectTree(job_.root);
  }
}
#endif

// A host that shows how far it is must hear of it within a large file, too.
TEST_F(WriteFlow, ADirectCopyTellsHowFarItIs) {
  constexpr std::uint64_t kLargeBytes = std::uint64_t{1} << 20;
  writeText(job_.root / "DICOMOBJ/large", std::string(kLargeBytes, 'x'));
  std::vector<std::uint64_t> told;
  std::uint64_t total = 0;
  job_.builder.progress = [&](std::uint64_t done, std::uint64_t all) {
    told.push_back(done);
    total = all;
  };
  ASSERT_TRUE(copy(false)) << job_.sentence();
  EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
  EXPECT_GT(total, kLargeBytes);
  EXPECT_EQ(told.back(), total);
  EXPECT_GT(told.size(), kTree.size() + 10);
}

TEST_F(WriteFlow, ADirectCopyOfRelativePathsGoesWhereTheyLead) {
  fs::current_path(job_.dir.path());
  EXPECT_TRUE(job_.builder.SetDicomRootDirectory(OLESTR("root")));
  EXPECT_TRUE(job_.builder.SetDirectCopyDirectory(OLESTR("near/by")));
  EXPECT_TRUE(copy(true)) << job_.sentence();
  fs::current_path(before_);
  expectTree(job_.dir / "near/by");
  EXPECT_FALSE(fs::exists(job_.root));
}

TEST_F(WriteFlow, ACopyThatWouldBeNoneIsRefusedAndDeletesNothing) {
  std::vector<fs::path> targets{job_.root, job_.root / ".", job_.root / "QUILLON/..",
                                job_.root / "new/directory", job_.dir / "root/DICOMOBJ"};
#ifndef _WIN32
  fs::create_directory_symlink(job_.root / "QUILLON", job_.dir / "link");
  targets.push_back(job_.dir / "link");
  targets.push_back(job_.dir / "link/a/new");
#endif
  for (const fs::path& target : targets) {
    SCOPED_TRACE(target);
    ASSERT_TRUE(job_.builder.SetDirectCopyDirectory(WideOf(target)));
    EXPECT_FALSE(copy(true));
    EXPECT_EQ(job_.sentence(), "The directory for the direct file copy is invalid.");
    expectTree(job_.root);
  }
}

TEST_F(WriteFlow, ATargetAroundTheSourceIsCopiedTo) {
  ASSERT_TRUE(job_.builder.SetDirectCopyDirectory(WideOf(job_.dir.path())));
  EXPECT_TRUE(copy(true)) << job_.sentence();
  EXPECT_FALSE(fs::exists(job_.root));
  for (const std::string& name : kTree) EXPECT_TRUE(fs::exists(job_.dir / name)) << name;
}

// The copies of "DICOMOBJ/..." would come to lie in the root, and go when it is cleared.
TEST_F(WriteFlow, ATargetWhereTheCopyWouldLieInTheSourceIsRefused) {
  for (const char* name : {"DICOMOBJ", "QUILLON"}) {
    SCOPED_TRACE(name);
    const fs::path root = job_.dir / name;
    fs::rename(job_.root, root);
    ASSERT_TRUE(job_.builder.SetDicomRootDirectory(WideOf(root)));
    ASSERT_TRUE(job_.builder.SetDirectCopyDirectory(WideOf(job_.dir.path())));
    EXPECT_FALSE(copy(true));
    EXPECT_EQ(job_.sentence(), "The directory for the direct file copy is invalid.");
    expectTree(root);
    EXPECT_FALSE(fs::exists(job_.dir / "DICOMDIR"));
    fs::rename(root, job_.root);
  }
}

TEST_F(WriteFlow, ATargetInWhatEveryJobRemovesIsRefused) {
  const TemporaryFilesIn elsewhere(job_.dir.path());
  const fs::path out = job_.dir / "QUILLON" / "out";
  ASSERT_TRUE(job_.builder.SetDirectCopyDirectory(WideOf(out)));
  EXPECT_FALSE(copy(true));
  EXPECT_EQ(job_.sentence(), "The directory " + out.string() + " lies in " +
                                 (job_.dir / "QUILLON").string() + ", which every job removes.");
  expectTree(job_.root);
}

TEST_F(WriteFlow, AFailedDirectCopyTellsWhyAndClearsWhenAsked) {
  const struct {
    const char* what;
    std::function<void()> spoil;
    std::string sentence;
  } cases[] = {
      {"an empty file in the set", [this] { writeText(job_.root / "DICOMDIR", ""); },
       "The path " + (job_.root / "DICOMDIR").string() + " does not refer to a valid file."},
      {"a file where the target goes",
       [this] {
         fs::remove_all(target_);
         writeText(target_, "in the way");
       },
       "Cannot create the directory target for this reason:  " + kFileExists},
      {"a directory in the place of a file",
       [this] {
         fs::remove_all(target_);
         fs::create_directories(target_ / "LABEL.TXT");
       },
       "Cannot open the file " + (target_ / "LABEL.TXT").string() + "."},
  };
  for (const auto& c : cases) {
    for (const bool clears : {false, true}) {
      SCOPED_TRACE(std::string(c.what) + (clears ? ", clearing" : ""));
      fillRoot();
      fs::remove_all(target_);
      fs::create_directories(target_.parent_path());
      c.spoil();
      std::string sentence = c.sentence;
      for (char& unit : sentence) {
        if (unit == '\\') unit = '/';
      }
      EXPECT_FALSE(copy(clears));
      std::string told = job_.sentence();
      for (char& unit : told) {
        if (unit == '\\') unit = '/';
      }
      EXPECT_EQ(told, sentence);
      EXPECT_EQ(fs::exists(job_.root), !clears);
      EXPECT_EQ(fs::current_path(), before_);
    }
  }
}

TEST_F(WriteFlow, ASourceThatIsNotThereFailsWithoutATarget) {
  fs::remove_all(job_.root);
  EXPECT_FALSE(copy(true));
  EXPECT_EQ(job_.sentence(), "Cannot change to the directory " + job_.root.string() +
                                 " for this reason:  " + kFileNotFound);
}

// The disc path over a legacy service; COM initialised as a host has it.
class DiscFlow : public WriteFlow {
 protected:
  DiscFlow() { EXPECT_EQ(CoInitialize(nullptr), S_OK); }
  ~DiscFlow() override { CoUninitialize(); }

  bool writeDisc(bool clears, bool hasMaster = true, bool hasBurner = true) {
    const HiddenClass noCurrent(CLSID_MsftDiscMaster2);
    const RegisteredLegacyService registered(service_, hasMaster, hasBurner);
    const bool written = write(clears);
    EXPECT_EQ(service_.liveObjects, 0);
    return written;
  }

  LegacyService service_;
};

TEST_F(DiscFlow, TheSetIsWrittenUnderTheJobsOptions) {
  const struct {
    const char* what;
    bool simulate, fullErase, eject, clears;
    const OLECHAR* volume;
    const char* record;
    const char* erase;
    const OLECHAR* writtenVolume;
  } cases[] = {
      {"defaults of a host", false, false, true, true, OLESTR(""), "write+eject", "quick",
       OLESTR("Quillon")},
      {"named, kept", false, true, false, false, OLESTR("STUDY_1"), "write", "full",
       OLESTR("STUDY_1")},
      {"test run", true, true, true, false, OLESTR("X"), "simulate+eject", "", OLESTR("X")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    fillRoot();
    service_ = {};
    service_.mediumFlags = MEDIA_RW | MEDIA_WRITABLE;
    ASSERT_TRUE(job_.builder.SetVolumeName(c.volume));
    const HiddenClass noCurrent(CLSID_MsftDiscMaster2);
    const RegisteredLegacyService registered(service_, true, true);
    EXPECT_TRUE(job_.builder.WriteMedia({}, c.simulate, c.fullErase, c.eject, c.clears))
        << job_.sentence();
    EXPECT_EQ(service_.record, c.record);
    EXPECT_EQ(service_.erase, c.erase);
    EXPECT_EQ(service_.volumeName, c.writtenVolume);
    ASSERT_EQ(service_.files.size(), kTree.size());
    for (const std::string& name : kTree) {
      EXPECT_EQ(service_.files[name], "content of " + name);
    }
    EXPECT_EQ(fs::exists(job_.root), !c.clears);
  }
}

TEST_F(DiscFlow, AFailingStepTellsWhyAndClearsWhenAsked) {
  const struct {
    const char* what;
    std::function<void()> spoil;
    bool hasMaster, hasBurner;
    std::string sentence;
  } cases[] = {
#ifndef _WIN32  // where there is no telling a version that is not the system's
      {"an old system", [] { platform::testing::SubstituteVersion(5, 0, 2195, 4); }, true, true,
       "Windows XP or later is required to record the DICOM fileset to compact disc."},
#endif
      {"no recorder", [this] { service_.hasRecordableDrive = false; }, true, true,
       "There is no recordable drive present."},
      {"no shell component", [] {}, true, false, "Cannot initialize the IMAPI interface instance."},
      {"a shell component that fails",
       [this] {
         service_.failingCall = "HasRecordableDrive";
         service_.failure = static_cast<HRESULT>(0x8004020E);
       },
       true, true,
       "CMediaBurnUtil::HasRecordableDrive failed for this reason:  An unexpected and unexplained "
       "failure ended the recording"},
      {"no disc mastering", [] {}, false, true,
       "Cannot determine the current version of IMAPI that is installed."},
      {"a full disc",
       [this] {
         service_.failingCall = "RecordDisc";
         service_.failure = static_cast<HRESULT>(0x8004021C);
       },
       true, true,
       "CDiscMaster::RecordDisc failed for this reason:  The disc cannot hold any more data"},
      {"no file set", [this] { fs::remove_all(job_.root); }, true, true,
       "CShellFolder::ParseDisplayName failed for this reason:  " + kFileNotFound},
  };
  for (const auto& c : cases) {
    for (const bool clears : {false, true}) {
      SCOPED_TRACE(std::string(c.what) + (clears ? ", clearing" : ""));
#ifndef _WIN32
      const platform::testing::Scope restored;
#endif
      fillRoot();
      service_ = {};
      c.spoil();
      const bool hadRoot = fs::exists(job_.root);
      EXPECT_FALSE(writeDisc(clears, c.hasMaster, c.hasBurner));
      EXPECT_EQ(job_.sentence(), c.sentence);
      EXPECT_EQ(service_.record, "");
      EXPECT_EQ(fs::exists(job_.root), hadRoot && !clears);
    }
  }
}

}  // namespace
}  // namespace quillon::test
