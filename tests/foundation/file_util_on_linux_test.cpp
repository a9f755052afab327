// The file operations where Linux has more than Windows: links, rights, file systems that are
// mounted.
#include <sys/mount.h>
#include <unistd.h>

#include <functional>
#include <memory>

#include "foundation/file_util.h"
#include "foundation_test_support.h"
#include "support/workstation_settings.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using test::ErrorOf;
using test::Plain;
using test::WideOf;

class LinuxFiles : public test::InTempDirectory {
 protected:
  CFileUtil files_;
};

TEST_F(LinuxFiles, NothingIsCopiedOrMovedOntoAnotherNameOfItself) {
  Write("src", "content");
  fs::create_symlink("src", dir_ / "link");
  fs::create_hard_link(dir_ / "src", dir_ / "second");
  fs::create_directory_symlink(".", dir_ / "here");
  for (const char* name : {"link", "second", "here/src"}) {
    SCOPED_TRACE(name);
    EXPECT_FALSE(files_.CopyFile(Wide(name), Wide("src"), /*append=*/false));
    EXPECT_EQ(ErrorOf(files_), CannotOpen(name));
    EXPECT_EQ(Read("src"), "content");
  }
  EXPECT_FALSE(files_.CopyFile(Wide("src"), Wide("link"), /*append=*/false));
  EXPECT_EQ(ErrorOf(files_), CannotOpen("src"));
  files_.ClearError();
  EXPECT_FALSE(files_.MoveFile(Wide("src"), Wide("link")));
  EXPECT_EQ(ErrorOf(files_), CannotOpen("src"));
  EXPECT_EQ(Read("src"), "content");
}

TEST_F(LinuxFiles, ALinkThatLeadsNowhereIsNotMoved) {
  fs::create_symlink("nowhere", dir_ / "dangling");
  EXPECT_FALSE(files_.MoveFile(Wide("dst"), Wide("dangling")));
  EXPECT_EQ(ErrorOf(files_), IsNoFile("dangling"));
}

TEST_F(LinuxFiles, AFullDiskIsSaid) {
  Write("src", "content");
  const std::uint8_t bytes[] = {1, 2, 3};
  const Text full = WideOf("/dev/full");
  EXPECT_FALSE(files_.CopyFile(full, Wide("src"), /*append=*/false));
  EXPECT_EQ(ErrorOf(files_), "Cannot write data to the destination stream.");
  EXPECT_EQ(Plain(files_.FailedPath()), "/dev/full");
  EXPECT_EQ(Plain(files_.FailedReason()), "There is not enough space on the disk.");
  for (const bool append : {false, true}) {
    files_.ClearError();
    EXPECT_FALSE(files_.WriteData(bytes, 3, full, append));
    EXPECT_EQ(ErrorOf(files_), "Cannot write data to the destination stream.");
  }
}

TEST_F(LinuxFiles, OneFileHasOneIdentityWhateverItIsCalled) {
  Write("file", "x");
  Write("other", "x");
  fs::create_symlink("file", dir_ / "link");
  fs::create_hard_link(dir_ / "file", dir_ / "second");
  fs::create_directory(dir_ / "dir");
  FileIdentity file;
  ASSERT_TRUE(files_.GetFileIdentity(Wide("file"), file)) << ErrorOf(files_);
  const std::pair<const char*, bool> cases[] = {
      {"link", true}, {"second", true}, {"dir/../file", true}, {"other", false}, {"dir", false}};
  for (const auto& [name, isSame] : cases) {
    SCOPED_TRACE(name);
    FileIdentity identity;
    EXPECT_TRUE(files_.GetFileIdentity(Wide(name), identity)) << ErrorOf(files_);
    EXPECT_EQ(identity == file, isSame);
  }
  EXPECT_FALSE(files_.GetFileIdentity(Wide("missing"), file));
  EXPECT_EQ(ErrorOf(files_), CannotBeFound("missing"));
}

