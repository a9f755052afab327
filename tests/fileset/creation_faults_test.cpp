// Creations while calls of the system fail, disks are full, and files have several names or such as
// Windows has not: no object is lost.
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <cerrno>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

#include "builder_job.h"
#include "dicom_dir_bytes.h"
#include "support/failing_calls.h"
#include "support/file_size_limit.h"

namespace quillon::test {
namespace {

TEST(FileSetCreation, WithoutRoomEveryObjectStaysWhole) {
  const struct {
    const char* what;
    bool isOtherFileSystem;
    std::string sentence;
    std::vector<std::string> files, sources;
  } cases[] = {
      {"on another file system",
       true,
       "Cannot write data to the destination stream.",
       {},
       {"a", "b"}},
      {"for the DICOMDIR",
       false,
       "Cannot create the DICOMDIR file in {root}\\.",
       {"DICOMOBJ/QLN00001", "DICOMOBJ/QLN00002", "UNFINISHED.TXT"},
       {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    BuilderJob job;
    job.add("a", object(1, 1, 1, 1));
    job.add("b", object(1, 1, 1, 2));
    {
      const FailingCall rename(c.isOtherFileSystem ? Call::RenameElsewhere : Call::MakeDirectory,
                               c.isOtherFileSystem ? 0 : 1'000'000, EXDEV);
      const FileSizeLimit limit(500);
      EXPECT_FALSE(job.create());
    }
    std::string sentence = c.sentence;
    insert(sentence, "{root}", job.root);
    EXPECT_EQ(job.sentence(), sentence);
    EXPECT_EQ(job.count(), -1);
    EXPECT_EQ(filesBelow(job.root), c.files);
    EXPECT_EQ(filesBelow(job.in), c.sources);
    EXPECT_TRUE(job.builder.IheLabel().empty());
  }
}

TEST(FileSetCreation, NeverOverwritesAFileOfAnotherNameThatIsStillToBeMoved) {
  enum class As { Link, SecondName, InLinkedDirectory };
  const struct {
    const char* what;
    std::string name;  // below the root
    bool isRefused;
    As as;
  } cases[] = {
      {"by a link", "DICOMOBJ/QLN00001", true, As::Link},
      {"by a second name", "DICOMOBJ/P0000001/X", true, As::SecondName},
      {"in a linked directory", "DICOMOBJ/QLN00001", true, As::InLinkedDirectory},
      {"a link to what lies beside it", "X", false, As::Link},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    BuilderJob job;
    job.add("a", object(1, 1, 1, 1));
    const fs::path file = job.root / c.name;
    fs::create_directories(file.parent_path());
    makeObjectFile(file, object(1, 1, 1, 2));
    fs::path source = job.dir / "other";
    if (c.as == As::Link) fs::create_symlink(file, source);
    if (c.as == As::SecondName) fs::create_hard_link(file, source);
    if (c.as == As::InLinkedDirectory) {
      fs::create_directory_symlink(file.parent_path(), job.dir / "linked");
      source = job.dir / "linked" / file.filename();
    }
    ASSERT_TRUE(job.builder.AddFile(WideOf(source)));
    EXPECT_EQ(job.create(), !c.isRefused) << job.sentence();
    if (!c.isRefused) continue;
    EXPECT_EQ(job.sentence(),
              "The file " + source.string() + " already lies where the file set is to be created.");
    EXPECT_EQ(filesBelow(job.root), (std::vector<std::string>{c.name}));
    EXPECT_TRUE(fs::exists(job.in / "a"));
    EXPECT_EQ(job.count(), 2);
  }
}

// Whether every object is whole, in its place or in the set; a link's target also stays.
void expectNothingLost(const BuilderJob& job, const std::vector<Bytes>& objects) {
  std::vector<Bytes> found;
  for (const fs::path& place : {job.in, job.root}) {
    for (const std::string& name : filesBelow(place)) found.push_back(readBytes(place / name));
  }
  for (const Bytes& one : objects) {
    EXPECT_NE(std::find(found.begin(), found.end(), one), found.end());
  }
}

// Every call of the system fails once, in the middle of renaming and in the middle of copying.
TEST(FileSetCreation, LosesNothingWhateverCallFails) {
  for (const bool isOtherDevice : {false, true}) {
    SCOPED_TRACE(isOtherDevice ? "copied" : "renamed");
    for (int nth = 1;; ++nth) {
      SCOPED_TRACE(nth);
      BuilderJob job;
      job.builder.useHierarchyForDicomObjects = true;
      ObjectDescription report = object(1, 1, 2, 2);
      report.kind = ObjectKind::Sr;
      const std::vector<Bytes> objects{readBytes(job.add("a", object(1, 1, 1, 1))),
                                       readBytes(job.add("b", report))};
      bool isCreated = false;
      bool happened = false;
      {
        const FailingCall rename(isOtherDevice ? Call::RenameElsewhere : Call::MakeDirectory,
                                 isOtherDevice ? 0 : 1'000'000, EXDEV);
        const FailingCall failing(Call::Any, nth, EIO);
        isCreated = job.create();
        happened = failing.happened();
      }
      expectNothingLost(job, objects);
      EXPECT_EQ(job.sentence().empty(), isCreated);
      if (isCreated) {
        EXPECT_EQ(recordTypes(readDicomDir(readBytes(job.root / "DICOMDIR"))),
                  "PATIENT STUDY SERIES IMAGE SERIES SR DOCUMENT");
        EXPECT_TRUE(fs::exists(job.root / "LABEL.TXT"));
        EXPECT_TRUE(filesBelow(job.in).empty());
      } else if (!fs::exists(job.root / "LABEL.TXT") && fs::exists(job.root / "DICOMDIR")) {
        EXPECT_NE(recordTypes(readDicomDir(readBytes(job.root / "DICOMDIR"))), "");
      }
      if (!happened) {
        EXPECT_TRUE(isCreated) << job.sentence();
        EXPECT_GT(nth, 20);
        break;
      }
    }
  }
}

TEST(FileSetCreation, ARootOnAFullFileSystemLeavesEveryFileWhole) {
  BuilderJob job;
  fs::create_directory(job.root);
  if (::mount("tmpfs", job.root.c_str(), "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "cannot mount a file system here";
  }
  std::vector<Bytes> objects;
  for (int i = 1; i <= 3; ++i) {
    ObjectDescription d = object(1, 1, 1, i);
    d.rows = d.columns = 110;
    objects.push_back(readBytes(job.add(std::to_string(i), d)));
  }
  EXPECT_FALSE(job.create());
  EXPECT_EQ(job.sentence().find("The file system of " + job.root.string() + " has room for"), 0U)
      << job.sentence();
  EXPECT_EQ(job.count(), 3);
  EXPECT_TRUE(filesBelow(job.root).empty());
  EXPECT_EQ(filesBelow(job.in), (std::vector<std::string>{"1", "2", "3"}));
  expectNothingLost(job, objects);
  ::umount(job.root.c_str());
}

TEST(FileSetCreation, GoesBackToAWorkingDirectoryOfAnyName) {
  const fs::path before = fs::current_path();
  for (const bool fails : {false, true}) {
    BuilderJob job;
    fs::create_directory(job.dir / "what? a:b");
    job.builder.includeOtherContent = true;
    writeText(job.dir / "viewer/sub/file", fails ? "" : "x");
    job.registry.setOtherContent(job.dir / "viewer");
    job.add("a", {});
    fs::current_path(job.dir / "what? a:b");
    EXPECT_EQ(job.create(), !fails) << job.sentence();
    EXPECT_EQ(fs::current_path(), job.dir / "what? a:b");
    fs::current_path(before);
  }
}

// Read as a path, such a name would lead to another file, and this one would be missing.
TEST(AddingDirectories, ANameThatNoPathCanHaveEndsTheWalk) {
  for (const std::string name : {"sub\\x", "a:b", "what?"}) {
    SCOPED_TRACE(name);
    BuilderJob job;
    job.make("sub/x", object(1, 1, 1, 1));
    job.make(name, object(1, 1, 1, 2));
    EXPECT_FALSE(job.builder.AddDirectory(WideOf(job.in), false));
    EXPECT_EQ(job.sentence(),
              "The filename " + name + " cannot contain these characters: \\/:*?\"<>|");
  }
}

// A share that goes away in the middle of a listing has more files than were seen.
TEST(AddingDirectories, AListingThatBreaksOffEndsTheWalk) {
  BuilderJob job;
  for (const char* name : {"a", "b", "c"}) job.make(name, object(1, 1, 1, name[0]));
  const platform::testing::Scope restored;
  platform::testing::BreakListings(3, ERROR_NOT_READY);
  EXPECT_FALSE(job.builder.AddDirectory(WideOf(job.in), false));
  EXPECT_EQ(job.sentence(),
            "The file search specification " + job.in.string() + "\\*.* is invalid.");
}

// The toolkit opens files by 8-bit names; where one does not hold the name, another file would be
// read, or the DICOMDIR would end up elsewhere.
TEST(FileSetCreation, ANameThatCannotBeHandedToTheToolkitIsRefused) {
  BuilderJob job;
  Text name = WideOf(job.in) + OLESTR("/a");
  name += OLECHAR{0xD800};
  EXPECT_FALSE(job.builder.AddFile(name));
  EXPECT_EQ(job.builder.ErrorMessage().find(OLESTR("Cannot read the DICOM information from ")), 0U);
  job.add("a", {});
  ASSERT_TRUE(job.builder.SetDicomRootDirectory(WideOf(job.dir / "set") + OLECHAR{0xD800}));
  EXPECT_FALSE(job.create());
  EXPECT_EQ(job.builder.ErrorMessage().find(OLESTR("Cannot create the DICOMDIR file in ")), 0U);
  EXPECT_TRUE(fs::exists(job.in / "a"));
}

TEST(DirectCopy, ASourceWhosePathIsTooLongIsNotCleared) {
  BuilderJob job;
  const fs::path before = fs::current_path();
  fs::path deep = job.dir.path();
  for (int level = 0; level < 6; ++level) {
    fs::create_directory(deep / std::string(200, 'd'));
    deep /= std::string(200, 'd');
    fs::current_path(deep);
  }
  fs::create_directories("root/DICOMOBJ");
  writeText("root/DICOMOBJ/QLN00001", "x");
  ASSERT_TRUE(job.builder.SetDicomRootDirectory(OLESTR("root")));
  ASSERT_TRUE(job.builder.SetDirectCopyDirectory(WideOf(job.dir / "out")));
  job.builder.performDirectCopy = true;
  EXPECT_FALSE(job.builder.WriteMedia({}, false, false, false, true));
  EXPECT_EQ(job.sentence(), "The DICOM root path name is invalid.");
  EXPECT_TRUE(fs::exists("root/DICOMOBJ/QLN00001"));
  fs::current_path(before);
}

TEST(FileSetCreation, ASourceThatIsALinkIsCopied) {
  BuilderJob job;
  const fs::path target = job.make("target", {});
  const Bytes contents = readBytes(target);
  fs::create_symlink(target, job.in / "link");
  ASSERT_TRUE(job.builder.AddFile(WideOf(job.in / "link")));
  ASSERT_TRUE(job.create()) << job.sentence();
  EXPECT_EQ(readBytes(target), contents);
  EXPECT_FALSE(fs::exists(fs::symlink_status(job.in / "link")));
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(job.root / "DICOMOBJ/QLN00001")));
}

}  // namespace
}  // namespace quillon::test
