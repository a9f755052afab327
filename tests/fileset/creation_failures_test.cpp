// Creations that fail: what is said, what stays in the patient list, and where every file is.
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>

#include <cerrno>
#include <csignal>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

#include "builder_job.h"
#include "dicom_dir_bytes.h"
#include "support/failing_calls.h"

namespace quillon::test {
namespace {

// While it lives, no file of this process can grow beyond some bytes; renaming is no writing.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    signal_ = std::signal(SIGXFSZ, SIG_IGN);  // NOLINT(cert-err33-c): SIG_ERR is given back as well
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, signal_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*signal_)(int) = SIG_DFL;
};

// A file that the presentation reader refuses.
Bytes stateWithoutCreator() {
  const std::string sopClass = "1.2.840.10008.5.1.4.1.1.11.1";
  const std::string instance = "2.999.20.1.1.9.1";
  return dicomFile(DataSetBytes()
                       .text(0x00080016, "UI", sopClass)
                       .text(0x00080018, "UI", instance)
                       .text(0x00080060, "CS", "PR")
                       .text(0x00100010, "PN", "PATIENT^1")
                       .text(0x0020000D, "UI", studyUidOf({}))
                       .text(0x0020000E, "UI", "2.999.20.1.1.9")
                       .text(0x00200013, "IS", "1")
                       .text(0x00700080, "CS", "LABEL")
                       .text(0x00700081, "LO", "")
                       .take(),
                   sopClass, instance, kExplicitLittleUid);
}