TEST_F(LinuxFiles, LinksAreToldApartAndTakenAwayAlone) {
  Write("dir/kept", "x");
  Write("file", "x");
  fs::create_directory_symlink("dir", dir_ / "dirlink");
  fs::create_symlink("file", dir_ / "link");
  fs::create_symlink("nowhere", dir_ / "dangling");
  for (const char* name : {"dirlink/", "link", "dangling"}) {
    SCOPED_TRACE(name);
    EXPECT_TRUE(files_.IsLink(Wide(name)));
    EXPECT_TRUE(files_.RemoveLink(Wide(name))) << ErrorOf(files_);
    EXPECT_FALSE(files_.IsLink(Wide(name)));
    EXPECT_FALSE(files_.RemoveLink(Wide(name)));
    EXPECT_EQ(ErrorOf(files_),
              CannotBeFound(std::string(name).substr(0, std::string(name).find('/'))));
  }
  for (const char* name : {"dir", "file"}) {
    EXPECT_FALSE(files_.IsLink(Wide(name)));
    EXPECT_FALSE(files_.RemoveLink(Wide(name)));
    EXPECT_EQ(ErrorOf(files_), "Cannot delete the file " + Name(name) + ".");
  }
  EXPECT_TRUE(Exists("dir/kept"));
}

TEST_F(LinuxFiles, WhatIsFreeIsWhatTheFileSystemSays) {
  std::uint64_t bytes = 0;
  ASSERT_TRUE(files_.GetFreeBytes(WideOf("/proc"), bytes)) << ErrorOf(files_);
  EXPECT_EQ(bytes, 0u) << "a file system without any room";
  ASSERT_TRUE(files_.GetFreeBytes(Wide(""), bytes)) << ErrorOf(files_);
  const auto expected = static_cast<double>(fs::space(dir_.path()).available);
  EXPECT_NEAR(static_cast<double>(bytes), expected, expected / 10) << "others write meanwhile";
  EXPECT_FALSE(files_.GetFreeBytes(Wide("none"), bytes));
  EXPECT_EQ(ErrorOf(files_), CannotBeFound("none"));
}

// What else the user calls the file stays as it is, and keeps its mark.
TEST_F(LinuxFiles, AReadOnlyFileWithOtherNamesIsMovedAndDeletedWithoutThem) {
  Write("archive", "content");
  fs::permissions(dir_ / "archive", fs::perms{0444});
  fs::create_hard_link(dir_ / "archive", dir_ / "src");
  EXPECT_TRUE(files_.MoveFile(Wide("dst"), Wide("src"))) << ErrorOf(files_);
  const std::uint8_t bytes[] = {'n', 'e', 'w'};
  EXPECT_FALSE(files_.WriteData(bytes, 3, Wide("dst"), /*append=*/false));
  EXPECT_EQ(ErrorOf(files_), CannotOpen("dst"));
  EXPECT_TRUE(files_.DeleteFile(Wide("dst"))) << ErrorOf(files_);
  EXPECT_EQ(fs::status(dir_ / "archive").permissions(), fs::perms{0444});
  EXPECT_EQ(Read("archive"), "content");
}

// Root may do everything, so the tests of missing rights run as somebody else.
class WithoutRights : public LinuxFiles {
 protected:
  void SetUp() override {
    fs::permissions(dir_.path(), fs::perms::all);
    Write("in/src", "content");
    Write("in/secret", "secret");
    fs::create_directory(dir_ / "out");
    fs::permissions(dir_ / "out", fs::perms::all);
    fs::permissions(dir_ / "in/secret", fs::perms::none);
    fs::permissions(dir_ / "in", fs::perms{0555});
    Write("out/earlier", "earlier");
    fs::permissions(dir_ / "out/earlier", fs::perms::all);
    if (!ActAsAnother()) GTEST_SKIP() << "cannot act as another user";
  }
  void TearDown() override { EXPECT_EQ(::seteuid(user_), 0); }

  // Stays who it is where that is not root.
  [[nodiscard]] bool ActAsAnother() const { return user_ != 0 || ::seteuid(65534) == 0; }
  void ActAsBefore() { ASSERT_EQ(::seteuid(user_), 0); }

 private:
  uid_t user_ = ::geteuid();
};

