#include <gtest/gtest.h>

#include <string>

#include "builder_job.h"

namespace quillon::test {
namespace {

const std::string kKey = "SOFTWARE\\Tarn Imaging\\Quillon\\Workstation\\MediaCreation";
const std::string kNoKey = "Cannot open the registry key \"" + kKey +
                           "\" for this reason:  \"The registry key is missing or corrupt.\"";
const std::string kNoValue = "Cannot query the registry key \"" + kKey +
                             "\" for the value of \"OtherContentSourceDir\" for this reason:  "
                             "\"The registry value is missing "
                             "or corrupt.\"";

// A job with one object whose other content is a small tree.
struct ContentJob : BuilderJob {
  ContentJob() : source(dir / "viewer") {
    fs::create_directories(source / "data");
    writeText(source / "VIEWER.EXE", "12345");
    writeText(source / "data" / "help", "123");
    registry.setOtherContent(source);
    builder.includeOtherContent = true;
    add("a", {});
  }
  fs::path source;
};

TEST(OtherContent, IsCopiedWithItsStructureBesideTheObjects) {
  ContentJob job;
  fs::create_directory(job.source / "empty");
  const fs::path before = fs::current_path();
  ASSERT_TRUE(job.create()) << job.sentence();
  EXPECT_EQ(filesBelow(job.root),
            (std::vector<std::string>{"DICOMDIR", "DICOMOBJ/QLN00001", "LABEL.TXT",
                                      "QUILLON/VIEWER.EXE", "QUILLON/data/help"}));
  EXPECT_EQ(readBytes(job.root / "QUILLON/data/help"), (Bytes{'1', '2', '3'}));
  EXPECT_EQ(fs::current_path(), before);
}

TEST(OtherContent, OfARelativeRootLandsBelowIt) {
  ContentJob job;
  const fs::path before = fs::current_path();
  fs::current_path(job.dir.path());
  EXPECT_TRUE(job.builder.SetDicomRootDirectory(OLESTR("root")));
  EXPECT_TRUE(job.builder.SetOtherContentDirectory(OLESTR("\\VIEW\\ER")));
  EXPECT_TRUE(job.create()) << job.sentence();
  fs::current_path(before);
  EXPECT_TRUE(fs::exists(job.root / "VIEW/ER/VIEWER.EXE"));
  EXPECT_TRUE(fs::exists(job.root / "DICOMOBJ/QLN00001"));
  EXPECT_EQ(filesBelow(job.source).size(), 2U);
}

TEST(OtherContent, WhereNoneIsConfiguredTheLabelIsWrittenAllTheSame) {
  const struct {
    const char* what;
    std::function<void(ContentJob&)> prepare;
    std::string sentence;
  } cases[] = {
      {"no registry", [](ContentJob& job) { job.registry.remove(); }, kNoKey},
      {"no value", [](ContentJob& job) { job.registry.setWithoutValue(); }, kNoValue},
      {"empty value", [](ContentJob& job) { job.registry.setOtherContent(""); }, ""},
      {"no such directory", [](ContentJob& job) { job.registry.setOtherContent(job.dir / "none"); },
       ""},
      {"empty directory",
       [](ContentJob& job) {
         fs::create_directory(job.dir / "nothing");
         job.registry.setOtherContent(job.dir / "nothing");
       },
       ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    ContentJob job;
    c.prepare(job);
    EXPECT_TRUE(job.create()) << job.sentence();
    EXPECT_EQ(job.sentence(), c.sentence);
    EXPECT_EQ(filesBelow(job.root),
              (std::vector<std::string>{"DICOMDIR", "DICOMOBJ/QLN00001", "LABEL.TXT"}));
    EXPECT_FALSE(job.builder.IheLabel().empty());
  }
}

TEST(OtherContent, WhatCannotBeCopiedEndsTheCreationBeforeAnythingIsMoved) {
  const struct {
    const char* what;
    std::function<void(ContentJob&)> prepare;
    std::string sentence;
  } cases[] = {
      {"an empty file", [](ContentJob& job) { writeText(job.source / "data" / "zero", ""); },
       "The path {source}\\data\\zero does not refer to a valid file."},
      {"a file where the directory should be",
       [](ContentJob& job) {
         fs::create_directory(job.root);
         writeText(job.root / "QUILLON", "x");
       },
       "Cannot create the directory QUILLON for this reason:  " + kFileExists},
      {"a source that is a file",
       [](ContentJob& job) { job.registry.setOtherContent(job.source / "VIEWER.EXE"); },
       "Cannot change to the directory {viewer} for this reason:  " +
           systemSentence(ERROR_DIRECTORY, "The directory name is invalid.")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    ContentJob job;
    c.prepare(job);
    const fs::path before = fs::current_path();
    EXPECT_FALSE(job.create());
    std::string sentence = c.sentence;
    insert(sentence, "{source}", job.source);
    insert(sentence, "{viewer}", job.source / "VIEWER.EXE");
    EXPECT_EQ(job.sentence(), sentence);
    EXPECT_FALSE(fs::exists(job.root / "LABEL.TXT"));
    EXPECT_FALSE(fs::exists(job.root / "DICOMDIR"));
    EXPECT_FALSE(fs::exists(job.root / "DICOMOBJ/QLN00001"));
    EXPECT_TRUE(job.builder.IheLabel().empty());
    EXPECT_EQ(job.count(), -1);
    EXPECT_EQ(fs::current_path(), before);
  }
}

TEST(OtherContent, EmptyFilesAreCopiedAsTheFieldHasThem) {
  ContentJob job;
  job.builder.currentPractice = true;
  writeText(job.source / "data" / "zero", "");
  std::uint64_t size = 0;
  EXPECT_TRUE(job.builder.GetTotalSize(size)) << job.sentence();
  ASSERT_TRUE(job.create()) << job.sentence();
  EXPECT_TRUE(fs::exists(job.root / "QUILLON/data/zero"));
  job.builder.performDirectCopy = true;
  EXPECT_TRUE(job.builder.SetDirectCopyDirectory(WideOf(job.dir / "out")));
  EXPECT_TRUE(job.builder.WriteMedia({}, false, false, false, false)) << job.sentence();
  EXPECT_TRUE(fs::exists(job.dir / "out/QUILLON/data/zero"));
}

NamedContent named(const fs::path& source, const std::string& directory) {
  return {WideOf(source), WideOf(directory)};
}

TEST(OtherContent, OfNamedDirectoriesTakesThePlaceOfTheConfiguredOne) {
  ContentJob job;
  writeText(job.dir / "start/autorun.inf", "a");
  writeText(job.dir / "start/README.TXT", "r");
  writeText(job.dir / "help/Text/b", "b");
  writeText(job.dir / "more/Text/c", "c");
  job.builder.otherContents = {named(job.dir / "start", "."), named(job.dir / "help", "VIEW/HELP"),
                               named(job.dir / "more", "VIEW\\HELP")};
  const fs::path before = fs::current_path();
  ASSERT_TRUE(job.create()) << job.sentence();
  EXPECT_EQ(fs::current_path(), before);
  std::vector<std::string> expected{"DICOMDIR",        "DICOMOBJ/QLN00001", "LABEL.TXT",
                                    "README.TXT",      "VIEW/HELP/Text/b",  "autorun.inf",
                                    "VIEW/HELP/Text/c"};
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(filesBelow(job.root), expected);
}

TEST(OtherContent, IsRefusedWhereTheFileSetOrOtherContentHasSomething) {
  const struct {
    const char* what;
    std::vector<std::string> files;  // "first/..." and "second/..."
    std::vector<std::string> places;
    std::string sentence;
  } cases[] = {
      {"a DICOMDIR", {"first/dicomdir"}, {"."}, "{first}:dicomdir"},
      {"a label that is a directory", {"first/LABEL.TXT/x"}, {"."}, "{first}:LABEL.TXT/x"},
      {"the mark of a creation", {"first/x"}, {"UNFINISHED.TXT"}, "{first}:UNFINISHED.TXT/x"},
      {"sums of its own", {"first/SHA256SUMS"}, {"."}, "{first}:SHA256SUMS"},
      {"a file among the objects", {"first/DICOMOBJ/x"}, {"."}, "{first}:DICOMOBJ/x"},
      {"a file for the objects' directory", {"first/dicomobj"}, {"."}, "{first}:dicomobj"},
      {"directories that differ in case", {"first/x", "second/y"}, {"AB", "ab"}, "{both}:ab"},
      {"one file twice", {"first/a/x", "second/X"}, {".", "a"}, "{both}:a/X"},
      {"a file for a directory", {"first/a", "second/x"}, {".", "A"}, "{both}:A"},
      {"a directory for a file", {"first/x", "second/a"}, {"A", "."}, "{both}:a"},
      {"outside the root", {"first/x"}, {"../x"}, "../x"},
      {"a drive", {"first/x"}, {"C:"}, "C:"},
      {"no name", {"first/x"}, {""}, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    ContentJob job;
    for (const std::string& file : c.files) writeText(job.dir / file, "x");
    const fs::path first = job.dir / "first";
    const fs::path second = job.dir / "second";
    for (const std::string& place : c.places) {
      job.builder.otherContents.push_back(
          named(job.builder.otherContents.empty() ? first : second, place));
    }
    EXPECT_FALSE(job.create());
    std::string sentence = "The other content cannot lie in " + c.sentence + " of the file set.";
    if (c.sentence.starts_with("{first}:")) {
      sentence = "The other content of " + first.string() + " would put " + c.sentence.substr(8) +
                 " into the file set, which has its own there.";
    } else if (c.sentence.starts_with("{both}:")) {
      sentence = "The other content of " + first.string() + " and of " + second.string() +
                 " would both put " + c.sentence.substr(7) + " into the file set.";
    }
    EXPECT_EQ(job.sentence(), sentence);
    EXPECT_FALSE(fs::exists(job.root));
    EXPECT_TRUE(fs::exists(job.in / "a"));
  }
}

#ifndef _WIN32
TEST(OtherContent, MayDifferInCaseAloneWhereAHostHasConfiguredIt) {
  ContentJob job;
  writeText(job.source / "viewer.exe", "x");
  ASSERT_TRUE(job.builder.PreviewFileSet({}, {})) << job.sentence();
  const auto sentence = [&](const std::string& name) {
    return "The other content of " + job.source.string() + " has " + name +
           " twice but for the case of letters, and a medium cannot have both.";
  };
  job.builder.currentPractice = true;
  EXPECT_FALSE(job.builder.PreviewFileSet({}, {}));
  EXPECT_EQ(job.sentence(), sentence("QUILLON/viewer.exe"));
  job.builder.currentPractice = false;
  job.builder.otherContents = {named(job.source, "A")};
  job.add("a", {});
  EXPECT_FALSE(job.create());
  EXPECT_EQ(job.sentence(), sentence("A/viewer.exe"));
  EXPECT_FALSE(fs::exists(job.root));
}
#endif

TEST(OtherContent, ThatCannotBeHadIsToldAndRefusedWhereItIsAskedFor) {
  ContentJob job;
  const std::string gone = (job.dir / "none").string();
  const std::string sentence = "The directory " + gone + " of the other content is not there.";
  job.registry.setOtherContent(gone);
  ASSERT_TRUE(job.builder.PreviewFileSet({}, {})) << job.sentence();
  EXPECT_EQ(Plain(job.builder.Planned().contentGap), sentence);
  job.builder.refusesContentGaps = true;
  EXPECT_FALSE(job.builder.PreviewFileSet({}, {}));
  EXPECT_EQ(job.sentence(), sentence);
  job.registry.setNumber("OtherContentSourceDir", 1);
  job.add("a", {});
  EXPECT_FALSE(job.create());
  EXPECT_EQ(job.sentence(), kNoValue);
  // Nothing is missing where nothing is configured.
  job.registry.remove();
  job.add("a", {});
  EXPECT_TRUE(job.builder.PreviewFileSet({}, {})) << job.sentence();

  job.registry.setOtherContent(gone);
  job.builder.refusesContentGaps = false;
  for (const fs::path& source : {job.dir / "none", job.source / "VIEWER.EXE"}) {
    job.builder.otherContents = {named(source, "A")};
    job.add("a", {});
    EXPECT_FALSE(job.create());
    EXPECT_EQ(job.sentence(),
              "The directory " + source.string() + " of the other content is not there.");
  }
  writeText(job.root / "VIEW/x", "x");
  job.builder.otherContents = {named(job.root / "VIEW", "A")};
  job.add("a", {});
  EXPECT_FALSE(job.create());
  EXPECT_EQ(job.sentence(), "The directory " + (job.root / "VIEW").string() +
                                " of the other content lies in the root directory " +
                                job.root.string() + ".");
}

TEST(Totals, CountTheObjectsAndTheOtherContent) {
  ContentJob job;
  ObjectDescription second;
  second.instance = 2;
  second.rows = 20;
  job.add("b", second);
  const std::uint64_t objects = fs::file_size(job.in / "a") + fs::file_size(job.in / "b");
  std::uint64_t size = 0;
  std::uint32_t count = 0;
  const fs::path before = fs::current_path();
  ASSERT_TRUE(job.builder.GetTotalSize(size)) << job.sentence();
  ASSERT_TRUE(job.builder.GetTotalFileCount(count)) << job.sentence();
  EXPECT_EQ(size, objects + 8);
  EXPECT_EQ(count, 4U);
  EXPECT_EQ(fs::current_path(), before);

  job.builder.includeOtherContent = false;
  ASSERT_TRUE(job.builder.GetTotalSize(size));
  ASSERT_TRUE(job.builder.GetTotalFileCount(count));
  EXPECT_EQ(size, objects);
  EXPECT_EQ(count, 2U);

  // A fresh workstation has neither the key nor the value: nothing is to be copied.
  job.builder.includeOtherContent = true;
  for (const bool hasKey : {true, false}) {
    hasKey ? job.registry.setWithoutValue() : job.registry.remove();
    ASSERT_TRUE(job.builder.GetTotalSize(size)) << job.sentence();
    ASSERT_TRUE(job.builder.GetTotalFileCount(count)) << job.sentence();
    EXPECT_EQ(size, objects);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(job.sentence(), "");
  }

  Text configured;
  job.registry.setOtherContent(job.source);
  EXPECT_TRUE(job.builder.GetOtherContentSourceDir(configured));
  EXPECT_EQ(configured, WideOf(job.source));
  // With a value that is no text there is no telling.
  job.registry.setNumber("OtherContentSourceDir", 1);
  EXPECT_FALSE(job.builder.GetOtherContentSourceDir(configured));
  EXPECT_FALSE(job.builder.GetTotalSize(size));
  EXPECT_EQ(job.sentence(), kNoValue);
  EXPECT_EQ(size, 0U);
  EXPECT_FALSE(job.builder.GetTotalFileCount(count));
  EXPECT_EQ(count, 0U);
}

TEST(Wiping, RemovesTheFileSetAndWhatRecordingLeft) {
  BuilderJob job;
  const fs::path temporary = job.dir / "tmp";
  fs::create_directories(temporary / "QUILLON" / "work");
  writeText(temporary / "keep", "x");
  const TemporaryFilesIn elsewhere(temporary);
  job.builder.Wipe();  // no root yet
  EXPECT_EQ(job.sentence(), "");
  fs::create_directories(temporary / "QUILLON");
  job.add("a", {});
  ASSERT_TRUE(job.create()) << job.sentence();
  const fs::path kept = job.add("b", {});
  job.builder.Wipe();
  EXPECT_FALSE(fs::exists(job.root));
  EXPECT_FALSE(fs::exists(temporary / "QUILLON"));
  EXPECT_TRUE(fs::exists(temporary / "keep"));
  EXPECT_TRUE(fs::exists(kept));
  EXPECT_TRUE(job.builder.IheLabel().empty());
  EXPECT_EQ(job.count(), -1);
}

// What lies in the temporary directory under the name of the jobs' own need not be theirs.
TEST(Wiping, LeavesWhatIsNotAJobsOwn) {
  BuilderJob job;
  const fs::path temporary = job.dir / "tmp";
  writeText(job.dir / "precious/file", "x");
  fs::create_directory(temporary);
  const TemporaryFilesIn elsewhere(temporary);
  const fs::path before = fs::current_path();
#ifndef _WIN32  // where the tests have no links
  fs::create_directory_symlink(job.dir / "precious", temporary / "QUILLON");
  job.builder.Wipe();
  EXPECT_TRUE(fs::exists(job.dir / "precious/file"));
  EXPECT_FALSE(fs::exists(fs::symlink_status(temporary / "QUILLON")));
#endif

  // The directory that the host works in.
  writeText(temporary / "QUILLON/work/file", "x");
  fs::current_path(temporary / "QUILLON/work");
  job.builder.Wipe();
  fs::current_path(before);
  EXPECT_TRUE(fs::exists(temporary / "QUILLON/work/file"));

  // And no file set is made where the next wipe would take it.
  EXPECT_TRUE(job.builder.SetDicomRootDirectory(WideOf(temporary / "QUILLON/set")));
  job.add("a", {});
  EXPECT_FALSE(job.create());
  EXPECT_EQ(job.sentence(), "The directory " + (temporary / "QUILLON" / "set").string() +
                                " lies in " + (temporary / "QUILLON").string() +
                                ", which every job removes.");
  EXPECT_TRUE(fs::exists(job.in / "a"));
}

}  // namespace
}  // namespace quillon::test
