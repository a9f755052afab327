// A file set builder over a directory of the test's own, and the words its sentences come in.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "fileset/dicom_dir_processor.h"
#include "support/object_maker.h"
#include "support/system_sentence.h"
#include "support/temp_dir.h"
#include "support/text.h"
#include "support/workstation_settings.h"
#ifndef _WIN32
#include "platform/testing.h"
#endif

namespace quillon::test {

namespace fs = std::filesystem;

inline const std::string kFileExists =
    systemSentence(ERROR_ALREADY_EXISTS, "Cannot create a file when that file already exists.");
inline const std::string kFileNotFound =
    systemSentence(ERROR_FILE_NOT_FOUND, "The system cannot find the file specified.");

inline ObjectDescription object(int patient, int study, int series, int instance) {
  ObjectDescription d;
  d.patient = patient;
  d.study = study;
  d.series = series;
  d.instance = instance;
  return d;
}

// The day of the tests' creations, as their labels write it: a day of their own where the clock can
// be set, and today elsewhere.
class CreationDay {
#ifdef _WIN32
 public:
  [[nodiscard]] static std::string text() {
    char text[32];
    GetDateFormatA(MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT), 0, nullptr,
                   "dd MMM yyyy", text, sizeof text);
    return text;
  }
#else
 public:
  CreationDay() {
    platform::testing::SubstituteClock([] {
      SYSTEMTIME day{};
      day.wYear = 2009;
      day.wMonth = 3;
      day.wDay = 5;
      day.wDayOfWeek = 4;
      day.wHour = 10;
      return day;
    });
  }
  [[nodiscard]] static std::string text() { return "05 Mar 2009"; }

 private:
  platform::testing::Scope substitutes_;
#endif
};

struct BuilderJob {
  BuilderJob() : registry(dir.path()), root(dir / "root"), in(dir / "in") {
    fs::create_directory(in);
    EXPECT_TRUE(builder.SetDicomRootDirectory(WideOf(root)));
    EXPECT_TRUE(builder.SetUniquePatientId(OLESTR("DOE^JOHN 12345")));
    builder.includeOtherContent = false;
  }

  fs::path make(const std::string& name, const ObjectDescription& description) const {
    fs::create_directories((in / name).parent_path());
    makeObjectFile(in / name, description);
    return in / name;
  }
  // Makes the object and adds it.
  fs::path add(const std::string& name, const ObjectDescription& description) {
    fs::path file = make(name, description);
    added = builder.AddFile(WideOf(file));
    return file;
  }
  bool create() { return builder.CreateDicomFileSet({}, {}); }
  [[nodiscard]] std::string sentence() const { return Plain(builder.ErrorMessage()); }
  // Objects in the patient list; -1 when there is none.
  int count() {
    std::uint32_t files = 0;
    const bool other = builder.includeOtherContent;
    builder.includeOtherContent = false;
    const bool counted = builder.GetTotalFileCount(files);
    builder.includeOtherContent = other;
    return counted ? static_cast<int>(files) : -1;
  }

  TempDir dir;
  CreationDay day;
  MediaCreationKey registry;
  fs::path root;
  fs::path in;
  CDicomDirProcessor builder;
  bool added = false;
};

// Puts a path in the place of its mark, if that is there.
inline void insert(std::string& sentence, std::string_view mark, const fs::path& path) {
  if (const auto at = sentence.find(mark); at != std::string::npos) {
    sentence.replace(at, mark.size(), path.string());
  }
}

// Every file below a directory, relative to it, in order.
inline std::vector<std::string> filesBelow(const fs::path& directory) {
  std::vector<std::string> names;
  if (fs::is_directory(directory)) {
    for (const auto& entry : fs::recursive_directory_iterator(directory)) {
      if (!entry.is_directory())
        names.push_back(fs::relative(entry.path(), directory).generic_string());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace quillon::test