TEST_F(WithoutRights, EveryOperationSaysWhatItCouldNotDo) {
  EXPECT_FALSE(files_.CopyFile(Wide("out/dst"), Wide("in/secret"), /*append=*/false));
  EXPECT_EQ(ErrorOf(files_), CannotOpen("in/secret"));
  EXPECT_FALSE(files_.CopyFile(Wide("in/dst"), Wide("in/src"), /*append=*/false));
  EXPECT_EQ(ErrorOf(files_), CannotOpen("in/dst"));
  EXPECT_FALSE(files_.DeleteFile(Wide("in/src")));
  EXPECT_EQ(ErrorOf(files_), "Cannot delete the file " + Name("in/src") + ".");
  EXPECT_FALSE(files_.DirectoryOperation(Wide("in/sub"), DirectoryOp::Create));
  EXPECT_EQ(ErrorOf(files_), "Cannot create the directory " + Name("in/sub") +
                                 " for this reason:  Access is denied.");
  EXPECT_FALSE(Exists("out/dst"));
  EXPECT_FALSE(files_.MoveFile(Wide("out/earlier"), Wide("in/secret")));
  EXPECT_EQ(ErrorOf(files_), CannotOpen("in/secret"));
  EXPECT_EQ(Read("out/earlier"), "earlier");
}

// Whoever may remove a name from a directory may, whatever the file's owner allows.
TEST_F(WithoutRights, AnothersReadOnlyFileIsMovedAndDeleted) {
  ActAsBefore();
  for (const char* name : {"out/others", "out/earlier"}) {
    Write(name, name);
    fs::permissions(dir_ / name, fs::perms{0444});
  }
  ASSERT_TRUE(ActAsAnother());
  EXPECT_TRUE(files_.MoveFile(Wide("out/earlier"), Wide("out/others"))) << ErrorOf(files_);
  EXPECT_EQ(Read("out/earlier"), "out/others");
  EXPECT_TRUE(files_.DeleteFile(Wide("out/earlier"))) << ErrorOf(files_);
}

TEST_F(WithoutRights, AMoveThatCannotTakeTheSourceAwayLeavesBothWhole) {
  EXPECT_FALSE(files_.MoveFile(Wide("out/dst"), Wide("in/src")));
  EXPECT_EQ(ErrorOf(files_), "Cannot delete the file " + Name("in/src") + ".");
  ActAsBefore();
  EXPECT_EQ(Read("out/dst"), "content");
  EXPECT_EQ(Read("in/src"), "content");
}

TEST_F(LinuxFiles, MoveCopiesWhatALinkLeadsToAndTakesTheLinkAway) {
  Write("user/image", "content");
  fs::create_symlink("image", dir_ / "user/link");
  EXPECT_TRUE(files_.MoveFile(Wide("dst"), Wide("user/link"))) << ErrorOf(files_);
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(dir_ / "dst")));
  EXPECT_EQ(Read("dst"), "content");
  EXPECT_FALSE(Exists("user/link"));
  EXPECT_EQ(Read("user/image"), "content");
}