TEST(FileSetCreation, AFailingStepLeavesItsSentenceAndThePatientsAsTheyShouldBe) {
  struct Case {
    const char* what;
    std::function<void(BuilderJob&)> prepare;
    std::string sentence;              // {root} and {in} stand for the directories
    bool isKept;                       // whether the patient list stays
    std::vector<std::string> files;    // in the root
    std::vector<std::string> sources;  // in their place
    // What fails while it runs, and whether the label was made.
    std::function<std::shared_ptr<void>()> trouble = [] { return nullptr; };
    bool hasLabel = false;
  };
  const std::vector<std::string> all{"a", "b"};
  const Case cases[] = {
      {"lower-case object directory",
       [](BuilderJob& job) { job.builder.SetDicomObjectDirectory(u"dicomobj"); },
       "The File ID dicomobj\\ does not conform to the DICOM standard because it may only be "
       "comprised of these characters:  ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_\\/",
       true,
       {},
       all},
      {"object directory of nothing",
       [](BuilderJob& job) { job.builder.SetDicomObjectDirectory(u"\\"); },
       "The File ID does not conform to the DICOM standard because it is empty or null.",
       true,
       {},
       all},
      {"DICOMDIR is a directory",
       [](BuilderJob& job) { fs::create_directories(job.root / "DICOMDIR"); },
       "Cannot delete the file {root}\\DICOMDIR.",
       true,
       {},
       all},
      {"object directory is a file",
       [](BuilderJob& job) {
         fs::create_directories(job.root);
         writeText(job.root / "DICOMOBJ", "x");
       },
       "Cannot create the directory DICOMOBJ for this reason:  Cannot create a file when that file "
       "already exists.",
       true,
       {"DICOMOBJ"},
       all},
      {"root is a file",
       [](BuilderJob& job) { writeText(job.root, "x"); },
       "Cannot create the directory root for this reason:  Cannot create a file when that file "
       "already exists.",
       true,
       {},
       all},
      {"source is gone",
       [](BuilderJob& job) { fs::remove(job.in / "b"); },
       "The path {in}/b cannot be found.",
       false,
       {"DICOMOBJ/QLN00001"},
       {}},
      {"target is a directory",
       [](BuilderJob& job) { fs::create_directories(job.root / "DICOMOBJ" / "QLN00002" / "x"); },
       "Cannot open the file {root}\\DICOMOBJ\\QLN00002.",
       false,
       {"DICOMOBJ/QLN00001"},
       {"b"}},
      {"series directory is a file",
       [](BuilderJob& job) {
         job.builder.useHierarchyForDicomObjects = true;
         fs::create_directories(job.root / "DICOMOBJ");
         writeText(job.root / "DICOMOBJ" / "P0000001", "x");
       },
       "Cannot create the directory P0000001 for this reason:  Cannot create a file when that file "
       "already exists.",
       false,
       {"DICOMOBJ/P0000001"},
       all},
      {"File ID too deep",
       [](BuilderJob& job) {
         job.builder.useHierarchyForDicomObjects = true;
         job.builder.SetDicomObjectDirectory(u"A\\B\\C\\D\\E");
       },
       "The File ID A\\B\\C\\D\\E\\P0000001\\S0000001\\E0000001\\QLN00001 does not conform to the "
       "DICOM standard because the directory hierarchy exceeds 8 levels.",
       false,
       {},
       all},
      {"level of eleven characters",
       [](BuilderJob& job) { job.builder.SetDicomObjectDirectory(u"DICOMOBJECT"); },
       "Cannot set the image file reference to DICOMOBJECT\\QLN00001 for the series " +
           seriesUidOf({}) + " in study " + studyUidOf({}) +
           " for the patient DOE^JOHN 12345 from the file {in}/a.",
       false,
       {"DICOMOBJECT/QLN00001"},
       {"b"}},
      {"presentation state that cannot be read",
       [](BuilderJob& job) {
         writeBytes(job.in / "pr", stateWithoutCreator());
         ASSERT_TRUE(job.builder.AddFile(wide(job.in / "pr"))) << job.sentence();
       },
       "Cannot retrieve the \"00700084,PN\" presentation tag value.",
       true,
       {"DICOMOBJ/QLN00001", "DICOMOBJ/QLN00002", "DICOMOBJ/QLN00003"},
       {}},
      {"another file system without room",
       [](BuilderJob&) {},
       "Cannot write data to the destination stream.",
       false,
       {},
       all,
       [] {
         return std::make_shared<std::pair<FailingCall, FileSizeLimit>>(
             std::piecewise_construct, std::forward_as_tuple(Call::Rename, 0, EXDEV),
             std::forward_as_tuple(rlim_t{500}));
       }},
      {"DICOMDIR that does not fit",
       [](BuilderJob&) {},
       "Cannot create the DICOMDIR file in {root}\\.",
       false,
       {"DICOMOBJ/QLN00001", "DICOMOBJ/QLN00002"},
       {},
       [] { return std::make_shared<FileSizeLimit>(rlim_t{500}); }},
      {"other content that cannot be copied",
       [](BuilderJob& job) {
         job.builder.includeOtherContent = true;
         writeText(job.dir / "viewer/empty", "");
         job.registry.setOtherContent((job.dir / "viewer").string());
       },
       "The path {viewer}\\empty does not refer to a valid file.",
       false,
       {"DICOMDIR", "DICOMOBJ/QLN00001", "DICOMOBJ/QLN00002"},
       {}},
      {"label is a directory",
       [](BuilderJob& job) { fs::create_directories(job.root / "LABEL.TXT"); },
       "Cannot open the file {root}\\LABEL.TXT.",
       false,
       {"DICOMDIR", "DICOMOBJ/QLN00001", "DICOMOBJ/QLN00002"},
       {},
       [] { return nullptr; },
       true},
      {"root of almost 260 characters",
       [](BuilderJob& job) {
         const std::string start = job.root.string() + "/";
         job.builder.SetDicomRootDirectory(wide(start + std::string(253 - start.size(), 'R')));
       },
       "The current path name {long}\\ plus the new path component DICOMDIR is longer than 260 "
       "characters.",
       true,
       {},
       all},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    BuilderJob job;
    job.add("a", object(1, 1, 1, 1));
    job.add("b", object(1, 1, 1, 2));
    c.prepare(job);
    const int before = job.count();
    const fs::path directory = fs::current_path();
    {
      const auto trouble = c.trouble();
      EXPECT_FALSE(job.create());
    }
    std::string sentence = c.sentence;
    const std::pair<const char*, std::string> places[] = {
        {"{root}", job.root.string()},
        {"{in}", job.in.string()},
        {"{viewer}", (job.dir / "viewer").string()},
        {"{long}", narrow(job.builder.DicomRootDirectory())}};
    for (const auto& [name, value] : places) {
      if (const auto at = sentence.find(name); at != std::string::npos) {
        sentence.replace(at, std::string(name).size(), value);
      }
    }
    EXPECT_EQ(job.sentence(), sentence);
    EXPECT_EQ(job.count(), c.isKept ? before : -1);
    EXPECT_EQ(filesBelow(job.root), c.files);
    EXPECT_EQ(filesBelow(job.in), c.sources);
    EXPECT_EQ(!job.builder.IheLabel().empty(), c.hasLabel);
    EXPECT_EQ(fs::current_path(), directory);
  }
}