TEST_F(LinuxFiles, AMoveToAnotherDiskLeavesTheSourceUntilAllOfItIsThere) {
  fs::create_directory(dir_ / "disk");
  if (::mount("tmpfs", (dir_ / "disk").c_str(), "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "cannot mount a file system here";
  }
  const std::shared_ptr<void> unmounting(nullptr,
                                         [this](void*) { ::umount((dir_ / "disk").c_str()); });
  const std::string large(100000, 'c');
  Write("large", large);
  EXPECT_FALSE(files_.MoveFile(Wide("disk/dst"), Wide("large")));
  EXPECT_EQ(ErrorOf(files_), "Cannot write data to the destination stream.");
  EXPECT_EQ(Read("large"), large);
  EXPECT_FALSE(Exists("disk/dst")) << "no half file";

  Write("src", "content");
  Write("disk/dir/inner", "inner");
  EXPECT_FALSE(files_.MoveFile(Wide("disk/dir"), Wide("src")));
  EXPECT_EQ(ErrorOf(files_), CannotOpen("disk/dir"));
  EXPECT_EQ(Read("disk/dir/inner"), "inner") << "what was not opened is not taken away";
  EXPECT_EQ(Read("src"), "content");

  EXPECT_TRUE(files_.MoveFile(Wide("disk/dst"), Wide("src"))) << ErrorOf(files_);
  EXPECT_EQ(Read("disk/dst"), "content");
  EXPECT_FALSE(Exists("src"));
}

// What is beside the target, or what its name leads to, may be somebody's only copy.
TEST_F(LinuxFiles, AMoveThatCopiesReplacesTheNameAlone) {
  Write("archive", "archive");
  Write("~Q0", "mine");
  const auto asHardLink = [&] { fs::create_hard_link(dir_ / "archive", dir_ / "dst"); };
  const auto asLink = [&] { fs::create_symlink("archive", dir_ / "dst"); };
  const auto asDanglingLink = [&] { fs::create_symlink("none", dir_ / "dst"); };
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"hard link", asHardLink}, {"link", asLink}, {"link to nothing", asDanglingLink}};
  for (const auto& [what, make] : cases) {
    SCOPED_TRACE(what);
    make();
    // A link is always copied, on one file system too.
    Write("image", "content");
    fs::create_symlink("image", dir_ / "src");
    EXPECT_TRUE(files_.MoveFile(Wide("dst"), Wide("src"))) << ErrorOf(files_);
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(dir_ / "dst")));
    EXPECT_EQ(Read("dst"), "content");
    EXPECT_EQ(Read("archive"), "archive");
    EXPECT_FALSE(Exists("none"));
    EXPECT_FALSE(Exists("src"));
    fs::remove(dir_ / "dst");
  }
  EXPECT_EQ(Read("~Q0"), "mine");
  EXPECT_FALSE(Exists("~Q1"));
}

TEST_F(LinuxFiles, ALinkedDirectoryIsWalkedAndTheWalkGoesOnBesideTheLink) {
  Write("src/sub/deep/e", "4444");
  fs::current_path(dir_ / "src");
  Write("elsewhere/f", "55555");
  fs::create_directory_symlink("../elsewhere", dir_ / "src/a-link");
  std::uint64_t sizeBytes = 0;
  EXPECT_TRUE(files_.GetDirectorySize(sizeBytes, Wide("src"), u"*.*", /*recurse=*/true))
      << ErrorOf(files_);
  EXPECT_EQ(sizeBytes, 9u);
  fs::create_directory(dir_ / "dst");
  EXPECT_TRUE(files_.CopyDirectory(Wide("dst"), Wide("src"), u"*.*", /*recurse=*/true))
      << ErrorOf(files_);
  EXPECT_EQ(Read("dst/a-link/f"), "55555");
  EXPECT_TRUE(fs::is_directory(fs::symlink_status(dir_ / "dst/a-link")));
  EXPECT_EQ(Read("dst/sub/deep/e"), "4444");
}

TEST_F(LinuxFiles, DeletingTakesLinksAndNotWhatTheyLeadTo) {
  Write("user/image", "content");
  Write("tree/IM1", "x");
  fs::create_directory_symlink("../user", dir_ / "tree/dirlink");
  fs::create_symlink("../user/image", dir_ / "tree/filelink");
  fs::create_symlink("nowhere", dir_ / "tree/dangling");
  EXPECT_TRUE(files_.DeleteDirectoryTree(Wide("tree"), /*recurse=*/true)) << ErrorOf(files_);
  EXPECT_FALSE(Exists("tree"));
  EXPECT_EQ(Read("user/image"), "content");
}

TEST_F(LinuxFiles, TheTemporaryDirectoryEndsInASeparator) {
  const test::TemporaryFilesIn temporary(dir_ / "tmp");
  Text out;
  EXPECT_TRUE(files_.GetTempDirectory(out, /*create=*/false, /*addSubdirectory=*/false));
  const std::string plain = Plain(out);
  ASSERT_FALSE(plain.empty());
  EXPECT_TRUE(plain.back() == '/' || plain.back() == '\\') << plain;
  EXPECT_EQ(plain.substr(0, plain.size() - 1), (dir_ / "tmp").string());
  EXPECT_FALSE(Exists("tmp"));

  EXPECT_TRUE(files_.GetTempDirectory(out, /*create=*/true, /*addSubdirectory=*/true));
  EXPECT_EQ(Plain(out), plain + "QUILLON");
  EXPECT_TRUE(Exists("tmp/QUILLON"));
  EXPECT_FALSE(files_.GetTempDirectory(out, /*create=*/true, /*addSubdirectory=*/true));
  EXPECT_EQ(ErrorOf(files_), "Cannot create the directory " + plain + "QUILLON.");

  const test::TemporaryFilesIn tooLong(dir_ / std::string(260, 't'));
  SetLastError(ERROR_SUCCESS);
  EXPECT_FALSE(files_.GetTempDirectory(out, /*create=*/false, /*addSubdirectory=*/false));
  EXPECT_EQ(ErrorOf(files_), "The filename or extension is too long.");
}