TEST(FileSetCreation, NeverOverwritesAFileThatIsStillToBeMoved) {
  enum class As { ItsName, Link, SecondName, InLinkedDirectory };
  const struct {
    const char* what;
    std::string name;  // below the root
    std::string root;  // as the setting names it, after the job's directory
    bool isRefused;
    As as = As::ItsName;
  } cases[] = {
      {"in the object directory", "DICOMOBJ/QLN00002", "/root", true},
      {"deep below it", "DICOMOBJ/A/B", "/root/", true},
      {"the root spelled otherwise", "DICOMOBJ/X", "/in/../root", true},
      {"the DICOMDIR itself", "DICOMDIR", "/root", true},
      {"beside the object directory", "DICOMOBJ2/X", "/root", false},
      {"in the root", "X", "/root", false},
      {"by a link", "DICOMOBJ/QLN00001", "/root", true, As::Link},
      {"by a second name", "DICOMOBJ/P0000001/X", "/root", true, As::SecondName},
      {"in a linked directory", "DICOMOBJ/QLN00001", "/root", true, As::InLinkedDirectory},
      {"a link to what lies beside it", "X", "/root", false, As::Link},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    BuilderJob job;
    job.builder.SetDicomRootDirectory(wide(job.dir.path().string() + c.root));
    job.add("a", object(1, 1, 1, 1));
    const fs::path file = job.root / c.name;
    fs::create_directories(file.parent_path());
    makeObjectFile(file, object(1, 1, 1, 2));
    fs::path source = file;
    if (c.as == As::Link) fs::create_symlink(file, source = job.dir / "link");
    if (c.as == As::SecondName) fs::create_hard_link(file, source = job.dir / "second");
    if (c.as == As::InLinkedDirectory) {
      fs::create_directory_symlink(file.parent_path(), job.dir / "linked");
      source = job.dir / "linked" / file.filename();
    }
    ASSERT_TRUE(job.builder.AddFile(wide(source)));
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
        const FailingCall rename(isOtherDevice ? Call::Rename : Call::MakeDirectory,
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
  EXPECT_EQ(job.sentence(), "Cannot write data to the destination stream.");
  EXPECT_EQ(job.count(), -1);
  EXPECT_EQ(filesBelow(job.root),
            (std::vector<std::string>{"DICOMOBJ/QLN00001", "DICOMOBJ/QLN00002"}));
  EXPECT_EQ(filesBelow(job.in), (std::vector<std::string>{"3"}));
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
    job.registry.setOtherContent((job.dir / "viewer").string());
    job.add("a", {});
    fs::current_path(job.dir / "what? a:b");
    EXPECT_EQ(job.create(), !fails) << job.sentence();
    EXPECT_EQ(fs::current_path(), job.dir / "what? a:b");
    fs::current_path(before);
  }
}

TEST(FileSetCreation, ASourceThatIsALinkIsCopied) {
  BuilderJob job;
  const fs::path target = job.make("target", {});
  const Bytes contents = readBytes(target);
  fs::create_symlink(target, job.in / "link");
  ASSERT_TRUE(job.builder.AddFile(wide(job.in / "link")));
  ASSERT_TRUE(job.create()) << job.sentence();
  EXPECT_EQ(readBytes(target), contents);
  EXPECT_FALSE(fs::exists(fs::symlink_status(job.in / "link")));
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(job.root / "DICOMOBJ/QLN00001")));
}

}  // namespace
}  // namespace quillon::test