// What a directory holds that may be entered and not be listed is not known, and never nothing.
TEST_F(WithoutRights, ADirectoryThatCannotBeListedIsAFailure) {
  const Text tree = Wide("out/tree");
  std::uint32_t count = 99;
  std::uint64_t sizeBytes = 99;
  const std::pair<const char*, std::function<bool(CFileUtil&)>> cases[] = {
      {"count", [&](CFileUtil& f) { return f.CountFiles(count, tree, u"*.*", true); }},
      {"size", [&](CFileUtil& f) { return f.GetDirectorySize(sizeBytes, tree, u"*.*", true); }},
      {"copy", [&](CFileUtil& f) { return f.CopyDirectory(Wide("out/to"), tree, u"*.*", true); }},
      {"empty", [&](CFileUtil& f) { return f.DeleteAllFiles(tree, true); }},
      {"delete", [&](CFileUtil& f) { return f.DeleteDirectoryTree(tree, true); }},
  };
  Write("out/tree/sub/kept", "content");
  fs::create_directory(dir_ / "out/to");
  fs::permissions(dir_ / "out/tree/sub", fs::perms{0300});
  for (const auto& [what, operation] : cases) {
    SCOPED_TRACE(what);
    fs::current_path(dir_ / "out/tree");
    CFileUtil files;
    EXPECT_FALSE(operation(files));
    EXPECT_EQ(ErrorOf(files), "The file specification *.* is invalid.");
    EXPECT_EQ(Plain(files.FailedReason()), "Access is denied.");
    EXPECT_EQ(Read("out/tree/sub/kept"), "content");
  }
  EXPECT_EQ(count + sizeBytes, 0u);
}

// Whoever cannot go back to where it was is elsewhere, and its relative names with it.
TEST_F(WithoutRights, AWorkingDirectoryThatCannotBeEnteredAgainIsAFailure) {
  fs::create_directories(dir_ / "out/locked/work");
  fs::current_path(dir_ / "out/locked/work");
  std::uint32_t count = 99;
  const std::function<bool()> operations[] = {
      [&] { return files_.CountFiles(count, Wide("out"), u"*.*", /*recurse=*/false); },
      [&] { return files_.CreateDirectoryTree(u"sub"); }};
  for (const auto& operation : operations) {
    fs::permissions(dir_ / "out/locked", fs::perms::none);
    files_.ClearError();
    EXPECT_FALSE(operation());
    EXPECT_EQ(ErrorOf(files_), "Cannot change to the directory " + Name("out/locked/work") +
                                   " for this reason:  Access is denied.");
    fs::permissions(dir_ / "out/locked", fs::perms{0700});
  }
  EXPECT_EQ(count, 0u);
  EXPECT_TRUE(Exists("out/locked/work/sub"));
}

// Server and share are directories like others here.
TEST_F(LinuxFiles, TreesOfASharedDirectoryAreCreatedAndDeleted) {
  const Text share = u"/" + Wide("share/a/b");
  EXPECT_TRUE(files_.CreateDirectoryTree(share)) << ErrorOf(files_);
  EXPECT_TRUE(Exists("share/a/b"));
  EXPECT_TRUE(files_.DeleteDirectoryTree(share, /*recurse=*/true)) << ErrorOf(files_);
  EXPECT_FALSE(Exists("share/a/b"));
  EXPECT_TRUE(Exists("share/a"));
}

}  // namespace
}  // namespace quillon
